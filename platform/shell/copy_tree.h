// Copying an entry with everything below it: content, times and modes. Links
// are copied as links. Each file gets its name only when it is whole.
#ifndef ORVIX_PLATFORM_SHELL_COPY_TREE_H
#define ORVIX_PLATFORM_SHELL_COPY_TREE_H

#include <sys/stat.h>

#include <string>
#include <vector>

#include "platform/shell/copy_content.h"
#include "platform/shell/operation.h"

namespace Orvix::Shell {

// What was copied, so that a move can take away just that.
struct CopiedEntry {
  std::string name;
  struct stat facts;  // when it was opened
  std::size_t depth;  // 0 for the entry that was asked for
  bool whole = false;
};
// Each directory comes before what is below it.
using CopiedTree = std::vector<CopiedEntry>;

// Entry counts and bytes below and with an entry, for progress.
void ExpectTree(Progress& progress, int directory, const char* name, bool with_bytes);

class TreeCopier {
 public:
  explicit TreeCopier(Operation& operation) : operation_(operation), content_(operation.progress) {}

  // Where one entry comes from and goes to. The directories are open; the paths
  // are those of the entries themselves, for the user's eyes.
  struct Route {
    int from;
    const char* name;
    int to;
    std::string to_name;
    bool fresh;  // the target directory was made for this copy: nothing is there
  };

  // False when the user kept something from being copied. `copied` may be null,
  // and is empty at first otherwise. After a failure the files copied so far stay.
  bool Copy(const Route& route, std::string& from_path, std::string& to_path, CopiedTree* copied);

 private:
  class Walk;

  bool CopyEntry(const Route& route, unsigned char type);
  bool CopyFile(const Route& route);
  bool CopyLinkOrSpecial(const Route& route);
  template <class Stage>
  bool Place(const Route& route, Stage&& stage);
  void Note(const char* name, const struct stat& facts);

  Operation& operation_;
  ContentCopier content_;
  std::string* from_path_ = nullptr;
  std::string* to_path_ = nullptr;
  CopiedTree* copied_ = nullptr;
  std::size_t depth_ = 0;
};

}  // namespace Orvix::Shell

#endif
