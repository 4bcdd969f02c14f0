// Verdicts on names that are taken, and the names to use instead.
#include "platform/shell/collision.h"

#include "platform/shell/descriptor.h"
#include "platform/shell/results.h"

namespace Orvix::Shell {

Verdict Decide(Operation& operation, int directory, const char* name, bool incoming_directory,
               const std::string& path) {
  struct stat there;
  if (!FactsOf(directory, name, Side::kTarget, there)) return Verdict::kFree;
  if (operation.request.Has(kRenameOnCollision)) return Verdict::kOtherName;
  if (S_ISDIR(there.st_mode)) {
    if (!incoming_directory) throw ShellError{kDirectoryInTheWay};
    return Verdict::kMerge;
  }
  if (incoming_directory) throw ShellError{kFileInTheWay};
  return operation.progress.Allows(kOxAskOverwrite, path, /*loses_nothing=*/false) ? Verdict::kReplace : Verdict::kSkip;
}

std::string NumberedName(std::string_view name, int number, bool directory) {
  constexpr std::size_t kLongestName = 255;
  const std::size_t dot = directory ? std::string_view::npos : name.rfind('.');
  const bool has_extension = dot != std::string_view::npos && dot != 0;
  std::string end = " (" + std::to_string(number) + ")";
  std::string_view stem = name;
  // An extension that leaves no room for a stem is not treated as one.
  if (has_extension && name.size() - dot + end.size() < kLongestName) {
    end += name.substr(dot);
    stem = name.substr(0, dot);
  }
  if (stem.size() + end.size() > kLongestName) {
    std::size_t length = kLongestName - end.size();
    while (length > 0 && (static_cast<unsigned char>(stem[length]) & 0xC0) == 0x80) --length;
    stem = stem.substr(0, length);
  }
  return std::string(stem) + end;
}

}  // namespace Orvix::Shell
