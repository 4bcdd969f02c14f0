// Reports come at most about ten times a second; the first few at once, so that
// a short operation is seen and can be cancelled too.
#include "platform/shell/progress.h"

#include <syslog.h>

#include <chrono>

#include "frame/runtime/runtime_error.h"
#include "platform/dialogs/question.h"
#include "platform/names/path_map.h"
#include "platform/shell/results.h"
#include "platform/system/log.h"
#include "platform/windows/message_box.h"

namespace Orvix::Shell {

namespace {

constexpr std::int64_t kBetweenReports_ms = 100;

std::int64_t Now_ms() {
  using std::chrono::milliseconds;
  return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// The name a host knows the file by; a native one that no drive holds stays.
Text ShownName(const std::string& path) {
  try {
    return PlatformName(path);
  } catch (const RuntimeError&) {
    return FromUtf8(path);
  }
}

Text QuestionAbout(LONG kind, TextView name, bool loses_nothing) {
  TextView words = u"Replace the file that is there already?";
  if (kind == kOxAskMakeDirectory) words = u"This directory is not there. Make it?";
  if (kind == kOxAskDelete) words = loses_nothing ? u"Put this into the trash?" : u"Delete this for good?";
  return Text(words).append(u"\n").append(name);
}

constexpr LONG kYes = 1;  // anything unknown is a no
constexpr LONG kYesToAll = 2;
constexpr LONG kCancel = 3;

}  // namespace

Progress::Progress(const OxHost& host, const Request& request)
    : host_(host),
      flags_(request.flags),
      title_(request.title),
      watched_(host.FileProgress != nullptr && !request.Has(kSilent)) {}

void Progress::Report(const std::string& path) {
  const std::int64_t now = Now_ms();
  if (first_reports_ > 0) {
    --first_reports_;
  } else if (now < next_report_ms_) {
    return;
  }
  next_report_ms_ = now + kBetweenReports_ms;
  if (Tell(path) != 0) Cancel();
}

LONG Progress::Tell(const std::string& path) {
  const Text name = ShownName(path);
  const Text shown = (flags_ & kSimpleProgress) != 0 && !title_.empty() ? title_ + u"\n" + name : name;
  // What grew since it was counted shall not exceed the total.
  const std::int64_t items = items_done_ > items_total_ ? items_done_ : items_total_;
  const std::int64_t bytes = bytes_done_ > bytes_total_ ? bytes_done_ : bytes_total_;
  return host_.FileProgress(host_.context, shown.c_str(), items_done_, items, bytes_done_, bytes);
}

void Progress::Stopped(const std::string& path, TextView why) {
  const std::string record = LogRecordOf(Text(why) + u": " + ShownName(path), u"File operation");
  Log(LOG_WARNING, record);
  if (watched_ && Tell(path) != 0) aborted_ = true;  // it ends either way
}

bool Progress::Asks(LONG kind) const {
  if ((flags_ & kNoConfirmation) != 0) return false;
  return kind != kOxAskMakeDirectory || (flags_ & kNoConfirmMakeDir) == 0;
}

bool Progress::Allows(LONG kind, const std::string& path, bool loses_nothing) {
  latest_ = path;
  if (!Asks(kind) || yes_to_all_[kind]) return true;
  const Text shown = ShownName(path);
  LONG answer = 0;
  if (host_.FileQuestion != nullptr) {
    answer = host_.FileQuestion(host_.context, kind, shown.c_str());
  } else if (const auto asked = Ask(u"File operation", QuestionAbout(kind, shown, loses_nothing)); asked) {
    answer = static_cast<LONG>(*asked);
  } else {
    if (!loses_nothing) Log(LOG_WARNING, LogRecordOf(u"Nobody to ask, left as it is: " + shown, u"File operation"));
    answer = loses_nothing ? kYes : 0;
  }
  if (answer == kCancel) Cancel();
  if (answer == kYesToAll) yes_to_all_[kind] = true;
  const bool yes = answer == kYes || answer == kYesToAll;
  if (!yes) aborted_ = true;
  return yes;
}

void Progress::Finish() {
  items_total_ = items_done_;
  bytes_total_ = bytes_done_;
  if (watched_) static_cast<void>(Tell(latest_));  // there is nothing left to cancel
}

void Progress::Cancel() {
  aborted_ = true;
  throw ShellError{kCancelled};
}

}  // namespace Orvix::Shell
