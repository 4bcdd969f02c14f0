// Tables: `keys` holds the tree, `vals` the values; names stand beside their
// folded forms, which are found and sorted by. See sqlite.org/wal.html for who waits
// for whom.
#include "platform/registry/store.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <map>

#include "frame/runtime/never_destroyed.h"
#include "platform/system/user_data.h"

namespace Orvix::registry {

namespace {

constexpr int kVersion = 1;

// With the high byte first, texts sort as their units do. A key's number is never
// used again, so that a handle to a deleted key stays one. A mark of its own tells
// this store from another one in its place.
constexpr char kTables[] =
    "PRAGMA encoding = 'UTF-16be';"
    "BEGIN IMMEDIATE;"
    "CREATE TABLE IF NOT EXISTS keys (id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL,"
    " folded TEXT NOT NULL, name TEXT NOT NULL, depth INTEGER NOT NULL, UNIQUE (parent, folded));"
    "CREATE TABLE IF NOT EXISTS vals (key INTEGER NOT NULL REFERENCES keys (id), folded TEXT NOT NULL,"
    " name TEXT NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL, PRIMARY KEY (key, folded)) WITHOUT ROWID;"
    "INSERT OR IGNORE INTO keys (id, parent, folded, name, depth) VALUES (1, 0, 'HKEY_CLASSES_ROOT', '', 0),"
    " (2, 0, 'HKEY_CURRENT_USER', '', 0), (3, 0, 'HKEY_LOCAL_MACHINE', '', 0), (4, 0, 'HKEY_USERS', '', 0);"
    "CREATE TABLE IF NOT EXISTS store (mark INTEGER NOT NULL);"
    "INSERT INTO store SELECT random() WHERE NOT EXISTS (SELECT 1 FROM store);"
    "PRAGMA user_version = 1;"
    "COMMIT";

struct Meaning {
  int reason;
  LONG code;
};
constexpr Meaning kResults[] = {
    {SQLITE_NOMEM, kOutOfMemory}, {SQLITE_TOOBIG, kOutOfMemory}, {SQLITE_BUSY, kBusy},
    {SQLITE_LOCKED, kBusy},       {SQLITE_PROTOCOL, kBusy},      {SQLITE_READONLY, kAccessDenied},
    {SQLITE_PERM, kAccessDenied}, {SQLITE_FULL, kDiskFull},      {SQLITE_CORRUPT, kDamaged},
    {SQLITE_NOTADB, kDamaged},    {SQLITE_ERROR, kDamaged},  // other tables than ours
};
constexpr Meaning kErrors[] = {
    {EACCES, kAccessDenied}, {EPERM, kAccessDenied}, {EROFS, kAccessDenied}, {ENOSPC, kDiskFull},
    {EDQUOT, kDiskFull},     {EFBIG, kDiskFull},     {ENOMEM, kOutOfMemory},
};

template <std::size_t Size>
LONG Find(int reason, const Meaning (&meanings)[Size], LONG otherwise) {
  const auto* const known = std::ranges::find(meanings, reason, &Meaning::reason);
  return known == std::end(meanings) ? otherwise : known->code;
}

LONG CodeOfErrno(int error) { return Find(error, kErrors, kReadWriteFailed); }

// The directory that the environment names at this moment; empty when there is no
// home directory either. A relative name is counted from where the process was when
// it was first met. A process with more rights than its caller takes no word of the
// environment.
std::string StoreDirectory() {
  const char* const named = secure_getenv("ORVIX_REGISTRY");
  if (named == nullptr || named[0] == '\0') {
    const std::string data = UserDataDirectory();
    return data.empty() ? data : data + "/orvix/registry";
  }
  if (named[0] == '/') return named;
  static NeverDestroyed<std::map<std::string, std::string>> met;
  const auto [place, is_new] = (*met).try_emplace(named, named);
  if (is_new) place->second = std::filesystem::absolute(named).string();
  return place->second;
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

// The address that reads a file as it is (sqlite.org/uri.html).
std::string FixedName(const std::string& path) {
  std::string name = "file:";
  for (const char byte : path) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    name += {'%', kDigits[byte >> 4 & 15], kDigits[byte & 15]};
  }
  return name + "?immutable=1";
}

}  // namespace

LONG CodeOf(const SqlFailure& failure) {
  // What SQLite did since may have hidden the reason of a failed write.
  const bool is_full = failure.result == SQLITE_IOERR_WRITE && failure.error != EIO;
  return Find(failure.result & 0xFF, kResults, is_full ? kDiskFull : CodeOfErrno(failure.error));
}

// False for a file that nothing was ever written to. 1009 for a later version, and
// for a database of somebody else.
bool Store::HasTables() {
  SqlQuery facts(sql_, "SELECT user_version, (SELECT count(*) FROM sqlite_schema) FROM pragma_user_version");
  facts.Run();
  if (facts.Number(0) == 0 && facts.Number(1) == 0) return false;
  SqlQuery mark(sql_, "SELECT mark FROM store");
  if (facts.Number(0) != kVersion || !mark.Next()) throw Failure{kDamaged};
  mark_ = mark.Number(0);
  return true;
}

void Store::Connect(const struct stat& facts) {
  facts_ = facts;
  fixed_ = false;
  if (facts.st_ino != 0) {
    try {
      sql_.Open(path_.c_str(), SQLITE_OPEN_READWRITE);
    } catch (const SqlFailure& failure) {
      struct stat log {};
      // Where no log can be kept beside the file, it is read as it is.
      fixed_ = (failure.result & 0xFF) != SQLITE_BUSY && access(path_.c_str(), R_OK) == 0 &&
               (stat((path_ + "-wal").c_str(), &log) != 0 || log.st_size == 0);
      if (!fixed_) throw;
      sql_.Open(FixedName(path_).c_str(), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    }
    if (HasTables()) return;
  }
  // A store that is not there is an empty one in memory, until it is.
  facts_ = {};
  mark_ = 0;
  sql_.Open(":memory:", SQLITE_OPEN_READWRITE);
  sql_.Execute(kTables);
}

void Store::OpenToRead() {
  const std::string directory = StoreDirectory();
  const std::string path = directory.empty() ? directory : directory + "/registry.sqlite";
  if (path != path_) Close();
  path_ = path;
  struct stat facts {};
  if (stat(path.c_str(), &facts) != 0) {
    if (errno != ENOENT && errno != ENOTDIR) throw Failure{CodeOfErrno(errno)};
    facts = {};
  }
  if (S_ISDIR(facts.st_mode)) throw Failure{kDamaged};
  const bool is_still = !fixed_ && facts.st_dev == facts_.st_dev && facts.st_ino == facts_.st_ino;
  if (!is_still || !sql_.IsOpen()) {
    try {
      Connect(facts);
    } catch (...) {
      Close();
      throw;
    }
  }
  if (facts_.st_ino != 0) facts_ = facts;
}

// Its user's alone; what stands beside it gets the same rights.
void Store::MakeFile() {
  const int file = open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY, 0600);
  if (file < 0) throw Failure{CodeOfErrno(errno)};
  close(file);
  SqlConnection made;
  made.Open(path_.c_str(), SQLITE_OPEN_READWRITE);
  if (!IsRemote(path_)) {
    try {
      made.Execute("PRAGMA journal_mode = WAL");
    } catch (const SqlFailure&) {  // leaves a rollback journal, which is right everywhere
    }
  }
  made.Execute(kTables);
}

void Store::OpenToWrite() {
  OpenToRead();
  struct stat facts {};
  if (path_.empty()) throw Failure{kAccessDenied};
  const std::string directory = path_.substr(0, path_.rfind('/'));
  if (stat(directory.c_str(), &facts) != 0) {
    if (const int error = MakeUserDirectory(directory); error != 0) throw Failure{CodeOfErrno(error)};
  } else if ((facts.st_mode & 0222) == 0) {
    throw Failure{kAccessDenied};
  }
  if (facts_.st_ino == 0) {
    MakeFile();
    OpenToRead();
  }
  if (fixed_ || (facts_.st_mode & 0222) == 0) throw Failure{kAccessDenied};
}

Text Store::Faults() {
  Text faults;
  for (const char* const question : {"PRAGMA integrity_check",
                                     "SELECT 'key ' || id || ' has no key above it' FROM keys k WHERE id > 4 AND"
                                     " NOT EXISTS (SELECT 1 FROM keys WHERE id = k.parent)",
                                     "SELECT 'a value of key ' || key || ' has no key' FROM vals v WHERE"
                                     " NOT EXISTS (SELECT 1 FROM keys WHERE id = v.key)"}) {
    for (SqlQuery fault(sql_, question); fault.Next();) {
      if (fault.Words(0) != u"ok") faults.append(fault.Words(0)).append(u"\n");
    }
  }
  return faults;
}

}  // namespace Orvix::registry
