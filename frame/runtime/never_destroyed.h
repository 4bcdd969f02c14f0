// An object of the process that is made on first use and never ended: exits,
// destructors of an application's own statics and threads that still run may
// come back to it at any time. What it holds open, the system closes.
#ifndef ORVIX_FRAME_RUNTIME_NEVER_DESTROYED_H
#define ORVIX_FRAME_RUNTIME_NEVER_DESTROYED_H

#include <cstddef>
#include <new>
#include <utility>

namespace Orvix {

// For a function's static: `static NeverDestroyed<Table> table; return *table;`
template <class T>
class NeverDestroyed {
 public:
  template <class... Arguments>
  explicit NeverDestroyed(Arguments&&... arguments) {
    ::new (static_cast<void*>(storage_)) T(std::forward<Arguments>(arguments)...);
  }
  NeverDestroyed(const NeverDestroyed&) = delete;
  NeverDestroyed& operator=(const NeverDestroyed&) = delete;
  ~NeverDestroyed() = default;

  T& operator*() { return *std::launder(reinterpret_cast<T*>(storage_)); }

 private:
  alignas(T) std::byte storage_[sizeof(T)];
};

}  // namespace Orvix

#endif
