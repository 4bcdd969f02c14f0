// A host may show a dialog. Without one nobody is at the screen: the request goes
// where ORVIX_MESSAGES says, else into the system log, and is answered with IDOK.
#include "platform/windows/message_box.h"

#include <syslog.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <new>
#include <string_view>

#include "orvix/platform.h"
#include "platform/dialogs/question.h"
#include "platform/host/host_table.h"
#include "platform/system/log.h"

namespace Orvix {
namespace {

bool IsControl(char16_t unit) { return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F); }

std::string EscapeOf(char16_t unit) {
  if (unit == u'\t') return "\\t";
  if (unit == u'\n') return "\\n";
  if (unit == u'\r') return "\\r";
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string escape = unit < 0x80 || unit >= 0xDC80 ? "\\x" : "\\u00";
  escape += kDigits[unit >> 4 & 0xF];
  escape += kDigits[unit & 0xF];
  return escape;
}

void AppendLine(std::string& line, TextView text) {
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    if (unit == u'\r' && at + 1 < text.size() && text[at + 1] == u'\n') {
      line += ' ';
      ++at;
    } else if (text_detail::IsHigh(unit) && at + 1 < text.size() && text_detail::IsLow(text[at + 1])) {
      line += ToUtf8(text.substr(at++, 2));
    } else if (IsControl(unit) || (unit >= 0xDC80 && unit <= 0xDCFF)) {
      line += EscapeOf(unit);
    } else {
      line += ToUtf8(text.substr(at, 1));
    }
  }
}

// The icon of the box says how bad it is: 16 stop, 48 exclamation mark.
int SeverityOf(UINT style) {
  const UINT icon = style & 0xF0;
  return icon == MB_ICONERROR ? LOG_ERR : icon == 0x30 ? LOG_WARNING : LOG_NOTICE;
}

bool ShowDialog(TextView text, TextView title, UINT style) {
  const int severity = SeverityOf(style);
  return Tell(title, text,
              severity == LOG_ERR       ? Gravity::kError
              : severity == LOG_WARNING ? Gravity::kWarning
                                        : Gravity::kInformation);
}

void ShowUnattended(TextView text, TextView title, UINT style) {
  const char* const named = secure_getenv("ORVIX_MESSAGES");
  const std::string_view where = named == nullptr ? "" : named;
  if (where == "off") return;
  if (where == "dialog" && ShowDialog(text, title, style)) return;
  // The log puts the name in front itself.
  const std::string record = LogRecordOf(text, title == u"Orvix" ? TextView{} : title);
  const bool both = where != "log" && (isatty(STDERR_FILENO) == 1 || !IsLogThere());
  if (where != "stderr") Log(SeverityOf(style), record);
  if (where == "stderr" || both) std::fprintf(stderr, "Orvix: %s\n", record.c_str());
}

TextView ViewOfUnits(const OLECHAR* text) { return text == nullptr ? TextView{} : TextView{text}; }

}  // namespace

std::string LogRecordOf(TextView text, TextView title) {
  constexpr std::string_view kCutMark = "...";
  std::string line;
  AppendLine(line, title);
  if (!line.empty()) line += ": ";
  AppendLine(line, text);
  if (line.size() > kLongestLogRecord) {
    std::size_t end = kLongestLogRecord - kCutMark.size();
    while ((static_cast<unsigned char>(line[end]) & 0xC0) == 0x80) --end;
    line.resize(end);
    line += kCutMark;
  }
  return line;
}

}  // namespace Orvix

INT ORVIX_CALL MessageBoxW(void*, const OLECHAR* text, const OLECHAR* title, UINT style) {
  const OxHost host = Orvix::CurrentHost();
  if (host.MessageBox != nullptr) return host.MessageBox(host.context, text, static_cast<LONG>(style), title);
  try {
    Orvix::ShowUnattended(Orvix::ViewOfUnits(text), Orvix::ViewOfUnits(title), style);
  } catch (const std::bad_alloc&) {  // a report that cannot be built is dropped
  }
  return IDOK;
}
