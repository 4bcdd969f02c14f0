#include "platform/dialogs/file_chooser.h"

#include <gmock/gmock.h>

#include "orvix/runtime.h"
#include "platform/dialogs/start_place.h"
#include "support/stand_in_desktop.h"

namespace {

using Orvix::ChooseFiles;
using Orvix::ChooserRequest;
using Orvix::testing::Desktop;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FileChooserTest : public ::testing::Test {
 protected:
  static ChooserRequest Request() {
    ChooserRequest request;
    request.start = "/srv/data/";
    return request;
  }
  Desktop desktop_;
};

TEST_F(FileChooserTest, WhatBecameOfADialogCanBeAsked) {
  desktop_.InstallAnswer("zenity", "/srv/data/a\n");
  EXPECT_THAT(ChooseFiles(Request()), ElementsAre("/srv/data/a"));
  EXPECT_EQ(OxLastDialog(), kOxDialogAnswered);
  desktop_.InstallAnswer("zenity", "", 1);
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  EXPECT_EQ(OxLastDialog(), kOxDialogCancelled);
  std::filesystem::remove(desktop_.programs.Native("zenity"));
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  EXPECT_EQ(OxLastDialog(), kOxDialogNotShown);
}

TEST_F(FileChooserTest, TellsZenityEverythingInOptionsWithValues) {
  desktop_.InstallAnswer("zenity", "/srv/data/a\n");
  ChooserRequest request = Request();
  request.multiple = true;
  request.title = u"--save \"$(id)\"\nnext\xD800";
  request.owner = 4711;
  request.filters = {{u"Text | files", u"*.txt; my *.[d]"}, {u"", u"*.*"}, {u"Nothing", u" ; "}};
  EXPECT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  EXPECT_THAT(desktop_.Words(),
              ElementsAre("zenity", "--file-selection", "--title=--save \"$(id)\" next\xEF\xBF\xBD", "--attach=4711",
                          "--modal", "--filename=/srv/data/", "--multiple", "--separator=/",
                          "--file-filter=Text   files | *.[tT][xX][tT] [mM][yY]?*.[[][dD]]", "--file-filter=*.* | *"));
}

TEST_F(FileChooserTest, TellsZenityToAskBeforeOverwritingOnlyWhenWanted) {
  desktop_.InstallAnswer("zenity", "/srv/data/a\n");
  ChooserRequest request = Request();
  request.save = request.multiple = true;
  request.start = "/srv/data/-x";
  ASSERT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  request.ask_overwrite = false;
  ASSERT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  EXPECT_THAT(desktop_.Words(),
              ElementsAre("zenity", "--file-selection", "--filename=/srv/data/-x", "--save", "--confirm-overwrite",
                          "zenity", "--file-selection", "--filename=/srv/data/-x", "--save"));
}

TEST_F(FileChooserTest, TellsKdialogPlaceAndFiltersBehindTheOptions) {
  desktop_.InstallAnswer("kdialog", "/srv/data/a\n");
  ChooserRequest request = Request();
  request.multiple = true;
  request.title = u"--help";
  request.owner = 12;
  request.filters = {{u"-style=x (*.txt;*.doc)", u"*.txt;*.doc"}, {u"All", u"*.*"}};
  EXPECT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  EXPECT_THAT(desktop_.Words(),
              ElementsAre("kdialog", "--getopenfilename", "--title=--help", "--attach=12", "--multiple",
                          "--separate-output", "--", "/srv/data/", " -style=x (*.txt *.doc)|All (*)"));
}

TEST_F(FileChooserTest, SavesThroughKdialogWithoutListOptions) {
  desktop_.InstallAnswer("kdialog", "/srv/data/a\n");
  ChooserRequest request = Request();
  request.save = request.multiple = true;
  request.owner = -1;
  ASSERT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  EXPECT_THAT(desktop_.Words(), ElementsAre("kdialog", "--getsavefilename", "--", "/srv/data/"));
}

TEST_F(FileChooserTest, PrefersTheDesktopsOwnProgram) {
  desktop_.InstallAnswer("zenity", "/srv/data/a\n", 1);
  desktop_.InstallAnswer("kdialog", "/srv/data/a\n", 1);
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());  // cancelled: the other is not asked
  desktop_.desktop.Set("x:KDE");
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  desktop_.desktop.Set("KDEX");
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  EXPECT_THAT(desktop_.Words(),
              ElementsAre("zenity", "--file-selection", "--filename=/srv/data/", "kdialog", "--getopenfilename", "--",
                          "/srv/data/", "zenity", "--file-selection", "--filename=/srv/data/"));
}

TEST_F(FileChooserTest, TriesTheOtherWhenOneCannotBeStarted) {
  desktop_.Install("zenity", "no program");
  desktop_.InstallAnswer("kdialog", "/srv/data/a\n");
  EXPECT_THAT(ChooseFiles(Request()), ElementsAre("/srv/data/a"));
}

TEST_F(FileChooserTest, IsCancelledWithoutDisplayOrProgram) {
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  desktop_.InstallAnswer("zenity", "/srv/data/a\n");
  desktop_.display.Set("");
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
  EXPECT_FALSE(desktop_.WasShown());
  desktop_.wayland.Set("wayland-0");
  ChooserRequest request = Request();
  request.owner = 5;  // no window of this display
  EXPECT_THAT(ChooseFiles(request), ElementsAre("/srv/data/a"));
  EXPECT_THAT(desktop_.Words(), ElementsAre("zenity", "--file-selection", "--filename=/srv/data/"));
}

