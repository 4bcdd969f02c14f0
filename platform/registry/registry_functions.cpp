// The registry functions, with names in UTF-16 and in the ANSI code page. Null is
// the empty name, save where a key is made or deleted. Handles give no rights to
// check: every open key can be read and written.
//
// The ANSI forms convert values of the text types (1, 2 and 7) as well, so that
// what was written in one form reads in the other; lengths count ANSI bytes there.
// All other types are the bytes that they are.
#include <algorithm>
#include <cstring>

#include "platform/names/code_page.h"
#include "platform/names/text_behind.h"
#include "platform/registry/registry.h"

using Orvix::Text;
using Orvix::TextView;
using Orvix::ToAnsi;
using namespace Orvix::registry;  // NOLINT(google-build-using-namespace): C functions below

namespace {

TextView NameOf(const OLECHAR* name) { return name == nullptr ? TextView{} : TextView(name); }
Text NameOf(const char* name) { return name == nullptr ? Text{} : Orvix::TextBehind(name); }
const Text& Given(const Text& name, const OLECHAR*) { return name; }
std::string Given(const Text& name, const char*) { return ToAnsi(name); }

// What a C function does, with a result code in place of the exception.
template <class Body>
LONG Guarded(Body body) noexcept {
  try {
    return body();
  } catch (const Failure& failure) {
    return failure.code;
  } catch (const Orvix::SqlFailure& failure) {
    return CodeOf(failure);
  } catch (const std::exception&) {
    return kOutOfMemory;
  }
}

template <class Unit>
LONG CreateKey(HKEY key, const Unit* name, DWORD reserved, HKEY* opened, DWORD* disposition) {
  if (name == nullptr || reserved != 0 || opened == nullptr) return kBadParameter;
  return Guarded([&] { return Registry::Instance().CreateKey(key, NameOf(name), opened, disposition); });
}

template <class Unit>
LONG OpenKey(HKEY key, const Unit* name, HKEY* opened) {
  if (opened == nullptr) return kBadParameter;
  return Guarded([&] { return Registry::Instance().OpenKey(key, NameOf(name), opened); });
}

template <class Unit>
LONG DeleteKey(HKEY key, const Unit* name) {
  if (name == nullptr) return kBadParameter;
  return Guarded([&] { return Registry::Instance().DeleteKey(key, NameOf(name)); });
}

template <class Unit>
LONG DeleteValue(HKEY key, const Unit* name) {
  return Guarded([&] { return Registry::Instance().DeleteValue(key, NameOf(name)); });
}

bool IsNarrowText(DWORD type, std::size_t unit) { return unit == 1 && (type == 1 || type == 2 || type == 7); }

template <class Unit>
LONG SetValue(HKEY key, const Unit* name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
  if (reserved != 0 || (data == nullptr && bytes != 0)) return kBadParameter;
  return Guarded([&] {
    std::string_view view(bytes == 0 ? "" : reinterpret_cast<const char*>(data), bytes);
    Text text;
    if (IsNarrowText(type, sizeof(Unit))) {
      text = Orvix::TextBehind(view);
      view = {reinterpret_cast<const char*>(text.data()), text.size() * sizeof(OLECHAR)};
    }
    return Registry::Instance().SetValue(key, NameOf(name), type, view);
  });
}

// Gives type, length and data to a caller's variables, any of which may be null.
// 234 when the buffer of `*bytes` is too small: `*bytes` becomes the length needed
// and the buffer stays as it is.
template <class Unit>
LONG GiveValue(FoundValue& value, DWORD* type, BYTE* data, DWORD* bytes) {
  if (IsNarrowText(value.type, sizeof(Unit))) {
    Text text(value.data.size() / sizeof(OLECHAR), u'\0');
    std::copy_n(value.data.data(), text.size() * sizeof(OLECHAR), reinterpret_cast<char*>(text.data()));
    value.data = ToAnsi(text);
  }
  if (type != nullptr) *type = value.type;
  if (bytes == nullptr) return kSuccess;
  const DWORD capacity = std::exchange(*bytes, static_cast<DWORD>(value.data.size()));
  if (data == nullptr) return kSuccess;
  if (capacity < value.data.size()) return kMoreData;
  std::ranges::copy(value.data, data);
  return kSuccess;
}

template <class Unit>
LONG QueryValue(HKEY key, const Unit* name, const DWORD* reserved, DWORD* type, BYTE* data, DWORD* bytes) {
  if (reserved != nullptr || (data != nullptr && bytes == nullptr)) return kBadParameter;
  return Guarded([&] {
    FoundValue value;
    const LONG result = Registry::Instance().QueryValue(key, NameOf(name), &value);
    if (result == kNotFound && bytes != nullptr && data == nullptr) *bytes = 0;
    return result == kSuccess ? GiveValue<Unit>(value, type, data, bytes) : result;
  });
}

// Gives the name and its NUL to a buffer of `*characters`; 234 when it is too small.
template <class Unit>
LONG Enumerate(HKEY key, bool values, DWORD index, Unit* name, DWORD* characters, DWORD* type, BYTE* data,
               DWORD* bytes) {
  if (name == nullptr || characters == nullptr || (data != nullptr && bytes == nullptr)) return kBadParameter;
  return Guarded([&] {
    FoundValue item;
    LONG result = Registry::Instance().Enumerate(key, values, index, &item);
    if (result == kSuccess) result = GiveValue<Unit>(item, type, data, bytes);
    if (result != kSuccess) return result;
    const auto given = Given(item.name, name);
    if (*characters <= given.size()) return kMoreData;
    std::copy_n(given.c_str(), given.size() + 1, name);
    *characters = static_cast<DWORD>(given.size());
    return kSuccess;
  });
}

// Keys have no class here, and no time is kept.
template <class Unit>
LONG EnumerateKey(HKEY key, DWORD index, Unit* name, DWORD* characters, Unit* class_name, DWORD* class_characters,
                  void* last_write) {
  const LONG result = Enumerate(key, /*values=*/false, index, name, characters, nullptr, nullptr, nullptr);
  if (result != kSuccess) return result;
  if (class_name != nullptr && class_characters != nullptr && *class_characters != 0) *class_name = Unit{};
  if (class_characters != nullptr) *class_characters = 0;
  if (last_write != nullptr) std::memset(last_write, 0, 8);
  return kSuccess;
}

}  // namespace

