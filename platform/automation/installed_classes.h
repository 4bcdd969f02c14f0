// Classes that are registered for everybody: by a file that was installed with
// their library, in place of keys in each user's registry.
#ifndef ORVIX_PLATFORM_AUTOMATION_INSTALLED_CLASSES_H
#define ORVIX_PLATFORM_AUTOMATION_INSTALLED_CLASSES_H

#include <optional>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

// What the files "orvix/*.classes" beside the run-time say of a key below the
// classes root. They are read once, when the first key is asked for; their form is
// that of `orvixctl registry export`, and a text that begins with "./" names a file
// beside them. Names ignore case (ASCII).
[[nodiscard]] std::optional<Text> InstalledClassesText(TextView key);
[[nodiscard]] std::vector<Text> InstalledKeysBelow(TextView key);

}  // namespace Orvix

#endif
