// The walk holds open directories, so nothing that is exchanged for a link
// meanwhile can lead it elsewhere.
#include "platform/shell/copy_tree.h"

#include <algorithm>

#include "platform/shell/collision.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"
#include "platform/shell/levels.h"
#include "platform/shell/spellings.h"
#include "platform/shell/staged.h"
#include "platform/shell/tree_walk.h"

namespace Orvix::Shell {

namespace {

// Whoever copies owns the copy, so it does not run with another's rights.
constexpr mode_t kCopiedModes = 01777;

constexpr int kMostTries = 1000;  // where others take names at the same time

// Gives a directory its modes and times when its content is complete, or was
// given up: it must not stay closed to others.
void Finish(const Descriptor& directory, const struct stat& facts) {
  const timespec times[2] = {facts.st_atim, facts.st_mtim};
  // A file system without modes or times keeps the content all the same.
  if (fchmod(directory.get(), facts.st_mode & kCopiedModes) != 0 || futimens(directory.get(), times) != 0) return;
}

struct Counter {
  Progress& progress;
  bool with_bytes;

  void Enter(const Levels&, const Entries& entries) { progress.Expect(static_cast<std::int64_t>(entries.size()), 0); }
  void Entry(int directory, const char* name, unsigned char type) {
    struct stat facts;
    if (!with_bytes || type != DT_REG || !FactsOf(directory, name, Side::kSource, facts)) return;
    progress.Expect(0, facts.st_size);
  }
  void Leave(int, const char*) {}
};

}  // namespace

void ExpectTree(Progress& progress, int directory, const char* name, bool with_bytes) {
  struct stat facts;
  if (!FactsOf(directory, name, Side::kSource, facts)) return;
  progress.Expect(1, with_bytes && S_ISREG(facts.st_mode) ? facts.st_size : 0);
  std::string path;
  if (S_ISDIR(facts.st_mode)) WalkTree(directory, name, path, Counter{progress, with_bytes});
}

// The directories on the way down, at the source and at the target.
class TreeCopier::Walk {
 public:
  Walk(TreeCopier& copier, const Route& route)
      : copier_(copier), in_(route.from, Side::kSource), out_(route.to, Side::kTarget) {}
  Walk(const Walk&) = delete;
  Walk& operator=(const Walk&) = delete;
  ~Walk() {
    if (open_.size() > out_.depth()) open_.pop_back();  // could not be gone into
    while (!open_.empty()) {
      Descriptor left;
      const INT code = out_.TryLeave(left);
      if (open_.back().made) Finish(left, open_.back().facts);
      open_.pop_back();
      if (code != 0) return;
    }
  }

  // As for Copy, of a directory.
  bool Run(const Route& route) {
    Enter(route, copier_.from_path_->size(), copier_.to_path_->size());
    for (;;) {
      Open& here = open_.back();
      if (here.next < here.entries.size()) {
        Next(here);
      } else if (const bool whole = Leave(); open_.empty()) {
        return whole;
      }
    }
  }

 private:
  struct Open {
    Entries entries;
    Spellings spellings;
    struct stat facts;
    bool made;
    std::size_t record;       // in what was copied
    std::size_t from_length;  // of the paths of the directory above
    std::size_t to_length;
    std::size_t next = 0;
    bool whole = true;
  };

  void Next(Open& here) {
    const std::size_t i = here.next++;
    const char* const name = here.entries.NameOf(i);
    std::string to_name = here.spellings.Find(out_.here(), name);
    std::string& from_path = *copier_.from_path_;
    std::string& to_path = *copier_.to_path_;
    const std::size_t from_length = from_path.size();
    const std::size_t to_length = to_path.size();
    from_path.append("/").append(name);
    to_path.append("/").append(to_name);
    const Route route{in_.here(), name, out_.here(), std::move(to_name), here.made};
    if (here.entries.TypeOf(i) == DT_DIR) return Enter(route, from_length, to_length);
    here.whole = copier_.CopyEntry(route, here.entries.TypeOf(i)) && here.whole;
    from_path.resize(from_length);
    to_path.resize(to_length);
  }

  void Enter(const Route& route, std::size_t from_length, std::size_t to_length) {
    in_.Enter(route.name);
    struct stat facts;
    if (fstat(in_.here(), &facts) != 0) Fail(errno, Side::kSource);
    copier_.depth_ = open_.size();
    const std::size_t record = copier_.copied_ == nullptr ? 0 : copier_.copied_->size();
    copier_.Note(route.name, facts);
    Entries entries(in_.here(), Side::kSource);
    entries.Sort();
    bool made = false;
    const std::string name = Make(route, made);
    Spellings spellings(made);
    for (std::size_t i = 0; !made && i < entries.size(); ++i) spellings.Expect(entries.NameOf(i));
    open_.push_back({std::move(entries), std::move(spellings), facts, made, record, from_length, to_length});
    copier_.depth_ = open_.size();
    out_.Enter(name.c_str());
  }

