// Dates: the platform's number of days, to and from calendar time.
#ifndef ORVIX_WRAPPER_DATE_HPP
#define ORVIX_WRAPPER_DATE_HPP

#include <chrono>
#include <cmath>
#include <cstdio>
#include <string>

#include "orvix/automation.h"

namespace Orvix {

// Days since 1899-12-30, the fraction being the time of day. Before that day
// the whole part counts down while the time still counts up: -5.25 is
// 1899-12-25 06:00.
struct Date {
  DATE days = 0;

  Date() = default;
  explicit Date(DATE value) : days(value) {}
  // Local time, whole seconds.
  explicit Date(std::chrono::local_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const double whole = static_cast<double>((day - Epoch()).count());
    const double part = static_cast<double>((time - day).count()) / kSecondsPerDay;
    days = whole < 0 ? whole - part : whole + part;
  }

  // To the nearest second.
  [[nodiscard]] std::chrono::local_seconds Local() const {
    const double whole = std::trunc(days);
    const double part = std::fabs(days - whole);
    return Epoch() + std::chrono::days(static_cast<int>(whole)) +
           std::chrono::seconds(static_cast<int>(std::lround(part * kSecondsPerDay)));
  }
  // "2002-11-30 10:00:00"; the component reads this form back.
  [[nodiscard]] std::string Iso(char between = ' ') const {
    if (!(days > -657435 && days < 2958466)) return "invalid date";
    const std::chrono::local_seconds time = Local();
    const auto day = std::chrono::floor<std::chrono::days>(time);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss clock(time - day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u%c%02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), between,
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
  }

  friend auto operator<=>(const Date&, const Date&) = default;

 private:
  static constexpr double kSecondsPerDay = 86400.0;
  static std::chrono::local_days Epoch() {
    using namespace std::chrono;
    return local_days(year(1899) / December / 30);
  }
};

}  // namespace Orvix

#endif
