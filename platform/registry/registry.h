// The registry of this process: open handles, and the operations on keys and
// values with names in UTF-16. Results are the platform's codes. Safe from any
// thread; what other processes changed is seen at the next call.
#ifndef ORVIX_PLATFORM_REGISTRY_REGISTRY_H
#define ORVIX_PLATFORM_REGISTRY_REGISTRY_H

#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

#include "frame/runtime/never_destroyed.h"
#include "orvix/runtime.h"
#include "orvix/text.h"
#include "platform/registry/store.h"

namespace Orvix::registry {

inline constexpr DWORD kCreatedNew = 1;
inline constexpr DWORD kOpenedExisting = 2;

struct FoundValue {
  Text name;
  DWORD type = 0;
  std::string data;
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
  // 2 when the value is missing, 1009 when the store is damaged there.
  [[nodiscard]] LONG QueryValue(HKEY key, TextView name, FoundValue* value);
  [[nodiscard]] LONG DeleteValue(HKEY key, TextView name);
  // In the order of the folded names, from 0; 259 past the end.
  [[nodiscard]] LONG Enumerate(HKEY key, bool values, DWORD index, FoundValue* item);
  // What is wrong with the store, a line each.
  [[nodiscard]] Text Faults();

 private:
  friend class NeverDestroyed<Registry>;
  class Operation;

  struct Handle {
    KeyId key = 0;
    std::int64_t mark = 0;  // of the store that `key` is in
  };
  struct Place {
    KeyId key = 0;
    std::int64_t depth = 0;
  };
  // Where the last item of an enumeration stood, so that the next one is found
  // without passing over all before it.
  struct Enumeration {
    HKEY key = nullptr;
    bool values = false;
    std::int64_t mark = 0;     // of the store,
    std::int64_t version = 0;  // changed by others,
    std::int64_t changes = 0;  // and by this process
    DWORD next = 0;
    Text folded{};
  };

  // What was read since the store last changed, by key and path or name.
  struct Known {
    std::map<std::pair<KeyId, Text>, KeyId> keys;
    std::map<std::pair<KeyId, Text>, FoundValue> values;
  };

  Registry();
  void OpenToRead();
  // 6 for a handle that is not open. Ids above the roots may be of deleted keys.
  [[nodiscard]] KeyId IdOf(HKEY key) const;
  // The key behind a handle, in the open store; 1018 when it was deleted.
  [[nodiscard]] Place Locate(HKEY key);
  // The key at `path`, 0 when it is missing; 161 and 87 for a path that no key can have.
  [[nodiscard]] KeyId Find(const Place& place, TextView path);
  [[nodiscard]] KeyId Make(Place place, TextView path, DWORD* disposition);
  [[nodiscard]] HKEY NewHandle(KeyId key);

  std::mutex mutex_;
  Store store_;
  std::unordered_map<LONG, Handle> handles_;
  LONG last_handle_ = 0;
  Enumeration last_;
  Known known_;
};

}  // namespace Orvix::registry

#endif