  // Makes the directory, or finds one to join; its name.
  std::string Make(const Route& route, bool& made) {
    const auto make = [&](const std::string& name) {
      // Closed to others until it has its own modes.
      if (mkdirat(route.to, name.c_str(), 0700) == 0) return true;
      if (errno != EEXIST) Fail(errno, Side::kTarget);
      return false;
    };
    for (int tries = 0; tries < kMostTries; ++tries) {
      const Verdict verdict = route.fresh ? Verdict::kFree
                                          : Decide(copier_.operation_, route.to, route.to_name.c_str(),
                                                   /*incoming_directory=*/true, *copier_.to_path_);
      if (verdict == Verdict::kMerge) return route.to_name;
      made = true;
      if (verdict == Verdict::kOtherName) return TakeNumberedName(route.to_name, /*directory=*/true, make);
      if (make(route.to_name)) return route.to_name;
      if (route.fresh) break;  // someone else is at work in there
    }
    throw ShellError{kInUse};
  }

  bool Leave() {
    in_.Leave();
    const Open left = std::move(open_.back());
    open_.pop_back();
    Descriptor directory;
    const INT code = out_.TryLeave(directory);
    if (left.made) Finish(directory, left.facts);
    if (code != 0) throw ShellError{code};
    copier_.depth_ = open_.size();
    if (copier_.copied_ != nullptr) (*copier_.copied_)[left.record].whole = left.whole;
    copier_.operation_.progress.ItemDone(*copier_.from_path_);
    if (!open_.empty()) open_.back().whole = left.whole && open_.back().whole;
    copier_.from_path_->resize(left.from_length);
    copier_.to_path_->resize(left.to_length);
    return left.whole;
  }

  TreeCopier& copier_;
  Levels in_;
  Levels out_;
  std::vector<Open> open_;
};

bool TreeCopier::Copy(const Route& route, std::string& from_path, std::string& to_path, CopiedTree* copied) {
  from_path_ = &from_path;
  to_path_ = &to_path;
  copied_ = copied;
  depth_ = 0;
  struct stat facts;
  if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  if (!S_ISDIR(facts.st_mode)) return CopyEntry(route, static_cast<unsigned char>(IFTODT(facts.st_mode)));
  return Walk(*this, route).Run(route);
}

void TreeCopier::Note(const char* name, const struct stat& facts) {
  if (copied_ != nullptr) copied_->push_back({name, facts, depth_, false});
}

bool TreeCopier::CopyEntry(const Route& route, unsigned char type) {
  const bool whole = type == DT_REG ? CopyFile(route) : CopyLinkOrSpecial(route);
  if (copied_ != nullptr) copied_->back().whole = whole;
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
  for (int tries = 0; verdict != Verdict::kOtherName; ++tries) {
    if (staged.Commit(route.to_name.c_str(), verdict == Verdict::kReplace)) return true;
    if (tries == kMostTries) throw ShellError{kInUse};
    verdict = decide();  // it has been taken meanwhile
    if (verdict == Verdict::kSkip) return false;
  }
  TakeNumberedName(route.to_name, /*directory=*/false,
                   [&](const std::string& name) { return staged.Commit(name.c_str(), /*replace=*/false); });
  return true;
}

bool TreeCopier::CopyFile(const Route& route) {
  // Not to wait for a writer, should it be a pipe by now.
  const Descriptor in(OpenAt(route.from, route.name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat facts;
  if (!in.ok() || fstat(in.get(), &facts) != 0) Fail(errno, Side::kSource);
  if (!S_ISREG(facts.st_mode)) throw ShellError{kInvalidNames};  // exchanged meanwhile
  Note(route.name, facts);
  const bool placed = Place(route, [&](Staged& staged) {
    const mode_t modes = facts.st_mode & kCopiedModes;
    const int out = staged.MakeFile(modes & 0777);
    content_.Copy(in.get(), facts, out, *from_path_);
    const timespec times[2] = {facts.st_atim, facts.st_mtim};
    struct stat made;
    if (fstat(out, &made) != 0) Fail(errno, Side::kTarget);
    // What the process's mask took from the file, it gets back.
    if ((made.st_mode & 07777) != modes && fchmod(out, modes) != 0 && errno != EPERM && errno != EOPNOTSUPP) {
      Fail(errno, Side::kTarget);
    }
    if (futimens(out, times) != 0 && errno != EPERM && errno != EOPNOTSUPP) Fail(errno, Side::kTarget);
  });
  operation_.progress.ItemDone(*from_path_);
  return placed;
}

bool TreeCopier::CopyLinkOrSpecial(const Route& route) {
  struct stat facts;
  if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
  Note(route.name, facts);
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
