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
inline constexpr Opening kTextOutput{kOxModeOutput, kOxAccessDefault, kOxShareDefault};
inline constexpr Opening kSharedTextOutput{kOxModeOutput, kOxAccessWrite, kOxShareShared};
inline constexpr Opening kSharedBinaryRead{kOxModeBinary, kOxAccessRead, kOxShareShared};
inline constexpr Opening kSharedBinaryOutput{kOxModeBinary, kOxAccessWrite, kOxShareShared};
inline constexpr Opening kBinaryRead{kOxModeBinary, kOxAccessRead, kOxShareDefault};
inline constexpr Opening kBinaryWrite{kOxModeBinary, kOxAccessWrite, kOxShareDefault};

// The lowest unused number. Error 67 when there is none.
[[nodiscard]] inline SHORT FreeFileNumber() {
  SHORT number = 0;
  CheckRuntime(OxFreeFile(&number));
  return number;
}

// Opens `name` under `number`. Asking for a free number does not reserve it: when
// another thread has taken it meanwhile, the next free one is used and written to
// `number`.
inline void OpenUnder(SHORT& number, TextView name, const Opening& opening) {
  // The runtime's names end at their first NUL.
  if (name.find(u'\0') != TextView::npos) RaiseRuntimeError(kBadFileName);
  const Text terminated(name);
  for (;;) {
    const HRESULT result = OxOpenFile(terminated.c_str(), number, opening.mode, opening.access, opening.share);
    if (SUCCEEDED(result)) return;
    constexpr LONG kAlreadyOpen = 55;
    const SHORT next = OxErrorNumber(result) == kAlreadyOpen ? FreeFileNumber() : number;
    if (next == number) RaiseFailure(result);
    number = next;
  }
}

}  // namespace Orvix::component

#endif
