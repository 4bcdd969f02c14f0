// Random calls, fixed seed, on the text buffer and the stacks against plain
// models that take every step of the listed procedures one by one.
#include <map>
#include <random>

#include "tests/containers/text_buffer.h"

namespace Orvix::testing {
namespace {

struct Refused {};   // error 5
struct Missing9 {};  // error 9

// Bytes in a vector, every access checked, one byte at a time.
class ModelBuffer {
 public:
  std::vector<int> bytes = std::vector<int>(257, 0);
  LONG length = 0;

  [[nodiscard]] LONG Upper() const { return static_cast<LONG>(bytes.size()) - 1; }
  int& At(LONG index) {
    if (index < 0 || index > Upper()) throw Missing9{};
    return bytes[static_cast<std::size_t>(index)];
  }
  void SetBufferSize(LONG size, bool clear) {
    if (size < 0) throw Missing9{};
    if (clear && length == 0) bytes.clear();
    bytes.resize(static_cast<std::size_t>(size) + 1, 0);
  }
  void Grow(LONG size) {
    if (size > Upper()) SetBufferSize(size, false);
  }
  Text Taken(LONG first, LONG count) {
    Text text;
    for (LONG p = first; p < first + count; ++p) {
      if (p >= 1) text += static_cast<char16_t>(At(p - 1));
    }
    return text;
  }
  Text Value() { return Taken(1, length); }
  void SetValue(const Text& text) {
    Grow(static_cast<LONG>(text.size()));
    length = static_cast<LONG>(text.size());
    for (LONG i = 0; i < length; ++i) At(i) = text[static_cast<std::size_t>(i)];
  }
  void SetLength(LONG n) {
    if (n < 0) throw Refused{};
    Grow(n);
    for (LONG i = length; i < n; ++i) At(i) = ' ';
    length = n;
  }
  void Append(const Text& text) {
    if (text.empty()) return;
    const LONG start = length;
    Grow(start + static_cast<LONG>(text.size()));
    for (const char16_t unit : text) At(length++) = unit;
  }
  // kind 0 left, 1 right, 2 middle
  [[nodiscard]] LONG Count(int kind, LONG start, LONG count) const {
    if (kind == 2 && start < 0) throw Refused{};
    if (count < 0) throw Refused{};
    if (kind != 2) return count < length ? count : length;
    return count + start > length ? length - start + 1 : count;
  }
  Text Part(int kind, LONG start, LONG count) {
    const LONG n = Count(kind, start, count);
    if (kind == 0) At(length) = 0;
    if (kind == 2 && start > length) return {};
    return Taken(kind == 0 ? 1 : kind == 1 ? length - n + 1 : start, n);
  }
  void SetPart(int kind, LONG start, LONG count, const Text& text) {
    LONG n = Count(kind, start, count);
    if (n > static_cast<LONG>(text.size())) n = static_cast<LONG>(text.size());
    const LONG first = kind == 0 ? 1 : kind == 1 ? length - n + 1 : start;
    const std::vector<int> before = bytes;
    try {
      for (LONG i = 0; i < n; ++i) {
        if (first + i >= 1) At(first + i - 1) = text[static_cast<std::size_t>(i)];
      }
    } catch (const Missing9&) {
      bytes = before;
      throw;
    }
  }
  bool SameAt(LONG i, const Text& text, LONG count) {
    LONG same = 0;
    while (same < count && At(i + same) == text[static_cast<std::size_t>(same)]) ++same;
    return same == count;
  }
  LONG Search(const Text& text, LONG start) {
    const auto m = static_cast<LONG>(text.size());
    for (LONG i = start < 1 ? 0 : start - 1; i <= length - m; ++i) {
      if (SameAt(i, text, m)) return i + 1;
    }
    return 0;
  }
  LONG SearchBySkips(const Text& text, LONG start) {
    const auto m = static_cast<LONG>(text.size());
    std::map<int, LONG> skips;
    for (LONG i = 1; i <= m; ++i) skips[text[static_cast<std::size_t>(i - 1)]] = m - i;
    LONG pos = (start < 1 ? 1 : start) + m - 1;
    while (pos <= length) {
      const auto skip = skips.find(At(pos - 1));
      const LONG step = skip == skips.end() ? m : skip->second;
      if (step == 0 && SameAt(pos - m, text, m - 1)) return pos - m + 1;
      pos += step == 0 ? 1 : step;
    }
    return 0;
  }
  LONG TrimToNull() {
    length = Upper();
    for (LONG i = 1; i <= Upper(); ++i) {
      if (At(i) == 0) {
        length = i - 1;
        break;
      }
    }
    return length;
  }
  Text Element(LONG index, const Text& separator) {
    const auto k = static_cast<LONG>(separator.size());
    LONG pos = 0;
    for (LONG i = 2; i <= index; ++i) pos = Search(separator, k + pos);
    if (pos == 0 && index > 1) return {};
    LONG end = Search(separator, k + pos);
    if (end == 0) end = length + 1;
    const LONG begin = pos >= 1 ? pos + k : 1;
    return Part(2, begin, end - begin);
  }
};

// Answers of both sides as texts: what was returned, or "error n".
std::string AnswerOf(const Text& text) { return ToUtf8(text); }
std::string AnswerOf(LONG number) { return std::to_string(number); }
std::string Error(LONG number) { return "error " + std::to_string(number); }

template <class Call>
std::string FromModel(Call&& call) {
  try {
    if constexpr (std::is_void_v<decltype(call())>) {
      call();
      return "";
    } else {
      return AnswerOf(call());
    }
  } catch (const Refused&) {
    return Error(5);
  } catch (const Missing9&) {
    return Error(9);
  }
}
std::string FromCall(HRESULT result, std::string answer = {}) {
  return SUCCEEDED(result) ? answer : Error(OutcomeOf(result).number);
}

class StringDifferential : public ::testing::Test {
 protected:
  LONG Number(LONG low, LONG high) {
    return low + static_cast<LONG>(random_() % static_cast<unsigned>(high - low + 1));
  }
  Text Word(LONG most) {
    Text made;
    for (LONG left = Number(0, most); left > 0; --left) made += u"abc,\u00e9"[random_() % 5];
    return made;
  }

