#include "platform/registry/registry.h"

#include <pthread.h>

#include <cstring>
#include <limits>

#include "platform/names/case_fold.h"

namespace Orvix::registry {

namespace {

constexpr std::size_t kMostNewLevels = 32;
constexpr std::size_t kClassesIndex = 0;
constexpr LONG kRootValues[] = {kClassesRoot, kCurrentUser, kLocalMachine, kUsers};

// The codes for a path that no key can have.
LONG CheckPath(TextView path, bool below_classes) {
  if (path.starts_with(u'\\') && !below_classes) return kBadPath;
  for (const TextView component : Components(path)) {
    if (component.size() > kMostKeyUnits) return kBadParameter;
  }
  return kSuccess;
}

// How many components of `path` are not there below `key`.
std::size_t MissingLevels(const Key* key, TextView path) {
  std::size_t missing = 0;
  for (const TextView component : Components(path)) {
    const std::shared_ptr<Key>* below = key == nullptr ? nullptr : key->keys.Find(FoldName(component));
    key = below == nullptr ? nullptr : below->get();
    if (key == nullptr) ++missing;
  }
  return missing;
}

// `path` below `key`, parted by single backslashes.
Text PathBelow(const Key& key, TextView path) {
  Text whole = key.path;
  for (const TextView component : Components(path)) {
    if (!whole.empty()) whole.push_back(u'\\');
    whole.append(component);
  }
  return whole;
}

}  // namespace

Registry& Registry::Instance() {
  // Never destroyed: threads may still call while the process ends.
  static Registry& registry = *std::unique_ptr<Registry>(new Registry).release();
  return registry;
}

// A child must not have the mutex in the middle of a call, nor share the lock.
Registry::Registry() {
  pthread_atfork([] { Instance().mutex_.lock(); }, [] { Instance().mutex_.unlock(); },
                 [] {
                   Registry& registry = Instance();
                   if (registry.store_ != nullptr) registry.store_->lock.Reset();
                   registry.mutex_.unlock();
                 });
}

Registry::Store::Store(const std::string& directory)
    : lock(directory),
      roots{RootFile(&lock, "HKEY_CLASSES_ROOT"), RootFile(&lock, "HKEY_CURRENT_USER"),
            RootFile(&lock, "HKEY_LOCAL_MACHINE"), RootFile(&lock, "HKEY_USERS")} {}

Registry::Store& Registry::CurrentStore() {
  if (store_ == nullptr || !IsStoreDirectory(store_->lock.directory())) {
    store_ = std::make_unique<Store>(StoreDirectory());
  }
  return *store_;
}

LONG Registry::FindRoot(HKEY key, std::size_t* root, Handle** handle) {
  *handle = nullptr;
  // Roots are known by their low 32 bits, as callers extend them either way.
  const auto value = reinterpret_cast<std::intptr_t>(key);
  for (std::size_t i = 0; i < kRoots; ++i) {
    if (static_cast<LONG>(value) == kRootValues[i]) {
      *root = i;
      return kSuccess;
    }
  }
  if (value <= 0 || value > std::numeric_limits<LONG>::max()) return kBadHandle;
  const auto found = handles_.find(static_cast<LONG>(value));
  if (found == handles_.end()) return kBadHandle;
  *handle = &found->second;
  *root = found->second.root;
  return kSuccess;
}

LONG Registry::Locate(HKEY key, Place* place) {
  Handle* handle = nullptr;
  const LONG result = FindRoot(key, &place->root, &handle);
  if (result != kSuccess) return result;
  place->file = &store_->roots[place->root];
  place->is_root = handle == nullptr;
  KeyTree& tree = place->file->tree();
  if (handle == nullptr) {
    place->key = tree.root();
    return kSuccess;
  }
  if (handle->deleted || handle->key->deleted) return kKeyDeleted;
  if (handle->generation != place->file->generation()) {
    // The file was read anew: the key is found again by its name.
    std::shared_ptr<Key> found = tree.Find(tree.root(), handle->key->path);
    handle->deleted = found == nullptr;
    if (handle->deleted) return kKeyDeleted;
    handle->key = std::move(found);
    handle->generation = place->file->generation();
  }
  place->key = handle->key;
  return kSuccess;
}

LONG Registry::Resolve(HKEY key, Place* place) {
  Handle* handle = nullptr;
  LONG result = FindRoot(key, &place->root, &handle);
  if (result != kSuccess) return result;
  result = CurrentStore().roots[place->root].Refresh();
  return result == kSuccess ? Locate(key, place) : result;
}

template <class Change>
LONG Registry::Write(HKEY key, Change change) {
  Place place;
  Handle* handle = nullptr;
  LONG result = FindRoot(key, &place.root, &handle);
  if (result != kSuccess) return result;
  const RootFile::Writer writer(&CurrentStore().roots[place.root]);
  result = writer.result();
  if (result == kSuccess) result = Locate(key, &place);
  return result == kSuccess ? change(place) : result;
}

LONG Registry::NewHandle(const Place& place, const std::shared_ptr<Key>& key, HKEY* opened) {
  // Multiples of 4, as on the platform; a number comes back only after all
  // others, so that a stale handle stays unknown.
  do {
    last_handle_ = last_handle_ >= std::numeric_limits<LONG>::max() - 4 ? 4 : last_handle_ + 4;
  } while (handles_.contains(last_handle_));
  handles_[last_handle_] = {place.root, key, place.file->generation(), false};
  *opened = MakeRootKey(last_handle_);
  return kSuccess;
}

LONG Registry::CreateKey(HKEY key, TextView path, HKEY* opened, DWORD* disposition) {
  const std::lock_guard guard(mutex_);
  Place place;
  LONG result = Resolve(key, &place);
  if (result != kSuccess) return result;
  result = CheckPath(path, place.is_root && place.root == kClassesIndex);
  if (result != kSuccess) return result;
  std::shared_ptr<Key> found = place.file->tree().Find(place.key, path);
  DWORD kind = kOpenedExisting;
  if (found == nullptr) {
    // Looked at again under the lock: another process may have been faster.
    result = Write(key, [&](const Place& locked) {
      place = locked;
      found = place.file->tree().Find(place.key, path);
      if (found != nullptr) return kSuccess;
      if (MissingLevels(place.key.get(), path) > kMostNewLevels) return kBadParameter;
      Record record{Verb::kKey, PathBelow(*place.key, path), {}, 0, {}};
      if (Components(record.key).Count() > kMostLevels) return kBadParameter;
      Text folded = place.key->folded_path;
      for (const TextView component : Components(path)) {
        if (!folded.empty()) folded.push_back(u'\\');
        folded.append(FoldName(component));
      }
      const LONG appended = place.file->Append(std::move(record), KeyAddress(folded));
      if (appended != kSuccess) return appended;
      kind = kCreatedNew;
      found = place.file->tree().Find(place.key, path);
      return kSuccess;
    });
    if (result != kSuccess) return result;
  }
  if (disposition != nullptr) *disposition = kind;
  return NewHandle(place, found, opened);
}

LONG Registry::OpenKey(HKEY key, TextView path, HKEY* opened) {
  const std::lock_guard guard(mutex_);
  Place place;
  LONG result = Resolve(key, &place);
  if (result != kSuccess) return result;
  if (path.empty() && place.is_root) {
    *opened = MakeRootKey(kRootValues[place.root]);
    return kSuccess;
  }
  result = CheckPath(path, place.is_root && place.root == kClassesIndex);
  if (result != kSuccess) return result;
  const KeyTree& tree = place.file->tree();
  const std::shared_ptr<Key> found = tree.Find(place.key, path);
  if (found == nullptr) return tree.IsKeyLost(*place.key, path) ? kDamaged : kNotFound;
  return NewHandle(place, found, opened);
}

LONG Registry::CloseKey(HKEY key) {
  const std::lock_guard guard(mutex_);
  std::size_t root = 0;
  Handle* handle = nullptr;
  const LONG result = FindRoot(key, &root, &handle);
  if (result == kSuccess && handle != nullptr) {
    handles_.erase(static_cast<LONG>(reinterpret_cast<std::intptr_t>(key)));
  }
  return result;
}

LONG Registry::DeleteKey(HKEY key, TextView path) {
  const std::lock_guard guard(mutex_);
  return Write(key, [&](const Place& place) {
    const LONG result = CheckPath(path, place.is_root && place.root == kClassesIndex);
    if (result != kSuccess) return result;
    const KeyTree& tree = place.file->tree();
    const std::shared_ptr<Key> found = tree.Find(place.key, path);
    if (found == nullptr) return tree.IsKeyLost(*place.key, path) ? kDamaged : kNotFound;
    if (found == tree.root() || !found->keys.empty()) return kAccessDenied;
    return place.file->Append({Verb::kDrop, found->path, {}, 0, {}}, found->address);
  });
}

LONG Registry::SetValue(HKEY key, TextView name, DWORD type, std::string_view data) {
  const std::lock_guard guard(mutex_);
  if (name.size() > kMostNameUnits) return kBadParameter;
  return Write(key, [&](const Place& place) {
    const Text folded = FoldName(name);
    const Value* known = place.key->values.Find(folded);
    if (known != nullptr && !known->IsDamaged() && known->type == type && known->data == data &&
        !place.file->tree().IsValueLost(*place.key, folded)) {
      return kSuccess;
    }
    return place.file->Append(
        {Verb::kSet, place.key->path, known == nullptr ? Text(name) : known->name, type, std::string(data)},
        ValueAddress(place.key->address, folded));
  });
}

LONG Registry::QueryValue(HKEY key, TextView name, FoundValue* value) {
  const std::lock_guard guard(mutex_);
  Place place;
  const LONG result = Resolve(key, &place);
  if (result != kSuccess) return result;
  const Text folded = FoldName(name);
  if (place.file->tree().IsValueLost(*place.key, folded)) return kDamaged;
  const Value* found = place.key->values.Find(folded);
  if (found == nullptr) return kNotFound;
  if (found->IsDamaged()) return kDamaged;
  value->type = found->type;
  value->data = found->data;
  return kSuccess;
}

LONG Registry::DeleteValue(HKEY key, TextView name) {
  const std::lock_guard guard(mutex_);
  return Write(key, [&](const Place& place) {
    const Text folded = FoldName(name);
    const Value* found = place.key->values.Find(folded);
    if (found == nullptr && !place.file->tree().IsValueLost(*place.key, folded)) return kNotFound;
    return place.file->Append({Verb::kUnset, place.key->path, found == nullptr ? Text(name) : found->name, 0, {}},
                              ValueAddress(place.key->address, folded));
  });
}

LONG Registry::EnumerateKey(HKEY key, DWORD index, Text* name) {
  const std::lock_guard guard(mutex_);
  Place place;
  const LONG result = Resolve(key, &place);
  if (result != kSuccess) return result;
  const std::shared_ptr<Key>* found = place.key->keys.AtIndex(index);
  if (found == nullptr) return kNoMoreItems;
  *name = (*found)->name;
  return kSuccess;
}

LONG Registry::EnumerateValue(HKEY key, DWORD index, FoundValue* value) {
  const std::lock_guard guard(mutex_);
  Place place;
  const LONG result = Resolve(key, &place);
  if (result != kSuccess) return result;
  const Value* found = place.key->values.AtIndex(index);
  if (found == nullptr) return kNoMoreItems;
  value->name = found->name;
  value->type = found->type;
  value->damaged = found->IsDamaged() || place.file->tree().IsValueLost(*place.key, FoldName(found->name));
  if (!value->damaged) value->data = found->data;
  return kSuccess;
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
