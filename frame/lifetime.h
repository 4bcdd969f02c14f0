// What keeps the component loaded: its live objects and the locks on its server.
#ifndef ORVIX_FRAME_LIFETIME_H
#define ORVIX_FRAME_LIFETIME_H

#include "frame/waiting_end.h"

namespace Orvix::component {

[[nodiscard]] EndsInTurn& EndsOfThisThread() noexcept;

// Counts an object while it lives.
class LiveObject {
 public:
  LiveObject() noexcept;
  ~LiveObject();
  LiveObject(const LiveObject&) = delete;
  LiveObject& operator=(const LiveObject&) = delete;
};

void LockServer(bool lock) noexcept;
[[nodiscard]] bool MayUnload() noexcept;

}  // namespace Orvix::component

#endif
