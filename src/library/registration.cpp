#include "library/registration.h"
namespace zeq::library {
HRESULT registerComponent(Scope) noexcept { return E_NOTIMPL; }
HRESULT unregisterComponent(Scope) noexcept { return E_NOTIMPL; }
}
