#include "platform/registry/registry.h"

#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <limits>

#include "platform/names/case_fold.h"
#include "platform/system/quiet_signals.h"

namespace Orvix::registry {

namespace {

constexpr std::size_t kMostKeyUnits = 255;     // one component of a key
constexpr std::size_t kMostNameUnits = 16383;  // a value's name
constexpr std::int64_t kMostLevels = 512;      // components of a key
constexpr std::size_t kMostNewLevels = 32;     // that one call makes

constexpr KeyId kClasses = 1;
// Roots are known by their low 32 bits, as callers extend them either way.
constexpr LONG kRootValues[kRoots] = {kClassesRoot, kCurrentUser, kLocalMachine, kUsers};

bool IsRoot(KeyId key) { return key <= kRoots; }

// Takes the first component off `*path`, empty at its end; doubled and trailing
// backslashes count for nothing.
TextView TakeComponent(TextView* path) {
  path->remove_prefix(std::min(path->find_first_not_of(u'\\'), path->size()));
  const TextView component = path->substr(0, path->find(u'\\'));
  path->remove_prefix(component.size());
  return component;
}

KeyId Child(SqlConnection& sql, KeyId key, const Text& folded) {
  SqlQuery child(sql, "SELECT id FROM keys WHERE parent = ? AND folded = ?", key, TextView(folded));
  return child.Next() ? child.Number(0) : 0;
}

}  // namespace

// One operation: it has the registry to itself, and no signal of a full disk, which
// readers may meet as well, ends the process.
class Registry::Operation {
 public:
  explicit Operation(Registry& registry) : guard_(registry.mutex_) {}
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;
  ~Operation() { signals_.Failed(EFBIG); }

