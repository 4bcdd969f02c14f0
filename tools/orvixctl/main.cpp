// orvixctl: the command line in, an exit status out.
#include <array>
#include <csignal>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "help.h"
#include "orvix/host.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

struct Command {
  std::string_view name;
  std::string_view help;
  bool takes_json;
  std::size_t least;  // arguments
  std::size_t most;
  std::string_view wanted;  // what an argument is
  int (*run)(const Session& session, const std::vector<std::string>& words);
};

constexpr std::size_t kAnyNumber = static_cast<std::size_t>(-1);

int RunList(const Session& session, const std::vector<std::string>&) {
  List(session);
  return kExitDone;
}
int RunDescribe(const Session& session, const std::vector<std::string>& words) {
  Describe(session, words.front());
  return kExitDone;
}
int RunIdl(const Session& session, const std::vector<std::string>&) {
  PrintIdl(session);
  return kExitDone;
}
int RunRegister(const Session& session, const std::vector<std::string>&) {
  session.component.Register();
  session.console << session.library.name << " is registered.\n";
  return kExitDone;
}
int RunUnregister(const Session& session, const std::vector<std::string>&) {
  session.component.Unregister();
  session.console << session.library.name << " is no longer registered.\n";
  return kExitDone;
}

constexpr std::array<Command, 6> kCommands = {{
    {"list", kListHelp, true, 0, 0, "", RunList},
    {"describe", kDescribeHelp, true, 1, 1, "the name of a class, member, enumeration or record", RunDescribe},
    {"call", kCallHelp, true, 1, kAnyNumber, "a class and member, such as classOrvix.GetElement", Call},
    {"idl", kIdlHelp, false, 0, 0, "", RunIdl},
    {"register", kRegisterHelp, false, 0, 0, "", RunRegister},
    {"unregister", kUnregisterHelp, false, 0, 0, "", RunUnregister},
}};

const Command& FindCommand(const std::string& name) {
  std::vector<std::string> names{"help"};
  for (const Command& command : kCommands) {
    if (command.name == name) return command;
    names.emplace_back(command.name);
  }
  throw UsageError("there is no command \"" + name + "\"." + Suggestion(name, names) +
                   " \"orvixctl --help\" shows the commands.");
}

// A request for the screen: here the person reads standard error.
LONG ShowMessage(void*, const OLECHAR* text, LONG, const OLECHAR* title) {
  constexpr LONG kOk = 1;
  try {
    std::string words = "message from " + ToUtf8(title == nullptr ? u"" : title) + ": ";
    for (const char c : ToUtf8(text == nullptr ? u"" : text)) {
      if (c == '\r') continue;
      words += c == '\n' ? ' ' : c;
    }
    Console::Complain(words);
  } catch (const std::exception&) {
    // A message that cannot be told does not stop the call.
  }
  return kOk;
}

int RunWith(const Command& command, const std::optional<std::string>& file, bool json,
            const std::vector<std::string>& words, Console& console) {
  CoInitialize(nullptr);
  OxHost host{};
  host.size = sizeof host;
  host.MessageBox = ShowMessage;
  Check(OxSetHost(&host));
  const Component component = file ? Component::Load(*file) : Component::Load();
  const Library library = ReadLibrary(*component.TypeLibrary().get());
  const int status = command.run(Session{console, component, library, json}, words);
  OxSetHost(nullptr);
  return status;
}

int RunCommand(const std::vector<std::string>& words, std::size_t at, const std::optional<std::string>& file,
               Console& console) {
  const Command& command = FindCommand(words[at++]);
  bool json = false;
  for (; at < words.size() && words[at].starts_with("-"); ++at) {
    if (words[at] == "--help" || words[at] == "-h") {
      console << command.help;
      return kExitDone;
    }
    if (words[at] == "--") {
      ++at;
      break;
    }
    if (words[at] != "--json" || !command.takes_json) {
      throw UsageError("\"" + words[at] + "\" is no option of " + std::string(command.name) + ".");
    }
    json = true;
  }
  std::vector<std::string> arguments(words.begin() + static_cast<std::ptrdiff_t>(at), words.end());
  // Where one argument is all there can be, options may stand behind it too.
  while (command.most == 1 && arguments.size() > 1 && arguments.back() == "--json") {
    json = true;
    arguments.pop_back();
  }
  if (arguments.size() < command.least) {
    throw UsageError(std::string(command.name) + " needs " + std::string(command.wanted) + ". \"orvixctl " +
                     std::string(command.name) + " --help\" shows how.");
  }
  if (arguments.size() > command.most) {
    throw UsageError("\"" + arguments[command.most] + "\" is one argument too many. \"orvixctl " +
                     std::string(command.name) + " --help\" shows what to type.");
  }
  return RunWith(command, file, json, arguments, console);
}

int Run(const std::vector<std::string>& words, Console& console) {
  std::optional<std::string> file;
  std::size_t at = 0;
  for (; at < words.size() && words[at].starts_with("-"); ++at) {
    if (words[at] == "--help" || words[at] == "-h") {
      console << kHelp;
      return kExitDone;
    }
    if (words[at] == "--version") {
      console << "orvixctl " << std::to_string(kLibraryMajor) << "." << std::to_string(kLibraryMinor) << "\n";
      return kExitDone;
    }
    if (words[at] != "--library") {
      throw UsageError("\"" + words[at] + "\" is no option. \"orvixctl --help\" shows them.");
    }
    if (++at == words.size()) throw UsageError("--library needs the name of a file.");
    file = words[at];
  }
  if (at == words.size()) throw UsageError("a command is missing. \"orvixctl --help\" shows the commands.");
  if (words[at] == "help") {
    console << (at + 1 == words.size() ? kHelp : FindCommand(words[at + 1]).help);
    return kExitDone;
  }
  return RunCommand(words, at, file, console);
}

// What went wrong, told to the person, as an exit status.
int Guarded(const std::vector<std::string>& words, Console& console) {
  try {
    const int status = Run(words, console);
    console.Flush();
    return status;
  } catch (const UsageError& error) {
    console.Flush();
    Console::Complain(error.what());
    return kExitUsage;
  } catch (const std::exception& error) {
    Console::Complain(error.what());
    return kExitFailed;
  }
}

}  // namespace

}  // namespace Orvix::ctl

int main(int argc, char** argv) {
  // A closed pipe shows as a failed write, which the console takes as the end.
  std::signal(SIGPIPE, SIG_IGN);
  using namespace Orvix::ctl;
  try {
    Console console;
    return Guarded(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc), console);
  } catch (const std::exception& error) {
    Console::Complain(error.what());
    return kExitFailed;
  }
}
