// The catalogue of real directories.
#include <gtest/gtest.h>
#include <utime.h>

#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::RunProgram;
using testing_support::RunWithoutReader;
using testing_support::ScratchDirectory;

class CatalogueTest : public ::testing::Test {
 protected:
  void SetUp() override { setenv("TZ", "UTC0", 1); }

  // `time`: seconds since 1970, UTC.
  void Put(const std::string& name, const std::string& content, time_t time) const {
    const auto path = scratch_.Path() / name;
    std::ofstream(path, std::ios::binary) << content;
    const utimbuf times{time, time};
    ASSERT_EQ(utime(path.c_str(), &times), 0);
  }
  [[nodiscard]] ProgramResult List(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), scratch_.Path().string());
    return RunProgram("catalogue", options);
  }
  void PutThree() const {
    Put("b.TXT", "12345", 1038650400);            // 2002-11-30 10:00:00
    Put("a.txt", "1", 1036108800);                // 2002-11-01 00:00:00
    Put("C.tar.gz", "123456789012", 1000000000);  // 2001-09-09 01:46:40
  }

  ScratchDirectory scratch_;
};

TEST_F(CatalogueTest, LaysNamesOutInColumns) {
  PutThree();
  const ProgramResult result = List();
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.err, "");
  EXPECT_EQ(result.out,
            "Name   Extension  Size  Date\n"
            "a      txt           1  2002-11-01 00:00:00\n"
            "b      txt           5  2002-11-30 10:00:00\n"
            "C.tar  gz           12  2001-09-09 01:46:40\n"
            "3 files\n");
}

// The first column of each line between heading and summary.
std::string Names(const ProgramResult& result) {
  std::istringstream lines(result.out);
  std::vector<std::string> names;
  for (std::string line; std::getline(lines, line);) names.push_back(line.substr(0, line.find(' ')));
  std::string joined;
  for (std::size_t i = 1; i + 1 < names.size(); ++i) joined += (i > 1 ? " " : "") + names[i];
  return joined;
}

TEST_F(CatalogueTest, SortsAndFilters) {
  PutThree();
  EXPECT_EQ(Names(List({"--sort", "name"})), "C.tar a b");
  EXPECT_EQ(Names(List({"--descending"})), "b a C.tar");
  EXPECT_EQ(Names(List({"--sort=date"})), "C.tar a b");
  EXPECT_EQ(Names(List({"--sort", "date", "--descending"})), "b a C.tar");
  EXPECT_EQ(Names(List({"--mask", "*.txt"})), "a b");
  EXPECT_EQ(Names(List({"--from", "2002-11-01"})), "a b");
  EXPECT_EQ(Names(List({"--to", "2002-11-30"})), "a C.tar");
  EXPECT_EQ(Names(List({"--from", "2002-11-01", "--to", "2002-11-30 10:00"})), "a b");
}

TEST_F(CatalogueTest, EmptyListIsSortedWithoutHanging) {
  const ProgramResult result = List({"--sort", "name", "--mask", "*.none"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.out, "0 files\n");
}

TEST_F(CatalogueTest, DirectoriesInPlaceOfFiles) {
  PutThree();
  std::filesystem::create_directory(scratch_.Path() / "sub.dir");
  std::filesystem::create_directory(scratch_.Path() / ".cache");
  EXPECT_EQ(Names(List({"--directories"})), "sub.dir");
  EXPECT_EQ(Names(List({"--directories", "--hidden"})), ".cache sub.dir");
}

TEST_F(CatalogueTest, UnusualNamesKeepTheirRow) {
  Put(".profile", "", 1000000000);
  Put("a:b.txt", "1", 1000000000);
  Put("new\nline", "1", 1000000000);
  Put("\xC3\xBC.txt", "1", 1000000000);
  const ProgramResult result = List({"--hidden"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_NE(result.out.find("\n.profile  "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("\na:b.txt   "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("\nnew?line  "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("\n\xC3\xBC         txt "), std::string::npos) << result.out;
  EXPECT_NE(result.out.find("\n4 files\n"), std::string::npos) << result.out;
}

TEST_F(CatalogueTest, RelativeNamesStartAtTheProcessDirectory) {
  Put("x.y", "", 1000000000);
  const auto before = std::filesystem::current_path();
  std::filesystem::current_path(scratch_.Path());
  const ProgramResult result = RunProgram("catalogue", {"."});
  std::filesystem::current_path(before);
  EXPECT_EQ(Names(result), "x") << result;
}

TEST_F(CatalogueTest, MissingDirectoryIsAFailure) {
  const ProgramResult result = RunProgram("catalogue", {(scratch_.Path() / "none").string()});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.out, "");
  EXPECT_EQ(result.err, "catalogue: there is no directory " + (scratch_.Path() / "none").string() + "\n");
}

TEST_F(CatalogueTest, MistakesExitWithTwo) {
  const std::vector<std::vector<std::string>> mistakes = {
      {"--sort", "size"}, {"--sort"},     {"--mask", "a/b"},  {"--mask", ""},
      {"other"},          {"--nonsense"}, {"--from", "soon"}, {"--directories", "--mask", "*.txt"}};
  for (const auto& options : mistakes) {
    const ProgramResult result = List(options);
    EXPECT_EQ(result.status, 2) << options.front() << "\n" << result;
    EXPECT_NE(result.err.find("\"catalogue --help\" shows what to type."), std::string::npos) << result;
  }
  EXPECT_EQ(RunProgram("catalogue", {}).status, 2);
}

TEST_F(CatalogueTest, HelpAndClosedPipe) {
  const ProgramResult help = RunProgram("catalogue", {"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Usage: catalogue [OPTIONS] DIRECTORY"), std::string::npos);
  PutThree();
  const ProgramResult unread = RunWithoutReader("catalogue", {scratch_.Path().string()});
  EXPECT_EQ(unread.status, 0);
  EXPECT_EQ(unread.err, "");
}

}  // namespace
}  // namespace Orvix
