// The dialog programs of the desktop: what they are told on their command line
// and what their output says. Texts of the caller never stand where a program
// looks for an option.
#ifndef ORVIX_PLATFORM_DIALOGS_CHOOSER_PROGRAMS_H
#define ORVIX_PLATFORM_DIALOGS_CHOOSER_PROGRAMS_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

struct FileFilter {
  Text description;
  Text patterns;  // "*.txt;*.doc"
};

struct ChooserRequest {
  bool save = false;
  bool multiple = false;      // several files, when opening
  bool ask_overwrite = true;  // before an existing file is chosen for saving
  std::string start;          // absolute; a directory ends with "/", else its last part is the name offered
  Text title;                 // empty for the program's own
  std::vector<FileFilter> filters;
  LONG owner = 0;  // X window over which the dialog stands; 0 or below for none
};

struct ChooserProgram {
  std::string_view name;
  // The arguments, without the program's own name.
  std::vector<std::string> (*arguments)(const ChooserRequest& request);
  // The names in the output, in its order, not yet judged; `multiple` as asked for.
  std::vector<std::string> (*names)(std::string_view output, bool multiple);
};

extern const ChooserProgram kZenity;
extern const ChooserProgram kKdialog;

}  // namespace Orvix

#endif
