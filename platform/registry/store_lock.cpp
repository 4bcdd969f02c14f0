#include "platform/registry/store_lock.h"

#include <fcntl.h>
#include <pwd.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace Orvix::registry {

namespace {

std::string HomeDirectory() {
  const char* home = std::getenv("HOME");
  if (home != nullptr && home[0] == '/') return home;
  std::vector<char> buffer(4096);
  passwd entry{};
  passwd* found = nullptr;
  if (getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
  return entry.pw_dir == nullptr ? std::string() : entry.pw_dir;
}

std::string Absolute(const char* path) {
  if (path[0] == '/') return path;
  std::vector<char> current(4096);
  if (getcwd(current.data(), current.size()) == nullptr) return path;
  return std::string(current.data()) + "/" + path;
}

int Flock(int fd, int operation) noexcept {
  int result = 0;
  do {
    result = flock(fd, operation);
  } while (result != 0 && errno == EINTR);
  return result;
}

bool IsReadOnly(const struct stat& status) { return (status.st_mode & 0222) == 0; }

}  // namespace

LONG ResultOfErrno(int error) noexcept {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return kAccessDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case ENOMEM:
      return kOutOfMemory;
    default:
      return kReadWriteFailed;
  }
}

std::string StoreDirectory() {
  const char* named = std::getenv("ORVIX_REGISTRY");
  if (named != nullptr && named[0] != '\0') return Absolute(named);
  const char* data = std::getenv("XDG_DATA_HOME");
  // A relative one is to be ignored.
  if (data != nullptr && data[0] == '/') return std::string(data) + "/orvix/registry";
  const std::string home = HomeDirectory();
  return home.empty() ? home : home + "/.local/share/orvix/registry";
}

bool IsStoreDirectory(const std::string& directory) {
  // Asked at every call, so the common answer comes without building a text.
  const char* named = std::getenv("ORVIX_REGISTRY");
  if (named != nullptr && directory == named) return true;
  return directory == StoreDirectory();
}

void Descriptor::Close() noexcept {
  if (fd_ >= 0) close(fd_);
  fd_ = -1;
}

Descriptor OpenFile(const std::string& path, int flags, mode_t mode) noexcept {
  int fd = -1;
  do {
    fd = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, mode);
  } while (fd < 0 && errno == EINTR);
  return Descriptor(fd);
}

LONG StoreLock::MakeDirectory() const {
  if (directory_.empty()) return kAccessDenied;
  for (std::size_t end = directory_.find('/', 1);; end = directory_.find('/', end + 1)) {
    const std::string part = directory_.substr(0, end);
    if (mkdir(part.c_str(), 0700) != 0 && errno != EEXIST) {
      // What is there already may lie on a medium or below a directory where
      // nothing can be made.
      const int error = errno;
      struct stat status {};
      if (stat(part.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) return ResultOfErrno(error);
    }
    if (end == std::string::npos) return kSuccess;
  }
}

LONG StoreLock::OpenToWrite() {
  file_.Close();
  const LONG made = MakeDirectory();
  if (made != kSuccess) return made;
  opened_directory_ = OpenFile(directory_, O_PATH | O_DIRECTORY);
  if (!opened_directory_.IsOpen()) return ResultOfErrno(errno);
  struct stat status {};
  if (fstat(opened_directory_.get(), &status) != 0) return ResultOfErrno(errno);
  if (IsReadOnly(status)) return kAccessDenied;
  file_ = OpenFile(Path(), O_RDWR | O_CREAT);
  return file_.IsOpen() ? kSuccess : ResultOfErrno(errno);
}

LONG StoreLock::LockToWrite() {
  struct stat status {};
  // A directory that was taken away has no links left.
  const bool is_open = file_.IsOpen() && opened_directory_.IsOpen() && fstat(opened_directory_.get(), &status) == 0 &&
                       status.st_nlink != 0;
  if (is_open && IsReadOnly(status)) return kAccessDenied;
  if (!is_open) {
    const LONG result = OpenToWrite();
    if (result != kSuccess) {
      Reset();
      return result;
    }
  }
  return Flock(file_.get(), LOCK_EX) == 0 ? kSuccess : ResultOfErrno(errno);
}

bool StoreLock::LockToRead() {
  if (!file_.IsOpen()) {
    file_ = OpenFile(Path(), O_RDWR);
    if (!file_.IsOpen()) file_ = OpenFile(Path(), O_RDONLY);
    if (!file_.IsOpen()) return false;
  }
  return Flock(file_.get(), LOCK_SH) == 0;
}

void StoreLock::Unlock() noexcept {
  if (file_.IsOpen()) Flock(file_.get(), LOCK_UN);
}

bool StoreLock::IsCurrent() const noexcept {
  struct stat ours {};
  struct stat theirs {};
  return fstat(file_.get(), &ours) == 0 && stat(Path().c_str(), &theirs) == 0 && ours.st_dev == theirs.st_dev &&
         ours.st_ino == theirs.st_ino;
}

}  // namespace Orvix::registry
