// One file operation under way: what was asked for, and who hears of it.
#ifndef ORVIX_PLATFORM_SHELL_OPERATION_H
#define ORVIX_PLATFORM_SHELL_OPERATION_H

#include "platform/shell/progress.h"
#include "platform/shell/request.h"

namespace Orvix::Shell {

struct Operation {
  Request request;
  Progress progress;
};

// Does what is asked for; the result code. Of a host nothing is asked or told.
[[nodiscard]] INT Perform(Request request) noexcept;

}  // namespace Orvix::Shell

#endif
