// Opening, transfer and closing over file descriptors.
#include "platform/filesystem/opened_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <utility>

#include "frame/runtime/runtime_error.h"
#include "platform/filesystem/errno_numbers.h"
#include "platform/filesystem/open_files.h"
#include "platform/filesystem/stored_file.h"
#include "platform/names/path_map.h"
#include "platform/system/quiet_signals.h"

namespace Orvix {

namespace {

constexpr LONG kLocked = 70;
constexpr LONG kPathFileAccess = 75;
constexpr LONG kPathNotFound = 76;

// Calls again as long as a signal comes between.
template <class Call>
auto Retried(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int number) noexcept : number_(number) {}
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (number_ >= 0) close(number_);
  }
  [[nodiscard]] int get() const { return number_; }
  [[nodiscard]] int Release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

class NativeFile : public ResolvedFile {
 public:
  NativeFile(Descriptor descriptor, bool readable, bool writable)
      : descriptor_(std::move(descriptor)), readable_(readable), writable_(writable) {}
  ~NativeFile() override {
    // The descriptor first: the mark holds the lock until the file is closed.
    if (const int number = descriptor_.Release(); number >= 0) close(number);
  }

  [[nodiscard]] int descriptor() const override { return descriptor_.get(); }
  void Empty() override {
    if (Retried([&] { return ftruncate(descriptor_.get(), 0); }) != 0) FailWithErrno(errno, FileTask::kCreate);
  }
  [[nodiscard]] bool KeepOthersOut() override { return mark_.has_value() && mark_->KeepOthersOut(); }
  void Mark(const struct stat& facts, bool output, bool exclusive) {
    mark_.emplace(descriptor_.get(), facts, output, exclusive);
  }

  std::size_t Read(void* bytes, std::size_t count) override {
    if (!readable_) throw RuntimeError{kPathFileAccess};
    std::size_t done = 0;
    while (done < count) {
      const ssize_t got =
          Retried([&] { return read(descriptor_.get(), static_cast<char*>(bytes) + done, count - done); });
      if (got < 0) FailWithErrno(errno, FileTask::kTransfer);
      if (got == 0) break;
      done += static_cast<std::size_t>(got);
    }
    return done;
  }

  void Write(const void* bytes, std::size_t count) override {
    if (!writable_) throw RuntimeError{kPathFileAccess};
    WriteAll(descriptor_.get(), bytes, count);
  }

  void SeekTo(std::uint64_t offset) override {
    if (lseek(descriptor_.get(), static_cast<off_t>(offset), SEEK_SET) < 0) FailWithErrno(errno, FileTask::kTransfer);
  }

  std::uint64_t Length() override {
    struct stat facts;
    if (fstat(descriptor_.get(), &facts) != 0) FailWithErrno(errno, FileTask::kTransfer);
    return static_cast<std::uint64_t>(facts.st_size);
  }

  void Close() override {
    const int number = descriptor_.Release();
    // Interrupted or not, the descriptor is gone after one call.
    const int error = number >= 0 && close(number) != 0 ? errno : 0;
    mark_.reset();
    if (error != 0 && error != EINTR) FailWithErrno(error, FileTask::kTransfer);
  }

