// Keys, values, handles and result codes, as callers of the functions see them.
#include <thread>

#include "platform/registry/registry_fixture.h"

namespace Orvix {
namespace {

using namespace std::string_literals;

LONG Open(HKEY below, const char* name, HKEY* key) { return RegOpenKeyExA(below, name, 0, kGeneral, key); }

class KeyTest : public RegistryTest {};
class ValueTest : public RegistryTest {};
class EnumerationTest : public RegistryTest {};

TEST_F(KeyTest, AMissingStoreReadsAsEmptyAndIsNotMade) {
  HKEY key = nullptr;
  EXPECT_EQ(Open(User(), "Software", &key), 2);
  EXPECT_FALSE(std::filesystem::exists(Store()));
}

TEST_F(KeyTest, CreatingMakesTheKeysAboveAndSaysWhetherTheKeyIsNew) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  ASSERT_EQ(RegCreateKeyExA(User(), "A\\B\\C", 0, nullptr, 0, kGeneral, nullptr, &key, &disposition), 0);
  EXPECT_EQ(disposition, 1u);
  ASSERT_EQ(RegCreateKeyExA(User(), "a\\b", 0, nullptr, 0, kGeneral, nullptr, &key, &disposition), 0);
  EXPECT_EQ(disposition, 2u);
  HKEY below = nullptr;
  EXPECT_EQ(Open(key, "c\\", &below), 0);
  EXPECT_EQ(Open(MakeRootKey(kUsers), "A", &below), 2);
  struct stat status {};
  ASSERT_EQ(stat(Store().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0700u);
}

TEST_F(KeyTest, ALeadingBackslashIsRefusedExceptBelowTheClassesRoot) {
  HKEY key = nullptr;
  EXPECT_EQ(Open(User(), "\\A", &key), 161);
  EXPECT_EQ(Open(CreateKey(User(), "A"), "\\B", &key), 161);
  EXPECT_EQ(RegCreateKeyExA(User(), "\\A", 0, nullptr, 0, kGeneral, nullptr, &key, nullptr), 161);
  CreateKey(MakeRootKey(kClassesRoot), "\\CLSID\\x");
  EXPECT_EQ(Open(MakeRootKey(kClassesRoot), "\\CLSID", &key), 0);
  EXPECT_EQ(Open(MakeRootKey(kClassesRoot), "clsid\\X", &key), 0);
}

TEST_F(KeyTest, SizesAndDepthsHaveTheirLimits) {
  HKEY key = nullptr;
  const auto create = [&](HKEY below, const std::string& name) {
    return RegCreateKeyExA(below, name.c_str(), 0, nullptr, 0, kGeneral, nullptr, &key, nullptr);
  };
  EXPECT_EQ(create(User(), std::string(255, 'k')), 0);
  EXPECT_EQ(create(User(), std::string(256, 'k')), 87);
  std::string levels = "0";
  for (int i = 1; i < 32; ++i) levels += "\\0";
  EXPECT_EQ(create(User(), levels + "\\0"), 87);
  key = User();
  for (int i = 0; i < 16; ++i) ASSERT_EQ(create(key, levels), 0) << i;
  EXPECT_EQ(create(key, "one more than 512"), 87);
  EXPECT_EQ(SetBytes(User(), std::string(16383, 'v').c_str(), 3, "1"), 0);
  EXPECT_EQ(SetBytes(User(), std::string(16384, 'v').c_str(), 3, "1"), 87);
  EXPECT_EQ(GetBytes(User(), std::string(16383, 'V').c_str()), "1");
}

TEST_F(KeyTest, NamesNeverLeaveTheStore) {
  for (const char* name : {"..", "../../escape", "a/b", ".", "%2e%2e", "x\"y", "line\nbreak", "\x7f\x01", "# note"}) {
    const HKEY key = CreateKey(User(), name);
    ASSERT_EQ(SetBytes(key, name, 3, name), 0) << name;
    EXPECT_EQ(GetBytes(key, name), name);
  }
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::recursive_directory_iterator(std::filesystem::path(Store()).parent_path())) {
    if (!entry.is_directory()) files.push_back(entry.path().filename());
  }
  std::sort(files.begin(), files.end());
  EXPECT_EQ(files, (std::vector<std::string>{"registry.sqlite", "registry.sqlite-shm", "registry.sqlite-wal"}));
  // What a fresh process reads is what was written.
  EXPECT_EQ(InChild([&] {
              setenv("ORVIX_REGISTRY", (Store() + "/.").c_str(), 1);
              HKEY key = nullptr;
              if (Open(User(), "line\nbreak", &key) != 0) return 1;
              return GetBytes(key, "LINE\nBREAK") == "line\nbreak" ? 0 : 2;
            }),
            0);
}

TEST_F(KeyTest, UnknownAndClosedHandlesGiveSix) {
  const HKEY key = CreateKey(User(), "A");
  EXPECT_GT(reinterpret_cast<std::intptr_t>(key), 0);
  EXPECT_LT(reinterpret_cast<std::intptr_t>(key), 0x7FFFFFFF);
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegCloseKey(key), 6);
  CreateKey(User(), "A");  // must not get the number that was just closed
  EXPECT_EQ(SetBytes(key, "x", 3, "1"), 6);
  EXPECT_EQ(GetBytes(key, "x"), "code 6");
  HKEY below = nullptr;
  EXPECT_EQ(Open(key, "", &below), 6);
  EXPECT_EQ(Open(nullptr, "A", &below), 6);
  EXPECT_EQ(RegCloseKey(nullptr), 6);
  EXPECT_EQ(Open(MakeRootKey(static_cast<LONG>(0x80000004)), "A", &below), 6);
}