TEST_F(FileChooserTest, IsCancelledWhenTheProgramWritesWithoutEnd) {
  desktop_.Install("zenity", "#!/bin/sh\nwhile :; do echo /aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa; done\n");
  EXPECT_THAT(ChooseFiles(Request()), IsEmpty());
}

struct AnswerCase {
  const char* label;
  const char* program;
  bool multiple;
  std::string output;
  int status;
  std::vector<std::string> names;
};

class AnswerTest : public FileChooserTest, public ::testing::WithParamInterface<AnswerCase> {};

TEST_P(AnswerTest, IsTakenOrCountsAsCancelled) {
  const AnswerCase& c = GetParam();
  desktop_.InstallAnswer(c.program, c.output, c.status);
  ChooserRequest request = Request();
  request.multiple = c.multiple;
  EXPECT_EQ(ChooseFiles(request), c.names);
  EXPECT_TRUE(desktop_.WasShown());
}

INSTANTIATE_TEST_SUITE_P(
    Outputs, AnswerTest,
    ::testing::Values(
        AnswerCase{"NoLineEnd", "zenity", false, "/d/a", 0, {"/d/a"}},
        AnswerCase{"Spaces", "zenity", false, "/d/ a b \n", 0, {"/d/ a b "}},
        AnswerCase{"LineEndInName", "zenity", false, "/d/a\n\n", 0, {"/d/a\n"}},
        AnswerCase{"NotUtf8", "zenity", false, "/d/\xFF\xE4\n", 0, {"/d/\xFF\xE4"}},
        AnswerCase{"DashInFront", "zenity", false, "/-rf\n", 0, {"/-rf"}},
        AnswerCase{"Several", "zenity", true, "/d/a\nb//d/c|d//d/-e\n", 0, {"/d/a\nb", "/d/c|d", "/d/-e"}},
        AnswerCase{"OneOfSeveral", "zenity", true, "/d/a\n", 0, {"/d/a"}},
        AnswerCase{"SeveralLines", "kdialog", true, "/d/a\nb\n/d/c d\n", 0, {"/d/a\nb", "/d/c d"}},
        AnswerCase{"OneWithLines", "kdialog", false, "/d\n/a\n", 0, {"/d\n/a"}},
        AnswerCase{"Cancelled", "zenity", false, "", 1, {}},
        AnswerCase{"FailsAfterAName", "zenity", false, "/d/a\n", 255, {}},
        AnswerCase{"Nothing", "zenity", true, "", 0, {}}, AnswerCase{"EmptyLine", "kdialog", true, "\n", 0, {}},
        AnswerCase{"Relative", "zenity", false, "a.txt\n", 0, {}},
        AnswerCase{"Address", "kdialog", false, "smb://host/a\n", 0, {}},
        AnswerCase{"OneRelativeOfTwo", "zenity", true, "(null)//d/b\n", 0, {}},
        AnswerCase{"Directory", "zenity", false, "/d/\n", 0, {}},
        AnswerCase{"Above", "zenity", false, "/d/..\n", 0, {}},
        AnswerCase{"EmbeddedNul", "zenity", false, std::string("/d/a\0b\n", 7), 0, {}},
        AnswerCase{"LongestName", "zenity", false, "/" + std::string(4094, 'a'), 0, {"/" + std::string(4094, 'a')}},
        AnswerCase{"TooLongName", "zenity", false, "/" + std::string(4095, 'a'), 0, {}}),
    [](const auto& tested) { return tested.param.label; });

TEST(FiltersOfTest, DescriptionsAndPatternsAlternate) {
  const auto filters = Orvix::FiltersOf({u"a", u"*.a", u"b", u"*.b", u"c"});
  ASSERT_EQ(filters.size(), 2u);
  EXPECT_EQ(filters[1].description, u"b");
  EXPECT_EQ(filters[1].patterns, u"*.b");
  EXPECT_THAT(Orvix::FiltersOf({}), IsEmpty());
}

TEST(StartPlaceTest, JoinsDirectoryAndNameAsCallersWriteThem) {
  const Orvix::testing::NativeDirectory files;
  files.MakeDirectory("Sub");
  files.Write("Sub/There.txt", "");
  const Orvix::Text root = files.Name(u"");
  const std::string here = std::filesystem::current_path().string() + "/";
  const std::tuple<Orvix::Text, Orvix::Text, std::string> cases[] = {
      {root, u"", files.Native("")},
      {root + u"\\", u"new.txt", files.Native("new.txt")},
      {root + u"\\sub", u"there.TXT", files.Native("Sub/There.txt")},
      {root, u"sub\\-new", files.Native("Sub/-new")},
      {root, u"sub", files.Native("Sub/")},
      {u"C:\\nowhere", root + u"\\sub\\a", files.Native("Sub/a")},
      {root, u"missing\\a", files.Native("")},
      {root, u"*.txt", files.Native("")},
      {root + u"\\missing", u"", here},
      {u"", u"", here},
      {u"", u"--help", here + "--help"},
  };
  for (const auto& [directory, name, expected] : cases) {
    EXPECT_EQ(Orvix::StartPlace(directory, name), expected) << Orvix::ToUtf8(directory + u" + " + name);
  }
}

}  // namespace
