// A new entry under a temporary name in its own directory: it gets its name in
// one step when it is whole, and goes away when that does not come about.
#ifndef ORVIX_PLATFORM_SHELL_STAGED_H
#define ORVIX_PLATFORM_SHELL_STAGED_H

#include <string>

#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

// Renames without ever replacing: an errno value, EEXIST when the name is taken.
[[nodiscard]] int RenameToFreeName(int from, const char* name, int to, const char* to_name) noexcept;

class Staged {
 public:
  // `directory` stays open as long as this.
  explicit Staged(int directory) : directory_(directory) {}
  Staged(const Staged&) = delete;
  Staged& operator=(const Staged&) = delete;
  ~Staged();

  // One of these, once. The process's mask applies to the modes of a file.
  [[nodiscard]] Descriptor MakeFile(mode_t mode);
  void MakeLink(const char* content);
  void MakeSpecial(mode_t mode, dev_t device);

  [[nodiscard]] const char* name() const { return name_.c_str(); }

  // Gives the entry its name. False when `replace` is not set and the name is
  // taken: the entry then waits for another call.
  [[nodiscard]] bool Commit(const char* name, bool replace);

 private:
  template <class Make>
  void Create(Make&& make);

  int directory_;
  std::string name_;  // empty: nothing to take away
};

}  // namespace Orvix::Shell

#endif
