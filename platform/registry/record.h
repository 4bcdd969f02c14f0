// One record of a root's file as one line of text. A line carries two checksums:
// one over its content, and one that names the value it is about even when the
// content cannot be read.
#ifndef ORVIX_PLATFORM_REGISTRY_RECORD_H
#define ORVIX_PLATFORM_REGISTRY_RECORD_H

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "orvix/text.h"

namespace Orvix::registry {

inline constexpr DWORD kMostKeyUnits = 255;      // one component of a key
inline constexpr DWORD kMostNameUnits = 16383;   // a value's name
inline constexpr std::size_t kMostLevels = 512;  // components of a key

enum class Verb { kKey, kDrop, kSet, kUnset };

struct Record {
  Verb verb = Verb::kKey;
  Text key;   // path from the root, components parted by one backslash
  Text name;  // of the value; empty is the default value
  DWORD type = 0;
  std::string data;  // any bytes
};

// CRC-32 (IEEE) of `bytes`, going on from `before`.
[[nodiscard]] std::uint32_t Checksum(std::string_view bytes, std::uint32_t before = 0) noexcept;

// Identifies a key, or a value of a key, whatever the case of the names.
[[nodiscard]] std::uint32_t KeyAddress(TextView folded_key) noexcept;
[[nodiscard]] std::uint32_t ValueAddress(std::uint32_t key_address, TextView folded_name) noexcept;

// The record as a line with its line end.
[[nodiscard]] std::string FormatRecord(const Record& record, std::uint32_t address);

struct ParsedLine {
  enum class Kind { kNote, kRecord, kDamaged };
  Kind kind = Kind::kNote;
  // For kRecord all of it. For kDamaged as much as `named` says.
  Record record;
  bool named = false;                    // damaged, but verb, key and name are certain
  std::optional<std::uint32_t> address;  // damaged and not named: the address field, if it is one
};

// Reads one line, given without its line end.
[[nodiscard]] ParsedLine ParseLine(std::string_view line);

// The position, above 0, where another record starts inside a line that lost its
// line end; npos when there is none. Whether that record is intact is not looked
// at.
[[nodiscard]] std::size_t FindRecordInside(std::string_view line);

// Whether `text`, the end of a file, can be the beginning of a record that a
// writer had no time to finish. What a person wrote is none.
[[nodiscard]] bool IsBegunRecord(std::string_view text);

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
  [[nodiscard]] std::size_t Count() const {
    std::size_t count = 0;
    for (Iterator at = begin(); at != nullptr; ++at) ++count;
    return count;
  }

 private:
  TextView path_;
};

}  // namespace Orvix::registry

#endif
