// The regular files that this process has open: who may open them again, and
// the locks that keep other processes out. A lock belongs to the process, not to
// one opening, since a file can be open under several numbers.
#ifndef ORVIX_PLATFORM_FILESYSTEM_OPEN_FILES_H
#define ORVIX_PLATFORM_FILESYSTEM_OPEN_FILES_H

#include <sys/stat.h>

#include <compare>
#include <cstdint>
#include <optional>

namespace Orvix {

struct FileIdentity {
  explicit FileIdentity(const struct stat& facts) : device(facts.st_dev), inode(facts.st_ino) {}
  dev_t device;
  ino_t inode;
  friend auto operator<=>(const FileIdentity&, const FileIdentity&) = default;
};

// One opening among the open files, as long as it lives.
class OpeningMark {
 public:
  // `descriptor` is the newly opened file. Errors: 55 when it or an opening
  // before it is for output, 70 when another process's lock is in the way, 67.
  // A file system without locks has none.
  OpeningMark(int descriptor, const struct stat& facts, bool output, bool exclusive);
  OpeningMark(const OpeningMark&) = delete;
  OpeningMark& operator=(const OpeningMark&) = delete;
  ~OpeningMark();

  // Keeps all other processes out from now on. False when one has the file open.
  [[nodiscard]] bool KeepOthersOut();

 private:
  FileIdentity identity_;
  bool exclusive_;
};

[[nodiscard]] bool IsOpenHere(const struct stat& facts);
// The length that an open file had before it was first opened; other files none.
[[nodiscard]] std::optional<std::uint64_t> LengthBeforeOpening(const struct stat& facts);

}  // namespace Orvix

#endif
