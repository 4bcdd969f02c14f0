// What a program shows: stages while it works, its result, what went wrong, and
// the exit status that says so.
#ifndef ORVIX_EXAMPLES_SHARED_PROGRAM_H
#define ORVIX_EXAMPLES_SHARED_PROGRAM_H

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <exception>
#include <functional>
#include <string>

#include "command_line.h"

namespace examples {

inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kUsage = 2;

// Told what is going on.
using Progress = std::function<void(const std::string& stage)>;

// One line on the terminal, overwritten by the next stage and gone at the end;
// nothing when standard error is no terminal.
class Stages {
 public:
  Stages() = default;
  Stages(const Stages&) = delete;
  Stages& operator=(const Stages&) = delete;
  ~Stages() { Clear(); }
  void Show(const std::string& stage) {
    if (!shown_to_person_) return;
    showing_ = true;
    std::fprintf(stderr, "\r\033[K%s ...", stage.c_str());
    std::fflush(stderr);
  }
  void Clear() {
    if (showing_) std::fputs("\r\033[K", stderr);
    showing_ = false;
  }

 private:
  bool showing_ = false;
  bool shown_to_person_ = isatty(STDERR_FILENO) == 1;
};

// "1 file", "2 files".
inline std::string Count(std::size_t count, const std::string& one, const std::string& many) {
  return std::to_string(count) + " " + (count == 1 ? one : many);
}

// Writes the result to standard output. A reader that has gone had what it
// wanted: that is no failure.
inline int Print(const std::string& program, const std::string& text) {
  errno = 0;
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (written || errno == EPIPE) return kDone;
  std::fprintf(stderr, "%s: cannot write the result: %s\n", program.c_str(), std::strerror(errno));
  return kFailed;
}

// Runs `body` behind the options that `app` has; what it throws becomes a line on
// standard error and an exit status. Errors of the component come with number,
// source and description.
inline int RunMain(CLI::App& app, int argc, char** argv, const std::function<int()>& body) {
  std::signal(SIGPIPE, SIG_IGN);
  const std::string program = app.get_name();
  const auto wrong = [&](const char* what) {
    std::fprintf(stderr, "%s: %s \"%s --help\" shows what to type.\n", program.c_str(), what, program.c_str());
    return kUsage;
  };
  try {
    app.parse(argc, argv);
    return body();
  } catch (const CLI::CallForHelp&) {
    return Print(program, app.help());
  } catch (const CLI::Error& error) {
    return wrong((std::string(error.what()) + ".").c_str());
  } catch (const UsageError& error) {
    return wrong(error.what());
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s: %s\n", program.c_str(), error.what());
    return kFailed;
  }
}

}  // namespace examples

#endif
