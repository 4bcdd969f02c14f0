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

// The ends of one thread.
class EndsInTurn {
 public:
  // Calls `end` with the entry, now or before the outermost end returns.
  void Run(WaitingEnd* entry, void (*end)(WaitingEnd*) noexcept) noexcept {
    if (depth_ == kDeepest) {
      *entry = {nullptr, end};
      (first_ == nullptr ? first_ : last_->next) = entry;
      last_ = entry;
      return;
    }
    ++depth_;
    end(entry);
    while (depth_ == 1 && first_ != nullptr) {
      WaitingEnd* const next = first_;
      first_ = next->next;
      next->end(next);
    }
    --depth_;
  }

 private:
  static constexpr int kDeepest = 32;
  int depth_ = 0;
  WaitingEnd* first_ = nullptr;
  WaitingEnd* last_ = nullptr;
};

}  // namespace Orvix

#endif
