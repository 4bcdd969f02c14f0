// Times of files as DATE values: local time, whole seconds.
#ifndef ORVIX_PLATFORM_FILESYSTEM_LOCAL_TIME_H
#define ORVIX_PLATFORM_FILESYSTEM_LOCAL_TIME_H

#include <array>
#include <cstdint>

#include "orvix/automation.h"

namespace Orvix {

// The DATE (days since 1899-12-30 plus seconds of the day / 86400) of a count of
// seconds since 1970, with the zone rules in force at that moment.
[[nodiscard]] DATE LocalDateOf(std::int64_t seconds);

// The same for many times: remembers the distance to UTC of the quarters of an
// hour it has met. To be used for one listing, since the zone can be changed.
class LocalDates {
 public:
  LocalDates();
  [[nodiscard]] DATE DateOf(std::int64_t seconds);

 private:
  struct Quarter {
    std::int64_t index;   // of the quarter since 1970
    std::int64_t offset;  // seconds to add, once `known` to be the same for all of it
    bool known;
  };
  std::array<Quarter, 256> quarters_;
};

}  // namespace Orvix

#endif
