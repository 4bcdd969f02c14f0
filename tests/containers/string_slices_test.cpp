// Parts of the text buffer, single bytes, case and order.
#include "tests/containers/text_buffer.h"
#include "tests/support/exhausted_low_memory.h"

namespace Orvix::testing {
namespace {

constexpr TextView kHello = u"Hello world";

enum class Part { kLeft, kRight, kMid };
struct Case {
  Part part;
  LONG start;  // of Mid
  LONG count;
  TextView expected;  // the part, or the content after the assignment
  TextView assigned{};
};

struct GetCall {
  Outcome outcome;
  Text part;
};
GetCall Get(const Buffer& buffer, Part part, LONG start, LONG count) {
  Buffer taken;
  VARIANT number = Variant(count).get();
  const HRESULT result = part == Part::kLeft    ? buffer->get_Left(count, taken.Receive())
                         : part == Part::kRight ? buffer->get_Right(count, taken.Receive())
                                                : buffer->get_Mid(start, &number, taken.Receive());
  GetCall call{OutcomeOf(result), {}};
  if (taken) {
    EXPECT_NE(taken.get(), buffer.get());
    call.part = ValueOf(taken);
  }
  return call;
}
Outcome Let(const Buffer& buffer, Part part, LONG start, LONG count, VARIANT value) {
  VARIANT number = Variant(count).get();
  return OutcomeOf(part == Part::kLeft    ? buffer->put_Left(count, &value)
                   : part == Part::kRight ? buffer->put_Right(count, &value)
                                          : buffer->put_Mid(start, &number, &value));
}
Outcome Set(const Buffer& buffer, Part part, LONG start, LONG count, _classString* value) {
  VARIANT number = Variant(count).get();
  return OutcomeOf(part == Part::kLeft    ? buffer->putref_Left(count, &value)
                   : part == Part::kRight ? buffer->putref_Right(count, &value)
                                          : buffer->putref_Mid(start, &number, &value));
}

TEST(StringParts, AreTakenAsNewObjects) {
  const Case cases[] = {
      {Part::kLeft, 0, 5, u"Hello"},
      {Part::kLeft, 0, 20, kHello},
      {Part::kLeft, 0, 0, u""},
      {Part::kLeft, 0, 11, kHello},
      {Part::kLeft, 0, 2147483647, kHello},
      {Part::kRight, 0, 5, u"world"},
      {Part::kRight, 0, 12, kHello},
      {Part::kRight, 0, 0, u""},
      {Part::kMid, 7, 3, u"wor"},
      {Part::kMid, 7, 5, u"world"},
      {Part::kMid, 7, 100, u"world"},
      {Part::kMid, 11, 1, u"d"},
      {Part::kMid, 12, 1, u""},
      {Part::kMid, 50, 2, u""},
      {Part::kMid, 12, 0, u""},
      {Part::kMid, 1, 11, kHello},
      {Part::kMid, 1, 0, u""},
      {Part::kMid, 0, 3, u"He"},
      {Part::kMid, 0, 1, u""},
      {Part::kMid, 0, 0, u""},
      {Part::kMid, 0, 11, u"Hello worl"},
      {Part::kMid, 0, 12, kHello},
      {Part::kMid, 0, 99, kHello},
      {Part::kMid, 7, 2147483647, u"world"},
      {Part::kMid, 2147483647, 2147483647, u""},
  };
  const Buffer buffer = BufferOf(kHello);
  for (const Case& c : cases) {
    const GetCall call = Get(buffer, c.part, c.start, c.count);
    EXPECT_EQ(call.outcome, kDone);
    EXPECT_EQ(call.part, c.expected) << int(c.part) << " " << c.start << " " << c.count;
  }
  EXPECT_EQ(ValueOf(buffer), kHello);
}

TEST(StringParts, MidWithoutCountReachesTheEnd) {
  const Buffer buffer = BufferOf(kHello);
  Buffer part;
  ASSERT_EQ(buffer->get_Mid(7, nullptr, part.Receive()), S_OK);
  EXPECT_EQ(ValueOf(part), u"world");
  VARIANT missing = Missing();
  ASSERT_EQ(buffer->get_Mid(0, &missing, part.Receive()), S_OK);
  EXPECT_EQ(ValueOf(part), kHello);
  VARIANT count = Variant(TextView(u"2")).Detach();
  ASSERT_EQ(buffer->get_Mid(1, &count, part.Receive()), S_OK);
  EXPECT_EQ(ValueOf(part), u"He");
  VariantClear(&count);
  count = Variant(TextView(u"two")).Detach();
  EXPECT_EQ(OutcomeOf(buffer->get_Mid(1, &count, part.Receive())).number, 13);
  VariantClear(&count);
}

TEST(StringParts, AreOverwrittenInPlace) {
  const Case cases[] = {
      {Part::kLeft, 0, 5, u"Jello world", u"J"},
      {Part::kLeft, 0, 5, u"Howdy world", u"Howdy-doo"},
      {Part::kLeft, 0, 99, u"0123456789A", u"0123456789ABCDEF"},
      {Part::kLeft, 0, 0, kHello, u"x"},
      {Part::kLeft, 0, 5, kHello, u""},
      {Part::kRight, 0, 5, u"Hello earth", u"earth"},
      {Part::kRight, 0, 5, u"Hello worAB", u"AB"},
      {Part::kRight, 0, 2, u"Hello worAB", u"ABC"},
      {Part::kRight, 0, 99, u"Hello worAB", u"AB"},
      {Part::kMid, 7, 3, u"Hello WOrld", u"WO"},
      {Part::kMid, 7, 3, u"Hello WORld", u"WORLD"},
      {Part::kMid, 11, 5, u"Hello worlX", u"XYZ"},
      {Part::kMid, 12, 5, kHello, u"XYZ"},
      {Part::kMid, 99, 5, kHello, u"XYZ"},
      {Part::kMid, 0, 3, u"bcllo world", u"abc"},
      {Part::kMid, 0, 1, kHello, u"abc"},
      {Part::kMid, 0, 99, u"bcllo world", u"abc"},
      {Part::kMid, 2147483647, 2147483647, kHello, u"x"},
      {Part::kMid, 10, 2147483647, u"Hello worXY", u"XYZ"},
  };
  for (const Case& c : cases) {
    const Buffer let = BufferOf(kHello);
    EXPECT_EQ(Let(let, c.part, c.start, c.count, Variant(c.assigned).get()), kDone);
    EXPECT_EQ(ValueOf(let), c.expected) << int(c.part) << " " << c.start << " " << c.count;
    const Buffer set = BufferOf(kHello);
    EXPECT_EQ(Set(set, c.part, c.start, c.count, BufferOf(c.assigned).get()), kDone);
    EXPECT_EQ(ValueOf(set), c.expected) << int(c.part) << " " << c.start << " " << c.count;
  }
}

TEST(StringParts, WrongCountsAndStartsAreRefusedBeforeAnythingElse) {
  const Buffer buffer = BufferOf(kHello);
  const struct {
    Part part;
    LONG start;
    LONG count;
    Outcome expected;
  } cases[] = {
      {Part::kLeft, 0, -1, kInvalidLength},
      {Part::kRight, 0, -1, kInvalidLength},
      {Part::kMid, 3, -2, kInvalidLength},
      {Part::kMid, 50, -1, kInvalidLength},
      {Part::kMid, -1, 1, kInvalidStart},
      {Part::kMid, -1, -1, kInvalidStart},
      {Part::kLeft, 0, -2147483647 - 1, kInvalidLength},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Get(buffer, c.part, c.start, c.count).outcome, c.expected);
    EXPECT_EQ(Let(buffer, c.part, c.start, c.count, Null()), c.expected);
    EXPECT_EQ(Set(buffer, c.part, c.start, c.count, nullptr), c.expected);
  }
  EXPECT_EQ(Let(buffer, Part::kLeft, 0, 3, Null()).number, 94);
  EXPECT_EQ(Let(buffer, Part::kLeft, 0, 0, Null()), kDone);  // its text is not needed
  EXPECT_EQ(Set(buffer, Part::kMid, 1, 3, nullptr).number, 91);
  EXPECT_EQ(ValueOf(buffer), kHello);
}

TEST(StringParts, LeftEndsTheContentWithANulTheOthersDoNot) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetLength(buffer, 3), kDone);
  Get(buffer, Part::kRight, 0, 1);
  Get(buffer, Part::kMid, 1, 1);
  EXPECT_EQ(ByteAt(buffer, 4), 'd');
  Get(buffer, Part::kLeft, 0, 0);
  EXPECT_EQ(ByteAt(buffer, 4), 0);
}

