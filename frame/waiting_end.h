// Ends of objects that hold objects that hold objects: a chain of any length
// ends on a bounded piece of the stack, because an end that is reached too deep
// inside others waits until those are done.
#ifndef ORVIX_FRAME_WAITING_END_H
#define ORVIX_FRAME_WAITING_END_H

namespace Orvix {

// What lies in an object that may have to wait: no memory is needed then.
struct WaitingEnd {
  WaitingEnd* next = nullptr;
  void (*end)(WaitingEnd*) noexcept = nullptr;
};

namespace waiting_end_detail {
struct Waiting {
  int depth;
  WaitingEnd* first;
  WaitingEnd* last;
};
// Nothing is allocated for it, whichever library is loaded late.
[[gnu::tls_model("initial-exec")]] inline thread_local Waiting waiting{};
}  // namespace waiting_end_detail

// Calls `end` with the entry, now or before the outermost end of this thread
// returns.
inline void EndInTurn(WaitingEnd* entry, void (*end)(WaitingEnd*) noexcept) noexcept {
  constexpr int kDeepest = 32;
  auto& waiting = waiting_end_detail::waiting;
  if (waiting.depth == kDeepest) {
    *entry = {nullptr, end};
    (waiting.first == nullptr ? waiting.first : waiting.last->next) = entry;
    waiting.last = entry;
    return;
  }
  ++waiting.depth;
  end(entry);
  while (waiting.depth == 1 && waiting.first != nullptr) {
    WaitingEnd* const next = waiting.first;
    waiting.first = next->next;
    next->end(next);
  }
  --waiting.depth;
}

}  // namespace Orvix

#endif
