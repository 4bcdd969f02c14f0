#include "platform/dialogs/dialog_program.h"

#include <algorithm>
#include <cstdlib>
#include <numeric>
#include <string_view>

#include "orvix/runtime.h"
#include "platform/host/host_table.h"

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

constinit thread_local LONG last_dialog = kOxDialogNone;

}  // namespace

std::optional<DialogResult> RunDialog(const std::vector<DialogCall>& calls) {
  last_dialog = kOxDialogNotShown;
  if (!HasDisplay()) return std::nullopt;
  std::vector<std::size_t> order(calls.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  const auto is_liked = [&](std::size_t i) { return calls[i].name == "kdialog" && IsKdeDesktop(); };
  std::stable_partition(order.begin(), order.end(), is_liked);
  for (const std::size_t i : order) {
    const std::string file = FindProgram(calls[i].name);
    if (file.empty()) continue;
    ChildProgram child;
    // What cannot be started showed nothing, so the other one may try. What
    // started and failed may have been on the screen: no second dialog then.
    if (child.Start({file, calls[i].arguments}, ChildProgram::Output::kRead) != 0) continue;
    // The program's standard error is unheard: toolkits chatter there.
    std::optional<std::string> output = child.ReadOutput(kMostOutput_bytes, LetHostWork);
    if (!output) return std::nullopt;
    const ProgramEnd end = child.Wait();
    last_dialog = end.kind == ProgramEnd::Kind::kExited && end.status != 0 && output->empty() ? kOxDialogCancelled
                                                                                              : kOxDialogAnswered;
    return DialogResult{i, std::move(*output), end};
  }
  return std::nullopt;
}

}  // namespace Orvix

LONG ORVIX_CALL OxLastDialog() { return Orvix::last_dialog; }
