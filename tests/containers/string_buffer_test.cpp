// The text buffer's storage, sizes, whole value, appending and copying.
#include <malloc.h>

#include <algorithm>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/asan_interface.h>
#endif

#include "tests/containers/text_buffer.h"
#include "tests/support/exhausted_low_memory.h"

namespace Orvix::testing {
namespace {

TEST(StringBuffer, NewOneHas257ZeroBytesAndNoContent) {
  const Buffer buffer = NewObject<_classString>();
  EXPECT_EQ(LengthOf(buffer), 0);
  EXPECT_EQ(ValueOf(buffer), u"");
  EXPECT_EQ(SizeOf(buffer), 256);
  for (LONG position = 1; position <= 257; ++position) ASSERT_EQ(ByteAt(buffer, position), 0);
}

TEST(StringBuffer, GrowsToExactlyWhatItNeedsAndKeepsItsPlaceUntilThen) {
  const Buffer buffer = NewObject<_classString>();
  const char* const before = BytesOf(buffer);
  EXPECT_EQ(Append(buffer, Text(256, u'a')), kDone);
  EXPECT_EQ(BytesOf(buffer), before);
  EXPECT_EQ(SizeOf(buffer), 256);
  EXPECT_EQ(SetValue(buffer, Text(300, u'b')), kDone);
  EXPECT_EQ(SizeOf(buffer), 300);
  EXPECT_EQ(Append(buffer, u"c"), kDone);
  EXPECT_EQ(SizeOf(buffer), 301);
  EXPECT_EQ(ByteAt(buffer, 300), 'b');
  EXPECT_EQ(ByteAt(buffer, 301), 'c');
  EXPECT_EQ(ByteAt(buffer, 302), 0);
}

TEST(StringBuffer, StrPtrIsTheRealAddressAndEndsTheContent) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetLength(buffer, 3), kDone);
  EXPECT_EQ(ByteAt(buffer, 4), 'd');
  char* const bytes = BytesOf(buffer);
  EXPECT_STREQ(bytes, "abc");
  EXPECT_EQ(ByteAt(buffer, 4), 0);
  EXPECT_EQ(ByteAt(buffer, 5), 'e');
  bytes[1] = 'X';
  EXPECT_EQ(ValueOf(buffer), u"aXc");
}

TEST(StringBuffer, LengthFillsWithSpacesAndLeavesWhatItCutsOff) {
  const Buffer buffer = BufferOf(u"ab");
  EXPECT_EQ(SetLength(buffer, 5), kDone);
  EXPECT_EQ(ValueOf(buffer), u"ab   ");
  EXPECT_EQ(SetLength(buffer, 1), kDone);
  EXPECT_EQ(ValueOf(buffer), u"a");
  EXPECT_EQ(ByteAt(buffer, 2), 'b');
  EXPECT_EQ(SetLength(buffer, 2), kDone);
  EXPECT_EQ(ValueOf(buffer), u"a ");
  EXPECT_EQ(SetLength(buffer, -1), kInvalidLength);
  EXPECT_EQ(ValueOf(buffer), u"a ");
  EXPECT_EQ(SetLength(buffer, 1000), kDone);
  EXPECT_EQ(SizeOf(buffer), 1000);
  EXPECT_EQ(ByteAt(buffer, 1000), ' ');
  EXPECT_EQ(ByteAt(buffer, 1001), 0);
  EXPECT_EQ(buffer->Clear(), S_OK);
  EXPECT_EQ(ByteAt(buffer, 1), 'a');
  EXPECT_EQ(SetLength(buffer, 3), kDone);
  EXPECT_EQ(ValueOf(buffer), u"   ");
  EXPECT_EQ(buffer->Clear(), S_OK);
  EXPECT_EQ(Append(buffer, u"xy"), kDone);
  EXPECT_EQ(ValueOf(buffer), u"xy");
  EXPECT_EQ(ByteAt(buffer, 3), ' ');
}

