// Where a dialog starts.
#ifndef ORVIX_PLATFORM_DIALOGS_START_PLACE_H
#define ORVIX_PLATFORM_DIALOGS_START_PLACE_H

#include <string>

#include "orvix/text.h"

namespace Orvix {

// The native place for an initial directory and an initial file name as callers
// write them: absolute; the directory with a "/" when there is no file name. A
// file name with a directory of its own goes before `directory`. A directory
// that is not there, and what cannot be a name, count as empty; an empty
// directory is the process's.
[[nodiscard]] std::string StartPlace(TextView directory, TextView file_name);

}  // namespace Orvix

#endif
