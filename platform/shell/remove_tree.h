// Deleting an entry with everything below it. Links go as links; a link is never
// a way out of the tree, and what is mounted in it is left alone.
#ifndef ORVIX_PLATFORM_SHELL_REMOVE_TREE_H
#define ORVIX_PLATFORM_SHELL_REMOVE_TREE_H

#include <string>

#include "platform/shell/copy_tree.h"
#include "platform/shell/operation.h"

namespace Orvix::Shell {

// `path` is that of the entry, for the user's eyes. Write-protected files go
// too. Code 0x7C when the entry is not there, 0x20 at something mounted; what
// vanishes below it is no failure. Stops at the first failure; what went before
// stays deleted.
void RemoveTree(Operation& operation, int directory, const char* name, std::string& path);

// The same for what nobody is to hear of. False when anything is left.
[[nodiscard]] bool RemoveQuietly(int directory, const char* name) noexcept;

// Ends with the code of the refusal when RemoveTree would be refused anything;
// changes nothing.
void CheckRemovable(Operation& operation, int directory, const char* name, std::string& path);

// Deletes what was copied whole and is still as it was then. False when anything
// has changed since and was left. `began` becomes true with the first entry that
// goes.
[[nodiscard]] bool RemoveCopied(int directory, const CopiedTree& copied, bool& began);

}  // namespace Orvix::Shell

#endif