  // One random call on both; the answers of the model and of the buffer.
  std::pair<std::string, std::string> Step() {
    const int kind = Number(0, 2);
    const LONG start = Number(-1, 14);
    const LONG count = Number(-1, 14);
    const Text word = Word(8);
    const Variant held{TextView(word)};
    VARIANT value = held.get();
    VARIANT number = Variant(count).get();
    LONG position = start;
    LONG got = 0;
    Buffer other;
    BstrHandle text;
    switch (Number(0, 13)) {
      case 0: {
        const Text longer = Word(40);
        BSTR put = NewBstr(longer);
        const HRESULT result = buffer_->put_Value(&put);
        SysFreeString(put);
        return {FromModel([&] { model_.SetValue(longer); }), FromCall(result)};
      }
      case 1:
      case 2:
        return {FromModel([&] { model_.Append(word); }), FromCall(buffer_->Append(&value, other.Receive()))};
      case 3:
      case 4: {
        const HRESULT result = kind == 0   ? buffer_->get_Left(count, other.Receive())
                               : kind == 1 ? buffer_->get_Right(count, other.Receive())
                                           : buffer_->get_Mid(start, &number, other.Receive());
        return {FromModel([&] { return model_.Part(kind, start, count); }),
                FromCall(result, other ? ToUtf8(ValueOf(other)) : "")};
      }
      case 5:
      case 6: {
        const HRESULT result = kind == 0   ? buffer_->put_Left(count, &value)
                               : kind == 1 ? buffer_->put_Right(count, &value)
                                           : buffer_->put_Mid(start, &number, &value);
        return {FromModel([&] { model_.SetPart(kind, start, count, word); }), FromCall(result)};
      }
      case 7: {
        _classString* object = nullptr;
        const Buffer source = BufferOf(word);
        object = source.get();
        const HRESULT result = kind == 0   ? buffer_->putref_Left(count, &object)
                               : kind == 1 ? buffer_->putref_Right(count, &object)
                                           : buffer_->putref_Mid(start, &number, &object);
        return {FromModel([&] { model_.SetPart(kind, start, count, word); }), FromCall(result)};
      }
      case 8:
        return {FromModel([&] { model_.SetLength(count); }), FromCall(buffer_->put_Length(count))};
      case 9: {
        const HRESULT result = buffer_->Instr(&value, &position, &got);
        return {FromModel([&] { return word.empty() ? start : model_.Search(word, start); }),
                FromCall(result, AnswerOf(got))};
      }
      case 10: {
        const Text short_word = word.substr(0, 2);
        BSTR search = NewBstr(short_word);
        const HRESULT result = buffer_->Find(&search, &position, &got);
        SysFreeString(search);
        return {FromModel([&] { return short_word.empty() ? 0 : model_.SearchBySkips(short_word, start); }),
                FromCall(result, AnswerOf(got))};
      }
      case 11: {
        const LONG size = Number(0, 4) == 0 ? count : 30;
        VARIANT_BOOL clear = count > 5 ? VARIANT_TRUE : VARIANT_FALSE;
        return {FromModel([&] { model_.SetBufferSize(size, count > 5); }),
                FromCall(buffer_->SetBufferSize(size, &clear))};
      }
      case 12: {
        BYTE byte = 0;
        const HRESULT result = buffer_->get_Char(start, &byte);
        return {FromModel([&] { return LONG{model_.At(start - 1)}; }), FromCall(result, AnswerOf(LONG{byte}))};
      }
      default: {
        if (Number(0, 3) == 0) return {FromModel([&] { return model_.TrimToNull(); }), Trimmed()};
        // A list that is not whole is reported instead, which is tested elsewhere.
        if (model_.length - 1 > model_.Upper()) return {};
        const BstrHandle comma(TextView(u","));
        const HRESULT result = buffer_->GetElement(start, comma.get(), text.Receive());
        return {FromModel([&] { return model_.Element(start, u","); }), FromCall(result, ToUtf8(text.View()))};
      }
    }
  }
  std::string Trimmed() {
    LONG length = 0;
    const HRESULT result = buffer_->TrimToNull(&length);
    return FromCall(result, AnswerOf(length));
  }

