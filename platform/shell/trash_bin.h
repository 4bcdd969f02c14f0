// What lies in the user's trash, on every file system that is mounted, whoever put
// it there; bringing it back, and erasing it.
#ifndef ORVIX_PLATFORM_SHELL_TRASH_BIN_H
#define ORVIX_PLATFORM_SHELL_TRASH_BIN_H

#include <string>
#include <vector>

#include "platform/shell/trash_entry.h"

namespace Orvix::Shell {

struct TrashedItem {
  std::string id;        // the item's own native path
  std::string original;  // the native path that it had
  std::string deleted;   // local time, 2002-11-30T10:00:00; empty when it was not noted
  std::size_t can;       // where it lies
  std::string name;      // among the can's files
};

class TrashBin {
 public:
  // Reads all trash directories of this user that exist; what cannot be read is left out.
  TrashBin();

  // The latest deleted ones first.
  [[nodiscard]] const std::vector<TrashedItem>& items() const { return items_; }
  // By its id, or the latest one that had this native path; null for none.
  [[nodiscard]] const TrashedItem* Find(const std::string& path) const;
  // Puts an item where it was; directories above that are missing are made. An errno
  // value; EEXIST when something has its place, and nothing is changed then.
  [[nodiscard]] int Restore(const TrashedItem& item);
  // Deletes an item for good. False when anything of it is left.
  [[nodiscard]] bool Erase(const TrashedItem& item);

 private:
  void Open(const std::string& path, const std::string& top);
  void Read(std::size_t can);

  std::vector<TrashCan> cans_;
  std::vector<std::string> places_;  // of the cans
  std::vector<TrashedItem> items_;
};

}  // namespace Orvix::Shell

#endif
