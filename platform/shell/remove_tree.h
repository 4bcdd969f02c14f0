// Deleting an entry with everything below it. Links go as links; a link is
// never a way out of the tree.
#ifndef ORVIX_PLATFORM_SHELL_REMOVE_TREE_H
#define ORVIX_PLATFORM_SHELL_REMOVE_TREE_H

#include <string>
#include <vector>

#include "platform/shell/copy_tree.h"
#include "platform/shell/operation.h"

namespace Orvix::Shell {

// `path` is that of the entry, for the user's eyes. Write-protected files go
// too. Code 0x7C when the entry is not there; what vanishes below it is no
// failure. Stops at the first failure; what went before stays deleted.
void RemoveTree(Operation& operation, int directory, const char* name, std::string& path);

// Deletes what was copied whole and is still as it was then. False when
// anything has changed since and was left.
[[nodiscard]] bool RemoveCopied(int directory, const CopiedEntry& copied);

}  // namespace Orvix::Shell

#endif
