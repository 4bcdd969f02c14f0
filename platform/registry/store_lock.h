// Where the store is, and the lock file that its writers take turns with.
#ifndef ORVIX_PLATFORM_REGISTRY_STORE_LOCK_H
#define ORVIX_PLATFORM_REGISTRY_STORE_LOCK_H

#include <sys/stat.h>

#include <string>
#include <utility>

#include "orvix/automation.h"

namespace Orvix::registry {

// The platform's result codes that the store gives.
inline constexpr LONG kSuccess = 0;
inline constexpr LONG kNotFound = 2;
inline constexpr LONG kAccessDenied = 5;
inline constexpr LONG kBadHandle = 6;
inline constexpr LONG kOutOfMemory = 14;
inline constexpr LONG kBadParameter = 87;
inline constexpr LONG kDiskFull = 112;
inline constexpr LONG kBadPath = 161;
inline constexpr LONG kMoreData = 234;
inline constexpr LONG kNoMoreItems = 259;
inline constexpr LONG kDamaged = 1009;
inline constexpr LONG kReadWriteFailed = 1016;
inline constexpr LONG kKeyDeleted = 1018;

// The result code for an `errno`.
[[nodiscard]] LONG ResultOfErrno(int error) noexcept;

// The directory that the environment names at this moment, as an absolute path;
// empty when there is no home directory either.
[[nodiscard]] std::string StoreDirectory();

// Whether StoreDirectory would give `directory`.
[[nodiscard]] bool IsStoreDirectory(const std::string& directory);

// Owns a file descriptor.
class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(Descriptor&& other) noexcept : fd_(std::exchange(other.fd_, -1)) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      Close();
      fd_ = std::exchange(other.fd_, -1);
    }
    return *this;
  }
  ~Descriptor() { Close(); }
  void Close() noexcept;
  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] bool IsOpen() const { return fd_ >= 0; }

 private:
  int fd_ = -1;
};

// Opens with O_CLOEXEC, again when a signal interrupts; `errno` says why it failed.
[[nodiscard]] Descriptor OpenFile(const std::string& path, int flags, mode_t mode = 0600) noexcept;

// The lock of one store directory. Threads are kept apart by the registry's own
// mutex; this keeps processes apart. The file stays where it is: what the lock
// guards gets replaced, so it cannot be the lock itself.
class StoreLock {
 public:
  explicit StoreLock(std::string directory) : directory_(std::move(directory)) {}

  [[nodiscard]] const std::string& directory() const { return directory_; }

  // Waits for the lock, and makes the store directory first when it is missing.
  // A directory without any write bit is refused with 5, to everyone.
  [[nodiscard]] LONG LockToWrite();
  // Waits for readers' lock. False when there is no lock file, or none that may
  // be opened: reading goes on without.
  [[nodiscard]] bool LockToRead();
  void Unlock() noexcept;
  // Whether the lock that is held is still the one that other processes see.
  [[nodiscard]] bool IsCurrent() const noexcept;
  // Forgets the descriptor. A child process must: a lock taken through a
  // descriptor that both processes have keeps neither of them out.
  void Reset() noexcept {
    file_.Close();
    opened_directory_.Close();
  }

 private:
  [[nodiscard]] std::string Path() const { return directory_ + "/lock"; }
  [[nodiscard]] LONG MakeDirectory() const;
  [[nodiscard]] LONG OpenToWrite();

  std::string directory_;
  Descriptor opened_directory_;
  Descriptor file_;
};

}  // namespace Orvix::registry

#endif
