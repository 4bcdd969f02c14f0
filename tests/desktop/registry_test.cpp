// Registry members: what is stored, byte by byte, what is read back, and which
// failures are heard of.
#include <gtest/gtest.h>

#include "orvix/runtime.h"
#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

constexpr TextView kKeyName = u"Software\\Orvix test";

HKEY RootKey(LONG root) { return reinterpret_cast<HKEY>(std::intptr_t{root}); }

class RegistryTest : public ::testing::Test {
 protected:
  RegistryTest() { EXPECT_TRUE(Create(kKeyName)); }
  ~RegistryTest() override { RegDeleteKeyA(RootKey(oxHKEY_CURRENT_USER), ToUtf8(kKeyName).c_str()); }

  bool Create(TextView name) {
    VARIANT_BOOL made = 7;
    BSTR variable = BstrHandle(name).Detach();
    LONG root = oxHKEY_CURRENT_USER;
    EXPECT_EQ(orvix_->CreateNewKeyRet(&variable, &root, &made), S_OK);
    SysFreeString(variable);
    return made == VARIANT_TRUE;
  }

  // The result code of SetKeyValue; what SetKeyValueRet makes of the same goes
  // to `written_`.
  HRESULT Set(TextView name, VARIANT value, LONG type, TextView key = kKeyName) {
    BSTR key_name = BstrHandle(key).Detach();
    BSTR value_name = BstrHandle(name).Detach();
    LONG root = oxHKEY_CURRENT_USER;
    const HRESULT result = orvix_->SetKeyValue(&key_name, &value_name, &value, &type, &root);
    stored_by_set_ = Stored(ToUtf8(name).c_str());
    VARIANT_BOOL written = 7;
    EXPECT_EQ(orvix_->SetKeyValueRet(&key_name, &value_name, &value, &type, &root, &written), S_OK);
    written_ = written == VARIANT_TRUE;
    SysFreeString(key_name);
    SysFreeString(value_name);
    return result;
  }

  // Type and bytes of a stored value, "none" without one.
  std::string Stored(const char* name) {
    HKEY key = nullptr;
    RegOpenKeyExA(RootKey(oxHKEY_CURRENT_USER), ToUtf8(kKeyName).c_str(), 0, 1, &key);
    char data[2000];
    DWORD bytes = sizeof data;
    DWORD type = 0;
    const LONG result = RegQueryValueExA(key, name, nullptr, &type, reinterpret_cast<BYTE*>(data), &bytes);
    RegCloseKey(key);
    return result == 0 ? std::to_string(type) + ":" + std::string(data, bytes) : "none";
  }
  void Store(const char* name, DWORD type, const std::string& data) {
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExA(RootKey(oxHKEY_CURRENT_USER), ToUtf8(kKeyName).c_str(), 0, 2, &key), 0);
    EXPECT_EQ(
        RegSetValueExA(key, name, 0, type, reinterpret_cast<const BYTE*>(data.data()), static_cast<DWORD>(data.size())),
        0);
    RegCloseKey(key);
  }

  struct Read {
    bool found;
    Text value;
    bool operator==(const Read&) const = default;
  };
  Read Get(TextView name, TextView before, TextView key = kKeyName) {
    BSTR key_name = BstrHandle(key).Detach();
    BSTR value_name = BstrHandle(name).Detach();
    BSTR value = BstrHandle(before).Detach();
    LONG root = oxHKEY_CURRENT_USER;
    VARIANT_BOOL found = 7;
    result_ = orvix_->GetKeyValue(&root, &key_name, &value_name, &value, &found);
    Read read{found == VARIANT_TRUE, Text(ViewOf(value))};
    SysFreeString(key_name);
    SysFreeString(value_name);
    SysFreeString(value);
    return read;
  }

  ComPtr<_classOrvix> orvix_ = MakeOrvix();
  bool written_ = false;
  std::string stored_by_set_;  // what SetKeyValue alone had left
  HRESULT result_ = S_OK;
};

VARIANT Null() {
  VARIANT value{};
  value.vt = VT_NULL;
  return value;
}