TEST(StringBuffer, ClearingIsForAnEmptyBufferOnly) {
  const Buffer buffer = BufferOf(u"abcdefghijkl");
  EXPECT_EQ(SetBufferSize(buffer, 20, VARIANT_TRUE), kDone);
  EXPECT_EQ(ValueOf(buffer), u"abcdefghijkl");
  EXPECT_EQ(buffer->Clear(), S_OK);
  EXPECT_EQ(OutcomeOf(buffer->SetBufferSize(21, nullptr)), kDone);
  EXPECT_EQ(ByteAt(buffer, 1), 'a');
  EXPECT_EQ(SetBufferSize(buffer, 10, 1), kDone);
  for (LONG position = 1; position <= 11; ++position) EXPECT_EQ(ByteAt(buffer, position), 0);
  EXPECT_EQ(ByteAt(buffer, 12), -9);
}

TEST(StringBuffer, BytesDroppedByAShrinkComeBackAsZero) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetBufferSize(buffer, 2), kDone);
  ASSERT_EQ(SetBufferSize(buffer, 400), kDone);
  EXPECT_EQ(std::string(BytesOf(buffer), 6), std::string("abc\0\0\0", 6));
}

TEST(StringBuffer, SizeBelowLengthFailsWhereAByteIsMissing) {
  const Buffer buffer = BufferOf(u"abcdefgh");
  EXPECT_EQ(SetBufferSize(buffer, -1), kOutside);
  EXPECT_EQ(SizeOf(buffer), 256);
  ASSERT_EQ(SetBufferSize(buffer, 7), kDone);  // all of the content, no room for the NUL
  EXPECT_EQ(LengthOf(buffer), 8);
  EXPECT_EQ(ValueOf(buffer), u"abcdefgh");
  LONG address = 0;
  EXPECT_EQ(OutcomeOf(buffer->StrPtr(&address)), kOutside);
  ASSERT_EQ(SetBufferSize(buffer, 6), kDone);
  BSTR value = nullptr;
  EXPECT_EQ(OutcomeOf(buffer->get_Value(&value)), kOutside);
  Buffer other;
  EXPECT_EQ(OutcomeOf(buffer->UCase(other.Receive())), kOutside);
  EXPECT_EQ(OutcomeOf(buffer->ReverseStr(other.Receive())), kOutside);
  EXPECT_EQ(OutcomeOf(buffer->Copy(other.Receive())), kOutside);
  EXPECT_EQ(OutcomeOf(buffer->get_Right(1, other.Receive())), kOutside);
  EXPECT_EQ(ByteAt(buffer, 1), 'a');
  EXPECT_EQ(Instr(buffer, u"fg"), 6);  // found in what is there
  VARIANT search = Variant(TextView(u"gh")).Detach();
  LONG position = -1;
  EXPECT_EQ(OutcomeOf(buffer->Instr(&search, nullptr, &position)), kOutside);
  BSTR text = search.bstrVal;
  EXPECT_EQ(OutcomeOf(buffer->Find(&text, nullptr, &position)), kOutside);
  SysFreeString(text);
  EXPECT_EQ(Append(buffer, u"i"), kDone);  // makes room first
  EXPECT_EQ(ValueOf(buffer), std::u16string_view(u"abcdefg\0i", 9));
}

TEST(StringBuffer, ShrunkBufferAppendsItselfAfterMakingRoom) {
  const Buffer buffer = BufferOf(u"abcd");
  ASSERT_EQ(SetBufferSize(buffer, 1), kDone);
  EXPECT_EQ(Append(buffer, ObjectValue(buffer.get())), kDone);
  EXPECT_EQ(ValueOf(buffer), std::u16string_view(u"ab\0\0ab\0\0", 8));
}

