// The open directories on the way down a tree, however deep it is: the deepest
// few stay open, the others are reached again from below. None is ever reached
// through a link, and one that was moved elsewhere meanwhile is not followed.
#ifndef ORVIX_PLATFORM_SHELL_LEVELS_H
#define ORVIX_PLATFORM_SHELL_LEVELS_H

#include <cstdint>
#include <vector>

#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

class Levels {
 public:
  // `base` is any open descriptor of a directory; it stays the caller's.
  Levels(int base, Side side) : base_(base), side_(side) {}

  // The deepest directory: from level 1 on open for reading.
  [[nodiscard]] int here() const { return levels_.empty() ? base_ : levels_.back().directory.get(); }
  [[nodiscard]] std::size_t depth() const { return levels_.size(); }

  // Goes into the directory `name` of this one: an errno value, ELOOP or ENOTDIR
  // for anything that is no directory.
  [[nodiscard]] int TryEnter(const char* name);
  void Enter(const char* name);

  // Whether something is mounted on the directory that was entered last.
  [[nodiscard]] bool IsMountPoint() const;

  // Back to the directory above; gives the one that was left. Code 0x20 when that
  // has been moved out of it meanwhile.
  Descriptor Leave();
  // The same with a result code, 0 for success. `left` is given in any case.
  [[nodiscard]] INT TryLeave(Descriptor& left);

 private:
  struct Level {
    Descriptor directory;  // closed while it is far above
    dev_t device;
    ino_t inode;
  };

  int base_;
  Side side_;
  std::vector<Level> levels_;
};

}  // namespace Orvix::Shell

#endif