TEST_F(RegistryTest, ValuesAreStoredByTheirType) {
  struct Case {
    const char16_t* name;
    VARIANT value;
    LONG type;
    std::string stored;
  };
  VARIANT half{};
  half.vt = VT_R8;
  half.dblVal = 2.5;
  VARIANT truth{};
  truth.vt = VT_BOOL;
  truth.boolVal = VARIANT_TRUE;
  const Variant text(TextView(u"\u20AC\u0416\0x", 4));
  const Variant digits(TextView(u"  -2 "));
  const Case cases[] = {
      {u"t1", Variant(LONG{12}).get(), 1, std::string("1:12\0", 5)},
      {u"t2", text.get(), 1, std::string("1:\x80?\0x\0", 7)},
      {u"t3", Null(), 1, std::string("1:\0", 3)},
      {u"t4", VARIANT{}, 1, std::string("1:\0", 3)},
      {u"t5", truth, 1, std::string("1:True\0", 7)},
      {u"n1", Variant(LONG{0x12345678}).get(), 4, "4:\x78\x56\x34\x12"},
      {u"n2", half, 4, std::string("4:\2\0\0\0", 6)},  // to even
      {u"n3", truth, 4, "4:\xFF\xFF\xFF\xFF"},
      {u"n4", digits.get(), 4, "4:\xFE\xFF\xFF\xFF"},
      {u"o1", text.get(), 7, "none"},
      {u"o2", text.get(), 2, "none"},
      {u"", text.get(), 1, std::string("1:\x80?\0x\0", 7)},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(Set(one.name, one.value, one.type), S_OK) << ToUtf8(one.name);
    EXPECT_EQ(stored_by_set_, one.stored) << ToUtf8(one.name);
    EXPECT_TRUE(written_) << ToUtf8(one.name);
    EXPECT_EQ(Stored(ToUtf8(one.name).c_str()), one.stored) << ToUtf8(one.name);
  }
}

TEST_F(RegistryTest, ValuesThatCannotBeConvertedAreErrorsOrFalse) {
  const Variant word(TextView(u"abc"));
  VARIANT large{};
  large.vt = VT_R8;
  large.dblVal = 3e9;
  struct Case {
    VARIANT value;
    LONG type;
    LONG number;
  };
  for (const Case& one : {Case{word.get(), 4, 13}, {large, 4, 6}, {Null(), 4, 13}}) {
    const HRESULT result = Set(u"bad", one.value, one.type);
    EXPECT_EQ(OxErrorNumber(result), one.number);
    EXPECT_FALSE(written_);
    EXPECT_EQ(Stored("bad"), "none");
  }
}

TEST_F(RegistryTest, OnlyTheCreatingMembersCreateKeys) {
  EXPECT_EQ(Set(u"v", Variant(LONG{1}).get(), 1, u"Software\\Orvix absent"), S_OK);
  EXPECT_FALSE(written_);
  EXPECT_EQ(Get(u"v", u"old", u"Software\\Orvix absent"), (Read{false, u""}));
  EXPECT_TRUE(Create(u"Software\\Orvix test"));  // is there already
  EXPECT_TRUE(Create(u"Software\\Orvix test\\a\\b"));
  EXPECT_EQ(Get(u"v", u"old", u"Software\\Orvix test\\A"), (Read{false, u""}));
  RegDeleteKeyA(RootKey(oxHKEY_CURRENT_USER), "Software\\Orvix test\\a\\b");
  RegDeleteKeyA(RootKey(oxHKEY_CURRENT_USER), "Software\\Orvix test\\a");
  BSTR name = BstrHandle(u"x").Detach();
  LONG root = 12345;  // no root
  VARIANT_BOOL made = 7;
  EXPECT_EQ(orvix_->CreateNewKeyRet(&name, &root, &made), S_OK);
  EXPECT_EQ(made, VARIANT_FALSE);
  EXPECT_EQ(orvix_->CreateNewKey(&name, &root), S_OK);
  SysFreeString(name);
}

TEST_F(RegistryTest, TheRootOfAWriteIsTheClassesRootWhenOmitted) {
  BSTR key = BstrHandle(u"Orvix.test").Detach();
  BSTR value_name = BstrHandle(u"v").Detach();
  LONG root = oxHKEY_CLASSES_ROOT;
  LONG type = oxREG_SZ;
  VARIANT value = Variant(LONG{5}).Detach();
  VARIANT_BOOL written = 7;
  EXPECT_EQ(orvix_->CreateNewKey(&key, &root), S_OK);
  EXPECT_EQ(orvix_->SetKeyValueRet(&key, &value_name, &value, &type, nullptr, &written), S_OK);
  EXPECT_EQ(written, VARIANT_TRUE);
  BSTR read = nullptr;
  VARIANT_BOOL found = 7;
  EXPECT_EQ(orvix_->GetKeyValue(&root, &key, &value_name, &read, &found), S_OK);
  EXPECT_EQ(found, VARIANT_TRUE);
  EXPECT_EQ(ViewOf(read), u"5");
  RegDeleteKeyA(RootKey(oxHKEY_CLASSES_ROOT), "Orvix.test");
  SysFreeString(key);
  SysFreeString(value_name);
  SysFreeString(read);
}

