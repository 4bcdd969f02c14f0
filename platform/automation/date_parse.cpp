// Dates from text: the reader takes the text apart into at most three date
// numbers, a month name and a time; the choice of what is day, month and year
// comes after.
#include <ctime>

#include "platform/automation/date_text.h"
#include "platform/automation/text_scan.h"

namespace Orvix {
namespace {

constexpr TextView kMonths[] = {u"january", u"february", u"march",     u"april",   u"may",      u"june",
                                u"july",    u"august",   u"september", u"october", u"november", u"december"};
constexpr std::size_t kShortName = 3;

// 1 to 12, or 0.
int MonthOf(TextView word) {
  for (int month = 1; month <= 12; ++month) {
    const TextView name = kMonths[month - 1];
    if (EqualsIgnoringCase(word, name) || EqualsIgnoringCase(word, name.substr(0, kShortName))) return month;
  }
  return 0;
}

// A date built from its parts; two-digit years lie in 1930 to 2029.
bool MakeDay(int year, int month, int day, double* date) {
  constexpr int kCentury = 100;
  constexpr int kFirstOfLastCentury = 30;
  if (year < kCentury) year += year < kFirstOfLastCentury ? 2000 : 1900;
  return SUCCEEDED(EncodeDay(year, month, day, date));
}

int CurrentYear() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  return localtime_r(&now, &parts) == nullptr ? 1970 : parts.tm_year + 1900;
}

class DateReader {
 public:
  explicit DateReader(TextView text) : text_(text) {
    while (!text_.empty() && IsSpace(text_.back())) text_.remove_suffix(1);
  }

  bool Read(double* date) {
    SkipSpaces();
    while (at_ < text_.size()) {
      if (!ReadItem()) return false;
    }
    if (open_separator_ || (comma_ && month_ == 0)) return false;
    const bool has_date = numbers_ > 0 || month_ != 0;
    if (!has_date && !has_time_) return false;
    double day = 0;
    if (has_date && !ChooseDay(&day)) return false;
    *date = WithTime(day, seconds_);
    return true;
  }

 private:
  char16_t Peek() const { return at_ < text_.size() ? text_[at_] : u'\0'; }
  void SkipSpaces() {
    while (at_ < text_.size() && IsSpace(text_[at_])) ++at_;
  }
  TextView TakeWord() {
    const std::size_t start = at_;
    while (IsLetter(Peek())) ++at_;
    return text_.substr(start, at_ - start);
  }

  bool TakeNumber(int* number) {
    constexpr std::size_t kMostDigits = 4;
    const std::size_t start = at_;
    *number = 0;
    for (; IsDigit(Peek()); ++at_) {
      if (at_ - start == kMostDigits) return false;
      *number = *number * 10 + (Peek() - u'0');
    }
    return at_ > start;
  }

  // One number, month name or time, with what separates it from the next.
  bool ReadItem() {
    if (IsLetter(Peek())) {
      const int month = MonthOf(TakeWord());
      if (month == 0 || month_ != 0 || !ContinueDate()) return false;
      month_ = month;
      return ReadSeparator();
    }
    int number = 0;
    if (!TakeNumber(&number)) return false;
    if (Peek() == u':' || Peek() == u'.') return ReadTime(number);
    if (TakeHalf()) return SetTime(number, 0, 0);
    if (numbers_ == 3 || !ContinueDate()) return false;
    values_[numbers_++] = number;
    return ReadSeparator();
  }

  // The parts of a date stand together; a time stands before or after them.
  bool ContinueDate() {
    if (date_ended_) return false;
    open_separator_ = false;
    return true;
  }

  // Space, or one of "/", "-" and "," with spaces around it.
  bool ReadSeparator() {
    const std::size_t start = at_;
    SkipSpaces();
    const char16_t unit = Peek();
    if (unit == u'/' || unit == u'-' || unit == u',') {
      ++at_;
      SkipSpaces();
      open_separator_ = true;
      comma_ = comma_ || unit == u',';
    }
    return at_ > start || at_ == text_.size();
  }

  bool ReadTime(int hour) {
    int parts[2] = {0, 0};
    int count = 0;
    while (Peek() == u':' || Peek() == u'.') {
      ++at_;
      if (count == 2 || !TakeNumber(&parts[count++])) return false;
    }
    TakeHalf();
    return SetTime(hour, parts[0], parts[1]);
  }

  // "am", "pm", "a" or "p", after spaces or not; nothing is taken otherwise.
  bool TakeHalf() {
    const std::size_t start = at_;
    SkipSpaces();
    const TextView word = TakeWord();
    half_ = EqualsIgnoringCase(word, u"am") || EqualsIgnoringCase(word, u"a")   ? Half::kMorning
            : EqualsIgnoringCase(word, u"pm") || EqualsIgnoringCase(word, u"p") ? Half::kAfternoon
                                                                                : Half::kNone;
    if (half_ == Half::kNone) at_ = start;
    return half_ != Half::kNone;
  }

  bool SetTime(int hour, int minute, int second) {
    if (has_time_ || open_separator_ || hour > 23 || minute > 59 || second > 59) return false;
    has_time_ = true;
    date_ended_ = numbers_ > 0 || month_ != 0;
    if (half_ == Half::kMorning && hour == 12) hour = 0;
    if (half_ == Half::kAfternoon && hour < 12) hour += 12;
    seconds_ = hour * 3600 + minute * 60 + second;
    const std::size_t start = at_;
    SkipSpaces();
    return at_ > start || at_ == text_.size();
  }

  bool ChooseDay(double* date) const {
    const int a = values_[0];
    const int b = values_[1];
    const int c = values_[2];
    if (month_ != 0) {
      if (numbers_ == 1) return MakeDay(CurrentYear(), month_, a, date) || MakeDay(a, month_, 1, date);
      if (numbers_ == 2) return MakeDay(b, month_, a, date) || MakeDay(a, month_, b, date);
      return false;
    }
    if (numbers_ == 3) return MakeDay(c, a, b, date) || MakeDay(a, b, c, date) || MakeDay(c, b, a, date);
    if (numbers_ != 2) return false;
    const int year = CurrentYear();
    return MakeDay(year, a, b, date) || MakeDay(year, b, a, date) || MakeDay(b, a, 1, date) || MakeDay(a, b, 1, date);
  }

  enum class Half { kNone, kMorning, kAfternoon };

  TextView text_;
  std::size_t at_ = 0;
  int values_[3] = {0, 0, 0};
  int numbers_ = 0;
  int month_ = 0;
  bool open_separator_ = false;
  bool comma_ = false;
  bool date_ended_ = false;
  bool has_time_ = false;
  Half half_ = Half::kNone;
  int seconds_ = 0;
};

}  // namespace

HRESULT ParseDate(TextView text, double* date) noexcept {
  return DateReader(text).Read(date) ? S_OK : DISP_E_TYPEMISMATCH;
}

}  // namespace Orvix
