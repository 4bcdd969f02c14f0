// A native file open for the runtime's file numbers.
#ifndef ORVIX_PLATFORM_FILESYSTEM_OPENED_FILE_H
#define ORVIX_PLATFORM_FILESYSTEM_OPENED_FILE_H

#include <memory>

#include "frame/runtime/file_service.h"
#include "platform/names/path_map.h"

namespace Orvix {

// Opens `name`. Output creates or empties the file; binary creates it when it is
// missing, unless for reading, and without a wish for access reads and writes,
// else only reads. A file without any write bit is not written (error 75),
// whatever the user's rights, and keeps its content. Errors: 52, 53, 55, 61, 67,
// 70, 75, 76.
[[nodiscard]] std::unique_ptr<OpenedFile> OpenNativeFile(TextView name, const OpenRequest& request);

// One that a name leads to.
class ResolvedFile : public OpenedFile {
 public:
  [[nodiscard]] virtual int descriptor() const = 0;
  // Takes its content away.
  virtual void Empty() = 0;
  // Keeps all other processes out from now on. False when one has it open.
  [[nodiscard]] virtual bool KeepOthersOut() = 0;
};

// The same for a name that was looked up; whether what was there goes at once.
[[nodiscard]] std::unique_ptr<ResolvedFile> OpenResolved(const NativeName& name, const OpenRequest& request,
                                                         bool empties);

// Writes all or fails (61, 57, 70). A reader that is gone, or the process's limit
// on file sizes, is a failure and no signal.
void WriteAll(int descriptor, const void* bytes, std::size_t count);

}  // namespace Orvix

#endif
