#include "support/Allocations.h"

#include <windows.h>
#include <malloc.h>
#include <objbase.h>
#include <objidl.h>
#include <oleauto.h>

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "support/ImportHook.h"

namespace zeq::test {
namespace {

DWORD refusingThread = 0;
long requestsUntilRefusal = 0;

/// Notes a request, and tells whether it is the one to refuse.
bool isRefused() noexcept {
  return requestsUntilRefusal > 0 && GetCurrentThreadId() == refusingThread && --requestsUntilRefusal == 0;
}

/// Counts the blocks of COM's task allocator.
class Spy final : public IMallocSpy {
 public:
  [[nodiscard]] long blocks() const noexcept { return InterlockedCompareExchange(&blocks_, 0, 0); }

  STDMETHODIMP QueryInterface(REFIID iid, void** object) noexcept override {
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_IMallocSpy)) {
      *object = nullptr;
      return E_NOINTERFACE;
    }
    *object = static_cast<IMallocSpy*>(this);
    return S_OK;
  }
  // It lives as long as the process.
  STDMETHODIMP_(ULONG) AddRef() noexcept override { return 2; }
  STDMETHODIMP_(ULONG) Release() noexcept override { return 1; }

  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) noexcept override { return size; }
  STDMETHODIMP_(void*) PostAlloc(void* block) noexcept override {
    if (block != nullptr) {
      InterlockedIncrement(&blocks_);
    }
    return block;
  }
  STDMETHODIMP_(void*) PreFree(void* block, BOOL counted) noexcept override {
    if (block != nullptr && counted != FALSE) {
      InterlockedDecrement(&blocks_);
    }
    return block;
  }
  STDMETHODIMP_(void) PostFree(BOOL /*counted*/) noexcept override {}
  STDMETHODIMP_(SIZE_T)
  PreRealloc(void* block, SIZE_T size, void** newBlock, BOOL /*counted*/) noexcept override {
    *newBlock = block;
    return size;
  }
  STDMETHODIMP_(void*) PostRealloc(void* block, BOOL /*counted*/) noexcept override { return block; }
  STDMETHODIMP_(void*) PreGetSize(void* block, BOOL /*counted*/) noexcept override { return block; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL /*counted*/) noexcept override { return size; }
  STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL /*counted*/) noexcept override { return block; }
  STDMETHODIMP_(int) PostDidAlloc(void* /*block*/, BOOL /*counted*/, int result) noexcept override {
    return result;
  }
  STDMETHODIMP_(void) PreHeapMinimize() noexcept override {}
  STDMETHODIMP_(void) PostHeapMinimize() noexcept override {}

 private:
  mutable LONG blocks_ = 0;
};

/// True for a value whose copy needs memory.
bool isLarge(const VARIANT& value) noexcept {
  const VARIANT& inner =
      value.vt == (VT_BYREF | VT_VARIANT) && value.pvarVal != nullptr ? *value.pvarVal : value;
  return (inner.vt & ~VT_BYREF) == VT_BSTR || (inner.vt & VT_ARRAY) != 0;
}

/// Stands between the component and the C runtime's heap, and where it asks automation for something that
/// needs memory.
class ComponentMemory {
 public:
  explicit ComponentMemory(HMODULE component)
      : malloc_(component, "malloc", &allocate),
        calloc_(component, "calloc", &allocateZeroed),
        realloc_(component, "realloc", &reallocate),
        free_(component, "free", &release),
        string_(component, "SysAllocStringLen", &newString),
        array_(component, "SafeArrayCreateVector", &newArray),
        copy_(component, "VariantCopy", &copy),
        copyInd_(component, "VariantCopyInd", &copyValue),
        convert_(component, "VariantChangeTypeEx", &convert),
        error_(component, "CreateErrorInfo", &newError) {}

  [[nodiscard]] static long blocks() noexcept { return InterlockedCompareExchange(&blocks_, 0, 0); }

