#include "platform/automation/installed_classes.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "frame/runtime/never_destroyed.h"

namespace Orvix {

namespace {

using Keys = std::map<std::string, std::string>;  // by folded name, in UTF-8

std::string Folded(std::string name) {
  for (char& c : name) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return name;
}

// The folder of the run-time; empty when the loader does not say.
std::filesystem::path OwnFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&OwnFolder), &info) == 0 || info.dli_fname == nullptr) return {};
  std::error_code ignored;
  return std::filesystem::canonical(info.dli_fname, ignored).parent_path();
}

// Takes `[HKEY_CLASSES_ROOT\name]` and, below it, `"" = "text"`; other lines are
// other people's business.
void ReadInto(Keys& keys, const std::filesystem::path& file) {
  constexpr std::string_view kKey = "[HKEY_CLASSES_ROOT\\";
  constexpr std::string_view kText = "\"\" = \"";
  std::ifstream lines(file);
  std::string key;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("[")) {
      key = line.starts_with(kKey) && line.ends_with("]")
                ? Folded(line.substr(kKey.size(), line.size() - kKey.size() - 1))
                : "";
      if (!key.empty()) keys.try_emplace(key);
    } else if (!key.empty() && line.starts_with(kText) && line.size() > kText.size() && line.ends_with("\"")) {
      std::string text = line.substr(kText.size(), line.size() - kText.size() - 1);
      if (text.starts_with("./")) text = (file.parent_path() / text.substr(2)).string();
      keys[key] = std::move(text);
    }
  }
}

Keys ReadAll() {
  Keys keys;
  const std::filesystem::path own = OwnFolder();
  std::error_code error;
  std::vector<std::filesystem::path> files;
  if (!own.empty()) {
    for (std::filesystem::directory_iterator entry(own / "orvix", error), end; !error && entry != end;
         entry.increment(error)) {
      if (entry->path().extension() == ".classes") files.push_back(entry->path());
    }
  }
  std::sort(files.begin(), files.end());
  for (const auto& file : files) ReadInto(keys, file);
  return keys;
}

const Keys& Installed() {
  static NeverDestroyed<Keys> keys(ReadAll());
  return *keys;
}

}  // namespace

std::optional<Text> InstalledClassesText(TextView key) {
  const auto found = Installed().find(Folded(ToUtf8(key)));
  if (found == Installed().end() || found->second.empty()) return std::nullopt;
  return FromUtf8(found->second);
}

std::vector<Text> InstalledKeysBelow(TextView key) {
  const std::string above = Folded(ToUtf8(key)) + "\\";
  std::vector<Text> names;
  for (auto at = Installed().lower_bound(above); at != Installed().end() && at->first.starts_with(above); ++at) {
    const std::string name = at->first.substr(above.size());
    if (name.find('\\') == std::string::npos) names.push_back(FromUtf8(name));
  }
  return names;
}

}  // namespace Orvix
