// Writing to the two standard streams.
#include "console.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

namespace Orvix::ctl {

namespace {

// People get colours; programs, and whoever sets NO_COLOR, do not.
bool WantsColours(int stream) {
  const char* refused = std::getenv("NO_COLOR");
  const char* terminal = std::getenv("TERM");
  const bool plain = terminal != nullptr && std::strcmp(terminal, "dumb") == 0;
  return isatty(stream) == 1 && (refused == nullptr || *refused == '\0') && !plain;
}

// 0, or the error number of the write that failed.
int WriteAll(int stream, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(stream, bytes.data(), bytes.size());
    if (written >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      return errno;
    }
  }
  return 0;
}

}  // namespace

Console::Console() : colours_(WantsColours(STDOUT_FILENO)) {}

Console& Console::operator<<(std::string_view text) {
  if (!reader_gone_) pending_ += text;
  return *this;
}

void Console::Flush() {
  const int error = WriteAll(STDOUT_FILENO, pending_);
  pending_.clear();
  if (error == 0) return;
  const bool first = !reader_gone_;
  reader_gone_ = true;
  if (error != EPIPE && first) throw CommandError(std::string("cannot write the output: ") + std::strerror(error));
}

std::string Console::Strong(std::string_view text) const {
  return colours_ ? "\033[1m" + std::string(text) + "\033[0m" : std::string(text);
}

std::string Console::Faint(std::string_view text) const {
  return colours_ ? "\033[2m" + std::string(text) + "\033[0m" : std::string(text);
}

void Console::Complain(std::string_view message) {
  const bool colours = WantsColours(STDERR_FILENO);
  std::string line = colours ? "\033[1;31morvixctl:\033[0m " : "orvixctl: ";
  line += message;
  line += '\n';
  (void)WriteAll(STDERR_FILENO, line);
}

}  // namespace Orvix::ctl
