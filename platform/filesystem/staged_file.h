// A new entry on its way to its name: it gets the name in one step when it is
// whole, and goes away when that does not come about. A file has no name until
// then where the file system can do that; else, and while it replaces another
// one, it has one of a few temporary names, which the next one in that directory
// clears when a kill has left it behind.
#ifndef ORVIX_PLATFORM_FILESYSTEM_STAGED_FILE_H
#define ORVIX_PLATFORM_FILESYSTEM_STAGED_FILE_H

#include <sys/types.h>

#include <string>

namespace Orvix {

// Renames without ever replacing: an errno value, EEXIST when the name is taken.
[[nodiscard]] int RenameToFreeName(int from, const char* name, int to, const char* to_name) noexcept;

// Late write failures of an open file, which stays open with its locks: an errno
// value, 0 for none.
[[nodiscard]] int LateFailure(int descriptor) noexcept;

class StagedFile {
 public:
  // `directory` (any open descriptor of it) stays open as long as this.
  explicit StagedFile(int directory);
  StagedFile(const StagedFile&) = delete;
  StagedFile& operator=(const StagedFile&) = delete;
  ~StagedFile();

  // One of these, once; an errno value, 0 for success. The process's mask applies
  // to the modes of a file. The descriptor, open for both, is this object's.
  [[nodiscard]] int MakeFile(mode_t mode);
  [[nodiscard]] int MakeLink(const char* content);
  [[nodiscard]] int MakeSpecial(mode_t mode, dev_t device);
  [[nodiscard]] int descriptor() const { return descriptor_; }

  // Of a link or a special file: its temporary name.
  [[nodiscard]] const char* name() const { return name_.c_str(); }

  // Gives the entry its name, unless late write failures show; an errno value.
  // EEXIST when `replace` is not set and the name is taken: the entry then waits
  // for another call.
  [[nodiscard]] int Commit(const char* name, bool replace);
  // Closes the descriptor; an errno value.
  [[nodiscard]] int Close();

 private:
  template <class Make>
  int UnderTemporaryName(Make&& make);

  int directory_;
  int descriptor_ = -1;
  std::string name_;  // empty: nothing to take away
};

}  // namespace Orvix

#endif
