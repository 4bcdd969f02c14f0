// Copying into a folder of today, by way of CSHFileOp.
#ifndef ORVIX_EXAMPLES_BACKUP_COPYING_H
#define ORVIX_EXAMPLES_BACKUP_COPYING_H

#include <string>
#include <vector>

#include "../shared/program.h"
#include "orvix/orvix.hpp"
#include "selection.h"

namespace backup {

// Today as "YYYY-MM-DD", local time.
[[nodiscard]] std::string Today();

// The name of the first folder of that day that is not there yet, without a
// separator at the end. An exception when the file service cannot take the name
// of the destination.
[[nodiscard]] Orvix::Text FreeFolder(const std::string& destination, const std::string& day);
// The same, made: nobody else has it, even if another backup runs meanwhile.
[[nodiscard]] Orvix::Text MakeFolder(const std::string& destination, const std::string& day);

struct Outcome {
  std::size_t copied = 0;
  std::vector<std::string> failed;  // native names below the source
  bool cancelled = false;
};

// Copies the files into the empty `folder`; one that fails does not keep the
// others from being copied.
[[nodiscard]] Outcome Copy(const std::vector<File>& files, const Orvix::Text& folder, examples::Stages& stages);

}  // namespace backup

#endif
