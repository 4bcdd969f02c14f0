// One file operation under way: what was asked for, and who hears of it.
#ifndef ORVIX_PLATFORM_SHELL_OPERATION_H
#define ORVIX_PLATFORM_SHELL_OPERATION_H

#include <string>

#include "platform/shell/progress.h"
#include "platform/shell/request.h"

namespace Orvix::Shell {

struct Operation {
  Request request;
  Progress progress;
};

// A path that is one component longer for the length of a scope.
class Step {
 public:
  Step(std::string& path, const char* name) : path_(path), length_(path.size()) {
    path += '/';
    path += name;
  }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;
  ~Step() { path_.resize(length_); }

 private:
  std::string& path_;
  std::size_t length_;
};

}  // namespace Orvix::Shell

#endif
