// What happens where something is already under the name that an item is to get.
#ifndef ORVIX_PLATFORM_SHELL_COLLISION_H
#define ORVIX_PLATFORM_SHELL_COLLISION_H

#include <string>
#include <string_view>

#include "platform/shell/operation.h"
#include "platform/shell/results.h"

namespace Orvix::Shell {

enum class Verdict {
  kFree,       // nothing is there
  kReplace,    // the file or link that is there goes
  kMerge,      // both are directories: the content joins
  kSkip,       // the user keeps what is there
  kOtherName,  // the item gets another name
};

// Looks at `name` in `directory`, whose path is `path`, and asks the user where
// that is due. Codes: 0x7E for a directory onto a file or link, 0x80 for
// anything else onto a directory.
[[nodiscard]] Verdict Decide(Operation& operation, int directory, const char* name, bool incoming_directory,
                             const std::string& path);

// "name (2).ext" for number 2; the extension of a directory and of a name that
// starts with its only dot counts as part of the name. At most 255 bytes: the
// name is cut where a character ends.
[[nodiscard]] std::string NumberedName(std::string_view name, int number, bool directory);

inline constexpr int kMostNumbers = 1'000'000;

// Calls `take` with numbered names, from 2 on, until it returns true. Code 0x20
// when there is no end of it.
template <class Take>
std::string TakeNumberedName(std::string_view name, bool directory, Take&& take) {
  for (int number = 2; number < kMostNumbers; ++number) {
    std::string numbered = NumberedName(name, number, directory);
    if (take(numbered)) return numbered;
  }
  throw ShellError{kInUse};
}

}  // namespace Orvix::Shell

#endif
