// The rename is tried first and never replaces anything by itself; what stands
// in its way decides how to go on.
#include "platform/shell/move_tree.h"

#include <vector>

#include "platform/shell/collision.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"
#include "platform/shell/levels.h"
#include "platform/shell/remove_tree.h"
#include "platform/shell/spellings.h"
#include "platform/shell/staged.h"

namespace Orvix::Shell {

namespace {

constexpr int kMostTries = 1000;  // where others take names at the same time

}  // namespace

// The directories that are joined, on the way down.
class TreeMover::Walk {
 public:
  Walk(TreeMover& mover, const Route& route)
      : mover_(mover), in_(route.from, Side::kSource), out_(route.to, Side::kTarget) {}

  // False when something stays at its source.
  bool Run(const Route& route) {
    Enter(route, mover_.from_path_->size(), mover_.to_path_->size());
    for (;;) {
      Open& here = open_.back();
      if (here.next < here.entries.size()) {
        Next(here);
        continue;
      }
      const bool all = here.all;
      in_.Leave();
      out_.Leave();
      const char* const name = open_.size() == 1 ? route.name : NameOfLast(open_[open_.size() - 2]);
      if (all && unlinkat(in_.here(), name, AT_REMOVEDIR) != 0) Fail(errno, Side::kSource);
      mover_.operation_.progress.ItemDone(*mover_.from_path_);
      mover_.from_path_->resize(here.from_length);
      mover_.to_path_->resize(here.to_length);
      open_.pop_back();
      if (open_.empty()) return all;
      open_.back().all = all && open_.back().all;
    }
  }

 private:
  struct Open {
    Entries entries;
    Spellings spellings;
    std::size_t from_length;  // of the paths of the directory above
    std::size_t to_length;
    std::size_t next = 0;
    bool all = true;
  };

  static const char* NameOfLast(const Open& open) { return open.entries.NameOf(open.next - 1); }

  void Next(Open& here) {
    const char* const name = here.entries.NameOf(here.next++);
    std::string to_name = here.spellings.Find(out_.here(), name);
    std::string& from_path = *mover_.from_path_;
    std::string& to_path = *mover_.to_path_;
    const std::size_t from_length = from_path.size();
    const std::size_t to_length = to_path.size();
    from_path.append("/").append(name);
    to_path.append("/").append(to_name);
    const Route route{in_.here(), name, out_.here(), std::move(to_name), false};
    const Outcome outcome = mover_.MoveEntry(route);
    if (outcome == Outcome::kMerge) return Enter(route, from_length, to_length);
    here.all = outcome == Outcome::kMoved && here.all;
    from_path.resize(from_length);
    to_path.resize(to_length);
  }

  void Enter(const Route& route, std::size_t from_length, std::size_t to_length) {
    in_.Enter(route.name);
    if (in_.IsMountPoint()) {
      mover_.operation_.progress.Stopped(*mover_.from_path_, kMountedHere);
      throw ShellError{kInUse};
    }
    out_.Enter(route.to_name.c_str());
    Entries entries(in_.here(), Side::kSource);
    entries.Sort();
    Spellings spellings(/*fresh=*/false);
    for (std::size_t i = 0; i < entries.size(); ++i) spellings.Expect(entries.NameOf(i));
    open_.push_back({std::move(entries), std::move(spellings), from_length, to_length});
  }

  TreeMover& mover_;
  Levels in_;
  Levels out_;
  std::vector<Open> open_;
};

bool TreeMover::Move(const Route& route, std::string& from_path, std::string& to_path) {
  from_path_ = &from_path;
  to_path_ = &to_path;
  const Outcome outcome = MoveEntry(route);
  return outcome == Outcome::kMerge ? Walk(*this, route).Run(route) : outcome == Outcome::kMoved;
}

TreeMover::Outcome TreeMover::MoveEntry(const Route& route) {
  const auto move_to = [&](const std::string& name) {
    return RenameToFreeName(route.from, route.name, route.to, name.c_str());
  };
  for (int tries = 0;; ++tries) {
    const int error = move_to(route.to_name);
    if (error == 0) break;
    if (error == EXDEV) return MoveByCopying(route);
    struct stat facts;
    if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
    if ((error != EEXIST && error != ENOTEMPTY) || tries == kMostTries) Fail(error, Side::kTarget);
    const bool directory = S_ISDIR(facts.st_mode);
    const Verdict verdict = Decide(operation_, route.to, route.to_name.c_str(), directory, *to_path_);
    if (verdict == Verdict::kFree) continue;  // what was there has gone
    if (verdict == Verdict::kSkip) return Outcome::kKept;
    if (verdict == Verdict::kMerge) return Outcome::kMerge;
    if (verdict == Verdict::kReplace) {
      if (!Replace(route)) return MoveByCopying(route);
      break;
    }
    bool across = false;
    TakeNumberedName(route.to_name, directory, [&](const std::string& name) {
      const int taken = move_to(name);
      across = taken == EXDEV;
      if (taken != 0 && taken != EEXIST && !across) Fail(taken, Side::kTarget);
      return taken == 0 || across;
    });
    if (across) return MoveByCopying(route);
    break;
  }
  operation_.progress.ItemDone(*from_path_);
  return Outcome::kMoved;
}

// False when the two are on different file systems.
bool TreeMover::Replace(const Route& route) {
  struct stat source;
  struct stat target;
  const bool same = FactsOf(route.from, route.name, Side::kSource, source) &&
                    FactsOf(route.to, route.to_name.c_str(), Side::kTarget, target) && SameFile(source, target);
  if (same) {
    // Two names of one file: renaming one onto the other does nothing.
    if (unlinkat(route.from, route.name, 0) != 0) Fail(errno, Side::kSource);
    return true;
  }
  if (renameat(route.from, route.name, route.to, route.to_name.c_str()) == 0) return true;
  if (errno != EXDEV) Fail(errno, Side::kTarget);
  return false;
}

bool TreeMover::CopyForMove(const Route& route, std::string& from_path, std::string& to_path, CopiedTree& copied) {
  // Nothing is copied that would have to stay.
  CheckRemovable(operation_, route.from, route.name, from_path);
  if (operation_.progress.IsWatched()) {
    operation_.progress.Expect(-1, 0);  // until now the tree counted as one item
    ExpectTree(operation_.progress, route.from, route.name, /*with_bytes=*/true);
  }
  const bool whole = copier_.Copy(route, from_path, to_path, &copied);
  // The copies must be safe before the originals go.
  const Descriptor target(OpenAt(route.to, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!target.ok() || Retried([&] { return syncfs(target.get()); }) != 0) Fail(errno, Side::kTarget);
  return whole;
}

TreeMover::Outcome TreeMover::MoveByCopying(const Route& route) {
  CopiedTree copied;
  bool began = false;
  const bool whole = CopyForMove(route, *from_path_, *to_path_, copied);
  if (!RemoveCopied(route.from, copied, began)) throw ShellError{kInUse};
  return whole ? Outcome::kMoved : Outcome::kKept;
}

}  // namespace Orvix::Shell
