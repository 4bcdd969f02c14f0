// The walk holds open directories, so nothing that is exchanged for a link
// meanwhile can lead it elsewhere.
#include "platform/shell/copy_tree.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string_view>
#include <unordered_set>

#include "platform/shell/collision.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"
#include "platform/shell/staged.h"

namespace Orvix::Shell {

namespace {

// Whoever copies owns the copy, so it does not run with another's rights.
constexpr mode_t kCopiedModes = 01777;

// Gives a directory its modes and times when its content is complete, or was
// given up: it must not stay closed to others.
class DirectoryFinish {
 public:
  DirectoryFinish(int directory, const struct stat& facts) : directory_(directory), facts_(facts) {}
  DirectoryFinish(const DirectoryFinish&) = delete;
  DirectoryFinish& operator=(const DirectoryFinish&) = delete;
  ~DirectoryFinish() {
    const timespec times[2] = {facts_.st_atim, facts_.st_mtim};
    // A file system without modes or times keeps the content all the same.
    if (fchmod(directory_, facts_.st_mode & kCopiedModes) != 0 || futimens(directory_, times) != 0) return;
  }

 private:
  int directory_;
  const struct stat& facts_;
};

// The process's mask for new files; all of it where that cannot be told. Asking
// by setting it would disturb other threads.
mode_t FileMask() {
  std::ifstream status("/proc/self/status");
  for (std::string line; std::getline(status, line);) {
    if (line.starts_with("Umask:")) return static_cast<mode_t>(std::strtoul(line.c_str() + 6, nullptr, 8));
  }
  return 0777;
}

void ExpectBelow(Progress& progress, int directory, bool with_bytes, int depth) {
  if (depth > kDeepest) throw ShellError{kTooDeep};
  const Entries entries(directory, Side::kSource);
  progress.Expect(static_cast<std::int64_t>(entries.size()), 0);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    struct stat facts;
    if (entries.TypeOf(i) == DT_DIR) {
      const Descriptor below = OpenDirectory(directory, entries.NameOf(i), Side::kSource);
      ExpectBelow(progress, below.get(), with_bytes, depth + 1);
    } else if (with_bytes && entries.TypeOf(i) == DT_REG &&
               FactsOf(directory, entries.NameOf(i), Side::kSource, facts)) {
      progress.Expect(0, facts.st_size);
    }
  }
}

}  // namespace

void ExpectTree(Progress& progress, int directory, const char* name, bool with_bytes) {
  struct stat facts;
  if (!FactsOf(directory, name, Side::kSource, facts)) return;
  progress.Expect(1, with_bytes && S_ISREG(facts.st_mode) ? facts.st_size : 0);
  if (!S_ISDIR(facts.st_mode)) return;
  const Descriptor below = OpenDirectory(directory, name, Side::kSource);
  ExpectBelow(progress, below.get(), with_bytes, 1);
}

bool TreeCopier::Copy(const Route& route, std::string& from_path, std::string& to_path, CopiedEntry* copied) {
  from_path_ = &from_path;
  to_path_ = &to_path;
  if (!mask_known_) mask_ = FileMask();
  mask_known_ = true;
  struct stat facts;
  if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  return CopyEntry(route, static_cast<unsigned char>(IFTODT(facts.st_mode)), copied, 0);
}

bool TreeCopier::CopyEntry(const Route& route, unsigned char type, CopiedEntry* copied, int depth) {
  if (depth > kDeepest) throw ShellError{kTooDeep};
  if (copied != nullptr) copied->name = route.name;
  const bool whole = type == DT_DIR   ? CopyDirectory(route, copied, depth)
                     : type == DT_REG ? CopyFile(route, copied)
                                      : CopyLinkOrSpecial(route, copied);
  if (copied != nullptr) copied->whole = whole;
  return whole;
}

bool TreeCopier::CopyDirectory(const Route& route, CopiedEntry* copied, int depth) {
  const Descriptor in = OpenDirectory(route.from, route.name, Side::kSource);
  struct stat facts;
  if (fstat(in.get(), &facts) != 0) Fail(errno, Side::kSource);
  if (copied != nullptr) copied->facts = facts;
  const auto make = [&](const std::string& name) {
    // Closed to others until it has its own modes.
    if (mkdirat(route.to, name.c_str(), 0700) == 0) return true;
    if (errno != EEXIST) Fail(errno, Side::kTarget);
    return false;
  };
  std::string name = route.to_name;
  bool made = false;
  while (!made) {
    const Verdict verdict = route.fresh
                                ? Verdict::kFree
                                : Decide(operation_, route.to, name.c_str(), /*incoming_directory=*/true, *to_path_);
    if (verdict == Verdict::kMerge) break;
    if (verdict == Verdict::kOtherName) {
      name = TakeNumberedName(route.to_name, /*directory=*/true, make);
      made = true;
    } else {
      made = make(name);
      if (!made && route.fresh) throw ShellError{kInUse};  // someone else is at work in there
    }
  }
  const Descriptor out = OpenDirectory(route.to, name.c_str(), Side::kTarget);
  bool whole = false;
  if (made) {
    const DirectoryFinish finish(out.get(), facts);
    whole = CopyContent(in.get(), out.get(), made, copied, depth);
  } else {
    whole = CopyContent(in.get(), out.get(), made, copied, depth);
  }
  operation_.progress.ItemDone(*from_path_);
  return whole;
}

