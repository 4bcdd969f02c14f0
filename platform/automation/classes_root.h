// What the class table and the type libraries read of the registry, and, where it
// has nothing, of what is installed for everybody: texts and keys below the classes
// root.
#ifndef ORVIX_PLATFORM_AUTOMATION_CLASSES_ROOT_H
#define ORVIX_PLATFORM_AUTOMATION_CLASSES_ROOT_H

#include <optional>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

// The default value of a key, up to its first NUL; nothing when the key or the
// value is missing or the value is no text.
[[nodiscard]] std::optional<Text> ReadClassesText(const Text& key);

// The names of the keys right below a key; none when it is missing.
[[nodiscard]] std::vector<Text> ClassesKeysBelow(const Text& key);

}  // namespace Orvix

#endif
