// One item on its way into a trash. What a killed operation leaves there is
// cleared by the next one: each works under a name of its own beside "files" and
// "info", locked as long as it is at work, which is a second name of the
// information file and so tells which one that was.
#ifndef ORVIX_PLATFORM_SHELL_TRASH_ENTRY_H
#define ORVIX_PLATFORM_SHELL_TRASH_ENTRY_H

#include <ctime>
#include <string>
#include <string_view>

#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

// The line ends of an information file are LF; `path` is percent-encoded but for
// letters, digits, "/", "-", ".", "_" and "~"; the date is the local time.
[[nodiscard]] std::string TrashInformation(std::string_view path, const struct tm& deleted);

struct TrashCan {
  Descriptor trash;
  Descriptor files;
  Descriptor information;
  std::string top;  // paths are noted relative to this; empty: absolute
};

// Takes away what operations left there whose process is no more: information
// without an item, and copies that are not whole.
void ClearAbandoned(const TrashCan& can);

class TrashEntry {
 public:
  // `can` stays as long as this.
  explicit TrashEntry(const TrashCan& can) : can_(can) {}
  TrashEntry(const TrashEntry&) = delete;
  TrashEntry& operator=(const TrashEntry&) = delete;
  // Takes everything away again, unless Keep was called.
  ~TrashEntry();

  // An errno value; the first call.
  [[nodiscard]] int Start(std::string_view information);
  // The name in the trash directory for a copy that is not whole yet.
  [[nodiscard]] const std::string& CopyName() const { return copy_name_; }
  // Gives the information its name: an errno value, EEXIST when it is taken.
  [[nodiscard]] int Claim(const std::string& item);
  // Gives that name up again. False when it could not be.
  bool GiveUp();
  // The item is in "files".
  void Keep();

 private:
  [[nodiscard]] int WriteClaim();

  const TrashCan& can_;
  std::string name_;  // beside "files"; empty: not made
  std::string copy_name_;
  Descriptor lock_;
  std::string claimed_;  // in "info"
  std::string text_;
  bool kept_ = false;
};

}  // namespace Orvix::Shell

#endif
