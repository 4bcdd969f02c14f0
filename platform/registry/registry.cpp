#include "platform/registry/registry.h"

#include <pthread.h>

#include <cerrno>
#include <cstring>
#include <limits>

#include "platform/names/case_fold.h"
#include "platform/system/quiet_signals.h"

namespace Orvix::registry {

namespace {

constexpr KeyId kClasses = 1;
// Roots are known by their low 32 bits, as callers extend them either way.
constexpr LONG kRootValues[kRoots] = {kClassesRoot, kCurrentUser, kLocalMachine, kUsers};

bool IsRoot(KeyId key) { return key <= kRoots; }

}  // namespace

// One operation: it has the registry to itself, and no signal of a full disk, which
// readers may meet as well, ends the process.
class Registry::Operation {
 public:
  explicit Operation(Registry& registry) : guard_(registry.mutex_) {}
  Operation(const Operation&) = delete;
  Operation& operator=(const Operation&) = delete;

 private:
  struct Signals : QuietSignals {
    ~Signals() { Failed(EFBIG); }
  };
  std::lock_guard<std::mutex> guard_;
  Signals signals_;
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
        Instance().database_.Close();
      },
      [] { Instance().mutex_.unlock(); }, [] { Instance().mutex_.unlock(); });
}

KeyId Registry::IdOf(HKEY key) const {
  const auto value = reinterpret_cast<std::intptr_t>(key);
  for (KeyId root = 1; root <= kRoots; ++root) {
    if (static_cast<LONG>(value) == kRootValues[root - 1]) return root;
  }
  if (value <= 0 || value > std::numeric_limits<LONG>::max()) throw Failure{kBadHandle};
  const auto found = handles_.find(static_cast<LONG>(value));
  if (found == handles_.end()) throw Failure{kBadHandle};
  // A key of a store that is gone is deleted.
  return found->second.store == database_.number() ? found->second.key : std::numeric_limits<KeyId>::max();
}

Registry::Place Registry::Locate(HKEY key) {
  const KeyId id = IdOf(key);
  if (IsRoot(id)) return {id, 0, true};
  Query depth(database_, Statement::kKeyDepth);
  if (!depth.With(id).Next()) throw Failure{kKeyDeleted};
  return {id, static_cast<std::size_t>(depth.Number(0)), false};
}

void Registry::CheckIsThere(HKEY key) { static_cast<void>(Locate(key)); }

void Registry::CheckPath(const Place& place, TextView path) {
  if (path.starts_with(u'\\') && place.key != kClasses) throw Failure{kBadPath};
  for (const TextView component : Components(path)) {
    if (component.size() > kMostKeyUnits) throw Failure{kBadParameter};
  }
}

KeyId Registry::Find(KeyId key, TextView path) {
  for (const TextView component : Components(path)) {
    Query child(database_, Statement::kChild);
    if (!child.With(key).With(TextView(FoldName(component))).Next()) return 0;
    key = child.Number(0);
  }
  return key;
}

HKEY Registry::NewHandle(KeyId key) {
  // Multiples of 4, as on the platform; a number comes back only after all
  // others, so that a stale handle stays unknown.
  do {
    last_handle_ = last_handle_ >= std::numeric_limits<LONG>::max() - 4 ? 4 : last_handle_ + 4;
  } while (handles_.contains(last_handle_));
  handles_[last_handle_] = {key, database_.number()};
  return MakeRootKey(last_handle_);
}

LONG Registry::CreateKey(HKEY key, TextView path, HKEY* opened, DWORD* disposition) {
  const Operation operation(*this);
  KeyId found = 0;
  if (database_.OpenToRead(place_.Directory())) {
    Transaction reading(database_, /*writes=*/false);
    const Place place = Locate(key);
    CheckPath(place, path);
    found = Find(place.key, path);
    reading.Commit();
  } else {
    const KeyId id = IdOf(key);
    if (!IsRoot(id)) throw Failure{kKeyDeleted};
    CheckPath({id, 0, true}, path);
  }
  const DWORD kind = found != 0 ? kOpenedExisting : kCreatedNew;
  DWORD made_kind = kind;
  if (found == 0) {
    database_.OpenToWrite(place_.Directory());
    Transaction change(database_, /*writes=*/true);
    Place place = Locate(key);
    std::size_t made = 0;
    for (const TextView component : Components(path)) {
      ++place.depth;
      const Text folded = FoldName(component);
      Query child(database_, Statement::kChild);
      // Looked for again: another process may have been faster.
      if (made == 0 && child.With(place.key).With(TextView(folded)).Next()) {
        place.key = child.Number(0);
        continue;
      }
      if (++made > kMostNewLevels || place.depth > kMostLevels) throw Failure{kBadParameter};
      Query add(database_, Statement::kAddKey);
      add.With(place.key).With(TextView(folded)).With(component).With(static_cast<std::int64_t>(place.depth));
      if (!add.Next()) throw Failure{kReadWriteFailed};
      place.key = add.Number(0);
    }
    change.Commit();
    if (made == 0) made_kind = kOpenedExisting;
    found = place.key;
  }
  if (disposition != nullptr) *disposition = made_kind;
  *opened = NewHandle(found);
  return kSuccess;
}

