// The content of one file into another, by the best means that the file system
// offers, in pieces so that it can be watched and cancelled.
#ifndef ORVIX_PLATFORM_SHELL_COPY_CONTENT_H
#define ORVIX_PLATFORM_SHELL_COPY_CONTENT_H

#include <sys/stat.h>

#include <memory>
#include <string>

#include "platform/shell/progress.h"

namespace Orvix::Shell {

class ContentCopier {
 public:
  explicit ContentCopier(Progress& progress) : progress_(progress) {}

  // From the open file `in`, whose facts and path are given, into the empty
  // `out`. Holes stay holes.
  void Copy(int in, const struct stat& facts, int out, const std::string& path);

 private:
  bool Clone(int in, const struct stat& facts, int out);
  // Copies [at, end), or to the end of the file when that comes first; the
  // number of bytes.
  off_t CopyRange(int in, int out, off_t at, off_t end, const std::string& path);
  off_t CopySparse(int in, int out, off_t size, const std::string& path);

  Progress& progress_;
  bool clones_ = true;  // until the file system says no
  bool ranges_ = true;  // likewise
  std::unique_ptr<char[]> buffer_;
};

}  // namespace Orvix::Shell

#endif
