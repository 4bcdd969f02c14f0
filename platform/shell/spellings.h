// The names in a target directory, found without regard to case: an item that
// comes as "readme" meets the "README" that is there.
#ifndef ORVIX_PLATFORM_SHELL_SPELLINGS_H
#define ORVIX_PLATFORM_SHELL_SPELLINGS_H

#include <string>
#include <unordered_set>

namespace Orvix::Shell {

class Spellings {
 public:
  // In a directory made for this operation nothing has to be looked up.
  explicit Spellings(bool fresh) : fresh_(fresh) {}

  // `name` is going to be put there as well: it is no other spelling of
  // something else that comes.
  void Expect(const std::string& name) { expected_.insert(name); }

  // The spelling of `name` that is in `directory`, which is the same one in every
  // call: exactly so, else in another case (of several the lowest by bytes), else
  // `name` itself. What one name has found in another case is not found by a
  // second one: two items that the caller has under two spellings stay two.
  [[nodiscard]] std::string Find(int directory, const std::string& name);

 private:
  bool fresh_;
  std::unordered_set<std::string> expected_;
  std::unordered_set<std::string> found_;  // in another case
};

}  // namespace Orvix::Shell

#endif
