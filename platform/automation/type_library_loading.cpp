// Type libraries. A component library hands its own out through
// DllGetClassObject, called with the type library's identifier and ITypeLib.
#include <sys/stat.h>

#include <new>

#include "orvix/orvix.h"
#include "platform/automation/classes_root.h"
#include "platform/automation/component_library.h"
#include "platform/automation/guid_text.h"

namespace Orvix {

namespace {

constexpr TextView kPlatform = sizeof(void*) == 8 ? u"linux64" : u"linux32";

struct Version {
  unsigned major = 0;
  unsigned minor = 0;
};

// Both numbers are hexadecimal: "1.0", "2.a".
std::optional<Version> ParseVersion(TextView text) {
  unsigned numbers[2] = {};
  int part = 0;
  std::size_t digits = 0;
  for (const char16_t unit : text) {
    if (unit == u'.') {
      if (part == 1 || digits == 0) return std::nullopt;
      part = 1;
      digits = 0;
      continue;
    }
    unsigned digit = 16;
    if (unit >= u'0' && unit <= u'9') digit = unit - u'0';
    if (unit >= u'a' && unit <= u'f') digit = unit - u'a' + 10U;
    if (unit >= u'A' && unit <= u'F') digit = unit - u'A' + 10U;
    if (digit == 16 || ++digits > 4) return std::nullopt;
    numbers[part] = numbers[part] * 16 + digit;
  }
  if (part != 1 || digits == 0) return std::nullopt;
  return Version{numbers[0], numbers[1]};
}

Text HexText(unsigned number) {
  Text text;
  do {
    text.insert(text.begin(), u"0123456789abcdef"[number & 0xF]);
    number >>= 4;
  } while (number != 0);
  return text;
}

// The key of the version that serves a request: the one asked for, else the
// highest minor version above it, since versions of one major number only add.
std::optional<Text> FindVersion(const Text& library, const Version& wanted) {
  std::optional<Text> best;
  unsigned best_minor = 0;
  for (const Text& name : ClassesKeysBelow(library)) {
    const std::optional<Version> version = ParseVersion(name);
    if (!version || version->major != wanted.major || version->minor < wanted.minor) continue;
    if (version->minor == wanted.minor) return library + u"\\" + name;
    if (!best || version->minor > best_minor) {
      best = library + u"\\" + name;
      best_minor = version->minor;
    }
  }
  return best;
}

// The library's file for a language, for the language without its region, or for
// all languages.
std::optional<Text> FindFile(const Text& version, LCID lcid) {
  for (const LCID language : {lcid, lcid & 0x3FF, LCID{0}}) {
    const std::optional<Text> file = ReadClassesText(version + u"\\" + HexText(language) + u"\\" + Text(kPlatform));
    if (file) return file;
  }
  return std::nullopt;
}

bool IsSameFile(const Text& left, const Text& right) {
  if (left == right) return true;
  struct stat first {};
  struct stat second {};
  return stat(ToUtf8(left).c_str(), &first) == 0 && stat(ToUtf8(right).c_str(), &second) == 0 &&
         first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

// The identifiers that `file` is registered under as a type library.
std::vector<GUID> RegisteredLibraries(const Text& file) {
  std::vector<GUID> found;
  for (const Text& name : ClassesKeysBelow(u"TypeLib")) {
    const std::optional<GUID> guid = ParseGuid(name);
    if (!guid) continue;
    const Text library = u"TypeLib\\" + name;
    for (const Text& version : ClassesKeysBelow(library)) {
      for (const Text& language : ClassesKeysBelow(library + u"\\" + version)) {
        const std::optional<Text> registered =
            ReadClassesText(library + u"\\" + version + u"\\" + language + u"\\" + Text(kPlatform));
        if (!registered || !IsSameFile(*registered, file)) continue;
        if (found.empty() || found.back() != *guid) found.push_back(*guid);
      }
    }
  }
  return found;
}

HRESULT Load(GetClassObjectFunction get, REFGUID libid, ITypeLib** library) {
  if (get == nullptr) return TYPE_E_CANTLOADLIBRARY;
  void* object = nullptr;
  const HRESULT result = get(libid, IID_ITypeLib, &object);
  if (FAILED(result)) return result == E_OUTOFMEMORY ? result : TYPE_E_CANTLOADLIBRARY;
  *library = static_cast<ITypeLib*>(object);
  return S_OK;
}

// A library that is not registered yet does not say its identifier, so the one
// known here is tried first: then the registry need not be read.
HRESULT LoadFile(const Text& file, ITypeLib** library) {
  const GetClassObjectFunction get = LoadComponent(file);
  if (get == nullptr) return TYPE_E_CANTLOADLIBRARY;
  HRESULT result = Load(get, LIBID_Orvix, library);
  if (result == S_OK) return result;
  for (const GUID& libid : RegisteredLibraries(file)) {
    result = Load(get, libid, library);
    if (result == S_OK) return result;
  }
  return result;
}

}  // namespace

}  // namespace Orvix

// `file` is the absolute native name of a component library, as
// GetModuleFileNameW gives it. TYPE_E_CANTLOADLIBRARY when it cannot be loaded or
// has no type library.
HRESULT ORVIX_CALL LoadTypeLib(const OLECHAR* file, ITypeLib** library) {
  if (file == nullptr || library == nullptr) return E_INVALIDARG;
  *library = nullptr;
  try {
    return Orvix::LoadFile(file, library);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}

// TYPE_E_LIBNOTREGISTERED when the registry names no file for the identifier, the
// major version and at least the minor one; TYPE_E_CANTLOADLIBRARY when the file
// it names does not have the library.
HRESULT ORVIX_CALL LoadRegTypeLib(REFGUID libid, WORD major, WORD minor, LCID lcid, ITypeLib** library) {
  if (library == nullptr) return E_INVALIDARG;
  *library = nullptr;
  try {
    const std::optional<Orvix::Text> version =
        Orvix::FindVersion(u"TypeLib\\" + Orvix::GuidText(libid), {major, minor});
    if (!version) return TYPE_E_LIBNOTREGISTERED;
    const std::optional<Orvix::Text> file = Orvix::FindFile(*version, lcid);
    if (!file) return TYPE_E_LIBNOTREGISTERED;
    return Orvix::Load(Orvix::LoadComponent(*file), libid, library);
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  }
}
