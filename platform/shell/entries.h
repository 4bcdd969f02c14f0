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

// Directories nested deeper than this are refused with 0x79: each level holds
// an open descriptor and a frame of the stack.
inline constexpr int kDeepest = 1500;

class Entries {
 public:
  struct Entry {
    std::size_t at;
    unsigned char type;  // DT_..., never DT_UNKNOWN
  };

  // Without "." and "..", in the directory's own order.
  Entries(int directory, Side side);

  [[nodiscard]] std::size_t size() const { return entries_.size(); }
  [[nodiscard]] const char* NameOf(std::size_t i) const { return names_.data() + entries_[i].at; }
  [[nodiscard]] unsigned char TypeOf(std::size_t i) const { return entries_[i].type; }

 private:
  void Take(int directory, const dirent64& entry);

  std::string names_;  // NUL-terminated
  std::vector<Entry> entries_;
};

}  // namespace Orvix::Shell

#endif
