// What registration writes under the classes root, value by value, and that
// taking it away leaves everything of somebody else's.
#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

constexpr LONG kNotFound = 2;
constexpr LONG kNoMoreItems = 259;

class Key {
 public:
  explicit Key(const Text& name) {
    if (RegOpenKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, 31, &handle_) != 0) handle_ = nullptr;
  }
  Key(Key&&) = delete;
  ~Key() {
    if (handle_ != nullptr) RegCloseKey(handle_);
  }
  [[nodiscard]] bool exists() const { return handle_ != nullptr; }
  [[nodiscard]] Text Value(const OLECHAR* name) const {
    if (handle_ == nullptr) return u"(no key)";
    OLECHAR text[2000] = {};
    DWORD bytes = sizeof text;
    DWORD type = 0;
    const LONG done = RegQueryValueExW(handle_, name, nullptr, &type, reinterpret_cast<BYTE*>(text), &bytes);
    if (done == kNotFound) return u"(no value)";
    EXPECT_EQ(done, 0);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    // The text's NUL is part of the value.
    const Text value(text);
    EXPECT_EQ(bytes, (value.size() + 1) * 2);
    return value;
  }
  void Set(const OLECHAR* name, const Text& value) const {
    EXPECT_EQ(RegSetValueExW(handle_, name, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                             static_cast<DWORD>((value.size() + 1) * 2)),
              0);
  }
  [[nodiscard]] std::vector<std::string> Subkeys() const {
    std::vector<std::string> names;
    char name[300] = {};
    for (DWORD i = 0;; ++i) {
      DWORD size = sizeof name;
      const LONG done = RegEnumKeyExA(handle_, i, name, &size, nullptr, nullptr, nullptr, nullptr);
      if (done == kNoMoreItems) return names;
      EXPECT_EQ(done, 0);
      if (done != 0) return names;
      names.emplace_back(name, size);
    }
  }

 private:
  HKEY handle_ = nullptr;
};
void Make(const Text& name) {
  HKEY made = nullptr;
  ASSERT_EQ(RegCreateKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, nullptr, 0, 31, nullptr, &made, nullptr), 0);
  RegCloseKey(made);
}

// The test program carries the component, so it is what is registered.
Text Program() { return FromUtf8(std::filesystem::read_symlink("/proc/self/exe").string()); }

constexpr TextView kLibrary = u"{BD495FF1-92A6-4A31-A1A1-A38A28B57C24}";
struct Class {
  TextView name;
  TextView clsid;
};
constexpr Class kClasses[] = {
    {u"classOrvix", u"{8E7D5CFD-DD90-4E2B-A5CA-31438EEFFB49}"},
    {u"classFilename", u"{D2237103-E00E-4031-90A7-D5300BFEB7F8}"},
    {u"classDirectory", u"{34C85F26-99B7-4B16-83F2-8BE10AA78623}"},
    {u"classString", u"{87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0}"},
    {u"classStack", u"{6BF4CED9-D22F-463D-B5E3-8B7E65BEE1BE}"},
    {u"classStackObject", u"{6F39D9DD-7839-4F69-9B66-1C2BD7ACFCBA}"},
    {u"CSHFileOp", u"{318FA501-DF65-466B-9157-D5BD99CC66EE}"},
};

class RegistrationTest : public ::testing::Test {
 protected:
  void TearDown() override { DllUnregisterServer(); }
};

TEST_F(RegistrationTest, WritesTheClassesAndTheTypeLibrary) {
  ASSERT_EQ(DllRegisterServer(), S_OK);
  ASSERT_EQ(DllRegisterServer(), S_OK);  // once more is once
  for (const Class& c : kClasses) {
    SCOPED_TRACE(ToUtf8(c.name));
    const Text program_id = Text(u"Orvix.").append(c.name);
    const Text key = Text(u"CLSID\\").append(c.clsid);
    EXPECT_EQ(Key(key).Value(u""), program_id);
    EXPECT_EQ(Key(key + u"\\InprocServer32").Value(u""), Program());
    EXPECT_EQ(Key(key + u"\\InprocServer32").Value(u"ThreadingModel"), u"Apartment");
    EXPECT_EQ(Key(key + u"\\ProgID").Value(u""), program_id);
    EXPECT_EQ(Key(key + u"\\TypeLib").Value(u""), kLibrary);
    EXPECT_EQ(Key(key + u"\\VERSION").Value(u""), u"1.0");
    EXPECT_EQ(Key(key).Subkeys().size(), 4u);
    EXPECT_EQ(Key(program_id).Value(u""), program_id);
    EXPECT_EQ(Key(program_id + u"\\CLSID").Value(u""), c.clsid);
    EXPECT_EQ(Key(program_id).Subkeys(), std::vector<std::string>{"CLSID"});
  }
  const Text library = Text(u"TypeLib\\").append(kLibrary);
  EXPECT_EQ(Key(library).Subkeys(), std::vector<std::string>{"1.0"});
  EXPECT_EQ(Key(library + u"\\1.0").Value(u""), u"Orvix");
  EXPECT_EQ(Key(library + u"\\1.0\\0\\linux64").Value(u""), Program());
  EXPECT_EQ(Key(library + u"\\1.0\\0").Subkeys(), std::vector<std::string>{"linux64"});
  EXPECT_EQ(Key(library + u"\\1.0\\FLAGS").Value(u""), u"0");
}

