// Other spellings are looked for only when a name is not there as it is spelled.
#include "platform/shell/spellings.h"

#include "platform/names/other_spelling.h"
#include "platform/shell/descriptor.h"

namespace Orvix::Shell {

std::string Spellings::Find(int directory, const std::string& name) {
  struct stat ignored;
  if (fresh_ || FactsOf(directory, name.c_str(), Side::kTarget, ignored)) return name;
  int unreadable = 0;
  for (const std::string& spelling : OtherSpellings(directory, ".", name, &unreadable)) {
    if (!expected_.contains(spelling) && found_.insert(spelling).second) return spelling;
  }
  // Some directories may be written and not read: then there is no other case to
  // be found.
  if (unreadable != 0 && unreadable != EACCES) Fail(unreadable, Side::kTarget);
  return name;
}

}  // namespace Orvix::Shell
