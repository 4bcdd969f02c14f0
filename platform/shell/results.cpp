// The table of system error codes.
#include "platform/shell/results.h"

#include <cerrno>

namespace Orvix::Shell {

namespace {

struct Row {
  int error;
  INT source;
  INT target;
};

constexpr Row kRows[] = {
    {ENOENT, kInvalidNames, kPathMissing},
    {ENOTDIR, kInvalidNames, kInvalidNames},
    {ELOOP, kInvalidNames, kInvalidNames},
    {EINVAL, kInvalidNames, kInvalidNames},
    {EILSEQ, kInvalidNames, kInvalidNames},
    {EACCES, kSourceDenied, kDenied},
    {EPERM, kSourceDenied, kDenied},
    {EEXIST, kInUse, kInUse},
    {EISDIR, kDirectoryInTheWay, kDirectoryInTheWay},
    {ENOTEMPTY, kInUse, kInUse},
    {ENAMETOOLONG, kNameTooLong, kNameTooLong},
    {ENOSPC, kDiskFull, kDiskFull},
    {EDQUOT, kDiskFull, kDiskFull},
    {EFBIG, kTooLarge, kTooLarge},
    {EMFILE, kNoDescriptors, kNoDescriptors},
    {ENFILE, kNoDescriptors, kNoDescriptors},
    {ENOMEM, kNoMemory, kNoMemory},
    {EROFS, kWriteProtected, kWriteProtected},
    {EBUSY, kInUse, kInUse},
    {ETXTBSY, kInUse, kInUse},
    {EIO, kReadFault, kWriteFault},
};

}  // namespace

INT CodeOfErrno(int error, Side side) noexcept {
  for (const Row& row : kRows) {
    if (row.error == error) return side == Side::kSource ? row.source : row.target;
  }
  return side == Side::kSource ? kReadFault : kTargetFailed;
}

void Fail(int error, Side side) { throw ShellError{CodeOfErrno(error, side)}; }

}  // namespace Orvix::Shell
