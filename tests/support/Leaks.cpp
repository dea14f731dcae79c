#include "support/Leaks.h"

#include <gmock/gmock.h>
#include <winternl.h>

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/Allocations.h"
#include "support/EntryPoint.h"

namespace zeq::test {
namespace {

std::size_t busyBlocks() {
  std::array<HANDLE, 64> heaps{};
  const DWORD count = GetProcessHeaps(static_cast<DWORD>(heaps.size()), heaps.data());
  if (count == 0 || count > heaps.size()) {
    throw std::runtime_error("the heaps cannot be listed");
  }
  std::size_t blocks = 0;
  for (DWORD i = 0; i < count; ++i) {
    HeapLock(heaps[i]);
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[i], &entry) != FALSE) {
      blocks += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? 1 : 0;
    }
    HeapUnlock(heaps[i]);
  }
  return blocks;
}

/// The system's list of open handles, in the layout of NtQuerySystemInformation.
struct HandleEntry {
  void* object;
  ULONG_PTR process;
  ULONG_PTR handle;
  ULONG access;
  USHORT traceIndex;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};
struct HandleList {
  ULONG_PTR count;
  ULONG_PTR reserved;
  HandleEntry entries[1];
};

/// Counted in the system's list, because GetProcessHandleCount knows nothing under Wine.
std::size_t openHandles() {
  constexpr ULONG extendedHandleInformation = 64;
  using Query = NTSTATUS(NTAPI*)(ULONG, void*, ULONG, ULONG*);
  static const auto query = entryPoint<Query>(GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation");
  constexpr std::size_t most = 1U << 20;  // Entries; far beyond what a machine that runs tests has open.
  static std::vector<HandleEntry> room(1024);
  ULONG size = 0;
  while (query(extendedHandleInformation, room.data(), static_cast<ULONG>(room.size() * sizeof room[0]),
               &size) < 0) {
    if (room.size() > most) {
      throw std::runtime_error("the handles cannot be listed");
    }
    room.resize(room.size() * 2);
  }
  const auto* list = reinterpret_cast<const HandleList*>(room.data());
  return static_cast<std::size_t>(
      std::count_if(list->entries, list->entries + list->count,
                    [](const HandleEntry& entry) { return entry.process == GetCurrentProcessId(); }));
}

bool componentInUse() {
  const HMODULE module = GetModuleHandleW(L"ZEQUtility2.dll");
  return module != nullptr && entryPoint<HRESULT(STDAPICALLTYPE*)()>(module, "DllCanUnloadNow")() != S_OK;
}

std::string describe(const Holdings& held) {
  return std::to_string(held.heapBlocks) + " heap blocks, " + std::to_string(held.componentBlocks) +
         " of the component, " + std::to_string(held.taskMemory) + " blocks of task memory, " +
         std::to_string(held.handles) + " handles, component " +
         (held.componentInUse ? "in use" : "not in use");
}

}  // namespace

Holdings holdings() {
  Holdings held;
  held.componentBlocks = componentBlocks();
  held.taskMemory = taskBlocks();
  held.handles = openHandles();
  held.componentInUse = componentInUse();
  held.heapBlocks = busyBlocks();
  return held;
}

void expectNoLeak(int repetitions, const std::function<void()>& body) {
  constexpr int warmUps = 16;
  constexpr int rounds = 3;
  static_cast<void>(holdings());
  for (int i = 0; i < warmUps; ++i) {
    body();
  }
  Holdings before;
  Holdings after;
  for (int round = 0; round < rounds; ++round) {
    before = holdings();
    for (int i = 0; i < repetitions; ++i) {
      body();
    }
    after = holdings();
    if (after == before) {
      return;
    }
  }
  ADD_FAILURE() << "after " << repetitions << " repetitions: " << describe(after)
                << "\n  before: " << describe(before);
}

}  // namespace zeq::test
