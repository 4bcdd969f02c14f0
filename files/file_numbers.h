// Files under file numbers, with the runtime's errors raised. A number that is
// not closed stays open: where a member fails after an opening, callers find
// the number taken.
#ifndef ORVIX_FILES_FILE_NUMBERS_H
#define ORVIX_FILES_FILE_NUMBERS_H

#include "frame/com_ptr.h"
#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

struct Opening {
  LONG mode;
  LONG access;
  LONG share;
};
inline constexpr Opening kNewOutput{kOxModeNew, kOxAccessDefault, kOxShareDefault};
inline constexpr Opening kStore{kOxModeStore, kOxAccessWrite, kOxShareShared};
inline constexpr Opening kSharedBinaryRead{kOxModeBinary, kOxAccessRead, kOxShareShared};
inline constexpr Opening kBinaryRead{kOxModeBinary, kOxAccessRead, kOxShareDefault};
inline constexpr Opening kBinaryWrite{kOxModeBinary, kOxAccessWrite, kOxShareDefault};

// Error 67 when no number is unused. Asking does not reserve one.
inline void CheckFreeFileNumber() {
  SHORT number = 0;
  CheckRuntime(OxFreeFile(&number));
}

// Opens `name` under the lowest unused number, which it returns.
[[nodiscard]] inline SHORT OpenFree(TextView name, const Opening& opening) {
  // The runtime's names end at their first NUL.
  if (name.find(u'\0') != TextView::npos) RaiseRuntimeError(kBadFileName);
  const Text terminated(name);
  SHORT number = 0;
  CheckRuntime(OxOpenFreeFile(terminated.c_str(), &number, opening.mode, opening.access, opening.share));
  return number;
}

}  // namespace Orvix::component

#endif
