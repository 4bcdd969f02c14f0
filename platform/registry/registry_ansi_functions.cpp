// The registry functions with names in the ANSI code page. Values of the text
// types (1, 2 and 7) are converted as well, so that what was written in one form
// reads in the other; their lengths count ANSI bytes here. All other types are
// the bytes that they are.
#include <cstring>

#include "platform/names/code_page.h"
#include "platform/registry/registry.h"

using Orvix::FromAnsi;
using Orvix::Text;
using Orvix::TextView;
using Orvix::ToAnsi;
using namespace Orvix::registry;  // NOLINT(google-build-using-namespace): C functions below

namespace {

bool IsText(DWORD type) { return type == 1 || type == 2 || type == 7; }

Text NameOf(const char* name) { return name == nullptr ? Text{} : FromAnsi(name); }

// The bytes of a value as an ANSI caller sees them.
void ConvertToAnsi(FoundValue* value) {
  if (!IsText(value->type)) return;
  Text text(value->data.size() / sizeof(char16_t), u'\0');
  if (!text.empty()) std::memcpy(text.data(), value->data.data(), text.size() * sizeof(char16_t));
  value->data = ToAnsi(text);
}

// Gives `name` and its NUL to a buffer of `*characters`; 234 when it is too small.
LONG GiveName(TextView name, char* buffer, DWORD* characters) {
  const std::string bytes = ToAnsi(name);
  if (*characters <= bytes.size()) return kMoreData;
  std::memcpy(buffer, bytes.c_str(), bytes.size() + 1);
  *characters = static_cast<DWORD>(bytes.size());
  return kSuccess;
}

}  // namespace

LONG ORVIX_CALL RegCreateKeyExA(HKEY key, const char* name, DWORD reserved, char* /*className*/, DWORD options,
                                DWORD access, void* security, HKEY* opened, DWORD* disposition) {
  return Guarded([&] {
    if (name == nullptr) return kBadParameter;
    return RegCreateKeyExW(key, FromAnsi(name).c_str(), reserved, nullptr, options, access, security, opened,
                           disposition);
  });
}

LONG ORVIX_CALL RegOpenKeyExA(HKEY key, const char* name, DWORD options, DWORD access, HKEY* opened) {
  return Guarded([&] { return RegOpenKeyExW(key, NameOf(name).c_str(), options, access, opened); });
}

LONG ORVIX_CALL RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
  return Guarded([&] {
    if (reserved != 0 || (data == nullptr && bytes != 0)) return kBadParameter;
    std::string_view view;
    if (bytes != 0) view = {reinterpret_cast<const char*>(data), bytes};
    Text text;
    if (IsText(type) && !view.empty()) {
      text = FromAnsi(view);
      view = {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(char16_t)};
    }
    return Registry::Instance().SetValue(key, NameOf(name), type, view);
  });
}

LONG ORVIX_CALL RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* bytes) {
  return Guarded([&] {
    if (reserved != nullptr || (data != nullptr && bytes == nullptr)) return kBadParameter;
    FoundValue value;
    const LONG result = Registry::Instance().QueryValue(key, NameOf(name), &value);
    if (result != kSuccess) {
      if (result == kNotFound && bytes != nullptr && data == nullptr) *bytes = 0;
      return result;
    }
    ConvertToAnsi(&value);
    return GiveValue(value, type, data, bytes);
  });
}

LONG ORVIX_CALL RegDeleteKeyA(HKEY key, const char* name) {
  return Guarded([&] { return name == nullptr ? kBadParameter : RegDeleteKeyW(key, FromAnsi(name).c_str()); });
}

LONG ORVIX_CALL RegDeleteValueA(HKEY key, const char* name) {
  return Guarded([&] { return Registry::Instance().DeleteValue(key, NameOf(name)); });
}

LONG ORVIX_CALL RegEnumKeyExA(HKEY key, DWORD index, char* name, DWORD* characters, DWORD* reserved, char* className,
                              DWORD* classCharacters, void* lastWrite) {
  return Guarded([&] {
    if (name == nullptr || characters == nullptr || reserved != nullptr) return kBadParameter;
    Text found;
    LONG result = Registry::Instance().EnumerateKey(key, index, &found);
    if (result == kSuccess) result = GiveName(found, name, characters);
    if (result != kSuccess) return result;
    // Keys have no class here, and no time is kept.
    if (className != nullptr && classCharacters != nullptr && *classCharacters != 0) className[0] = '\0';
    if (classCharacters != nullptr) *classCharacters = 0;
    if (lastWrite != nullptr) std::memset(lastWrite, 0, 8);
    return kSuccess;
  });
}

LONG ORVIX_CALL RegEnumValueA(HKEY key, DWORD index, char* name, DWORD* characters, DWORD* reserved, DWORD* type,
                              BYTE* data, DWORD* bytes) {
  return Guarded([&] {
    if (name == nullptr || characters == nullptr || reserved != nullptr || (data != nullptr && bytes == nullptr)) {
      return kBadParameter;
    }
    FoundValue value;
    LONG result = Registry::Instance().EnumerateValue(key, index, &value);
    if (result != kSuccess) return result;
    ConvertToAnsi(&value);
    if (value.data.size() > (data == nullptr ? value.data.size() : *bytes)) {
      return GiveValue(value, type, data, bytes);
    }
    result = GiveName(value.name, name, characters);
    return result == kSuccess ? GiveValue(value, type, data, bytes) : result;
  });
}
