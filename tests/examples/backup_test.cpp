// Backups of real directories: what is chosen, where it goes, what is refused.
#include <gtest/gtest.h>
#include <utime.h>

#include <algorithm>
#include <ctime>
#include <fstream>

#include "support/run_program.h"

namespace Orvix {
namespace {

namespace fs = std::filesystem;
using testing_support::ProgramResult;
using testing_support::ReadWhole;
using testing_support::RunProgram;
using testing_support::RunWithoutReader;
using testing_support::ScratchDirectory;

std::string Today() {
  const std::time_t now = std::time(nullptr);
  char text[32];
  std::strftime(text, sizeof text, "%Y-%m-%d", std::localtime(&now));
  return text;
}

// The files below a directory, sorted, with a blank between.
std::string FilesBelow(const fs::path& directory) {
  std::vector<std::string> names;
  for (const auto& entry : fs::recursive_directory_iterator(directory)) {
    if (!entry.is_directory()) names.push_back(entry.path().lexically_relative(directory).string());
  }
  std::sort(names.begin(), names.end());
  std::string joined;
  for (const std::string& name : names) joined += (joined.empty() ? "" : " ") + name;
  return joined;
}

class BackupTest : public ::testing::Test {
 protected:
  void SetUp() override { setenv("TZ", "UTC0", 1); }

  // `time`: seconds since 1970, UTC.
  void Put(const std::string& name, const std::string& content = "x", time_t time = 1000000000) const {
    const auto path = source_.Path() / name;
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    const utimbuf times{time, time};
    ASSERT_EQ(utime(path.c_str(), &times), 0);
  }
  void PutThree() const {
    Put("b.TXT", "12345", 1038650400);            // 2002-11-30 10:00:00
    Put("a.txt", "1", 1036108800);                // 2002-11-01 00:00:00
    Put("C.tar.gz", "123456789012", 1000000000);  // 2001-09-09 01:46:40
    Put(".profile");
    Put("sub/deep/d.txt", "deep");
  }
  [[nodiscard]] ProgramResult Run(std::vector<std::string> options = {}) const {
    options.insert(options.begin(), {source_.Path().string(), target_.Path().string()});
    return RunProgram("backup", options);
  }
  // The one folder that was made; empty when there is none.
  [[nodiscard]] fs::path Folder() const {
    for (const auto& entry : fs::directory_iterator(target_.Path())) return entry.path();
    return {};
  }