bool TreeCopier::CopyContent(int in, int out, bool made, CopiedEntry* copied, int depth) {
  const Entries entries(in, Side::kSource);
  Spellings spellings(out, made);
  if (!made) {
    for (std::size_t i = 0; i < entries.size(); ++i) spellings.Expect(entries.NameOf(i));
  }
  if (copied != nullptr) copied->below.reserve(entries.size());
  bool whole = true;
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const char* const name = entries.NameOf(i);
    std::string to_name = spellings.Find(name);
    const Step from_step(*from_path_, name);
    const Step to_step(*to_path_, to_name.c_str());
    CopiedEntry* const below = copied == nullptr ? nullptr : &copied->below.emplace_back();
    whole = CopyEntry({in, name, out, std::move(to_name), made}, entries.TypeOf(i), below, depth + 1) && whole;
  }
  return whole;
}

// Makes an entry with `stage` and gives it the name of the route, or another
// where that is wanted.
template <class Stage>
bool TreeCopier::Place(const Route& route, Stage&& stage) {
  const auto decide = [&] {
    return Decide(operation_, route.to, route.to_name.c_str(), /*incoming_directory=*/false, *to_path_);
  };
  Verdict verdict = route.fresh ? Verdict::kFree : decide();
  if (verdict == Verdict::kSkip) return false;
  Staged staged(route.to);
  stage(staged);
  while (verdict != Verdict::kOtherName) {
    if (staged.Commit(route.to_name.c_str(), verdict == Verdict::kReplace)) return true;
    verdict = decide();  // it has been taken meanwhile
    if (verdict == Verdict::kSkip) return false;
  }
  TakeNumberedName(route.to_name, /*directory=*/false,
                   [&](const std::string& name) { return staged.Commit(name.c_str(), /*replace=*/false); });
  return true;
}

bool TreeCopier::CopyFile(const Route& route, CopiedEntry* copied) {
  // Not to wait for a writer, should it be a pipe by now.
  const Descriptor in(openat(route.from, route.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat facts;
  if (!in.ok() || fstat(in.get(), &facts) != 0) Fail(errno, Side::kSource);
  if (!S_ISREG(facts.st_mode)) throw ShellError{kInvalidNames};  // exchanged meanwhile
  if (copied != nullptr) copied->facts = facts;
  const bool placed = Place(route, [&](Staged& staged) {
    const mode_t modes = facts.st_mode & kCopiedModes;
    const int out = staged.MakeFile(modes & 0777);
    content_.Copy(in.get(), facts, out, *from_path_);
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    // What the mask took from the file, it gets back.
    if ((modes & (mask_ | ~mode_t{0777})) != 0 && fchmod(out, modes) != 0 && errno != EPERM && errno != EOPNOTSUPP) {
      Fail(errno, Side::kTarget);
    }
    if (futimens(out, times) != 0 && errno != EPERM && errno != EOPNOTSUPP) Fail(errno, Side::kTarget);
  });
  operation_.progress.ItemDone(*from_path_);
  return placed;
}

bool TreeCopier::CopyLinkOrSpecial(const Route& route, CopiedEntry* copied) {
  struct stat facts;
  if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  if (copied != nullptr) copied->facts = facts;
  const bool placed = Place(route, [&](Staged& staged) {
    if (S_ISLNK(facts.st_mode)) {
      std::string content(static_cast<std::size_t>(std::max<off_t>(facts.st_size, 4096)) + 1, '\0');
      const ssize_t length = readlinkat(route.from, route.name, content.data(), content.size() - 1);
      if (length < 0) Fail(errno, Side::kSource);
      content.resize(static_cast<std::size_t>(length));
      staged.MakeLink(content.c_str());
    } else if (S_ISREG(facts.st_mode) || S_ISDIR(facts.st_mode)) {
      throw ShellError{kInvalidNames};  // exchanged meanwhile
    } else {
      staged.MakeSpecial(facts.st_mode & (S_IFMT | kCopiedModes), facts.st_rdev);
    }
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    if (utimensat(route.to, staged.name(), times, AT_SYMLINK_NOFOLLOW) != 0 && errno != EPERM && errno != EOPNOTSUPP) {
      Fail(errno, Side::kTarget);
    }
  });
  operation_.progress.ItemDone(*from_path_);
  return placed;
}

}  // namespace Orvix::Shell
