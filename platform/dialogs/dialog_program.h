// One run of the dialog program that the desktop has.
#ifndef ORVIX_PLATFORM_DIALOGS_DIALOG_PROGRAM_H
#define ORVIX_PLATFORM_DIALOGS_DIALOG_PROGRAM_H

#include <optional>
#include <string>
#include <vector>

#include "platform/system/process.h"

namespace Orvix {

struct DialogCall {
  std::string name;  // of the program
  std::vector<std::string> arguments;
};
struct DialogResult {
  std::size_t call;  // which of the calls was made, from 0
  std::string output;
  ProgramEnd end;
};

// Makes the first of the calls whose program can be started; the KDE desktop prefers
// "kdialog". None when there is no display, nothing could be started, or the output
// was endless. The host's DoEvents is called meanwhile, some forty times a second.
[[nodiscard]] std::optional<DialogResult> RunDialog(const std::vector<DialogCall>& calls);

}  // namespace Orvix

#endif
