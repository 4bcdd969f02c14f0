// Questions and messages by the dialog program that is installed.
#ifndef ORVIX_PLATFORM_DIALOGS_QUESTION_H
#define ORVIX_PLATFORM_DIALOGS_QUESTION_H

#include <optional>

#include "orvix/text.h"

namespace Orvix {

enum class Answer : LONG { kNo = 0, kYes = 1, kYesToAll = 2, kCancel = 3 };

// None when there is no display or no program that showed it. The host's DoEvents is
// called while it is open.
[[nodiscard]] std::optional<Answer> Ask(TextView title, TextView question);

enum class Gravity { kInformation, kWarning, kError };

// False when nothing showed it. Returns when it was closed.
bool Tell(TextView title, TextView message, Gravity gravity);

}  // namespace Orvix

#endif
