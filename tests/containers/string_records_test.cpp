// The text buffer written to and read from binary files.
#include <fstream>
#include <iterator>

#include "tests/containers/text_buffer.h"
#include "tests/support/exhausted_low_memory.h"
#include "tests/support/native_directory.h"

namespace Orvix::testing {
namespace {

class StringRecord : public ::testing::Test {
 protected:
  static constexpr SHORT kFile = 7;

  ~StringRecord() override { Close(kFile); }
  void OpenFile() { ASSERT_EQ(Open(directory_.Name(u"\\record"), kFile, kOxModeBinary), 0); }
  void OpenOn(const std::string& bytes) {
    directory_.Write("record", bytes);
    OpenFile();
  }
  std::string Written() {
    Close(kFile);
    std::ifstream file(directory_.Native("record"), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static Outcome Write(const Buffer& buffer, VARIANT_BOOL prefix, SHORT file = kFile) {
    return OutcomeOf(buffer->WriteToFile(file, &prefix));
  }
  static Outcome Read(const Buffer& buffer, VARIANT_BOOL prefix, SHORT file = kFile) {
    return OutcomeOf(buffer->ReadFromFile(file, &prefix));
  }
  NativeDirectory directory_;
};

TEST_F(StringRecord, HoldsLengthContentAndOneByteMore) {
  const Buffer buffer = BufferOf(u"abcXYZ");
  ASSERT_EQ(SetLength(buffer, 3), kDone);
  OpenFile();
  ASSERT_EQ(Write(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(ByteAt(buffer, 4), 'X');
  EXPECT_EQ(ByteAt(buffer, 5), 0);  // what follows the record is gone
  EXPECT_EQ(ByteAt(buffer, 257), 0);
  EXPECT_EQ(SizeOf(buffer), 256);
  ASSERT_EQ(OutcomeOf(buffer->WriteToFile(kFile, nullptr)), kDone);
  ASSERT_EQ(Write(NewObject<_classString>(), 1), kDone);
  EXPECT_EQ(Written(), std::string("\3\0\0\0abcX"
                                   "abcX"
                                   "\0\0\0\0\0",
                                   17));
}

TEST_F(StringRecord, ReadsBackOneAfterAnother) {
  OpenFile();
  ASSERT_EQ(Write(BufferOf(u"abc"), VARIANT_TRUE), kDone);
  ASSERT_EQ(Write(BufferOf(Text(1000, u'x')), VARIANT_TRUE), kDone);
  ASSERT_EQ(NumberOf(OxSeekFile(kFile, 1)), 0);
  const Buffer buffer = BufferOf(u"0123456789");
  ASSERT_EQ(Read(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(ValueOf(buffer), u"abc");
  EXPECT_EQ(ByteAt(buffer, 5), 0);  // the old content after the record is gone
  EXPECT_EQ(SizeOf(buffer), 256);
  ASSERT_EQ(Read(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(ValueOf(buffer), Text(1000, u'x'));
  EXPECT_EQ(SizeOf(buffer), 1000);
}

TEST_F(StringRecord, WithoutPrefixTheLengthSaysHowMuch) {
  OpenOn("abcdefgh");
  const Buffer buffer = NewObject<_classString>();
  ASSERT_EQ(SetLength(buffer, 3), kDone);
  ASSERT_EQ(Read(buffer, VARIANT_FALSE), kDone);
  EXPECT_EQ(ValueOf(buffer), u"abc");
  EXPECT_EQ(ByteAt(buffer, 4), 'd');
  ASSERT_EQ(Read(buffer, VARIANT_FALSE), kDone);
  EXPECT_EQ(ValueOf(buffer), u"efg");
}

TEST_F(StringRecord, CutRecordLeavesWhatTheFileLacks) {
  OpenOn(std::string("\x2c\1\0\0ab", 6));  // 300, and two bytes
  const Buffer buffer = BufferOf(u"0123");
  ASSERT_EQ(Read(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(LengthOf(buffer), 300);
  EXPECT_EQ(SizeOf(buffer), 300);
  EXPECT_EQ(std::string(BytesOf(buffer), 6), std::string("ab23\0\0", 6));
  ASSERT_EQ(Read(buffer, VARIANT_TRUE), kDone);  // at the end of the file
  EXPECT_EQ(LengthOf(buffer), 300);
  EXPECT_EQ(ByteAt(buffer, 4), '3');
}

TEST_F(StringRecord, ImpossiblePrefixIsError9) {
  for (const char* prefix : {"\xff\xff\xff\xff", "\0\0\0\x80", "\xff\xff\xff\x7f", "\0\0\xff\x7f", "\0\0\0\x70"}) {
    OpenOn(std::string(prefix, 4) + "some content");
    const Buffer buffer = BufferOf(u"kept");
    EXPECT_EQ(Read(buffer, VARIANT_TRUE), kOutside);
    EXPECT_EQ(ValueOf(buffer), u"kept");
    EXPECT_EQ(SizeOf(buffer), 256);
    Close(kFile);
  }
}

TEST_F(StringRecord, PartOfAPrefixIsError9) {
  for (const std::size_t bytes : {1U, 2U, 3U}) {
    OpenOn(std::string(bytes, '\1'));
    const Buffer buffer = BufferOf(u"kept");
    EXPECT_EQ(Read(buffer, VARIANT_TRUE), kOutside) << bytes;
    EXPECT_EQ(ValueOf(buffer), u"kept");
    EXPECT_EQ(SizeOf(buffer), 256);
    Close(kFile);
  }
}

TEST_F(StringRecord, TooLittleMemoryIsError7) {
  OpenOn(std::string("\x70\x11\1\0", 4) + std::string(70001, 'x'));  // 70000
  const Buffer buffer = BufferOf(u"kept");
  {
    const ExhaustedLowMemory exhausted;
    EXPECT_EQ(Read(buffer, VARIANT_TRUE), kNoMemory);
  }
  const Buffer shrunk = BufferOf(Text(100000, u's'));
  ASSERT_EQ(SetBufferSize(shrunk, 300), kDone);
  {
    const ExhaustedLowMemory exhausted;
    EXPECT_EQ(Write(shrunk, VARIANT_TRUE), kNoMemory);
    EXPECT_EQ(Read(shrunk, VARIANT_FALSE), kNoMemory);  // its own length, whatever the file has
  }
  EXPECT_EQ(LengthOf(shrunk), 100000);
  EXPECT_EQ(SizeOf(shrunk), 300);
  EXPECT_EQ(ByteAt(shrunk, 301), 's');
  EXPECT_EQ(ValueOf(buffer), u"kept");
  ASSERT_EQ(NumberOf(OxSeekFile(kFile, 1)), 0);
  EXPECT_EQ(Read(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(ValueOf(buffer), Text(70000, u'x'));
}

TEST_F(StringRecord, FileErrorsPassAndChangeNothing) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetLength(buffer, 3), kDone);
  const Outcome bad_number{52, u"Orvix.classString", u"Bad file name or number"};
  const Outcome bad_mode{54, u"Orvix.classString", u"Bad file mode"};
  for (const VARIANT_BOOL prefix : {VARIANT_TRUE, VARIANT_FALSE}) {
    EXPECT_EQ(Write(buffer, prefix, 99), bad_number);
    EXPECT_EQ(Read(buffer, prefix, 99), bad_number);
    EXPECT_EQ(Read(buffer, prefix, -1), bad_number);
    ASSERT_EQ(Open(directory_.Name(u"\\text"), kFile, kOxModeOutput), 0);
    EXPECT_EQ(Write(buffer, prefix), bad_mode);
    EXPECT_EQ(Read(buffer, prefix), bad_mode);
    Close(kFile);
  }
  directory_.Write("record", "1234567890");
  for (const VARIANT_BOOL prefix : {VARIANT_TRUE, VARIANT_FALSE}) {
    ASSERT_EQ(Open(directory_.Name(u"\\record"), kFile, kOxModeBinary, kOxAccessRead), 0);
    EXPECT_EQ(Write(buffer, prefix).number, 75);
    Close(kFile);
    EXPECT_EQ(Write(buffer, prefix), bad_number);  // closed in between
    ASSERT_EQ(Open(directory_.Name(u"\\record"), kFile, kOxModeBinary, kOxAccessWrite), 0);
    EXPECT_EQ(Read(buffer, prefix).number, 75);
    Close(kFile);
    EXPECT_EQ(Read(buffer, prefix), bad_number);
  }
  EXPECT_EQ(Written(), "1234567890");
  EXPECT_EQ(ValueOf(buffer), u"abc");
  EXPECT_EQ(ByteAt(buffer, 5), 'e');
  EXPECT_EQ(SizeOf(buffer), 256);
}

TEST_F(StringRecord, AShrunkBufferGetsItsSizeBack) {
  const Buffer buffer = BufferOf(u"abcdef");
  ASSERT_EQ(SetBufferSize(buffer, 3), kDone);
  EXPECT_EQ(Write(buffer, VARIANT_TRUE, 99).number, 52);
  EXPECT_EQ(SizeOf(buffer), 3);
  OpenFile();
  ASSERT_EQ(Write(buffer, VARIANT_TRUE), kDone);
  EXPECT_EQ(SizeOf(buffer), 3);
  ASSERT_EQ(NumberOf(OxSeekFile(kFile, 5)), 0);
  ASSERT_EQ(Read(buffer, VARIANT_FALSE), kDone);
  EXPECT_EQ(LengthOf(buffer), 6);
  EXPECT_EQ(SizeOf(buffer), 3);
  EXPECT_EQ(ByteAt(buffer, 4), 'd');
  EXPECT_EQ(Written(), std::string("\6\0\0\0abcd\0\0\0", 11));
}

}  // namespace
}  // namespace Orvix::testing
