#include "platform/system/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <mutex>
#include <new>
#include <utility>

#include "frame/runtime/never_destroyed.h"

namespace Orvix {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// How often an end is looked for where the kernel gives nothing to wait on.
constexpr int kLookEvery_ms = 20;

// What a program that has more rights than its caller goes by: with the caller's
// own words programs of the caller would run with those rights.
constexpr char kFixedPath[] = "PATH=/usr/bin:/bin";

bool HasMoreRightsThanCaller() { return getauxval(AT_SECURE) != 0; }

// Programs nobody waited for.
struct Unwaited {
  std::mutex mutex;
  std::vector<pid_t> processes;
};

Unwaited& TheUnwaited() {
  static NeverDestroyed<Unwaited> unwaited;
  return *unwaited;
}

void CollectUnwaited() {
  Unwaited& unwaited = TheUnwaited();
  const std::lock_guard lock(unwaited.mutex);
  std::erase_if(unwaited.processes, [](pid_t process) {
    int status = 0;
    const pid_t got = waitpid(process, &status, WNOHANG);
    return got == process || (got < 0 && errno == ECHILD);
  });
}

// Collects the program when it has ended.
std::optional<ProgramEnd> Look(pid_t process, int options) {
  if (process < 0) return ProgramEnd{};  // never started; to wait for -1 would take any child of the application
  int status = 0;
  pid_t got = 0;
  do {
    got = waitpid(process, &status, options);
  } while (got < 0 && errno == EINTR);
  if (got == 0) return std::nullopt;
  // An application that ignores the signals of its children, or collects all of
  // them, leaves nothing to learn.
  if (got != process) return ProgramEnd{ProgramEnd::Kind::kUnknown, 0};
  if (WIFSIGNALED(status)) return ProgramEnd{ProgramEnd::Kind::kKilled, WTERMSIG(status)};
  return ProgramEnd{ProgramEnd::Kind::kExited, WEXITSTATUS(status)};
}

class FileActions {
 public:
  FileActions() {
    if (posix_spawn_file_actions_init(&actions_) != 0) throw std::bad_alloc();
  }
  FileActions(const FileActions&) = delete;
  FileActions& operator=(const FileActions&) = delete;
  ~FileActions() { posix_spawn_file_actions_destroy(&actions_); }

  void Open(int descriptor, int flags) {
    Check(posix_spawn_file_actions_addopen(&actions_, descriptor, "/dev/null", flags, 0));
  }
  void Duplicate(int from, int to) { Check(posix_spawn_file_actions_adddup2(&actions_, from, to)); }
  void CloseFrom(int descriptor) { Check(posix_spawn_file_actions_addclosefrom_np(&actions_, descriptor)); }
  void ChangeDirectory(const std::string& directory) {
    Check(posix_spawn_file_actions_addchdir_np(&actions_, directory.c_str()));
  }
  [[nodiscard]] const posix_spawn_file_actions_t* get() const { return &actions_; }

