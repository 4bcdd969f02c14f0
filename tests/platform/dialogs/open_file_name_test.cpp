#include <gmock/gmock.h>

#include <cstring>

#include "orvix/host.h"
#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "platform/names/text_behind.h"
#include "support/recording_host.h"
#include "support/stand_in_desktop.h"

namespace {

using Orvix::testing::Desktop;
using ::testing::ElementsAre;

// The 76 bytes and the texts behind them, which stay until the end of the test.
class OpenFileNameTest : public ::testing::Test {
 protected:
  OpenFileNameTest() {
    Put32(0, 76);
    const std::string start = Directory();
    Put32(44, Low(start));
  }
  ~OpenFileNameTest() override {
    for (char* const block : blocks_) OxLowFree(block);
  }
  // The test's files as an ANSI name; nothing in it needs a conversion.
  [[nodiscard]] std::string Directory() const { return Orvix::ToUtf8(desktop_.files.Name(u"")); }
  char* LowText(const std::string& text) {
    auto* const block = static_cast<char*>(OxLowAlloc(text.size() + 1));
    std::memcpy(block, text.c_str(), text.size() + 1);
    blocks_.push_back(block);
    return block;
  }
  uint32_t Low(const std::string& text) {
    return static_cast<uint32_t>(reinterpret_cast<std::uintptr_t>(LowText(text)));
  }
  void Put32(std::size_t offset, uint32_t value) { std::memcpy(record_ + offset, &value, 4); }
  [[nodiscard]] int Get16(std::size_t offset) const {
    uint16_t value = 0;
    std::memcpy(&value, record_ + offset, 2);
    return value;
  }
  void SetBuffer(const std::string& content, uint32_t length) {
    buffer_ = LowText(content);
    Put32(28, static_cast<uint32_t>(reinterpret_cast<std::uintptr_t>(buffer_)));
    Put32(32, length);
  }

