// Cloning shares the blocks; copying a range leaves the work to the kernel; a
// buffer works everywhere, and is quickest for what fits in it.
#include "platform/shell/copy_content.h"

#include <linux/fs.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/shell/descriptor.h"
#include "platform/shell/results.h"

namespace Orvix::Shell {

namespace {

constexpr std::size_t kBuffer = 256 * 1024;
constexpr off_t kPiece = 8 * 1024 * 1024;

bool IsRefusal(int error) {
  return error == EXDEV || error == EINVAL || error == ENOSYS || error == EOPNOTSUPP || error == ENOTTY ||
         error == EPERM || error == EBADF || error == ETXTBSY;
}

void WriteAll(int out, const char* bytes, std::size_t count, off_t at) {
  while (count > 0) {
    const ssize_t written = pwrite(out, bytes, count, at);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) Fail(errno, Side::kTarget);
    bytes += written;
    at += written;
    count -= static_cast<std::size_t>(written);
  }
}

}  // namespace

bool ContentCopier::Clone(int in, const struct stat& facts, int out) {
  if (!clones_ || facts.st_size == 0) return false;
  if (Retried([&] { return ioctl(out, FICLONE, in); }) == 0) return true;
  if (!IsRefusal(errno)) Fail(errno, Side::kTarget);
  clones_ = false;
  return false;
}

off_t ContentCopier::CopyRange(int in, int out, off_t start, off_t end, const std::string& path) {
  off_t at = start;
  while (at < end) {
    const off_t wanted = std::min(kPiece, end - at);
    off_t got = 0;
    // The kernel's copy takes the end of the file from its stated length, which
    // is 0 for generated files: the buffer sees the real end.
    if (ranges_ && wanted > static_cast<off_t>(kBuffer)) {
      off_t from = at;
      off_t to = at;
      const ssize_t copied = copy_file_range(in, &from, out, &to, static_cast<std::size_t>(wanted), 0);
      if (copied < 0 && errno == EINTR) continue;
      if (copied < 0 && !IsRefusal(errno)) Fail(errno, Side::kTarget);
      if (copied < 0) ranges_ = false;
      got = copied;
    }
    if (got <= 0) {
      if (buffer_ == nullptr) buffer_ = std::make_unique_for_overwrite<char[]>(kBuffer);
      const auto count = static_cast<std::size_t>(std::min(static_cast<off_t>(kBuffer), wanted));
      const ssize_t bytes = pread(in, buffer_.get(), count, at);
      if (bytes < 0 && errno == EINTR) continue;
      if (bytes < 0) Fail(errno, Side::kSource);
      if (bytes == 0) break;
      WriteAll(out, buffer_.get(), static_cast<std::size_t>(bytes), at);
      got = bytes;
    }
    at += got;
    progress_.BytesDone(path, got);
  }
  return at - start;
}

off_t ContentCopier::CopySparse(int in, int out, off_t size, const std::string& path) {
  off_t at = 0;
  while (at < size) {
    const off_t data = lseek(in, at, SEEK_DATA);
    if (data < 0 && errno == ENXIO) break;  // a hole up to the end
    if (data < 0) return CopyRange(in, out, at, std::numeric_limits<off_t>::max(), path) + at;
    const off_t hole = lseek(in, data, SEEK_HOLE);
    if (hole < 0) Fail(errno, Side::kSource);
    progress_.BytesDone(path, data - at);
    at = data + CopyRange(in, out, data, hole, path);
    if (at < hole) break;  // it became shorter
  }
  return std::max(at, size);
}

void ContentCopier::Copy(int in, const struct stat& facts, int out, const std::string& path) {
  if (Clone(in, facts, out)) {
    progress_.BytesDone(path, facts.st_size);
    return;
  }
  const bool sparse = static_cast<off_t>(facts.st_blocks) * 512 < facts.st_size;
  if (!sparse) {
    // Generated files say 0 and have content all the same.
    CopyRange(in, out, 0, facts.st_size > 0 ? facts.st_size : std::numeric_limits<off_t>::max(), path);
    return;
  }
  const off_t length = CopySparse(in, out, facts.st_size, path);
  if (Retried([&] { return ftruncate(out, length); }) != 0) Fail(errno, Side::kTarget);
}

}  // namespace Orvix::Shell
