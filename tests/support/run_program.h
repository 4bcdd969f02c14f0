// Runs a built program as a person would: arguments in, both streams and the
// exit status out.
#ifndef ORVIX_TESTS_SUPPORT_RUN_PROGRAM_H
#define ORVIX_TESTS_SUPPORT_RUN_PROGRAM_H

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Orvix::testing_support {

struct ProgramResult {
  int status = -1;  // -1: ended by a signal
  std::string out;
  std::string err;
};
inline std::ostream& operator<<(std::ostream& stream, const ProgramResult& result) {
  return stream << "status " << result.status << "\nout: " << result.out << "\nerr: " << result.err;
}

// A fresh directory, gone when this goes.
class ScratchDirectory {
 public:
  ScratchDirectory() {
    char name[] = "/tmp/orvix-scratch-XXXXXX";
    if (mkdtemp(name) == nullptr) throw std::runtime_error("no scratch directory");
    path_ = name;
  }
  ScratchDirectory(const ScratchDirectory&) = delete;
  ScratchDirectory& operator=(const ScratchDirectory&) = delete;
  ~ScratchDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

inline std::string ReadWhole(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

// `program` is a name in the folder ORVIX_BIN. Standard output goes to the open
// file `output` when one is given, else it is collected.
inline ProgramResult RunProgram(const std::string& program, const std::vector<std::string>& arguments,
                                int output = -1) {
  const char* folder = std::getenv("ORVIX_BIN");
  const std::string path = (folder == nullptr ? std::string("bin") : std::string(folder)) + "/" + program;
  const ScratchDirectory scratch;
  const std::string out = (scratch.Path() / "out").string();
  const std::string err = (scratch.Path() / "err").string();
  std::vector<char*> words{const_cast<char*>(path.c_str())};
  for (const std::string& argument : arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("cannot start " + path);
  if (child == 0) {
    dup2(output >= 0 ? output : open(out.c_str(), O_WRONLY | O_CREAT, 0600), STDOUT_FILENO);
    dup2(open(err.c_str(), O_WRONLY | O_CREAT, 0600), STDERR_FILENO);
    execv(path.c_str(), words.data());
    _exit(127);
  }
  int status = 0;
  if (waitpid(child, &status, 0) != child) throw std::runtime_error("lost " + path);
  ProgramResult result;
  if (WIFEXITED(status)) result.status = WEXITSTATUS(status);
  if (output < 0) result.out = ReadWhole(out);
  result.err = ReadWhole(err);
  return result;
}

// The same, with nobody reading standard output.
inline ProgramResult RunWithoutReader(const std::string& program, const std::vector<std::string>& arguments) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("no pipe");
  close(ends[0]);
  const ProgramResult result = RunProgram(program, arguments, ends[1]);
  close(ends[1]);
  return result;
}

// The same, with standard output on a disk that is full.
inline ProgramResult RunOnFullDisk(const std::string& program, const std::vector<std::string>& arguments) {
  const int full = open("/dev/full", O_WRONLY);
  if (full < 0) throw std::runtime_error("no full disk");
  const ProgramResult result = RunProgram(program, arguments, full);
  close(full);
  return result;
}

}  // namespace Orvix::testing_support

#endif
