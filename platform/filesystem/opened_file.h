// A native file open for the runtime's file numbers.
#ifndef ORVIX_PLATFORM_FILESYSTEM_OPENED_FILE_H
#define ORVIX_PLATFORM_FILESYSTEM_OPENED_FILE_H

#include <memory>

#include "frame/runtime/file_service.h"

namespace Orvix {

// Opens `name`. Output creates or empties the file; binary creates it when it is
// missing, unless for reading, and without a wish for access reads and writes,
// else only reads. A file without any write bit is not written (error 75),
// whatever the user's rights, and keeps its content. Errors: 52, 53, 55, 61, 67,
// 70, 75, 76.
[[nodiscard]] std::unique_ptr<OpenedFile> OpenNativeFile(TextView name, const OpenRequest& request);

}  // namespace Orvix

#endif
