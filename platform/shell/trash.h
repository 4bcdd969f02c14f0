// The desktop's trash in the layout that freedesktop.org's file managers share,
// version 1.0: the user's home trash, and one on each other file system.
#ifndef ORVIX_PLATFORM_SHELL_TRASH_H
#define ORVIX_PLATFORM_SHELL_TRASH_H

#include <sys/stat.h>

#include <map>
#include <optional>
#include <string>

#include "platform/shell/descriptor.h"
#include "platform/shell/operation.h"

namespace Orvix::Shell {

// The line ends of an information file are LF; `path` is percent-encoded but for
// letters, digits, "/", "-", ".", "_" and "~"; the date is the local time.
[[nodiscard]] std::string TrashInformation(std::string_view path, const struct tm& deleted);

class Trash {
 public:
  explicit Trash(Operation& operation) : operation_(operation) {}

  // Moves the entry `name` of the open `directory` with the absolute path
  // `parent` into the trash, a directory as one item. The item stays when that
  // cannot be done; it is never deleted instead.
  void Put(int directory, const std::string& parent, const std::string& name);

 private:
  struct Can {
    Descriptor files;
    Descriptor information;
    std::string top;  // paths are noted relative to this; empty: absolute
  };

  [[nodiscard]] Can& CanFor(int directory, dev_t device);
  [[nodiscard]] static std::optional<Can> VolumeCan(int directory);
  [[nodiscard]] Can& HomeCan();
  // An errno value, 0 for success.
  [[nodiscard]] static int OpenParts(int trash, Can& can);
  // An errno value, EXDEV when the can is on another file system.
  [[nodiscard]] int MoveInto(Can& can, int directory, const std::string& path, const std::string& name,
                             bool by_copying);

  Operation& operation_;
  std::optional<Can> home_;
  std::optional<dev_t> home_device_;
  std::map<dev_t, Can> volumes_;
};

}  // namespace Orvix::Shell

#endif
