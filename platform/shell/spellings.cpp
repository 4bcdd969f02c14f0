// The directory is read once, and only when a name is not there as it is spelled.
#include "platform/shell/spellings.h"

#include <algorithm>
#include <functional>

#include "platform/names/case_fold.h"
#include "platform/shell/descriptor.h"
#include "platform/shell/entries.h"

namespace Orvix::Shell {

void Spellings::ReadAll() {
  read_ = true;
  // Some directories may be written and not read: then there is no other case to
  // be found.
  const Descriptor readable(openat(directory_, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!readable.ok() && errno != EACCES) Fail(errno, Side::kTarget);
  if (!readable.ok()) return;
  const Entries entries(readable.get(), Side::kTarget);
  for (std::size_t i = 0; i < entries.size(); ++i) {
    const std::string name = entries.NameOf(i);
    if (!expected_.contains(name)) by_folded_[FoldName(FromUtf8(name))].push_back(name);
  }
  for (auto& [folded, names] : by_folded_) std::ranges::sort(names, std::greater<>());
}

std::string Spellings::Find(const std::string& name) {
  struct stat ignored;
  if (fresh_ || FactsOf(directory_, name.c_str(), Side::kTarget, ignored)) return name;
  if (!read_) ReadAll();
  const auto found = by_folded_.find(FoldName(FromUtf8(name)));
  if (found == by_folded_.end() || found->second.empty()) return name;
  std::string spelling = std::move(found->second.back());
  found->second.pop_back();
  return spelling;
}

}  // namespace Orvix::Shell
