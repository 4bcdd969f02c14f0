// What stays on disk: other processes, kills, damage, repair, refusals.
#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include "platform/registry/registry_fixture.h"

namespace Orvix {
namespace {

using namespace std::string_literals;

constexpr char kHeaderEnd[] = "starts with its verb.\n";

class StoreTest : public RegistryTest {};
class DamageTest : public RegistryTest {
 protected:
  // One key with three values; the file's lines without the header.
  std::vector<std::string> WriteThree() {
    const HKEY key = CreateKey(User(), "Key");
    for (const char* name : {"One", "Two", "Three"}) EXPECT_EQ(SetBytes(key, name, 3, name), 0);
    const std::string file = ReadFile(UserFile());
    std::vector<std::string> lines;
    for (std::size_t at = file.find(kHeaderEnd) + sizeof kHeaderEnd - 1; at < file.size();) {
      const std::size_t end = file.find('\n', at);
      lines.push_back(file.substr(at, end - at));
      at = end + 1;
    }
    return lines;
  }
  static std::string Joined(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\n";
    return text;
  }
  static std::string Get(const char* name) {
    HKEY key = nullptr;
    const LONG result = RegOpenKeyExA(User(), "Key", 0, kGeneral, &key);
    if (result != 0) return "open " + std::to_string(result);
    const std::string bytes = GetBytes(key, name);
    RegCloseKey(key);
    return bytes;
  }
  static LONG Set(const char* name, const char* bytes) { return SetBytes(CreateKey(User(), "Key"), name, 3, bytes); }
};

TEST_F(StoreTest, LinesAreAsDocumented) {
  const HKEY key = CreateKey(User(), "Software\\\\Orvix\\");
  ASSERT_EQ(SetBytes(key, "Na\"me%", REG_SZ, "a\xE4\0"s), 0);
  ASSERT_EQ(SetBytes(key, "Count", REG_DWORD, "\x0c\0\0\0"s), 0);
  ASSERT_EQ(SetBytes(key, "", REG_BINARY, ""), 0);
  ASSERT_EQ(RegDeleteValueA(key, "count"), 0);
  ASSERT_EQ(RegDeleteKeyA(key, ""), 0);
  std::string contents;
  std::istringstream file(ReadFile(UserFile()));
  for (std::string line; std::getline(file, line);) {
    if (line[0] != '#') contents += line.substr(18) + "\n";
  }
  EXPECT_EQ(contents,
            "key \"Software\\Orvix\"\n"
            "set \"Software\\Orvix\" \"Na%22me%25\" 1 \"a\xC3\xA4%00\"\n"
            "set \"Software\\Orvix\" \"Count\" 4 0c000000\n"
            "set \"Software\\Orvix\" \"\" 3 \"\"\n"
            "unset \"Software\\Orvix\" \"Count\"\n"
            "drop \"Software\\Orvix\"\n");
}

TEST_F(StoreTest, TheChecksumIsTheCommonCrc32OfTheContent) {
  CreateKey(User(), "A");
  // CRC-32 of `key "A"` and of the bytes 61 00, the folded name.
  EXPECT_NE(ReadFile(UserFile()).find("\n1fdfd926 3d3f4819 key \"A\"\n"), std::string::npos) << ReadFile(UserFile());
}

TEST_F(StoreTest, OtherProcessesSeeAChangeWhenTheCallHasReturned) {
  const HKEY key = CreateKey(User(), "A");
  EXPECT_EQ(InChild([&] { return SetBytes(key, "x", 3, "child") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(GetBytes(key, "X"), "child");
  ASSERT_EQ(SetBytes(key, "x", 3, "parent"), 0);
  EXPECT_EQ(InChild([&] { return GetBytes(key, "x") == "parent" ? 0 : 1; }), 0);
  EXPECT_EQ(InChild([&] { return RegDeleteKeyA(User(), "A") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(GetBytes(key, "x"), "code 1018");
}

TEST_F(StoreTest, ADirectoryThatWasTakenAwayStartsEmpty) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  std::filesystem::remove_all(Store());
  EXPECT_EQ(GetBytes(User(), "x"), "code 2");
  ASSERT_EQ(SetBytes(User(), "y", 3, "2"), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "code 2");
  EXPECT_EQ(InChild([] { return GetBytes(User(), "y") == "2" ? 0 : 1; }), 0);
}

// One writer is killed over and over in the middle of its work while another one
// writes: no value is ever anything but whole, and none of the survivor's is lost.
TEST_F(StoreTest, KilledWritersLeaveOldOrNewValues) {
  constexpr int kKills = 200;
  const auto value_of = [](char c) { return std::string(20000, c); };
  const HKEY key = CreateKey(User(), "A");
  ASSERT_EQ(SetBytes(key, "victim", 3, value_of('a')), 0);
  for (int round = 0; round < kKills; ++round) {
    int ready[2] = {};
    ASSERT_EQ(pipe(ready), 0);
    const pid_t child = fork();
    if (child == 0) {
      if (write(ready[1], "x", 1) != 1) _exit(1);
      for (char c = 'a';; c = c == 'z' ? 'a' : static_cast<char>(c + 1)) SetBytes(key, "victim", 3, value_of(c));
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    close(ready[0]);
    close(ready[1]);
    for (int i = 0; i <= round % 7; ++i) {
      const std::string name = std::to_string(round) + "." + std::to_string(i);
      ASSERT_EQ(SetBytes(key, name.c_str(), 3, name), 0);
    }
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::string victim = GetBytes(key, "victim");
    ASSERT_EQ(victim.size(), 20000u);
    ASSERT_EQ(victim, value_of(victim[0])) << round;
  }
  EXPECT_EQ(InChild([&] {
              // Read from the start, by a process that saw nothing of it.
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              HKEY fresh = nullptr;
              if (RegOpenKeyExA(User(), "A", 0, kGeneral, &fresh) != 0) return 1;
              for (int round = 0; round < kKills; ++round) {
                for (int i = 0; i <= round % 7; ++i) {
                  const std::string name = std::to_string(round) + "." + std::to_string(i);
                  if (GetBytes(fresh, name.c_str()) != name) return 2;
                }
              }
              return 0;
            }),
            0);
}

TEST_F(StoreTest, OutOfDateRecordsAreClearedAwayNowAndThen) {
  const HKEY key = CreateKey(User(), "A\\Kept");
  ASSERT_EQ(SetBytes(key, "keep", 3, "kept"), 0);
  for (int i = 0; i < 300; ++i)
    ASSERT_EQ(SetBytes(key, "x", 3, std::string(10000, static_cast<char>('a' + i % 26))), 0);
  // 300 times 20,000 bytes of text; one mebibyte may be out of date.
  EXPECT_LT(std::filesystem::file_size(UserFile()), 1200000u);
  EXPECT_FALSE(std::filesystem::exists(UserFile() + ".new"));
  EXPECT_EQ(GetBytes(key, "x"), std::string(10000, 'a' + 299 % 26));
  EXPECT_EQ(GetBytes(key, "keep"), "kept");
  EXPECT_EQ(InChild([&] { return GetBytes(key, "keep") == "kept" && SetBytes(key, "x", 3, "1") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(GetBytes(key, "x"), "1");
}

TEST_F(StoreTest, AReadOnlyStoreIsReadAndRefusesToChange) {
  const HKEY key = CreateKey(User(), "A");
  ASSERT_EQ(SetBytes(key, "x", 3, "1"), 0);
  std::filesystem::permissions(Store(), std::filesystem::perms(0555));
  std::filesystem::permissions(std::filesystem::path(Store()).parent_path(), std::filesystem::perms(0755));
  const auto check = [&] {
    if (GetBytes(key, "x") != "1") return 1;
    if (SetBytes(key, "x", 3, "2") != 5) return 2;
    HKEY made = nullptr;
    if (RegCreateKeyExA(User(), "B", 0, nullptr, 0, kGeneral, nullptr, &made, nullptr) != 5) return 3;
    if (RegDeleteKeyA(User(), "A") != 5) return 4;
    return GetBytes(key, "x") == "1" ? 0 : 5;
  };
  EXPECT_EQ(check(), 0);
  if (geteuid() != 0) return;
  // As a user with no rights here, in a process that has nothing open yet.
  std::filesystem::permissions(UserFile(), std::filesystem::perms(0644));
  std::filesystem::permissions(Store(), std::filesystem::perms(0755));
  EXPECT_EQ(InChild([&] {
              if (setegid(65534) != 0 || seteuid(65534) != 0) return 10;
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              return check();
            }),
            0);
  std::filesystem::permissions(UserFile(), std::filesystem::perms(0600));
  EXPECT_EQ(InChild([&] {
              if (setegid(65534) != 0 || seteuid(65534) != 0) return 10;
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              return GetBytes(User(), "x") == "code 5" ? 0 : 1;
            }),
            0);
}

TEST_F(StoreTest, AReadOnlyFileRefusesToChangeForEveryone) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "1"), 0);
  std::filesystem::permissions(UserFile(), std::filesystem::perms(0444));
  EXPECT_EQ(SetBytes(User(), "x", 3, "2"), 5);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
  std::filesystem::permissions(UserFile(), std::filesystem::perms(0600));
  EXPECT_EQ(SetBytes(User(), "x", 3, "2"), 0);
}

TEST_F(StoreTest, AFullDiskKeepsTheOldValue) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "old"), 0);
  EXPECT_EQ(InChild([] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit limit{4096, 4096};
              if (setrlimit(RLIMIT_FSIZE, &limit) != 0) return 1;
              if (SetBytes(User(), "x", 3, std::string(5000, 'n')) != 112) return 2;
              if (GetBytes(User(), "x") != "old") return 3;
              return SetBytes(User(), "y", 3, "fits") == 0 ? 0 : 4;
            }),
            0);
  EXPECT_EQ(GetBytes(User(), "x"), "old");
  EXPECT_EQ(GetBytes(User(), "y"), "fits");
}

TEST_F(StoreTest, SomethingElseInPlaceOfTheFileIsDamage) {
  std::filesystem::create_directories(UserFile());
  EXPECT_EQ(GetBytes(User(), "x"), "code 1009");
  EXPECT_EQ(SetBytes(User(), "x", 3, "1"), 1009);
  EXPECT_EQ(SetBytes(MakeRootKey(kUsers), "x", 3, "1"), 0);
}

TEST_F(StoreTest, AStoreOfALaterVersionIsLeftAlone) {
  const std::string text = "# Orvix registry 2\nset \"\" \"x\" 3 31\n";
  WriteUserFile(text);
  EXPECT_EQ(GetBytes(User(), "x"), "code 1009");
  EXPECT_EQ(SetBytes(User(), "x", 3, "1"), 1009);
  EXPECT_EQ(ReadFile(UserFile()), text);
  WriteUserFile("# Orvix registry 2.0\nset \"\" \"x\" 3 31\n");
  EXPECT_EQ(GetBytes(User(), "x"), "code 1009");
  WriteUserFile("# Orvix registry ~\nset \"\" \"x\" 3 31\n");  // a damaged note is a note
  EXPECT_EQ(GetBytes(User(), "x"), "1");
}

// Every byte of the second value's line damaged in turn, its line end too.
TEST_F(DamageTest, ADamagedLineCostsItsOwnValueOnly) {
  std::vector<std::string> lines = WriteThree();
  ASSERT_EQ(lines.size(), 4u);
  const std::string whole = Joined(lines);
  const std::size_t start = lines[0].size() + lines[1].size() + 2;
  for (std::size_t i = 0; i <= lines[2].size(); ++i) {
    for (const char damage : {'\0', '~', '"', '\n'}) {
      std::string damaged = whole;
      if (damaged[start + i] == damage) continue;
      damaged[start + i] = damage;
      WriteUserFile(damaged);
      const std::string two = Get("Two");
      // The address alone is not needed, so damage there costs nothing, nor does a
      // line end right before the verb; a value is never silently gone or another.
      EXPECT_TRUE(two == "code 1009" || two == "Two") << i << ": " << two << "\n" << damaged;
      EXPECT_EQ(two == "Two", (i >= 8 && i <= 17 && (damage != '\n' || i >= 16)) || i == lines[2].size())
          << i << " " << two;
      EXPECT_EQ(Get("One"), "One") << i;
      EXPECT_EQ(Get("Three"), "Three") << i;
      EXPECT_EQ(Get("Four"), "code 2") << i;
    }
  }
}

TEST_F(DamageTest, TheOldValueDoesNotComeBack) {
  std::vector<std::string> lines = WriteThree();
  ASSERT_EQ(Set("Two", "2"), 0);
  std::string text = ReadFile(UserFile());
  text[text.size() - 2] = '3';  // the last digit of the data
  WriteUserFile(text);
  EXPECT_EQ(Get("Two"), "code 1009");
  text = ReadFile(UserFile());
  text.replace(text.rfind("Two"), 3, "Tvo");
  WriteUserFile(text);
  EXPECT_EQ(Get("Two"), "code 1009");
}

TEST_F(DamageTest, WritingOrDeletingTheValueRepairsIt) {
  for (const bool name_too : {false, true}) {
    std::vector<std::string> lines = WriteThree();
    if (lines.size() > 4) lines.resize(4);
    lines[2].back() = 'x';
    if (name_too) lines[2].replace(lines[2].find("Two"), 3, "Tvo");
    WriteUserFile(Joined(lines));
    ASSERT_EQ(Get("Two"), "code 1009");
    ASSERT_EQ(Set("Two", "new"), 0);
    EXPECT_EQ(Get("Two"), "new");
    WriteUserFile(Joined(lines));
    ASSERT_EQ(Get("Two"), "code 1009");
    const HKEY key = CreateKey(User(), "Key");
    EXPECT_EQ(RegDeleteValueA(key, "Two"), 0);
    EXPECT_EQ(GetBytes(key, "Two"), "code 2");
    EXPECT_EQ(InChild([&] { return GetBytes(key, "Two") == "code 2" ? 0 : 1; }), 0);
    std::filesystem::remove_all(Store());
  }
}

TEST_F(DamageTest, DamageOutlivesTheRewritingOfTheFile) {
  std::vector<std::string> lines = WriteThree();
  lines[2].back() = 'x';
  lines[3].replace(lines[3].find("Three"), 5, "Thrii");
  WriteUserFile(Joined(lines) + "no record at all\n");
  for (int i = 0; i < 120; ++i) ASSERT_EQ(Set("big", std::string(10000, static_cast<char>('a' + i % 2)).c_str()), 0);
  const std::string file = ReadFile(UserFile());
  EXPECT_LT(file.size(), 2000000u);
  EXPECT_NE(file.find(lines[2] + "\n"), std::string::npos);
  EXPECT_NE(file.find("no record at all\n"), std::string::npos);
  EXPECT_EQ(Get("One"), "One");
  EXPECT_EQ(Get("Two"), "code 1009");
  EXPECT_EQ(Get("Three"), "code 1009");
}

TEST_F(DamageTest, OtherLineEndsAndLostOnes) {
  const std::vector<std::string> lines = WriteThree();
  for (const char* const line_end : {"\r", "\r\n", "x", ""}) {
    std::string text;
    for (const std::string& line : lines) text += line + line_end;
    WriteUserFile(text);
    for (const char* const name : {"One", "Two"}) EXPECT_EQ(Get(name), name) << line_end;
    ASSERT_EQ(Set("Four", "4"), 0);
    for (const char* const name : {"One", "Two"}) EXPECT_EQ(Get(name), name) << line_end;
    EXPECT_EQ(Get("Four"), "4") << line_end;
  }
  // What is commented out stays so.
  WriteUserFile(lines[0] + "\n# " + lines[1] + "\n" + lines[2] + "\n");
  EXPECT_EQ(Get("One"), "code 2");
  EXPECT_EQ(Get("Two"), "Two");
  // A note that lost its line end costs nothing, a spoilt first byte its own value.
  WriteUserFile("# a note?" + lines[1] + "\n#" + lines[2].substr(1) + "\n");
  EXPECT_EQ(Get("One"), "One");
  EXPECT_EQ(Get("Two"), "code 1009");
  // Thousands on one line are read in one go.
  std::string merged;
  for (int i = 0; i < 5000; ++i) merged += lines[1 + static_cast<std::size_t>(i) % 3] + '?';
  merged.back() = '\n';
  WriteUserFile(merged);
  for (const char* const name : {"One", "Two"}) EXPECT_EQ(Get(name), name);
}

// A last line without a line end is a killed writer's only when it looks so.
TEST_F(DamageTest, WhatAPersonWroteLastStays) {
  WriteThree();
  const std::string whole = ReadFile(UserFile());
  for (const char* const last : {"# a note", "set \"Key\" \"Five\" one 35", "nothing known"}) {
    WriteUserFile(whole + last);
    EXPECT_EQ(Get("Five"), last[0] == 's' ? "code 1009" : "code 2") << last;
    ASSERT_EQ(Set("Six", "6"), 0);
    EXPECT_NE(ReadFile(UserFile()).find(std::string(last) + "\n"), std::string::npos) << last;
    EXPECT_EQ(Get("Three"), "Three");
  }
  // A text changed in the last line, its checksum as it was, and no line end.
  WriteUserFile(whole);
  ASSERT_EQ(SetBytes(CreateKey(User(), "Key"), "Text", 1, "abc"), 0);
  std::string edited = ReadFile(UserFile());
  edited.pop_back();
  edited.replace(edited.rfind("abc"), 3, "abd");
  WriteUserFile(edited);
  EXPECT_EQ(Get("Text"), "code 1009");
  ASSERT_EQ(Set("Six", "6"), 0);
  EXPECT_EQ(Get("Text"), "code 1009");
  WriteUserFile(whole + whole.substr(whole.rfind('\n', whole.size() - 2) + 1, 40));
  ASSERT_EQ(Set("Six", "6"), 0);
  EXPECT_TRUE(ReadFile(UserFile()).starts_with(whole));
  EXPECT_EQ(ReadFile(UserFile()).find('\n', whole.size()), ReadFile(UserFile()).size() - 1);
}

TEST_F(DamageTest, ALostKeyIsDamagedNotMissing) {
  CreateKey(User(), "Lonely");
  std::string text = ReadFile(UserFile());
  text.replace(text.find("Lonely"), 6, "L~nely");
  WriteUserFile(text);
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(User(), "lonely", 0, kGeneral, &key), 1009);
  EXPECT_EQ(RegOpenKeyExA(User(), "Other", 0, kGeneral, &key), 2);
  CreateKey(User(), "Lonely");
  EXPECT_EQ(RegOpenKeyExA(User(), "lonely", 0, kGeneral, &key), 0);
}

TEST_F(DamageTest, ATornLastLineWasNeverWritten) {
  WriteThree();
  ASSERT_EQ(Set("Two", "new"), 0);
  const std::string whole = ReadFile(UserFile());
  const std::size_t last = whole.rfind('\n', whole.size() - 2) + 1;
  for (std::size_t size = last; size + 1 < whole.size(); ++size) {
    WriteUserFile(whole.substr(0, size));
    EXPECT_EQ(Get("Two"), "Two") << size;
    ASSERT_EQ(Set("Three", "3"), 0);
    EXPECT_EQ(Get("Two"), "Two") << size;
    EXPECT_EQ(Get("Three"), "3") << size;
    EXPECT_EQ(InChild([&] { return Get("Three") == "3" ? 0 : 1; }), 0);
  }
  // Only the line end is missing: the record is whole.
  WriteUserFile(whole.substr(0, whole.size() - 1));
  EXPECT_EQ(Get("Two"), "new");
  ASSERT_EQ(Set("Three", "3"), 0);
  EXPECT_EQ(Get("Two"), "new");
  EXPECT_EQ(Get("Three"), "3");
}

TEST_F(DamageTest, APersonEditsWithoutChecksums) {
  WriteThree();
  WriteUserFile(
      "\xEF\xBB\xBF# mine\r\n\r\nset \"Key\\Deep\" \"\" 1 \"hand%00\"\r\n  set \"key\" \"two\"  3\t32\nset \"Key\" "
      "\"last\" 3 39");
  EXPECT_EQ(Get("Two"), "2");
  EXPECT_EQ(Get("One"), "code 2");
  EXPECT_EQ(Get("last"), "9");
  HKEY deep = nullptr;
  ASSERT_EQ(RegOpenKeyExA(User(), "Key\\Deep", 0, kGeneral, &deep), 0);
  EXPECT_EQ(GetBytes(deep, ""), "hand\0"s);
  ASSERT_EQ(Set("Two", "4"), 0);
  EXPECT_EQ(Get("last"), "9");
  EXPECT_EQ(Get("Two"), "4");
  // A mistake costs the one value.
  WriteUserFile("set \"Key\" \"two\" 3 3\nset \"Key\" \"one\" 3 31\n");
  EXPECT_EQ(Get("Two"), "code 1009");
  EXPECT_EQ(Get("One"), "1");
}

TEST_F(DamageTest, NoiseInPlaceOfTheFileHarmsNothing) {
  std::string noise;
  std::uint32_t seed = 12345;
  for (int i = 0; i < 20000; ++i) {
    seed = seed * 1664525 + 1013904223;
    noise.push_back(static_cast<char>(seed >> 24));
  }
  WriteUserFile(noise);
  EXPECT_EQ(Get("One"), "open 2");
  ASSERT_EQ(Set("One", "1"), 0);
  EXPECT_EQ(Get("One"), "1");
  EXPECT_EQ(ReadFile(UserFile()).substr(0, 15000), noise.substr(0, 15000));
}

}  // namespace
}  // namespace Orvix
