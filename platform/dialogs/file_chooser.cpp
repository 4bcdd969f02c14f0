#include "platform/dialogs/file_chooser.h"

#include <limits.h>

#include <algorithm>
#include <array>
#include <cstdlib>

#include "platform/system/process.h"

namespace Orvix {
namespace {

constexpr std::size_t kMostOutput_bytes = std::size_t{4} << 20;

bool IsKdeDesktop() {
  const char* const desktops = secure_getenv("XDG_CURRENT_DESKTOP");
  for (std::string_view rest = desktops == nullptr ? "" : desktops; !rest.empty();) {
    const std::string_view desktop = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), desktop.size() + 1));
    if (desktop == "KDE") return true;
  }
  return false;
}

// Absolute, and its last component a name.
bool IsFileName(std::string_view name) {
  if (!name.starts_with('/') || name.size() >= PATH_MAX || name.find('\0') != std::string_view::npos) return false;
  const std::string_view last = name.substr(name.rfind('/') + 1);
  return !last.empty() && last != "." && last != "..";
}

// The program's standard error is unheard: toolkits chatter there.
std::vector<std::string> AnswerOf(const ChooserProgram& program, ChildProgram& child, bool multiple) {
  const std::optional<std::string> output = child.ReadOutput(kMostOutput_bytes);
  if (!output) return {};
  const ProgramEnd end = child.Wait();
  // Where the application collects the process itself the output alone speaks;
  // a cancelled dialog prints nothing.
  if (end.kind != ProgramEnd::Kind::kUnknown && !end.ExitedWith(0)) return {};
  std::vector<std::string> names = program.names(*output, multiple);
  if (!std::ranges::all_of(names, IsFileName)) return {};
  return names;
}

}  // namespace

std::vector<std::string> ChooseFiles(const ChooserRequest& asked) {
  if (!HasDisplay()) return {};
  ChooserRequest request = asked;
  // An owner is a window of the X display: without one the program would look in vain.
  if (const char* const x = secure_getenv("DISPLAY"); x == nullptr || *x == '\0') request.owner = 0;
  std::array programs{&kZenity, &kKdialog};
  if (IsKdeDesktop()) std::ranges::reverse(programs);
  for (const ChooserProgram* const program : programs) {
    const std::string file = FindProgram(program->name);
    if (file.empty()) continue;
    ChildProgram child;
    // What cannot be started showed nothing, so the other one may try. What
    // started and failed may have been on the screen: no second dialog then.
    if (child.Start({file, program->arguments(request)}, ChildProgram::Output::kRead) != 0) continue;
    return AnswerOf(*program, child, request.multiple && !request.save);
  }
  return {};
}

std::vector<FileFilter> FiltersOf(const std::vector<Text>& texts) {
  std::vector<FileFilter> filters;
  for (std::size_t i = 0; i + 1 < texts.size(); i += 2) filters.push_back({texts[i], texts[i + 1]});
  return filters;
}

}  // namespace Orvix
