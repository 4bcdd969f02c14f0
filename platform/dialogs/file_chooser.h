// One file dialog on the screen, shown by a dialog program of the desktop.
#ifndef ORVIX_PLATFORM_DIALOGS_FILE_CHOOSER_H
#define ORVIX_PLATFORM_DIALOGS_FILE_CHOOSER_H

#include "platform/dialogs/chooser_programs.h"

namespace Orvix {

// The names chosen: native, absolute, without a "/" at the end, one at least and
// exactly one unless several were asked for. Empty when the user cancelled, when
// there is no display or no program, and when the program failed or answered
// with anything but names. Waits for the user without a limit.
[[nodiscard]] std::vector<std::string> ChooseFiles(const ChooserRequest& request);

// The filters of texts that alternate description and patterns; a description
// without patterns at the end counts for nothing.
[[nodiscard]] std::vector<FileFilter> FiltersOf(const std::vector<Text>& texts);

}  // namespace Orvix

#endif
