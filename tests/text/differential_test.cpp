// Lists and replacing against plain models that take every step of the listed
// procedures one by one, on short random texts with a fixed seed.
#include <gtest/gtest.h>

#include <optional>
#include <random>

#include "tests/support/component.h"
#include "tests/support/recording_host.h"

namespace Orvix::testing {
namespace {

// What the models raise: an invalid argument.
struct Invalid {};

LONG Len(const Text& text) { return static_cast<LONG>(text.size()); }

LONG PlainFind(LONG start, const Text& text, const Text& target) {
  if (start < 1) throw Invalid{};
  if (text.empty() || start > Len(text)) return 0;
  if (target.empty()) return start;
  for (LONG p = start; p + Len(target) - 1 <= Len(text); ++p) {
    LONG same = 0;
    while (same < Len(target) && text[static_cast<std::size_t>(p - 1 + same)] == target[static_cast<std::size_t>(same)])
      ++same;
    if (same == Len(target)) return p;
  }
  return 0;
}

Text PlainMid(const Text& text, LONG start, std::optional<LONG> count = {}) {
  if (start < 1 || count.value_or(0) < 0) throw Invalid{};
  Text taken;
  for (LONG p = start; p <= Len(text) && p - start < count.value_or(Len(text)); ++p) {
    taken += text[static_cast<std::size_t>(p - 1)];
  }
  return taken;
}

Text PlainLeft(const Text& text, LONG count) {
  if (count < 0) throw Invalid{};
  return PlainMid(text, 1, count);
}

void PlainOverwrite(Text& text, LONG start, LONG count, const Text& with) {
  if (start < 1 || start > Len(text)) throw Invalid{};
  for (LONG i = 0; i < count && i < Len(with) && start + i <= Len(text); ++i) {
    text[static_cast<std::size_t>(start - 1 + i)] = with[static_cast<std::size_t>(i)];
  }
}

LONG ModelLength(const Text& list, const Text& separator) {
  if (list.empty()) return 0;
  LONG count = 0;
  LONG p = 0;
  do {
    p = PlainFind(Len(separator) + p, list, separator);
    ++count;
  } while (p != 0);
  return count;
}

Text ModelGet(const Text& list, LONG index, const Text& separator) {
  LONG p = 0;
  for (LONG i = 2; i <= index; ++i) {
    p = PlainFind(Len(separator) + p, list, separator);
    if (p == 0) break;
  }
  if (p == 0 && index > 1) return {};
  LONG e = PlainFind(Len(separator) + p, list, separator);
  if (e == 0) e = Len(list) + 1;
  const LONG s = p > 0 ? p + Len(separator) : 1;
  return PlainMid(list, s, e - s);
}

LONG ModelFindFirst(const Text& list, const Text& element, const Text& separator) {
  if (PlainFind(1, list, element) == 0) return 0;
  const LONG n = ModelLength(list, separator);
  for (LONG i = 1; i <= n; ++i) {
    if (ModelGet(list, i, separator) == element) return i;
  }
  return 0;
}

Text ModelInsert(const Text& list, const Text& element, LONG position, const Text& separator) {
  LONG p = 0;
  for (LONG i = 2; i <= position; ++i) p = PlainFind(Len(separator) + p, list, separator);
  const Text left = PlainLeft(list, p - 1);
  Text right = PlainMid(list, p);
  if (!right.empty()) right = separator + right;
  return left + element + right;
}

Text ModelDelete(const Text& list, LONG index, const Text& separator) {
  LONG p = 0;
  for (LONG i = 2; i <= index; ++i) p = PlainFind(Len(separator) + p, list, separator);
  LONG e = PlainFind(Len(separator) + p, list, separator);
  if (e == 0) e = Len(list);
  Text left = p > 0 ? PlainLeft(list, p - 1) : Text{};
  const Text right = PlainMid(list, Len(separator) + e);
  if (!left.empty() && !right.empty()) left += separator;
  return left + right;
}

// The letters of the random texts in upper case.
Text PlainUpper(Text text) {
  for (char16_t& unit : text) {
    if (unit == u'a') unit = u'A';
    if (unit == u'b') unit = u'B';
    if (unit == u'\u00E4') unit = u'\u00C4';
  }
  return text;
}

Text ModelReplace(const Text& text, const Text& target, const Text& replacement, bool no_case, LONG& count) {
  const Text x = no_case ? PlainUpper(text) : text;
  const Text t = no_case ? PlainUpper(target) : target;
  const LONG lr = Len(replacement);
  const LONG lt = Len(target);
  LONG c = 0;
  LONG p = 0;
  LONG s = 1;
  do {
    p = PlainFind(s, x, t);
    if (p > 0) {
      ++c;
      s = p + lt;
    }
  } while (p != 0);
  if (c == 0) return text;
  const LONG length = (lr - lt) * c + Len(text);
  if (length < 0) throw Invalid{};
  Text r(static_cast<std::size_t>(length), u' ');
  LONG n = 0;
  LONG d = 1;
  s = 1;
  for (;;) {
    p = PlainFind(s, x, t);
    if (p == 0) {
      if (s < Len(text)) PlainOverwrite(r, d, Len(text) - s + 1, PlainMid(text, s));
      break;
    }
    const LONG k = p - s;
    PlainOverwrite(r, d, k, PlainMid(text, s, k));
    PlainOverwrite(r, d + k, lr, replacement);
    d += k + lr;
    s = p + lt;
    ++n;
  }
  count = n;
  return r;
}

class DifferentialTest : public ::testing::Test {
 protected:
  Text RandomText(TextView alphabet, std::size_t longest) {
    Text text(random_() % (longest + 1), u'\0');
    for (char16_t& unit : text) unit = alphabet[random_() % alphabet.size()];
    return text;
  }

