// Resolution of names: splitting, ".." and the walk down from the root.
#include "platform/names/path_map.h"

#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <utility>
#include <vector>

#include "frame/runtime/runtime_error.h"
#include "platform/names/drive_map.h"
#include "platform/names/other_spelling.h"

namespace Orvix {

namespace {

constexpr LONG kBadName = 52;
constexpr LONG kPathNotFound = 76;

struct SplitName {
  std::string base;                     // the root's directory without its "/"
  bool relative = false;                // counted from the process's directory
  char16_t drive = 0;                   // its letter, or 0
  std::vector<std::string> components;  // without "." and "..", but for ".." at the front of a relative name
  bool directory = false;               // a separator stands behind them
};

void CheckUnits(TextView name) {
  if (name.empty()) throw RuntimeError{kBadName};
  for (const char16_t unit : name) {
    if (unit == u'\0' || unit == u'*' || unit == u'?') throw RuntimeError{kBadName};
  }
}

// Takes the first component off `rest`, and all separators around it.
TextView TakeComponent(TextView& rest) {
  while (!rest.empty() && IsSeparator(rest.front())) rest.remove_prefix(1);
  const TextView component = rest.substr(0, rest.find_first_of(u"\\/"));
  rest.remove_prefix(component.size());
  return component;
}

// Takes the root off `rest`.
void SplitRoot(TextView& rest, SplitName& split) {
  std::optional<std::string> directory = "";
  if (rest.size() >= 2 && IsDriveLetter(rest[0]) && rest[1] == u':') {
    split.drive = rest[0];
    directory = DirectoryOfDrive(rest[0]);
    rest.remove_prefix(2);
  } else if (rest.size() >= 2 && IsSeparator(rest[0]) && IsSeparator(rest[1])) {
    const TextView server = TakeComponent(rest);
    directory = DirectoryOfShare(server, TakeComponent(rest));
  } else {
    split.relative = !IsSeparator(rest[0]);
  }
  if (!directory) throw RuntimeError{kPathNotFound};
  split.base = *std::move(directory);
}

SplitName Split(TextView name) {
  CheckUnits(name);
  bool exact = true;
  std::string ignored = ToUtf8(name, &exact);
  if (!exact) throw RuntimeError{kBadName};
  SplitName split;
  split.directory = IsSeparator(name.back());
  SplitRoot(name, split);
  while (!name.empty()) {
    const TextView component = TakeComponent(name);
    if (component.empty() || component == u".") continue;
    auto& components = split.components;
    if (component != u"..") {
      components.push_back(ToUtf8(component));
    } else if (!components.empty() && components.back() != "..") {
      components.pop_back();
    } else if (split.relative) {
      components.emplace_back("..");
    }
  }
  return split;
}

// `path` and the components from `first` on.
std::string Joined(std::string path, const SplitName& split, std::size_t first) {
  for (std::size_t i = first; i < split.components.size(); ++i) {
    if (!path.empty() || !split.relative) path += '/';
    path += split.components[i];
  }
  if (split.components.empty()) {
    if (path.empty()) path.push_back(split.relative ? '.' : '/');
  } else if (split.directory) {
    path += '/';
  }
  return path;
}

bool IsThere(const std::string& path) {
  struct stat ignored;
  return lstat(path.c_str(), &ignored) == 0;
}

// Looks one component up in `directory` (with its "/", or empty): the spelling
// on disk, or empty when it is not there. `*unknown` when that cannot be told,
// so that the call that uses the name shall say why.
std::string LookUp(const std::string& directory, const std::string& component, bool* unknown) {
  if (IsThere(directory + component)) return component;
  *unknown = errno != ENOENT;
  if (*unknown) return {};
  // Of several the lowest by bytes, so that the answer is stable.
  std::vector<std::string> others = OtherSpellings(AT_FDCWD, directory.empty() ? "." : directory.c_str(), component);
  return others.empty() ? std::string() : std::move(others.front());
}

std::string WithoutDotsAndSpaces(const std::string& component) {
  return component.substr(0, component.find_last_not_of(". ") + 1);
}

// The path of the first `count` components as they are given.
std::string Beginning(const SplitName& split, std::size_t count) {
  std::string path = split.base;
  for (std::size_t i = 0; i < count; ++i) {
    if (!path.empty() || !split.relative) path += '/';
    path += split.components[i];
  }
  return path;
}

// Walks down component by component, from the deepest directory that is there
// as it is given.
NativeName Walk(const SplitName& split) {
  std::size_t start = split.components.size() - 1;
  while (start > 0 && !IsThere(Beginning(split, start))) --start;
  std::string path = Beginning(split, start);
  for (std::size_t i = start; i < split.components.size(); ++i) {
    const std::string& component = split.components[i];
    const std::string directory = path.empty() && split.relative ? "" : path + "/";
    bool unknown = false;
    std::string found = LookUp(directory, component, &unknown);
    if (const std::string plain = WithoutDotsAndSpaces(component);
        found.empty() && !unknown && !plain.empty() && plain != component) {
      found = LookUp(directory, plain, &unknown);
    }
    if (found.empty()) {
      struct stat facts;
      const bool no_directory = stat(directory.empty() ? "." : directory.c_str(), &facts) != 0 && errno == ENOENT;
      const bool inner = i + 1 < split.components.size();
      return {Joined(std::move(path), split, i), !unknown && (inner || no_directory), false};
    }
    path = directory + found;
  }
  if (split.directory && !split.components.empty()) path += '/';
  return {Joined(std::move(path), split, split.components.size()), false, false};
}

// A name whose directory is there as it is given, which is nearly always so, and
// which is not there itself. None where that is not all there is to know.
std::optional<NativeName> InItsDirectory(const SplitName& split, const NativeName& as_given) {
  const std::string& component = split.components.back();
  const std::string above = Beginning(split, split.components.size() - 1);
  const std::string directory = above.empty() ? (split.relative ? "" : "/") : above + "/";
  int unreadable = 0;
  const auto others = OtherSpellings(AT_FDCWD, directory.empty() ? "." : directory.c_str(), component, &unreadable);
  if (unreadable != 0) return std::nullopt;
  if (others.empty()) {
    const std::string plain = WithoutDotsAndSpaces(component);
    if (!plain.empty() && plain != component) return std::nullopt;
    return NativeName{as_given.path, false, false, true};
  }
  if (IsThere(directory + component)) return as_given;  // a link that leads nowhere
  return NativeName{directory + others.front() + (split.directory ? "/" : ""), false, false};
}

}  // namespace

NativeName NameAsGiven(TextView name) {
  const SplitName split = Split(name);
  return {Joined(split.base, split, 0), false, split.components.empty() && !split.relative};
}

NativeName ResolveName(TextView name, bool looked_for) {
  const SplitName split = Split(name);
  NativeName as_given{Joined(split.base, split, 0), false, split.components.empty() && !split.relative};
  if (!looked_for && (IsThere(as_given.path) || errno != ENOENT)) return as_given;
  if (split.drive != 0) MakeOwnDrive(split.drive);
  if (split.components.empty()) return as_given;
  if (std::optional<NativeName> found = InItsDirectory(split, as_given)) return *std::move(found);
  return Walk(split);
}

std::string NativePath(TextView name) {
  NativeName resolved = ResolveName(name);
  if (resolved.parent_missing) throw RuntimeError{kPathNotFound};
  return std::move(resolved.path);
}

std::string AbsolutePath(std::string native) {
  if (!native.empty() && native.front() == '/') return native;
  char here[PATH_MAX];
  if (getcwd(here, sizeof here) == nullptr) throw RuntimeError{kPathNotFound};
  std::string absolute = here;
  if (native.empty()) return absolute;
  if (absolute.back() != '/') absolute += '/';
  return absolute + native;
}

}  // namespace Orvix
