// Copying, moving and renaming the items of a plan, in their order.
#ifndef ORVIX_PLATFORM_SHELL_TRANSFER_H
#define ORVIX_PLATFORM_SHELL_TRANSFER_H

#include "platform/shell/operation.h"
#include "platform/shell/plan.h"

namespace Orvix::Shell {

// Stops at the first failure; what was done before stays done. Codes besides
// those of the single steps: 0x71 a file onto itself, 0x7D a directory onto
// itself, 0x76 a directory into itself or below, 0x7C a source that is gone by
// then, 0x73 a renaming into another directory.
void Transfer(Operation& operation, const Plan& plan);

}  // namespace Orvix::Shell

#endif