TEST(StringBuffer, ValueGoesThroughTheCodePageAndBackToTheCaller) {
  const Buffer buffer = NewObject<_classString>();
  BSTR text = NewBstr(u"\u20ac\u00e9\u4e2d\U0001F600z");
  ASSERT_EQ(buffer->put_Value(&text), S_OK);
  EXPECT_EQ(ViewOf(text), u"\u20ac\u00e9???z");
  EXPECT_EQ(ValueOf(buffer), u"\u20ac\u00e9???z");
  EXPECT_EQ(std::string(BytesOf(buffer)), "\x80\xe9???z");
  SysFreeString(text);
  text = nullptr;
  EXPECT_EQ(buffer->put_Value(&text), S_OK);
  EXPECT_EQ(LengthOf(buffer), 0);
  EXPECT_EQ(ByteAt(buffer, 1), 0x80);
}

TEST(StringBuffer, EveryByteSurvivesARoundTrip) {
  const Buffer buffer = NewObject<_classString>();
  ASSERT_EQ(SetLength(buffer, 256), kDone);
  for (LONG byte = 0; byte < 256; ++byte) buffer->put_Char(byte + 1, static_cast<BYTE>(byte));
  const Buffer again = BufferOf(ValueOf(buffer));
  for (LONG byte = 0; byte < 256; ++byte) EXPECT_EQ(ByteAt(again, byte + 1), byte);
}

TEST(StringBuffer, AppendTakesTextsNumbersAndBuffers) {
  const Buffer buffer = BufferOf(u"ab");
  EXPECT_EQ(Append(buffer, Variant(123).get()), kDone);
  EXPECT_EQ(Append(buffer, Variant::Boolean(VARIANT_TRUE).get()), kDone);
  EXPECT_EQ(ValueOf(buffer), u"ab123True");
  EXPECT_EQ(Append(buffer, VARIANT{}), kDone);
  EXPECT_EQ(Append(buffer, u""), kDone);
  EXPECT_EQ(Append(buffer, Null()), (Outcome{94, u"Orvix.classString", u"Invalid use of Null"}));
  EXPECT_EQ(Append(buffer, ObjectValue(nullptr)).number, 13);
  EXPECT_EQ(Append(buffer, ObjectValue(NewObject<_classStack>().get())).number, 13);
  EXPECT_EQ(ValueOf(buffer), u"ab123True");
  EXPECT_EQ(Append(buffer, ObjectValue(BufferOf(u"xy").get())), kDone);
  Buffer held = BufferOf(u"\u20ac!");
  IDispatch* object = held.get();
  VARIANT inner = ByReference(VT_DISPATCH, &object);
  EXPECT_EQ(Append(buffer, ByReference(VT_VARIANT, &inner)), kDone);
  EXPECT_EQ(ValueOf(buffer), u"ab123Truexy\u20ac!");
}

TEST(StringBuffer, AppendTakesTheTextForms) {
  VARIANT error{};
  error.vt = VT_ERROR;
  error.scode = 2042;
  SHORT small = -7;
  const struct {
    VARIANT value;
    TextView expected;
  } cases[] = {
      {Variant(1.5).get(), u"1.5"},
      {Variant(-0.25).get(), u"-0.25"},
      {Variant(LONG{-2147483647 - 1}).get(), u"-2147483648"},
      {Variant::Boolean(VARIANT_FALSE).get(), u"False"},
      {Variant::Boolean(1).get(), u"True"},
      {Variant::Date(36526.0).get(), u"1/1/2000"},
      {Variant::Date(36526.75).get(), u"1/1/2000 6:00:00 PM"},
      {ByReference(VT_I2, &small), u"-7"},
  };
  for (const auto& c : cases) {
    const Buffer buffer = NewObject<_classString>();
    EXPECT_EQ(Append(buffer, c.value), kDone);
    EXPECT_EQ(ValueOf(buffer), c.expected);
  }
  const Buffer buffer = BufferOf(u"ab");
  EXPECT_EQ(Append(buffer, error).number, 13);
  SAFEARRAY* array = SafeArrayCreateVector(VT_I4, 0, 2);
  VARIANT numbers{};
  numbers.vt = VT_ARRAY | VT_I4;
  numbers.parray = array;
  EXPECT_EQ(Append(buffer, numbers).number, 13);
  EXPECT_NE(Append(buffer, ByReference(VT_VARIANT, &error)), kDone);
  VARIANT missing = Missing();
  Buffer same;
  EXPECT_EQ(buffer->Append(&missing, same.Receive()), DISP_E_PARAMNOTOPTIONAL);
  EXPECT_EQ(buffer->Append(nullptr, same.Receive()), E_POINTER);
  SafeArrayDestroy(array);
  EXPECT_EQ(ValueOf(buffer), u"ab");
}

