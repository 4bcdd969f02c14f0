// A desktop for the length of a test: a path with nothing but the stand-in
// programs that the test puts there, which write down how they were called.
#ifndef ORVIX_TESTS_SUPPORT_STAND_IN_DESKTOP_H
#define ORVIX_TESTS_SUPPORT_STAND_IN_DESKTOP_H

#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "support/native_directory.h"

namespace Orvix::testing {

class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    if (const char* const old = std::getenv(name)) old_ = old;
    Set(value);
  }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;
  ~Variable() { Set(old_ ? old_->c_str() : nullptr); }
  void Set(const char* value) const {
    if (value == nullptr) {
      unsetenv(name_);
    } else {
      setenv(name_, value, 1);
    }
  }

 private:
  const char* name_;
  std::optional<std::string> old_;
};

struct Desktop {
  NativeDirectory programs;
  NativeDirectory files;
  Variable path{"PATH", programs.Native("").c_str()};
  Variable display{"DISPLAY", ":99"};
  Variable wayland{"WAYLAND_DISPLAY", nullptr};
  Variable desktop{"XDG_CURRENT_DESKTOP", nullptr};

  void Install(const std::string& name, const std::string& script) const {
    programs.Write(name, script);
    std::filesystem::permissions(programs.Native(name), std::filesystem::perms::owner_all);
  }
  // A program that prints `output` and ends with `status`.
  void InstallAnswer(const std::string& name, const std::string& output, int status = 0) const {
    programs.Write("answer", output);
    Install(name, "#!/bin/sh\nprintf '%s\\037' \"${0##*/}\" \"$@\" >> '" + programs.Native("calls") + "'\n/bin/cat '" +
                      programs.Native("answer") + "'\nexit " + std::to_string(status) + "\n");
  }
  // Program names and arguments of all calls, in order.
  [[nodiscard]] std::vector<std::string> Words() const {
    std::ifstream calls(programs.Native("calls"), std::ios::binary);
    std::vector<std::string> words;
    for (std::string word; std::getline(calls, word, '\037');) words.push_back(word);
    return words;
  }
  [[nodiscard]] bool WasShown() const { return programs.Has("calls"); }
};

}  // namespace Orvix::testing

#endif
