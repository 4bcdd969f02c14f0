// The commands. Each takes what stands behind its name on the command line, its
// own options already taken out, and writes to the console.
#ifndef ORVIX_TOOLS_ORVIXCTL_COMMANDS_H
#define ORVIX_TOOLS_ORVIXCTL_COMMANDS_H

#include <optional>
#include <string>
#include <vector>

#include "console.h"
#include "library.h"

namespace Orvix::ctl {

// What a command works with.
struct Session {
  Console& console;
  const Component& component;
  const Library& library;
  bool json = false;  // output for programs
};

// They give an exit status. UsageError for names that the library does not have.
int List(const Session& session);
int Describe(const Session& session, const std::string& target);
int PrintIdl(const Session& session);
// kExitFailed when a step of the call failed; its error has been told.
int Call(const Session& session, const std::vector<std::string>& words);

// Carries out the lines of the file, "-" for standard input. kExitFailed behind the
// first call that failed.
int RunScript(const Session& session, const std::string& file);
// The same for what is typed at a prompt; failures do not end it.
int Shell(const Session& session);

// The class, or UsageError with the nearest name.
[[nodiscard]] const Class& RequireClass(const Library& library, const std::string& name);

// What a registry command is told.
struct RegistryRequest {
  std::string key;                     // from its root on
  std::string name;                    // of a value, empty for the default one
  std::string value;                   // typed, or a text
  std::optional<std::string> deleted;  // the value to delete; else the key
  std::string file;
  bool recursive = false;
};
// UsageError for a key without a root and a value that cannot be read, CommandError
// for what the registry refuses. Export and check go on behind what is damaged, and
// give kExitFailed then.
int ListRegistry(Console& console, const RegistryRequest& request);
int GetRegistryValue(Console& console, const RegistryRequest& request);
int SetRegistryValue(Console& console, const RegistryRequest& request);
int DeleteFromRegistry(Console& console, const RegistryRequest& request);
int ExportRegistry(Console& console, const RegistryRequest& request);
int ImportRegistry(Console& console, const RegistryRequest& request);
int CheckRegistry(Console& console, const RegistryRequest& request);

// What a trash command is told.
struct TrashRequest {
  std::vector<std::string> names;  // native ones, or ids
  bool json = false;
};
// CommandError for what is not there, and for a place that is taken.
int ListTrash(Console& console, const TrashRequest& request);
int RestoreFromTrash(Console& console, const TrashRequest& request);
int EmptyTrash(Console& console, const TrashRequest& request);

}  // namespace Orvix::ctl

#endif
