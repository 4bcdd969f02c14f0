// The packed request of a file operation, taken apart.
#ifndef ORVIX_PLATFORM_SHELL_REQUEST_H
#define ORVIX_PLATFORM_SHELL_REQUEST_H

#include <cstdint>
#include <vector>

#include "orvix/text.h"

namespace Orvix::Shell {

inline constexpr std::uint32_t kMove = 1;
inline constexpr std::uint32_t kCopy = 2;
inline constexpr std::uint32_t kDelete = 3;
inline constexpr std::uint32_t kRename = 4;

inline constexpr std::uint16_t kManyTargets = 0x1;         // the targets are a list
inline constexpr std::uint16_t kSilent = 0x4;              // no progress
inline constexpr std::uint16_t kRenameOnCollision = 0x8;   // what is there stays, what comes gets another name
inline constexpr std::uint16_t kNoConfirmation = 0x10;     // yes to everything
inline constexpr std::uint16_t kAllowUndo = 0x40;          // deletions go to the trash
inline constexpr std::uint16_t kFilesOnly = 0x80;          // wildcards leave directories out
inline constexpr std::uint16_t kSimpleProgress = 0x100;    // progress shows the title instead of names
inline constexpr std::uint16_t kNoConfirmMakeDir = 0x200;  // directories are made without asking

struct Request {
  std::uint32_t operation = 0;
  std::uint16_t flags = 0;
  std::vector<Text> sources;
  std::vector<Text> targets;  // empty for a deletion, which does not read them
  Text title;

  [[nodiscard]] bool Has(std::uint16_t flag) const { return (flags & flag) != 0; }
};

// The 30 bytes at `packed` and the lists that they point at. A list ends at its
// first empty name. Names are the texts behind the bytes. Codes: 87 for an unknown
// operation or no source address, 5 for no target address where one is needed.
[[nodiscard]] Request Unpack(const void* packed);

// Writes the flag that says whether the user stopped any part.
void StoreAborted(void* packed, bool aborted) noexcept;

}  // namespace Orvix::Shell

#endif
