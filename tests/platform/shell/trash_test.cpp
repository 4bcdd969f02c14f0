// Undoable deletions: the home trash, those of other file systems, and what
// stays when there is none.
#include <ctime>
#include <regex>

#include "platform/shell/file_request.h"
#include "platform/shell/mounted.h"
#include "platform/shell/trash_entry.h"
#include "support/ordinary_user.h"

namespace Orvix::testing {
namespace {

constexpr std::uint16_t kUndo = 0x50;

// The user's data directory lies in the test's own directory, as "home".
class TrashTest : public ShellTest {
 protected:
  TrashTest() : data_home_(getenv("XDG_DATA_HOME")) { setenv("XDG_DATA_HOME", directory_.Native("home").c_str(), 1); }
  ~TrashTest() override { setenv("XDG_DATA_HOME", data_home_.c_str(), 1); }

  static std::string NotedPath(const std::string& information) {
    std::smatch parts;
    const std::string text = ContentOf(information);
    const std::regex form("\\[Trash Info\\]\nPath=(.*)\nDeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\n");
    return std::regex_match(text, parts, form) ? parts[1].str() : "malformed: " + text;
  }

 private:
  std::string data_home_;
};

TEST(TrashInformationTest, EncodesAllButPlainCharacters) {
  std::tm when{};
  when.tm_year = 2004 - 1900;
  when.tm_mon = 7;
  when.tm_mday = 31;
  when.tm_hour = 22;
  when.tm_min = 32;
  when.tm_sec = 8;
  EXPECT_EQ(Shell::TrashInformation("/a b/\xC3\xA4%\n~-._z9", when),
            "[Trash Info]\nPath=/a%20b/%C3%A4%25%0A~-._z9\nDeletionDate=2004-08-31T22:32:08\n");
}

TEST_F(TrashTest, ItemsMoveWithTheirInformation) {
  Make("a.txt=1 d/x=2 d/l>x keep=3");
  EXPECT_EQ(Perform(kDeleting, {Full("a.txt"), Full("d")}, {}, kUndo), kDone);
  EXPECT_EQ(Listing("home/Trash/files"), "a.txt=1 d/ d/l>x d/x=2");
  EXPECT_EQ(NotedPath("home/Trash/info/a.txt.trashinfo"), directory_.Native("a.txt"));
  EXPECT_EQ(NotedPath("home/Trash/info/d.trashinfo"), directory_.Native("d"));
  EXPECT_TRUE(std::filesystem::exists("keep"));
  EXPECT_FALSE(std::filesystem::exists("d"));
  struct stat facts;
  for (const char* name : {"home/Trash", "home/Trash/files", "home/Trash/info"}) {
    ASSERT_EQ(stat(name, &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777, 0700u) << name;
  }
}

TEST_F(TrashTest, EqualNamesGetNumbers) {
  for (const char* line : {"a.txt=1", "a.txt=2", "s/a.txt=3"}) {
    Make(line);
    const std::string name = line[0] == 's' ? "s\\a.txt" : "a.txt";
    EXPECT_EQ(Perform(kDeleting, {Full(name)}, {}, kUndo), kDone);
  }
  EXPECT_EQ(Listing("home/Trash/files"), "a (2).txt=2 a (3).txt=3 a.txt=1");
  EXPECT_EQ(NotedPath("home/Trash/info/a (3).txt.trashinfo"), directory_.Native("s/a.txt"));
}

TEST_F(TrashTest, NeverReplacesWhatHasNoInformation) {
  Make("a=1 home/Trash/files/a=old");
  EXPECT_EQ(Perform(kDeleting, {Full("a")}, {}, kUndo), kDone);
  EXPECT_EQ(Listing("home/Trash"), "files/ files/a (2)=1 files/a=old info/ info/a (2).trashinfo=" +
                                       ContentOf("home/Trash/info/a (2).trashinfo"));
}

TEST_F(TrashTest, LongestNamesFit) {
  const std::string name(255, 'n');
  Make(name + "=1");
  EXPECT_EQ(Perform(kDeleting, {Full(name)}, {}, kUndo), kDone);
  EXPECT_EQ(Listing("home/Trash/files"), std::string(229, 'n') + "=1");
  EXPECT_EQ(NotedPath("home/Trash/info/" + std::string(229, 'n') + ".trashinfo"), directory_.Native(name));
}

TEST_F(TrashTest, AnItemThatCannotBeTrashedStays) {
  Make("a=1 home=2");
  EXPECT_EQ(Perform(kDeleting, {Full("a")}, {}, kUndo), (Outcome{0x7C, 0}));
  EXPECT_EQ(Now(), "a=1 home=2");
}

TEST_F(TrashTest, WithoutRightsTheItemStaysAndNoInformationIsLeft) {
  Make("p/a=1 home/");
  chmod("home", 0777);
  chmod("p", 0555);
  {
    const OrdinaryUser user;
    if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
    EXPECT_EQ(Perform(kDeleting, {Full("p\\a")}, {}, kUndo), (Outcome{0x78, 0}));
  }
  chmod("p", 0755);
  EXPECT_EQ(Now(), "home/ home/Trash/ home/Trash/files/ home/Trash/info/ p/ p/a=1");
}

TEST_F(TrashTest, OtherFileSystemsHaveTheirOwn) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("v/s/a=1 v/.Trash>s");  // a link is never the common directory
  EXPECT_EQ(Perform(kDeleting, {Full("v\\s\\a")}, {}, kUndo), kDone);
  const std::string own = "v/.Trash-" + std::to_string(geteuid());
  EXPECT_EQ(Listing(own + "/files"), "a=1");
  EXPECT_EQ(NotedPath(own + "/info/a.trashinfo"), "s/a");
  EXPECT_EQ(Listing("v/s"), "");
}

TEST_F(TrashTest, ACommonTrashIsUsedWhenItIsSticky) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("v/a=1 v/b=2 v/.Trash/");
  EXPECT_EQ(Perform(kDeleting, {Full("v\\a")}, {}, kUndo), kDone);
  chmod("v/.Trash", 01777);
  EXPECT_EQ(Perform(kDeleting, {Full("v\\b")}, {}, kUndo), kDone);
  const std::string user = std::to_string(geteuid());
  EXPECT_EQ(Listing("v/.Trash-" + user + "/files"), "a=1");
  EXPECT_EQ(Listing("v/.Trash/" + user + "/files"), "b=2");
}

TEST_F(TrashTest, ADirectoryOfSomebodyElseIsNotUsed) {
  const Mounted volume(directory_.Native("v"));
  const std::string user = std::to_string(geteuid());
  Make("v/a=1 v/.Trash/" + user + "/");
  chmod("v/.Trash", 01777);
  if (!volume.ok() || chown(("v/.Trash/" + user).c_str(), 65534, 65534) != 0) GTEST_SKIP() << "not allowed";
  chmod(("v/.Trash/" + user).c_str(), 0777);
  EXPECT_EQ(Perform(kDeleting, {Full("v\\a")}, {}, kUndo), kDone);
  EXPECT_EQ(Listing("v/.Trash/" + user), "");
  EXPECT_EQ(Listing("v/.Trash-" + user + "/files"), "a=1");
}

TEST_F(TrashTest, WithoutOneThereTheHomeTrashTakesACopy) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("v/d/x=1 v/.Trash-" + std::to_string(geteuid()) + "=file");
  EXPECT_EQ(Perform(kDeleting, {Full("v\\d")}, {}, kUndo), kDone);
  EXPECT_EQ(Listing("home/Trash/files"), "d/ d/x=1");
  EXPECT_EQ(NotedPath("home/Trash/info/d.trashinfo"), directory_.Native("v/d"));
  EXPECT_FALSE(std::filesystem::exists("v/d"));
}