  std::mt19937 random_{4711};
  ModelBuffer model_;
  Buffer buffer_ = NewObject<_classString>();
};

TEST_F(StringDifferential, RandomCallsGiveWhatTheModelGives) {
  int errors = 0;
  for (int call = 0; call < 20000; ++call) {
    if (call % 250 == 0) {
      model_ = {};
      buffer_ = NewObject<_classString>();
    }
    const auto [expected, got] = Step();
    ASSERT_EQ(got, expected) << "call " << call;
    errors += expected.starts_with("error") ? 1 : 0;
    ASSERT_EQ(testing::LengthOf(buffer_), model_.length) << "call " << call;
    for (LONG index = 0; index <= model_.Upper() + 1; index += call % 16 == 0 ? 1 : 9) {
      ASSERT_EQ(ByteAt(buffer_, index + 1), index > model_.Upper() ? -9 : model_.At(index)) << "call " << call;
    }
  }
  EXPECT_GT(errors, 500);
  EXPECT_LT(errors, 10000);
}

TEST(StackDifferential, RandomCallsGiveWhatAVectorGives) {
  std::mt19937 random(815);
  std::vector<Text> model;
  const ComPtr<_classStack> stack = NewObject<_classStack>();
  for (int call = 0; call < 60000; ++call) {
    const bool rising = call % 8000 < 4500;
    Variant got;
    if (random() % 10 < (rising ? 7u : 3u)) {
      const std::string digits = std::to_string(random() % 500);
      Variant value{TextView(Text(digits.begin(), digits.end()))};
      ASSERT_EQ(stack->Push(value.Address()), S_OK);
      model.emplace_back(digits.begin(), digits.end());
    } else if (model.empty()) {
      ASSERT_EQ(OutcomeOf(stack->Pop(got.Receive())).number, 66000);
    } else {
      ASSERT_EQ(stack->Pop(got.Receive()), S_OK);
      ASSERT_EQ(ViewOf(got.get().bstrVal), model.back());
      model.pop_back();
    }
    LONG size = -1;
    ASSERT_EQ(stack->get_Size(&size), S_OK);
    ASSERT_EQ(size, static_cast<LONG>(model.size()));
    if (model.empty()) continue;
    LONG index = 1 + static_cast<LONG>(random() % model.size());
    ASSERT_EQ(stack->GetStackItem(&index, got.Receive()), S_OK);
    ASSERT_EQ(ViewOf(got.get().bstrVal), model[static_cast<std::size_t>(index) - 1]);
    if (call % 50 != 0) continue;
    const Text wanted = model[random() % model.size()].substr(0, 2);
    LONG direction = static_cast<LONG>(random() % 2);
    LONG expected = direction == sdStartToEnd ? 1 : size;
    while (!model[static_cast<std::size_t>(expected) - 1].starts_with(wanted)) expected += direction == 1 ? 1 : -1;
    Variant value{TextView(wanted)};
    VARIANT_BOOL found = VARIANT_FALSE;
    ASSERT_EQ(stack->IsOnStack(value.Address(), &direction, &index, &found), S_OK);
    ASSERT_EQ(found, VARIANT_TRUE);
    ASSERT_EQ(index, expected);
  }
}

}  // namespace
}  // namespace Orvix::testing
