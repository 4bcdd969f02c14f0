// Entries of a directory found without regard to case.
#ifndef ORVIX_PLATFORM_NAMES_OTHER_SPELLING_H
#define ORVIX_PLATFORM_NAMES_OTHER_SPELLING_H

#include <string>
#include <string_view>
#include <vector>

namespace Orvix {

// The entries of `directory` (a path, or "." below an open one) that are `name`
// in another case, the lowest by bytes first; `name` itself is not among them.
// Large directories are read once and then kept up to date by the kernel's
// notices of change, where the file system gives them; elsewhere, and when there
// are no descriptors or memory for that, each call reads the directory. One that
// may not be read has no other spellings. `unreadable`, if given, gets the errno
// value of a reading that failed, 0 otherwise.
[[nodiscard]] std::vector<std::string> OtherSpellings(int parent, const char* directory, std::string_view name,
                                                      int* unreadable = nullptr);

}  // namespace Orvix

#endif
