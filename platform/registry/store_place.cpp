#include "platform/registry/store_place.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace Orvix::registry {

namespace {

constexpr char kBelowHome[] = "/.local/share/orvix/registry";

std::string HomeOfUser() {
  std::vector<char> buffer(4096);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
  return entry.pw_dir == nullptr ? std::string() : entry.pw_dir;
}

std::string Absolute(const char* path) {
  if (path[0] == '/') return path;
  std::vector<char> current(4096);
  if (getcwd(current.data(), current.size()) == nullptr) return path;
  return std::string(current.data()) + "/" + path;
}

}  // namespace

const std::string& StorePlace::From(const char* source, const char* below) {
  if (source_ != source || !directory_.ends_with(below)) {
    directory_ = Absolute(source) + below;
    source_ = source;
  }
  return directory_;
}

const std::string& StorePlace::Directory() {
  const char* const named = secure_getenv("ORVIX_REGISTRY");
  if (named != nullptr && named[0] != '\0') return From(named, "");
  const char* const data = secure_getenv("XDG_DATA_HOME");
  // A relative one is to be ignored.
  if (data != nullptr && data[0] == '/') return From(data, "/orvix/registry");
  const char* const home = secure_getenv("HOME");
  if (home != nullptr && home[0] == '/') return From(home, kBelowHome);
  source_.clear();
  directory_ = HomeOfUser();
  if (!directory_.empty()) directory_ += kBelowHome;
  return directory_;
}

int MakeStoreDirectory(const std::string& directory) {
  if (directory.empty()) return EACCES;
  for (std::size_t end = directory.find('/', 1);; end = directory.find('/', end + 1)) {
    const std::string part = directory.substr(0, end);
    if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
      // What is there already may lie on a medium or below a directory where
      // nothing can be made.
      const int error = errno;
      struct stat status {};
      if (stat(part.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return error;
    }
    if (end == std::string::npos) return 0;
  }
}

}  // namespace Orvix::registry
