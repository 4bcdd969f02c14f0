#include "attack/attack.h"

#include <dirent.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>

namespace Orvix::attack {

Trial::Trial(std::string mode, std::uint64_t seed, double seconds)
    : mode_(std::move(mode)),
      seed_(seed),
      end_(std::chrono::steady_clock::now() + std::chrono::milliseconds(static_cast<long>(seconds * 1000))),
      random_(seed) {}

void Trial::Finding(const std::string& what) {
  ++findings_;
  std::printf("FINDING %s (seed %llu): %s\n", mode_.c_str(), static_cast<unsigned long long>(seed_), what.c_str());
  std::fflush(stdout);
}

bool InChild(Trial& trial, int seconds, const std::function<int(Progress&)>& body) {
  void* const shared = mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) return false;
  auto* const progress = static_cast<Progress*>(shared);
  std::fflush(stdout);
  const pid_t child = fork();
  if (child == 0) {
    alarm(static_cast<unsigned>(seconds));
    int status = 100;
    try {
      status = body(*progress);
    } catch (const std::exception& error) {
      std::printf("exception: %s\n", error.what());
    }
    std::fflush(stdout);
    _exit(status);
  }
  int status = 0;
  waitpid(child, &status, 0);
  const bool well = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  if (!well) {
    const std::string how =
        WIFSIGNALED(status) ? (WTERMSIG(status) == SIGALRM ? "no end" : "signal " + std::to_string(WTERMSIG(status)))
                            : "exit code " + std::to_string(WEXITSTATUS(status));
    trial.Finding(how + " at step " + std::to_string(progress->step) + ", " + progress->words);
  }
  munmap(shared, sizeof(Progress));
  return well;
}

Scratch::Scratch() {
  std::string pattern = (std::filesystem::temp_directory_path() / "orvix-attack-XXXXXX").string();
  native_ = mkdtemp(pattern.data());
}
Scratch::~Scratch() {
  std::error_code ignored;
  std::filesystem::remove_all(native_, ignored);
}

Text Scratch::Name(const std::string& name) const {
  BSTR platform = nullptr;
  // An empty name would be the current directory.
  if (FAILED(OxPlatformName(Native(name).c_str(), &platform))) throw std::bad_alloc();
  Text text(ViewOf(platform));
  SysFreeString(platform);
  return text;
}

void Scratch::Write(const std::string& name, const std::string& content) const {
  std::filesystem::create_directories(std::filesystem::path(Native(name)).parent_path());
  std::ofstream(Native(name), std::ios::binary) << content;
}

std::string Scratch::Read(const std::string& name) const {
  std::ifstream file(Native(name), std::ios::binary);
  if (!file) return "none";
  return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> Scratch::Entries() const {
  std::vector<std::string> entries;
  std::error_code ignored;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(
           native_, std::filesystem::directory_options::skip_permission_denied, ignored)) {
    entries.push_back(std::filesystem::relative(entry.path(), native_).string());
  }
  std::sort(entries.begin(), entries.end());
  return entries;
}

std::size_t OpenDescriptors() {
  std::size_t count = 0;
  if (DIR* const open = opendir("/proc/self/fd")) {
    while (readdir(open) != nullptr) ++count;
    closedir(open);
  }
  return count;
}

}  // namespace Orvix::attack
