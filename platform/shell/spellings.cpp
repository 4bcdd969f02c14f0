// Other spellings are looked for only when a name is not there as it is spelled.
#include "platform/shell/spellings.h"

#include <vector>

#include "platform/names/other_spelling.h"
#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

std::string Spellings::Find(int directory, const std::string& name) {
  struct stat ignored;
  if (fresh_ || FactsOf(directory, name.c_str(), Side::kTarget, ignored)) return name;
  int unreadable = 0;
  std::vector<std::string> spellings;
  do spellings = OtherSpellings(directory, ".", name, &unreadable);
  while (unreadable == EINTR);
  for (const std::string& spelling : spellings) {
    if (!expected_.contains(spelling) && found_.insert(spelling).second) return spelling;
  }
  // Some directories may be written and not read: then there is no other case to
  // be found.
  if (unreadable != 0 && unreadable != EACCES) Fail(unreadable, Side::kTarget);
  return name;
}

}  // namespace Orvix::Shell
