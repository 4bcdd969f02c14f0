// The library's own error numbers. Callers compare against them.
#ifndef ORVIX_FRAME_MODERRORCODES_H
#define ORVIX_FRAME_MODERRORCODES_H

#include "orvix/automation.h"

namespace Orvix::component::modErrorCodes {

inline constexpr LONG errInvalidFilename = 60000;
inline constexpr LONG errMakeDir = 61200;
inline constexpr LONG errFileNotFound = 61201;
inline constexpr LONG errGetFileNotFound = 61202;  // inside GetFile only: its own handler makes it 61203
inline constexpr LONG errFileAccess = 61203;
inline constexpr LONG errDirectoryScan = 61205;
inline constexpr LONG errIndexOutOfRange = 61206;
inline constexpr LONG errStackEmpty = 66000;
inline constexpr LONG errOffsetTooFar = 66001;
inline constexpr LONG errIndexOutOfBounds = 66003;
inline constexpr LONG errNoSourceFiles = -2147220504;

// The platform's numbers that members raise or look for.
inline constexpr LONG kInvalidArgument = 5;
inline constexpr LONG kOverflow = 6;
inline constexpr LONG kOutOfMemory = 7;
inline constexpr LONG kSubscriptOutOfRange = 9;
inline constexpr LONG kTypeMismatch = 13;
inline constexpr LONG kBadFileName = 52;
inline constexpr LONG kPathFileAccess = 75;
inline constexpr LONG kObjectNotSet = 91;
inline constexpr LONG kInvalidUseOfNull = 94;

}  // namespace Orvix::component::modErrorCodes

namespace Orvix::component {
using namespace modErrorCodes;
}

#endif
