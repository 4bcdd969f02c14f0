// Something that most threads never need: made at its first use, ended with its
// thread. The main thread's is never destroyed: destructors of static objects may
// still use it.
#ifndef ORVIX_PLATFORM_SYSTEM_PER_THREAD_H
#define ORVIX_PLATFORM_SYSTEM_PER_THREAD_H

#include <pthread.h>

#include <new>

namespace Orvix {

template <class T>
class PerThread {
 public:
  // Null where it was not made yet.
  [[nodiscard]] static T* Find() noexcept { return own_; }
  // Null without memory.
  [[nodiscard]] static T* Make() noexcept {
    if (own_ != nullptr) return own_;
    static const pthread_key_t key = [] {
      pthread_key_t made = 0;
      pthread_key_create(&made, [](void* old) { delete static_cast<T*>(old); });
      return made;
    }();
    own_ = new (std::nothrow) T;
    if (own_ != nullptr) pthread_setspecific(key, own_);
    return own_;
  }

 private:
  static inline constinit thread_local T* own_ = nullptr;
};

}  // namespace Orvix

#endif