TEST(StringBuffer, AppendedTextsOfEverySizeAreNarrowedWhole) {
  for (std::size_t size = 0; size <= 140; ++size) {
    for (const std::size_t special : {std::size_t{0}, size / 2, size - 1, size}) {
      Text text;
      for (std::size_t i = 0; i < size; ++i) text += static_cast<char16_t>(u'!' + i % 90);
      if (special < size) text[special] = u'\u20ac';
      const Buffer buffer = BufferOf(u"-");
      ASSERT_EQ(Append(buffer, text), kDone);
      ASSERT_EQ(ValueOf(buffer), u"-" + text) << size << " " << special;
    }
  }
}

TEST(StringBuffer, AppendsItselfAndChains) {
  const Buffer buffer = BufferOf(Text(200, u'x'));
  Buffer first;
  Buffer second;
  VARIANT self = ObjectValue(buffer.get());
  ASSERT_EQ(buffer->Append(&self, first.Receive()), S_OK);
  ASSERT_EQ(first->Append(&self, second.Receive()), S_OK);
  EXPECT_EQ(second.get(), buffer.get());
  EXPECT_EQ(ValueOf(buffer), Text(800, u'x'));
  EXPECT_EQ(SizeOf(buffer), 800);
}

TEST(StringBuffer, CopyIsIndependentAndAsLargeAsItsContent) {
  const Buffer buffer = BufferOf(Text(1000, u'a'));
  ASSERT_EQ(SetBufferSize(buffer, 5000), kDone);
  Buffer copy;
  ASSERT_EQ(buffer->Copy(copy.Receive()), S_OK);
  EXPECT_EQ(SizeOf(copy), 1000);
  ASSERT_EQ(Append(copy, u"b"), kDone);
  ASSERT_EQ(buffer->put_Char(1, 'c'), S_OK);
  EXPECT_EQ(ValueOf(copy), Text(1000, u'a') + u"b");
  EXPECT_EQ(LengthOf(buffer), 1000);
  ASSERT_EQ(BufferOf(u"ab")->Copy(copy.Receive()), S_OK);
  EXPECT_EQ(SizeOf(copy), 256);
}

TEST(StringBuffer, TrimToNullMissesTheFirstByteAndIsOneShort) {
  const Buffer buffer = BufferOf(u"abc");
  LONG length = -1;
  EXPECT_EQ(buffer->TrimToNull(&length), S_OK);
  EXPECT_EQ(length, 2);
  EXPECT_EQ(ValueOf(buffer), u"ab");
  ASSERT_EQ(SetBufferSize(buffer, 4), kDone);
  ASSERT_EQ(SetValue(buffer, u"\u0001bcde"), kDone);  // grows to 5
  ASSERT_EQ(buffer->put_Char(1, 0), S_OK);
  ASSERT_EQ(buffer->put_Char(6, 'f'), S_OK);
  EXPECT_EQ(buffer->TrimToNull(&length), S_OK);
  EXPECT_EQ(length, 5);
  ASSERT_EQ(buffer->put_Char(2, 0), S_OK);
  EXPECT_EQ(buffer->TrimToNull(&length), S_OK);
  EXPECT_EQ(length, 0);
}

