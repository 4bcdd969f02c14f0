// What is checked for each item before the tree functions do the work.
#include "platform/shell/transfer.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/names/case_fold.h"
#include "platform/shell/collision.h"
#include "platform/shell/copy_tree.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/move_tree.h"
#include "platform/shell/spellings.h"
#include "platform/shell/staged.h"

namespace Orvix::Shell {

namespace {

// Whether the directory with the facts `outer` is `path` or above it; what is
// missing of the path counts as below what is there.
bool IsAtOrAbove(const struct stat& outer, std::string path) {
  Descriptor here;
  for (;;) {
    here = Descriptor(OpenAt(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    if (here.ok()) break;
    if ((errno != ENOENT && errno != ENOTDIR) || path == "/") Fail(errno, Side::kTarget);
    const std::size_t slash = path.rfind('/');
    path.resize(slash == 0 ? 1 : slash);
  }
  struct stat facts;
  if (fstat(here.get(), &facts) != 0) Fail(errno, Side::kTarget);
  for (;;) {
    if (SameFile(facts, outer)) return true;
    Descriptor above(OpenAt(here.get(), "..", O_PATH | O_DIRECTORY | O_CLOEXEC));
    struct stat next;
    if (!above.ok() || fstat(above.get(), &next) != 0) Fail(errno, Side::kTarget);
    if (SameFile(next, facts)) return false;  // the root
    facts = next;
    here = std::move(above);
  }
}

class Transferrer {
 public:
  Transferrer(Operation& operation, const Plan& plan) : operation_(operation), copier_(operation), mover_(operation) {
    for (const Item& item : plan.items) coming_[item.target.directory].push_back(&item.target.name);
  }

  void Run(const Item& item);

 private:
  bool ReachTarget(const std::string& path);
  void MakeTarget(const std::string& path);
  bool MeetsItself(const Item& item, const struct stat& source, const std::string& name);

  Operation& operation_;
  TreeCopier copier_;
  TreeMover mover_;
  // What the whole request puts into each directory.
  std::unordered_map<std::string_view, std::vector<const std::string*>> coming_;
  std::unordered_set<std::string> unwanted_;  // directories that the user does not want made
  // Items often share their directories with the item before.
  std::string from_path_;
  Descriptor from_;
  std::string to_path_;
  Descriptor to_;
  std::unordered_map<std::string, Spellings> known_;  // for each directory once reached
  Spellings* spellings_ = nullptr;                    // of the one that is open
};

// Opens the directory that the item goes into, made when it is missing. False
// when the user does not want it made.
bool Transferrer::ReachTarget(const std::string& path) {
  if (to_.ok() && path == to_path_) return true;
  if (unwanted_.contains(path)) return false;
  struct stat facts;
  if (stat(path.c_str(), &facts) != 0) {
    if (errno != ENOENT) Fail(errno, Side::kTarget);
    if (!operation_.progress.Allows(kOxAskMakeDirectory, path, /*loses_nothing=*/true)) {
      unwanted_.insert(path);
      return false;
    }
    MakeTarget(path);
  }
  to_ = ReachDirectory(path, Side::kTarget);
  to_path_ = path;
  const auto [place, is_new] = known_.try_emplace(path, /*fresh=*/false);
  spellings_ = &place->second;
  if (is_new) {
    for (const std::string* const name : coming_[path]) spellings_->Expect(*name);
  }
  return true;
}

void Transferrer::MakeTarget(const std::string& path) {
  for (std::size_t end = path.find('/', 1);; end = path.find('/', end + 1)) {
    const std::string part = path.substr(0, end);
    struct stat there;
    if (mkdir(part.c_str(), 0777) != 0) {
      const int error = errno;
      // A directory above that may not be written may well be there.
      if (stat(part.c_str(), &there) != 0) Fail(error, Side::kTarget);
      if (!S_ISDIR(there.st_mode)) throw ShellError{kInvalidNames};
    }
    if (end == std::string::npos) return;
  }
}

// Whether the target is the source itself. True when all is done by that: the
// caller wants the name spelled in another case.
bool Transferrer::MeetsItself(const Item& item, const struct stat& source, const std::string& name) {
  struct stat there;
  if (!FactsOf(to_.get(), name.c_str(), Side::kTarget, there) || !SameFile(source, there)) return false;
  const bool copying = operation_.request.operation == kCopy;
  if (copying && operation_.request.Has(kRenameOnCollision)) return false;
  if (!copying && item.spelling != name && EqualNames(FromUtf8(item.spelling), FromUtf8(name)) &&
      !FactsOf(to_.get(), item.spelling.c_str(), Side::kTarget, there)) {
    const int error = RenameToFreeName(from_.get(), item.source.name.c_str(), to_.get(), item.spelling.c_str());
    if (error != 0) Fail(error, Side::kTarget);
    return true;
  }
  throw ShellError{S_ISDIR(source.st_mode) ? kSameDirectory : kSameFile};
}

void Transferrer::Run(const Item& item) {
  if (!from_.ok() || from_path_ != item.source.directory) {
    from_ = ReachDirectory(item.source.directory, Side::kSource);
    from_path_ = item.source.directory;
  }
  struct stat source;
  const char* const name = item.source.name.c_str();
  if (!FactsOf(from_.get(), name, Side::kSource, source)) throw ShellError{kInvalidNames};
  const bool directory = S_ISDIR(source.st_mode);
  if (directory) {
    struct stat target;
    if (lstat(item.target.Path().c_str(), &target) == 0 && SameFile(source, target)) {
      // Told apart below: the name may just be spelled in another way.
    } else if (IsAtOrAbove(source, item.target.directory)) {
      throw ShellError{kIntoItself};
    }
  }
  const bool renaming = operation_.request.operation == kRename;
  struct stat there;
  if (renaming) {
    struct stat from_facts;
    if (fstat(from_.get(), &from_facts) != 0) Fail(errno, Side::kSource);
    if (stat(item.target.directory.c_str(), &there) != 0 || !SameFile(from_facts, there)) {
      throw ShellError{kOtherDirectory};
    }
  }
  if (!ReachTarget(item.target.directory)) return;
  const std::string to_name = spellings_->Find(to_.get(), item.target.name);
  if (MeetsItself(item, source, to_name)) return operation_.progress.ItemDone(item.source.Path());
  // A renaming does not join directories.
  if (renaming && directory && !operation_.request.Has(kRenameOnCollision) &&
      FactsOf(to_.get(), to_name.c_str(), Side::kTarget, there) && S_ISDIR(there.st_mode)) {
    throw ShellError{kDirectoryInTheWay};
  }
  std::string from_path = item.source.Path();
  std::string to_path = item.target.Path();
  const TreeCopier::Route route{from_.get(), name, to_.get(), to_name, false};
  if (operation_.request.operation == kCopy) {
    copier_.Copy(route, from_path, to_path, nullptr);
  } else {
    mover_.Move(route, from_path, to_path);
  }
}

}  // namespace

void Transfer(Operation& operation, const Plan& plan) {
  Progress& progress = operation.progress;
  if (progress.IsWatched() && operation.request.operation == kCopy) {
    for (const Item& item : plan.items) {
      const Descriptor directory = ReachDirectory(item.source.directory, Side::kSource);
      ExpectTree(progress, directory.get(), item.source.name.c_str(), /*with_bytes=*/true);
    }
  } else {
    progress.Expect(static_cast<std::int64_t>(plan.items.size()), 0);
  }
  if (!plan.items.empty()) progress.Start(plan.items.front().source.Path());
  Transferrer transferrer(operation, plan);
  for (const Item& item : plan.items) transferrer.Run(item);
}

}  // namespace Orvix::Shell
