#pragma once
// One COM enumerator for all element types: IEnumVARIANT, IEnumConnections, IEnumConnectionPoints.

#include <windows.h>
#include <oleauto.h>
#include <olectl.h>

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "automation/ComPtr.h"
#include "automation/Unknown.h"
#include "automation/Variant.h"

namespace zeq::automation {

/// Enumerates the elements that it was made with; later changes of their source do not show. An Element owns
/// what it holds and has `void copyTo(Raw&) const`, which gives the client a copy of its own.
template <class Interface, class Raw, class Element>
class Enumerator final : public SingleInterface<Interface> {
 public:
  using Elements = std::vector<Element>;

  [[nodiscard]] static ComPtr<Interface> make(Elements elements) {
    return ComPtr<Interface>::attach(
        new Enumerator(std::make_shared<const Elements>(std::move(elements)), 0));
  }

  STDMETHODIMP Next(ULONG count, Raw* out, ULONG* fetched) noexcept override {
    if (fetched != nullptr) {
      *fetched = 0;
    }
    if (out == nullptr) {
      return E_POINTER;
    }
    ULONG done = 0;
    try {
      for (; done < count && position_ < elements_->size(); ++done) {
        (*elements_)[position_].copyTo(out[done]);
        ++position_;
      }
    } catch (...) {
      if (done == 0) {
        return currentFailure().code;
      }  // Else the client gets those that were copied, and the failure with its next request.
    }
    if (fetched != nullptr) {
      *fetched = done;
    }
    return done == count ? S_OK : S_FALSE;
  }

  STDMETHODIMP Skip(ULONG count) noexcept override {
    const std::size_t left = elements_->size() - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }

  STDMETHODIMP Reset() noexcept override {
    position_ = 0;
    return S_OK;
  }

  STDMETHODIMP Clone(Interface** clone) noexcept override {
    if (clone == nullptr) {
      return E_POINTER;
    }
    *clone = new (std::nothrow) Enumerator(elements_, position_);
    return *clone != nullptr ? S_OK : E_OUTOFMEMORY;
  }

 private:
  Enumerator(std::shared_ptr<const Elements> elements, std::size_t position) noexcept
      : elements_(std::move(elements)), position_(position) {}

  std::shared_ptr<const Elements> elements_;
  std::size_t position_;
};

/// A VARIANT as an element.
struct VariantElement {
  Variant value;
  void copyTo(VARIANT& out) const {
    VariantInit(&out);
    check(copy(out, value.get()));
  }
};

using VariantEnumerator = Enumerator<IEnumVARIANT, VARIANT, VariantElement>;

/// An element that is shared with its source.
template <class Shared>
class SharedElement {
 public:
  SharedElement(std::shared_ptr<const Shared> element) noexcept : element_(std::move(element)) {}
  template <class Raw>
  void copyTo(Raw& out) const {
    element_->copyTo(out);
  }

 private:
  std::shared_ptr<const Shared> element_;
};

}  // namespace zeq::automation
