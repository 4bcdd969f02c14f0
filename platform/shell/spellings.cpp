// The directory is read once, and only when a name is not there as it is spelled.
#include "platform/shell/spellings.h"

#include "platform/names/case_fold.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"

namespace Orvix::Shell {

void Spellings::Put(const std::string& name) {
  const auto [place, is_new] = by_folded_.try_emplace(FoldName(FromUtf8(name)), name);
  if (!is_new && name < place->second) place->second = name;
}

void Spellings::Add(const std::string& name) {
  if (read_) Put(name);
}

std::string Spellings::Find(const std::string& name) {
  struct stat ignored;
  if (fresh_ || FactsOf(directory_, name.c_str(), Side::kTarget, ignored)) return name;
  if (!read_) {
    // Some directories may be written and not read: then there is no other case
    // to be found.
    read_ = true;
    const Descriptor readable(openat(directory_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!readable.ok() && errno != EACCES) Fail(errno, Side::kTarget);
    if (readable.ok()) {
      const Entries entries(readable.get(), Side::kTarget);
      for (std::size_t i = 0; i < entries.size(); ++i) Put(entries.NameOf(i));
    }
  }
  const auto found = by_folded_.find(FoldName(FromUtf8(name)));
  return found == by_folded_.end() ? name : found->second;
}

}  // namespace Orvix::Shell
