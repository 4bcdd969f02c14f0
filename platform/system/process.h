// Programs started by the run-time: found on PATH, started without a shell and
// without what this process has open, waited for, read from.
#ifndef ORVIX_PLATFORM_SYSTEM_PROCESS_H
#define ORVIX_PLATFORM_SYSTEM_PROCESS_H

#include <sys/types.h>

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Orvix {

// The absolute name of the first program of this name on PATH; empty when there
// is none. Relative entries of PATH are passed over: a program must not come
// from wherever the process happens to be. So are files that this process may
// not execute. A process with more rights than its caller goes by /usr/bin and
// /bin instead.
[[nodiscard]] std::string FindProgram(std::string_view name);

// Whether windows can be shown: a display is named in the environment.
[[nodiscard]] bool HasDisplay();

struct ProgramCall {
  std::string program;                 // absolute
  std::vector<std::string> arguments;  // without the program's own name
  std::string directory{};             // to start in; empty for this process's
};

// How a program ended.
struct ProgramEnd {
  enum class Kind {
    kExited,   // `status` is its exit status
    kKilled,   // by the signal `status`
    kUnknown,  // someone else in this process collected it
  };
  Kind kind = Kind::kUnknown;
  int status = 0;

  [[nodiscard]] bool ExitedWith(int wanted) const { return kind == Kind::kExited && status == wanted; }
};

// A program that was started, in a session of its own, with empty standard
// input and unheard error output, all signals at their defaults; started by a
// process with more rights than its caller, with no environment but a PATH. Going out of
// scope neither waits nor ends it: it is collected when a later one starts.
class ChildProgram {
 public:
  ChildProgram() = default;
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;
  ~ChildProgram();

  enum class Output { kUnheard, kRead };
  // 0, or the error number of the start (ENOEXEC, ENOENT, EACCES, ...). Once
  // for each object.
  [[nodiscard]] int Start(const ProgramCall& call, Output output);

  // Waits for the end; none when the program still runs after `limit`.
  [[nodiscard]] std::optional<ProgramEnd> WaitFor(std::chrono::milliseconds limit);
  ProgramEnd Wait();
  // What the program writes until it ends; none when that is more than
  // `most_bytes`, and the program is then ended. Helpers that it leaves behind
  // are not waited for.
  // `meanwhile` may be null; else it is called every 25 milliseconds.
  [[nodiscard]] std::optional<std::string> ReadOutput(std::size_t most_bytes, void (*meanwhile)() = nullptr);
  // Ends the program and the helpers that stayed in its group, also when it has
  // ended itself but was not waited for yet, and waits.
  void Kill();

 private:
  void CloseEnds();

  pid_t process_ = -1;
  int handle_ = -1;  // readable when the program has ended; -1 where the kernel has no such thing
  int output_ = -1;
  std::optional<ProgramEnd> end_;
};

}  // namespace Orvix

#endif
