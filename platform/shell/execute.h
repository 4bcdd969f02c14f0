// Opening files with the programs meant for them, behind ShellExecuteA.
#ifndef ORVIX_PLATFORM_SHELL_EXECUTE_H
#define ORVIX_PLATFORM_SHELL_EXECUTE_H

#include <chrono>
#include <string>
#include <vector>

#include "orvix/text.h"

namespace Orvix {

// What ShellExecuteA answers: more than 32 is success.
enum ExecuteResult : INT {
  kExecuteNoResources = 0,
  kExecuteFileNotFound = 2,
  kExecutePathNotFound = 3,
  kExecuteAccessDenied = 5,
  kExecuteNoMemory = 8,
  kExecuteBadFormat = 11,
  kExecuteShared = 26,
  kExecuteIncomplete = 27,
  kExecuteNoAssociation = 31,
  kExecuteDone = 42,
};

struct ExecuteRequest {
  Text verb{};        // "open", "explore" (directories only), empty for "open"; letter case does not count
  Text file{};        // a name, or an address with a scheme of two or more letters ("https:...")
  Text parameters{};  // for executables only; blanks separate, double quotes hold together
  Text directory{};   // to start in; empty for the process's
  // The desktop's opener may stay until the document is closed: still running
  // after this time counts as success.
  std::chrono::milliseconds patience{2000};
};

// Executables (an execute bit, and a known header) are started themselves,
// everything else goes to the desktop's opener. No shell is involved.
[[nodiscard]] ExecuteResult Execute(const ExecuteRequest& request);

// The words of a command line: blanks separate, double quotes hold together,
// a backslash before a quote makes it an ordinary one, two before a quote stand
// for one.
[[nodiscard]] std::vector<std::string> WordsOfCommandLine(TextView line);

}  // namespace Orvix

#endif
