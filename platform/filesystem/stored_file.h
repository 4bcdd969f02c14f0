// Output that becomes a file's content as a whole: kOxModeStore and kOxModeNew.
#ifndef ORVIX_PLATFORM_FILESYSTEM_STORED_FILE_H
#define ORVIX_PLATFORM_FILESYSTEM_STORED_FILE_H

#include <memory>

#include "frame/runtime/file_service.h"
#include "platform/names/path_map.h"

namespace Orvix {

// The content is staged beside the file and put in its place by `Close`; the old
// file's modes, owner and attributes go over. Where that cannot be done the file
// is opened and emptied as for output. Errors: those of an opening for output, 58.
[[nodiscard]] std::unique_ptr<OpenedFile> OpenStoredFile(const NativeName& name, const OpenRequest& request);

}  // namespace Orvix

#endif