// The original would have to stay, or the copy does not fit.
TEST_F(TrashTest, RefusedDeletionsLeaveNoCopy) {
  const Mounted protected_volume(directory_.Native("v"));
  const Mounted full_home(directory_.Native("home"));
  if (!protected_volume.ok() || !full_home.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("v/d/s/x=1 v/f=2 w/d/a=1");
  ASSERT_TRUE(protected_volume.Protect());
  EXPECT_EQ(Perform(kDeleting, {Full("v\\d")}, {}, kUndo), (Outcome{19, 0}));
  EXPECT_EQ(Perform(kDeleting, {Full("v\\f")}, {}, kUndo), (Outcome{19, 0}));
  const Mounted volume(directory_.Native("w"));
  Make("w/d/a=1 w/.Trash-" + std::to_string(geteuid()) + "=file");
  for (const char* const part : {"w/d/b", "home/other"}) std::ofstream(part) << std::string(600'000, 'x');
  const std::string before = Listing("w");
  EXPECT_EQ(Perform(kDeleting, {Full("w\\d")}, {}, kUndo), (Outcome{112, 0}));
  EXPECT_EQ(Listing("w"), before);
  EXPECT_EQ(Listing("home/Trash"), "files/ info/");
}

struct Across {
  const char* name;
  const char* before;
  std::vector<std::string> from;
  std::uint16_t flags;
  const char* after;
};
void PrintTo(const Across& across, std::ostream* stream) { *stream << across.name; }
class AcrossTest : public TrashTest, public ::testing::WithParamInterface<Across> {};

TEST_P(AcrossTest, Moves) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make(GetParam().before);
  EXPECT_EQ(Perform(kMoving, GetParam().from, {"v"}, GetParam().flags), kDone);
  EXPECT_EQ(Now(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    FileSystems, AcrossTest,
    ::testing::Values(
        Across{"Merge",
               "d/x=1 d/s/y=2 d/l>x f=3 v/d/x=9",
               {"d", "f"},
               0x10,
               "v/ v/d/ v/d/l>x v/d/s/ v/d/s/y=2 v/d/x=1 v/f=3"},
        Across{"Replace", "f=1 v/f=9", {"f"}, 0x10, "v/ v/f=1"},
        Across{"Numbered", "f=1 d/x=2 v/f=9 v/d/", {"f", "d"}, 0x18, "v/ v/d (2)/ v/d (2)/x=2 v/d/ v/f (2)=1 v/f=9"}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(TrashTest, AFullDiskLosesNothing) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("d/a=1 v/old=2");
  const std::string large(3'000'000, 'x');
  std::ofstream("d/large") << large;
  EXPECT_EQ(Perform(kMoving, {"d"}, {"v"}), (Outcome{112, 0}));
  EXPECT_EQ(ContentOf("d/a"), "1");
  EXPECT_TRUE(ContentOf("d/large") == large);
  EXPECT_FALSE(std::filesystem::exists("v/d/large"));
  EXPECT_EQ(Perform(kCopying, {"d\\large"}, {"v\\old"}), (Outcome{112, 0}));
  EXPECT_EQ(ContentOf("v/old"), "2");
  for (const auto& entry : std::filesystem::recursive_directory_iterator("v")) {
    EXPECT_FALSE(entry.path().filename().string().starts_with(".orvix-")) << entry.path();
  }
}

}  // namespace
}  // namespace Orvix::testing
