#include "platform/database/sql_connection.h"

#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace Orvix {

namespace {

// Called with the number of tries so far. Short naps, which signals may end: whoever
// writes without a pause leaves the others only moments.
int WaitABit(void*, int tries) {
  using std::chrono::steady_clock;
  static thread_local steady_clock::time_point end;
  if (tries == 0) end = steady_clock::now() + std::chrono::seconds(2);
  usleep(200);
  return steady_clock::now() < end ? 1 : 0;
}

}  // namespace

void SqlConnection::Check(int result) {
  if (result == SQLITE_OK) return;
  const SqlFailure failure{result, connection_ != nullptr ? sqlite3_system_errno(connection_) : errno};
  TakeBack();
  throw failure;
}

void SqlConnection::Open(const char* name, int flags) {
  Close();
  try {
    Check(sqlite3_open_v2(name, &connection_, flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr));
    sqlite3_busy_handler(connection_, WaitABit, nullptr);
    sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(connection_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    // The first look into the file. A kill takes nothing back; a change does not wait
    // for the disk where the log is written ahead.
    Execute("PRAGMA synchronous = NORMAL; PRAGMA user_version");
    SqlQuery mode(*this, "PRAGMA journal_mode");
    logs_ahead_ = mode.Next() && mode.Words(0) == u"wal" && (flags & SQLITE_OPEN_READWRITE) != 0;
  } catch (const SqlFailure&) {
    Close();
    throw;
  }
}

// Each commit changes the head of the log's index, which all processes share
// (sqlite.org/walformat.html, section 2.2).
bool SqlConnection::HasChanged() {
  constexpr int kRegion = 32768;
  sqlite3_file* file = nullptr;
  volatile void* head = nullptr;
  if (!logs_ahead_ || sqlite3_file_control(connection_, "main", SQLITE_FCNTL_FILE_POINTER, &file) != SQLITE_OK ||
      file->pMethods->xShmMap(file, 0, kRegion, 0, &head) != SQLITE_OK || head == nullptr) {
    return true;
  }
  const auto before = log_head_;
  std::memcpy(log_head_.data(), const_cast<const void*>(head), log_head_.size());
  return log_head_ != before;
}

void SqlConnection::Close() noexcept {
  for (auto& [words, statement] : statements_) sqlite3_finalize(std::exchange(statement, nullptr));
  sqlite3_close_v2(std::exchange(connection_, nullptr));
  ++closings_;
  logs_ahead_ = false;
  log_head_ = {};
}

void SqlConnection::TakeBack() noexcept {
  if (connection_ == nullptr || sqlite3_get_autocommit(connection_) != 0) return;
  sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
  if (sqlite3_get_autocommit(connection_) == 0) Close();  // which ends what is left
}

sqlite3_stmt* SqlConnection::Prepared(const char* words) {
  sqlite3_stmt*& statement = statements_[words];
  if (statement == nullptr) {
    Check(sqlite3_prepare_v3(connection_, words, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr));
  }
  return statement;
}

SqlQuery::~SqlQuery() {
  if (closings_ != connection_.closings_) return;
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

void SqlQuery::Check(int result) {
  if (result == SQLITE_OK) return;
  sqlite3_reset(statement_);
  connection_.Check(result);
}

int SqlQuery::Bind(int index, TextView text) {
  return sqlite3_bind_text16(statement_, index, text.empty() ? u"" : text.data(),
                             static_cast<int>(text.size() * sizeof(char16_t)), SQLITE_TRANSIENT);
}

int SqlQuery::Bind(int index, std::string_view bytes) {
  return sqlite3_bind_blob64(statement_, index, bytes.empty() ? "" : bytes.data(), bytes.size(), SQLITE_STATIC);
}

bool SqlQuery::Next() {
  const int result = sqlite3_step(statement_);
  Check(result == SQLITE_DONE || result == SQLITE_ROW ? SQLITE_OK : result);
  return result == SQLITE_ROW;
}

std::string_view SqlQuery::Bytes(int column) {
  const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
  // Null for an empty one, and without memory for its bytes.
  if (bytes == nullptr) Check(size == 0 ? SQLITE_OK : SQLITE_NOMEM);
  return {bytes, bytes == nullptr ? 0 : size};
}

TextView SqlQuery::Words(int column) {
  const auto* const units = static_cast<const char16_t*>(sqlite3_column_text16(statement_, column));
  if (units == nullptr) Check(SQLITE_NOMEM);
  return {units, static_cast<std::size_t>(sqlite3_column_bytes16(statement_, column)) / sizeof(char16_t)};
}

}  // namespace Orvix
