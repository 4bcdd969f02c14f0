// catalogue: a directory as a table. A small program written on orvix.hpp; read
// listing.cpp for how the classes are used.
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "listing.h"
#include "options.h"

namespace {

constexpr int kDone = 0;
constexpr int kFailed = 1;
constexpr int kUsage = 2;

// One line on the terminal, overwritten by the next stage and gone at the end;
// nothing when standard error is no terminal.
class Stages {
 public:
  ~Stages() { Clear(); }
  void Show(const std::string& stage) {
    if (!shown_to_person_) return;
    std::fprintf(stderr, "\r\033[K%s ...", stage.c_str());
    std::fflush(stderr);
  }
  void Clear() {
    if (shown_to_person_) std::fputs("\r\033[K", stderr);
  }

 private:
  bool shown_to_person_ = isatty(STDERR_FILENO) == 1;
};

// A reader that has gone had what it wanted.
int Print(const std::string& text) {
  errno = 0;
  const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
  if (written || errno == EPIPE) return kDone;
  std::fprintf(stderr, "catalogue: cannot write the table: %s\n", std::strerror(errno));
  return kFailed;
}

std::string Summary(std::size_t count, const catalogue::Options& options) {
  const std::string one = options.directories ? " directory" : " file";
  const std::string many = options.directories ? " directories" : " files";
  return std::to_string(count) + (count == 1 ? one : many) + "\n";
}

int Run(const std::vector<std::string>& words) {
  const catalogue::Options options = catalogue::ParseOptions(words);
  if (options.help) return Print(std::string(catalogue::kHelp));
  CoInitialize(nullptr);
  Stages stages;
  const auto progress = [&](const std::string& stage) { stages.Show(stage); };
  const std::vector<Orvix::String> rows = catalogue::ReadRows(options, progress);
  stages.Show("printing");
  const std::string table = rows.empty() ? std::string() : catalogue::Table(rows);
  stages.Clear();
  return Print(table + Summary(rows.size(), options));
}

}  // namespace

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  try {
    return Run(std::vector<std::string>(argv + (argc > 0 ? 1 : 0), argv + argc));
  } catch (const catalogue::UsageError& error) {
    std::fprintf(stderr, "catalogue: %s \"catalogue --help\" shows what to type.\n", error.what());
    return kUsage;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "catalogue: %s\n", error.what());
    return kFailed;
  }
}
