// Undoable deletions: the home trash, those of other file systems, and what
// stays when there is none.
#include <sys/mount.h>

#include <ctime>
#include <regex>

#include "platform/shell/file_request.h"
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

// A small file system of its own, where that is allowed.
class Mounted {
 public:
  explicit Mounted(std::string path) : path_(std::move(path)) {
    std::filesystem::create_directories(path_);
    ok_ = mount("tmpfs", path_.c_str(), "tmpfs", 0, "size=1m,mode=777") == 0;
  }
  Mounted(const Mounted&) = delete;
  Mounted& operator=(const Mounted&) = delete;
  ~Mounted() {
    if (ok_) umount2(path_.c_str(), MNT_DETACH);
  }
  [[nodiscard]] bool ok() const { return ok_; }

 private:
  std::string path_;
  bool ok_;
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
  const OrdinaryUser user;
  if (!user.ok()) GTEST_SKIP() << "cannot give up rights";
  EXPECT_EQ(Perform(kDeleting, {Full("p\\a")}, {}, kUndo), (Outcome{0x78, 0}));
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

TEST_F(TrashTest, MovesAcrossFileSystems) {
  const Mounted volume(directory_.Native("v"));
  if (!volume.ok()) GTEST_SKIP() << "mounting is not allowed";
  Make("d/x=1 d/s/y=2 d/l>x f=3 v/d/x=9");
  EXPECT_EQ(Perform(kMoving, {"d", "f"}, {"v"}), kDone);
  EXPECT_EQ(Now(), "v/ v/d/ v/d/l>x v/d/s/ v/d/s/y=2 v/d/x=1 v/f=3");
}

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
