#include "platform/automation/classes_root.h"

#include <algorithm>

#include "orvix/runtime.h"
#include "platform/automation/installed_classes.h"

namespace Orvix {

namespace {

constexpr DWORD kRead = 1 | 8;  // query values, enumerate keys

class OpenKey {
 public:
  explicit OpenKey(const Text& name) {
    if (RegOpenKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, kRead, &key_) != 0) key_ = nullptr;
  }
  OpenKey(const OpenKey&) = delete;
  OpenKey& operator=(const OpenKey&) = delete;
  ~OpenKey() {
    if (key_ != nullptr) RegCloseKey(key_);
  }
  [[nodiscard]] HKEY get() const { return key_; }

 private:
  HKEY key_ = nullptr;
};

std::optional<Text> RegisteredText(const Text& name) {
  const OpenKey key(name);
  if (key.get() == nullptr) return std::nullopt;
  constexpr LONG kMoreData = 234;
  Text text(512, u'\0');
  for (;;) {
    DWORD type = 0;
    auto bytes = static_cast<DWORD>(text.size() * sizeof(OLECHAR));
    const LONG result =
        RegQueryValueExW(key.get(), nullptr, nullptr, &type, reinterpret_cast<BYTE*>(text.data()), &bytes);
    if (result != 0 && result != kMoreData) return std::nullopt;
    text.resize((bytes + 1) / sizeof(OLECHAR));
    if (result == kMoreData) continue;
    if (type != REG_SZ) return std::nullopt;
    text.resize(bytes / sizeof(OLECHAR));
    return text.substr(0, text.find(u'\0'));
  }
}

std::vector<Text> RegisteredKeysBelow(const Text& name) {
  std::vector<Text> names;
  const OpenKey key(name);
  if (key.get() == nullptr) return names;
  for (DWORD index = 0;; ++index) {
    // One byte a character, and no key name is longer.
    char found[256] = {};
    DWORD characters = sizeof found;
    if (RegEnumKeyExA(key.get(), index, found, &characters, nullptr, nullptr, nullptr, nullptr) != 0) return names;
    // Identifiers, versions and languages are plain ASCII; nothing else is of use.
    names.emplace_back(found, found + characters);
  }
}

}  // namespace

std::optional<Text> ReadClassesText(const Text& name) {
  std::optional<Text> text = RegisteredText(name);
  return text ? text : InstalledClassesText(name);
}

std::vector<Text> ClassesKeysBelow(const Text& name) {
  std::vector<Text> names = RegisteredKeysBelow(name);
  for (Text& installed : InstalledKeysBelow(name)) {
    if (std::find(names.begin(), names.end(), installed) == names.end()) names.push_back(std::move(installed));
  }
  return names;
}

}  // namespace Orvix