LONG Registry::OpenKey(HKEY key, TextView path, HKEY* opened) {
  const Operation operation(*this);
  const bool has_store = database_.OpenToRead(place_.Directory());
  const KeyId id = IdOf(key);
  if (path.empty() && IsRoot(id)) {
    *opened = MakeRootKey(kRootValues[id - 1]);
    return kSuccess;
  }
  if (!has_store && !IsRoot(id)) return kKeyDeleted;
  Place place{id, 0, IsRoot(id)};
  KeyId found = 0;
  if (has_store) {
    Transaction reading(database_, /*writes=*/false);
    place = Locate(key);
    CheckPath(place, path);
    found = Find(place.key, path);
    reading.Commit();
  } else {
    CheckPath(place, path);
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
  database_.OpenToWrite(place_.Directory());
  Transaction change(database_, /*writes=*/true);
  const Place place = Locate(key);
  CheckPath(place, path);
  const KeyId found = Find(place.key, path);
  if (found == 0) return kNotFound;
  if (IsRoot(found) || Query(database_, Statement::kHasChild).With(found).Next()) return kAccessDenied;
  Query(database_, Statement::kDeleteValues).With(found).Run();
  Query(database_, Statement::kDeleteKey).With(found).Run();
  change.Commit();
  return kSuccess;
}

LONG Registry::SetValue(HKEY key, TextView name, DWORD type, std::string_view data) {
  const Operation operation(*this);
  if (name.size() > kMostNameUnits) return kBadParameter;
  static_cast<void>(IdOf(key));
  database_.OpenToWrite(place_.Directory());
  const KeyId id = IdOf(key);
  const Text folded = FoldName(name);
  {
    Query known(database_, Statement::kGetValue);
    if (known.With(id).With(TextView(folded)).Next() && known.Number(0) == type && known.Bytes(1) == data) {
      return kSuccess;
    }
  }
  Query set(database_, Statement::kSetValue);
  set.With(id).With(TextView(folded)).With(name).With(std::int64_t{type}).With(data).Run();
  return database_.Changes() != 0 ? kSuccess : kKeyDeleted;
}

LONG Registry::QueryValue(HKEY key, TextView name, FoundValue* value) {
  const Operation operation(*this);
  if (!database_.OpenToRead(place_.Directory())) return IsRoot(IdOf(key)) ? kNotFound : kKeyDeleted;
  Query found(database_, Statement::kGetValue);
  if (!found.With(IdOf(key)).With(TextView(FoldName(name))).Next()) {
    CheckIsThere(key);
    return kNotFound;
  }
  value->type = static_cast<DWORD>(found.Number(0));
  value->data = found.Bytes(1);
  return kSuccess;
}

LONG Registry::DeleteValue(HKEY key, TextView name) {
  const Operation operation(*this);
  static_cast<void>(IdOf(key));
  database_.OpenToWrite(place_.Directory());
  Query(database_, Statement::kDeleteValue).With(IdOf(key)).With(TextView(FoldName(name))).Run();
  if (database_.Changes() != 0) return kSuccess;
  CheckIsThere(key);
  return kNotFound;
}

bool Registry::Nth(HKEY key, bool values, DWORD index, FoundValue* item) {
  if (!database_.OpenToRead(place_.Directory())) {
    if (!IsRoot(IdOf(key))) throw Failure{kKeyDeleted};
    return false;
  }
  const KeyId id = IdOf(key);
  Enumeration now{key, values, index, database_.number(), 0, database_.TotalChanges(), {}};
  Transaction reading(database_, /*writes=*/false);
  {
    Query version(database_, Statement::kDataVersion);
    if (version.Next()) now.version = version.Number(0);
  }
  const bool goes_on = last_.key == key && last_.values == values && index > 0 && last_.index == index - 1 &&
                       last_.store == now.store && last_.version == now.version && last_.changes == now.changes;
  const Statement next = values ? Statement::kNextValue : Statement::kNextKey;
  const Statement nth = values ? Statement::kNthValue : Statement::kNthKey;
  bool found = false;
  {
    Query at(database_, goes_on ? next : nth);
    at.With(id);
    found = (goes_on ? at.With(std::string_view(last_.folded)) : at.With(std::int64_t{index})).Next();
    if (found) {
      item->name = at.Name(0);
      now.folded = at.Bytes(1);
      if (values) {
        item->type = static_cast<DWORD>(at.Number(2));
        item->data = at.Bytes(3);
      }
    }
  }
  if (!found) CheckIsThere(key);
  reading.Commit();
  if (found) last_ = std::move(now);
  return found;
}

LONG Registry::EnumerateKey(HKEY key, DWORD index, Text* name) {
  const Operation operation(*this);
  FoundValue item;
  if (!Nth(key, /*values=*/false, index, &item)) return kNoMoreItems;
  *name = std::move(item.name);
  return kSuccess;
}

LONG Registry::EnumerateValue(HKEY key, DWORD index, FoundValue* value) {
  const Operation operation(*this);
  return Nth(key, /*values=*/true, index, value) ? kSuccess : kNoMoreItems;
}

std::string Registry::Faults() {
  const Operation operation(*this);
  return database_.OpenToRead(place_.Directory()) ? database_.Faults() : std::string();
}

LONG GiveValue(const FoundValue& value, DWORD* type, BYTE* data, DWORD* bytes) noexcept {
  if (type != nullptr) *type = value.type;
  if (bytes == nullptr) return kSuccess;
  const DWORD capacity = *bytes;
  *bytes = static_cast<DWORD>(value.data.size());
  if (data == nullptr) return kSuccess;
  if (capacity < value.data.size()) return kMoreData;
  if (!value.data.empty()) std::memcpy(data, value.data.data(), value.data.size());
  return kSuccess;
}

}  // namespace Orvix::registry
