// The catalogue's table in a file.
#include <gtest/gtest.h>
#include <utime.h>

#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::ReadWhole;
using testing_support::RunProgram;
using testing_support::ScratchDirectory;

class CatalogueOutputTest : public ::testing::Test {
 protected:
  void SetUp() override { setenv("TZ", "UTC0", 1); }

  void Put(const std::string& name) const {
    const auto path = source_.Path() / name;
    std::ofstream(path, std::ios::binary) << "12345";
    const utimbuf times{1038650400, 1038650400};  // 2002-11-30 10:00:00
    ASSERT_EQ(utime(path.c_str(), &times), 0);
  }
  [[nodiscard]] std::filesystem::path File() const { return target_.Path() / "list.txt"; }
  [[nodiscard]] ProgramResult Store(const std::string& file) const {
    return RunProgram("catalogue", {source_.Path().string(), "--output", file});
  }

  ScratchDirectory source_;
  ScratchDirectory target_;
};

TEST_F(CatalogueOutputTest, FileHoldsTheTableAndNothingIsPrinted) {
  Put("report.txt");
  std::ofstream(File()) << std::string(1000, 'x');  // longer than the table: replaced, not overwritten in part
  const ProgramResult result = Store(File().string());
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(ReadWhole(File()),
            "Name    Extension  Size  Date\n"
            "report  txt           5  2002-11-30 10:00:00\n"
            "1 file\n");
}

TEST_F(CatalogueOutputTest, MissingDirectoriesAreMadeAndRelativeNamesStartAtTheProcessDirectory) {
  Put("a.b");
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(target_.Path());
  const ProgramResult result = Store("new/deep/list.txt");
  std::filesystem::current_path(before);
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(ReadWhole(target_.Path() / "new" / "deep" / "list.txt"),
            "Name  Extension  Size  Date\n"
            "a     b             5  2002-11-30 10:00:00\n"
            "1 file\n");
}

TEST_F(CatalogueOutputTest, TheTableIsUtf8AndColumnsStayInLine) {
  Put("\xC3\xBC\xE2\x82\xAC.txt");      // u with two dots, euro sign
  Put("\xE6\x97\xA5\xE6\x9C\xAC.txt");  // two characters
  Put("\xF0\x9F\x98\x80.txt");          // one character of two code units
  Put("plain.txt");
  const ProgramResult result = Store(File().string());
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.err, "");
  const std::string table = ReadWhole(File());
  for (const char* line :
       {"\nplain  txt           5  2002", "\n\xC3\xBC\xE2\x82\xAC     txt           5  2002",
        "\n\xE6\x97\xA5\xE6\x9C\xAC     txt           5  2002", "\n\xF0\x9F\x98\x80      txt           5  2002"}) {
    EXPECT_NE(table.find(line), std::string::npos) << line << table;
  }
}

TEST_F(CatalogueOutputTest, WhatCannotBeWrittenIsAFailure) {
  Put("a.b");
  std::ofstream(target_.Path() / "file") << "kept";
  const ProgramResult below_a_file = Store((target_.Path() / "file" / "list.txt").string());
  EXPECT_EQ(below_a_file.status, 1);
  EXPECT_EQ(below_a_file.err, "catalogue: Error 76 (Orvix.classOrvix): Path not found\n");
  EXPECT_EQ(ReadWhole(target_.Path() / "file"), "kept");
  const ProgramResult a_directory = Store(source_.Path().string());
  EXPECT_EQ(a_directory.status, 1);
  EXPECT_EQ(a_directory.err, "catalogue: Error 75 (Orvix.classOrvix): Path/File access error\n");
  const ProgramResult full = Store("/dev/full");
  EXPECT_EQ(full.status, 1);
  EXPECT_EQ(full.err, "catalogue: Error 61 (Orvix.classOrvix): Disk full\n");
}

TEST_F(CatalogueOutputTest, NamesOfNoFileExitWithTwo) {
  for (const char* name : {"", "new/"}) {
    const ProgramResult result = Store(name);
    EXPECT_EQ(result.status, 2) << name;
    EXPECT_EQ(result.err, "catalogue: --output: takes the name of a file, not \"" + std::string(name) +
                              "\". \"catalogue --help\" shows what to type.\n");
  }
}

}  // namespace
}  // namespace Orvix
