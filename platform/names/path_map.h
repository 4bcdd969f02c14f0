// Names as callers write them and the native names behind them. "\" and "/" are
// the same; "X:" and "\\server\share" come from the drive map, other names are
// native ones; ".." never climbs above a root; each component is looked up as
// given, then without regard to case, then without trailing dots and spaces.
#ifndef ORVIX_PLATFORM_NAMES_PATH_MAP_H
#define ORVIX_PLATFORM_NAMES_PATH_MAP_H

#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix {

[[nodiscard]] constexpr bool IsSeparator(char16_t unit) { return unit == u'\\' || unit == u'/'; }

struct NativeName {
  std::string path;             // the bytes on disk; keeps a trailing "/", which asks for a directory
  bool parent_missing = false;  // a component before the last is not there
  bool is_root = false;         // of a drive, of a share or of the file system
  bool is_missing = false;      // looked for in every spelling; where false it may be missing too
};

// The native name as the text says it, nothing looked up on disk. Errors: 52
// for the empty name, an embedded NUL, a surrogate that stands for no byte, "*"
// or "?"; 76 for an unmapped drive or share.
[[nodiscard]] NativeName NameAsGiven(TextView name);

// The native name after looking its components up. A name whose last component
// is missing keeps it as given, so that it can be created; so do the components
// after a missing one. `looked_for` says that nothing is there by the name as given.
// The errors of `NameAsGiven`.
[[nodiscard]] NativeName ResolveName(TextView name, bool looked_for = false);

// The native name of something that exists or can be created: `ResolveName`,
// with error 76 when a component before the last is missing.
[[nodiscard]] std::string NativePath(TextView name);

// A native name counted from the process's directory when it is relative.
[[nodiscard]] std::string AbsolutePath(std::string native);

// The name that callers use for a native one: under the drive (else the share)
// whose directory is the nearest above it. Errors: 52 for an empty name or one
// with a backslash, which no name can express; 76 when no root holds it.
[[nodiscard]] Text PlatformName(std::string_view native);

}  // namespace Orvix

#endif
