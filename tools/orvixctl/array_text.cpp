// Reading arrays.
#include "array_text.h"

#include "quoted.h"

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
    if (std::string_view rest = text_.substr(at_); rest.starts_with('"')) {
      const auto text = TakeQuoted(&rest);
      at_ = text_.size() - rest.size();
      item.quoted = true;
      if (text) item.text = ToUtf8(*text);
      return text.has_value();
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

  std::string_view text_;
  std::size_t at_ = 0;
};

}  // namespace

std::optional<std::vector<ArrayItem>> ParseArray(std::string_view text) { return Reader(text).Array(); }

}  // namespace Orvix::ctl
