// Patterns of a directory search: "*" and "?" with the platform's own rules for
// dots. "*.*" finds every name, "foo.*" finds "foo" too, "*." only names without
// an extension, "?" before a dot or at the end may stand for nothing.
#ifndef ORVIX_FRAME_RUNTIME_NAME_PATTERN_H
#define ORVIX_FRAME_RUNTIME_NAME_PATTERN_H

#include <cstdint>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

class NamePattern {
 public:
  // `folded` is the pattern in the form that all spellings of it share.
  explicit NamePattern(TextView folded);

  // Whether a name, folded in the same way, matches as a whole. In time
  // proportional to both lengths at worst.
  [[nodiscard]] bool Matches(TextView folded_name);

 private:
  enum class Kind : std::uint8_t {
    kUnit,    // itself
    kAny,     // any run
    kStar,    // any run up to and with the last dot; to the end when no dot is left
    kOne,     // a unit; nothing before a dot or at the end; a dot only when it ends the name
    kEndDot,  // a dot, or nothing at the end
  };
  struct Token {
    Kind kind;
    char16_t unit;
  };

  [[nodiscard]] bool MatchesRest(TextView name);

  std::vector<Token> tokens_;  // between the plain front and end
  Text front_;                 // what every match begins with
  Text end_;                   // what every match ends with
  bool one_run_ = false;       // between them any run will do
  std::vector<char> now_;      // which tokens may come next, by their index
  std::vector<char> next_;
};

}  // namespace Orvix

#endif
