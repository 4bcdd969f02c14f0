// orvixctl: the command line in, an exit status out.
#include <CLI/CLI.hpp>
#include <csignal>
#include <functional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "commands.h"
#include "completion.h"
#include "help.h"
#include "orvix/host.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

using Words = std::vector<std::string>;

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

// What the command line asks for.
struct Request {
  std::string library_file;
  bool json = false;
  std::string name;  // to describe, or a command to explain
  Words call;        // CLASS.MEMBER and all behind it
  std::string script;
  RegistryRequest registry;
  TrashRequest trash;
  std::function<int()> run;
};

int WithSession(const Request& request, Console& console, const std::function<int(const Session&)>& command) {
  CoInitialize(nullptr);
  OxHost host{};
  host.size = sizeof host;
  host.MessageBox = ShowMessage;
  Check(OxSetHost(&host));
  const Component component = request.library_file.empty() ? Component::Load() : Component::Load(request.library_file);
  const Library library = ReadLibrary(*component.TypeLibrary().get());
  const int status = command(Session{console, component, library, request.json});
  OxSetHost(nullptr);
  return status;
}

void AddRegistry(CLI::App& app, Request& request, Console& console) {
  CLI::App* const registry = app.add_subcommand("registry", "shows, edits, exports, imports and checks the registry");
  registry->group("Registry")->require_subcommand(1)->footer(kRegistryHelp);
  RegistryRequest& wanted = request.registry;
  const auto add = [&](const char* name, const char* help, int (*run)(Console&, const RegistryRequest&)) {
    CLI::App* const command = registry->add_subcommand(name, help);
    command->callback([&, run] { request.run = [&, run] { return run(console, request.registry); }; });
    return command;
  };
  CLI::App* command = add("list", "shows the keys and values of a key, or the roots", ListRegistry);
  command->add_option("KEY", wanted.key);
  command->add_flag("-r,--recursive", wanted.recursive, "all keys below too");
  command = add("get", "shows a value", GetRegistryValue);
  command->add_option("KEY", wanted.key)->required();
  command->add_option("NAME", wanted.name, "the default value without one");
  command = add("set", "writes a value, and makes the key where it is missing", SetRegistryValue);
  command->add_option("KEY", wanted.key)->required();
  command->add_option("NAME", wanted.name)->required();
  command->add_option("VALUE", wanted.value, "dword:, hex: and the like as below, else a text")->required();
  command->footer(kRegistryHelp);
  command = add("delete", "takes a value away, or without a name the key itself", DeleteFromRegistry);
  command->add_option("KEY", wanted.key)->required();
  command->add_option("NAME", wanted.deleted);
  command->add_flag("-r,--recursive", wanted.recursive, "all keys below too");
  command = add("export", "writes a key and all below it, or everything, as text", ExportRegistry);
  command->add_option("KEY", wanted.key);
  command->add_option("-o,--output", wanted.file, "the file to write; else standard output")->type_name("FILE");
  command = add("import", "reads such a text into the registry", ImportRegistry);
  command->add_option("FILE", wanted.file, "\"-\" for standard input")->required();
  add("check", "says whether the store is sound, and what can be read of it", CheckRegistry);
}

void AddTrash(CLI::App& app, Request& request, Console& console) {
  CLI::App* const trash = app.add_subcommand("trash", "what deletions that can be undone put there");
  trash->group("Files")->require_subcommand(1);
  TrashRequest& wanted = request.trash;
  const auto add = [&](const char* name, const char* help, int (*run)(Console&, const TrashRequest&)) {
    CLI::App* const command = trash->add_subcommand(name, help);
    command->callback([&, run] { request.run = [&, run] { return run(console, request.trash); }; });
    return command;
  };
  add("list", "time of deletion, name and id of each item, the latest first", ListTrash)
      ->add_flag("--json", wanted.json, "one JSON document");
  add("restore", "puts items back where they were; nothing is replaced", RestoreFromTrash)
      ->add_option("NAME", wanted.names, "the name that it had, or its id")
      ->required();
  add("empty", "erases items for good, all of them without a name", EmptyTrash)
      ->add_option("NAME", wanted.names, "the name that it had, or its id");
}

// Where the words of a call begin: behind "call" and its options, or behind
// "complete"; else the end.
Words::iterator CallWords(Words& words) {
  const auto is_option = [](const std::string& word) { return word.starts_with("-") && word != "--"; };
  auto at = words.begin();
  while (at != words.end() && is_option(*at)) at += *at == "--library" && at + 1 != words.end() ? 2 : 1;
  if (at != words.end() && *at == "complete") return at + 1;
  if (at == words.end() || *at != "call") return words.end();
  ++at;
  while (at != words.end() && is_option(*at)) ++at;
  return at != words.end() && *at == "--" ? words.erase(at) : at;
}

