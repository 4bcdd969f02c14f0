// Which class object serves a class: registered, native, or a library's; the
// texts of identifiers; program identifiers; modules; new identifiers.
#include "platform/automation/class_table.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "orvix/host.h"
#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix {
namespace {

constexpr CLSID kClass = "0A1B2C3D-1111-2222-8333-445566778899"_guid;
constexpr CLSID kOther = "0A1B2C3D-1111-2222-8333-44556677889A"_guid;
constexpr char16_t kClassText[] = u"{0A1B2C3D-1111-2222-8333-445566778899}";

// A class object that counts its references, and whose objects are itself.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
class CountingFactory final : public IClassFactory {
 public:
  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) override {
    *object = nullptr;
    if (riid != IID_IUnknown && riid != IID_IClassFactory) return E_NOINTERFACE;
    *object = this;
    AddRef();
    return S_OK;
  }
  ULONG ORVIX_CALL AddRef() override { return ++references; }
  ULONG ORVIX_CALL Release() override { return --references; }
  HRESULT ORVIX_CALL CreateInstance(IUnknown* outer, REFIID riid, void** object) override {
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    ++created;
    return QueryInterface(riid, object);
  }
  HRESULT ORVIX_CALL LockServer(BOOL) override { return S_OK; }

  ULONG references = 1;
  int created = 0;
};
#pragma GCC diagnostic pop

CountingFactory native_object;
HRESULT CreateNative(REFIID riid, void** object) { return native_object.CreateInstance(nullptr, riid, object); }

void WriteClassesText(const Text& name, const Text& value) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyExW(MakeRootKey(kClassesRoot), name.c_str(), 0, nullptr, 0, 31, nullptr, &key, nullptr), 0);
  ASSERT_EQ(RegSetValueExW(key, nullptr, 0, REG_SZ, reinterpret_cast<const BYTE*>(value.c_str()),
                           static_cast<DWORD>(2 * value.size() + 2)),
            0);
  RegCloseKey(key);
}

class ClassTableTest : public ::testing::Test {
 protected:
  ClassTableTest() {
    char made[] = "/tmp/orvix-classes-XXXXXX";
    directory_ = mkdtemp(made);
    before_ = std::getenv("ORVIX_REGISTRY");
    setenv("ORVIX_REGISTRY", directory_.c_str(), 1);
  }
  ~ClassTableTest() override {
    setenv("ORVIX_REGISTRY", before_.c_str(), 1);
    std::filesystem::remove_all(directory_);
  }
  // The result of creating an object, and the object as an address.
  static HRESULT Create(REFCLSID clsid, IUnknown** object, DWORD context = CLSCTX_INPROC_SERVER) {
    return CoCreateInstance(clsid, nullptr, context, IID_IUnknown, reinterpret_cast<void**>(object));
  }
  std::string directory_;

 private:
  std::string before_;
};

