// Opening files: which program gets which words, and the code for every way in
// which that fails. Stand-ins on the path write down how they were called.
#include "platform/shell/execute.h"

#include <gmock/gmock.h>

#include "orvix/host.h"
#include "orvix/platform.h"
#include "support/ordinary_user.h"
#include "support/stand_in_desktop.h"

namespace Orvix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ExecuteTest : public ::testing::Test {
 protected:
  INT Open(TextView name, TextView parameters = {}) const {
    return Execute({.file = Text(name), .parameters = Text(parameters), .patience = kLong});
  }
  // Programs that are not waited for have been heard of when they say so.
  std::vector<std::string> WordsOnceThere() const {
    for (int i = 0; i < 5000 && desktop_.Words().empty(); ++i) usleep(1000);
    return desktop_.Words();
  }

  static constexpr std::chrono::milliseconds kLong{20'000};
  Desktop desktop_;
};

TEST_F(ExecuteTest, TheOpenerGetsTheFileAsOneWord) {
  desktop_.InstallAnswer("xdg-open", "");
  desktop_.files.Write("--help", "");
  desktop_.files.Write("a b $(id);'.txt", "");
  desktop_.files.Write("caf\xC3\xA9.txt", "");
  desktop_.files.MakeDirectory("folder");
  EXPECT_EQ(Open(desktop_.files.Name(u"\\--help")), 42);
  EXPECT_EQ(Open(desktop_.files.Name(u"\\A B $(id);'.TXT")), 42);
  EXPECT_EQ(Open(desktop_.files.Name(u"\\caf\u00E9.txt")), 42);
  EXPECT_EQ(Open(desktop_.files.Name(u"\\folder")), 42);
  EXPECT_EQ(Open(u"https://example.org/?q=a b"), 42);
  EXPECT_THAT(desktop_.Words(), ElementsAre("xdg-open", desktop_.files.Native("--help"), "xdg-open",
                                            desktop_.files.Native("a b $(id);'.txt"), "xdg-open",
                                            desktop_.files.Native("caf\xC3\xA9.txt"), "xdg-open",
                                            desktop_.files.Native("folder"), "xdg-open", "https://example.org/?q=a b"));
}

TEST_F(ExecuteTest, AddressesWithoutASchemeAndProgramsByTheirBareName) {
  desktop_.InstallAnswer("xdg-open", "");
  desktop_.InstallAnswer("tool", "");
  EXPECT_EQ(Open(u"WWW.example.org/a?b"), 42);
  EXPECT_EQ(Open(u"www"), 2);
  EXPECT_THAT(desktop_.Words(), ElementsAre("xdg-open", "http://WWW.example.org/a?b"));
  std::filesystem::remove(desktop_.programs.Native("calls"));
  EXPECT_EQ(Open(u"tool", u"one \"two three\""), 42);
  EXPECT_THAT(WordsOnceThere(), ElementsAre("tool", "one", "two three"));
  EXPECT_EQ(Open(u"tool.txt"), 2);
  EXPECT_EQ(Open(u"nowhere\\tool"), 3);
}

// While the opener is waited for the host goes on.
TEST_F(ExecuteTest, TheHostWorksMeanwhile) {
  desktop_.files.Write("a.txt", "");
  desktop_.Install("xdg-open", "#!/bin/sh\nexec /bin/sleep 0.3\n");
  OxHost host{};
  int calls = 0;
  host.size = sizeof host;
  host.context = &calls;
  host.DoEvents = [](void* count) { ++*static_cast<int*>(count); };
  OxSetHost(&host);
  EXPECT_EQ(Open(desktop_.files.Name(u"\\a.txt")), 42);
  EXPECT_GE(calls, 5);
  OxSetHost(nullptr);
}

TEST_F(ExecuteTest, TheOpenersStatusBecomesACode) {
  desktop_.files.Write("a.txt", "");
  struct Case {
    int status;
    INT code;
  };
  for (const Case& one : {Case{0, 42}, {1, 27}, {2, 2}, {3, 31}, {4, 31}}) {
    desktop_.InstallAnswer("xdg-open", "", one.status);
    EXPECT_EQ(Open(desktop_.files.Name(u"\\a.txt")), one.code) << one.status;
  }
}

TEST_F(ExecuteTest, AnOpenerThatStaysIsASuccess) {
  desktop_.files.Write("a.txt", "");
  desktop_.Install("xdg-open", "#!/bin/sh\nexec /bin/sleep 5\n");
  EXPECT_EQ(Execute({.file = desktop_.files.Name(u"\\a.txt"), .patience = std::chrono::milliseconds(20)}), 42);
  desktop_.Install("xdg-open", "#!/bin/sh\nkill -9 $$\n");
  EXPECT_EQ(Open(desktop_.files.Name(u"\\a.txt")), 31);
  desktop_.Install("xdg-open", "no program");
  EXPECT_EQ(Open(desktop_.files.Name(u"\\a.txt")), 0);
}

// Without an opener only what is started itself succeeds.
TEST_F(ExecuteTest, BitAndHeaderTogetherMakeAProgram) {
  EXPECT_EQ(Open(u"Z:\\bin\\true"), 42);
  struct Case {
    const char* content;
    unsigned mode;
    INT code;
  };
  const Case cases[] = {{"#!/bin/sh\n", 0700, 42},
                        {"#!/bin/sh\n", 0600, 31},
                        {"\x7f"
                         "ELF, but no more",
                         0700, 11},
                        {"exit 0\n", 0700, 31},
                        {"#", 0700, 31},
                        {"", 0700, 31}};
  for (const Case& one : cases) {
    desktop_.files.Write("a", one.content);
    std::filesystem::permissions(desktop_.files.Native("a"), std::filesystem::perms(one.mode));
    EXPECT_EQ(Open(desktop_.files.Name(u"\\a")), one.code) << one.content << one.mode;
  }
}

TEST_F(ExecuteTest, ProgramsAreStartedThemselves) {
  desktop_.InstallAnswer("tool", "");
  EXPECT_EQ(Open(desktop_.programs.Name(u"\\tool"), u"-x \"two words\" a\\\\b \"\" \\\"q\\\" $HOME"), 42);
  EXPECT_THAT(WordsOnceThere(), ElementsAre("tool", "-x", "two words", "a\\\\b", "", "\"q\"", "$HOME"));
}

TEST_F(ExecuteTest, WhatIsNotThereOrNotAllowed) {
  desktop_.files.Write("a.txt", "");
  desktop_.files.Write("broken", "#!/no/such/interpreter\n");
  std::filesystem::permissions(desktop_.files.Native("broken"), std::filesystem::perms::owner_all);
  struct Case {
    Text name;
    INT code;
  };
  const Case cases[] = {
      {desktop_.files.Name(u"\\missing"), 2},
      {desktop_.files.Name(u"\\missing\\a"), 3},
      {desktop_.files.Name(u"\\a.txt\\b"), 3},
      {u"Q:\\a.txt", 3},
      {u"\\\\nobody\\share\\a", 3},
      {u"", 2},
      {Text(u"a\0b", 3), 2},
      {Text(u"http:\0b", 7), 2},
      {u"Z:\\*.txt", 2},
      {desktop_.files.Name(u"\\broken"), 11},
      {desktop_.files.Name(u"\\a.txt"), 31},
      {u"https://example.org", 31},
  };
  for (const Case& one : cases) EXPECT_EQ(Open(one.name), one.code) << ToUtf8(one.name);
  std::filesystem::permissions(desktop_.files.Native(""), std::filesystem::perms::none);
  {
    const OrdinaryUser user;
    const INT code = Open(desktop_.files.Name(u"\\a.txt"));
    EXPECT_EQ(code, user.ok() ? 5 : code);
  }
  std::filesystem::permissions(desktop_.files.Native(""), std::filesystem::perms::owner_all);
}

TEST_F(ExecuteTest, RelativeNamesInADirectoryThatIsGoneAreNotFound) {
  const std::filesystem::path before = std::filesystem::current_path();
  desktop_.files.MakeDirectory("gone");
  std::filesystem::current_path(desktop_.files.Native("gone"));
  std::filesystem::remove(desktop_.files.Native("gone"));
  EXPECT_EQ(ShellExecuteA(nullptr, "open", "a.txt", nullptr, nullptr, 1), reinterpret_cast<void*>(3));
  EXPECT_EQ(ShellExecuteA(nullptr, "explore", ".", nullptr, nullptr, 1), reinterpret_cast<void*>(3));
  std::filesystem::current_path(before);
}

TEST_F(ExecuteTest, LineOfWords) {
  struct Case {
    TextView line;
    std::vector<std::string> words;
  };
  const Case cases[] = {
      {u"", {}},
      {u" \t ", {}},
      {u"a \tb ", {"a", "b"}},
      {u"\"a b\"c", {"a bc"}},
      {u"\"open end ", {"open end "}},
      {u"a\"\"b \"\"", {"ab", ""}},
      {u"\\\"a", {"\"a"}},               // backslash, quote
      {u"\\\\\"a b\"", {"\\a b"}},       // two and a quote that opens
      {u"\\\\\\\"a b", {"\\\"a", "b"}},  // three: one, and an ordinary quote
      {u"\"C:\\dir x\\\\\" y", {"C:\\dir x\\", "y"}},
      {u"\\\\server\\s \\", {"\\\\server\\s", "\\"}},
      {u"\u00E9\u20AC", {"\xC3\xA9\xE2\x82\xAC"}},
  };
  for (const Case& one : cases) EXPECT_EQ(WordsOfCommandLine(one.line), one.words) << ToUtf8(one.line);
}

TEST_F(ExecuteTest, VerbsAndDirectories) {
  desktop_.InstallAnswer("xdg-open", "");
  desktop_.files.MakeDirectory("folder");
  desktop_.files.Write("a.txt", "");
  const Text folder = desktop_.files.Name(u"\\folder");
  const Text file = desktop_.files.Name(u"\\a.txt");
  EXPECT_EQ(Execute({.verb = u"OPEN", .file = file}), 42);
  EXPECT_EQ(Execute({.verb = u"Explore", .file = folder}), 42);
  EXPECT_EQ(Execute({.verb = u"explore", .file = file}), 31);
  EXPECT_EQ(Execute({.verb = u"print", .file = file}), 31);
  desktop_.Install("xdg-open", "#!/bin/sh\npwd -P > '" + desktop_.files.Native("where") + "'\n");
  EXPECT_EQ(Execute({.file = file, .directory = folder}), 42);
  std::string where;
  std::getline(std::ifstream(desktop_.files.Native("where")), where);
  EXPECT_EQ(where, std::filesystem::canonical(desktop_.files.Native("folder")));
  EXPECT_EQ(Execute({.file = file, .directory = file}), 3);
  EXPECT_EQ(Execute({.file = file, .directory = desktop_.files.Name(u"\\none")}), 3);
}

TEST_F(ExecuteTest, TheExportedFunctionTakesAnsi) {
  desktop_.InstallAnswer("xdg-open", "");
  desktop_.files.Write("caf\xC3\xA9 \xE2\x82\xAC.txt", "");
  const std::string name = "Z:" + desktop_.files.Native("") + "CAF\xC9 \x80.txt";
  EXPECT_EQ(ShellExecuteA(nullptr, nullptr, name.c_str(), nullptr, nullptr, 1), reinterpret_cast<void*>(42));
  EXPECT_THAT(desktop_.Words(), ElementsAre("xdg-open", desktop_.files.Native("caf\xC3\xA9 \xE2\x82\xAC.txt")));
}

TEST_F(ExecuteTest, TheExportedFunctionAsksTheHostFirst) {
  struct Seen {
    LONG window;
    std::string words;
    LONG show;
  } seen{};
  OxHost host{};
  host.size = sizeof host;
  host.context = &seen;
  host.ShellExecuteA = [](void* context, LONG window, const char* verb, const char* file, const char* parameters,
                          const char* directory, LONG show) -> LONG {
    *static_cast<Seen*>(context) = {window, std::string(verb) + file + parameters + (directory == nullptr ? "-" : "+"),
                                    show};
    return 33;
  };
  OxSetHost(&host);
  EXPECT_EQ(ShellExecuteA(reinterpret_cast<void*>(std::intptr_t{-7}), "v", "f", "p", nullptr, 5),
            reinterpret_cast<void*>(33));
  OxSetHost(nullptr);
  EXPECT_EQ(seen.window, -7);
  EXPECT_EQ(seen.words, "vfp-");
  EXPECT_EQ(seen.show, 5);
  EXPECT_EQ(ShellExecuteA(nullptr, "open", nullptr, nullptr, nullptr, 1), reinterpret_cast<void*>(2));
}

}  // namespace
}  // namespace Orvix::testing
