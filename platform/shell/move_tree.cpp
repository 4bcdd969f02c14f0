// The rename is tried first and never replaces anything by itself; what stands
// in its way decides how to go on.
#include "platform/shell/move_tree.h"

#include <string_view>
#include <unordered_set>

#include "platform/shell/collision.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"
#include "platform/shell/remove_tree.h"
#include "platform/shell/staged.h"

namespace Orvix::Shell {

using Route = TreeCopier::Route;

bool TreeMover::Move(const Route& route, std::string& from_path, std::string& to_path) {
  from_path_ = &from_path;
  to_path_ = &to_path;
  return MoveEntry(route, 0);
}

bool TreeMover::MoveEntry(const Route& route, int depth) {
  if (depth > kDeepest) throw ShellError{kTooDeep};
  const auto move_to = [&](const std::string& name) {
    return RenameToFreeName(route.from, route.name, route.to, name.c_str());
  };
  for (;;) {
    const int error = move_to(route.to_name);
    if (error == 0) break;
    if (error == EXDEV) return MoveByCopying(route, *from_path_, *to_path_);
    struct stat facts;
    if (!FactsOf(route.from, route.name, Side::kSource, facts)) throw ShellError{kInvalidNames};
    if (error != EEXIST && error != ENOTEMPTY) Fail(error, Side::kTarget);
    const bool directory = S_ISDIR(facts.st_mode);
    const Verdict verdict = Decide(operation_, route.to, route.to_name.c_str(), directory, *to_path_);
    if (verdict == Verdict::kFree) continue;  // what was there has gone
    if (verdict == Verdict::kSkip) return false;
    if (verdict == Verdict::kMerge) return Merge(route, depth);
    if (verdict == Verdict::kReplace) {
      if (!Replace(route)) return MoveByCopying(route, *from_path_, *to_path_);
      break;
    }
    bool across = false;
    TakeNumberedName(route.to_name, directory, [&](const std::string& name) {
      const int taken = move_to(name);
      across = taken == EXDEV;
      if (taken != 0 && taken != EEXIST && !across) Fail(taken, Side::kTarget);
      return taken == 0 || across;
    });
    if (across) return MoveByCopying(route, *from_path_, *to_path_);
    break;
  }
  operation_.progress.ItemDone(*from_path_);
  return true;
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

bool TreeMover::Merge(const Route& route, int depth) {
  bool all = true;
  {
    const Descriptor in = OpenDirectory(route.from, route.name, Side::kSource);
    const Descriptor out = OpenDirectory(route.to, route.to_name.c_str(), Side::kTarget);
    const Entries entries(in.get(), Side::kSource);
    Spellings spellings(out.get(), /*fresh=*/false);
    for (std::size_t i = 0; i < entries.size(); ++i) spellings.Expect(entries.NameOf(i));
    for (std::size_t i = 0; i < entries.size(); ++i) {
      const char* const name = entries.NameOf(i);
      std::string to_name = spellings.Find(name);
      const Step from_step(*from_path_, name);
      const Step to_step(*to_path_, to_name.c_str());
      all = MoveEntry({in.get(), name, out.get(), std::move(to_name), false}, depth + 1) && all;
    }
  }
  if (all && unlinkat(route.from, route.name, AT_REMOVEDIR) != 0) Fail(errno, Side::kSource);
  operation_.progress.ItemDone(*from_path_);
  return all;
}

bool TreeMover::MoveByCopying(const Route& route, std::string& from_path, std::string& to_path) {
  if (operation_.progress.IsWatched()) {
    operation_.progress.Expect(-1, 0);  // until now the tree counted as one item
    ExpectTree(operation_.progress, route.from, route.name, /*with_bytes=*/true);
  }
  CopiedEntry copied{};
  const bool whole = copier_.Copy(route, from_path, to_path, &copied);
  // The copies must be safe before the originals go.
  const Descriptor target(openat(route.to, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!target.ok() || syncfs(target.get()) != 0) Fail(errno, Side::kTarget);
  if (!RemoveCopied(route.from, copied)) throw ShellError{kInUse};
  return whole;
}

}  // namespace Orvix::Shell