TEST_F(ClassTableTest, AnUnknownClassIsNotRegistered) {
  IUnknown* object = &native_object;
  EXPECT_EQ(Create(kOther, &object), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(CoCreateInstance(kOther, nullptr, 1, IID_IUnknown, nullptr), E_POINTER);
}

TEST_F(ClassTableTest, TheLastRegistrationServesUntilItIsRevoked) {
  CountingFactory first;
  CountingFactory second;
  DWORD first_cookie = 0;
  DWORD second_cookie = 0;
  ASSERT_EQ(CoRegisterClassObject(kOther, &first, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &first_cookie), S_OK);
  ASSERT_EQ(CoRegisterClassObject(kOther, &second, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &second_cookie), S_OK);
  EXPECT_NE(first_cookie, second_cookie);
  IUnknown* object = nullptr;
  ASSERT_EQ(Create(kOther, &object), S_OK);
  EXPECT_EQ(object, &second);
  object->Release();
  EXPECT_EQ(CoCreateInstance(kOther, &first, 1, IID_IUnknown, reinterpret_cast<void**>(&object)),
            CLASS_E_NOAGGREGATION);
  EXPECT_EQ(CoRevokeClassObject(second_cookie), S_OK);
  EXPECT_EQ(second.references, 1u);
  ASSERT_EQ(Create(kOther, &object, CLSCTX_LOCAL_SERVER), S_OK);
  EXPECT_EQ(object, &first);
  object->Release();
  EXPECT_EQ(CoRevokeClassObject(first_cookie), S_OK);
  EXPECT_EQ(CoRevokeClassObject(first_cookie), E_INVALIDARG);
  EXPECT_EQ(first.references, 1u);
  EXPECT_EQ(Create(kOther, &object), REGDB_E_CLASSNOTREG);
}

TEST_F(ClassTableTest, ARegistrationWinsOverANativeClassAndThatOverTheRegistry) {
  WriteClassesText(Text(u"CLSID\\") + kClassText + u"\\InprocServer32", u"/no/such/library.so");
  IUnknown* object = nullptr;
  EXPECT_EQ(Create(kClass, &object), REGDB_E_CLASSNOTREG);
  RegisterNativeClass(kClass, &CreateNative);
  ASSERT_EQ(Create(kClass, &object), S_OK);
  EXPECT_EQ(object, &native_object);
  object->Release();
  EXPECT_EQ(Create(kClass, &object, CLSCTX_LOCAL_SERVER), REGDB_E_CLASSNOTREG);
  CountingFactory host;
  DWORD cookie = 0;
  ASSERT_EQ(CoRegisterClassObject(kClass, &host, CLSCTX_INPROC_SERVER, REGCLS_SINGLEUSE, &cookie), S_OK);
  ASSERT_EQ(Create(kClass, &object), S_OK);
  EXPECT_EQ(object, &host);
  object->Release();
  EXPECT_EQ(CoRevokeClassObject(cookie), S_OK);
}

TEST_F(ClassTableTest, ALibraryWithoutTheEntryPointOrThatIsNoLibraryIsNotAClass) {
  const std::string text = directory_ + "/text.so";
  { std::ofstream(text) << "no library"; }
  Dl_info own{};
  ASSERT_NE(dladdr(reinterpret_cast<void*>(&SafeArrayLock), &own), 0);
  const std::string cut = directory_ + "/cut.so";
  const std::string shorter = directory_ + "/shorter.so";
  std::filesystem::copy_file(own.dli_fname, cut);
  std::filesystem::copy_file(own.dli_fname, shorter);
  std::filesystem::resize_file(cut, std::filesystem::file_size(cut) / 3);
  std::filesystem::resize_file(shorter, 100);
  const std::string pipe = directory_ + "/pipe.so";
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (const Text& file : {FromUtf8(text), Text(u"libc.so.6"), Text(u""), FromUtf8(directory_), FromUtf8(cut),
                           FromUtf8(shorter), FromUtf8(pipe)}) {
    WriteClassesText(u"CLSID\\{0A1B2C3D-1111-2222-8333-44556677889A}\\InprocServer32", file);
    IUnknown* object = nullptr;
    EXPECT_EQ(Create(kOther, &object), REGDB_E_CLASSNOTREG);
    ITypeLib* library = nullptr;
    EXPECT_EQ(LoadTypeLib(file.c_str(), &library), TYPE_E_CANTLOADLIBRARY);
  }
}

TEST_F(ClassTableTest, TypeLibrariesAreFoundByHexadecimalVersion) {
  ITypeLib* library = nullptr;
  EXPECT_EQ(LoadRegTypeLib(kOther, 1, 0, 0, &library), TYPE_E_LIBNOTREGISTERED);
  const Text key = u"TypeLib\\{0A1B2C3D-1111-2222-8333-44556677889A}\\1a.b\\0\\linux64";
  WriteClassesText(key, u"/no/such/library.so");
  struct Case {
    WORD major, minor;
    LCID lcid;
    HRESULT result;
  };
  for (const Case& c : {Case{26, 11, 0, TYPE_E_CANTLOADLIBRARY}, Case{26, 10, 0x409, TYPE_E_CANTLOADLIBRARY},
                        Case{26, 12, 0, TYPE_E_LIBNOTREGISTERED}, Case{25, 0, 0, TYPE_E_LIBNOTREGISTERED},
                        Case{1, 0, 0, TYPE_E_LIBNOTREGISTERED}}) {
    EXPECT_EQ(LoadRegTypeLib(kOther, c.major, c.minor, c.lcid, &library), c.result) << c.major << "." << c.minor;
  }
}

TEST_F(ClassTableTest, InitializationCountsByThread) {
  EXPECT_EQ(CoInitialize(nullptr), S_OK);
  EXPECT_EQ(CoInitialize(nullptr), S_FALSE);
  CoUninitialize();
  CoUninitialize();
  EXPECT_EQ(CoInitialize(nullptr), S_OK);
  CoUninitialize();
  CoUninitialize();
}

TEST_F(ClassTableTest, ProgramIdentifiersComeFromTheRegistry) {
  WriteClassesText(u"Some.Thing\\CLSID", kClassText);
  WriteClassesText(u"Some\\CurVer", u"Some.Thing");
  WriteClassesText(u"Broken\\CLSID", u"{0A1B2C3D}");
  WriteClassesText(Text(u"CLSID\\") + kClassText + u"\\ProgID", u"Some.Thing");
  for (const OLECHAR* name : {u"Some.Thing", u"sOME.tHING", u"Some"}) {
    CLSID found{};
    EXPECT_EQ(CLSIDFromProgID(name, &found), S_OK);
    EXPECT_EQ(found, kClass);
  }
  for (const OLECHAR* name : {u"Broken", u"Missing", u"", u"Some\\CurVer"}) {
    CLSID found = kOther;
    EXPECT_EQ(CLSIDFromProgID(name, &found), CO_E_CLASSSTRING);
    EXPECT_EQ(found, CLSID{});
  }
  OLECHAR* name = nullptr;
  ASSERT_EQ(ProgIDFromCLSID(kClass, &name), S_OK);
  EXPECT_EQ(Text(name), u"Some.Thing");
  CoTaskMemFree(name);
  EXPECT_EQ(ProgIDFromCLSID(kOther, &name), REGDB_E_CLASSNOTREG);
  EXPECT_EQ(name, nullptr);
  CLSID found{};
  EXPECT_EQ(CLSIDFromString(u"some.thing", &found), S_OK);
  EXPECT_EQ(found, kClass);
}

TEST(GuidTextTest, IsBracedUpperCaseAndReadInEitherCase) {
  OLECHAR text[39] = {};
  EXPECT_EQ(StringFromGUID2(kOther, text, 38), 0);
  EXPECT_EQ(StringFromGUID2(kOther, text, 39), 39);
  EXPECT_EQ(Text(text), u"{0A1B2C3D-1111-2222-8333-44556677889A}");
  CLSID read{};
  EXPECT_EQ(CLSIDFromString(u"{0a1b2c3d-1111-2222-8333-44556677889a}", &read), S_OK);
  EXPECT_EQ(read, kOther);
  for (const OLECHAR* wrong : {u"{0a1b2c3d-1111-2222-8333-44556677889}", u"{0a1b2c3d-1111-2222-8333-44556677889a", u"{",
                               u"{0a1b2c3d+1111-2222-8333-44556677889a}", u"{0a1b2c3g-1111-2222-8333-44556677889a}"}) {
    EXPECT_EQ(CLSIDFromString(wrong, &read), CO_E_CLASSSTRING) << ToUtf8(wrong);
    EXPECT_EQ(read, CLSID{});
  }
  EXPECT_EQ(CLSIDFromString(nullptr, &read), S_OK);
}

TEST(GuidCreationTest, GivesRandomOnesOfVersionFour) {
  std::set<std::string> seen;
  for (int i = 0; i < 1000; ++i) {
    GUID guid{};
    ASSERT_EQ(CoCreateGuid(&guid), S_OK);
    EXPECT_EQ(guid.Data3 >> 12, 4);
    EXPECT_EQ(guid.Data4[0] >> 6, 2);
    seen.emplace(reinterpret_cast<const char*>(&guid), sizeof guid);
  }
  EXPECT_EQ(seen.size(), 1000u);
  EXPECT_EQ(CoCreateGuid(nullptr), E_INVALIDARG);
}

TEST(GuidCreationTest, AsksTheHostFirst) {
  OxHost host{};
  host.size = sizeof host;
  host.CoCreateGuid = [](void*, GUID* guid) -> HRESULT {
    *guid = kClass;
    return S_FALSE;
  };
  ASSERT_EQ(OxSetHost(&host), S_OK);
  GUID guid{};
  EXPECT_EQ(CoCreateGuid(&guid), S_FALSE);
  EXPECT_EQ(guid, kClass);
  OxSetHost(nullptr);
}

Text ModuleName(HMODULE module) {
  OLECHAR name[4096] = {};
  const DWORD units = GetModuleFileNameW(module, name, 4096);
  return Text(name, units);
}

TEST(ModuleTest, AnAddressNamesTheModuleThatItLiesIn) {
  HMODULE module = nullptr;
  constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  ASSERT_NE(GetModuleHandleExW(kFlags, reinterpret_cast<const OLECHAR*>(&std::getenv), &module), 0);
  const Text library = ModuleName(module);
  EXPECT_NE(library.find(u"libc.so"), Text::npos) << ToUtf8(library);
  EXPECT_EQ(library.front(), u'/');
  HMODULE by_name = nullptr;
  ASSERT_NE(GetModuleHandleExW(0, library.c_str(), &by_name), 0);
  EXPECT_EQ(by_name, module);
  int local = 0;
  EXPECT_EQ(GetModuleHandleExW(kFlags, reinterpret_cast<const OLECHAR*>(&local), &module), 0);
  EXPECT_EQ(module, nullptr);
  EXPECT_EQ(GetModuleHandleExW(0, u"/no/such/module.so", &module), 0);
  EXPECT_EQ(GetModuleHandleExW(64, nullptr, &module), 0);
}

TEST(ModuleTest, NullIsTheProgramAndTheNameIsCutAtTheCapacity) {
  const Text program = FromUtf8(std::filesystem::read_symlink("/proc/self/exe").string());
  EXPECT_EQ(ModuleName(nullptr), program);
  HMODULE module = nullptr;
  ASSERT_NE(GetModuleHandleExW(0, nullptr, &module), 0);
  EXPECT_EQ(ModuleName(module), program);
  OLECHAR name[4096] = {};
  const auto length = static_cast<DWORD>(program.size());
  EXPECT_EQ(GetModuleFileNameW(nullptr, name, length + 1), length);
  EXPECT_EQ(Text(name), program);
  EXPECT_EQ(GetModuleFileNameW(nullptr, name, length), length);
  EXPECT_EQ(Text(name), program.substr(0, length - 1));
  EXPECT_EQ(GetModuleFileNameW(nullptr, name, 0), 0u);
  EXPECT_EQ(GetModuleFileNameW(name, name, 4096), 0u);
}

TEST(TaskMemoryTest, GivesBlocksThatAreFreedHere) {
  void* block = CoTaskMemAlloc(0);
  EXPECT_NE(block, nullptr);
  CoTaskMemFree(block);
  CoTaskMemFree(nullptr);
}

}  // namespace
}  // namespace Orvix