TEST_F(KeyTest, RootsStayOpenAndCountByTheirLow32Bits) {
  EXPECT_EQ(RegCloseKey(User()), 0);
  const HKEY unsigned_root = reinterpret_cast<HKEY>(std::uintptr_t{0x80000001});
  EXPECT_EQ(SetBytes(unsigned_root, "x", 3, "1"), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "1");
  HKEY opened = nullptr;
  EXPECT_EQ(Open(unsigned_root, "", &opened), 0);
  EXPECT_EQ(opened, User());
}

TEST_F(KeyTest, AHandleToADeletedKeyGives1018) {
  const HKEY key = CreateKey(User(), "A\\B");
  EXPECT_EQ(RegDeleteKeyA(User(), "A"), 5);
  EXPECT_EQ(RegDeleteKeyA(User(), "a\\b"), 0);
  EXPECT_EQ(RegDeleteKeyA(User(), "A\\B"), 2);
  CreateKey(User(), "A\\B");
  EXPECT_EQ(SetBytes(key, "x", 3, "1"), 1018);
  EXPECT_EQ(GetBytes(key, "x"), "code 1018");
  EXPECT_EQ(RegCloseKey(key), 0);
  EXPECT_EQ(RegDeleteKeyA(User(), ""), 5);
}

TEST_F(KeyTest, NullArgumentsAreRefused) {
  HKEY key = nullptr;
  EXPECT_EQ(RegCreateKeyExA(User(), nullptr, 0, nullptr, 0, kGeneral, nullptr, &key, nullptr), 87);
  EXPECT_EQ(RegCreateKeyExA(User(), "A", 0, nullptr, 0, kGeneral, nullptr, nullptr, nullptr), 87);
  EXPECT_EQ(Open(User(), "A", nullptr), 87);
  EXPECT_EQ(RegSetValueExA(User(), "x", 0, 3, nullptr, 1), 87);
  BYTE byte = 0;
  EXPECT_EQ(RegQueryValueExA(User(), "x", nullptr, nullptr, &byte, nullptr), 87);
  EXPECT_EQ(RegDeleteKeyA(User(), nullptr), 87);
}

TEST_F(ValueTest, EveryTypeKeepsItsBytes) {
  std::string all;
  for (int i = 0; i < 256; ++i) all.push_back(static_cast<char>(i));
  for (const DWORD type : {0u, 1u, 2u, 3u, 4u, 5u, 7u, 11u, 0xFFFFFFFFu}) {
    for (const std::string& bytes : {all, ""s, "\0"s, "abc"s, "abc\0"s, std::string(200000, 'x') + "\n"}) {
      ASSERT_EQ(SetBytes(User(), "x", type, bytes), 0);
      DWORD length = 12345;
      DWORD got = 77;
      ASSERT_EQ(RegQueryValueExA(User(), "X", nullptr, &got, nullptr, &length), 0);
      EXPECT_EQ(got, type);
      EXPECT_EQ(length, bytes.size());
      EXPECT_EQ(GetBytes(User(), "x"), bytes) << type;
    }
  }
}

