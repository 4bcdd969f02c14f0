// The component as a server: lifetime, making objects, finding names.
#include <gtest/gtest.h>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

ComPtr<ITypeLib> Library() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(DllGetClassObject(LIBID_Orvix, IID_ITypeLib, library.ReceiveVoid()), S_OK);
  return library;
}
TEST(Server, CountsObjectsAndLocks) {
  ASSERT_EQ(DllCanUnloadNow(), S_OK);
  {
    const auto object = MakeFilename();
    EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  }
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
  ComPtr<IClassFactory> factory;
  ASSERT_EQ(DllGetClassObject(CLSID_classOrvix, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  factory->LockServer(1);
  factory = nullptr;
  EXPECT_EQ(DllCanUnloadNow(), S_FALSE);
  ASSERT_EQ(DllGetClassObject(CLSID_classOrvix, IID_IClassFactory, factory.ReceiveVoid()), S_OK);
  factory->LockServer(0);
  factory = nullptr;
  EXPECT_EQ(DllCanUnloadNow(), S_OK);
}

TEST(Server, ObjectsAreMadeByProgramIdentifierAfterRegistration) {
  ASSERT_EQ(CoInitialize(nullptr), S_OK);
  ASSERT_EQ(DllRegisterServer(), S_OK);
  CLSID clsid{};
  ASSERT_EQ(CLSIDFromProgID(u"Orvix.classFilename", &clsid), S_OK);
  // This test program carries the component itself, so what is registered is the
  // program; the library proper is registered by the tool.
  HKEY key = nullptr;
  const Text path = u"CLSID\\{D2237103-E00E-4031-90A7-D5300BFEB7F8}\\InprocServer32";
  ASSERT_EQ(RegOpenKeyExW(MakeRootKey(kClassesRoot), path.c_str(), 0, 31, &key), 0);
  const char* folder = getenv("ORVIX_LIB");
  ASSERT_NE(folder, nullptr) << "ORVIX_LIB says where the library is";
  const Text library = FromUtf8(folder) + u"/liborvix.so";
  ASSERT_EQ(RegSetValueExW(key, u"", 0, REG_SZ, reinterpret_cast<const BYTE*>(library.c_str()),
                           static_cast<DWORD>((library.size() + 1) * 2)),
            0);
  RegCloseKey(key);
  ComPtr<_classFilename> object;
  ASSERT_EQ(CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID__classFilename, object.ReceiveVoid()), S_OK);
  VARIANT_BOOL allowed = VARIANT_TRUE;
  EXPECT_EQ(object->get_AllowWildCards(&allowed), S_OK);
  EXPECT_EQ(allowed, VARIANT_FALSE);
  object = nullptr;
  ComPtr<ITypeLib> loaded;
  ASSERT_EQ(LoadTypeLib(library.c_str(), loaded.Receive()), S_OK);
  EXPECT_EQ(loaded->GetTypeInfoCount(), 18u);
  loaded = nullptr;
  EXPECT_EQ(DllUnregisterServer(), S_OK);
  CoUninitialize();
}

TEST(TypeLibrary, NamesLeadToTypesAndMembers) {
  const auto library = Library();
  OLECHAR name[] = u"softfilesdateex";
  BOOL found = 0;
  EXPECT_EQ(library->IsName(name, 0, &found), S_OK);
  EXPECT_EQ(found, 1);
  ITypeInfo* infos[4] = {};
  MEMBERID members[4] = {};
  USHORT count = 4;
  OLECHAR get_element[] = u"GetElement";  // of two interfaces
  EXPECT_EQ(library->FindName(get_element, 0, infos, members, &count), S_OK);
  ASSERT_EQ(count, 2);
  EXPECT_EQ(members[0], 14);
  EXPECT_EQ(members[1], 21);
  infos[0]->Release();
  infos[1]->Release();
}

}  // namespace
}  // namespace Orvix::testing
