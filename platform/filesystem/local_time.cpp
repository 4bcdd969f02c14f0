// Local time through the system's zone rules, asked as rarely as possible.
#include "platform/filesystem/local_time.h"

#include <ctime>
#include <limits>

namespace Orvix {

namespace {

constexpr std::int64_t kDay = 86400;
constexpr std::int64_t kQuarter = 900;
constexpr std::int64_t kDaysTo1970 = 25569;

std::int64_t FloorOf(std::int64_t value, std::int64_t unit) { return value / unit - (value % unit < 0 ? 1 : 0); }

// Seconds to add to UTC; 0 for a time beyond the calendar.
std::int64_t OffsetAt(std::int64_t seconds) {
  const std::time_t when = seconds;
  std::tm parts{};
  return localtime_r(&when, &parts) == nullptr ? 0 : parts.tm_gmtoff;
}

DATE DateOfLocal(std::int64_t seconds) {
  const std::int64_t whole = FloorOf(seconds, kDay);
  const double fraction = static_cast<double>(seconds - whole * kDay) / 86400.0;
  const std::int64_t days = whole + kDaysTo1970;
  // Before the first day the time of day still counts away from midnight.
  return days < 0 ? static_cast<double>(days) - fraction : static_cast<double>(days) + fraction;
}

}  // namespace

DATE LocalDateOf(std::int64_t seconds) {
  tzset();
  return DateOfLocal(seconds + OffsetAt(seconds));
}

LocalDates::LocalDates() {
  tzset();
  quarters_.fill({std::numeric_limits<std::int64_t>::min(), 0, false});
}

DATE LocalDates::DateOf(std::int64_t seconds) {
  const std::int64_t index = FloorOf(seconds, kQuarter);
  Quarter& quarter = quarters_[static_cast<std::uint64_t>(index) % quarters_.size()];
  if (quarter.index != index) {
    // A quarter that is met only once is not worth asking about both its ends.
    quarter = {index, 0, false};
    return DateOfLocal(seconds + OffsetAt(seconds));
  }
  if (!quarter.known) {
    quarter.offset = OffsetAt(index * kQuarter);
    quarter.known = quarter.offset == OffsetAt(index * kQuarter + kQuarter - 1);
    // Old rules change within a quarter.
    if (!quarter.known) return DateOfLocal(seconds + OffsetAt(seconds));
  }
  return DateOfLocal(seconds + quarter.offset);
}

}  // namespace Orvix