TEST_F(ValueTest, TextsWrittenInOneFormReadInTheOther) {
  ASSERT_EQ(SetBytes(User(), "x", REG_SZ, "a\x80\0"s), 0);  // 0x80 is the euro sign
  OLECHAR units[3] = {};
  DWORD bytes = sizeof units;
  ASSERT_EQ(RegQueryValueExW(User(), u"X", nullptr, nullptr, reinterpret_cast<BYTE*>(units), &bytes), 0);
  EXPECT_EQ(bytes, 6u);
  EXPECT_EQ(Text(units, 3), (Text{u'a', u'\u20AC', u'\0'}));
  const OLECHAR wide[] = u"b\u20AC\u4E2D";
  ASSERT_EQ(RegSetValueExW(User(), u"x", 0, REG_SZ, reinterpret_cast<const BYTE*>(wide), 7), 0);
  EXPECT_EQ(GetBytes(User(), "x"), "b\x80?");
  bytes = 0;
  ASSERT_EQ(RegQueryValueExW(User(), u"x", nullptr, nullptr, nullptr, &bytes), 0);
  EXPECT_EQ(bytes, 7u);
}

// What a narrow call was made from is what counts.
TEST_F(ValueTest, NamesAndTextsKeepWhatTheCodePageLacks) {
  char name[] = "--";
  char data[] = "---";
  WideCharToMultiByte(CP_ACP, 0, u"\u65E5\u672C", 2, name, 2, nullptr, nullptr);
  WideCharToMultiByte(CP_ACP, 0, u"\u0436x\0", 3, data, 3, nullptr, nullptr);
  ASSERT_EQ(SetBytes(User(), name, REG_SZ, {data, 3}), 0);
  EXPECT_EQ(GetBytes(User(), name), "?x\0"s);
  EXPECT_EQ(GetBytes(User(), "??"), "code 2");
  OLECHAR units[4] = {};
  DWORD bytes = sizeof units;
  ASSERT_EQ(RegQueryValueExW(User(), u"\u65E5\u672C", nullptr, nullptr, reinterpret_cast<BYTE*>(units), &bytes), 0);
  EXPECT_EQ(Text(units), u"\u0436x");
}

TEST_F(ValueTest, ATooSmallBufferStaysAsItIs) {
  ASSERT_EQ(SetBytes(User(), "x", 3, "12345"), 0);
  char buffer[6] = "-----";
  DWORD length = 4;
  DWORD type = 0;
  EXPECT_EQ(RegQueryValueExA(User(), "x", nullptr, &type, reinterpret_cast<BYTE*>(buffer), &length), 234);
  EXPECT_EQ(length, 5u);
  EXPECT_EQ(type, 3u);
  EXPECT_STREQ(buffer, "-----");
  EXPECT_EQ(RegQueryValueExA(User(), "x", nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &length), 0);
  EXPECT_STREQ(buffer, "12345");
}

TEST_F(ValueTest, AMissingValueLeavesTheLengthOfABuffer) {
  char buffer[4] = {};
  DWORD length = 4;
  EXPECT_EQ(RegQueryValueExA(User(), "x", nullptr, nullptr, reinterpret_cast<BYTE*>(buffer), &length), 2);
  EXPECT_EQ(length, 4u);
  EXPECT_EQ(RegQueryValueExA(User(), "x", nullptr, nullptr, nullptr, &length), 2);
  EXPECT_EQ(length, 0u);
}

TEST_F(ValueTest, TheEmptyNameIsTheDefaultValue) {
  const HKEY key = CreateKey(User(), "A");
  EXPECT_EQ(GetBytes(key, ""), "code 2");
  ASSERT_EQ(SetBytes(key, nullptr, 3, "d"), 0);
  EXPECT_EQ(GetBytes(key, ""), "d");
  EXPECT_EQ(RegDeleteValueA(key, ""), 0);
  EXPECT_EQ(RegDeleteValueA(key, nullptr), 2);
  EXPECT_EQ(GetBytes(key, ""), "code 2");
}

TEST_F(ValueTest, NamesIgnoreCaseAndKeepTheirFirstSpelling) {
  ASSERT_EQ(SetBytes(User(), "N\xE4me", 3, "1"), 0);  // a-diaeresis, then A-diaeresis
  ASSERT_EQ(SetBytes(User(), "n\xC4ME", 3, "2"), 0);
  EXPECT_EQ(GetBytes(User(), "N\xC4me"), "2");
  char name[8] = {};
  DWORD characters = sizeof name;
  ASSERT_EQ(RegEnumValueA(User(), 0, name, &characters, nullptr, nullptr, nullptr, nullptr), 0);
  EXPECT_STREQ(name, "N\xE4me");
  characters = sizeof name;
  EXPECT_EQ(RegEnumValueA(User(), 1, name, &characters, nullptr, nullptr, nullptr, nullptr), 259);
}

