// What all hostile trials share: chance with a seed that is told, time, findings,
// and children in which things may go wrong.
#ifndef ORVIX_ATTACK_ATTACK_H
#define ORVIX_ATTACK_ATTACK_H

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "orvix/orvix.hpp"

namespace Orvix::attack {

class Trial {
 public:
  Trial(std::string mode, std::uint64_t seed, double seconds);

  // A number below `count`.
  std::size_t Pick(std::size_t count) { return random_() % count; }
  bool Chance(int percent) { return Pick(100) < static_cast<std::size_t>(percent); }
  // From here on chance is decided by this number alone.
  void Reseed(std::uint64_t seed) { random_.seed(seed); }
  [[nodiscard]] std::uint64_t seed() const { return seed_; }
  [[nodiscard]] bool TimeLeft() const { return std::chrono::steady_clock::now() < end_; }

  // Something that must not be; printed with mode and seed.
  void Finding(const std::string& what);
  [[nodiscard]] int findings() const { return findings_; }
  // For the summary.
  std::uint64_t runs = 0;

 private:
  std::string mode_;
  std::uint64_t seed_;
  std::chrono::steady_clock::time_point end_;
  std::mt19937_64 random_;
  int findings_ = 0;
};

// Where a child stands, for the parent that finds it dead.
struct Progress {
  std::uint64_t step;
  char words[200];
};

// Runs `body` in a child, at most so many seconds long; true when it returned 0.
// Everything else is a finding, told with where the child stood.
bool InChild(Trial& trial, int seconds, const std::function<int(Progress&)>& body);

// A fresh directory that goes with its object, and names below it.
class Scratch {
 public:
  Scratch();
  Scratch(const Scratch&) = delete;
  Scratch& operator=(const Scratch&) = delete;
  ~Scratch();
  [[nodiscard]] const std::string& Native() const { return native_; }
  [[nodiscard]] std::string Native(const std::string& name) const { return native_ + "/" + name; }
  [[nodiscard]] Text Name(const std::string& name) const;
  void Write(const std::string& name, const std::string& content) const;
  // "none" for a missing file.
  [[nodiscard]] std::string Read(const std::string& name) const;
  // All entries below, hidden ones too, sorted.
  [[nodiscard]] std::vector<std::string> Entries() const;

 private:
  std::string native_;
};

// Descriptors that are open now.
[[nodiscard]] std::size_t OpenDescriptors();
// The number that a call fails with, 0 for none; its words are kept.
inline thread_local char last_error[200];
template <class Call>
LONG NumberOf(Call&& call) {
  try {
    call();
  } catch (const Error& error) {
    std::snprintf(last_error, sizeof last_error, "%s", error.what());
    return error.Number();
  } catch (const std::bad_alloc&) {
    return 7;
  }
  return 0;
}

// The modes. Each ends when its time is over.
void Calls(Trial& trial);
void Objects(Trial& trial);
void Faults(Trial& trial);
void Memory(Trial& trial);
void Kills(Trial& trial);
void Limits(Trial& trial);
void Races(Trial& trial);
void Damage(Trial& trial);

}  // namespace Orvix::attack

#endif
