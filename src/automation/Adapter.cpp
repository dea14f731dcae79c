#include "automation/Adapter.h"

#include <algorithm>
#include <vector>

namespace zeq::automation {
namespace {

struct Entry {
  IID interfaceId;
  AdapterFactory factory;
};

std::vector<Entry>& entries() {
  static std::vector<Entry> all;
  return all;
}

AdapterFactory factoryFor(REFIID interfaceId) noexcept {
  for (const Entry& entry : entries()) {
    if (IsEqualIID(entry.interfaceId, interfaceId)) {
      return entry.factory;
    }
  }
  return nullptr;
}

}  // namespace

const IID adaptedObjectId = {0xfbcfb27d, 0xe338, 0x433c, {0xb3, 0x87, 0xe4, 0xb8, 0xa7, 0xdf, 0xbc, 0x8f}};

void registerAdapter(REFIID interfaceId, AdapterFactory factory) {
  if (!hasAdapter(interfaceId)) {
    entries().push_back({interfaceId, factory});
  }
}

bool hasAdapter(REFIID interfaceId) noexcept {
  return factoryFor(interfaceId) != nullptr;
}

ComPtr<IUnknown> adaptTo(REFIID interfaceId, IUnknown* object) noexcept {
  const ComPtr<IUnknown> given(object);
  if (auto direct = given.query<IUnknown>(interfaceId)) {
    return direct;
  }
  const AdapterFactory factory = factoryFor(interfaceId);
  const auto target = factory != nullptr ? given.query<IDispatch>(IID_IDispatch) : nullptr;
  if (!target) {
    return nullptr;
  }
  try {
    return factory(target.get());
  } catch (...) {
    return nullptr;
  }
}

ComPtr<IUnknown> withoutAdapter(IUnknown* object) noexcept {
  const ComPtr<IUnknown> given(object);
  auto adapted = given.query<IUnknown>(adaptedObjectId);
  return adapted ? adapted : given;
}

void dropAdapter(IUnknown*& object) noexcept {
  const auto given = ComPtr<IUnknown>::attach(object);
  object = withoutAdapter(object).detach();
}

}  // namespace zeq::automation
