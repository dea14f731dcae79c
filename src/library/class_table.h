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

}  // namespace zeq::library