TEST_F(RegistrationTest, TheTypeLibraryIsFoundByItsIdentifier) {
  // Only a library file can be loaded, so its path takes the program's place.
  ASSERT_EQ(DllRegisterServer(), S_OK);
  const char* folder = getenv("ORVIX_LIB");
  ASSERT_NE(folder, nullptr);
  const Text path = Text(u"TypeLib\\").append(kLibrary) + u"\\1.0\\0\\linux64";
  Key(path).Set(u"", FromUtf8(folder) + u"/liborvix.so");
  ComPtr<ITypeLib> loaded;
  ASSERT_EQ(LoadRegTypeLib(LIBID_Orvix, 1, 0, 0, loaded.Receive()), S_OK);
  EXPECT_EQ(loaded->GetTypeInfoCount(), 18u);
}

TEST_F(RegistrationTest, NothingIsLeftOfItsOwn) {
  ASSERT_EQ(DllRegisterServer(), S_OK);
  ASSERT_EQ(DllUnregisterServer(), S_OK);
  for (const Class& c : kClasses) {
    EXPECT_FALSE(Key(Text(u"CLSID\\").append(c.clsid)).exists()) << ToUtf8(c.name);
    EXPECT_FALSE(Key(Text(u"Orvix.").append(c.name)).exists()) << ToUtf8(c.name);
  }
  EXPECT_FALSE(Key(Text(u"TypeLib\\").append(kLibrary)).exists());
  EXPECT_EQ(DllUnregisterServer(), S_OK);  // nothing there is nothing to do
}

TEST_F(RegistrationTest, WhatIsSomebodyElsesStays) {
  const Text server = u"CLSID\\{87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0}\\InprocServer32";
  const Text library = Text(u"TypeLib\\").append(kLibrary);
  ASSERT_EQ(DllRegisterServer(), S_OK);
  Key(server).Set(u"Theirs", u"kept");  // a value in a key of ours
  Key(u"Orvix.classStack").Set(u"FriendlyTypeName", u"stack");
  Make(library + u"\\2.0");  // another version
  Key(library + u"\\2.0").Set(u"", u"Next");
  Make(library + u"\\1.0\\0\\win32");  // another platform
  Key(library + u"\\1.0\\0\\win32").Set(u"", u"C:\\orvix.dll");
  Make(u"CLSID\\{00000000-0000-0000-0000-000000000001}\\InprocServer32");
  ASSERT_EQ(DllUnregisterServer(), S_OK);
  EXPECT_EQ(Key(server).Value(u"Theirs"), u"kept");
  EXPECT_EQ(Key(server).Value(u""), u"(no value)");
  EXPECT_EQ(Key(server).Value(u"ThreadingModel"), u"(no value)");
  EXPECT_EQ(Key(u"CLSID\\{87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0}").Subkeys(),
            std::vector<std::string>{"InprocServer32"});
  EXPECT_EQ(Key(u"Orvix.classStack").Value(u"FriendlyTypeName"), u"stack");
  EXPECT_EQ(Key(u"Orvix.classStack").Value(u""), u"(no value)");
  EXPECT_FALSE(Key(u"Orvix.classStack\\CLSID").exists());
  EXPECT_EQ(Key(library + u"\\2.0").Value(u""), u"Next");
  EXPECT_EQ(Key(library + u"\\1.0\\0\\win32").Value(u""), u"C:\\orvix.dll");
  EXPECT_FALSE(Key(library + u"\\1.0\\0\\linux64").exists());
  EXPECT_FALSE(Key(library + u"\\1.0\\FLAGS").exists());
  EXPECT_TRUE(Key(u"CLSID\\{00000000-0000-0000-0000-000000000001}\\InprocServer32").exists());
  EXPECT_FALSE(Key(u"CLSID\\{8E7D5CFD-DD90-4E2B-A5CA-31438EEFFB49}").exists());
  // Clean for the tests that follow.
  const HKEY root = MakeRootKey(kClassesRoot);
  for (const Text& name :
       {server, Text(u"CLSID\\{87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0}"), Text(u"Orvix.classStack"), library + u"\\2.0",
        library + u"\\1.0\\0\\win32", library + u"\\1.0\\0", library + u"\\1.0", library, Text(u"TypeLib"),
        Text(u"CLSID\\{00000000-0000-0000-0000-000000000001}\\InprocServer32"),
        Text(u"CLSID\\{00000000-0000-0000-0000-000000000001}"), Text(u"CLSID")}) {
    EXPECT_EQ(RegDeleteKeyW(root, name.c_str()), 0) << ToUtf8(name);
  }
}

}  // namespace
}  // namespace Orvix::testing
