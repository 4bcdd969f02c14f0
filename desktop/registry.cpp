// Keys and values of the registry, by the platform's narrow functions.
#include "desktop/ansi_arguments.h"
#include "frame/class_orvix.h"
#include "frame/error_styles.h"

namespace Orvix::component {

namespace {

constexpr LONG kSuccess = oxERROR_SUCCESS;

HKEY RootOf(enumRegistryConsts root) { return reinterpret_cast<HKEY>(std::intptr_t{root}); }

// One key. It is closed only when a member says so: two members leave their key
// open when they end in an error, as they always did.
class Key {
 public:
  LONG Create(enumRegistryConsts root, TextReference name) {
    AnsiArgument path(name);
    DWORD disposition = 0;
    const LONG result = RegCreateKeyExA(RootOf(root), path.get(), 0, nullptr, oxREG_OPTION_NON_VOLATILE, oxKEY_GENERAL,
                                        nullptr, &handle_, &disposition);
    path.WriteBack();
    return result;
  }
  LONG Open(enumRegistryConsts root, TextReference name) {
    AnsiArgument path(name);
    const LONG result = RegOpenKeyExA(RootOf(root), path.get(), 0, oxKEY_GENERAL, &handle_);
    path.WriteBack();
    return result;
  }
  // Also when nothing was opened.
  void Close() { RegCloseKey(handle_); }

  LONG Write(TextReference value_name, DWORD type, const void* data, std::size_t bytes) {
    AnsiArgument name(value_name);
    const LONG result =
        RegSetValueExA(handle_, name.get(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(bytes));
    name.WriteBack();
    return result;
  }
  LONG Read(TextReference value_name, DWORD& type, char* data, DWORD& bytes) {
    AnsiArgument name(value_name);
    const LONG result = RegQueryValueExA(handle_, name.get(), nullptr, &type, reinterpret_cast<BYTE*>(data), &bytes);
    name.WriteBack();
    return result;
  }

 private:
  HKEY handle_ = nullptr;
};

// Text and numbers are written; a value of another type is none, which is a
// success.
LONG WriteKeyValue(Key& key, TextReference value_name, enumRegistryConsts type, const VARIANT& value) {
  if (type == oxREG_SZ) {
    const std::string text = Followed(value).vt == VT_NULL ? std::string() : Narrowed(ArgumentText(value).View());
    // Its NUL is part of the data.
    return key.Write(value_name, oxREG_SZ, text.c_str(), text.size() + 1);
  }
  if (type == oxREG_DWORD) {
    LONG number = 0;
    CheckConversion(OxLongOf(&value, &number));
    return key.Write(value_name, oxREG_DWORD, &number, sizeof number);
  }
  return kSuccess;
}

// A number is written in hexadecimal behind what the caller's text was, byte by
// byte from the last, each without leading zeros, and the whole read as one
// number again. A last byte of 0 was taken for an end of text before, so 261
// comes back as 21; callers rely on it.
Text NumberText(TextView before, TextView data) {
  Text digits(u"&h");
  digits += before;
  const std::string bytes = Narrowed(data);
  for (auto at = bytes.rbegin(); at != bytes.rend(); ++at) {
    BstrHandle byte;
    CheckRuntime(OxHexText(static_cast<BYTE>(*at), byte.Receive()));
    digits += byte.View();
  }
  ULONG number = 0;
  if (FAILED(OxHexValue(BstrHandle(digits).get(), &number))) return digits;
  return FromUtf8(std::to_string(number));
}

}  // namespace

void classOrvix::CreateNewKey(TextReference name, enumRegistryConsts root) { CreateNewKeyRet(name, root); }

bool classOrvix::CreateNewKeyRet(TextReference name, enumRegistryConsts root) {
  Key key;
  const LONG result = key.Create(root, name);
  key.Close();
  return result == kSuccess;
}

void classOrvix::SetKeyValue(TextReference key_name, TextReference value_name, const VARIANT& setting,
                             enumRegistryConsts type, RootKeyOrClasses root) {
  Key key;
  // Without a key the write fails, and nobody hears of it.
  key.Open(root, key_name);
  try {
    WriteKeyValue(key, value_name, type, setting);
  } catch (...) {
    key.Close();
    throw;
  }
  key.Close();
}

bool classOrvix::SetKeyValueRet(TextReference key_name, TextReference value_name, const VARIANT& setting,
                                enumRegistryConsts type, RootKeyOrClasses root) {
  return FallBackSilently(false, [&] {
    Key key;
    LONG result = key.Open(root, key_name);
    if (result == kSuccess) result = WriteKeyValue(key, value_name, type, setting);
    key.Close();
    return result == kSuccess;
  });
}

bool classOrvix::GetKeyValue(enumRegistryConsts root, TextReference key_name, TextReference value_name,
                             TextReference value) {
  constexpr DWORD kRoom = 1024;
  char buffer[kRoom]{};
  DWORD bytes = kRoom;
  DWORD type = 0;
  Key key;
  LONG result = key.Open(root, key_name);
  if (result == kSuccess) result = key.Read(value_name, type, buffer, bytes);
  if (result != kSuccess) {
    value.Assign({});
    key.Close();
    return false;
  }

  const BstrHandle widened = Widened({buffer, kRoom});
  const TextView whole = widened.View();
  const auto length = static_cast<LONG>(bytes);
  const bool ends_in_nul = Equal(Mid(whole, length, 1), TextView(u"\0", 1));
  const TextView data = Left(whole, ends_in_nul ? length - 1 : length);
  if (type == oxREG_SZ) value.Assign(data);
  if (type == oxREG_DWORD) value.Assign(NumberText(value.View(), data));
  key.Close();
  return true;
}

}  // namespace Orvix::component
