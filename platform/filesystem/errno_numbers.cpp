// The table of system error codes.
#include "platform/filesystem/errno_numbers.h"

#include <cerrno>

#include "frame/runtime/runtime_error.h"

namespace Orvix {

namespace {

struct Row {
  int error;
  LONG existing;
  LONG directory;
  LONG create;
  LONG make_directory;
  LONG transfer;
};

// clang-format off
constexpr Row kRows[] = {
    // error     existing  directory  create  make directory  transfer
    {ENOENT,        53,       76,       76,        76,          57},
    {ENOTDIR,       76,       76,       76,        76,          57},
    {EACCES,        70,       75,       75,        75,          70},
    {EPERM,         70,       75,       75,        75,          70},
    {EEXIST,        58,       58,       58,        75,          57},
    {EISDIR,        75,       75,       75,        75,          75},
    {EROFS,         70,       70,       70,        75,          70},
    {ENOSPC,        61,       61,       61,        61,          61},
    {EDQUOT,        61,       61,       61,        61,          61},
    {EFBIG,         61,       61,       61,        61,          61},
    {EMFILE,        67,       67,       67,        67,          57},
    {ENFILE,        67,       67,       67,        67,          57},
    {EIO,           57,       57,       57,        57,          57},
    {ENAMETOOLONG,  76,       76,       76,        76,          57},
    {ELOOP,         76,       76,       76,        76,          57},
    {EINVAL,        52,       52,       52,        52,          57},
    {EILSEQ,        52,       52,       52,        52,          57},
    {EBUSY,         70,       70,       70,        75,          70},
    {ETXTBSY,       70,       70,       70,        75,          70},
    {EAGAIN,        70,       70,       70,        75,          70},
    {ENXIO,         68,       68,       68,        75,          68},
    {ENODEV,        68,       68,       68,        75,          68},
    {ENOMEDIUM,     71,       71,       71,        71,          71},
    {ENOMEM,         7,        7,        7,         7,           7},
};
// clang-format on

}  // namespace

LONG NumberOfErrno(int error, FileTask task) noexcept {
  for (const Row& row : kRows) {
    if (row.error != error) continue;
    switch (task) {
      case FileTask::kExisting:
        return row.existing;
      case FileTask::kDirectory:
        return row.directory;
      case FileTask::kCreate:
        return row.create;
      case FileTask::kMakeDirectory:
        return row.make_directory;
      case FileTask::kTransfer:
        return row.transfer;
    }
  }
  return task == FileTask::kMakeDirectory ? 75 : 57;
}

void FailWithErrno(int error, FileTask task) { throw RuntimeError{NumberOfErrno(error, task)}; }

}  // namespace Orvix