 private:
  std::lock_guard<std::mutex> guard_;
  QuietSignals signals_;
};

Registry& Registry::Instance() {
  // Never destroyed: threads may still call while the process ends.
  static NeverDestroyed<Registry> registry;
  return *registry;
}

// A child gets neither a mutex in the middle of a call nor a connection.
Registry::Registry() {
  pthread_atfork(
      [] {
        Instance().mutex_.lock();
        Instance().store_.Close();
      },
      [] { Instance().mutex_.unlock(); }, [] { Instance().mutex_.unlock(); });
}

void Registry::OpenToRead() {
  constexpr std::size_t kMostKnown = 256;
  store_.OpenToRead();
  if (store_.sql().HasChanged() || known_.keys.size() + known_.values.size() > kMostKnown) known_ = {};
}

KeyId Registry::IdOf(HKEY key) const {
  const auto value = reinterpret_cast<std::intptr_t>(key);
  for (KeyId root = 1; root <= kRoots; ++root) {
    if (static_cast<LONG>(value) == kRootValues[root - 1]) return root;
  }
  if (value <= 0 || value > std::numeric_limits<LONG>::max()) throw Failure{kBadHandle};
  const auto found = handles_.find(static_cast<LONG>(value));
  if (found == handles_.end()) throw Failure{kBadHandle};
  const auto& [key_id, mark] = found->second;
  // A key of a store that is gone is deleted; roots are in each.
  return IsRoot(key_id) || mark == store_.mark() ? key_id : std::numeric_limits<KeyId>::max();
}

Registry::Place Registry::Locate(HKEY key) {
  const KeyId id = IdOf(key);
  SqlQuery depth(store_.sql(), "SELECT depth FROM keys WHERE id = ?", id);
  if (!depth.Next()) throw Failure{kKeyDeleted};
  return {id, depth.Number(0)};
}

KeyId Registry::Find(const Place& place, TextView path) {
  if (path.starts_with(u'\\') && place.key != kClasses) throw Failure{kBadPath};
  for (TextView rest = path, component; !(component = TakeComponent(&rest)).empty();) {
    if (component.size() > kMostKeyUnits) throw Failure{kBadParameter};
  }
  KeyId key = place.key;
  for (TextView component; key != 0 && !(component = TakeComponent(&path)).empty();) {
    key = Child(store_.sql(), key, FoldName(component));
  }
  return key;
}

KeyId Registry::Make(Place place, TextView path, DWORD* disposition) {
  std::size_t made = 0;
  for (TextView component; !(component = TakeComponent(&path)).empty();) {
    ++place.depth;
    const Text folded = FoldName(component);
    // Looked for again: another process may have been faster.
    const KeyId child = made == 0 ? Child(store_.sql(), place.key, folded) : 0;
    if (child != 0) {
      place.key = child;
      continue;
    }
    if (++made > kMostNewLevels || place.depth > kMostLevels) throw Failure{kBadParameter};
    SqlQuery add(store_.sql(), "INSERT INTO keys (parent, folded, name, depth) VALUES (?, ?, ?, ?) RETURNING id",
                 place.key, TextView(folded), component, place.depth);
    if (!add.Next()) throw Failure{kReadWriteFailed};
    place.key = add.Number(0);
  }
  *disposition = made == 0 ? kOpenedExisting : kCreatedNew;
  return place.key;
}

HKEY Registry::NewHandle(KeyId key) {
  // Multiples of 4, as on the platform; a number comes back only after all
  // others, so that a stale handle stays unknown.
  do {
    last_handle_ = last_handle_ >= std::numeric_limits<LONG>::max() - 4 ? 4 : last_handle_ + 4;
  } while (handles_.contains(last_handle_));
  handles_[last_handle_] = {key, store_.mark()};
  return MakeRootKey(last_handle_);
}

LONG Registry::CreateKey(HKEY key, TextView path, HKEY* opened, DWORD* disposition) {
  const Operation operation(*this);
  DWORD kind = kOpenedExisting;
  OpenToRead();
  KeyId found = Find(Locate(key), path);
  if (found == 0) {
    store_.OpenToWrite();
    SqlTransaction change(store_.sql(), /*writes=*/true);
    found = Make(Locate(key), path, &kind);
    change.Commit();
  }
  if (disposition != nullptr) *disposition = kind;
  *opened = NewHandle(found);
  return kSuccess;
}

LONG Registry::OpenKey(HKEY key, TextView path, HKEY* opened) {
  const Operation operation(*this);
  OpenToRead();
  const KeyId id = IdOf(key);
  if (path.empty() && IsRoot(id)) {
    *opened = MakeRootKey(kRootValues[id - 1]);
    return kSuccess;
  }
  KeyId& found = known_.keys[{id, Text(path)}];
  if (found == 0) {
    SqlTransaction reading(store_.sql(), /*writes=*/false);
    found = Find(Locate(key), path);
    reading.Commit();
  }
  if (found == 0) return kNotFound;
  *opened = NewHandle(found);
  return kSuccess;
}

LONG Registry::CloseKey(HKEY key) {
  const Operation operation(*this);
  static_cast<void>(IdOf(key));
  handles_.erase(static_cast<LONG>(reinterpret_cast<std::intptr_t>(key)));  // a root is none of them
  return kSuccess;
}

LONG Registry::DeleteKey(HKEY key, TextView path) {
  const Operation operation(*this);
  static_cast<void>(IdOf(key));
  store_.OpenToWrite();
  SqlTransaction change(store_.sql(), /*writes=*/true);
  const KeyId found = Find(Locate(key), path);
  if (found == 0) return kNotFound;
  if (IsRoot(found) || SqlQuery(store_.sql(), "SELECT 1 FROM keys WHERE parent = ? LIMIT 1", found).Next()) {
    return kAccessDenied;
  }
  SqlQuery(store_.sql(), "DELETE FROM vals WHERE key = ?", found).Run();
  SqlQuery(store_.sql(), "DELETE FROM keys WHERE id = ?", found).Run();
  change.Commit();
  return kSuccess;
}

LONG Registry::SetValue(HKEY key, TextView name, DWORD type, std::string_view data) {
  const Operation operation(*this);
  if (name.size() > kMostNameUnits) return kBadParameter;
  static_cast<void>(IdOf(key));
  store_.OpenToWrite();
  const Text folded = FoldName(name);
  // A known name keeps its spelling.
  SqlQuery(store_.sql(),
           "INSERT INTO vals (key, folded, name, type, data) SELECT id, ?2, ?3, ?4, ?5 FROM keys WHERE id = ?1"
           " ON CONFLICT (key, folded) DO UPDATE SET type = excluded.type, data = excluded.data"
           " WHERE type IS NOT excluded.type OR data IS NOT excluded.data",
           IdOf(key), TextView(folded), name, std::int64_t{type}, data)
      .Run();
  if (store_.sql().Changes() == 0) static_cast<void>(Locate(key));  // it was so already
  return kSuccess;
}

LONG Registry::QueryValue(HKEY key, TextView name, FoundValue* value) {
  const Operation operation(*this);
  OpenToRead();
  constexpr std::size_t kMostKept = 4096;  // bytes
  const KeyId id = IdOf(key);
  const auto known = known_.values.find({id, Text(name)});
  if (known != known_.values.end()) {
    *value = known->second;
    return kSuccess;
  }
  SqlQuery found(store_.sql(), "SELECT type, data FROM vals WHERE key = ? AND folded = ?", id,
                 TextView(FoldName(name)));
  if (!found.Next()) {
    static_cast<void>(Locate(key));
    return kNotFound;
  }
  value->type = static_cast<DWORD>(found.Number(0));
  value->data = found.Bytes(1);
  if (value->data.size() <= kMostKept) known_.values[{id, Text(name)}] = *value;
  return kSuccess;
}

LONG Registry::DeleteValue(HKEY key, TextView name) {
  const Operation operation(*this);
  static_cast<void>(IdOf(key));
  store_.OpenToWrite();
  SqlQuery(store_.sql(), "DELETE FROM vals WHERE key = ? AND folded = ?", IdOf(key), TextView(FoldName(name))).Run();
  if (store_.sql().Changes() != 0) return kSuccess;
  static_cast<void>(Locate(key));
  return kNotFound;
}

LONG Registry::Enumerate(HKEY key, bool values, DWORD index, FoundValue* item) {
  constexpr const char* kWords[] = {
      "SELECT folded, name FROM keys WHERE parent = ? AND folded >= ? ORDER BY folded LIMIT 1 OFFSET ?",
      "SELECT folded, name, type, data FROM vals WHERE key = ? AND folded >= ? ORDER BY folded LIMIT 1 OFFSET ?",
  };
  const Operation operation(*this);
  OpenToRead();
  Enumeration now{key, values, store_.mark(), 0, store_.sql().TotalChanges(), index + 1};
  {
    SqlQuery version(store_.sql(), "PRAGMA data_version");
    if (version.Next()) now.version = version.Number(0);
  }
  const bool goes_on = index > 0 && last_.next == index && last_.key == key && last_.values == values &&
                       last_.mark == now.mark && last_.version == now.version && last_.changes == now.changes;
  SqlQuery at(store_.sql(), kWords[values ? 1 : 0], IdOf(key), TextView(goes_on ? last_.folded : Text()),
              std::int64_t{goes_on ? 1 : index});
  if (!at.Next()) {
    static_cast<void>(Locate(key));
    return kNoMoreItems;
  }
  now.folded = at.Words(0);
  item->name = at.Words(1);
  if (values) {
    item->type = static_cast<DWORD>(at.Number(2));
    item->data = at.Bytes(3);
  }
  last_ = std::move(now);
  return kSuccess;
}

Text Registry::Faults() {
  const Operation operation(*this);
  OpenToRead();
  return store_.Faults();
}

}  // namespace Orvix::registry
