// The names in a target directory, found without regard to case: an item that
// comes as "readme" meets the "README" that is there.
#ifndef ORVIX_PLATFORM_SHELL_SPELLINGS_H
#define ORVIX_PLATFORM_SHELL_SPELLINGS_H

#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "orvix/text.h"

namespace Orvix::Shell {

class Spellings {
 public:
  // `directory` is open for reaching its entries and stays so; of a directory
  // made for this operation nothing has to be looked up.
  Spellings(int directory, bool fresh) : directory_(directory), fresh_(fresh) {}

  // The same directory, opened anew.
  void Reach(int directory) { directory_ = directory; }

  // `name` is going to be put there as well: it is no other spelling of
  // something else that comes.
  void Expect(const std::string& name) { expected_.insert(name); }

  // The spelling of `name` that is there: exactly so, else in another case (of
  // several the lowest by bytes), else `name` itself. What one name has found
  // in another case is not found by a second one: two items that the caller has
  // under two spellings stay two.
  [[nodiscard]] std::string Find(const std::string& name);

 private:
  void ReadAll();

  int directory_;
  bool fresh_;
  bool read_ = false;
  std::unordered_set<std::string> expected_;
  std::unordered_map<Text, std::vector<std::string>> by_folded_;  // the lowest last
};

}  // namespace Orvix::Shell

#endif
