// The map of drives and shares to native directories. Starts with Z: as the
// root directory and C: as `orvix/drive_c` under the user's data directory;
// ORVIX_DRIVES ("C=/srv/data;T=/tmp/t") replaces or adds the drives it lists,
// and an empty directory there takes a drive away.
#ifndef ORVIX_PLATFORM_NAMES_DRIVE_MAP_H
#define ORVIX_PLATFORM_NAMES_DRIVE_MAP_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

// Directories are absolute, without a trailing "/"; the root directory is the
// empty text, so that "/" and a name can always be appended.

[[nodiscard]] constexpr bool IsDriveLetter(char16_t unit) {
  return static_cast<char16_t>((unit | 0x20) - u'a') < 26 && unit < 0x80;
}

// The directory of a drive (letter of either case) or share; none when unmapped.
[[nodiscard]] std::optional<std::string> DirectoryOfDrive(char16_t letter);
[[nodiscard]] std::optional<std::string> DirectoryOfShare(TextView server, TextView share);

// Makes the directory of drive C, as long as that is the one in the user's
// data directory. A failure shows when the drive is used.
void MakeOwnDrive(char16_t letter);

// A null directory takes the mapping away. Relative ones count from the
// process's directory now. Error 52 for an empty one.
void MapDrive(char16_t letter, const char* directory);
void MapShare(TextView server, TextView share, const char* directory);

struct MappedRoot {
  Text name;  // "Z:" or "\\server\share"
  std::string directory;
};
// Every mapping, drives first and in the order of their letters.
[[nodiscard]] std::vector<MappedRoot> MappedRoots();

}  // namespace Orvix

#endif