int Run(Words words, Console& console) {
  Request request;
  CLI::App app("Shows Orvix's classes and calls their members.", "orvixctl");
  app.require_subcommand(1)->footer(kAppHelp);
  app.get_formatter()->column_width(28);
  app.set_help_flag("-h,--help", "this text, or the command's when it stands behind one");
  app.set_version_flag("-V,--version",
                       "orvixctl " + std::to_string(kLibraryMajor) + "." + std::to_string(kLibraryMinor),
                       "the version of the type library");
  app.add_option("--library", request.library_file,
                 "the component to use; else the liborvix.so that belongs to this program")
      ->type_name("FILE");
  const auto add = [&](const char* name, const char* help, const char* group, std::function<int(const Session&)> run) {
    CLI::App* const command = app.add_subcommand(name, help);
    return command->group(group)->callback(
        [&, run] { request.run = [&, run] { return WithSession(request, console, run); }; });
  };
  const auto takes_json = [&](CLI::App* command) { command->add_flag("--json", request.json, "one JSON document"); };
  takes_json(add("list", "the classes, enumerations and records", "Look", List));
  CLI::App* command = add("describe", "a class, a member (classString.Mid), an enumeration or a record", "Look",
                          [&](const Session& session) { return Describe(session, request.name); });
  takes_json(command);
  command->footer(kDescribeHelp)->add_option("NAME", request.name)->required();
  add("idl", "the interfaces as IDL text, members in slot order", "Look", PrintIdl);
  command = add("call", "calls a member of a new object", "Call",
                [&](const Session& session) { return Call(session, request.call); });
  takes_json(command);
  command->footer(kCallHelp)->add_option("CALL", request.call, "CLASS.MEMBER[=VALUE] [ARGUMENT...] [STEP...]");
  command = add("run", "carries out a script: one step a line, with named objects and results", "Call",
                [&](const Session& session) { return RunScript(session, request.script); });
  command->add_flag("--json", request.json, "one JSON document a step");
  command->footer(kRunHelp)->add_option("FILE", request.script, "\"-\" for standard input")->required();
  add("shell", "the same from a prompt, with history and completion", "Call", Shell)->footer(kRunHelp);
  // For the completion of shells: candidates, a line each.
  command = add("complete", "", "", [&](const Session& session) {
    for (const std::string& one : CompletionsOfWords(session.library, request.call)) session.console << one << "\n";
    return kExitDone;
  });
  command->prefix_command();
  add("register", "writes the classes into the registry", "Registry", [](const Session& session) {
    session.component.Register();
    session.console << session.library.name << " is registered.\n";
    return kExitDone;
  })->footer(kRegisterHelp);
  add("unregister", "takes them out again", "Registry", [](const Session& session) {
    session.component.Unregister();
    session.console << session.library.name << " is no longer registered.\n";
    return kExitDone;
  });
  AddRegistry(app, request, console);
  AddTrash(app, request, console);
  app.add_subcommand("help", "this text, or a command's")->group("Look")->add_option("COMMAND", request.name);

  const auto call = CallWords(words);
  request.call.assign(call, words.end());
  words.erase(call, words.end());
  try {
    std::ranges::reverse(words);  // as the parser takes them
    app.parse(words);
    if (app.got_subcommand("call") && request.call.empty()) {
      throw UsageError("call needs a class and member, such as classOrvix.GetElement.");
    }
    if (app.got_subcommand("help")) {
      console << (request.name.empty() ? app.help() : app.get_subcommand(request.name)->help("orvixctl"));
      return kExitDone;
    }
  } catch (const CLI::Success& success) {
    std::ostringstream text;
    app.exit(success, text, text);
    console << text.str();
    return kExitDone;
  } catch (const CLI::Error& error) {
    Words names;
    for (const CLI::App* one : app.get_subcommands({})) names.push_back(one->get_name());
    const std::string unknown = app.remaining().empty() ? request.name : app.remaining().front();
    throw UsageError(std::string(error.what()) + "." + (unknown.empty() ? "" : Suggestion(unknown, names)) +
                     " \"orvixctl --help\" shows what to type.");
  }
  return request.run();
}

// What went wrong, told to the person, as an exit status.
int Guarded(const Words& words, Console& console) {
  try {
    const int status = Run(words, console);
    console.Flush();
    return status;
  } catch (const UsageError& error) {
    console.Flush();
    Console::Complain(error.what());
    return kExitUsage;
  } catch (const std::exception& error) {
    console.Flush();
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
