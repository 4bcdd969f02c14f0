// The platform's result codes that the registry gives, its limits, and paths.
#ifndef ORVIX_PLATFORM_REGISTRY_RESULTS_H
#define ORVIX_PLATFORM_REGISTRY_RESULTS_H

#include <algorithm>
#include <cstddef>

#include "orvix/text.h"

namespace Orvix::registry {

inline constexpr LONG kSuccess = 0;
inline constexpr LONG kNotFound = 2;
inline constexpr LONG kAccessDenied = 5;
inline constexpr LONG kBadHandle = 6;
inline constexpr LONG kOutOfMemory = 14;
inline constexpr LONG kBadParameter = 87;
inline constexpr LONG kDiskFull = 112;
inline constexpr LONG kBadPath = 161;
inline constexpr LONG kBusy = 170;
inline constexpr LONG kMoreData = 234;
inline constexpr LONG kNoMoreItems = 259;
inline constexpr LONG kDamaged = 1009;
inline constexpr LONG kReadWriteFailed = 1016;
inline constexpr LONG kKeyDeleted = 1018;

// Ends an operation with one of these codes.
struct Failure {
  LONG code;
};

inline constexpr std::size_t kMostKeyUnits = 255;     // one component of a key
inline constexpr std::size_t kMostNameUnits = 16383;  // a value's name
inline constexpr std::size_t kMostLevels = 512;       // components of a key
inline constexpr std::size_t kMostNewLevels = 32;     // that one call makes

// The components of a path, one after the other; doubled and trailing backslashes
// count for nothing.
class Components {
 public:
  explicit Components(TextView path) : path_(path) {}

  class Iterator {
   public:
    explicit Iterator(TextView rest) : rest_(rest) { Take(); }
    TextView operator*() const { return component_; }
    Iterator& operator++() {
      Take();
      return *this;
    }
    bool operator!=(std::nullptr_t) const { return !component_.empty(); }

   private:
    void Take() {
      rest_.remove_prefix(std::min(rest_.find_first_not_of(u'\\'), rest_.size()));
      component_ = rest_.substr(0, rest_.find(u'\\'));
      rest_.remove_prefix(component_.size());
    }
    TextView rest_;
    TextView component_;
  };
  [[nodiscard]] Iterator begin() const { return Iterator(path_); }
  [[nodiscard]] std::nullptr_t end() const { return nullptr; }

 private:
  TextView path_;
};

}  // namespace Orvix::registry

#endif