  // What a member returns and whether it reports is what the model says;
  // `fallback` is what a report leaves.
  template <class Value, class Model>
  void Compare(const Value& actual, const Value& fallback, TextView report, Model&& model) {
    try {
      EXPECT_EQ(actual, model());
      EXPECT_TRUE(host_.boxes.empty());
    } catch (const Invalid&) {
      EXPECT_EQ(actual, fallback);
      ASSERT_EQ(host_.boxes.size(), 1U);
      EXPECT_EQ(host_.boxes[0].text, Text(report) + u"\r\nInvalid procedure call or argument");
    }
    host_.boxes.clear();
  }

  RecordingHost host_;
  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  std::mt19937 random_{20240229};
};

TEST_F(DifferentialTest, Lists) {
  for (int round = 0; round < 20000 && !HasFailure(); ++round) {
    const Text list = RandomText(u"ab,,", 12);
    const Text separator = round % 3 == 0 ? RandomText(u"a,", 3) : Text(u",");
    const Text element = RandomText(u"ab,", 2);
    const LONG index = static_cast<LONG>(random_() % 18) - 2;
    SCOPED_TRACE(ToUtf8(u"list " + list + u" separator " + separator + u" element " + element) + " index " +
                 std::to_string(index));
    const BstrHandle l(list);
    const BstrHandle e(element);
    BstrHandle s(separator);
    BSTR by_reference = s.get();
    LONG number = -1;

    EXPECT_EQ(orvix_->LengthList(l.get(), s.get(), &number), S_OK);
    Compare<LONG>(number, 0, u"Error LengthList.", [&] { return ModelLength(list, separator); });
    EXPECT_EQ(orvix_->FindFirstElement(l.get(), e.get(), s.get(), &number), S_OK);
    // An empty separator is reported by LengthList, which this member asks.
    Compare<LONG>(number, 0, u"Error LengthList.", [&] { return ModelFindFirst(list, element, separator); });
    Compare<Text>(Returned([&](BSTR* result) { return orvix_->GetElement(l.get(), index, s.get(), result); }), Text{},
                  u"Error GetElement.", [&] { return ModelGet(list, index, separator); });
    Compare<Text>(
        Returned([&](BSTR* result) { return orvix_->InsertElement(l.get(), e.get(), index, &by_reference, result); }),
        list, u"Error InsertElement.", [&] { return ModelInsert(list, element, index, separator); });
    Compare<Text>(Returned([&](BSTR* result) { return orvix_->DeleteElement(l.get(), index, s.get(), result); }), list,
                  u"Error DeleteElement.", [&] { return ModelDelete(list, index, separator); });
  }
}

TEST_F(DifferentialTest, Replacing) {
  for (int round = 0; round < 20000 && !HasFailure(); ++round) {
    const Text text =
        RandomText(round % 2 == 0 ? TextView(u"aAbB") : TextView(u"a\u00E4\u00C4b.,"), round % 5 ? 14 : 140);
    Text target = RandomText(u"aAb\u00E4", 3);
    if (target.empty()) target = u"b";
    const Text replacement = RandomText(u"xyz", 3);
    const VARIANT_BOOL no_case = round % 4 < 2 ? VARIANT_TRUE : VARIANT_FALSE;
    SCOPED_TRACE(ToUtf8(u"text " + text + u" target " + target + u" replacement " + replacement));
    const BstrHandle t(text);
    const BstrHandle wanted(target);
    const BstrHandle with(replacement);
    VARIANT_BOOL flag = no_case;
    LONG count = -1;
    LONG expected_count = -1;
    const Text actual = Returned(
        [&](BSTR* result) { return orvix_->MyReplace(t.get(), wanted.get(), with.get(), &flag, &count, result); });
    Compare<Text>(actual, text, u"Error replacing.",
                  [&] { return ModelReplace(text, target, replacement, no_case != 0, expected_count); });
    EXPECT_EQ(count, expected_count);
  }
}

}  // namespace
}  // namespace Orvix::testing