TEST_F(RegistryTest, ValuesAreReadAsText) {
  struct Case {
    const char* label;
    DWORD type;
    std::string data;
    Text before;
    Read read;
  };
  const Case cases[] = {
      {"ended", 1, std::string("abc\0", 4), u"old", {true, u"abc"}},
      {"not ended", 1, "abc", u"old", {true, u"abc"}},
      {"ended twice", 1, std::string("abc\0\0", 5), u"old", {true, Text(u"abc\0", 4)}},
      {"only the end", 1, std::string(1, '\0'), u"old", {true, u""}},
      {"bytes", 1, "\x80\x81\xE9", u"", {true, u"\u20AC\u0081\u00E9"}},
      {"1023", 1, std::string(1023, 'x'), u"", {true, Text(1023, u'x')}},
      {"1024", 1, std::string(1024, 'x'), u"", {true, Text(1024, u'x')}},
      {"1025", 1, std::string(1025, 'x'), u"old", {false, u""}},
      {"305419896", 4, "\x78\x56\x34\x12", u"", {true, u"305419896"}},
      {"261", 4, std::string("\5\1\0\0", 4), u"", {true, u"21"}},
      {"0", 4, std::string(4, '\0'), u"", {true, u"0"}},
      {"high bit", 4, "\xFF\xFF\xFF\xFF", u"", {true, u"4294967295"}},
      {"behind a 7", 4, std::string("\5\1\0\0", 4), u"7", {true, u"28693"}},  // &h7015
      {"too many digits", 4, "\x78\x56\x34\x12", u"9", {true, u"&h912345678"}},
      {"no digit before", 4, std::string("\5\1\0\0", 4), u"x", {true, u"&hx015"}},
      {"short number", 4, "\x0A\xFF", u"", {true, u"4090"}},  // &hFFA
      {"binary", 3, "abc", u"old", {true, u"old"}},
      {"expandable", 2, std::string("abc\0", 4), u"old", {true, u"old"}},
  };
  for (const Case& one : cases) {
    Store("v", one.type, one.data);
    EXPECT_EQ(Get(u"v", one.before), one.read) << one.label;
    EXPECT_EQ(result_, S_OK) << one.label;
  }
  EXPECT_EQ(Get(u"absent", u"old"), (Read{false, u""}));
}

TEST_F(RegistryTest, AValueOfNoBytesIsError5) {
  for (const DWORD type : {1U, 3U, 4U}) {
    Store("v", type, "");
    EXPECT_EQ(Get(u"v", u"old").value, u"old");
    EXPECT_EQ(result_, MakeResult(0x800A0005));
  }
}

TEST_F(RegistryTest, NamesComeBackAsTheCodePageHasThem) {
  BSTR key = BstrHandle(u"Software\\Orvix test\u0416").Detach();
  BSTR value_name = BstrHandle(u"\u20AC\u0416").Detach();
  LONG root = oxHKEY_CURRENT_USER;
  LONG other_type = 2;
  VARIANT value = Variant(LONG{5}).Detach();
  VARIANT_BOOL written = 7;
  // No write, so the value's name was never converted.
  EXPECT_EQ(orvix_->SetKeyValueRet(&key, &value_name, &value, &other_type, &root, &written), S_OK);
  EXPECT_EQ(ViewOf(key), u"Software\\Orvix test?");
  EXPECT_EQ(ViewOf(value_name), u"\u20AC\u0416");
  LONG type = 1;
  EXPECT_EQ(orvix_->SetKeyValue(&key, &value_name, &value, &type, &root), S_OK);
  EXPECT_EQ(ViewOf(value_name), u"\u20AC?");

  const auto assign = [](BSTR& variable, TextView text) {
    SysFreeString(variable);
    variable = BstrHandle(text).Detach();
  };
  VARIANT_BOOL done = 7;
  BSTR read = nullptr;
  assign(key, kKeyName);
  assign(value_name, u"\u0416");
  EXPECT_EQ(orvix_->GetKeyValue(&root, &key, &value_name, &read, &done), S_OK);
  EXPECT_EQ(ViewOf(value_name), u"?");
  LONG no_root = 12345;
  for (const bool tells : {false, true}) {
    assign(key, u"a\u0416");
    EXPECT_EQ(tells ? orvix_->CreateNewKeyRet(&key, &no_root, &done) : orvix_->CreateNewKey(&key, &no_root), S_OK);
    EXPECT_EQ(ViewOf(key), u"a?");
  }
  SysFreeString(read);
  SysFreeString(key);
  SysFreeString(value_name);
}

}  // namespace
}  // namespace Orvix::testing
