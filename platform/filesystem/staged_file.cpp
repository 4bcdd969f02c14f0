// The temporary names are ".orvix-staged-0" and so on. Whoever makes a file keeps
// a shared lock on it until it has its name: one that can be had alone was left
// behind. Links and special files cannot be locked; theirs go by age, since
// they have the name for an instant only.
#include "platform/filesystem/staged_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <ctime>
#include <utility>

namespace Orvix {

namespace {

constexpr int kMostNames = 100'000;
constexpr int kAlwaysLookedAt = 4;  // names that several at work at once may have left
constexpr std::time_t kOldLink_s = 60;

std::string TemporaryName(int number) { return ".orvix-staged-" + std::to_string(number); }

template <class Call>
int Retried(Call call) {
  int result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// The directory entry that carries a descriptor's file, for linkat.
std::string EntryOf(int descriptor) { return "/proc/self/fd/" + std::to_string(descriptor); }

// Whether descriptors have such entries here; once they do, they always do.
bool HasEntries(int descriptor) {
  static std::atomic<bool> known{false};
  struct stat ignored;
  if (!known && fstatat(AT_FDCWD, EntryOf(descriptor).c_str(), &ignored, 0) == 0) known = true;
  return known;
}

// Gives a file without a name one. The first form needs rights that few have.
int LinkDescriptor(int descriptor, int directory, const char* name) {
  if (linkat(descriptor, "", directory, name, AT_EMPTY_PATH) == 0) return 0;
  if (errno != ENOENT && errno != EPERM && errno != EINVAL) return errno;
  return linkat(AT_FDCWD, EntryOf(descriptor).c_str(), directory, name, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

// Takes away what a process that is no more left under a temporary name; whoever
// still works keeps it. True when the name is free now.
bool ClearAbandoned(int directory, const char* name) {
  struct stat there;
  if (fstatat(directory, name, &there, AT_SYMLINK_NOFOLLOW) != 0) return errno == ENOENT;
  if (there.st_uid != geteuid()) return false;
  if (!S_ISREG(there.st_mode)) {
    return std::time(nullptr) - there.st_ctim.tv_sec > kOldLink_s && unlinkat(directory, name, 0) == 0;
  }
  const int file = openat(directory, name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (file < 0) return errno == ENOENT;
  // The lock, once had, keeps all others from clearing: the name stays this file's.
  struct stat locked;
  bool cleared = false;
  if (flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &locked) == 0 &&
      fstatat(directory, name, &there, AT_SYMLINK_NOFOLLOW) == 0 && locked.st_ino == there.st_ino) {
    cleared = unlinkat(directory, name, 0) == 0;
  }
  close(file);
  return cleared;
}

}  // namespace

int RenameToFreeName(int from, const char* name, int to, const char* to_name) noexcept {
  if (renameat2(from, name, to, to_name, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  // A file system without that call. A second name is never given to what is
  // taken, so making one and dropping the first replaces nothing either.
  if (linkat(from, name, to, to_name, 0) == 0) {
    if (unlinkat(from, name, 0) == 0) return 0;
    const int error = errno;
    unlinkat(to, to_name, 0);
    return error;
  }
  if (errno == EEXIST) return EEXIST;
  // Directories, and file systems without links: look first.
  struct stat there;
  if (fstatat(to, to_name, &there, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;
  return renameat(from, name, to, to_name) == 0 ? 0 : errno;
}

int LateFailure(int descriptor) noexcept {
  // They show when any descriptor of the file is closed.
  const int second = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  if (second < 0) return errno;
  return close(second) == 0 || errno == EINTR ? 0 : errno;
}

StagedFile::~StagedFile() {
  if (!name_.empty()) unlinkat(directory_, name_.c_str(), 0);
  if (descriptor_ >= 0) close(descriptor_);  // last, with the lock
}

// Calls `make`, which gives an errno value, with names until one is free.
template <class Make>
int StagedFile::UnderTemporaryName(Make&& make) {
  for (int number = 0; number < kMostNames; ++number) {
    std::string name = TemporaryName(number);
    int error = make(name.c_str());
    if (error == EEXIST && ClearAbandoned(directory_, name.c_str())) error = make(name.c_str());
    if (error == 0) name_ = std::move(name);
    if (error != EEXIST) return error;
  }
  return EEXIST;
}

StagedFile::StagedFile(int directory) : directory_(directory) {
  for (int number = 0; number < kAlwaysLookedAt; ++number) {
    ClearAbandoned(directory_, TemporaryName(number).c_str());
  }
}

int StagedFile::MakeFile(mode_t mode) {
  descriptor_ = Retried([&] { return openat(directory_, ".", O_RDWR | O_TMPFILE | O_CLOEXEC, mode); });
  if (descriptor_ >= 0) {
    if (HasEntries(descriptor_)) return 0;
    close(std::exchange(descriptor_, -1));  // there would be no way to name it
  } else if (errno != EOPNOTSUPP && errno != EISDIR && errno != EINVAL && errno != ENOENT) {
    return errno;
  }
  for (;;) {
    const int error = UnderTemporaryName([&](const char* name) {
      descriptor_ =
          Retried([&] { return openat(directory_, name, O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); });
      return descriptor_ >= 0 ? 0 : errno;
    });
    if (error != 0) return error;
    flock(descriptor_, LOCK_SH | LOCK_NB);
    // Before it was locked somebody may have cleared it.
    struct stat made;
    struct stat there;
    if (fstat(descriptor_, &made) == 0 && fstatat(directory_, name_.c_str(), &there, AT_SYMLINK_NOFOLLOW) == 0 &&
        made.st_ino == there.st_ino) {
      return 0;
    }
    name_.clear();
    close(std::exchange(descriptor_, -1));
  }
}

int StagedFile::MakeLink(const char* content) {
  return UnderTemporaryName([&](const char* name) { return symlinkat(content, directory_, name) == 0 ? 0 : errno; });
}

int StagedFile::MakeSpecial(mode_t mode, dev_t device) {
  return UnderTemporaryName([&](const char* name) { return mknodat(directory_, name, mode, device) == 0 ? 0 : errno; });
}

int StagedFile::Commit(const char* name, bool replace) {
  if (descriptor_ >= 0) {
    if (const int error = LateFailure(descriptor_); error != 0) return error;
  }
  if (name_.empty() && !replace) return LinkDescriptor(descriptor_, directory_, name);
  if (name_.empty()) {
    // Where a lock is not to be had, nobody else gets one either.
    flock(descriptor_, LOCK_SH | LOCK_NB);
    const int error =
        UnderTemporaryName([&](const char* temporary) { return LinkDescriptor(descriptor_, directory_, temporary); });
    if (error != 0) return error;
  }
  const int error = replace ? (renameat(directory_, name_.c_str(), directory_, name) == 0 ? 0 : errno)
                            : RenameToFreeName(directory_, name_.c_str(), directory_, name);
  if (error == 0) name_.clear();
  return error;
}

int StagedFile::Close() {
  // Interrupted or not, the descriptor is gone after one call.
  const int descriptor = std::exchange(descriptor_, -1);
  return descriptor < 0 || close(descriptor) == 0 || errno == EINTR ? 0 : errno;
}

}  // namespace Orvix