 private:
  static void Check(int error) {
    if (error != 0) throw std::bad_alloc();
  }
  posix_spawn_file_actions_t actions_{};
};

class Attributes {
 public:
  Attributes() {
    if (posix_spawnattr_init(&attributes_) != 0) throw std::bad_alloc();
    sigset_t signals;
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    posix_spawnattr_setflags(&attributes_, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  }
  Attributes(const Attributes&) = delete;
  Attributes& operator=(const Attributes&) = delete;
  ~Attributes() { posix_spawnattr_destroy(&attributes_); }
  [[nodiscard]] const posix_spawnattr_t* get() const { return &attributes_; }

 private:
  posix_spawnattr_t attributes_{};
};

// Moves a descriptor out of the standard ones' places, which a process may have
// closed: the child's own would else fall on it. -1 when there is no room.
int AboveStandard(int descriptor) {
  if (descriptor > STDERR_FILENO) return descriptor;
  const int moved = fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
  close(descriptor);
  return moved;
}

}  // namespace

std::string FindProgram(std::string_view name) {
  const char* const path = std::getenv("PATH");
  std::string_view rest = path == nullptr ? "/usr/local/bin:/usr/bin:/bin" : path;
  if (HasMoreRightsThanCaller()) rest = std::string_view(kFixedPath).substr(5);
  while (!rest.empty()) {
    const std::string_view directory = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(rest.size(), directory.size() + 1));
    if (!directory.starts_with('/')) continue;
    std::string program(directory);
    program += '/';
    program += name;
    struct stat facts {};
    if (stat(program.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) continue;
    if (faccessat(AT_FDCWD, program.c_str(), X_OK, AT_EACCESS) == 0) return program;
  }
  return {};
}

bool HasDisplay() {
  const auto is_set = [](const char* variable) {
    const char* const value = secure_getenv(variable);
    return value != nullptr && *value != '\0';
  };
  return is_set("DISPLAY") || is_set("WAYLAND_DISPLAY");
}

ChildProgram::~ChildProgram() {
  CloseEnds();
  if (process_ < 0 || end_) return;
  try {
    Unwaited& unwaited = TheUnwaited();
    const std::lock_guard lock(unwaited.mutex);
    unwaited.processes.push_back(process_);
  } catch (const std::bad_alloc&) {  // it stays uncollected, which costs one entry of the process table
  }
}

void ChildProgram::CloseEnds() {
  for (int* const descriptor : {&handle_, &output_}) {
    if (*descriptor >= 0) close(std::exchange(*descriptor, -1));
  }
}

int ChildProgram::Start(const ProgramCall& call, Output output) {
  CollectUnwaited();
  std::vector<char*> words{const_cast<char*>(call.program.c_str())};
  for (const std::string& argument : call.arguments) words.push_back(const_cast<char*>(argument.c_str()));
  words.push_back(nullptr);

  const Attributes attributes;
  FileActions actions;
  int write_end = -1;
  if (output == Output::kRead) {
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0) return errno;
    output_ = AboveStandard(ends[0]);
    write_end = AboveStandard(ends[1]);
    if (output_ < 0 || write_end < 0) {
      if (write_end >= 0) close(write_end);
      return EMFILE;
    }
    fcntl(output_, F_SETFL, O_NONBLOCK);
  }
  int error = 0;
  try {
    actions.Open(STDIN_FILENO, O_RDONLY);
    if (write_end >= 0) {
      actions.Duplicate(write_end, STDOUT_FILENO);
    } else {
      actions.Open(STDOUT_FILENO, O_WRONLY);
    }
    actions.Open(STDERR_FILENO, O_WRONLY);
    actions.CloseFrom(STDERR_FILENO + 1);
    if (!call.directory.empty()) actions.ChangeDirectory(call.directory);
    char* fixed[] = {const_cast<char*>(kFixedPath), nullptr};
    error = posix_spawn(&process_, call.program.c_str(), actions.get(), attributes.get(), words.data(),
                        HasMoreRightsThanCaller() ? fixed : environ);
  } catch (const std::bad_alloc&) {
    error = ENOMEM;
  }
  if (write_end >= 0) close(write_end);
  if (error != 0) {
    process_ = -1;
    CloseEnds();
    return error;
  }
  handle_ = static_cast<int>(syscall(SYS_pidfd_open, process_, 0));
  return 0;
}

std::optional<ProgramEnd> ChildProgram::WaitFor(milliseconds limit) {
  const Clock::time_point deadline = Clock::now() + limit;
  while (!end_) {
    end_ = Look(process_, WNOHANG);
    if (end_) break;
    const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now()).count();
    if (left <= 0) return std::nullopt;
    pollfd ended{handle_, POLLIN, 0};
    const auto most = handle_ >= 0 ? 60'000 : kLookEvery_ms;
    poll(&ended, 1, static_cast<int>(std::min<decltype(left)>(left, most)));
  }
  return end_;
}

ProgramEnd ChildProgram::Wait() {
  if (!end_) end_ = Look(process_, 0);
  return end_.value_or(ProgramEnd{});
}

std::optional<std::string> ChildProgram::ReadOutput(std::size_t most_bytes, void (*meanwhile)()) {
  constexpr int kBetween_ms = 25;
  std::string text;
  char part[4096];
  for (bool ended = false;;) {
    const ssize_t got = read(output_, part, sizeof part);
    if (got > 0) {
      if (text.size() + static_cast<std::size_t>(got) > most_bytes) {
        Kill();
        return std::nullopt;
      }
      text.append(part, static_cast<std::size_t>(got));
      continue;
    }
    if (got < 0 && errno == EINTR) continue;
    if (got == 0 || errno != EAGAIN || ended) break;
    // Something that the program left behind may hold the output open for good:
    // what is there once the program itself has ended is all.
    pollfd waiting[] = {{output_, POLLIN, 0}, {handle_, POLLIN, 0}};
    const int patience = meanwhile != nullptr ? kBetween_ms : handle_ >= 0 ? -1 : kLookEvery_ms;
    if (poll(waiting, 2, patience) == 0 && meanwhile != nullptr) meanwhile();
    if (!end_) end_ = Look(process_, WNOHANG);
    ended = end_.has_value();
  }
  Wait();
  return text;
}

void ChildProgram::Kill() {
  if (process_ < 0 || end_) return;
  // Its number may be another program's once someone else in this process has
  // collected it. As long as it is not collected, even an ended program keeps the
  // number for the group that it left behind.
  siginfo_t facts{};
  if (waitid(P_PID, static_cast<id_t>(process_), &facts, WEXITED | WNOHANG | WNOWAIT) == 0) kill(-process_, SIGKILL);
  Wait();
}

}  // namespace Orvix
