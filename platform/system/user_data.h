// Where a user's programs keep their data.
#ifndef ORVIX_PLATFORM_SYSTEM_USER_DATA_H
#define ORVIX_PLATFORM_SYSTEM_USER_DATA_H

#include <string>

namespace Orvix {

// The user's data directory, absolute and without a slash at its end: what
// XDG_DATA_HOME names, else .local/share in the home directory; relative values are
// ignored, and those of a process with more rights than its caller (freedesktop.org's
// basedir 0.8). Empty when there is no home directory either.
[[nodiscard]] std::string UserDataDirectory();

// Makes a directory that is missing, with all above it, for its user alone. An
// errno value, 0 when it is there.
[[nodiscard]] int MakeUserDirectory(const std::string& path);

}  // namespace Orvix

#endif
