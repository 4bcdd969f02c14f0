// Directory search: patterns, masks, order, and what is left out.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "support/file_calls.h"
#include "support/native_directory.h"
#include "support/ordinary_user.h"

namespace Orvix::testing {
namespace {

class DirectorySearchTest : public ::testing::Test {
 protected:
  std::string In(TextView rest, LONG mask = 0) { return Search(directory_.Name(rest), mask); }
  NativeDirectory directory_;
};

TEST_F(DirectorySearchTest, PatternsFollowThePlatformsRulesForDots) {
  const struct {
    const char16_t* pattern;
    const char* name;
    bool found;
  } cases[] = {
      {u"*.*", "abc", true},
      {u"*.*.", "abc", true},
      {u"*", "a.b.c", true},
      {u"*.", "abc", true},
      {u"*.", "a.b", false},
      {u"*.", "a.", true},
      {u"foo.*", "foo", true},
      {u"foo.*", "foobar", false},
      {u"foo.*", "foo.a.b", true},
      {u"a*.*", "abc", true},
      {u"a*.*", "a.b", true},
      {u"a*.*", "ba", false},
      {u"?.?", "a", true},
      {u"?.?", "a.b", true},
      {u"?.?", "ab", false},
      {u"??.??", "ab", true},
      {u"foo??.*", "foo", true},
      {u"foo??.*", "foo12", true},
      {u"foo??.*", "foo123", false},
      {u"??b.??", "ab.ba", false},
      {u"??.??.??", "ab.ba", true},
      {u"??.??.??", "abba", false},
      {u"*.txt", "a.TXT", true},
      {u"*.txt", "a.txt.bak", false},
      {u"*.txt", "a.b.txt", true},
      {u"*.txt", "txt", false},
      {u"*.txt.", "a.txt", true},
      {u"*.t?t", "a.txt", true},
      {u"*.t?t", "a.t.txt", true},
      {u"*a*b*", "xAyBz", true},
      {u"*a*b*", "xByAz", false},
      {u"a*a", "a", false},
      {u"a*a", "aa", true},
      {u"?", "a", true},
      {u"?", "ab", false},
      {u"????", "ab", true},
      {u"a?", "a.", true},
      {u"a?c", "abc", true},
      {u"a?c", "ac", false},
      {u"?bc", "abc", true},
      {u"*.tar.gz", "x.TAR.gz", true},
      {u"a*.b", "a.b.x", false},
      {u"a*.b*", "a.b.x", true},
      {u"*\u00E9*", "\xC3\x89t\xC3\xA9", true},
      {u"<*>", "abc", false},
      {u"a*", "\"a", false},
  };
  int number = 0;
  for (const auto& c : cases) {
    const std::string folder = "p" + std::to_string(++number);
    directory_.MakeDirectory(folder);
    directory_.Write(folder + "/" + c.name, "");
    const std::string expected = c.found ? std::string(c.name) + "|" : "";
    EXPECT_EQ(In(u"\\" + FromUtf8(folder) + u"\\" + c.pattern), expected) << ToUtf8(c.pattern) << " on " << c.name;
  }
}

TEST_F(DirectorySearchTest, ManyStarsDoNotTakeForever) {
  directory_.Write(std::string(200, 'a'), "");
  EXPECT_EQ(In(u"\\*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b?"), "");
}

TEST_F(DirectorySearchTest, MaskMustContainHiddenSystemAndDirectoryBits) {
  directory_.MakeDirectory("d");
  directory_.MakeDirectory(".hd");
  directory_.Write(".h", "");
  directory_.Write("f", "");
  directory_.Write("r", "");
  chmod(directory_.Native("r").c_str(), 0444);
  const struct {
    LONG mask;
    const char* names;
  } cases[] = {{0, "f|r|"}, {2, ".h|f|r|"},  {16, ".|..|d|f|r|"}, {18, ".|..|.h|.hd|d|f|r|"}, {33, "f|r|"},
               {8, ""},     {14, ".h|f|r|"}, {9, "f|r|"},         {-1, ".|..|.h|.hd|d|f|r|"}, {20, ".|..|d|f|r|"}};
  for (const auto& c : cases) EXPECT_EQ(In(u"\\*", c.mask), c.names) << c.mask;
  EXPECT_EQ(In(u"\\.h", 0), "");
  EXPECT_EQ(In(u"\\.h", 14), ".h|");
  EXPECT_EQ(In(u"\\d", 14), "");
  EXPECT_EQ(In(u"\\D", 16), "d|");
}

TEST_F(DirectorySearchTest, OrderIsThatOfFoldedNames) {
  for (const char* name : {"b", "A", "a", "B1", "C", "_", "Zeta", "\xC3\xA9", "\xC3\x88", "prefix-22222222-b",
                           "prefix-22222222-A", "prefix-22222222"}) {
    directory_.Write(name, "");
  }
  EXPECT_EQ(In(u"\\*"), "_|A|a|b|B1|C|prefix-22222222|prefix-22222222-A|prefix-22222222-b|Zeta|\xC3\x88|\xC3\xA9|");
  EXPECT_EQ(In(u"\\pre*"), "prefix-22222222|prefix-22222222-A|prefix-22222222-b|");
}

TEST_F(DirectorySearchTest, NamePartDecidesWhatIsListed) {
  directory_.MakeDirectory("Data/Inner");
  directory_.Write("Data/x.txt", "");
  EXPECT_EQ(In(u"\\data", 18), "Data|");
  EXPECT_EQ(In(u"\\data\\", 18), ".|..|Inner|x.txt|");
  EXPECT_EQ(In(u"\\data/x.TXT", 0), "x.txt|");
  EXPECT_EQ(In(u"\\data\\x.txt..", 0), "x.txt|");
  EXPECT_EQ(In(u"\\data\\.", 16), ".|");
  EXPECT_EQ(In(u"\\data\\..", 16), "..|");
  EXPECT_EQ(In(u"\\data\\.", 2), "");
  EXPECT_EQ(In(u"\\data\\x.txt\\.", 16), "");
  EXPECT_EQ(In(u"\\data\\x.txt\\", 18), "");
  EXPECT_EQ(In(u"\\missing\\*", 18), "");
  EXPECT_EQ(In(u"\\missing\\..", 18), "");
  EXPECT_EQ(In(u"\\data\\missing", 18), "");
  EXPECT_EQ(In(u"\\da*a\\x.txt", 18), "error 52");
  EXPECT_EQ(Search(u"Q:\\*", 18), "");
  EXPECT_EQ(Search(u"\\\\no\\share\\*", 18), "");
  EXPECT_EQ(Search(Text(u"Z:\\tm\0p", 7), 18), "");
  EXPECT_EQ(Search(Text(u"Z:\\") + Text(1, 0xD800) + u"\\*", 18), "");
}

TEST_F(DirectorySearchTest, RootsAndTheEmptyTextHaveDots) {
  for (const char16_t* root : {u"", u"C:", u"C:\\", u"Z:\\", u"\\", u".", u"C:\\.", u"C:\\.."}) {
    EXPECT_TRUE(Search(root, 18).starts_with(".")) << ToUtf8(root);
  }
}

TEST_F(DirectorySearchTest, LeavesOutWhatCannotBeNamedOrFollowed) {
  directory_.Write("good", "");
  directory_.Write("bad\\name", "");
  std::filesystem::create_symlink("nowhere", directory_.Native("dangling"));
  std::filesystem::create_symlink("loop", directory_.Native("loop"));
  std::filesystem::create_symlink("good", directory_.Native("link"));
  std::filesystem::create_symlink(".", directory_.Native("to-directory"));
  EXPECT_EQ(In(u"\\*", 18), ".|..|good|link|to-directory|");
  EXPECT_EQ(In(u"\\*", 2), "good|link|");
  EXPECT_EQ(In(u"\\dangling", 18), "");
  EXPECT_EQ(In(u"\\loop", 18), "");
  EXPECT_EQ(In(u"\\LINK", 18), "link|");
}

TEST_F(DirectorySearchTest, EntriesCarryTheirFacts) {
  directory_.Write("a.txt", "12345");
  directory_.Touch("a.txt", 2021, 3, 4, 18, 0, 0);
  directory_.MakeDirectory("b");
  chmod(directory_.Native("a.txt").c_str(), 0400);
  const CallText pattern(directory_.Name(u"\\?*"));
  OxSearch* search = nullptr;
  ASSERT_EQ(OxStartSearch(pattern.get(), 16, &search), S_OK);
  OxEntry entry{};
  ASSERT_EQ(OxNextEntry(search, &entry), S_OK);  // "."
  EXPECT_EQ(entry.attributes, 16);
  while (TextView(entry.name) != u"a.txt") ASSERT_EQ(OxNextEntry(search, &entry), S_OK);
  EXPECT_EQ(entry.nameLength, 5);
  EXPECT_EQ(entry.attributes, 1 | 32);
  EXPECT_EQ(entry.size, 5);
  EXPECT_EQ(entry.modified, 44259.75);  // 2021-03-04 18:00
  std::filesystem::remove_all(directory_.Native("b"));
  EXPECT_EQ(OxNextEntry(search, &entry), S_OK);  // a snapshot
  EXPECT_EQ(OxNextEntry(search, &entry), S_FALSE);
  EXPECT_EQ(OxNextEntry(search, &entry), S_FALSE);
  OxEndSearch(search);
  OxEndSearch(nullptr);
  EXPECT_EQ(OxStartSearch(pattern.get(), 0, nullptr), E_POINTER);
  EXPECT_EQ(OxNextEntry(nullptr, &entry), E_POINTER);
}

TEST_F(DirectorySearchTest, LargeDirectoriesComeBackWhole) {
  directory_.MakeDirectory("many");
  std::string expected;
  for (int i = 0; i < 3000; ++i) {
    const std::string name = "file" + std::to_string(10000 + i) + (i % 2 == 0 ? ".txt" : ".TXT");
    directory_.Write("many/" + name, "");
    expected += name + "|";
  }
  EXPECT_EQ(In(u"\\many\\*.txt"), expected);
}

TEST_F(DirectorySearchTest, ADirectoryThatMayNotBeReadIsAnError) {
  directory_.MakeDirectory("locked");
  chmod(directory_.Native("").c_str(), 0755);
  chmod(directory_.Native("locked").c_str(), 0700);
  const OrdinaryUser user;
  if (geteuid() == 0 || !user.ok()) GTEST_SKIP() << "needs an ordinary user";
  struct stat facts;
  if (stat(directory_.Native("locked").c_str(), &facts) == 0 && facts.st_uid == geteuid()) {
    chmod(directory_.Native("locked").c_str(), 0000);
  }
  EXPECT_EQ(In(u"\\locked\\*", 18), "error 75");
  EXPECT_EQ(In(u"\\locked", 18), "locked|");
}

}  // namespace
}  // namespace Orvix::testing
