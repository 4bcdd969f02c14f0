#include "platform/dialogs/start_place.h"

#include <sys/stat.h>

#include <optional>

#include "frame/runtime/runtime_error.h"
#include "platform/names/drive_map.h"
#include "platform/names/path_map.h"

namespace Orvix {
namespace {

bool IsDirectory(const std::string& path) {
  struct stat facts {};
  return stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

std::string WithSlash(std::string directory) {
  if (!directory.ends_with('/')) directory += '/';
  return directory;
}

// The absolute native name; none when the text is no name.
std::optional<std::string> Resolved(TextView name) {
  if (name.empty()) return std::nullopt;
  try {
    return AbsolutePath(ResolveName(name).path);
  } catch (const RuntimeError&) {
    return std::nullopt;
  }
}

bool StartsAtRoot(TextView name) {
  return IsSeparator(name.front()) || (name.size() >= 2 && IsDriveLetter(name[0]) && name[1] == u':');
}

std::string DirectoryPlace(TextView directory) {
  const std::optional<std::string> path = Resolved(directory);
  if (path && IsDirectory(*path)) return WithSlash(*path);
  try {
    return WithSlash(AbsolutePath({}));
  } catch (const RuntimeError&) {
    return "/";  // the process's directory is gone
  }
}

}  // namespace

std::string StartPlace(TextView directory, TextView file_name) {
  std::string start = DirectoryPlace(directory);
  if (file_name.empty()) return start;
  Text name(file_name);
  if (!StartsAtRoot(name)) {
    // Its bytes as given, behind the directory: "sub\a.txt" counts from there.
    Text whole = FromUtf8(start);
    whole += name;
    name = std::move(whole);
  }
  const std::optional<std::string> path = Resolved(name);
  if (!path) return start;
  if (IsDirectory(*path)) return WithSlash(*path);
  const std::string parent = path->substr(0, path->rfind('/') + 1);
  if (!path->ends_with('/') && IsDirectory(parent)) return *path;
  return start;
}

}  // namespace Orvix
