// Ctrl-C, and the progress that the host table reports.
#ifndef ORVIX_EXAMPLES_BACKUP_WATCHING_H
#define ORVIX_EXAMPLES_BACKUP_WATCHING_H

#include <cstdint>
#include <stdexcept>

#include "../shared/program.h"
#include "orvix/host.h"

namespace backup {

// The user has stopped the work.
struct Cancelled : std::runtime_error {
  Cancelled() : std::runtime_error("cancelled") {}
};

// From now on an interrupt (Ctrl-C) or a request to end is only noted.
void CatchInterrupts();
[[nodiscard]] bool Interrupted();

// While it lives, copying shows its progress and stops when interrupted.
class Watch {
 public:
  Watch(examples::Stages& stages, std::size_t files);
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;
  ~Watch();
  // The files that earlier requests finished.
  void Finished(std::size_t files) { finished_ = files; }

 private:
  static LONG Hear(void* context, const OLECHAR* name, int64_t items_done, int64_t items_total, int64_t bytes_done,
                   int64_t bytes_total);
  void Show(int64_t items_done, int64_t bytes_done, int64_t bytes_total);

  examples::Stages& stages_;
  std::size_t files_;
  std::size_t finished_ = 0;
};

}  // namespace backup

#endif
