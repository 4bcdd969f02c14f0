// A new entry of a copy: a staged file whose failures are the service's.
#ifndef ORVIX_PLATFORM_SHELL_STAGED_H
#define ORVIX_PLATFORM_SHELL_STAGED_H

#include <cerrno>

#include "platform/filesystem/staged_file.h"
#include "platform/shell/results.h"

namespace Orvix::Shell {

class Staged {
 public:
  // `directory` stays open as long as this.
  explicit Staged(int directory) : staged_(directory) {}

  // One of these, once. The process's mask applies to the modes of a file; its
  // descriptor is this object's.
  int MakeFile(mode_t mode) {
    Check(staged_.MakeFile(mode));
    return staged_.descriptor();
  }
  void MakeLink(const char* content) { Check(staged_.MakeLink(content)); }
  void MakeSpecial(mode_t mode, dev_t device) { Check(staged_.MakeSpecial(mode, device)); }

  [[nodiscard]] const char* name() const { return staged_.name(); }

  // Gives the entry its name. False when `replace` is not set and the name is
  // taken: the entry then waits for another call.
  [[nodiscard]] bool Commit(const char* name, bool replace) {
    const int error = staged_.Commit(name, replace);
    if (error == EEXIST && !replace) return false;
    Check(error);
    Check(staged_.Close());
    return true;
  }

 private:
  static void Check(int error) {
    if (error != 0) Fail(error, Side::kTarget);
  }

  StagedFile staged_;
};

}  // namespace Orvix::Shell

#endif
