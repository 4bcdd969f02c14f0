// orvixctl registry: shown, edited, exported and imported as a person does it.
#include <gtest/gtest.h>

#include <fstream>

#include "orvix/runtime.h"
#include "support/run_program.h"

namespace Orvix {
namespace {

using testing_support::ProgramResult;
using testing_support::ReadWhole;
using testing_support::RunProgram;
using testing_support::ScratchDirectory;

class OrvixctlRegistryTest : public ::testing::Test {
 protected:
  OrvixctlRegistryTest() { UseStore("store"); }
  ~OrvixctlRegistryTest() override { Name(before_); }

  void UseStore(const char* name) const { Name((scratch_.Path() / name).string()); }
  static ProgramResult Run(std::vector<std::string> words) {
    words.insert(words.begin(), "registry");
    return RunProgram("orvixctl", words);
  }
  static std::string Out(const std::vector<std::string>& words) {
    const ProgramResult result = Run(words);
    return result.status == 0 && result.err.empty() ? result.out
                                                    : std::to_string(result.status) + " " + result.out + result.err;
  }
  [[nodiscard]] std::string File(const char* name) const { return (scratch_.Path() / name).string(); }

 private:
  static void Name(const std::string& directory) { setenv("ORVIX_REGISTRY", directory.c_str(), 1); }
  ScratchDirectory scratch_;
  std::string before_ = std::getenv("ORVIX_REGISTRY") == nullptr ? "" : std::getenv("ORVIX_REGISTRY");
};

TEST_F(OrvixctlRegistryTest, WhatIsSetIsShownInTheSameWords) {
  struct Row {
    const char* typed;
    const char* shown;
  };
  constexpr Row kRows[] = {
      {"plain text", R"("plain text")"},
      {"", R"("")"},
      {R"("quoted \"text\"\t\u0007\ud800\\")", R"("quoted \"text\"\t\u0007\ud800\\")"},
      {"\xC3\xA4\xF0\x9F\x98\x80", "\"\xC3\xA4\xF0\x9F\x98\x80\""},
      {R"(expand:"%HOME%\\x")", R"(expand:"%HOME%\\x")"},
      {"dword:4294967295", "dword:4294967295"},
      {"dword:4294967296", R"("dword:4294967296")"},
      {"hex:00 ff 10", "hex:00 ff 10"},
      {"hex:", "hex:"},
      {"hex(7):61 00 00", "hex(7):61 00 00"},
      {"hex(4):01 02", "hex(4):01 02"},
      {"hex(4):01 00 00 00", "dword:1"},
      {"hex(1):61 00", "hex(1):61 00"},
      {"hex(1):61 00 00 00", R"("a")"},
      {"hex:0", R"("hex:0")"},
  };
  for (const Row& row : kRows) {
    EXPECT_EQ(Out({"set", "HKCU\\Software\\Demo", "Name", row.typed}), "") << row.typed;
    EXPECT_EQ(Out({"get", "hkey_current_user\\software\\demo", "NAME"}), std::string(row.shown) + "\n");
  }
  EXPECT_EQ(Out({"set", "HKCU\\Software\\Demo", "", "5"}), "");
  EXPECT_EQ(Out({"list", "HKCU\\Software"}), "[Demo]\n");
  EXPECT_EQ(Out({"list", "HKCU\\Software\\Demo"}), "\"\" = \"5\"\n\"Name\" = \"hex:0\"\n");
  EXPECT_EQ(Out({"list"}), "[HKEY_CLASSES_ROOT]\n[HKEY_CURRENT_USER]\n[HKEY_LOCAL_MACHINE]\n[HKEY_USERS]\n");
  EXPECT_EQ(Out({"delete", "HKCU\\Software\\Demo", "Name"}), "");
  EXPECT_EQ(Out({"get", "HKCU\\Software\\Demo"}), "\"5\"\n");
  EXPECT_EQ(Run({"delete", "HKCU\\Software"}).status, 1);
  EXPECT_EQ(Out({"delete", "HKCU\\Software", "-r"}), "");
  EXPECT_EQ(Out({"list", "HKCU"}), "");
}

// Names and bytes of every kind, and more levels than one call makes.
TEST_F(OrvixctlRegistryTest, ExportThenImportGivesTheSameStore) {
  constexpr OLECHAR kLone[] = u"a\xD800]\n\"[b";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(MakeRootKey(kUsers), kLone, 0, nullptr, 0, 0, nullptr, &key, nullptr), 0);
  for (DWORD type = 0; type < 12; ++type) {
    const std::string data(type, static_cast<char>(type * 37));
    const std::u16string name = kLone + std::u16string(1, static_cast<char16_t>(u'0' + type));
    ASSERT_EQ(RegSetValueExW(key, name.c_str(), 0, type, reinterpret_cast<const BYTE*>(data.data()), type), 0);
  }
  RegCloseKey(key);
  std::string deep = "HKLM";
  for (int i = 0; i < 100; ++i) deep += "\\" + std::to_string(i);
  ASSERT_EQ(Out({"set", deep, "x", "deep"}), "");
  ASSERT_EQ(Out({"export", "-o", File("all")}), "105 keys and 13 values written.\n");
  UseStore("other");
  EXPECT_EQ(Out({"import", File("all")}), "13 values were written.\n");
  EXPECT_EQ(Out({"export"}), ReadWhole(File("all")));
  EXPECT_EQ(Out({"get", deep, "x"}), "\"deep\"\n");
  EXPECT_EQ(Out({"check"}), "The registry is sound: 105 keys and 13 values.\n");
}

TEST_F(OrvixctlRegistryTest, WhatCannotBeDoneIsSaid) {
  struct Row {
    std::vector<std::string> words;
    int status;
    const char* says;
  };
  const auto text = [&](const char* name, const char* content) {
    std::ofstream(File(name)) << content;
    return File(name);
  };
  const Row rows[] = {
      {{"get", "HKCU", "none"}, 1, "HKEY_CURRENT_USER, value none: it is not there."},
      {{"list", "HKCU\\none"}, 1, "it is not there"},
      {{"export", "HKCU\\none"}, 1, "it is not there"},
      {{"list", "HKXY"}, 2, "\"HKXY\" does not begin with a root"},
      {{"delete", "HKCU", "-r"}, 2, "a root stays"},
      {{"set", "HKCU", "x", "\"open"}, 2, "\"open is no quoted text"},
      {{"set", "HKCU\\" + std::string(256, 'k'), "x", "1"}, 1, "a name is too long"},
      {{"import", File("none")}, 1, "cannot read"},
      {{"import", text("empty", "")}, 1, "nothing can be read"},
      {{"import", text("other", "[HKCU]\n")}, 1, "other, line 1: this is no registry text"},
      {{"import", text("value", "Orvix registry 1\n\"x\" = \"1\"\n")}, 1, "line 2: this is no value of a key"},
      {{"import", text("bad", "Orvix registry 1\n; note\n\n[HKCU]\n\"x\" = 1\n")}, 1, "line 5"},
      {{"import", text("key", "Orvix registry 1\n[HKCU\n")}, 1, "line 2: this is no key"},
  };
  for (const Row& row : rows) {
    const ProgramResult result = Run(row.words);
    EXPECT_EQ(result.status, row.status) << result;
    EXPECT_NE(result.err.find(row.says), std::string::npos) << result;
  }
}

TEST_F(OrvixctlRegistryTest, DamageIsSaidAndTheRestSaved) {
  ASSERT_EQ(Out({"set", "HKCU\\A", "x", std::string(9000, 'x')}), "");
  std::ofstream(File("store/registry.sqlite"), std::ios::binary) << std::string(9000, 'n');
  std::filesystem::remove(File("store/registry.sqlite-wal"));
  const ProgramResult check = Run({"check"});
  EXPECT_EQ(check.status, 1) << check;
  EXPECT_NE(check.out.find("What can be read: 0 keys and 0 values."), std::string::npos) << check;
  const ProgramResult saved = Run({"export"});
  EXPECT_EQ(saved.status, 1);
  EXPECT_EQ(saved.out, "Orvix registry 1\n");
  EXPECT_NE(saved.err.find("the store is damaged"), std::string::npos) << saved;
}

}  // namespace
}  // namespace Orvix
