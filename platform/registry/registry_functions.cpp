// The registry functions with names in UTF-16. Null is the empty name, save where
// a key is made or deleted. Handles give no rights to check: every open key can be
// read and written.
#include <cstring>

#include "platform/registry/registry.h"

using Orvix::Text;
using Orvix::TextView;
using namespace Orvix::registry;  // NOLINT(google-build-using-namespace): C functions below

namespace {

TextView NameOf(const OLECHAR* name) { return name == nullptr ? TextView{} : TextView(name); }

}  // namespace

LONG ORVIX_CALL RegCreateKeyExW(HKEY key, const OLECHAR* name, DWORD reserved, OLECHAR* /*className*/,
                                DWORD /*options*/, DWORD /*access*/, void* /*security*/, HKEY* opened,
                                DWORD* disposition) {
  return Guarded([&] {
    if (name == nullptr || reserved != 0 || opened == nullptr) return kBadParameter;
    return Registry::Instance().CreateKey(key, name, opened, disposition);
  });
}

LONG ORVIX_CALL RegOpenKeyExW(HKEY key, const OLECHAR* name, DWORD /*options*/, DWORD /*access*/, HKEY* opened) {
  return Guarded([&] {
    if (opened == nullptr) return kBadParameter;
    return Registry::Instance().OpenKey(key, NameOf(name), opened);
  });
}

LONG ORVIX_CALL RegCloseKey(HKEY key) {
  return Guarded([&] { return Registry::Instance().CloseKey(key); });
}

LONG ORVIX_CALL RegSetValueExW(HKEY key, const OLECHAR* name, DWORD reserved, DWORD type, const BYTE* data,
                               DWORD bytes) {
  return Guarded([&] {
    if (reserved != 0 || (data == nullptr && bytes != 0)) return kBadParameter;
    const std::string_view view =
        bytes == 0 ? std::string_view{} : std::string_view(reinterpret_cast<const char*>(data), bytes);
    return Registry::Instance().SetValue(key, NameOf(name), type, view);
  });
}

LONG ORVIX_CALL RegQueryValueExW(HKEY key, const OLECHAR* name, DWORD* reserved, DWORD* type, BYTE* data,
                                 DWORD* bytes) {
  return Guarded([&] {
    if (reserved != nullptr || (data != nullptr && bytes == nullptr)) return kBadParameter;
    FoundValue value;
    const LONG result = Registry::Instance().QueryValue(key, NameOf(name), &value);
    if (result != kSuccess) {
      if (result == kNotFound && bytes != nullptr && data == nullptr) *bytes = 0;
      return result;
    }
    return GiveValue(value, type, data, bytes);
  });
}

LONG ORVIX_CALL RegDeleteKeyW(HKEY key, const OLECHAR* name) {
  return Guarded([&] { return name == nullptr ? kBadParameter : Registry::Instance().DeleteKey(key, name); });
}

LONG ORVIX_CALL RegDeleteValueW(HKEY key, const OLECHAR* name) {
  return Guarded([&] { return Registry::Instance().DeleteValue(key, NameOf(name)); });
}
