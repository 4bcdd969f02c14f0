#include "frame/registration.h"

#include <vector>

#include "frame/classes.h"
#include "frame/error.h"

namespace Orvix::component {

namespace {

constexpr DWORD kReadWrite = 31;  // query, set, create, enumerate, notify

// One value that registration writes: the key under the classes root, the
// value's name (empty: the key's default) and its text.
struct Entry {
  Text key;
  Text name;
  Text value;
};

Text GuidText(const GUID& guid) {
  OLECHAR text[40] = {};
  StringFromGUID2(guid, text, 40);
  return text;
}

Text ModulePath() {
  HMODULE module = nullptr;
  // Any address inside this library names it.
  const auto* inside = reinterpret_cast<const OLECHAR*>(&RegisterComponent);
  if (GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT, inside,
                         &module) == 0) {
    RaiseFailure(SELFREG_E_CLASS);
  }
  Text path(4096, u'\0');
  const DWORD units = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
  if (units == 0 || units >= path.size()) RaiseFailure(SELFREG_E_CLASS);
  path.resize(units);
  return path;
}

std::vector<Entry> Entries() {
  const Text path = ModulePath();
  const Text library = GuidText(LIBID_Orvix);
#if defined(_WIN32)
  const Text platform = u"win32";
#else
  const Text platform = u"linux64";
#endif
  std::vector<Entry> entries;
  for (const ClassEntry& entry : Classes()) {
    const Text name = Text(u"Orvix.").append(entry.name.begin(), entry.name.end());
    const Text class_id = GuidText(*entry.clsid);
    const Text key = u"CLSID\\" + class_id;
    entries.push_back({key, {}, name});
    entries.push_back({key + u"\\InprocServer32", {}, path});
    entries.push_back({key + u"\\InprocServer32", u"ThreadingModel", u"Apartment"});
    entries.push_back({key + u"\\ProgID", {}, name});
    entries.push_back({key + u"\\TypeLib", {}, library});
    entries.push_back({key + u"\\VERSION", {}, u"1.0"});
    entries.push_back({name, {}, name});
    entries.push_back({name + u"\\CLSID", {}, class_id});
  }
  const Text key = u"TypeLib\\" + library + u"\\1.0";
  entries.push_back({key, {}, u"Orvix"});
  entries.push_back({key + u"\\0\\" + platform, {}, path});
  entries.push_back({key + u"\\FLAGS", {}, u"0"});
  return entries;
}

class Key {
 public:
  static Key Create(const Text& name) {
    Key key;
    if (RegCreateKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, nullptr, 0, kReadWrite, nullptr, &key.handle_,
                        nullptr) != 0) {
      RaiseFailure(SELFREG_E_CLASS);
    }
    return key;
  }
  static Key Open(const Text& name) {
    Key key;
    if (RegOpenKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, kReadWrite, &key.handle_) != 0) key.handle_ = nullptr;
    return key;
  }
  Key(Key&& other) noexcept : handle_(std::exchange(other.handle_, nullptr)) {}
  Key& operator=(Key&&) = delete;
  ~Key() {
    if (handle_ != nullptr) RegCloseKey(handle_);
  }

  [[nodiscard]] HKEY get() const { return handle_; }
  [[nodiscard]] bool IsEmpty() const {
    char name[2] = {};
    DWORD characters = 1;
    constexpr LONG kNoMoreItems = 259;
    if (RegEnumKeyExA(handle_, 0, name, &characters, nullptr, nullptr, nullptr, nullptr) != kNoMoreItems) return false;
    characters = 1;
    return RegEnumValueA(handle_, 0, name, &characters, nullptr, nullptr, nullptr, nullptr) == kNoMoreItems;
  }

 private:
  Key() = default;
  HKEY handle_ = nullptr;
};

// Deletes a key and the keys above it as long as they hold nothing.
void DeleteEmptyKeys(Text name) {
  while (!name.empty()) {
    {
      const Key key = Key::Open(name);
      if (key.get() != nullptr && !key.IsEmpty()) return;
    }
    RegDeleteKeyW(MakeRootKey(kClassesRoot), name.c_str());
    const std::size_t separator = name.rfind(u'\\');
    name.resize(separator == Text::npos ? 0 : separator);
  }
}

}  // namespace

void RegisterComponent() {
  for (const Entry& entry : Entries()) {
    const Key key = Key::Create(entry.key);
    const auto bytes = static_cast<DWORD>((entry.value.size() + 1) * sizeof(OLECHAR));
    if (RegSetValueExW(key.get(), entry.name.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(entry.value.c_str()),
                       bytes) != 0) {
      RaiseFailure(SELFREG_E_CLASS);
    }
  }
}

void UnregisterComponent() {
  const std::vector<Entry> entries = Entries();
  for (const Entry& entry : entries) {
    const Key key = Key::Open(entry.key);
    if (key.get() != nullptr) RegDeleteValueW(key.get(), entry.name.c_str());
  }
  for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry) DeleteEmptyKeys(entry->key);
}

}  // namespace Orvix::component
