// The commands. Each takes what stands behind its name on the command line, its
// own options already taken out, and writes to the console.
#ifndef ORVIX_TOOLS_ORVIXCTL_COMMANDS_H
#define ORVIX_TOOLS_ORVIXCTL_COMMANDS_H

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

// UsageError for names that the library does not have.
void List(const Session& session);
void Describe(const Session& session, const std::string& target);
void PrintIdl(const Session& session);
// kExitFailed when a step of the call failed; its error has been told.
int Call(const Session& session, const std::vector<std::string>& words);

// The class, or UsageError with the nearest name.
[[nodiscard]] const Class& RequireClass(const Library& library, const std::string& name);

}  // namespace Orvix::ctl

#endif
