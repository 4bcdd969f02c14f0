// The record FileType as Automation handles it.
#ifndef ORVIX_FRAME_RECORD_INFO_H
#define ORVIX_FRAME_RECORD_INFO_H

#include "frame/modOrvix.h"

namespace Orvix::component {

// A reference to the one record description, which the caller releases.
[[nodiscard]] IRecordInfo* FileTypeRecordInfo() noexcept;

}  // namespace Orvix::component

#endif