 private:
  Descriptor descriptor_;
  bool readable_;
  bool writable_;
  std::optional<OpeningMark> mark_;
};

// Waits for no partner at the other end of a pipe and for no lease.
constexpr int kAlways = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;

int OpenDescriptor(const std::string& path, int flags) {
  return Retried([&] { return open(path.c_str(), flags | kAlways, 0666); });
}

bool IsRefusal(int error) { return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY; }

struct Opened {
  Descriptor descriptor;
  int flags;
};

Opened OpenExisting(const NativeName& name) {
  Descriptor descriptor(OpenDescriptor(name.path, O_RDONLY));
  if (descriptor.get() >= 0) return {std::move(descriptor), O_RDONLY};
  if (errno == ENOENT && name.parent_missing) throw RuntimeError{kPathNotFound};
  FailWithErrno(errno, FileTask::kExisting);
}

Opened OpenByRequest(const NativeName& name, const OpenRequest& request) {
  if (request.mode == kOxModeBinary && request.access == kOxAccessRead) return OpenExisting(name);
  const bool read_too = request.mode == kOxModeBinary && request.access != kOxAccessWrite;
  const bool reads_at_least = request.mode == kOxModeBinary && request.access == kOxAccessDefault;
  struct stat facts;
  const bool exists = stat(name.path.c_str(), &facts) == 0;
  if (exists && S_ISREG(facts.st_mode) && (facts.st_mode & 0222) == 0) {
    if (reads_at_least) return OpenExisting(name);
    throw RuntimeError{kPathFileAccess};
  }
  const int flags = read_too ? O_RDWR : O_WRONLY;
  // Asking to create what is there is refused in shared directories.
  Descriptor descriptor(OpenDescriptor(name.path, exists ? flags : flags | O_CREAT));
  if (descriptor.get() >= 0) return {std::move(descriptor), flags};
  if (exists && errno == ENOENT) {  // gone since
    Descriptor made(OpenDescriptor(name.path, flags | O_CREAT));
    if (made.get() >= 0) return {std::move(made), flags};
  }
  // Without a wish for access what cannot be written is read, if it is there.
  if (reads_at_least && exists && IsRefusal(errno)) return OpenExisting(name);
  FailWithErrno(errno, FileTask::kCreate);
}

// Back to transfers that wait.
void ClearNonBlocking(int descriptor) {
  const int flags = fcntl(descriptor, F_GETFL);
  if (flags >= 0) fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK);
}

}  // namespace

void WriteAll(int descriptor, const void* bytes, std::size_t count) {
  QuietSignals quiet;
  for (std::size_t done = 0; done < count;) {
    const ssize_t put =
        Retried([&] { return write(descriptor, static_cast<const char*>(bytes) + done, count - done); });
    if (put <= 0) {
      const int error = put < 0 ? errno : ENOSPC;
      quiet.Failed(error);
      FailWithErrno(error, FileTask::kTransfer);
    }
    done += static_cast<std::size_t>(put);
  }
}

std::unique_ptr<OpenedFile> OpenNativeFile(TextView name, const OpenRequest& request) {
  const NativeName native = ResolveName(name);
  if (request.mode == kOxModeStore || request.mode == kOxModeNew) return OpenStoredFile(native, request);
  return OpenResolved(native, request, /*empties=*/request.mode == kOxModeOutput);
}

std::unique_ptr<ResolvedFile> OpenResolved(const NativeName& name, const OpenRequest& request, bool empties) {
  // A file that is replaced as a whole keeps others out for a moment.
  constexpr int kMoments = 5;
  for (int moment = 0;; ++moment) {
    // The lock takes a descriptor of its own: where there is no room for it, no
    // empty file shall be left behind.
    Descriptor room(Retried([] { return open("/", O_PATH | O_CLOEXEC); }));
    if (room.get() < 0) FailWithErrno(errno, FileTask::kCreate);
    auto [descriptor, flags] = OpenByRequest(name, request);
    struct stat facts;
    if (fstat(descriptor.get(), &facts) != 0) FailWithErrno(errno, FileTask::kExisting);
    if (S_ISDIR(facts.st_mode)) throw RuntimeError{kPathFileAccess};
    const bool regular = S_ISREG(facts.st_mode);
    bool writable = flags != O_RDONLY;
    if (writable && regular && (facts.st_mode & 0222) == 0) {
      if (request.mode != kOxModeBinary || request.access != kOxAccessDefault) throw RuntimeError{kPathFileAccess};
      writable = false;
    }
    if (!regular) ClearNonBlocking(descriptor.get());
    auto file = std::make_unique<NativeFile>(std::move(descriptor), flags != O_WRONLY, writable);
    if (!regular) return file;
    close(room.Release());
    try {
      file->Mark(facts, /*output=*/request.mode != kOxModeBinary, !request.shared);
    } catch (const RuntimeError& error) {
      if (error.number != kLocked || moment == kMoments) throw;
      usleep(200);
      continue;
    }
    // Replaced before it was locked, it has no name any more.
    struct stat there;
    if (moment < kMoments && stat(name.path.c_str(), &there) == 0 &&
        (there.st_ino != facts.st_ino || there.st_dev != facts.st_dev)) {
      continue;
    }
    if (empties) file->Empty();
    return file;
  }
}

}  // namespace Orvix
