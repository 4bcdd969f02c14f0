// run and shell: scripts from a file, and steps as a person types them.
#include <unistd.h>

#include <editline/readline.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <memory>

#include "completion.h"
#include "script.h"

namespace Orvix::ctl {

namespace {

int RunLines(const Session& session, std::istream& lines, const std::string& name) {
  Script script(session);
  std::string line;
  int number = 0;
  while (std::getline(lines, line)) {
    ++number;
    const std::string where = name + ":" + std::to_string(number) + ": ";
    try {
      script.Do(line, number);
    } catch (const Error& error) {
      session.console.Flush();
      if (session.json) {
        session.console << Print(Json{{"line", number}, {"error", JsonOfError(error)}}) << "\n";
        session.console.Flush();
      }
      Console::Complain(where + Told(error));
      return kExitFailed;
    } catch (const CommandError& error) {
      throw CommandError(where + error.what());
    } catch (const UsageError& error) {
      throw UsageError(where + error.what());
    }
  }
  if (lines.bad()) throw CommandError(name + " cannot be read.");
  return script.AnyOperationFailed() ? kExitFailed : kExitDone;
}

// The line editor calls back without a place for data of ours.
const Script* completed_script = nullptr;
const Library* completed_library = nullptr;

char** Complete(const char* word, int start, int) {
  rl_attempted_completion_over = 1;
  const std::string line(rl_line_buffer, static_cast<std::size_t>(start));
  const std::vector<std::string> found = CompletionsOfLine(*completed_library, *completed_script, line, word);
  if (found.empty()) return nullptr;
  // The common beginning, then the candidates.
  std::string common = found.front();
  for (const std::string& one : found) {
    const auto differ = std::ranges::mismatch(common, one);
    common.erase(differ.in1, common.end());
  }
  auto** const list = static_cast<char**>(std::calloc(found.size() + 2, sizeof(char*)));
  if (list == nullptr) return nullptr;
  list[0] = strdup(common.c_str());
  for (std::size_t i = 0; i < found.size(); ++i) list[i + 1] = strdup(found[i].c_str());
  if (found.size() == 1) list[1] = nullptr;
  return list;
}

}  // namespace

int RunScript(const Session& session, const std::string& file) {
  if (file == "-") return RunLines(session, std::cin, "standard input");
  std::ifstream lines(file);
  if (!lines) throw CommandError(file + " cannot be opened: " + std::strerror(errno) + ".");
  return RunLines(session, lines, file);
}

int Shell(const Session& session) {
  if (isatty(STDIN_FILENO) == 0) return RunLines(session, std::cin, "standard input");
  Script script(session);
  completed_script = &script;
  completed_library = &session.library;
  static char name[] = "orvixctl";
  static char breaks[] = " \t=";
  rl_readline_name = name;
  rl_completer_word_break_characters = breaks;
  rl_attempted_completion_function = Complete;
  using_history();
  session.console << "Members by name, \"x = new classString\" for objects; Tab completes, an empty Ctrl-D ends.\n";
  session.console.Flush();
  for (int number = 1;; ++number) {
    const std::unique_ptr<char, void (*)(void*)> line(readline("orvix> "), std::free);
    if (line == nullptr) break;
    if (*line != '\0') add_history(line.get());
    try {
      script.Do(line.get(), number);
    } catch (const Error& error) {
      Console::Complain(Told(error));
    } catch (const std::runtime_error& error) {
      Console::Complain(error.what());
    }
    session.console.Flush();
  }
  session.console << "\n";
  return kExitDone;
}

}  // namespace Orvix::ctl
