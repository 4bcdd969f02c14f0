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

  using Route = TreeCopier::Route;

  // As with copying; directories merge, and what the user keeps from being
  // moved stays at its source, with the directories above it. After a failure
  // everything is at its source, at its target, or at both; code 0x20 when
  // something changed at the source while it was copied and so stays there, or
  // something is mounted there.
  bool Move(const Route& route, std::string& from_path, std::string& to_path);

  // The first half of a move across file systems: copies, if the original can be
  // taken away, and waits until the copies are safe. False when the user kept
  // something from being copied.
  bool CopyForMove(const Route& route, std::string& from_path, std::string& to_path, CopiedTree& copied);

 private:
  enum class Outcome { kMoved, kKept, kMerge };
  class Walk;

  Outcome MoveEntry(const Route& route);
  Outcome MoveByCopying(const Route& route);
  bool Replace(const Route& route);

  Operation& operation_;
  TreeCopier copier_;
  std::string* from_path_ = nullptr;
  std::string* to_path_ = nullptr;
};

}  // namespace Orvix::Shell

#endif