  Desktop desktop_;
  std::vector<char*> blocks_;
  alignas(4) unsigned char record_[77]{};
  char* buffer_ = nullptr;
};

TEST_F(OpenFileNameTest, WritesThePathAndKeepsTheRestOfTheBuffer) {
  desktop_.InstallAnswer("zenity", "/n/a b.tar.gz\n");
  SetBuffer("start" + std::string(40, ' '), 45);
  char* const title = LowText(std::string(20, ' '));
  Put32(36, static_cast<uint32_t>(reinterpret_cast<std::uintptr_t>(title)));
  Put32(40, 20);
  Put32(48, Low("Pick\xE4"));
  Put32(12, Low(std::string("Text\0*.1;*.2\0All\0*\0", 19)));
  Put32(24, 2);
  ASSERT_EQ(GetOpenFileNameA(record_), 1);
  EXPECT_EQ(CommDlgExtendedError(), 0u);
  EXPECT_EQ(std::string(buffer_, 45), std::string("Z:\\n\\a b.tar.gz") + '\0' + std::string(29, ' '));
  EXPECT_EQ(Get16(56), 5);
  EXPECT_EQ(Get16(58), 13);
  EXPECT_EQ(std::string(title, 20), std::string("a b.tar.gz") + '\0' + std::string(9, ' '));
  EXPECT_THAT(desktop_.Words(), ElementsAre("zenity", "--file-selection", "--title=Pick\xC3\xA4",
                                            "--filename=" + desktop_.files.Native("start"), "--file-filter=All | *",
                                            "--file-filter=Text | *.1 *.2"));
}

TEST_F(OpenFileNameTest, AnEmptyBufferShowsNothing) {
  desktop_.InstallAnswer("zenity", "/n/a\n");
  SetBuffer(std::string(30, ' '), 0);
  EXPECT_EQ(GetOpenFileNameA(record_), 0);
  EXPECT_EQ(CommDlgExtendedError(), 0x3003u);
  EXPECT_FALSE(desktop_.WasShown());
  EXPECT_EQ(std::string(buffer_), std::string(30, ' '));
}

TEST_F(OpenFileNameTest, NeedsRoomForThePathAndItsNul) {
  desktop_.InstallAnswer("zenity", "/n/a\n");  // Z:\n\a and a NUL
  SetBuffer(std::string(7, ' '), 7);
  EXPECT_EQ(GetOpenFileNameA(record_), 1);
  SetBuffer(std::string(7, ' '), 6);
  EXPECT_EQ(GetOpenFileNameA(record_), 0);
  EXPECT_EQ(CommDlgExtendedError(), 0x3003u);
  EXPECT_EQ(std::string(buffer_, 7), std::string("\x07\0     ", 7));
}

TEST_F(OpenFileNameTest, ReadsTheOfferedNameNoFurtherThanItsRoom) {
  desktop_.InstallAnswer("zenity", "", 1);
  SetBuffer("ab  cd", 5);
  EXPECT_EQ(GetOpenFileNameA(record_), 0);
  EXPECT_EQ(CommDlgExtendedError(), 0u);
  EXPECT_EQ(std::string(buffer_), "ab  cd");
  EXPECT_EQ(desktop_.Words().back(), "--filename=" + desktop_.files.Native("ab  c"));
}

// Services that get the bytes from there know the name behind them.
TEST_F(OpenFileNameTest, GivesNamesOutsideTheCodePage) {
  desktop_.InstallAnswer("zenity", "/n/\xCE\xB1\n");
  SetBuffer(std::string(30, ' '), 30);
  EXPECT_EQ(GetOpenFileNameA(record_), 1);
  EXPECT_EQ(CommDlgExtendedError(), 0u);
  EXPECT_EQ(std::string(buffer_), "Z:\\n\\?");
  EXPECT_EQ(Orvix::TextBehind(buffer_), u"Z:\\n\\\u03B1");
}

TEST_F(OpenFileNameTest, RefusesARecordOfAnotherSize) {
  desktop_.InstallAnswer("zenity", "/n/a\n");
  SetBuffer(std::string(30, ' '), 30);
  Put32(0, 88);
  EXPECT_EQ(GetOpenFileNameA(record_), 0);
  EXPECT_EQ(CommDlgExtendedError(), 1u);
  EXPECT_EQ(GetOpenFileNameA(nullptr), 0);
  EXPECT_EQ(CommDlgExtendedError(), 2u);
  EXPECT_FALSE(desktop_.WasShown());
}

struct OffsetCase {
  const char* label;
  std::string chosen;  // below the test's files
  std::string result;
  int extension;  // behind the start of the name, -1 for none
};
class OffsetTest : public OpenFileNameTest, public ::testing::WithParamInterface<OffsetCase> {};

TEST_P(OffsetTest, PointIntoThePath) {
  desktop_.files.Write("there", "");
  desktop_.InstallAnswer("zenity", desktop_.files.Native(GetParam().chosen));
  SetBuffer(std::string(200, ' '), 200);
  Put32(60, Low("texts"));
  ASSERT_EQ(GetOpenFileNameA(record_), 1);
  const std::string directory = Directory() + "\\";
  EXPECT_EQ(std::string(buffer_), directory + GetParam().result);
  const int start = static_cast<int>(directory.size());
  EXPECT_EQ(Get16(56), start);
  EXPECT_EQ(Get16(58), GetParam().extension < 0 ? 0 : start + GetParam().extension);
}

INSTANTIATE_TEST_SUITE_P(Extensions, OffsetTest,
                         ::testing::Values(OffsetCase{"There", "there", "there", -1},
                                           OffsetCase{"Missing", "miss", "miss.tex", 5},
                                           OffsetCase{"DotAtTheEnd", "miss.", "miss.", 5},
                                           OffsetCase{"Own", "a.b.c", "a.b.c", 4}),
                         [](const auto& tested) { return tested.param.label; });

TEST_F(OpenFileNameTest, SeveralFilesFollowTheirDirectory) {
  desktop_.InstallAnswer("zenity", "/n/a//n/b.c\n");
  SetBuffer(std::string(20, ' '), 14);
  Put32(52, 0x200);
  ASSERT_EQ(GetOpenFileNameA(record_), 1);
  EXPECT_EQ(std::string(buffer_, 14), std::string("Z:\\n\0a\0b.c\0\0  ", 14));
  EXPECT_EQ(Get16(56), 5);
  desktop_.InstallAnswer("zenity", "/a//b\n");
  SetBuffer(std::string(20, ' '), 14);
  ASSERT_EQ(GetOpenFileNameA(record_), 1);
  EXPECT_EQ(std::string(buffer_, 10), std::string("Z:\\\0a\0b\0\0 ", 10));
  desktop_.InstallAnswer("zenity", "/n/a//n/d/b\n");
  EXPECT_EQ(GetOpenFileNameA(record_), 0);
  EXPECT_EQ(CommDlgExtendedError(), 0x3002u);
}

TEST_F(OpenFileNameTest, AHostTakesTheCallOver) {
  desktop_.InstallAnswer("zenity", "/n/a\n");
  EXPECT_EQ(GetOpenFileNameA(nullptr), 0);  // leaves a failure behind
  OxHost table{};
  void* seen = nullptr;
  table.context = &seen;
  table.GetOpenFileNameA = [](void* context, void* request) -> LONG {
    *static_cast<void**>(context) = request;
    return 7;
  };
  const Orvix::testing::RecordingHost host(table);
  EXPECT_EQ(GetOpenFileNameA(record_), 7);
  EXPECT_EQ(seen, record_);
  EXPECT_EQ(CommDlgExtendedError(), 0u);
  EXPECT_FALSE(desktop_.WasShown());
}

}  // namespace
