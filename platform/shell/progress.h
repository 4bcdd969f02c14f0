// What the host hears of an operation under way: progress, which it may cancel,
// and questions. Without a host's answer a question window of the desktop asks; where
// nobody can be asked, the answer is the one that loses nothing.
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
    latest_ = path;
    if (watched_) Report(path);
  }
  void BytesDone(const std::string& path, std::int64_t bytes) {
    bytes_done_ += bytes;
    if (watched_) Report(path);
  }
  // The start of the operation, reported before anything is touched.
  void Start(const std::string& path) {
    latest_ = path;
    if (watched_) Report(path);
  }
  // The item that ends the operation, where its name says more than the result
  // code; `why` is for the system log.
  void Stopped(const std::string& path, TextView why);

  // The end of an operation that did all: the last report says so.
  void Finish();

  // Whether to go on with what `kind` (kOxAsk...) means for the native `path`;
  // `loses_nothing` is the answer where nobody can be asked. A no leaves that part
  // undone. Throws 0x75 for a cancelled question.
  bool Allows(LONG kind, const std::string& path, bool loses_nothing);

  // Whether the host cancelled, or said no to any part.
  [[nodiscard]] bool Aborted() const { return aborted_; }

  // What was done so far, and what to; the native path of the latest item.
  [[nodiscard]] std::int64_t items_done() const { return items_done_; }
  [[nodiscard]] std::int64_t bytes_done() const { return bytes_done_; }
  [[nodiscard]] const std::string& latest() const { return latest_; }

 private:
  void Report(const std::string& path);
  [[nodiscard]] bool Asks(LONG kind) const;
  [[nodiscard]] LONG Tell(const std::string& path);
  [[noreturn]] void Cancel();

  OxHost host_;
  std::uint16_t flags_;
  Text title_;
  std::string latest_;
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
