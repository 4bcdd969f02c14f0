// What a file operation answers: the service's result codes, the exception that
// carries one, and the way there from the system's error codes.
#ifndef ORVIX_PLATFORM_SHELL_RESULTS_H
#define ORVIX_PLATFORM_SHELL_RESULTS_H

#include "orvix/automation.h"

namespace Orvix::Shell {

inline constexpr INT kFileMissing = 2;
inline constexpr INT kPathMissing = 3;
inline constexpr INT kNoDescriptors = 4;
inline constexpr INT kDenied = 5;
inline constexpr INT kNoMemory = 8;
inline constexpr INT kWriteProtected = 19;
inline constexpr INT kWriteFault = 29;
inline constexpr INT kReadFault = 30;
inline constexpr INT kInUse = 32;
inline constexpr INT kBadParameter = 87;
inline constexpr INT kDiskFull = 112;
inline constexpr INT kWildcardInTarget = 123;
inline constexpr INT kSameFile = 0x71;
inline constexpr INT kManyToOne = 0x72;
inline constexpr INT kOtherDirectory = 0x73;
inline constexpr INT kRootDirectory = 0x74;
inline constexpr INT kCancelled = 0x75;
inline constexpr INT kIntoItself = 0x76;
inline constexpr INT kSourceDenied = 0x78;
inline constexpr INT kTooDeep = 0x79;
inline constexpr INT kInvalidNames = 0x7C;
inline constexpr INT kSameDirectory = 0x7D;
inline constexpr INT kFileInTheWay = 0x7E;
inline constexpr INT kDirectoryInTheWay = 0x80;
inline constexpr INT kNameTooLong = 0x81;
inline constexpr INT kTooLarge = 0x85;
inline constexpr INT kTargetFailed = 0x10000;

// Ends the operation with a result code.
struct ShellError {
  INT code;
};

// Which end of the operation a system call worked on.
enum class Side { kSource, kTarget };

[[nodiscard]] INT CodeOfErrno(int error, Side side) noexcept;

// Throws that code.
[[noreturn]] void Fail(int error, Side side);

}  // namespace Orvix::Shell

#endif
