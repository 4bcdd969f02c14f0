// A walk through a directory with everything below it, what is below before the
// directory itself. It needs no more of the stack for a deep tree than for a flat
// one.
#ifndef ORVIX_PLATFORM_SHELL_TREE_WALK_H
#define ORVIX_PLATFORM_SHELL_TREE_WALK_H

#include <cstring>
#include <string>
#include <vector>

#include "platform/shell/entries.h"
#include "platform/shell/levels.h"

namespace Orvix::Shell {

// Walks the directory `name` of the open `directory`; both must be sources. The
// visitor's members get an open directory and the name in it:
//   Enter(levels, entries)      in a directory, whose entries these are
//   Entry(directory, name, type)  anything that is no directory
//   Leave(directory, name)      the directory has been walked through
// `path` is meanwhile that of the entry, and stays so when one of them throws.
// What vanishes meanwhile is left out.
template <class Visitor>
void WalkTree(int directory, const char* name, std::string& path, Visitor&& visitor) {
  struct Open {
    Entries entries;
    std::size_t next = 0;
  };
  Levels levels(directory, Side::kSource);
  std::vector<Open> open;
  const auto enter = [&](const char* entry) {
    const int error = levels.TryEnter(entry);
    if (error == ENOENT) return false;
    if (error != 0) Fail(error, Side::kSource);
    open.push_back({Entries(levels.here(), Side::kSource)});
    visitor.Enter(levels, open.back().entries);
    return true;
  };
  const auto shorten = [&](const char* entry) { path.resize(path.size() - 1 - std::strlen(entry)); };
  if (!enter(name)) return;
  while (!open.empty()) {
    Open& here = open.back();
    if (here.next < here.entries.size()) {
      const std::size_t i = here.next++;
      const char* const entry = here.entries.NameOf(i);
      path += '/';
      path += entry;
      if (here.entries.TypeOf(i) == DT_DIR) {
        if (!enter(entry)) shorten(open.back().entries.NameOf(i));
      } else {
        visitor.Entry(levels.here(), entry, here.entries.TypeOf(i));
        shorten(entry);
      }
      continue;
    }
    const Descriptor left = levels.Leave();
    open.pop_back();
    const char* const entry = open.empty() ? name : open.back().entries.NameOf(open.back().next - 1);
    visitor.Leave(levels.here(), entry);
    if (!open.empty()) shorten(entry);
  }
}

}  // namespace Orvix::Shell

#endif
