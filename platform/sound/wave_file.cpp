#include "platform/sound/wave_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace Orvix {
namespace {

// A file has few chunks before its samples; more are a loop or rubbish.
constexpr int kMostChunks = 64;

class ReadOnlyFile {
 public:
  // Not blocking: a name may be a pipe that nobody writes to.
  explicit ReadOnlyFile(const std::string& path) : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
  ReadOnlyFile(const ReadOnlyFile&) = delete;
  ReadOnlyFile& operator=(const ReadOnlyFile&) = delete;
  ~ReadOnlyFile() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  // -1 for anything but an ordinary file.
  [[nodiscard]] int64_t Size() const {
    struct stat facts {};
    if (descriptor_ < 0 || fstat(descriptor_, &facts) != 0 || !S_ISREG(facts.st_mode)) return -1;
    return facts.st_size;
  }
  [[nodiscard]] bool Read(int64_t position, void* bytes, std::size_t count) const {
    return pread(descriptor_, bytes, count, position) == static_cast<ssize_t>(count);
  }

 private:
  int descriptor_;
};

uint32_t NumberAt(const unsigned char* bytes) {
  return static_cast<uint32_t>(bytes[0]) | static_cast<uint32_t>(bytes[1]) << 8 |
         static_cast<uint32_t>(bytes[2]) << 16 | static_cast<uint32_t>(bytes[3]) << 24;
}
bool IsTag(const unsigned char* bytes, const char* tag) { return std::memcmp(bytes, tag, 4) == 0; }

}  // namespace

std::optional<std::chrono::milliseconds> LengthOfWave(const std::string& path) {
  const ReadOnlyFile file(path);
  const int64_t size = file.Size();
  unsigned char header[12];
  if (size < 0 || !file.Read(0, header, sizeof header)) return std::nullopt;
  if (!IsTag(header, "RIFF") || !IsTag(header + 8, "WAVE")) return std::nullopt;
  int64_t position = sizeof header;
  uint32_t bytes_per_second = 0;
  for (int chunk = 0; chunk < kMostChunks; ++chunk) {
    unsigned char head[8];
    if (!file.Read(position, head, sizeof head)) return std::nullopt;
    position += static_cast<int64_t>(sizeof head);
    const int64_t length = NumberAt(head + 4);
    if (IsTag(head, "fmt ")) {
      unsigned char format[16];
      if (length < 16 || !file.Read(position, format, sizeof format)) return std::nullopt;
      bytes_per_second = NumberAt(format + 8);
    } else if (IsTag(head, "data")) {
      if (bytes_per_second == 0) return std::nullopt;
      // A stream that was never finished says more than is there.
      const int64_t samples = std::min(length, size - position);
      return std::chrono::milliseconds(samples * 1000 / bytes_per_second);
    }
    position += length + (length & 1);  // chunks stand at even positions
  }
  return std::nullopt;
}

}  // namespace Orvix
