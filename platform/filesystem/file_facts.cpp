// The runtime's view of a file's status.
#include "platform/filesystem/file_facts.h"

#include "platform/filesystem/open_files.h"

namespace Orvix {

LONG AttributesOf(const struct stat& facts, std::string_view last_component) {
  LONG attributes = 0;
  if ((facts.st_mode & 0222) == 0) attributes |= kOxAttributeReadOnly;
  if (S_ISDIR(facts.st_mode)) attributes |= kOxAttributeDirectory;
  if (S_ISREG(facts.st_mode)) attributes |= kOxAttributeArchive;
  if (last_component.starts_with('.') && last_component != "." && last_component != "..") {
    attributes |= kOxAttributeHidden;
  }
  return attributes;
}

LONG SizeOf(const struct stat& facts) {
  const auto now = static_cast<std::uint64_t>(facts.st_size);
  return static_cast<LONG>(LengthBeforeOpening(facts).value_or(now));
}

}  // namespace Orvix