TEST(StringBuffer, ExhaustedMemoryIsError7AndChangesNothing) {
  const Buffer buffer = BufferOf(u"content");
  // Large enough to be a block of its own, so that no region has room for it.
  const Buffer large = BufferOf(Text(100000, u'l'));
  {
    const ExhaustedLowMemory exhausted;
    EXPECT_EQ(SetBufferSize(buffer, 100000), kNoMemory);
    EXPECT_EQ(SetLength(buffer, 100000), kNoMemory);
    EXPECT_EQ(Append(buffer, Text(100000, u'a')), kNoMemory);
    EXPECT_EQ(Append(buffer, ObjectValue(large.get())), kNoMemory);
    BSTR text = NewBstr(Text(100000, u'\u4e2d'));
    EXPECT_EQ(OutcomeOf(buffer->put_Value(&text)), kNoMemory);
    EXPECT_EQ(text[0], u'\u4e2d');
    SysFreeString(text);
    Buffer copy;
    EXPECT_EQ(OutcomeOf(large->Copy(copy.Receive())), kNoMemory);
    EXPECT_EQ(copy.get(), nullptr);
  }
  EXPECT_EQ(SetBufferSize(buffer, 2147483647), kNoMemory);
  EXPECT_EQ(SetLength(buffer, 2147483647), kNoMemory);
  EXPECT_EQ(ValueOf(buffer), u"content");
  EXPECT_EQ(SizeOf(buffer), 256);
}

#if defined(__SANITIZE_ADDRESS__)
TEST(StringBuffer, TheSanitizerSeesTheEndOfEverySize) {
  const Buffer buffer = NewObject<_classString>();
  const auto expect_end = [&](LONG size) {
    const char* const bytes = BytesOf(buffer);
    EXPECT_FALSE(__asan_address_is_poisoned(bytes + size)) << size;
    EXPECT_TRUE(__asan_address_is_poisoned(bytes + size + 1)) << size;
  };
  expect_end(256);
  for (LONG size = 257; size < 70000; size += size / 7) {  // growing by appending
    EXPECT_EQ(Append(buffer, Text(static_cast<std::size_t>(size - LengthOf(buffer)), u'a')), kDone);
    expect_end(size);
  }
  for (const LONG size : {60000, 20000, 15000, 300, 299, 1, 0}) {
    EXPECT_EQ(SetLength(buffer, size), kDone);
    EXPECT_EQ(SetBufferSize(buffer, size), kDone);
    expect_end(size);
  }
}
#endif

// What one costs beside its bytes: the object, and what its block rounds up to.
TEST(StringBuffer, NewOneCostsLittleMoreThanItsBytes) {
  constexpr std::size_t kMany = 1000;
  std::vector<Buffer> buffers(kMany);
  std::vector<const char*> places(kMany);
  const auto before = mallinfo2().uordblks;
  for (Buffer& buffer : buffers) buffer = NewObject<_classString>();
  const auto objects = (mallinfo2().uordblks - before) / kMany;
  for (std::size_t i = 0; i < kMany; ++i) places[i] = BytesOf(buffers[i]);
  std::ranges::sort(places);
  std::ptrdiff_t apart = places[1] - places[0];
  for (std::size_t i = 1; i < kMany; ++i) apart = std::min(apart, places[i] - places[i - 1]);
  EXPECT_LE(objects + static_cast<std::size_t>(apart), 257u + 200u);
}

TEST(StringBuffer, ValueIsTheDefaultMember) {
  const VARIANT object = ObjectValue(BufferOf(u"abc").Detach());
  BstrHandle text;
  EXPECT_EQ(OxTextOf(&object, text.Receive()), S_OK);
  EXPECT_EQ(text.View(), u"abc");
  object.pdispVal->Release();
}

}  // namespace
}  // namespace Orvix::testing
