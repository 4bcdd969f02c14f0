// A connection to an SQLite database, and statements that run on it. Not thread safe.
#ifndef ORVIX_PLATFORM_DATABASE_SQL_CONNECTION_H
#define ORVIX_PLATFORM_DATABASE_SQL_CONNECTION_H

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "orvix/text.h"

namespace Orvix {

struct SqlFailure {
  int result;  // SQLite's extended result code
  int error;   // errno of the system call behind it, 0 for none
};

// Failures throw SqlFailure, and what a transaction had begun is taken back.
class SqlConnection {
 public:
  SqlConnection() = default;
  SqlConnection(const SqlConnection&) = delete;
  SqlConnection& operator=(const SqlConnection&) = delete;
  ~SqlConnection() { Close(); }

  // In place of the one before. Who is kept out by others waits some two seconds.
  void Open(const char* name, int flags);
  void Close() noexcept;
  [[nodiscard]] bool IsOpen() const { return connection_ != nullptr; }
  // Runs statements that give no rows.
  void Execute(const char* words) { Check(sqlite3_exec(connection_, words, nullptr, nullptr, nullptr)); }
  // Ends a transaction that was not committed.
  void TakeBack() noexcept;
  // Whether anything was committed since this was last asked, by anyone; true as
  // well where that can only be told by a look into the file. Costs no system call.
  [[nodiscard]] bool HasChanged();
  // Rows changed by the last statement, and by all of this connection.
  [[nodiscard]] std::int64_t Changes() { return sqlite3_changes64(connection_); }
  [[nodiscard]] std::int64_t TotalChanges() { return sqlite3_total_changes64(connection_); }

 private:
  friend class SqlQuery;

  [[nodiscard]] sqlite3_stmt* Prepared(const char* words);
  void Check(int result);

  sqlite3* connection_ = nullptr;
  std::unordered_map<const char*, sqlite3_stmt*> statements_;  // by the address of their words
  std::uint64_t closings_ = 0;                                 // what was prepared before one is gone
  bool logs_ahead_ = false;
  std::array<char, 48> log_head_{};  // when HasChanged was last asked
};

// One run of a statement. Its words live as long as the process: the statement is
// kept for the next run.
class SqlQuery {
 public:
  // Parameters are numbers, texts and bytes; the bytes live longer than this object.
  template <class... Parameters>
  SqlQuery(SqlConnection& connection, const char* words, const Parameters&... parameters)
      : connection_(connection), statement_(connection.Prepared(words)), closings_(connection.closings_) {
    int index = 0;
    (Check(Bind(++index, parameters)), ...);
  }
  SqlQuery(const SqlQuery&) = delete;
  SqlQuery& operator=(const SqlQuery&) = delete;
  ~SqlQuery();

  // Whether there is a row, the next one.
  [[nodiscard]] bool Next();
  void Run() { static_cast<void>(Next()); }
  // Columns count from 0.
  [[nodiscard]] std::int64_t Number(int column) { return sqlite3_column_int64(statement_, column); }
  [[nodiscard]] std::string_view Bytes(int column);
  [[nodiscard]] TextView Words(int column);

 private:
  int Bind(int index, std::int64_t number) { return sqlite3_bind_int64(statement_, index, number); }
  int Bind(int index, TextView text);
  int Bind(int index, std::string_view bytes);
  void Check(int result);

  SqlConnection& connection_;
  sqlite3_stmt* statement_;
  std::uint64_t closings_;
};

// From its beginning to Commit, or taken back.
class SqlTransaction {
 public:
  SqlTransaction(SqlConnection& connection, bool writes) : connection_(connection) {
    SqlQuery(connection, writes ? "BEGIN IMMEDIATE" : "BEGIN").Run();
  }
  SqlTransaction(const SqlTransaction&) = delete;
  SqlTransaction& operator=(const SqlTransaction&) = delete;
  ~SqlTransaction() { connection_.TakeBack(); }  // which does nothing after Commit
  void Commit() { SqlQuery(connection_, "COMMIT").Run(); }

 private:
  SqlConnection& connection_;
};

}  // namespace Orvix

#endif
