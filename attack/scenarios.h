// What a caller does with files, texts and the registry, each with the state that it
// must leave whatever fails in the middle.
#ifndef ORVIX_ATTACK_SCENARIOS_H
#define ORVIX_ATTACK_SCENARIOS_H

#include <span>

#include "attack/attack.h"

namespace Orvix::attack {

struct Scenario {
  const char* name;
  void (*prepare)(const Scratch& scratch);
  void (*run)(const Scratch& scratch);
  // What is wrong afterwards, empty when all is well. `number` is what `run` failed
  // with, 0 for nothing.
  std::string (*judge)(const Scratch& scratch, LONG number);
  // A last ordinary run, after which nothing may lie about.
  bool keeps_numbers_open = false;
};

[[nodiscard]] std::span<const Scenario> Scenarios();

// Entries that no scenario asked for: what a failure or a kill left behind.
[[nodiscard]] std::string Leftovers(const Scratch& scratch);

}  // namespace Orvix::attack

#endif
