// The names in a target directory, found without regard to case: an item that
// comes as "readme" meets the "README" that is there.
#ifndef ORVIX_PLATFORM_SHELL_SPELLINGS_H
#define ORVIX_PLATFORM_SHELL_SPELLINGS_H

#include <string>
#include <unordered_map>

#include "orvix/text.h"

namespace Orvix::Shell {

class Spellings {
 public:
  // `directory` is open for reaching its entries and stays so; of a directory
  // made for this operation nothing has to be looked up.
  Spellings(int directory, bool fresh) : directory_(directory), fresh_(fresh) {}

  // The spelling of `name` that is there: exactly so, else in another case (of
  // several the lowest by bytes), else `name` itself.
  [[nodiscard]] std::string Find(const std::string& name);
  // `name` has been put there since.
  void Add(const std::string& name);

 private:
  void Put(const std::string& name);

  int directory_;
  bool fresh_;
  bool read_ = false;
  std::unordered_map<Text, std::string> by_folded_;
};

}  // namespace Orvix::Shell

#endif
