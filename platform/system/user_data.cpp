#include "platform/system/user_data.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace Orvix {

namespace {

std::string HomeDirectory() {
  if (const char* const home = secure_getenv("HOME"); home != nullptr && home[0] == '/') return home;
  std::vector<char> texts(16 * 1024);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, texts.data(), texts.size(), &found) != 0 || found == nullptr) return {};
  return found->pw_dir == nullptr ? std::string() : found->pw_dir;
}

std::string WithoutTrailingSlashes(std::string path) {
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

}  // namespace

std::string UserDataDirectory() {
  const char* const named = secure_getenv("XDG_DATA_HOME");
  if (named != nullptr && named[0] == '/') return WithoutTrailingSlashes(named);
  const std::string home = HomeDirectory();
  return home.empty() ? home : WithoutTrailingSlashes(home) + "/.local/share";
}

int MakeUserDirectory(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string part = path.substr(0, end);
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

}  // namespace Orvix