TEST(StringParts, PartsWithoutMemoryAreError7) {
  const Buffer buffer = BufferOf(Text(100000, u'a'));
  ASSERT_EQ(SetLength(buffer, 90000), kDone);
  {
    const ExhaustedLowMemory exhausted;
    // Whether or not there is room for a new object, there is none for its content.
    for (const Part part : {Part::kLeft, Part::kRight, Part::kMid}) {
      EXPECT_EQ(Get(buffer, part, 1, 80000).outcome, kNoMemory);
    }
  }
  EXPECT_EQ(LengthOf(buffer), 90000);
  EXPECT_EQ(ByteAt(buffer, 90000), 'a');
}

TEST(StringParts, ABufferIsLaidOverItselfAndTakesItsOwnParts) {
  const Buffer whole = BufferOf(u"abcdef");
  Buffer part;
  ASSERT_EQ(whole->get_Right(3, part.Receive()), S_OK);
  EXPECT_EQ(Set(whole, Part::kLeft, 0, 3, part.get()), kDone);
  EXPECT_EQ(ValueOf(whole), u"defdef");
  EXPECT_EQ(Let(whole, Part::kMid, 2, 9, ObjectValue(whole.get())), kDone);  // the text before the change
  EXPECT_EQ(ValueOf(whole), u"ddefde");
  const Buffer buffer = BufferOf(u"abcdef");
  EXPECT_EQ(Set(buffer, Part::kMid, 3, 9, buffer.get()), kDone);
  EXPECT_EQ(ValueOf(buffer), u"ababcd");
}

