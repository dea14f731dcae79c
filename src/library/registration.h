#pragma once
// What the registry says about the component: its classes with their ProgIDs, its type library and its
// interfaces.

#include <windows.h>

namespace zeq::library {

/// Whose registration: everybody's (needs administrator rights) or the current user's.
enum class Scope { machine, user };

/// Registers everything, or nothing: a failure takes back what was written before it.
HRESULT registerComponent(Scope scope) noexcept;

/// Removes everything that registerComponent wrote. What the other bitness's copy of the component still
/// needs stays. Succeeds if nothing was registered.
HRESULT unregisterComponent(Scope scope) noexcept;

}  // namespace zeq::library