 private:
  static void* counted(void* block) noexcept {
    if (block != nullptr) {
      InterlockedIncrement(&blocks_);
    }
    return block;
  }
  static void* __cdecl allocate(std::size_t size) noexcept {
    return isRefused() ? nullptr : counted(std::malloc(size));
  }
  static void* __cdecl allocateZeroed(std::size_t count, std::size_t size) noexcept {
    return isRefused() ? nullptr : counted(std::calloc(count, size));
  }
  static void* __cdecl reallocate(void* block, std::size_t size) noexcept {
    if (block == nullptr) {
      return allocate(size);
    }
    return isRefused() ? nullptr : std::realloc(block, size);
  }
  static void __cdecl release(void* block) noexcept {
    if (block != nullptr) {
      InterlockedDecrement(&blocks_);
      // Whoever still reads it does not find what was there. Volatile, because else nobody seems to read it.
      std::fill_n(static_cast<volatile BYTE*>(block), _msize(block), noValue);
    }
    std::free(block);
  }
  static BSTR WINAPI newString(const OLECHAR* text, UINT length) noexcept {
    return isRefused() ? nullptr : SysAllocStringLen(text, length);
  }
  static SAFEARRAY* WINAPI newArray(VARTYPE type, LONG lowest, ULONG count) noexcept {
    return isRefused() ? nullptr : SafeArrayCreateVector(type, lowest, count);
  }
  static HRESULT WINAPI copy(VARIANT* target, VARIANT* source) noexcept {
    return isLarge(*source) && isRefused() ? E_OUTOFMEMORY : VariantCopy(target, source);
  }
  static HRESULT WINAPI copyValue(VARIANT* target, VARIANT* source) noexcept {
    return isLarge(*source) && isRefused() ? E_OUTOFMEMORY : VariantCopyInd(target, source);
  }
  static HRESULT WINAPI convert(VARIANT* target, VARIANT* source, LCID locale, USHORT flags,
                                VARTYPE type) noexcept {
    return type == VT_BSTR && isRefused() ? E_OUTOFMEMORY
                                          : VariantChangeTypeEx(target, source, locale, flags, type);
  }
  static HRESULT WINAPI newError(ICreateErrorInfo** error) noexcept {
    return isRefused() ? E_OUTOFMEMORY : CreateErrorInfo(error);
  }

  static constexpr BYTE noValue = 0xDD;
  static inline LONG blocks_ = 0;
  ImportHook malloc_;
  ImportHook calloc_;
  ImportHook realloc_;
  ImportHook free_;
  ImportHook string_;
  ImportHook array_;
  ImportHook copy_;
  ImportHook copyInd_;
  ImportHook convert_;
  ImportHook error_;
};

const Spy& spy() {
  static Spy instance;
  static const bool registered = [] {
    if (const auto setNoCache = reinterpret_cast<void(WINAPI*)()>(
            reinterpret_cast<void*>(GetProcAddress(LoadLibraryW(L"oleaut32.dll"), "SetOaNoCache")))) {
      setNoCache();
    }
    return SUCCEEDED(CoRegisterMallocSpy(&instance));
  }();
  if (!registered) {
    throw std::runtime_error("task memory cannot be counted");
  }
  return instance;
}

}  // namespace

long componentBlocks() {
  const HMODULE component = GetModuleHandleW(L"ZEQUtility2.dll");
  if (component == nullptr) {
    return 0;
  }
  static const ComponentMemory memory(component);
  return ComponentMemory::blocks();
}

long taskBlocks() {
  return spy().blocks();
}

RefusedAllocation::RefusedAllocation(long nth) {
  static_cast<void>(componentBlocks());
  static_cast<void>(taskBlocks());
  refusingThread = GetCurrentThreadId();
  requestsUntilRefusal = nth;
}

RefusedAllocation::~RefusedAllocation() {
  requestsUntilRefusal = 0;
}

bool RefusedAllocation::happened() const noexcept {
  return requestsUntilRefusal == 0;
}

}  // namespace zeq::test
