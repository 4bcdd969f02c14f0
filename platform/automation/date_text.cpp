// Dates as parts and as text in invariant English.
#include "platform/automation/date_text.h"

#include <chrono>
#include <cmath>
#include <cstdio>

namespace Orvix {
namespace {

constexpr int kFirstDay = -657434;  // 1/1/100
constexpr int kLastDay = 2958465;   // 12/31/9999
constexpr int kSecondsPerDay = 86400;
constexpr int kFirstYear = 100;
constexpr int kLastYear = 9999;
// Less than a fraction of a date holds; what is below counts as no time.
constexpr double kNoTime = 1e-12;
constexpr std::chrono::sys_days kDayZero = std::chrono::year(1899) / 12 / 30;

}  // namespace

bool IsDateInRange(double date) noexcept { return date > kFirstDay - 1.0 && date < kLastDay + 1.0; }

HRESULT DecodeDate(double date, DateParts* parts) noexcept {
  if (!IsDateInRange(date)) return E_INVALIDARG;
  const double whole = std::trunc(date);
  auto day = static_cast<int>(whole);
  auto seconds = static_cast<int>(std::floor(std::fabs(date - whole) * kSecondsPerDay + 0.5));
  if (seconds == kSecondsPerDay) {
    if (day == kLastDay) {
      --seconds;  // there is no next day
    } else {
      seconds = 0;
      ++day;
    }
  }
  const std::chrono::year_month_day civil(kDayZero + std::chrono::days(day));
  *parts = {int{civil.year()},
            static_cast<int>(unsigned{civil.month()}),
            static_cast<int>(unsigned{civil.day()}),
            seconds / 3600,
            seconds / 60 % 60,
            seconds % 60};
  return S_OK;
}

HRESULT EncodeDay(int year, int month, int day, double* date) noexcept {
  if (year < kFirstYear || year > kLastYear || month < 1 || month > 12 || day < 1 || day > 31) return E_INVALIDARG;
  const std::chrono::year_month_day civil(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                                          std::chrono::day(static_cast<unsigned>(day)));
  if (!civil.ok()) return E_INVALIDARG;
  *date = static_cast<double>((std::chrono::sys_days(civil) - kDayZero).count());
  return S_OK;
}

double WithTime(double day, int seconds) noexcept {
  const double time = seconds / double{kSecondsPerDay};
  return day < 0 ? day - time : day + time;
}

HRESULT DateText(double date, std::string* text) {
  DateParts parts{};
  const HRESULT result = DecodeDate(date, &parts);
  if (FAILED(result)) return result;
  const double whole = std::trunc(date);
  char buffer[64];
  int length = 0;
  if (whole != 0) length = std::snprintf(buffer, sizeof buffer, "%d/%d/%d", parts.month, parts.day, parts.year);
  if (whole == 0 || std::fabs(date - whole) >= kNoTime) {
    const int hour = parts.hour % 12 == 0 ? 12 : parts.hour % 12;
    length += std::snprintf(buffer + length, sizeof buffer - static_cast<std::size_t>(length), "%s%d:%02d:%02d %s",
                            length > 0 ? " " : "", hour, parts.minute, parts.second, parts.hour < 12 ? "AM" : "PM");
  }
  text->assign(buffer, static_cast<std::size_t>(length));
  return S_OK;
}

}  // namespace Orvix
