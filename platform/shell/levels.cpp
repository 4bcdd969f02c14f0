// The way back up is ".." of the directory below, if that is still the one that
// was come from.
#include "platform/shell/levels.h"

#include <sys/sysmacros.h>

#include <optional>

namespace Orvix::Shell {

namespace {

constexpr std::size_t kMostOpen = 16;

struct Mount {
  dev_t device;
  std::optional<std::uint64_t> number;  // where the kernel tells it
};

Mount MountOf(int directory, Side side) {
  struct statx facts;
  if (statx(directory, "", AT_EMPTY_PATH, STATX_INO | STATX_MNT_ID, &facts) == 0) {
    const dev_t device = makedev(facts.stx_dev_major, facts.stx_dev_minor);
    if ((facts.stx_mask & STATX_MNT_ID) == 0) return {device, std::nullopt};
    return {device, facts.stx_mnt_id};
  }
  if (errno != ENOSYS && errno != EPERM) Fail(errno, side);  // kept from some sandboxes
  struct stat plain;
  if (fstat(directory, &plain) != 0) Fail(errno, side);
  return {plain.st_dev, std::nullopt};
}

}  // namespace

int Levels::TryEnter(const char* name) {
  Descriptor below(OpenAt(here(), name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat facts;
  if (!below.ok() || fstat(below.get(), &facts) != 0) return errno;
  levels_.push_back({std::move(below), facts.st_dev, facts.st_ino});
  if (levels_.size() > kMostOpen) levels_[levels_.size() - 1 - kMostOpen].directory.Close();
  return 0;
}

void Levels::Enter(const char* name) {
  if (const int error = TryEnter(name); error != 0) Fail(error, side_);
}

bool Levels::IsMountPoint() const {
  const int above = levels_.size() > 1 ? levels_[levels_.size() - 2].directory.get() : base_;
  const Mount inner = MountOf(here(), side_);
  const Mount outer = MountOf(above, side_);
  // Parts of one file system may have device numbers of their own.
  if (inner.number.has_value() && outer.number.has_value()) return inner.number != outer.number;
  return inner.device != outer.device;
}

INT Levels::TryLeave(Descriptor& left) {
  left = std::move(levels_.back().directory);
  levels_.pop_back();
  if (levels_.empty() || levels_.back().directory.ok()) return 0;
  Level& above = levels_.back();
  Descriptor reached(OpenAt(left.get(), "..", O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  struct stat facts;
  if (!reached.ok() || fstat(reached.get(), &facts) != 0) return CodeOfErrno(errno, side_);
  if (facts.st_dev != above.device || facts.st_ino != above.inode) return kInUse;
  above.directory = std::move(reached);
  return 0;
}

Descriptor Levels::Leave() {
  Descriptor left;
  if (const INT code = TryLeave(left); code != 0) throw ShellError{code};
  return left;
}

}  // namespace Orvix::Shell
