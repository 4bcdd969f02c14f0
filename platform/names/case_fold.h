// Comparison of names without regard to case: Unicode's simple case folding,
// length unchanged, independent of the locale in force. Files, shares and
// registry names use it alike.
#ifndef ORVIX_PLATFORM_NAMES_CASE_FOLD_H
#define ORVIX_PLATFORM_NAMES_CASE_FOLD_H

#include "orvix/text.h"

namespace Orvix {

// The folded form of one UTF-16 unit ("A" gives "a"); surrogates as they are.
[[nodiscard]] char16_t FoldUnit(char16_t unit) noexcept;

// Appends `name` in the form that all spellings of it share, unit for unit;
// surrogate pairs are folded as the characters they stand for.
void AppendFolded(TextView name, Text& folded);

[[nodiscard]] inline Text FoldName(TextView name) {
  Text folded;
  AppendFolded(name, folded);
  return folded;
}

[[nodiscard]] bool EqualNames(TextView a, TextView b) noexcept;

}  // namespace Orvix

#endif
