// Open directories and files, closed at the end of their scope. Entries are
// always reached from an open directory and never through a link.
#ifndef ORVIX_PLATFORM_SHELL_DESCRIPTOR_H
#define ORVIX_PLATFORM_SHELL_DESCRIPTOR_H

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <string>
#include <utility>

#include "platform/shell/results.h"

namespace Orvix::Shell {

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }

  [[nodiscard]] int get() const noexcept { return number_; }
  [[nodiscard]] bool ok() const noexcept { return number_ >= 0; }
  void Close() noexcept {
    if (number_ >= 0) close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

// Calls again what a signal has interrupted.
template <class Call>
auto Retried(Call&& call) {
  for (;;) {
    const auto result = call();
    if (result >= 0 || errno != EINTR) return result;
  }
}

inline int OpenAt(int directory, const char* name, int flags, mode_t mode = 0) {
  return Retried([&] { return openat(directory, name, flags, mode); });
}

// A directory as callers named it: links on the way there are theirs to follow.
// Only for reaching its entries.
inline Descriptor ReachDirectory(const std::string& path, Side side) {
  Descriptor directory(OpenAt(AT_FDCWD, path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!directory.ok()) Fail(errno, side);
  return directory;
}

// The directory `name` in an open one, for reading. A link is refused.
inline Descriptor OpenDirectory(int parent, const char* name, Side side) {
  Descriptor directory(OpenAt(parent, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!directory.ok()) Fail(errno, side);
  return directory;
}

// The facts of an entry itself, of a link too. False when it is not there.
inline bool FactsOf(int directory, const char* name, Side side, struct stat& facts) {
  if (fstatat(directory, name, &facts, AT_SYMLINK_NOFOLLOW) == 0) return true;
  if (errno != ENOENT) Fail(errno, side);
  return false;
}

[[nodiscard]] inline bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

}  // namespace Orvix::Shell

#endif
