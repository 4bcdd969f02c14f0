// Moving an entry: by renaming within a file system, else by copying and then
// deleting what was copied whole.
#ifndef ORVIX_PLATFORM_SHELL_MOVE_TREE_H
#define ORVIX_PLATFORM_SHELL_MOVE_TREE_H

#include <string>

#include "platform/shell/copy_tree.h"
#include "platform/shell/operation.h"

namespace Orvix::Shell {

class TreeMover {
 public:
  explicit TreeMover(Operation& operation) : operation_(operation), copier_(operation) {}

  // As with copying; directories merge, and what the user keeps from being
  // moved stays at its source, with the directories above it. After a failure
  // everything is at its source, at its target, or at both; code 0x20 when
  // something changed at the source while it was copied and so stays there.
  bool Move(const TreeCopier::Route& route, std::string& from_path, std::string& to_path);

  // Across file systems, or as if it were.
  bool MoveByCopying(const TreeCopier::Route& route, std::string& from_path, std::string& to_path);

 private:
  bool MoveEntry(const TreeCopier::Route& route, int depth);
  bool Merge(const TreeCopier::Route& route, int depth);
  bool Replace(const TreeCopier::Route& route);

  Operation& operation_;
  TreeCopier copier_;
  std::string* from_path_ = nullptr;
  std::string* to_path_ = nullptr;
};

}  // namespace Orvix::Shell

#endif
