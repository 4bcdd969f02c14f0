// Lookups on disk before anything is changed.
#include "platform/shell/sources.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>

#include "frame/runtime/name_pattern.h"
#include "frame/runtime/runtime_error.h"
#include "platform/names/case_fold.h"
#include "platform/names/path_map.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"

namespace Orvix::Shell {

namespace {

constexpr LONG kUnmapped = 76;

// Where the last component begins; separators behind it are not part of the text.
std::size_t StartOfLast(TextView name) {
  if (const std::size_t last = name.find_last_of(u"\\/"); last != TextView::npos) return last + 1;
  return name.size() >= 2 && name[1] == u':' ? 2 : 0;
}

TextView WithoutSeparators(TextView name) {
  while (!name.empty() && IsSeparator(name.back())) name.remove_suffix(1);
  return name;
}

bool IsQualified(TextView name) { return IsSeparator(name.front()) || (name.size() >= 2 && name[1] == u':'); }

NativeName Resolve(TextView name, INT code_when_unmapped) {
  try {
    return ResolveName(name);
  } catch (const RuntimeError& error) {
    throw ShellError{error.number == kUnmapped ? code_when_unmapped : kInvalidNames};
  }
}

// The process's directory itself, or one above it, has no name to work with.
bool IsDots(std::string_view name) { return name == "." || name == ".."; }

std::string RealPath(const std::string& path, Side side) {
  char real[PATH_MAX];
  if (realpath(path.c_str(), real) == nullptr) Fail(errno, side);
  return real;
}

void FindMatches(TextView name, bool files_only, std::vector<Place>& matches) {
  const std::size_t start = StartOfLast(name);
  const TextView directory = name.substr(0, start);
  if (HasWildcards(directory)) throw ShellError{kInvalidNames};
  std::string path;
  try {
    path = directory.empty() ? AbsolutePath("") : AbsolutePath(ResolveName(directory).path);
  } catch (const RuntimeError&) {
    return;  // a drive that is not there holds nothing
  }
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  const Descriptor open_directory(OpenAt(AT_FDCWD, path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!open_directory.ok() && (errno == ENOENT || errno == ENOTDIR)) return;
  if (!open_directory.ok()) Fail(errno, Side::kSource);
  const Entries entries(open_directory.get(), Side::kSource);
  NamePattern pattern{FoldName(name.substr(start))};
  struct Match {
    Text folded;
    const char* name;
  };
  std::vector<Match> found;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string_view entry = entries.NameOf(i);
    if ((files_only && entries.TypeOf(i) == DT_DIR) || entry.find('\\') != std::string_view::npos) continue;
    Text folded = FoldName(FromUtf8(entry));
    if (pattern.Matches(folded)) found.push_back({std::move(folded), entries.NameOf(i)});
  }
  std::sort(found.begin(), found.end(), [](const Match& a, const Match& b) {
    const int by_fold = a.folded.compare(b.folded);
    return by_fold != 0 ? by_fold < 0 : std::string_view(a.name) < b.name;
  });
  for (const Match& match : found) matches.push_back({path, match.name});
}

}  // namespace

bool HasWildcards(TextView text) { return text.find_first_of(u"*?") != TextView::npos; }

Place Split(std::string native) {
  while (native.size() > 1 && native.back() == '/') native.pop_back();
  const std::size_t slash = native.rfind('/');
  if (native.size() == 1) return {"/", "."};
  if (slash == 0) return {"/", native.substr(1)};
  return {native.substr(0, slash), native.substr(slash + 1)};
}

Source FindSource(TextView name, bool files_only) {
  Source source;
  source.qualified = IsQualified(name);
  const TextView plain = WithoutSeparators(name);
  source.pattern = HasWildcards(plain.substr(StartOfLast(plain)));
  if (source.pattern) {
    FindMatches(plain, files_only, source.matches);
    return source;
  }
  if (HasWildcards(name)) throw ShellError{kInvalidNames};
  const NativeName native = Resolve(name, kInvalidNames);
  if (native.is_root) throw ShellError{kRootDirectory};
  if (native.parent_missing) throw ShellError{kInvalidNames};
  Place place = Split(AbsolutePath(native.path));
  if (IsDots(place.name)) place = Split(RealPath(place.Path(), Side::kSource));
  if (place.name == ".") throw ShellError{kRootDirectory};
  struct stat facts;
  if (lstat(place.Path().c_str(), &facts) != 0) {
    if (errno == ENOENT) throw ShellError{kFileMissing};
    if (errno == ENAMETOOLONG && place.Path().size() >= PATH_MAX) throw ShellError{kTooDeep};
    Fail(errno, Side::kSource);
  }
  // A separator at the end asks for a directory; the link to one still counts
  // as the link.
  struct stat behind;
  if (IsSeparator(name.back()) && !S_ISDIR(facts.st_mode) &&
      (stat(place.Path().c_str(), &behind) != 0 || !S_ISDIR(behind.st_mode))) {
    throw ShellError{kInvalidNames};
  }
  source.matches.push_back(std::move(place));
  return source;
}

Target FindTarget(TextView name) {
  if (HasWildcards(name)) throw ShellError{kWildcardInTarget};
  Target target;
  const std::string path = AbsolutePath(Resolve(name, kPathMissing).path);
  target.says_directory = IsSeparator(name.back());
  target.place = Split(path);
  if (IsDots(target.place.name)) target.place = Split(RealPath(path, Side::kTarget));
  const TextView plain = WithoutSeparators(name);
  if (plain.size() > StartOfLast(plain)) target.spelling = ToUtf8(plain.substr(StartOfLast(plain)));
  if (IsDots(target.spelling)) target.spelling.clear();
  struct stat facts;
  const std::string whole = target.place.Path();
  if (stat(whole.c_str(), &facts) == 0) {
    target.is_directory = S_ISDIR(facts.st_mode);
    target.is_other = !target.is_directory;
    // What the caller names may be reached through a link; what is below may not.
    if (target.is_directory) target.place = Split(RealPath(whole, Side::kTarget));
  } else if (errno == ENAMETOOLONG) {
    throw ShellError{whole.size() >= PATH_MAX ? kTooDeep : kNameTooLong};
  } else if (errno != ENOENT && errno != ENOTDIR && errno != ELOOP) {
    Fail(errno, Side::kTarget);
  } else if (errno != ENOTDIR) {
    target.is_other = lstat(whole.c_str(), &facts) == 0;  // a link that leads nowhere
  }
  return target;
}

Target CurrentDirectory() {
  Target target;
  target.place = Split(RealPath(".", Side::kTarget));
  target.is_directory = true;
  return target;
}

}  // namespace Orvix::Shell
