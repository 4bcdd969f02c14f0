// The exported functions over drives, shares and names.
#include <cstring>

#include "frame/runtime/runtime_error.h"
#include "orvix/runtime.h"
#include "platform/names/drive_map.h"
#include "platform/names/path_map.h"

using namespace Orvix;

namespace {

// Splits `\\server\share`; error 52 for any other text.
struct ServerShare {
  explicit ServerShare(TextView text) {
    if (text.size() < 2 || !IsSeparator(text[0]) || !IsSeparator(text[1])) throw RuntimeError{52};
    text.remove_prefix(2);
    if (!text.empty() && IsSeparator(text.back())) text.remove_suffix(1);
    const std::size_t between = text.find_first_of(u"\\/");
    if (between == TextView::npos) throw RuntimeError{52};
    server = text.substr(0, between);
    share = text.substr(between + 1);
    if (server.empty() || share.empty() || share.find_first_of(u"\\/") != TextView::npos) throw RuntimeError{52};
  }
  TextView server;
  TextView share;
};

}  // namespace

HRESULT ORVIX_CALL OxMapDrive(OLECHAR letter, const char* utf8Directory) {
  return AtRuntimeEdge([&] { MapDrive(letter, utf8Directory); });
}

HRESULT ORVIX_CALL OxMapShare(const OLECHAR* serverShare, const char* utf8Directory) {
  if (serverShare == nullptr) return E_POINTER;
  return AtRuntimeEdge([&] {
    const ServerShare parts{serverShare};
    MapShare(parts.server, parts.share, utf8Directory);
  });
}

HRESULT ORVIX_CALL OxPlatformName(const char* native, BSTR* name) {
  if (native == nullptr || name == nullptr) return E_POINTER;
  *name = nullptr;
  return AtRuntimeEdge([&] {
    *name = NewBstr(PlatformName(native));
    if (*name == nullptr) throw RuntimeError{7};
  });
}

HRESULT ORVIX_CALL OxNativeName(const OLECHAR* name, char** utf8) {
  if (utf8 == nullptr) return E_POINTER;
  *utf8 = nullptr;
  return AtRuntimeEdge([&] {
    const std::string path = ResolveName(name == nullptr ? TextView{} : TextView{name}).path;
    *utf8 = static_cast<char*>(CoTaskMemAlloc(path.size() + 1));
    if (*utf8 == nullptr) throw RuntimeError{7};
    std::memcpy(*utf8, path.c_str(), path.size() + 1);
  });
}
