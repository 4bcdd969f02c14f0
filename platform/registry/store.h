// The store's file: where it is found anew at each operation, its tables, and what
// its failures mean.
#ifndef ORVIX_PLATFORM_REGISTRY_STORE_H
#define ORVIX_PLATFORM_REGISTRY_STORE_H

#include <sys/stat.h>

#include <string>

#include "platform/database/sql_connection.h"

namespace Orvix::registry {

// The platform's result codes.
inline constexpr LONG kSuccess = 0;
inline constexpr LONG kNotFound = 2;
inline constexpr LONG kAccessDenied = 5;
inline constexpr LONG kBadHandle = 6;
inline constexpr LONG kOutOfMemory = 14;
inline constexpr LONG kBadParameter = 87;
inline constexpr LONG kDiskFull = 112;
inline constexpr LONG kBadPath = 161;
inline constexpr LONG kBusy = 170;
inline constexpr LONG kMoreData = 234;
inline constexpr LONG kNoMoreItems = 259;
inline constexpr LONG kDamaged = 1009;
inline constexpr LONG kReadWriteFailed = 1016;
inline constexpr LONG kKeyDeleted = 1018;

// Ends an operation with one of these codes.
struct Failure {
  LONG code;
};
[[nodiscard]] LONG CodeOf(const SqlFailure& failure);

// A key's number; those of the roots are 1 to 4, and none is ever given twice.
using KeyId = std::int64_t;
inline constexpr KeyId kRoots = 4;

// Not thread safe. Operations throw Failure and SqlFailure.
class Store {
 public:
  // Opens the file in the directory that the environment names at this moment, anew
  // when another one has its name. A missing one is an empty store.
  void OpenToRead();
  // Makes it where it is missing. 5 for a file or directory without any write
  // bit, to everyone.
  void OpenToWrite();
  // Before a fork: a connection must not be in two processes.
  void Close() noexcept { sql_.Close(); }
  [[nodiscard]] SqlConnection& sql() { return sql_; }
  // Which store this is, for as long as it lives.
  [[nodiscard]] std::int64_t mark() const { return mark_; }
  // What is wrong with the open file, a line each; empty when it is sound.
  [[nodiscard]] Text Faults();

 private:
  void Connect(const struct stat& facts);
  void MakeFile();
  [[nodiscard]] bool HasTables();

  std::string path_;
  SqlConnection sql_;
  bool fixed_ = false;  // opened as a file that nobody changes, where nothing can be written beside it
  struct stat facts_ {};
  std::int64_t mark_ = 0;
};

}  // namespace Orvix::registry

#endif
