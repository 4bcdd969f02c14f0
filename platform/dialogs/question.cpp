#include "platform/dialogs/question.h"

#include <string>

#include "platform/dialogs/dialog_program.h"

namespace Orvix {

std::optional<Answer> Ask(TextView title, TextView question) {
  const std::string name = ToUtf8(title);
  const std::string words = ToUtf8(question);
  const auto shown = RunDialog({
      {"zenity",
       {"--question", "--no-markup", "--title=" + name, "--text=" + words, "--ok-label=Yes", "--cancel-label=Cancel",
        "--extra-button=Yes to all", "--extra-button=No"}},
      {"kdialog", {"--title", name, "--menu", words, "Yes", "Yes", "Yes to all", "Yes to all", "No", "No"}},
  });
  if (!shown) return std::nullopt;
  // One of the programs tells a plain yes by its status, what else was chosen is
  // printed; a window that was closed prints nothing.
  std::string_view chosen = shown->output;
  while (chosen.ends_with('\n')) chosen.remove_suffix(1);
  if (chosen == "No") return Answer::kNo;
  if (chosen == "Yes to all") return Answer::kYesToAll;
  return chosen == "Yes" || (chosen.empty() && shown->end.ExitedWith(0)) ? Answer::kYes : Answer::kCancel;
}

bool Tell(TextView title, TextView message, Gravity gravity) {
  const std::string name = ToUtf8(title);
  const std::string words = ToUtf8(message);
  constexpr const char* kZenity[] = {"--info", "--warning", "--error"};
  constexpr const char* kKdialog[] = {"--msgbox", "--sorry", "--error"};
  const auto which = static_cast<std::size_t>(gravity);
  return RunDialog({
                       {"zenity", {kZenity[which], "--no-markup", "--title=" + name, "--text=" + words}},
                       {"kdialog", {"--title", name, kKdialog[which], words}},
                   })
      .has_value();
}

}  // namespace Orvix
