// Reading arrays.
#include "array_text.h"

#include "orvix/text.h"

namespace Orvix::ctl {

namespace {

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text) {}

  std::optional<std::vector<ArrayItem>> Array() {
    std::vector<ArrayItem> items;
    SkipBlanks();
    if (!Take('[')) return std::nullopt;
    SkipBlanks();
    if (Take(']')) return AtEnd() ? std::optional(items) : std::nullopt;
    while (true) {
      SkipBlanks();
      ArrayItem item;
      if (!Item(item)) return std::nullopt;
      items.push_back(std::move(item));
      SkipBlanks();
      if (Take(']')) return AtEnd() ? std::optional(items) : std::nullopt;
      if (!Take(',')) return std::nullopt;
    }
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && (text_[at_] == ' ' || text_[at_] == '\t' || text_[at_] == '\n')) ++at_;
  }
  bool Take(char c) {
    if (at_ >= text_.size() || text_[at_] != c) return false;
    ++at_;
    return true;
  }
  bool AtEnd() {
    SkipBlanks();
    return at_ == text_.size();
  }

  bool Item(ArrayItem& item) {
    if (Take('"')) {
      item.quoted = true;
      return QuotedText(item.text);
    }
    const std::size_t start = at_;
    if (at_ < text_.size() && text_[at_] == '[') {
      if (!SkipInner()) return false;
    } else {
      while (at_ < text_.size() && text_[at_] != ',' && text_[at_] != ']' && text_[at_] != '[') ++at_;
    }
    std::size_t end = at_;
    while (end > start && text_[end - 1] == ' ') --end;
    item.text = text_.substr(start, end - start);
    return !item.text.empty();
  }

  bool SkipInner() {
    int depth = 0;
    bool quoted = false;
    for (; at_ < text_.size(); ++at_) {
      const char c = text_[at_];
      if (quoted) {
        if (c == '\\') {
          ++at_;
        } else if (c == '"') {
          quoted = false;
        }
      } else if (c == '"') {
        quoted = true;
      } else if (c == '[') {
        ++depth;
      } else if (c == ']' && --depth == 0) {
        ++at_;
        return true;
      }
    }
    return false;
  }

  bool QuotedText(std::string& text) {
    while (at_ < text_.size()) {
      const char c = text_[at_++];
      if (c == '"') return true;
      if (c != '\\') {
        text += c;
        continue;
      }
      if (at_ == text_.size() || !Escape(text)) return false;
    }
    return false;
  }

  bool Escape(std::string& text) {
    const char c = text_[at_++];
    switch (c) {
      case 'n':
        text += '\n';
        return true;
      case 'r':
        text += '\r';
        return true;
      case 't':
        text += '\t';
        return true;
      case 'b':
        text += '\b';
        return true;
      case 'f':
        text += '\f';
        return true;
      case 'u':
        return Units(text);
      case '"':
      case '\\':
      case '/':
        text += c;
        return true;
      default:
        return false;
    }
  }

  // One code unit, or two when a surrogate pair is written as two escapes.
  bool Units(std::string& text) {
    Text units;
    if (!Unit(units)) return false;
    if (units[0] >= 0xD800 && units[0] <= 0xDBFF && text_.substr(at_).starts_with("\\u")) {
      at_ += 2;
      if (!Unit(units)) return false;
    }
    text += ToUtf8(units);
    return true;
  }
  bool Unit(Text& units) {
    if (text_.size() - at_ < 4) return false;
    unsigned value = 0;
    for (int i = 0; i < 4; ++i) {
      const char c = text_[at_++];
      unsigned digit = 0;
      if (c >= '0' && c <= '9') {
        digit = static_cast<unsigned>(c - '0');
      } else if ((c | 0x20) >= 'a' && (c | 0x20) <= 'f') {
        digit = static_cast<unsigned>((c | 0x20) - 'a') + 10;
      } else {
        return false;
      }
      value = value << 4 | digit;
    }
    units += static_cast<char16_t>(value);
    return true;
  }

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::optional<std::vector<ArrayItem>> ParseArray(std::string_view text) { return Reader(text).Array(); }

}  // namespace Orvix::ctl