LONG ORVIX_CALL RegCreateKeyExW(HKEY key, const OLECHAR* name, DWORD reserved, OLECHAR*, DWORD, DWORD, void*,
                                HKEY* opened, DWORD* disposition) {
  return CreateKey(key, name, reserved, opened, disposition);
}
LONG ORVIX_CALL RegCreateKeyExA(HKEY key, const char* name, DWORD reserved, char*, DWORD, DWORD, void*, HKEY* opened,
                                DWORD* disposition) {
  return CreateKey(key, name, reserved, opened, disposition);
}
LONG ORVIX_CALL RegOpenKeyExW(HKEY key, const OLECHAR* name, DWORD, DWORD, HKEY* opened) {
  return OpenKey(key, name, opened);
}
LONG ORVIX_CALL RegOpenKeyExA(HKEY key, const char* name, DWORD, DWORD, HKEY* opened) {
  return OpenKey(key, name, opened);
}
LONG ORVIX_CALL RegDeleteKeyW(HKEY key, const OLECHAR* name) { return DeleteKey(key, name); }
LONG ORVIX_CALL RegDeleteKeyA(HKEY key, const char* name) { return DeleteKey(key, name); }
LONG ORVIX_CALL RegDeleteValueW(HKEY key, const OLECHAR* name) { return DeleteValue(key, name); }
LONG ORVIX_CALL RegDeleteValueA(HKEY key, const char* name) { return DeleteValue(key, name); }
LONG ORVIX_CALL RegSetValueExW(HKEY key, const OLECHAR* name, DWORD reserved, DWORD type, const BYTE* data,
                               DWORD bytes) {
  return SetValue(key, name, reserved, type, data, bytes);
}
LONG ORVIX_CALL RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data, DWORD bytes) {
  return SetValue(key, name, reserved, type, data, bytes);
}
LONG ORVIX_CALL RegQueryValueExW(HKEY key, const OLECHAR* name, DWORD* reserved, DWORD* type, BYTE* data,
                                 DWORD* bytes) {
  return QueryValue(key, name, reserved, type, data, bytes);
}
LONG ORVIX_CALL RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* bytes) {
  return QueryValue(key, name, reserved, type, data, bytes);
}
LONG ORVIX_CALL RegEnumKeyExW(HKEY key, DWORD index, OLECHAR* name, DWORD* size, DWORD* reserved, OLECHAR* kind,
                              DWORD* kindSize, void* time) {
  return reserved != nullptr ? kBadParameter : EnumerateKey(key, index, name, size, kind, kindSize, time);
}
LONG ORVIX_CALL RegEnumKeyExA(HKEY key, DWORD index, char* name, DWORD* size, DWORD* reserved, char* kind,
                              DWORD* kindSize, void* time) {
  return reserved != nullptr ? kBadParameter : EnumerateKey(key, index, name, size, kind, kindSize, time);
}
LONG ORVIX_CALL RegEnumValueW(HKEY key, DWORD index, OLECHAR* name, DWORD* size, DWORD* reserved, DWORD* type,
                              BYTE* data, DWORD* bytes) {
  return reserved != nullptr ? kBadParameter : Enumerate(key, true, index, name, size, type, data, bytes);
}
LONG ORVIX_CALL RegEnumValueA(HKEY key, DWORD index, char* name, DWORD* size, DWORD* reserved, DWORD* type, BYTE* data,
                              DWORD* bytes) {
  return reserved != nullptr ? kBadParameter : Enumerate(key, true, index, name, size, type, data, bytes);
}
LONG ORVIX_CALL RegCloseKey(HKEY key) {
  return Guarded([&] { return Registry::Instance().CloseKey(key); });
}

LONG ORVIX_CALL OxCheckRegistry(BSTR* faults) {
  if (faults == nullptr) return kBadParameter;
  return Guarded([&] {
    const Text found = Registry::Instance().Faults();
    *faults = SysAllocStringLen(found.data(), static_cast<UINT>(found.size()));
    return *faults == nullptr ? kOutOfMemory : kSuccess;
  });
}
