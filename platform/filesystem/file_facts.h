// Attributes, length and time of native files and directories.
#ifndef ORVIX_PLATFORM_FILESYSTEM_FILE_FACTS_H
#define ORVIX_PLATFORM_FILESYSTEM_FILE_FACTS_H

#include <sys/stat.h>

#include <string_view>

#include "orvix/runtime.h"

namespace Orvix {

// Attributes from the status of what a name leads to (links are followed) and
// from the name itself: hidden when it begins with "." and is not "." or "..".
[[nodiscard]] LONG AttributesOf(const struct stat& facts, std::string_view last_component);
// Bytes, wrapped to 32 bits; of a file that this process has open the length
// before its opening.
[[nodiscard]] LONG SizeOf(const struct stat& facts);

}  // namespace Orvix

#endif
