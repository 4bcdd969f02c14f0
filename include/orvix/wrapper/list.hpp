// Separated lists read and made in one pass. GetElement looks for each element
// from the start of the list, and AddElement copies the whole of it, so loops of
// either take time with the square of the length.
#ifndef ORVIX_WRAPPER_LIST_HPP
#define ORVIX_WRAPPER_LIST_HPP

#include <cstddef>
#include <ranges>
#include <string>
#include <type_traits>
#include <utility>

#include "orvix/wrapper/text.hpp"

namespace Orvix {

// The elements of a list, exactly those that GetElement gives for 1 to LengthList:
// `for (TextView element : Elements(list, ","))`. An empty list has none, and so
// has a list with an empty separator. A text that outlives the view is borrowed,
// a temporary kept.
class Elements {
 public:
  template <AnyText List, AnyText Separator>
  Elements(List&& list, const Separator& separator) : separator_(AsText(separator)) {
    if constexpr (Utf16Text<List> &&
                  (std::is_lvalue_reference_v<List> || std::is_same_v<std::remove_cvref_t<List>, TextView>)) {
      list_ = list;
    } else {
      kept_ = AsText(list);
      list_ = kept_;
    }
  }
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  struct End {};
  class Iterator {
   public:
    using value_type = TextView;
    using difference_type = std::ptrdiff_t;

    Iterator() = default;
    explicit Iterator(const Elements& elements) : elements_(&elements) {
      // The first separator is looked for from its own width on, so a wide one
      // right at the start is not seen.
      if (!elements.list_.empty() && !elements.separator_.empty()) Take(0, elements.separator_.size() - 1);
    }
    TextView operator*() const { return elements_->list_.substr(start_, end_ - start_); }
    Iterator& operator++() {
      const std::size_t next = end_ + elements_->separator_.size();
      if (is_last_) {
        there_ = false;
      } else {
        Take(next, next);
      }
      return *this;
    }
    Iterator operator++(int) {
      const Iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const Iterator& at, End) { return !at.there_; }
    friend bool operator==(const Iterator& left, const Iterator& right) {
      return left.there_ == right.there_ && (!left.there_ || left.start_ == right.start_);
    }

   private:
    void Take(std::size_t start, std::size_t from) {
      const TextView list = elements_->list_;
      start_ = start;
      end_ = from < list.size() ? list.find(elements_->separator_, from) : TextView::npos;
      is_last_ = end_ == TextView::npos;
      if (is_last_) end_ = list.size();
      there_ = true;
    }

    const Elements* elements_ = nullptr;
    std::size_t start_ = 0;
    std::size_t end_ = 0;
    bool is_last_ = false;
    bool there_ = false;
  };

  [[nodiscard]] Iterator begin() const { return Iterator(*this); }
  [[nodiscard]] End end() const { return {}; }

 private:
  template <AnyText T>
  static Text AsText(const T& text) {
    if constexpr (Utf16Text<T>) {
      return Text(TextView(text));
    } else {
      return FromUtf8(text);
    }
  }

  Text separator_;
  Text kept_;
  TextView list_;
};

// The list that AddElement makes of the texts in turn. As there, an element that
// comes to a list that is still empty gets no separator.
template <std::ranges::input_range Range, AnyText Separator>
requires AnyText<std::ranges::range_value_t<Range>>
[[nodiscard]] String Join(Range&& texts, const Separator& separator) {
  const String parted(separator);
  Text list;
  for (const auto& text : texts) {
    if (!list.empty()) list += parted.View();
    if constexpr (Utf16Text<std::remove_cvref_t<decltype(text)>>) {
      list += TextView(text);
    } else {
      list += FromUtf8(text);
    }
  }
  return list;
}

}  // namespace Orvix

#endif
