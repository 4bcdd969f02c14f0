// Deleting the items of a plan, in their order, for good or into the trash.
#ifndef ORVIX_PLATFORM_SHELL_DELETION_H
#define ORVIX_PLATFORM_SHELL_DELETION_H

#include "platform/shell/operation.h"
#include "platform/shell/plan.h"

namespace Orvix::Shell {

// Asks the user before each item. With undo allowed, items named from a root go
// to the trash; those named from the current directory are deleted for good, as
// callers know it. Code 0x7C for an item that is gone by then.
void Delete(Operation& operation, const Plan& plan);

}  // namespace Orvix::Shell

#endif
