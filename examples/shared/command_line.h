// Command lines by CLI11: the help text, what is wrong with a word, exit statuses.
#ifndef ORVIX_EXAMPLES_SHARED_COMMAND_LINE_H
#define ORVIX_EXAMPLES_SHARED_COMMAND_LINE_H

#include <CLI/CLI.hpp>
#include <stdexcept>
#include <string>

namespace examples {

// The command line is wrong; the message says what to type.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// A check's answer is what is wrong with the word, and empty when it is right.
inline CLI::Validator Named(const std::string& what) {
  return {[what](const std::string& word) { return word.empty() ? what + "'s name is empty" : std::string(); }, ""};
}

// A mask chooses among the names of one directory.
inline CLI::Validator Mask() {
  return {[](const std::string& mask) {
            return mask.empty() || mask.find_first_of("/\\:") != std::string::npos
                       ? "takes a name with * and ?, without a directory, not \"" + mask + "\""
                       : std::string();
          },
          ""};
}

}  // namespace examples

#endif
