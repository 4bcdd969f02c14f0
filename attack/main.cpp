// orvix_attack [--seconds S] [--seed N] [MODE ...]: hostile trials, all of them when
// none is named. Exit code 0 without findings, 1 with some, 2 for wrong words.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>

#include "attack/attack.h"

namespace {

struct Mode {
  const char* name;
  const char* words;
  void (*run)(Orvix::attack::Trial&);
};
constexpr Mode kModes[] = {
    {"calls", "every member by name with arguments of all kinds", Orvix::attack::Calls},
    {"objects", "the same with objects that come back, lie, fail and change the other arguments",
     Orvix::attack::Objects},
    {"faults", "each system call of each scenario failed once, and from then on", Orvix::attack::Faults},
    {"memory", "each allocation of each scenario failed once, and from then on", Orvix::attack::Memory},
    {"kills", "a process killed at any moment of stores, copies, trashing and registry writes", Orvix::attack::Kills},
    {"limits", "no descriptors, no room for files, no memory", Orvix::attack::Limits},
    {"races", "threads on files of their own, trees with links swapped in", Orvix::attack::Races},
    {"damage", "stores, information files and libraries cut and spoilt", Orvix::attack::Damage},
};

}  // namespace

int main(int argc, char** argv) {
  double seconds = 5;
  std::uint64_t seed = std::random_device{}();
  std::vector<std::string> wanted;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--seconds") == 0 && i + 1 < argc) {
      seconds = std::atof(argv[++i]);
    } else if (std::strcmp(argv[i], "--seed") == 0 && i + 1 < argc) {
      seed = std::strtoull(argv[++i], nullptr, 10);
    } else {
      wanted.emplace_back(argv[i]);
    }
  }
  for (const std::string& name : wanted) {
    bool known = false;
    for (const Mode& mode : kModes) known = known || name == mode.name;
    if (known) continue;
    std::fprintf(stderr, "orvix_attack: there is no mode \"%s\". The modes:\n", name.c_str());
    for (const Mode& mode : kModes) std::fprintf(stderr, "  %-8s %s\n", mode.name, mode.words);
    return 2;
  }
  // A registry, a trash and a home of the trials' own.
  const Orvix::attack::Scratch home;
  for (const char* name : {"HOME", "XDG_DATA_HOME", "ORVIX_REGISTRY"}) setenv(name, home.Native(name).c_str(), 1);
  std::filesystem::create_directories(home.Native("HOME"));
  unsetenv("DISPLAY");
  int findings = 0;
  for (const Mode& mode : kModes) {
    bool run = wanted.empty();
    for (const std::string& name : wanted) run = run || name == mode.name;
    if (!run) continue;
    Orvix::attack::Trial trial(mode.name, seed, seconds);
    mode.run(trial);
    std::printf("%-8s seed %llu: %llu runs, %d findings\n", mode.name, static_cast<unsigned long long>(seed),
                static_cast<unsigned long long>(trial.runs), trial.findings());
    std::fflush(stdout);
    findings += trial.findings();
  }
  return findings == 0 ? 0 : 1;
}
