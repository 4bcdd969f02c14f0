// The way back: the name under a drive or share for a native one.
#include <algorithm>
#include <climits>
#include <cstdlib>

#include "frame/runtime/runtime_error.h"
#include "platform/names/drive_map.h"
#include "platform/names/path_map.h"

namespace Orvix {

namespace {

// Absolute, without empty components, "." and ".."; a trailing "/" is kept. A
// link before ".." is followed, as the system does; in names it is not.
std::string Cleaned(std::string_view absolute) {
  std::string clean;
  const bool directory = absolute.back() == '/';
  while (!absolute.empty()) {
    absolute.remove_prefix(std::min(absolute.find_first_not_of('/'), absolute.size()));
    const std::string_view component = absolute.substr(0, absolute.find('/'));
    absolute.remove_prefix(component.size());
    if (component.empty() || component == ".") continue;
    if (component != "..") {
      clean.append("/").append(component);
      continue;
    }
    char real[PATH_MAX];
    if (realpath(clean.empty() ? "/" : clean.c_str(), real) != nullptr) clean = real;
    clean.resize(std::min(clean.rfind('/'), clean.size()));
  }
  if (directory || clean.empty()) clean += '/';
  return clean;
}

bool Holds(const std::string& directory, const std::string& path) {
  return path.starts_with(directory) && (path.size() == directory.size() || path[directory.size()] == '/');
}

}  // namespace

Text PlatformName(std::string_view native) {
  if (native.empty() || native.find('\\') != std::string_view::npos) throw RuntimeError{52};
  const std::string path = Cleaned(AbsolutePath(std::string(native)));
  const std::vector<MappedRoot> roots = MappedRoots();
  const MappedRoot* nearest = nullptr;
  for (const MappedRoot& root : roots) {
    // A drive goes before a share, even one that is nearer.
    if (nearest != nullptr && nearest->name[0] != u'\\' && root.name[0] == u'\\') break;
    if (!Holds(root.directory, path)) continue;
    if (nearest == nullptr || root.directory.size() > nearest->directory.size()) nearest = &root;
  }
  if (nearest == nullptr) throw RuntimeError{76};
  Text name = nearest->name + FromUtf8(std::string_view(path).substr(nearest->directory.size()));
  std::replace(name.begin(), name.end(), u'/', u'\\');
  if (name.size() == nearest->name.size()) name += u'\\';
  return name;
}

}  // namespace Orvix
