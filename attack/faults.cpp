// Every system call and every allocation of every scenario failed in its turn: once,
// and from then on.
#include <malloc.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <new>

#include "attack/scenarios.h"
#include "tests/platform/shell/faulty_calls.h"

namespace {

// Allocations of this thread that are counted down to the one that fails.
thread_local long until_failure = 0;  // 0: none fails
thread_local bool fails_onward = false;
thread_local long failed_allocations = 0;

[[maybe_unused]] bool AllocationFails() {
  if (until_failure == 0) return false;
  if (until_failure > 1) {
    --until_failure;
    return false;
  }
  if (!fails_onward) until_failure = 0;
  ++failed_allocations;
  errno = ENOMEM;  // as the functions do that this stands before
  return failed_allocations < 100'000;
}

}  // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
void* malloc(std::size_t bytes) { return AllocationFails() ? nullptr : __libc_malloc(bytes); }
void* calloc(std::size_t count, std::size_t bytes) { return AllocationFails() ? nullptr : __libc_calloc(count, bytes); }
void* realloc(void* block, std::size_t bytes) { return AllocationFails() ? nullptr : __libc_realloc(block, bytes); }
}
#endif

namespace Orvix::attack {

namespace {

// The file numbers that a failed call leaves open, as callers expect.
void CloseNumbers() {
  for (SHORT number = 1; number <= 40; ++number) OxCloseFile(number);
}

// One run in a child with one fault; true while there was one.
template <class Fault>
bool RunWithFault(Trial& trial, const Scenario& scenario, const std::string& fault, Fault make_fault) {
  const Scratch scratch;
  int pipe_ends[2];
  if (pipe(pipe_ends) != 0) return false;
  InChild(trial, 60, [&](Progress& progress) {
    std::snprintf(progress.words, sizeof progress.words, "%s, %s", scenario.name, fault.c_str());
    scenario.prepare(scratch);
    // Once without a fault, so that what is made once is there.
    scenario.run(scratch);
    CloseNumbers();
    for (const auto& entry : std::filesystem::directory_iterator(scratch.Native())) {
      std::filesystem::remove_all(entry.path());
    }
    scenario.prepare(scratch);
    const std::size_t open_before = OpenDescriptors();
    LONG number = 0;
    const bool failed = make_fault([&] { number = NumberOf([&] { scenario.run(scratch); }); });
    CloseNumbers();
    std::string wrong = scenario.judge(scratch, number);
    const std::size_t open = OpenDescriptors();
    if (open > open_before + 3)
      wrong += " descriptors: " + std::to_string(open_before) + " became " + std::to_string(open);
    if (const std::string left = Leftovers(scratch); !left.empty()) {
      // The next one there clears it.
      scenario.run(scratch);
      CloseNumbers();
      if (const std::string still = Leftovers(scratch); !still.empty()) wrong += " left behind: " + still;
    }
    if (!wrong.empty()) std::printf("  %s, %s: %s\n", scenario.name, fault.c_str(), wrong.c_str());
    const char byte = failed ? 'y' : 'n';
    if (::syscall(SYS_write, pipe_ends[1], &byte, 1) != 1) return 2;
    return wrong.empty() ? 0 : 3;
  });
  ++trial.runs;
  char byte = 'n';
  ::syscall(SYS_close, pipe_ends[1]);
  const bool told = ::read(pipe_ends[0], &byte, 1) == 1;
  ::syscall(SYS_close, pipe_ends[0]);
  return told && byte == 'y';
}

}  // namespace

void Faults(Trial& trial) {
  constexpr int kErrors[] = {EIO, ENOSPC, EACCES, ENOMEM, EINTR};
  const auto scenarios = Scenarios();
  while (trial.TimeLeft()) {
    const Scenario& scenario = scenarios[trial.Pick(scenarios.size())];
    const int error = kErrors[trial.Pick(std::size(kErrors))];
    const auto kind =
        trial.Chance(70) || error == EINTR ? testing::Faults::Kind::kOnce : testing::Faults::Kind::kOnward;
    for (int at = 1; trial.TimeLeft(); ++at) {
      const std::string words = std::string(kind == testing::Faults::Kind::kOnce ? "once " : "onward ") +
                                std::to_string(at) + " error " + std::to_string(error);
      const bool failed = RunWithFault(trial, scenario, words, [&](auto&& run) {
        const testing::Faults faults(kind, at, error);
        run();
        return faults.failed > 0;
      });
      if (!failed) break;
    }
  }
}

void Memory(Trial& trial) {
  const auto scenarios = Scenarios();
  while (trial.TimeLeft()) {
    const Scenario& scenario = scenarios[trial.Pick(scenarios.size())];
    const bool onward = trial.Chance(30);
    for (long at = 1; trial.TimeLeft(); ++at) {
      const std::string words = std::string(onward ? "allocations from " : "allocation ") + std::to_string(at);
      const bool failed = RunWithFault(trial, scenario, words, [&](auto&& run) {
        fails_onward = onward;
        failed_allocations = 0;
        until_failure = at;
        run();
        until_failure = 0;
        return failed_allocations > 0;
      });
      if (!failed) break;
    }
  }
}

}  // namespace Orvix::attack
