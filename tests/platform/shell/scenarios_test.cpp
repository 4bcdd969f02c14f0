// Name lists, wildcards and targets: what is there before, what is asked for,
// what is there afterwards.
#include "platform/shell/file_request.h"

namespace Orvix::testing {
namespace {

constexpr std::uint16_t kMulti = 0x1;
constexpr std::uint16_t kOther = 0x8;  // rename on collision
constexpr std::uint16_t kQuiet = 0x10;
constexpr std::uint16_t kOnlyFiles = 0x80;

struct Scenario {
  const char* name;
  std::string before;
  std::uint32_t operation;
  std::vector<std::string> from;
  std::vector<std::string> to;
  std::uint16_t flags;
  INT code;
  std::string after;
};

void PrintTo(const Scenario& scenario, std::ostream* stream) { *stream << scenario.name; }

class ScenarioTest : public ShellTest, public ::testing::WithParamInterface<Scenario> {};

TEST_P(ScenarioTest, Ends) {
  const Scenario& s = GetParam();
  Make(s.before);
  EXPECT_EQ(Perform(s.operation, s.from, s.to, static_cast<std::uint16_t>(s.flags | kQuiet)), (Outcome{s.code, 0}));
  EXPECT_EQ(Now(), s.after);
}

const auto kLabel = [](const auto& test) { return std::string(test.param.name); };

INSTANTIATE_TEST_SUITE_P(
    Copy, ScenarioTest,
    ::testing::Values(
        Scenario{"NewName", "a=1", kCopying, {"a"}, {"b"}, 0, 0, "a=1 b=1"},
        Scenario{"IntoDirectory", "a=1 d/", kCopying, {"a"}, {"d"}, 0, 0, "a=1 d/ d/a=1"},
        Scenario{"IntoDirectoryOfOtherCase", "a=1 Dir/", kCopying, {"A"}, {"DIR"}, 0, 0, "Dir/ Dir/a=1 a=1"},
        Scenario{"MissingParents", "a=1", kCopying, {"a"}, {"x\\y\\b"}, 0, 0, "a=1 x/ x/y/ x/y/b=1"},
        Scenario{"SeparatorAsksForDirectory", "a=1", kCopying, {"a"}, {"x\\"}, 0, 0, "a=1 x/ x/a=1"},
        Scenario{"OnlyFirstTargetCounts", "a=1", kCopying, {"a"}, {"b", "c"}, 0, 0, "a=1 b=1"},
        Scenario{"ListMakesDirectory", "a=1 b=2", kCopying, {"a", "b"}, {"d"}, 0, 0, "a=1 b=2 d/ d/a=1 d/b=2"},
        Scenario{"ListOntoFile", "a=1 b=2 f=3", kCopying, {"a", "b"}, {"f"}, 0, 0x7C, "a=1 b=2 f=3"},
        Scenario{"TreeToNewName",
                 "d/x=1 d/e/y=2 d/l>x",
                 kCopying,
                 {"d"},
                 {"n"},
                 0,
                 0,
                 "d/ d/e/ d/e/y=2 d/l>x d/x=1 n/ n/e/ n/e/y=2 n/l>x n/x=1"},
        Scenario{"TreeIntoDirectory", "d/x=1 t/", kCopying, {"d"}, {"t"}, 0, 0, "d/ d/x=1 t/ t/d/ t/d/x=1"},
        Scenario{"TreesMerge",
                 "d/x=1 d/y=2 t/d/x=9 t/d/z=3",
                 kCopying,
                 {"d"},
                 {"t"},
                 0,
                 0,
                 "d/ d/x=1 d/y=2 t/ t/d/ t/d/x=1 t/d/y=2 t/d/z=3"},
        Scenario{"MergeMeetsOtherCase",
                 "d/read=1 t/d/READ=9",
                 kCopying,
                 {"d"},
                 {"t"},
                 0,
                 0,
                 "d/ d/read=1 t/ t/d/ t/d/READ=1"},
        Scenario{"MergeKeepsNamesThatComeTogether",
                 "d/n=1 d/N=2 t/d/n=9",
                 kCopying,
                 {"d"},
                 {"t"},
                 0,
                 0,
                 "d/ d/N=2 d/n=1 t/ t/d/ t/d/N=2 t/d/n=1"},
        Scenario{"LinkInTargetIsNoDirectory",
                 "d/s/x=1 t/d/s>../../o o/",
                 kCopying,
                 {"d"},
                 {"t"},
                 0,
                 0x7E,
                 "d/ d/s/ d/s/x=1 o/ t/ t/d/ t/d/s>../../o"},
        Scenario{"LinkStaysLink", "a=1 l>a", kCopying, {"l"}, {"m"}, 0, 0, "a=1 l>a m>a"},
        Scenario{"LinkLoopIsCopiedAsLink", "l>l d/", kCopying, {"l"}, {"d"}, 0, 0, "d/ d/l>l l>l"},
        Scenario{"ReplacedLinkIsNotFollowed", "a=1 o=2 l>o", kCopying, {"a"}, {"l"}, 0, 0, "a=1 l=1 o=2"},
        Scenario{"NoTargetIsCurrentDirectory", "d/a=1", kCopying, {"d\\a"}, {}, 0, 0, "a=1 d/ d/a=1"},
        Scenario{"NoTargetFileThere", "a=1", kCopying, {"a"}, {}, 0, 0x71, "a=1"},
        Scenario{"NoTargetDirectoryThere", "d/a=1", kCopying, {"d"}, {}, 0, 0x7D, "d/ d/a=1"},
        Scenario{"OntoItselfInOtherCase", "a=1", kCopying, {"a"}, {"A"}, 0, 0x71, "a=1"},
        Scenario{"IntoItself", "d/a=1", kCopying, {"d"}, {"d\\n\\m"}, 0, 0x76, "d/ d/a=1"},
        Scenario{"IntoItselfThroughLink", "d/a=1 l>d", kCopying, {"d"}, {"l\\n"}, 0, 0x76, "d/ d/a=1 l>d"},
        Scenario{"IntoItselfWhenListed", "a=1 d/b=2", kCopying, {"a", "d"}, {"d"}, 0, 0x76, "a=1 d/ d/a=1 d/b=2"},
        Scenario{"MissingNameStopsAll", "a=1 d/", kCopying, {"a", "gone"}, {"d"}, 0, 2, "a=1 d/"},
        Scenario{"MissingDirectory", "a=1", kCopying, {"gone\\a"}, {"b"}, 0, 0x7C, "a=1"},
        Scenario{"EmptyNameEndsList", "a=1 b=2 d/", kCopying, {"a", "", "b"}, {"d"}, 0, 0, "a=1 b=2 d/ d/a=1"},
        Scenario{"EmptyList", "a=1 d/", kCopying, {}, {"d"}, 0, 0, "a=1 d/"},
        Scenario{"TargetWildcard", "a=1", kCopying, {"a"}, {"b*"}, 0, 123, "a=1"},
        Scenario{"IgnoredTargetWildcard", "a=1", kCopying, {"a"}, {"b", "c*"}, 0, 0, "a=1 b=1"},
        Scenario{"SourceIsDirectoryTargetFile", "d/a=1 f=2", kCopying, {"d"}, {"f"}, 0, 0x7E, "d/ d/a=1 f=2"},
        Scenario{"FileWithSeparator", "a=1", kCopying, {"a\\"}, {"b"}, 0, 0x7C, "a=1"},
        Scenario{"UnmappedTarget", "a=1", kCopying, {"a"}, {"Q:\\b"}, 0, 3, "a=1"},
        Scenario{"UnmappedSource", "a=1", kCopying, {"Q:\\a"}, {"b"}, 0, 0x7C, "a=1"},
        Scenario{"FileWithinFile", "a=1 f=2", kCopying, {"a"}, {"f\\b"}, 0, 0x7C, "a=1 f=2"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    Wildcards, ScenarioTest,
    ::testing::Values(Scenario{"MatchDirectoriesToo",
                               "a1=1 a2/x=2 b=3",
                               kCopying,
                               {"A*"},
                               {"d"},
                               0,
                               0,
                               "a1=1 a2/ a2/x=2 b=3 d/ d/a1=1 d/a2/ d/a2/x=2"},
                      Scenario{"FilesOnly",
                               "a1=1 a2/x=2 n/y=4",
                               kCopying,
                               {"a*", "n"},
                               {"d"},
                               kOnlyFiles,
                               0,
                               "a1=1 a2/ a2/x=2 d/ d/a1=1 d/n/ d/n/y=4 n/ n/y=4"},
                      Scenario{"QuestionMark", "a1=1 a22=2", kDeleting, {"a?"}, {}, 0, 0, "a22=2"},
                      Scenario{"StarDotStarIsEverything", "a=1 .h=2 d/x=3", kDeleting, {"*.*"}, {}, 0, 0, ""},
                      Scenario{"NoMatch", "a=1", kDeleting, {"z*"}, {}, 0, 0, "a=1"},
                      Scenario{"NotInTheMiddle", "d1/a=1", kDeleting, {"d*\\a"}, {}, 0, 0x7C, "d1/ d1/a=1"},
                      Scenario{"LinkToDirectoryIsNone", "d/x=1 l>d", kDeleting, {"*"}, {}, kOnlyFiles, 0, "d/ d/x=1"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    TargetLists, ScenarioTest,
    ::testing::Values(
        Scenario{"Pairs", "a=1 b=2", kCopying, {"a", "b"}, {"x", "y"}, kMulti, 0, "a=1 b=2 x=1 y=2"},
        Scenario{
            "PairFileOntoDirectory", "a=1 b=2 d/", kCopying, {"a", "b"}, {"x", "d"}, kMulti, 0x80, "a=1 b=2 d/ x=1"},
        Scenario{"PairMergesDirectory",
                 "d/x=1 b=2 t/z=3",
                 kCopying,
                 {"d", "b"},
                 {"t", "c"},
                 kMulti,
                 0,
                 "b=2 c=2 d/ d/x=1 t/ t/x=1 t/z=3"},
        Scenario{"OneSourceTakesFirst", "a=1", kCopying, {"a"}, {"x", "y"}, kMulti, 0, "a=1 x=1"},
        Scenario{"OneSourceIntoDirectory", "a=1 d/", kCopying, {"a"}, {"d", "y"}, kMulti, 0, "a=1 d/ d/a=1"},
        Scenario{
            "OnePatternTakesFirst", "a1=1 a2=2", kCopying, {"a*"}, {"x", "y"}, kMulti, 0, "a1=1 a2=2 x/ x/a1=1 x/a2=2"},
        Scenario{"PatternInPairs",
                 "a1=1 a2=2 b=3",
                 kCopying,
                 {"a*", "b"},
                 {"x", "y"},
                 kMulti,
                 0,
                 "a1=1 a2=2 b=3 x/ x/a1=1 x/a2=2 y=3"},
        Scenario{
            "MoreTargets", "a=1 b=2", kCopying, {"a", "b"}, {"x", "y", "z"}, kMulti, 0, "a=1 b=2 x/ x/a=1 y/ y/b=2"},
        Scenario{"FewerTargets",
                 "a=1 b=2 c=3",
                 kCopying,
                 {"a", "b", "c"},
                 {"x", "y"},
                 kMulti,
                 0x71,
                 "a=1 b=2 c=3 x/ x/a=1 y/ y/b=2"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    Move, ScenarioTest,
    ::testing::Values(Scenario{"File", "a=1 d/", kMoving, {"a"}, {"d"}, 0, 0, "d/ d/a=1"},
                      Scenario{"Replaces", "a=1 b=2", kMoving, {"a"}, {"b"}, 0, 0, "b=1"},
                      Scenario{"Tree", "d/x=1", kMoving, {"d"}, {"p\\q"}, 0, 0, "p/ p/q/ p/q/x=1"},
                      Scenario{"Merges",
                               "d/x=1 d/s/y=2 t/d/x=9 t/d/s/z=3",
                               kMoving,
                               {"d"},
                               {"t"},
                               0,
                               0,
                               "t/ t/d/ t/d/s/ t/d/s/y=2 t/d/s/z=3 t/d/x=1"},
                      Scenario{"Link", "o/x=1 l>o d/", kMoving, {"l"}, {"d"}, 0, 0, "d/ d/l>o o/ o/x=1"},
                      Scenario{"OtherCase", "a=1", kMoving, {"a"}, {"A"}, 0, 0, "A=1"},
                      Scenario{"OntoItself", "a=1", kMoving, {"a"}, {"a"}, 0, 0x71, "a=1"},
                      Scenario{"IntoItself", "d/x=1", kMoving, {"d"}, {"d\\e"}, 0, 0x76, "d/ d/x=1"},
                      Scenario{"ListedTwice", "a=1 d/", kMoving, {"a", "a"}, {"d"}, 0, 0x7C, "d/ d/a=1"},
                      Scenario{"FileOntoDirectoryInMerge",
                               "d/x=1 t/d/x/k=9",
                               kMoving,
                               {"d"},
                               {"t"},
                               0,
                               0x80,
                               "d/ d/x=1 t/ t/d/ t/d/x/ t/d/x/k=9"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    Rename, ScenarioTest,
    ::testing::Values(
        Scenario{"File", "a=1", kRenaming, {"a"}, {"b"}, 0, 0, "b=1"},
        Scenario{"CaseOnly", "a=1", kRenaming, {"a"}, {"A"}, 0, 0, "A=1"},
        Scenario{"Directory", "d/x=1", kRenaming, {"d"}, {"e"}, 0, 0, "e/ e/x=1"},
        Scenario{"Nothing", "a=1", kRenaming, {}, {"b"}, 0, 0x72, "a=1"},
        Scenario{"Two", "a=1 b=2", kRenaming, {"a", "b"}, {"c"}, 0, 0x72, "a=1 b=2"},
        Scenario{"Pattern", "a=1", kRenaming, {"a*"}, {"c"}, 0, 0x72, "a=1"},
        Scenario{"TwoTargets", "a=1", kRenaming, {"a"}, {"b", "c"}, kMulti, 0x72, "a=1"},
        Scenario{"ToNothing", "a=1", kRenaming, {"a"}, {}, 0, 0x73, "a=1"},
        Scenario{"OtherDirectory", "a=1 d/", kRenaming, {"a"}, {"d\\a"}, 0, 0x73, "a=1 d/"},
        Scenario{"MissingDirectory", "a=1", kRenaming, {"a"}, {"n\\a"}, 0, 0x73, "a=1"},
        Scenario{"Missing", "a=1", kRenaming, {"b"}, {"c"}, 0, 2, "a=1"},
        Scenario{"OntoDirectory", "a=1 d/", kRenaming, {"a"}, {"d"}, 0, 0x80, "a=1 d/"},
        Scenario{"DirectoryOntoDirectory", "d/x=1 e/y=2", kRenaming, {"d"}, {"e"}, 0, 0x80, "d/ d/x=1 e/ e/y=2"},
        Scenario{"DirectoryOntoFile", "d/x=1 f=2", kRenaming, {"d"}, {"f"}, 0, 0x7E, "d/ d/x=1 f=2"},
        Scenario{"OntoFile", "a=1 b=2", kRenaming, {"a"}, {"b"}, 0, 0, "b=1"},
        Scenario{"Wildcard", "a=1", kRenaming, {"a"}, {"b?"}, 0, 123, "a=1"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    Delete, ScenarioTest,
    ::testing::Values(
        Scenario{"FileAndTree", "a=1 b=2 d/e/f/x=3", kDeleting, {"a", "d"}, {}, 0, 0, "b=2"},
        Scenario{"LinksAreNotFollowed", "o/x=1 d/l>../o d/m>../o/x k>o", kDeleting, {"d", "k"}, {}, 0, 0, "o/ o/x=1"},
        Scenario{"LinkWithSeparator", "o/x=1 k>o", kDeleting, {"k\\"}, {}, 0, 0, "o/ o/x=1"},
        Scenario{"GoneMeanwhile", "d/x=1 e=2", kDeleting, {"d", "d\\x", "e"}, {}, 0, 0x7C, "e=2"},
        Scenario{"MissingStopsAll", "a=1", kDeleting, {"a", "b"}, {}, 0, 2, "a=1"},
        Scenario{"Root", "a=1", kDeleting, {"Z:\\"}, {}, 0, 0x74, "a=1"},
        Scenario{"RelativeIsForGoodDespiteUndo", "a=1", kDeleting, {"a"}, {}, 0x40, 0, ""}),
    kLabel);

// What the caller has under two spellings stays two, whatever is there already.
INSTANTIATE_TEST_SUITE_P(
    Spellings, ScenarioTest,
    ::testing::Values(
        Scenario{"MoveBoth", "Read=1 READ=2 t/", kMoving, {"Read", "READ"}, {"t"}, 0, 0, "t/ t/READ=2 t/Read=1"},
        Scenario{
            "MoveAllOfADirectory", "d/Read=1 d/READ=2 t/", kMoving, {"d\\*"}, {"t"}, 0, 0, "d/ t/ t/READ=2 t/Read=1"},
        Scenario{"MoveBothOntoOneOfThem",
                 "Read=1 READ=2 t/READ=9",
                 kMoving,
                 {"Read", "READ"},
                 {"t"},
                 0,
                 0,
                 "t/ t/READ=2 t/Read=1"},
        Scenario{"MoveBothOntoAThird",
                 "Read=1 READ=2 t/read=9",
                 kMoving,
                 {"READ", "Read"},
                 {"t"},
                 0,
                 0,
                 "t/ t/Read=1 t/read=2"},
        Scenario{"MoveInTurns",
                 "x/README=1 z/foo=3 y/ReadMe=2 v/w=4 d/readme=9 e/",
                 kMoving,
                 {"x\\README", "z\\foo", "y\\ReadMe", "v\\w"},
                 {"d", "e", "d"},
                 1,
                 0,
                 "d/ d/ReadMe=2 d/readme=1 e/ e/foo=3 v/ w=4 x/ y/ z/"},
        Scenario{
            "DirectoriesStayTwo", "A/x=1 a/x=2 t/", kMoving, {"A", "a"}, {"t"}, 0, 0, "t/ t/A/ t/A/x=1 t/a/ t/a/x=2"},
        Scenario{"MergeByCopying",
                 "d/READ=1 d/Read=2 t/d/read=9",
                 kCopying,
                 {"d"},
                 {"t"},
                 0,
                 0,
                 "d/ d/READ=1 d/Read=2 t/ t/d/ t/d/Read=2 t/d/read=1"},
        Scenario{"MergeByMoving",
                 "d/READ=1 d/Read=2 t/d/read=9",
                 kMoving,
                 {"d"},
                 {"t"},
                 0,
                 0,
                 "t/ t/d/ t/d/Read=2 t/d/read=1"},
        Scenario{"ALinkBelowThatLeadsUp",
                 "d/sub/d>../../d d/x=1",
                 kCopying,
                 {"d"},
                 {"d\\sub"},
                 kOther,
                 0x76,
                 "d/ d/sub/ d/sub/d>../../d d/x=1"}),
    kLabel);

INSTANTIATE_TEST_SUITE_P(
    Collision, ScenarioTest,
    ::testing::Values(
        Scenario{
            "Copy", "a.txt=1 d/a.txt=9", kCopying, {"a.txt"}, {"d"}, kOther, 0, "a.txt=1 d/ d/a (2).txt=1 d/a.txt=9"},
        Scenario{"CopyOntoItself", "a.tar.gz=1", kCopying, {"a.tar.gz"}, {}, kOther, 0, "a.tar (2).gz=1 a.tar.gz=1"},
        Scenario{"Directory", "d.v1/x=1", kCopying, {"d.v1"}, {}, kOther, 0, "d.v1 (2)/ d.v1 (2)/x=1 d.v1/ d.v1/x=1"},
        Scenario{"Move", ".rc=1 d/.rc=9", kMoving, {".rc"}, {"d"}, kOther, 0, "d/ d/.rc (2)=1 d/.rc=9"},
        Scenario{"MoveOntoDirectory", "a=1 d/a/", kMoving, {"a"}, {"d"}, kOther, 0, "d/ d/a (2)=1 d/a/"},
        Scenario{"Rename", "a=1 b=9", kRenaming, {"a"}, {"b"}, kOther, 0, "b (2)=1 b=9"}),
    kLabel);

TEST_F(ShellTest, NumbersGoUpPastThoseTaken) {
  Make("a=1 d/a=2");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(Perform(kCopying, {"a"}, {"d"}, 0x18), kDone);
  EXPECT_EQ(Now(), "a=1 d/ d/a (2)=1 d/a (3)=1 d/a (4)=1 d/a=2");
}

TEST_F(ShellTest, ThousandsOfNamesInOneRequest) {
  std::vector<std::string> names;
  for (int i = 0; i < 10'000; ++i) {
    names.push_back("File" + std::to_string(i));
    std::ofstream(names.back()) << i;
  }
  EXPECT_EQ(Perform(kMoving, names, {"d"}), kDone);
  EXPECT_EQ(ContentOf("d/File9999"), "9999");
  for (std::string& name : names) name = "D\\file" + name.substr(4);  // found in another case
  names.resize(500);
  EXPECT_EQ(Perform(kDeleting, names, {}), kDone);
  EXPECT_FALSE(std::filesystem::exists("d/File0"));
  EXPECT_TRUE(std::filesystem::exists("d/File500"));
}

TEST_F(ShellTest, TimesAndModesComeAlongWhateverTheMask) {
  Make("d/x=1");
  chmod("d/x", 0640);
  const timespec times[2] = {{1'000'000'000, 0}, {1'100'000'000, 123'456'789}};
  utimensat(AT_FDCWD, "d/x", times, 0);
  utimensat(AT_FDCWD, "d", times, 0);
  chmod("d", 0750);
  const mode_t before = umask(077);
  EXPECT_EQ(Perform(kCopying, {"d"}, {"e"}), kDone);
  umask(before);
  for (const char* name : {"e", "e/x"}) {
    struct stat facts;
    ASSERT_EQ(lstat(name, &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777, name[1] == '\0' ? 0750u : 0640u) << name;
    EXPECT_EQ(facts.st_mtim.tv_sec, 1'100'000'000) << name;
    EXPECT_EQ(facts.st_mtim.tv_nsec, 123'456'789) << name;
  }
}

TEST_F(ShellTest, HolesStayAndLongContentIsWhole) {
  std::string content;
  for (int i = 0; content.size() < 9'000'000; ++i) content += "line " + std::to_string(i) + std::string(900, 'x');
  std::ofstream("big", std::ios::binary) << content;
  MakeFiles(".", "holes=");
  std::filesystem::resize_file("holes", 300'000'000);
  std::ofstream("holes", std::ios::binary | std::ios::app) << "end";
  EXPECT_EQ(Perform(kCopying, {"big", "holes"}, {"d"}), kDone);
  EXPECT_TRUE(ContentOf("d/big") == content);
  struct stat facts;
  ASSERT_EQ(stat("d/holes", &facts), 0);
  EXPECT_EQ(facts.st_size, 300'000'003);
  EXPECT_LT(facts.st_blocks, 20'000);
}

TEST_F(ShellTest, MovingATreeIsOneRename) {
  Make("d/x=1");
  struct stat before;
  struct stat after;
  stat("d", &before);
  EXPECT_EQ(Perform(kMoving, {"d"}, {"e"}), kDone);
  ASSERT_EQ(stat("e", &after), 0);
  EXPECT_EQ(after.st_ino, before.st_ino);
}

TEST_F(ShellTest, NamesInTheCodePageAreFoundOnDisk) {
  Make("K\u00e4se=1");
  EXPECT_EQ(Perform(kRenaming, {"K\xE4se"}, {"\x80"}), kDone);
  EXPECT_EQ(Now(), "\u20ac=1");
}

TEST(ShellRequestTest, BadRequests) {
  const LowBytes a(std::string("a\0\0", 3));
  EXPECT_EQ(SHFileOperationA(nullptr), 87);
  EXPECT_EQ(RunRequest(0, 0, a.Address(), a.Address()).code, 87);
  EXPECT_EQ(RunRequest(5, 0, a.Address(), a.Address()).code, 87);
  EXPECT_EQ(RunRequest(2, 0, 0, a.Address()).code, 87);
  EXPECT_EQ(RunRequest(2, 0, a.Address(), 0).code, 5);
  EXPECT_EQ(RunRequest(3, 0, a.Address(), 0).code, 2);
}

}  // namespace
}  // namespace Orvix::testing
