// The store's database: one SQLite file, opened when it is needed, and the
// statements that the registry runs on it.
#ifndef ORVIX_PLATFORM_REGISTRY_DATABASE_H
#define ORVIX_PLATFORM_REGISTRY_DATABASE_H

#include <sqlite3.h>
#include <sys/stat.h>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix::registry {

// A key's number; those of the roots are 1 to 4, and none is ever given twice.
using KeyId = std::int64_t;
inline constexpr KeyId kRoots = 4;

enum class Statement : std::size_t {
  kBegin,
  kBeginToWrite,
  kCommit,
  kRollback,
  kKeyDepth,      // of ?1: depth
  kChild,         // below ?1, folded ?2: id
  kAddKey,        // parent, folded, name, depth
  kHasChild,      // below ?1
  kDeleteValues,  // of ?1
  kDeleteKey,     // ?1
  kGetValue,      // of ?1, folded ?2: type, data
  kSetValue,      // key, folded, name, type, data; a known name keeps its spelling
  kDeleteValue,   // of ?1, folded ?2
  kNthKey,        // below ?1, ?2 passed over: name, folded
  kNextKey,       // below ?1, behind folded ?2: name, folded
  kNthValue,      // of ?1, ?2 passed over: name, folded, type, data
  kNextValue,     // of ?1, behind folded ?2: name, folded, type, data
  kDataVersion,   // changes when another process changed the store
  kCount
};

// Not thread safe. Operations throw Failure; what they had begun is rolled back.
class Database {
 public:
  Database() = default;
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  // Opens the store in `directory` for what comes next, anew when another file
  // has its name. False when there is none, which is an empty one.
  [[nodiscard]] bool OpenToRead(const std::string& directory);
  // Makes it where it is missing. 5 for a file or directory without any write
  // bit, to everyone.
  void OpenToWrite(const std::string& directory);
  // Before a fork: a connection must not be in two processes.
  void Close() noexcept;
  // Ends a transaction that was not committed.
  void TakeBack() noexcept;

  // Which file this is: another number after another one was opened.
  [[nodiscard]] std::uint64_t number() const { return number_; }
  [[nodiscard]] std::int64_t Changes() { return sqlite3_changes64(connection_); }
  [[nodiscard]] std::int64_t TotalChanges() { return sqlite3_total_changes64(connection_); }
  // What is wrong with the file, a line each; empty when it is sound.
  [[nodiscard]] std::string Faults();

 private:
  friend class Query;

  [[nodiscard]] bool IsStill(const struct stat& facts) const;
  void Connect(bool may_be_fixed);
  [[nodiscard]] bool HasTables();
  void MakeTables();
  void Run(const char* words);
  [[nodiscard]] sqlite3_stmt* Prepared(Statement which);
  [[noreturn]] void Fail(int result);

  std::string directory_;
  std::string path_;
  sqlite3* connection_ = nullptr;
  std::array<sqlite3_stmt*, static_cast<std::size_t>(Statement::kCount)> statements_{};
  bool has_tables_ = false;
  bool fixed_ = false;  // opened as a file that nobody changes, where nothing can be written beside it
  struct stat facts_ {};
  std::uint64_t number_ = 0;
  int mark_ = 0;
};

// One run of a statement.
class Query {
 public:
  Query(Database& database, Statement which) : database_(database), statement_(database.Prepared(which)) {}
  Query(const Query&) = delete;
  Query& operator=(const Query&) = delete;
  ~Query();

  // Parameters in their order.
  Query& With(std::int64_t number);
  Query& With(TextView name);           // as bytes that sort as its units do
  Query& With(std::string_view bytes);  // which live until the end of this object

  // Whether there is a row, the next one.
  [[nodiscard]] bool Next();
  void Run() { static_cast<void>(Next()); }
  // Columns count from 0.
  [[nodiscard]] std::int64_t Number(int column) { return sqlite3_column_int64(statement_, column); }
  [[nodiscard]] std::string_view Bytes(int column);
  [[nodiscard]] Text Name(int column);

 private:
  [[noreturn]] void Fail(int result);

  Database& database_;
  sqlite3_stmt* statement_;
  int parameters_ = 0;
};

// From its beginning to Commit, or taken back.
class Transaction {
 public:
  explicit Transaction(Database& database, bool writes) : database_(database) {
    Query(database, writes ? Statement::kBeginToWrite : Statement::kBegin).Run();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  ~Transaction();
  void Commit();

 private:
  Database& database_;
  bool open_ = true;
};

}  // namespace Orvix::registry

#endif
