// The words of a command line, one after the other: options with and without a
// value, "--option=value" too, and names; "--" ends the options.
#ifndef ORVIX_EXAMPLES_SHARED_COMMAND_LINE_H
#define ORVIX_EXAMPLES_SHARED_COMMAND_LINE_H

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace examples {

// The command line is wrong; the message says what to type.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

class CommandLine {
 public:
  explicit CommandLine(std::vector<std::string> words) : words_(std::move(words)) {}

  // Goes to the next word; false at the end.
  bool Next() {
    if (!options_ended_ && next_ < words_.size() && words_[next_] == "--") {
      options_ended_ = true;
      ++next_;
    }
    if (next_ == words_.size()) return false;
    word_ = words_[next_++];
    const std::size_t equals = word_.find('=');
    joined_ = word_.starts_with("--") && equals != std::string::npos;
    name_ = joined_ ? word_.substr(0, equals) : word_;
    return true;
  }
  [[nodiscard]] const std::string& Word() const { return word_; }
  [[nodiscard]] bool IsName() const { return options_ended_ || word_ == "-" || !word_.starts_with("-"); }
  // An option without a value.
  [[nodiscard]] bool Is(const std::string& option) const { return word_ == option; }
  // An option with one, which Value gives.
  [[nodiscard]] bool Takes(const std::string& option) const { return name_ == option; }
  std::string Value() {
    if (joined_) return word_.substr(name_.size() + 1);
    if (next_ == words_.size()) throw UsageError(name_ + " needs a value.");
    return words_[next_++];
  }
  [[noreturn]] void Refuse() const { throw UsageError("\"" + word_ + "\" is no option."); }

 private:
  std::vector<std::string> words_;
  std::size_t next_ = 0;
  bool options_ended_ = false;
  bool joined_ = false;
  std::string word_;
  std::string name_;
};

// A mask chooses among the names of one directory.
inline void RequireMask(const std::string& mask) {
  if (mask.empty() || mask.find_first_of("/\\:") != std::string::npos) {
    throw UsageError("--mask takes a name with * and ?, without a directory, not \"" + mask + "\".");
  }
}

}  // namespace examples

#endif
