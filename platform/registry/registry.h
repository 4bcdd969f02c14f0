// The registry of this process: open handles, and the operations on keys and
// values with names in UTF-16. Results are the platform's codes. Safe from any
// thread; what other processes changed is seen at the next call.
#ifndef ORVIX_PLATFORM_REGISTRY_REGISTRY_H
#define ORVIX_PLATFORM_REGISTRY_REGISTRY_H

#include <array>
#include <memory>
#include <mutex>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>

#include "orvix/runtime.h"
#include "orvix/text.h"
#include "platform/registry/root_file.h"

namespace Orvix::registry {

inline constexpr DWORD kCreatedNew = 1;
inline constexpr DWORD kOpenedExisting = 2;

struct FoundValue {
  Text name;
  DWORD type = 0;
  std::string data;
  bool damaged = false;  // only from EnumerateValue; QueryValue gives 1009
};

class Registry {
 public:
  static Registry& Instance();

  // 161 for a leading backslash, save below the classes root; 87 for a component
  // over 255 units, over 512 levels, or over 32 new ones at a time.
  [[nodiscard]] LONG CreateKey(HKEY key, TextView path, HKEY* opened, DWORD* disposition);
  // 2 when the key is missing. The empty path gives a root itself, or a further
  // handle to another key.
  [[nodiscard]] LONG OpenKey(HKEY key, TextView path, HKEY* opened);
  // 6 for a handle that is not open; a root stays open.
  [[nodiscard]] LONG CloseKey(HKEY key);
  // 5 for a root and for a key with keys below it. The empty path is the key itself.
  [[nodiscard]] LONG DeleteKey(HKEY key, TextView path);
  [[nodiscard]] LONG SetValue(HKEY key, TextView name, DWORD type, std::string_view data);
  // 2 when the value is missing, 1009 when the file no longer holds it.
  [[nodiscard]] LONG QueryValue(HKEY key, TextView name, FoundValue* value);
  [[nodiscard]] LONG DeleteValue(HKEY key, TextView name);
  // In the order of the folded names, from 0; 259 past the end.
  [[nodiscard]] LONG EnumerateKey(HKEY key, DWORD index, Text* name);
  [[nodiscard]] LONG EnumerateValue(HKEY key, DWORD index, FoundValue* value);

 private:
  static constexpr std::size_t kRoots = 4;

  struct Store {
    explicit Store(const std::string& directory);
    StoreLock lock;
    std::array<RootFile, kRoots> roots;
  };
  struct Handle {
    std::size_t root = 0;
    std::shared_ptr<Key> key;
    std::uint64_t generation = 0;  // of the tree that `key` is from
    bool deleted = false;          // `key` was not there when the file was read anew
  };
  struct Place {
    RootFile* file = nullptr;
    std::shared_ptr<Key> key;
    std::size_t root = 0;
    bool is_root = false;
  };

  Registry();
  Store& CurrentStore();
  // Which root a handle is in; no number when the handle is not open.
  [[nodiscard]] LONG FindRoot(HKEY key, std::size_t* root, Handle** handle);
  // The key behind a handle. The root's file is up to date already.
  [[nodiscard]] LONG Locate(HKEY key, Place* place);
  [[nodiscard]] LONG Resolve(HKEY key, Place* place);
  // Runs `change` on the key behind the handle with the store locked.
  template <class Change>
  [[nodiscard]] LONG Write(HKEY key, Change change);
  [[nodiscard]] LONG NewHandle(const Place& place, const std::shared_ptr<Key>& key, HKEY* opened);

  std::mutex mutex_;
  std::unique_ptr<Store> store_;
  std::unordered_map<LONG, Handle> handles_;
  LONG last_handle_ = 0;
};

// Gives type, length and data to a caller's variables, any of which may be null.
// 234 when the buffer of `*bytes` is too small: `*bytes` becomes the length needed
// and the buffer stays as it is.
[[nodiscard]] LONG GiveValue(const FoundValue& value, DWORD* type, BYTE* data, DWORD* bytes) noexcept;

// What a C function does, with the result code for running out of memory in
// place of the exception.
template <class Body>
LONG Guarded(Body body) noexcept {
  try {
    return body();
  } catch (const std::bad_alloc&) {
    return kOutOfMemory;
  } catch (const std::length_error&) {
    return kOutOfMemory;
  }
}

}  // namespace Orvix::registry

#endif
