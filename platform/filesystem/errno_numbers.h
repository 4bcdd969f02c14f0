// From the system's error codes to the runtime's error numbers.
#ifndef ORVIX_PLATFORM_FILESYSTEM_ERRNO_NUMBERS_H
#define ORVIX_PLATFORM_FILESYSTEM_ERRNO_NUMBERS_H

#include "orvix/automation.h"

namespace Orvix {

enum class FileTask {
  kExisting,       // opening for reading, facts, deleting
  kDirectory,      // reading a directory
  kCreate,         // opening for output or writing
  kMakeDirectory,  //
  kTransfer,       // reading, writing, seeking, closing
};

// The number for `error` (an errno value). A missing name is error 53 for what
// had to exist, 76 for what was to be created: then its directory is missing.
[[nodiscard]] LONG NumberOfErrno(int error, FileTask task) noexcept;

// Throws that number.
[[noreturn]] void FailWithErrno(int error, FileTask task);

}  // namespace Orvix

#endif
