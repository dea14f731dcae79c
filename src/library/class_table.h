#pragma once
// Every creatable class of the component, in one place. Names and descriptions stand in the type library.

#include <windows.h>

#include <span>

namespace zeq::library {

struct ClassEntry {
  const CLSID& clsid;
  HRESULT (*create)(REFIID iid, void** object) noexcept;
};

[[nodiscard]] std::span<const ClassEntry> classTable() noexcept;

/// Lets clients pass objects that answer only by name where the library calls an interface. Called once, when
/// the component is loaded.
void registerAdapters();

}  // namespace zeq::library
