// Processes killed at any moment, and limits of the system.
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <thread>

#include "attack/scenarios.h"

namespace Orvix::attack {

namespace {

constexpr const char* kKilled[] = {"StoreData over a file",
                                   "StoreBinaryData over a file",
                                   "CopyFiles of a tree",
                                   "MoveFiles of a tree",
                                   "registry",
                                   "CreateFile"};

const Scenario& Named(const std::string& name) {
  for (const Scenario& scenario : Scenarios()) {
    if (scenario.name == name) return scenario;
  }
  std::abort();
}

void CloseNumbers() {
  for (SHORT number = 1; number <= 40; ++number) OxCloseFile(number);
}

}  // namespace

void Kills(Trial& trial) {
  while (trial.TimeLeft()) {
    const Scenario& scenario = Named(kKilled[trial.Pick(std::size(kKilled))]);
    const Scratch scratch;
    InChild(trial, 60, [&](Progress& progress) {
      std::snprintf(progress.words, sizeof progress.words, "%s killed", scenario.name);
      for (int round = 0; round < 20; ++round) {
        progress.step = static_cast<std::uint64_t>(round);
        for (const auto& entry : std::filesystem::directory_iterator(scratch.Native())) {
          if (entry.path().filename().string().starts_with(".orvix")) continue;  // what earlier kills left
          std::filesystem::remove_all(entry.path());
        }
        scenario.prepare(scratch);
        const pid_t victim = fork();
        if (victim == 0) {
          for (;;) {
            scenario.run(scratch);
            CloseNumbers();
          }
        }
        usleep(static_cast<useconds_t>(trial.Pick(4000)));
        kill(victim, SIGKILL);
        waitpid(victim, nullptr, 0);
        if (const std::string wrong = scenario.judge(scratch, 1); !wrong.empty()) {
          std::printf("  %s: %s\n", scenario.name, wrong.c_str());
          return 3;
        }
      }
      // One more in peace clears what lies about.
      scenario.prepare(scratch);
      scenario.run(scratch);
      CloseNumbers();
      if (const std::string left = Leftovers(scratch); !left.empty()) {
        std::printf("  %s: left behind %s\n", scenario.name, left.c_str());
        return 4;
      }
      return 0;
    });
    trial.runs += 20;
  }
}

void Limits(Trial& trial) {
  const auto scenarios = Scenarios();
  while (trial.TimeLeft()) {
    const Scenario& scenario = scenarios[trial.Pick(scenarios.size())];
    const std::size_t kind = trial.Pick(3);
    const rlim_t memory = trial.Chance(50) ? 300'000 : 60'000'000;  // none at all, or too little
    const rlim_t amount = trial.Pick(kind == 0 ? 30 : kind == 1 ? 40'000 : memory);
    const Scratch scratch;
    InChild(trial, 60, [&](Progress& progress) {
      constexpr const char* kWords[] = {"descriptors", "bytes of a file", "bytes of memory"};
      std::snprintf(progress.words, sizeof progress.words, "%s with %llu %s", scenario.name,
                    static_cast<unsigned long long>(amount), kWords[kind]);
      scenario.prepare(scratch);
      constexpr __rlimit_resource kResources[] = {RLIMIT_NOFILE, RLIMIT_FSIZE, RLIMIT_AS};
      rlimit before{};
      getrlimit(kResources[kind], &before);
      rlimit limit{amount, before.rlim_max};
      if (kind == 2) {
        std::size_t pages = 0;
        if (FILE* const file = std::fopen("/proc/self/statm", "r")) {
          if (std::fscanf(file, "%zu", &pages) != 1) pages = 0;
          std::fclose(file);
        }
        limit.rlim_cur = pages * 4096 + amount;
      }
      setrlimit(kResources[kind], &limit);
      const LONG number = NumberOf([&] { scenario.run(scratch); });
      setrlimit(kResources[kind], &before);
      CloseNumbers();
      const std::string wrong = scenario.judge(scratch, number);
      if (!wrong.empty()) std::printf("  %s: %s\n", progress.words, wrong.c_str());
      return wrong.empty() ? 0 : 3;
    });
    ++trial.runs;
  }
}

}  // namespace Orvix::attack
