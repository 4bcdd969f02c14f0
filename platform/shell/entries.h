// All entries of an open directory at one moment, so that the directory may
// change while they are worked on.
#ifndef ORVIX_PLATFORM_SHELL_ENTRIES_H
#define ORVIX_PLATFORM_SHELL_ENTRIES_H

#include <dirent.h>

#include <string>
#include <string_view>
#include <vector>

#include "platform/shell/results.h"

namespace Orvix::Shell {

class Entries {
 public:
  struct Entry {
    std::size_t at;
    unsigned char type;  // DT_..., never DT_UNKNOWN
  };

  // Without "." and "..", in the directory's own order.
  Entries(int directory, Side side);

  // By the bytes of the names: what comes of several entries that meet shall not
  // depend on how the directory is kept.
  void Sort();

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  [[nodiscard]] const char* NameOf(std::size_t i) const { return names_.data() + entries_[i].at; }
  [[nodiscard]] unsigned char TypeOf(std::size_t i) const { return entries_[i].type; }

 private:
  void Take(int directory, const dirent64& entry, Side side);

  std::string names_;  // NUL-terminated
  std::vector<Entry> entries_;
};

}  // namespace Orvix::Shell

#endif