TEST_F(EnumerationTest, GivesKeysAndValuesInOrderAndTheirSizes) {
  for (const char* name : {"b", "A", "c"}) CreateKey(User(), name);
  ASSERT_EQ(SetBytes(User(), "v2", REG_SZ, "xy"), 0);
  ASSERT_EQ(SetBytes(User(), "V1", 3, "123"), 0);
  std::string names;
  char name[2] = {};
  for (DWORD index = 0;; ++index) {
    DWORD characters = 2;
    if (RegEnumKeyExA(User(), index, name, &characters, nullptr, nullptr, nullptr, nullptr) != 0) break;
    EXPECT_EQ(characters, 1u);
    names += name;
  }
  EXPECT_EQ(names, "Abc");
  DWORD characters = 1;
  EXPECT_EQ(RegEnumKeyExA(User(), 0, name, &characters, nullptr, nullptr, nullptr, nullptr), 234);
  char value_name[3] = {};
  BYTE data[2] = {};
  DWORD bytes = 2;
  DWORD type = 0;
  characters = 3;
  EXPECT_EQ(RegEnumValueA(User(), 0, value_name, &characters, nullptr, &type, data, &bytes), 234);
  EXPECT_EQ(bytes, 3u);
  EXPECT_EQ(RegEnumValueA(User(), 1, value_name, &characters, nullptr, &type, data, &bytes), 0);
  EXPECT_EQ(std::string(value_name), "v2");
  EXPECT_EQ(bytes, 2u);
  EXPECT_EQ(type, REG_SZ);
}

// In the middle of an enumeration, by this process and by another one.
TEST_F(EnumerationTest, CountsWhatIsThereNow) {
  for (const char* name : {"b", "d", "f", "h"}) ASSERT_EQ(SetBytes(User(), name, 3, "x"), 0);
  const auto nth = [](DWORD index) -> std::string {
    char name[8] = {};
    DWORD characters = sizeof name;
    const LONG code = RegEnumValueA(User(), index, name, &characters, nullptr, nullptr, nullptr, nullptr);
    return code == 0 ? name : std::to_string(code);
  };
  EXPECT_EQ(nth(0) + nth(1), "bd");
  ASSERT_EQ(SetBytes(User(), "a", 3, "x"), 0);
  EXPECT_EQ(nth(2) + nth(3), "df");
  EXPECT_EQ(InChild([&] { return RegDeleteValueA(User(), "b") == 0 ? 0 : 1; }), 0);
  EXPECT_EQ(nth(4), "259");
  EXPECT_EQ(nth(3) + nth(0) + nth(1), "had");
}

TEST_F(EnumerationTest, DeletingTheFirstUntilNoneIsLeftTerminates) {
  for (int i = 0; i < 50; ++i) ASSERT_EQ(SetBytes(User(), ("v" + std::to_string(i)).c_str(), 3, "x"), 0);
  int deleted = 0;
  for (;; ++deleted) {
    char name[8] = {};
    DWORD characters = sizeof name;
    if (RegEnumValueA(User(), 0, name, &characters, nullptr, nullptr, nullptr, nullptr) != 0) break;
    ASSERT_EQ(RegDeleteValueA(User(), name), 0);
  }
  EXPECT_EQ(deleted, 50);
}

TEST_F(ValueTest, ThreadsWriteSideBySide) {
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([thread] {
      const HKEY key = CreateKey(User(), "Shared");
      for (int i = 0; i < 100; ++i) {
        const std::string name = std::to_string(thread) + "." + std::to_string(i);
        EXPECT_EQ(SetBytes(key, name.c_str(), 3, name), 0);
        EXPECT_EQ(GetBytes(key, name.c_str()), name);
      }
      EXPECT_EQ(RegCloseKey(key), 0);
    });
  }
  for (std::thread& thread : threads) thread.join();
  const HKEY key = CreateKey(User(), "Shared");
  for (int thread = 0; thread < 4; ++thread)
    EXPECT_EQ(GetBytes(key, (std::to_string(thread) + ".99").c_str()), std::to_string(thread) + ".99");
}

}  // namespace
}  // namespace Orvix