TEST(StringParts, NewValuesGoThroughTheCodePage) {
  const Buffer buffer = BufferOf(kHello);
  EXPECT_EQ(Let(buffer, Part::kLeft, 0, 3, Variant(TextView(u"\u20ac\u4e2d\u00ff")).get()), kDone);
  EXPECT_EQ(ValueOf(buffer), u"\u20ac?\u00fflo world");
  EXPECT_EQ(Let(buffer, Part::kLeft, 0, 3, Variant(12345).get()), kDone);
  EXPECT_EQ(ValueOf(buffer), u"123lo world");
  EXPECT_EQ(Let(buffer, Part::kRight, 0, 3, ObjectValue(BufferOf(u"xyz").get())), kDone);
  EXPECT_EQ(ValueOf(buffer), u"123lo woxyz");
}

TEST(StringParts, BadValuesAreErrorsAndChangeNothing) {
  VARIANT error{};
  error.vt = VT_ERROR;
  error.scode = 2042;
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 1);
  VARIANT numbers{};
  numbers.vt = VT_ARRAY | VT_I4;
  numbers.parray = array;
  const ComPtr<_classStack> no_default = NewObject<_classStack>();
  const Buffer buffer = BufferOf(kHello);
  for (const VARIANT& value : {error, numbers, ObjectValue(no_default.get()), ObjectValue(nullptr)}) {
    EXPECT_EQ(Let(buffer, Part::kLeft, 1, 3, value).number, 13) << value.vt;
    VARIANT count = value;
    Buffer part;
    EXPECT_EQ(OutcomeOf(buffer->get_Mid(1, &count, part.Receive())).number, 13) << value.vt;
    EXPECT_EQ(part.get(), nullptr);
  }
  SafeArrayDestroy(array);
  VARIANT missing = Missing();
  EXPECT_EQ(buffer->put_Left(3, &missing), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(buffer->put_Left(3, nullptr), E_POINTER);
  Buffer part;
  VARIANT count = Null();
  EXPECT_EQ(OutcomeOf(buffer->get_Mid(1, &count, part.Receive())).number, 13);
  count = Variant(1e10).get();
  EXPECT_EQ(OutcomeOf(buffer->get_Mid(1, &count, part.Receive())).number, 6);
  EXPECT_EQ(OutcomeOf(buffer->get_Mid(-1, &count, part.Receive())), kInvalidStart);  // looked at first
  count = Variant(2.5).get();                                                        // half to the even number
  EXPECT_EQ(buffer->get_Mid(1, &count, part.Receive()), S_OK);
  EXPECT_EQ(ValueOf(part), u"He");
  EXPECT_EQ(ValueOf(buffer), kHello);
}

TEST(StringParts, ValuesMayChangeTheBufferThatAsksForThem) {
  const Buffer buffer = BufferOf(kHello);
  ObjectWithDefault shrinks([&] {
    EXPECT_EQ(SetBufferSize(buffer, 5), kDone);
    return Variant(TextView(u"12345678"));
  });
  EXPECT_EQ(Let(buffer, Part::kLeft, 0, 8, ObjectValue(&shrinks)), kOutside);
  EXPECT_EQ(ByteAt(buffer, 1), 'H');
  ObjectWithDefault empties([&] {
    EXPECT_EQ(SetLength(buffer, 0), kDone);
    return Variant(TextView(u"3"));
  });
  VARIANT count = ObjectValue(&empties);
  Buffer part;
  EXPECT_EQ(buffer->get_Mid(1, &count, part.Receive()), S_OK);
  EXPECT_EQ(ValueOf(part), u"");
  EXPECT_EQ(Append(buffer, ObjectValue(&shrinks)), kDone);
  EXPECT_EQ(ValueOf(buffer), u"12345678");
}

