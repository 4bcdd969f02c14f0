// The desktop's trash in the layout that freedesktop.org's file managers share,
// version 1.0: the user's home trash, and one on each other file system.
#ifndef ORVIX_PLATFORM_SHELL_TRASH_H
#define ORVIX_PLATFORM_SHELL_TRASH_H

#include <map>
#include <optional>
#include <string>

#include "platform/shell/operation.h"
#include "platform/shell/trash_entry.h"

namespace Orvix::Shell {

class Trash {
 public:
  explicit Trash(Operation& operation) : operation_(operation) {}

  // Moves the entry `name` of the open `directory` with the absolute path
  // `parent` into the trash, a directory as one item. The item stays when that
  // cannot be done; it is never deleted instead.
  void Put(int directory, const std::string& parent, const std::string& name);

 private:
  struct Item {
    int directory;
    const std::string& name;
    const std::string& path;
  };

  [[nodiscard]] TrashCan& CanFor(int directory, dev_t device);
  [[nodiscard]] static std::optional<TrashCan> VolumeCan(int directory);
  [[nodiscard]] TrashCan& HomeCan();
  // An errno value, 0 for success, EXDEV when the can is on another file system.
  [[nodiscard]] int MoveInto(TrashCan& can, const Item& item);
  void CopyInto(TrashCan& can, const Item& item);

  Operation& operation_;
  std::optional<TrashCan> home_;
  std::optional<dev_t> home_device_;
  std::map<dev_t, TrashCan> volumes_;
};

}  // namespace Orvix::Shell

#endif
