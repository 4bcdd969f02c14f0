// Tables: `keys` holds the tree, `vals` the values; names stand beside their
// folded forms, which are found and sorted by. Both are UTF-16, high byte first,
// so that bytes sort as units do. See sqlite.org/wal.html for who waits for whom.
#include "platform/registry/database.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <utility>

#include "platform/registry/results.h"
#include "platform/registry/store_place.h"

namespace Orvix::registry {

namespace {

constexpr int kVersion = 1;

constexpr const char* kStatements[] = {
    "BEGIN",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
    "SELECT depth FROM keys WHERE id = ?",
    "SELECT id FROM keys WHERE parent = ? AND folded = ?",
    "INSERT INTO keys (parent, folded, name, depth) VALUES (?, ?, ?, ?) RETURNING id",
    "SELECT 1 FROM keys WHERE parent = ? LIMIT 1",
    "DELETE FROM vals WHERE key = ?",
    "DELETE FROM keys WHERE id = ?",
    "SELECT type, data FROM vals WHERE key = ? AND folded = ?",
    "INSERT INTO vals (key, folded, name, type, data) SELECT id, ?2, ?3, ?4, ?5 FROM keys WHERE id = ?1"
    " ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data",
    "DELETE FROM vals WHERE key = ? AND folded = ?",
    "SELECT name, folded FROM keys WHERE parent = ? ORDER BY folded LIMIT 1 OFFSET ?",
    "SELECT name, folded FROM keys WHERE parent = ? AND folded > ? ORDER BY folded LIMIT 1",
    "SELECT name, folded, type, data FROM vals WHERE key = ? ORDER BY folded LIMIT 1 OFFSET ?",
    "SELECT name, folded, type, data FROM vals WHERE key = ? AND folded > ? ORDER BY folded LIMIT 1",
    "PRAGMA data_version",
};
static_assert(std::size(kStatements) == static_cast<std::size_t>(Statement::kCount));

// A key's number is never used again, so that a handle to a deleted key stays one.
constexpr char kTables[] =
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS keys (id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL,"
    " folded BLOB NOT NULL, name BLOB NOT NULL, depth INTEGER NOT NULL, UNIQUE (parent, folded));"
    "CREATE TABLE IF NOT EXISTS vals (key INTEGER NOT NULL REFERENCES keys (id), folded BLOB NOT NULL,"
    " name BLOB NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY (key, folded)) WITHOUT ROWID;"
    "INSERT OR IGNORE INTO keys (id, parent, folded, name, depth) VALUES"
    " (1, 0, x'01', '', 0), (2, 0, x'02', '', 0), (3, 0, x'03', '', 0), (4, 0, x'04', '', 0);"
    "PRAGMA user_version = 1;";

LONG CodeOfErrno(int error) {
  switch (error) {
    case EACCES:
    case EPERM:
    case EROFS:
      return kAccessDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return kDiskFull;
    case ENOMEM:
      return kOutOfMemory;
    case EISDIR:
      return kDamaged;
    default:
      return kReadWriteFailed;
  }
}

// Whether other machines may change the file, so that the shared memory that a
// write-ahead log needs is none.
bool IsRemote(const std::string& path) {
  struct statfs facts {};
  if (statfs(path.c_str(), &facts) != 0) return true;
  constexpr std::uint32_t kRemote[] = {NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,  CIFS_SUPER_MAGIC, SMB2_SUPER_MAGIC,
                                       V9FS_MAGIC,      FUSE_SUPER_MAGIC, AFS_SUPER_MAGIC,  CODA_SUPER_MAGIC};
  return std::ranges::find(kRemote, static_cast<std::uint32_t>(facts.f_type)) != std::end(kRemote);
}

// Called with the number of tries so far. Short naps: whoever writes without a pause
// leaves the others only moments.
int WaitABit(void*, int tries) {
  constexpr int kMostTries = 7000;  // some two seconds
  return tries < kMostTries && usleep(200) == 0 ? 1 : 0;
}

bool SameTime(const timespec& left, const timespec& right) {
  return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

}  // namespace

void Database::Fail(int result) {
  const int error = connection_ != nullptr ? sqlite3_system_errno(connection_) : errno;
  switch (result & 0xFF) {
    case SQLITE_NOMEM:
      throw Failure{kOutOfMemory};
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      throw Failure{kBusy};
    case SQLITE_READONLY:
    case SQLITE_PERM:
      throw Failure{kAccessDenied};
    case SQLITE_FULL:
      throw Failure{kDiskFull};
    case SQLITE_TOOBIG:
      throw Failure{kOutOfMemory};
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      Close();  // it may be another one next time
      throw Failure{kDamaged};
    default:
      Close();
      // What SQLite did since may have hidden the reason of a failed write.
      throw Failure{result == SQLITE_IOERR_WRITE && error != EIO ? kDiskFull : CodeOfErrno(error)};
  }
}

void Database::Run(const char* words) {
  const int result = sqlite3_exec(connection_, words, nullptr, nullptr, nullptr);
  if (result == SQLITE_OK) return;
  const int error = sqlite3_system_errno(connection_);
  TakeBack();
  errno = error;
  Fail(result);
}

sqlite3_stmt* Database::Prepared(Statement which) {
  sqlite3_stmt*& statement = statements_[static_cast<std::size_t>(which)];
  if (statement == nullptr) {
    const int result = sqlite3_prepare_v3(connection_, kStatements[static_cast<std::size_t>(which)], -1,
                                          SQLITE_PREPARE_PERSISTENT, &statement, nullptr);
    if (result != SQLITE_OK) Fail(result);
  }
  return statement;
}

void Database::Close() noexcept {
  for (sqlite3_stmt*& statement : statements_) sqlite3_finalize(std::exchange(statement, nullptr));
  sqlite3_close_v2(std::exchange(connection_, nullptr));
  has_tables_ = false;
}

void Database::TakeBack() noexcept {
  if (connection_ == nullptr || sqlite3_get_autocommit(connection_) != 0) return;
  sqlite3_exec(connection_, "ROLLBACK", nullptr, nullptr, nullptr);
  if (sqlite3_get_autocommit(connection_) == 0) Close();  // which ends what is left
}

bool Database::IsStill(const struct stat& facts) const {
  return facts.st_dev == facts_.st_dev && facts.st_ino == facts_.st_ino &&
         (!fixed_ || (facts.st_size == facts_.st_size && SameTime(facts.st_mtim, facts_.st_mtim)));
}

// `may_be_fixed`: where no log can be kept beside the file, it is read as it is.
void Database::Connect(bool may_be_fixed) {
  const auto open = [&](bool fixed) {
    std::string name = "file:";
    for (const char byte : path_) {
      if (byte == '?' || byte == '#' || byte == '%') {
        constexpr char kDigits[] = "0123456789ABCDEF";
        name += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
      } else {
        name += byte;
      }
    }
    if (fixed) name += "?immutable=1";
    const int flags = (fixed ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE) | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_URI |
                      SQLITE_OPEN_EXRESCODE;
    const int result = sqlite3_open_v2(name.c_str(), &connection_, flags, nullptr);
    if (result != SQLITE_OK) return result;
    sqlite3_busy_handler(connection_, WaitABit, nullptr);
    sqlite3_db_config(connection_, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    sqlite3_db_config(connection_, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    fixed_ = fixed;
    return sqlite3_exec(connection_, "PRAGMA user_version", nullptr, nullptr, nullptr);
  };
  int result = open(false);
  struct stat log {};
  const bool has_log = stat((path_ + "-wal").c_str(), &log) == 0 && log.st_size != 0;
  const int plain = result & 0xFF;
  if (may_be_fixed && !has_log && (plain == SQLITE_CANTOPEN || plain == SQLITE_READONLY || plain == SQLITE_IOERR) &&
      access(path_.c_str(), R_OK) == 0) {
    Close();
    result = open(true);
  }
  if (result != SQLITE_OK) Fail(result);
  if (stat(path_.c_str(), &facts_) != 0) throw Failure{CodeOfErrno(errno)};
}

// False for a file that nothing was ever written to. 1009 for a later version, and
// for a database of somebody else.
bool Database::HasTables() {
  if (has_tables_) return true;
  sqlite3_stmt* asked = nullptr;
  int result = sqlite3_prepare_v2(connection_,
                                  "SELECT user_version, (SELECT count(*) FROM sqlite_schema), application_id"
                                  " FROM pragma_user_version, pragma_application_id",
                                  -1, &asked, nullptr);
  if (result == SQLITE_OK) result = sqlite3_step(asked);
  const int version = result == SQLITE_ROW ? sqlite3_column_int(asked, 0) : 0;
  const bool is_empty = result == SQLITE_ROW && sqlite3_column_int(asked, 1) == 0;
  const int mark = result == SQLITE_ROW ? sqlite3_column_int(asked, 2) : 0;
  sqlite3_finalize(asked);
  if (result != SQLITE_ROW) Fail(result);
  if (version == 0 && is_empty) return false;
  if (version != kVersion) {
    Close();
    throw Failure{kDamaged};
  }
  if (mark_ != mark) ++number_;
  mark_ = mark;
  has_tables_ = true;
  return true;
}

void Database::MakeTables() {
  // A failure leaves a rollback journal, which is right everywhere.
  if (!IsRemote(path_)) sqlite3_exec(connection_, "PRAGMA journal_mode = WAL", nullptr, nullptr, nullptr);
  // A mark of its own tells this store from another one in its place.
  int mark = 0;
  sqlite3_randomness(sizeof mark, &mark);
  Run((std::string(kTables) + "PRAGMA application_id = " + std::to_string(mark) + ";COMMIT").c_str());
}

bool Database::OpenToRead(const std::string& directory) {
  if (directory != directory_) {
    Close();
    directory_ = directory;
    path_ = directory + "/registry.sqlite";
  }
  struct stat facts {};
  if (directory.empty() || stat(path_.c_str(), &facts) != 0) {
    const int error = directory.empty() ? ENOENT : errno;
    Close();
    if (error == ENOENT || error == ENOTDIR) return false;
    throw Failure{CodeOfErrno(error)};
  }
  if (S_ISDIR(facts.st_mode)) throw Failure{kDamaged};
  if (connection_ != nullptr && !IsStill(facts)) Close();
  if (connection_ == nullptr) Connect(/*may_be_fixed=*/true);
  return HasTables();
}

void Database::OpenToWrite(const std::string& directory) {
  struct stat facts {};
  if (directory.empty()) throw Failure{kAccessDenied};
  if (stat(directory.c_str(), &facts) != 0) {
    if (const int error = MakeStoreDirectory(directory); error != 0) throw Failure{CodeOfErrno(error)};
  } else if ((facts.st_mode & 0222) == 0) {
    throw Failure{kAccessDenied};
  }
  if (!OpenToRead(directory)) {
    if (connection_ == nullptr) {
      // Its user's alone; what stands beside it gets the same rights.
      const int file = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
      if (file < 0) throw Failure{CodeOfErrno(errno)};
      close(file);
      Connect(/*may_be_fixed=*/false);
    }
    if (!HasTables()) MakeTables();
    static_cast<void>(HasTables());
  }
  if (fixed_ || stat(path_.c_str(), &facts) != 0 || (facts.st_mode & 0222) == 0) throw Failure{kAccessDenied};
}

std::string Database::Faults() {
  std::string faults;
  const auto collect = [&](const char* question) {
    sqlite3_stmt* asked = nullptr;
    int result = sqlite3_prepare_v2(connection_, question, -1, &asked, nullptr);
    while (result == SQLITE_OK && sqlite3_step(asked) == SQLITE_ROW) {
      const auto* const words = reinterpret_cast<const char*>(sqlite3_column_text(asked, 0));
      if (words != nullptr && std::strcmp(words, "ok") != 0) faults.append(words).append("\n");
    }
    result = sqlite3_finalize(asked);
    if (result != SQLITE_OK) faults.append(sqlite3_errmsg(connection_)).append("\n");
  };
  collect("PRAGMA integrity_check");
  collect(
      "SELECT 'key ' || id || ' has no key above it' FROM keys k WHERE id > 4 AND"
      " NOT EXISTS (SELECT 1 FROM keys WHERE id = k.parent)");
  collect(
      "SELECT 'a value of key ' || key || ' has no key' FROM vals v WHERE"
      " NOT EXISTS (SELECT 1 FROM keys WHERE id = v.key)");
  return faults;
}

Query::~Query() {
  if (statement_ == nullptr) return;
  sqlite3_reset(statement_);
  sqlite3_clear_bindings(statement_);
}

Query& Query::With(std::int64_t number) {
  const int result = sqlite3_bind_int64(statement_, ++parameters_, number);
  if (result != SQLITE_OK) Fail(result);
  return *this;
}

Query& Query::With(TextView name) {
  std::string bytes;
  bytes.reserve(2 * name.size());
  for (const char16_t unit : name) bytes += {static_cast<char>(unit >> 8), static_cast<char>(unit & 0xFF)};
  const int result = sqlite3_bind_blob64(statement_, ++parameters_, bytes.data(), bytes.size(), SQLITE_TRANSIENT);
  if (result != SQLITE_OK) Fail(result);
  return *this;
}

Query& Query::With(std::string_view bytes) {
  const char* const start = bytes.data() == nullptr ? "" : bytes.data();
  const int result = sqlite3_bind_blob64(statement_, ++parameters_, start, bytes.size(), SQLITE_STATIC);
  if (result != SQLITE_OK) Fail(result);
  return *this;
}

bool Query::Next() {
  const int result = sqlite3_step(statement_);
  if (result == SQLITE_ROW) return true;
  if (result == SQLITE_DONE) return false;
  Fail(result);
}

void Query::Fail(int result) {
  sqlite3_reset(std::exchange(statement_, nullptr));  // the failure may close what it belongs to
  database_.Fail(result);
}

std::string_view Query::Bytes(int column) {
  const void* const bytes = sqlite3_column_blob(statement_, column);
  const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
  // Null for an empty one, and without memory for its bytes.
  if (bytes == nullptr && size != 0) Fail(SQLITE_NOMEM);
  return bytes == nullptr ? std::string_view{} : std::string_view(static_cast<const char*>(bytes), size);
}

Text Query::Name(int column) {
  const std::string_view bytes = Bytes(column);
  Text name(bytes.size() / 2, u'\0');
  for (std::size_t i = 0; i < name.size(); ++i) {
    const auto high = static_cast<unsigned char>(bytes[2 * i]);
    name[i] = static_cast<char16_t>(high << 8 | static_cast<unsigned char>(bytes[2 * i + 1]));
  }
  return name;
}

void Transaction::Commit() {
  Query(database_, Statement::kCommit).Run();
  open_ = false;
}

Transaction::~Transaction() {
  if (open_) database_.TakeBack();
}

}  // namespace Orvix::registry
