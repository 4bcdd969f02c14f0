// Standard output and error of the tool: output that ends quietly when its
// reader has gone, colours for people only, and the two kinds of failure.
#ifndef ORVIX_TOOLS_ORVIXCTL_CONSOLE_H
#define ORVIX_TOOLS_ORVIXCTL_CONSOLE_H

#include <stdexcept>
#include <string>
#include <string_view>

namespace Orvix::ctl {

inline constexpr int kExitDone = 0;
inline constexpr int kExitFailed = 1;  // a call failed, or the component is not there
inline constexpr int kExitUsage = 2;   // the command line is wrong

// The command line is wrong; the message says what to type instead.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};
// The command could not be carried out; the message says why.
struct CommandError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class Console {
 public:
  Console();

  // Collects; nothing is written before Flush.
  Console& operator<<(std::string_view text);
  // Writes what was collected. A reader that has gone ends the output for good
  // and is no failure; CommandError for anything else (a full disk).
  void Flush();

  // The text in bold, or faint, when standard output is a terminal.
  [[nodiscard]] std::string Strong(std::string_view text) const;
  [[nodiscard]] std::string Faint(std::string_view text) const;

  // One message for the person: "orvixctl: ..." on standard error.
  static void Complain(std::string_view message);

 private:
  std::string pending_;
  bool colours_;
  bool reader_gone_ = false;
};

}  // namespace Orvix::ctl

#endif
