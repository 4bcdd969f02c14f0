// The table of open files and its locks.
#include "platform/filesystem/open_files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <map>
#include <mutex>

#include "frame/runtime/never_destroyed.h"
#include "frame/runtime/runtime_error.h"
#include "platform/filesystem/errno_numbers.h"

namespace Orvix {

namespace {

struct Openings {
  int lock_descriptor;  // keeps the lock until the last opening goes
  unsigned count;
  unsigned exclusive;  // how many of them keep other processes out
  bool output;
  std::uint64_t length_before;
};

struct OpenFiles {
  std::mutex mutex;
  std::map<FileIdentity, Openings> files;
  std::atomic<std::size_t> count{0};  // of the files, to be asked without the mutex
};

OpenFiles& TheOpenFiles() {
  static NeverDestroyed<OpenFiles> open_files;
  return *open_files;
}

// False when another process is in the way.
bool Lock(int descriptor, bool exclusive) {
  int result = 0;
  do {
    result = flock(descriptor, (exclusive ? LOCK_EX : LOCK_SH) | LOCK_NB);
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno != EWOULDBLOCK;
}

}  // namespace

OpeningMark::OpeningMark(int descriptor, const struct stat& facts, bool output, bool exclusive)
    : identity_(facts), exclusive_(exclusive) {
  OpenFiles& open = TheOpenFiles();
  const std::lock_guard guard(open.mutex);
  if (const auto found = open.files.find(identity_); found != open.files.end()) {
    Openings& openings = found->second;
    if (output || openings.output) throw RuntimeError{55};
    if (exclusive && openings.exclusive == 0 && !Lock(openings.lock_descriptor, true)) {
      Lock(openings.lock_descriptor, false);  // the failed change gave up the lock that was there
      throw RuntimeError{70};
    }
    ++openings.count;
    openings.exclusive += exclusive ? 1 : 0;
    return;
  }
  const auto added = open.files.try_emplace(
      identity_, Openings{-1, 1, exclusive ? 1U : 0U, output, static_cast<std::uint64_t>(facts.st_size)});
  int& lock_descriptor = added.first->second.lock_descriptor;
  lock_descriptor = fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
  const int error = errno;
  if (lock_descriptor < 0 || !Lock(lock_descriptor, exclusive)) {
    const bool locked = lock_descriptor >= 0;
    if (locked) close(lock_descriptor);
    open.files.erase(added.first);
    if (locked) throw RuntimeError{70};
    FailWithErrno(error, FileTask::kCreate);
  }
  open.count = open.files.size();
}

OpeningMark::~OpeningMark() {
  OpenFiles& open = TheOpenFiles();
  const std::lock_guard guard(open.mutex);
  const auto found = open.files.find(identity_);
  Openings& openings = found->second;
  openings.exclusive -= exclusive_ ? 1 : 0;
  if (--openings.count > 0) {
    if (exclusive_ && openings.exclusive == 0) Lock(openings.lock_descriptor, false);
    return;
  }
  close(openings.lock_descriptor);
  open.files.erase(found);
  open.count = open.files.size();
}

bool OpeningMark::KeepOthersOut() {
  OpenFiles& open = TheOpenFiles();
  const std::lock_guard guard(open.mutex);
  Openings& openings = open.files.find(identity_)->second;
  if (Lock(openings.lock_descriptor, true)) return true;
  Lock(openings.lock_descriptor, openings.exclusive != 0);  // the failed change gave up the lock that was there
  return false;
}

bool IsOpenHere(const struct stat& facts) {
  OpenFiles& open = TheOpenFiles();
  const std::lock_guard guard(open.mutex);
  return open.files.contains(FileIdentity(facts));
}

std::optional<std::uint64_t> LengthBeforeOpening(const struct stat& facts) {
  OpenFiles& open = TheOpenFiles();
  if (open.count == 0) return std::nullopt;
  const std::lock_guard guard(open.mutex);
  const auto found = open.files.find(FileIdentity(facts));
  if (found == open.files.end()) return std::nullopt;
  return found->second.length_before;
}

}  // namespace Orvix
