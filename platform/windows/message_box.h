// What an unattended message box leaves in the system log.
#ifndef ORVIX_PLATFORM_WINDOWS_MESSAGE_BOX_H
#define ORVIX_PLATFORM_WINDOWS_MESSAGE_BOX_H

#include <string>

#include "orvix/text.h"

namespace Orvix {

// Longest record in bytes; daemons cut or drop longer ones.
inline constexpr std::size_t kLongestLogRecord = 8000;

// One line of UTF-8, "title: text", or the text alone without a title. CR LF is
// a space; other control characters are written \t \n \r, \x07 or \u0085; a
// byte that was no UTF-8 is written \xFF. What exceeds kLongestLogRecord is cut
// between two characters and ends in "...".
[[nodiscard]] std::string LogRecordOf(TextView text, TextView title);

}  // namespace Orvix

#endif