  ScratchDirectory source_;
  ScratchDirectory target_;
};

TEST_F(BackupTest, CopiesContentAndTimeIntoAFolderOfToday) {
  PutThree();
  const std::string before = Today();
  const ProgramResult result = Run();
  const std::string after = Today();
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.err, "");
  const fs::path folder = Folder();
  EXPECT_TRUE(folder.filename() == before || folder.filename() == after) << folder;
  EXPECT_EQ(result.out, "3 files copied to " + folder.string() + "\n");
  EXPECT_EQ(FilesBelow(folder), "C.tar.gz a.txt b.TXT");
  EXPECT_EQ(ReadWhole(folder / "b.TXT"), "12345");
  EXPECT_EQ(fs::last_write_time(folder / "b.TXT"), fs::last_write_time(source_.Path() / "b.TXT"));
}

struct ChoiceCase {
  std::vector<std::string> options;
  std::string chosen;
};

TEST_F(BackupTest, MaskAndDatesChoose) {
  PutThree();
  const ChoiceCase cases[] = {
      {{"--mask", "*.txt"}, "a.txt b.TXT"},
      {{"--mask=C*"}, "C.tar.gz"},
      {{"--from", "2002-11-01"}, "a.txt b.TXT"},
      {{"--to", "2002-11-30"}, "C.tar.gz a.txt"},
      {{"--from", "2002-11-01 00:00:01", "--to", "2002-11-30 10:00"}, "b.TXT"},
      {{"--hidden"}, ".profile C.tar.gz a.txt b.TXT"},
      {{"--subdirectories", "--mask", "*.txt"}, "a.txt b.TXT sub/deep/d.txt"},
      {{"--subdirectories", "--mask", "d*"}, "sub/deep/d.txt"},
  };
  for (const ChoiceCase& c : cases) {
    const ProgramResult result = Run(c.options);
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_EQ(FilesBelow(Folder()), c.chosen) << c.options.front();
    fs::remove_all(Folder());
  }
}

TEST_F(BackupTest, SecondRunGetsAFolderOfItsOwn) {
  PutThree();
  ASSERT_EQ(Run().status, 0);
  const std::string first = Folder().string();
  Put("a.txt", "changed");
  const ProgramResult second = Run({"--mask", "a.txt"});
  EXPECT_EQ(second.out, "1 file copied to " + first + " (2)\n") << second;
  EXPECT_EQ(ReadWhole(first + "/a.txt"), "1");
  EXPECT_EQ(ReadWhole(first + " (2)/a.txt"), "changed");
  std::ofstream(first + " (3)") << "a file has the name too";
  EXPECT_EQ(Run({"--mask", "a.txt"}).out, "1 file copied to " + first + " (4)\n");
}

TEST_F(BackupTest, NothingChosenMakesNoFolder) {
  PutThree();
  const ProgramResult result = Run({"--mask", "*.none"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.out, "0 files chosen: nothing to copy\n");
  EXPECT_TRUE(fs::is_empty(target_.Path()));
}

TEST_F(BackupTest, DryRunShowsAndCopiesNothing) {
  PutThree();
  const ProgramResult result = Run({"--dry-run", "--subdirectories", "--mask", "*.txt"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_TRUE(
      result.out.starts_with("Name            Size  Date\n"
                             "a.txt              1  2002-11-01 00:00:00\n"
                             "b.TXT              5  2002-11-30 10:00:00\n"
                             "sub/deep/d.txt     4  2001-09-09 01:46:40\n"
                             "3 files would be copied to " +
                             target_.Path().string() + "/"))
      << result;
  EXPECT_TRUE(fs::is_empty(target_.Path()));
}

TEST_F(BackupTest, MissingDestinationIsMade) {
  Put("a.txt");
  const fs::path destination = target_.Path() / "new" / "deep";
  const ProgramResult result = RunProgram("backup", {source_.Path().string(), destination.string() + "/"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(FilesBelow(fs::directory_iterator(destination)->path()), "a.txt");
}

TEST_F(BackupTest, DestinationInsideTheSourceIsNotBackedUp) {
  Put("a.txt");
  Put("sub/b.txt");
  const std::string destination = (source_.Path() / "sub" / "backups").string();
  for (int run = 1; run <= 2; ++run) {
    const ProgramResult result = RunProgram("backup", {source_.Path().string(), destination, "--subdirectories"});
    EXPECT_EQ(result.status, 0) << result;
    EXPECT_TRUE(result.out.starts_with("2 files copied")) << result;
  }
  const std::string source = source_.Path().string();
  const ProgramResult into_itself = RunProgram("backup", {source, source + "/sub/..", "--subdirectories"});
  EXPECT_EQ(into_itself.status, 1);
  EXPECT_EQ(into_itself.err,
            "backup: with --subdirectories the destination must be another directory than the source\n");
}

TEST_F(BackupTest, NamesThatTheServiceCannotTakeAreLeftOutAloud) {
  Put("a.txt");
  Put("w?ld.txt");
  Put("wild.txt");
  Put("\xE6\x97\xA5.txt");
  Put("\xC3\xBC.txt");
  Put("st*r/b.txt");
  const ProgramResult result = Run({"--subdirectories"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(FilesBelow(Folder()), "a.txt wild.txt \xC3\xBC.txt \xE6\x97\xA5.txt");
  EXPECT_TRUE(result.out.starts_with("4 files copied to ")) << result;
  EXPECT_EQ(result.err,
            "backup: left out: w?ld.txt: the file service cannot take this name\n"
            "backup: left out: st*r/: the file service cannot take this name\n");
}

TEST_F(BackupTest, NamesOfEveryScriptArrive) {
  std::vector<std::string> names;
  for (const char* name : {"\u0141\u00F3d\u017A", "\u0395\u03BB\u03BB\u03AC\u03B4\u03B1",
                           "\u041C\u043E\u0441\u043A\u0432\u0430", "\u65E5\u672C\u8A9E", "\uD55C\uAD6D\uC5B4",
                           "\u05E2\u05D1\u05E8\u05D9\u05EA", "\u0627\u0644\u0639\u0631\u0628\u064A\u0629",
                           "\u0939\u093F\u0928\u094D\u0926\u0940", "\u0E44\u0E17\u0E22", "\U0001F600"}) {
    names.emplace_back(name);
  }
  std::vector<std::string> expected;
  for (const std::string& name : names) {
    Put(name + "/" + name + ".txt");
    expected.push_back(name + "/" + name + ".txt");
  }
  Put("latin \xE9.txt");  // no UTF-8
  expected.emplace_back("latin \xE9.txt");
  std::ranges::sort(expected);
  const ProgramResult result = Run({"--subdirectories"});
  EXPECT_EQ(result.status, 0) << result;
  std::string all;
  for (const std::string& name : expected) all += (all.empty() ? "" : " ") + name;
  EXPECT_EQ(FilesBelow(Folder()), all);
}

TEST_F(BackupTest, SourceOrDestinationThatTheServiceCannotTakeIsAFailure) {
  Put("w?ld/a.txt");
  const std::string lost = (source_.Path() / "w?ld").string();
  const ProgramResult from = RunProgram("backup", {lost, target_.Path().string()});
  EXPECT_EQ(from.status, 1);
  EXPECT_EQ(from.err, "backup: the file service cannot take the name " + lost + "\n");
  Put("a.txt");
  const ProgramResult to = RunProgram("backup", {source_.Path().string(), lost});
  EXPECT_EQ(to.status, 1);
  EXPECT_EQ(to.err, "backup: the file service cannot take the name " + lost + "\n");
  EXPECT_EQ(FilesBelow(lost), "a.txt");
  EXPECT_TRUE(fs::is_empty(target_.Path()));
}

TEST_F(BackupTest, NamesThatDifferOnlyInCaseBothArrive) {
  Put("read.me", "small");
  Put("README", "other");
  Put("READ.ME", "capitals");
  ASSERT_EQ(Run().status, 0);
  EXPECT_EQ(FilesBelow(Folder()), "READ.ME README read.me");
  EXPECT_EQ(ReadWhole(Folder() / "READ.ME"), "capitals");
  EXPECT_EQ(ReadWhole(Folder() / "read.me"), "small");
}

TEST_F(BackupTest, LinksAreCopiedAsLinksAndDirectoryLinksNotFollowed) {
  Put("a.txt");
  fs::create_symlink("a.txt", source_.Path() / "link");
  fs::create_directory_symlink("..", source_.Path() / "loop");
  const ProgramResult result = Run({"--subdirectories"});
  EXPECT_EQ(result.status, 0) << result;
  EXPECT_EQ(result.err, "backup: not followed, a link to a directory: loop\n");
  EXPECT_EQ(FilesBelow(Folder()), "a.txt link");
  EXPECT_EQ(fs::read_symlink(Folder() / "link"), "a.txt");
}

// The start of a process's memory cannot be read, whoever asks.
TEST_F(BackupTest, UnreadableFileKeepsNoOtherFromBeingCopied) {
  const ProgramResult result = RunProgram("backup", {"/proc/self", target_.Path().string(), "--mask", "m*"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "backup: could not copy mem\n");
  const std::string copied = " " + FilesBelow(Folder()) + " ";
  EXPECT_NE(copied.find(" maps "), std::string::npos) << copied;  // before it
  EXPECT_EQ(copied.find(" mem "), std::string::npos) << copied;
  EXPECT_NE(copied.find(" mounts "), std::string::npos) << copied;  // behind it
  const auto count = std::count(copied.begin(), copied.end(), ' ') - 1;
  EXPECT_EQ(result.out, std::to_string(count) + " files copied to " + Folder().string() + "\n");
}

TEST_F(BackupTest, FolderWithoutAnyCopyIsTakenAwayAgain) {
  const ProgramResult result = RunProgram("backup", {"/proc/self", target_.Path().string(), "--mask", "mem"});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "backup: could not copy mem\n");
  EXPECT_EQ(result.out, "0 files copied\n");
  EXPECT_TRUE(fs::is_empty(target_.Path()));
}

TEST_F(BackupTest, SourceThatIsNoDirectoryIsAFailure) {
  Put("a.txt");
  for (const char* name : {"none", "a.txt"}) {
    const std::string source = (source_.Path() / name).string();
    const ProgramResult result = RunProgram("backup", {source, target_.Path().string()});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_EQ(result.err, "backup: there is no directory " + source + "\n");
  }
}

TEST_F(BackupTest, DestinationThatIsAFileIsAFailure) {
  Put("a.txt");
  const std::string file = (target_.Path() / "file").string();
  std::ofstream(file) << "kept";
  const ProgramResult result = RunProgram("backup", {source_.Path().string(), file});
  EXPECT_EQ(result.status, 1);
  EXPECT_EQ(result.err, "backup: cannot make a folder in " + file + ": Error 76: Path not found\n");
  EXPECT_EQ(ReadWhole(file), "kept");
}

TEST_F(BackupTest, MistakesExitWithTwo) {
  const std::vector<std::vector<std::string>> mistakes = {
      {"third"},         {"--nonsense"},     {"--mask"},           {"--mask", ""},
      {"--mask", "a/b"}, {"--from", "soon"}, {"--dry-run=perhaps"}};
  for (const auto& options : mistakes) {
    const ProgramResult result = Run(options);
    EXPECT_EQ(result.status, 2) << options.front() << "\n" << result;
    EXPECT_NE(result.err.find("\"backup --help\" shows what to type."), std::string::npos) << result;
  }
  EXPECT_EQ(RunProgram("backup", {}).status, 2);
  EXPECT_EQ(RunProgram("backup", {"one"}).err,
            "backup: DESTINATION is required. \"backup --help\" shows what to type.\n");
  EXPECT_EQ(RunProgram("backup", {"one", ""}).status, 2);
}

TEST_F(BackupTest, HelpAndClosedPipe) {
  const ProgramResult help = RunProgram("backup", {"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_NE(help.out.find("Usage: backup [OPTIONS] SOURCE DESTINATION"), std::string::npos);
  Put("a.txt");
  const ProgramResult unread = RunWithoutReader("backup", {source_.Path().string(), target_.Path().string()});
  EXPECT_EQ(unread.status, 0);
  EXPECT_EQ(unread.err, "");
  EXPECT_EQ(FilesBelow(Folder()), "a.txt");
}

}  // namespace
}  // namespace Orvix
