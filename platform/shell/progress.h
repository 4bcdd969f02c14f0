// What the host hears of an operation under way: progress, which it may cancel,
// and questions. Without a host nobody hears, and the answer is yes.
#ifndef ORVIX_PLATFORM_SHELL_PROGRESS_H
#define ORVIX_PLATFORM_SHELL_PROGRESS_H

#include <cstdint>
#include <string>

#include "orvix/host.h"
#include "platform/shell/request.h"

namespace Orvix::Shell {

// What the system log says of a deletion that would have emptied something else.
inline constexpr TextView kMountedHere = u"Left alone, since something is mounted here";

class Progress {
 public:
  Progress(const OxHost& host, const Request& request);

  // False when nobody listens: then totals need not be counted.
  [[nodiscard]] bool IsWatched() const { return watched_; }
  void Expect(std::int64_t items, std::int64_t bytes) {
    items_total_ += items;
    bytes_total_ += bytes;
  }
  // One item is finished, or `bytes` more of the one at `path`. Throws 0x75 when
  // the host cancels.
  void ItemDone(const std::string& path) {
    ++items_done_;
    if (watched_) Report(path);
  }
  void BytesDone(const std::string& path, std::int64_t bytes) {
    bytes_done_ += bytes;
    if (watched_) Report(path);
  }
  // The start of the operation, reported before anything is touched.
  void Start(const std::string& path) {
    if (watched_) Report(path);
  }
  // The item that ends the operation, where its name says more than the result
  // code; `why` is for the system log.
  void Stopped(const std::string& path, TextView why);

  // Whether to go on with what `kind` (kOxAsk...) means for the native `path`. A
  // no leaves that part undone. Throws 0x75 when the host cancels.
  [[nodiscard]] bool Asks(LONG kind) const;
  bool Allows(LONG kind, const std::string& path);

  // Whether the host cancelled, or said no to any part.
  [[nodiscard]] bool Aborted() const { return aborted_; }

 private:
  void Report(const std::string& path);
  [[nodiscard]] LONG Tell(const std::string& path);
  [[noreturn]] void Cancel();

  OxHost host_;
  std::uint16_t flags_;
  Text title_;
  bool watched_;
  bool aborted_ = false;
  bool yes_to_all_[4] = {};  // by kind
  std::int64_t items_done_ = 0;
  std::int64_t items_total_ = 0;
  std::int64_t bytes_done_ = 0;
  std::int64_t bytes_total_ = 0;
  int first_reports_ = 4;
  std::int64_t next_report_ms_ = 0;
};

}  // namespace Orvix::Shell

#endif
