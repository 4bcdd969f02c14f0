// Lists as a table: one list a row, its elements being the cells.
#ifndef ORVIX_EXAMPLES_SHARED_TABLE_H
#define ORVIX_EXAMPLES_SHARED_TABLE_H

#include <algorithm>
#include <string>
#include <vector>

#include "orvix/orvix.hpp"

namespace examples {

// Characters that would move the cursor or break the line are shown as "?".
inline std::string Printable(Orvix::TextView cell) {
  Orvix::Text text(cell);
  for (char16_t& unit : text) {
    if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0)) unit = u'?';
  }
  return Orvix::ToUtf8(text);
}

// In characters, which line up on a terminal.
inline std::size_t WidthOf(const std::string& utf8) {
  return static_cast<std::size_t>(
      std::ranges::count_if(utf8, [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// One line a row below the heading, in columns as wide as their widest cell.
// The column `to_the_right`, counted from 0, holds numbers.
inline std::vector<std::string> TableLines(const std::vector<Orvix::String>& rows, Orvix::TextView separator,
                                           const std::vector<std::string>& heading, std::size_t to_the_right) {
  const auto& orvix = Orvix::Global();
  std::vector<std::vector<std::string>> cells{heading};
  for (const Orvix::String& row : rows) {
    std::vector<std::string> line(heading.size());
    const LONG elements = std::min(orvix.LengthList(row, separator), static_cast<LONG>(heading.size()));
    for (LONG i = 1; i <= elements; ++i) {
      line[static_cast<std::size_t>(i - 1)] = Printable(orvix.GetElement(row, i, separator));
    }
    cells.push_back(std::move(line));
  }
  std::vector<std::size_t> widths(heading.size());
  for (const auto& line : cells) {
    for (std::size_t i = 0; i < widths.size(); ++i) widths[i] = std::max(widths[i], WidthOf(line[i]));
  }
  std::vector<std::string> lines;
  for (const auto& line : cells) {
    std::string laid_out;
    for (std::size_t i = 0; i < widths.size(); ++i) {
      const bool last = i + 1 == widths.size();
      const std::string padding(widths[i] - WidthOf(line[i]), ' ');
      laid_out += i == to_the_right ? padding + line[i] : line[i] + (last ? std::string() : padding);
      laid_out += last ? "\n" : "  ";
    }
    lines.push_back(std::move(laid_out));
  }
  return lines;
}

}  // namespace examples

#endif