TEST(StringParts, ByNameGetLetAndSetAreToldApart) {
  const Buffer buffer = BufferOf(kHello);
  const Variant three(LONG{3});
  Variant got;
  ASSERT_EQ(InvokeNamed(buffer.get(), u"left", DISPATCH_PROPERTYGET, {three.get()}, got.Receive()), S_OK);
  ASSERT_EQ(got.get().vt, VT_DISPATCH);
  EXPECT_NE(got.get().pdispVal, buffer.get());
  const Variant text(TextView(u"12345"));
  EXPECT_EQ(InvokeNamed(buffer.get(), u"Left", DISPATCH_PROPERTYPUT, {three.get(), text.get()}), S_OK);
  const Buffer other = BufferOf(u"xyz");
  EXPECT_EQ(InvokeNamed(buffer.get(), u"Right", DISPATCH_PROPERTYPUTREF, {three.get(), ObjectValue(other.get())}),
            S_OK);
  EXPECT_EQ(InvokeNamed(buffer.get(), u"Mid", DISPATCH_PROPERTYPUT, {three.get(), Missing(), ObjectValue(other.get())}),
            S_OK);
  EXPECT_EQ(ValueOf(buffer), u"12xyz woxyz");
}

TEST(StringParts, WhatAShrunkBufferLacksIsError9) {
  const Buffer buffer = BufferOf(u"abcdefgh");
  ASSERT_EQ(SetBufferSize(buffer, 3), kDone);
  EXPECT_EQ(Get(buffer, Part::kMid, 2, 3).part, u"bcd");
  EXPECT_EQ(Get(buffer, Part::kMid, 2, 4).outcome, kOutside);
  EXPECT_EQ(Let(buffer, Part::kMid, 4, 1, Variant(TextView(u"D")).get()), kDone);
  EXPECT_EQ(Let(buffer, Part::kMid, 4, 2, Variant(TextView(u"XY")).get()), kOutside);
  EXPECT_EQ(ByteAt(buffer, 4), 'D');
}

TEST(StringBytes, AscAndCharReadTheBuffer) {
  const Buffer buffer = BufferOf(u"\u20acb");
  SHORT code = 0;
  EXPECT_EQ(buffer->Asc(&code), S_OK);
  EXPECT_EQ(code, 128);
  buffer->Clear();
  EXPECT_EQ(buffer->Asc(&code), S_OK);
  EXPECT_EQ(code, -1);
  EXPECT_EQ(ByteAt(buffer, 2), 'b');
  EXPECT_EQ(ByteAt(buffer, 257), 0);
  for (const LONG outside : {0, -1, 258, 2147483647, -2147483647 - 1}) {
    EXPECT_EQ(ByteAt(buffer, outside), -9) << outside;
    EXPECT_EQ(OutcomeOf(buffer->put_Char(outside, 'x')), kOutside) << outside;
  }
  EXPECT_EQ(buffer->put_Char(257, 'x'), S_OK);
  EXPECT_EQ(ByteAt(buffer, 257), 'x');
  EXPECT_EQ(LengthOf(buffer), 0);
}

TEST(StringBytes, CaseAndOrderChangeThisObject) {
  const Buffer buffer = NewObject<_classString>();
  ASSERT_EQ(SetLength(buffer, 256), kDone);
  for (LONG byte = 0; byte < 256; ++byte) buffer->put_Char(byte + 1, static_cast<BYTE>(byte));
  Buffer same;
  ASSERT_EQ(buffer->UCase(same.Receive()), S_OK);
  EXPECT_EQ(same.get(), buffer.get());
  for (LONG byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(ByteAt(buffer, byte + 1), byte >= 97 && byte <= 122 ? byte - 32 : byte);
  }
  ASSERT_EQ(buffer->LCase(same.Receive()), S_OK);
  EXPECT_EQ(same.get(), buffer.get());
  for (LONG byte = 0; byte < 256; ++byte) {
    EXPECT_EQ(ByteAt(buffer, byte + 1), byte >= 65 && byte <= 90 ? byte + 32 : byte);
  }
  for (const auto& [text, reversed] : {std::pair<TextView, TextView>{kHello, u"dlrow olleH"},
                                       {u"abc", u"cba"},
                                       {u"ab", u"ba"},
                                       {u"a", u"a"},
                                       {u"", u""}}) {
    const Buffer turned = BufferOf(text);
    ASSERT_EQ(turned->ReverseStr(same.Receive()), S_OK);
    EXPECT_EQ(same.get(), turned.get());
    EXPECT_EQ(ValueOf(turned), reversed);
  }
  const Buffer cut = BufferOf(u"abcd");
  ASSERT_EQ(SetLength(cut, 2), kDone);
  ASSERT_EQ(cut->UCase(same.Receive()), S_OK);
  EXPECT_EQ(ByteAt(cut, 3), 'c');
}

}  // namespace
}  // namespace Orvix::testing
