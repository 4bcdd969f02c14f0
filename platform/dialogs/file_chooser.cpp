#include "platform/dialogs/file_chooser.h"

#include <limits.h>
#include <syslog.h>

#include <algorithm>
#include <cstdlib>

#include "platform/dialogs/dialog_program.h"
#include "platform/system/log.h"

namespace Orvix {
namespace {

// Absolute, and its last component a name.
bool IsFileName(std::string_view name) {
  if (!name.starts_with('/') || name.size() >= PATH_MAX || name.find('\0') != std::string_view::npos) return false;
  const std::string_view last = name.substr(name.rfind('/') + 1);
  return !last.empty() && last != "." && last != "..";
}

}  // namespace

std::vector<std::string> ChooseFiles(const ChooserRequest& asked) {
  ChooserRequest request = asked;
  // An owner is a window of the X display: without one the program would look in vain.
  if (const char* const x = secure_getenv("DISPLAY"); x == nullptr || *x == '\0') request.owner = 0;
  const ChooserProgram* const programs[] = {&kZenity, &kKdialog};
  const auto shown = RunDialog({{std::string(kZenity.name), kZenity.arguments(request)},
                                {std::string(kKdialog.name), kKdialog.arguments(request)}});
  if (!shown) {
    Log(LOG_WARNING, "A file dialog could not be shown: there is no display, or neither zenity nor kdialog");
    return {};
  }
  // Where the application collects the process itself the output alone speaks;
  // a cancelled dialog prints nothing.
  if (shown->end.kind != ProgramEnd::Kind::kUnknown && !shown->end.ExitedWith(0)) return {};
  std::vector<std::string> names = programs[shown->call]->names(shown->output, request.multiple && !request.save);
  if (!std::ranges::all_of(names, IsFileName)) return {};
  return names;
}

std::vector<FileFilter> FiltersOf(const std::vector<Text>& texts) {
  std::vector<FileFilter> filters;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) filters.push_back({texts[i], texts[i + 1]});
  return filters;
}

}  // namespace Orvix
