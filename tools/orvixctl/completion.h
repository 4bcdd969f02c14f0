// What may follow on a line that is being typed.
#ifndef ORVIX_TOOLS_ORVIXCTL_COMPLETION_H
#define ORVIX_TOOLS_ORVIXCTL_COMPLETION_H

#include <string>
#include <vector>

#include "commands.h"
#include "script.h"

namespace Orvix::ctl {

// For a shell: `words` stand behind "orvixctl call" or "describe" (the first of
// them), the last one is being typed and may be empty. Classes, members, parameters
// as NAME:=, constants.
[[nodiscard]] std::vector<std::string> CompletionsOfWords(const Library& library,
                                                          const std::vector<std::string>& words);

// For the prompt: `line` in front of `word`.
[[nodiscard]] std::vector<std::string> CompletionsOfLine(const Library& library, const Script& script,
                                                         const std::string& line, const std::string& word);

}  // namespace Orvix::ctl

#endif
