// The component as a server: lifetime, registration, type library.
#include <gtest/gtest.h>

#include "tests/support/component.h"

namespace Orvix::testing {
namespace {

ComPtr<ITypeLib> Library() {
  ComPtr<ITypeLib> library;
  EXPECT_EQ(DllGetClassObject(LIBID_Orvix, IID_ITypeLib, library.ReceiveVoid()), S_OK);
  return library;
}
ComPtr<ITypeInfo> TypeOf(REFGUID guid) {
  ComPtr<ITypeInfo> info;
  EXPECT_EQ(Library()->GetTypeInfoOfGuid(guid, info.Receive()), S_OK);
  return info;
}
Text HelpOf(ITypeInfo& info, MEMBERID member) {
  BstrHandle help;
  EXPECT_EQ(info.GetDocumentation(member, nullptr, help.Receive(), nullptr, nullptr), S_OK);
  return Text(help.View());
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

Text ClassesRootValue(const Text& key, const OLECHAR* name) {
  HKEY opened = nullptr;
  if (RegOpenKeyExW(MakeRootKey(kClassesRoot), key.c_str(), 0, 31, &opened) != 0) return u"(no key)";
  OLECHAR text[2000] = {};
  DWORD bytes = sizeof text;
  const LONG done = RegQueryValueExW(opened, name, nullptr, nullptr, reinterpret_cast<BYTE*>(text), &bytes);
  RegCloseKey(opened);
  return done == 0 ? Text(text) : Text(u"(no value)");
}

TEST(Server, RegistersAndTakesAwayExactlyWhatItWrote) {
  ASSERT_EQ(DllRegisterServer(), S_OK);
  const Text key = u"CLSID\\{87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0}";
  EXPECT_EQ(ClassesRootValue(key + u"\\InprocServer32", u"ThreadingModel"), u"Apartment");
  EXPECT_EQ(ClassesRootValue(key + u"\\ProgID", u""), u"Orvix.classString");
  EXPECT_EQ(ClassesRootValue(u"Orvix.CSHFileOp\\CLSID", u""), u"{318FA501-DF65-466B-9157-D5BD99CC66EE}");
  CLSID clsid{};
  EXPECT_EQ(CLSIDFromProgID(u"orvix.CLASSSTACK", &clsid), S_OK);
  EXPECT_EQ(clsid, CLSID_classStack);
  // A value and a key of somebody else's stay.
  HKEY foreign = nullptr;
  ASSERT_EQ(RegCreateKeyExW(MakeRootKey(kClassesRoot), (key + u"\\Foreign").c_str(), 0, nullptr, 0, 31, nullptr,
                            &foreign, nullptr),
            0);
  RegCloseKey(foreign);
  ASSERT_EQ(DllUnregisterServer(), S_OK);
  EXPECT_EQ(ClassesRootValue(key, u""), u"(no value)");
  EXPECT_EQ(ClassesRootValue(key + u"\\ProgID", u""), u"(no key)");
  EXPECT_EQ(ClassesRootValue(key + u"\\Foreign", u""), u"(no value)");
  EXPECT_EQ(ClassesRootValue(u"Orvix.CSHFileOp", u""), u"(no key)");
  EXPECT_EQ(ClassesRootValue(u"TypeLib", u""), u"(no key)");
  EXPECT_EQ(RegDeleteKeyW(MakeRootKey(kClassesRoot), (key + u"\\Foreign").c_str()), 0);
  EXPECT_EQ(RegDeleteKeyW(MakeRootKey(kClassesRoot), key.c_str()), 0);
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

TEST(TypeLibrary, HoldsEveryTypeWithItsFlags) {
  const auto library = Library();
  EXPECT_EQ(library->GetTypeInfoCount(), 18u);
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, LIBID_Orvix);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  library->ReleaseTLibAttr(attributes);
  struct Expected {
    GUID guid;
    TYPEKIND kind;
    WORD flags;
    WORD functions;
    WORD variables;
  };
  const Expected expected[] = {
      {CLSID_classOrvix, TKIND_COCLASS, 1 | 2 | 8, 0, 0},
      {CLSID_classString, TKIND_COCLASS, 2, 0, 0},
      {IID__classOrvix, TKIND_DISPATCH, 0x10 | 0x40 | 0x80 | 0x100 | 0x1000, 70, 0},
      {IID__classString, TKIND_DISPATCH, 0x10 | 0x40 | 0x80 | 0x100 | 0x1000, 31, 0},
      {GUID_enumRegistryConsts, TKIND_ENUM, 0, 0, 28},
      {GUID_FileType, TKIND_RECORD, 0, 0, 6},
  };
  for (const Expected& e : expected) {
    const auto info = TypeOf(e.guid);
    TYPEATTR* attr = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attr), S_OK);
    EXPECT_EQ(attr->typekind, e.kind);
    EXPECT_EQ(attr->wTypeFlags, e.flags);
    EXPECT_EQ(attr->cFuncs, e.functions);
    EXPECT_EQ(attr->cVars, e.variables);
    info->ReleaseTypeAttr(attr);
  }
}

TEST(TypeLibrary, DescribesParametersDefaultsAndHelp) {
  const auto info = TypeOf(IID__classOrvix);
  FUNCDESC* open = nullptr;
  ASSERT_EQ(info->GetFuncDesc(28, &open), S_OK);  // OpenFile
  EXPECT_EQ(open->memid, 29);
  EXPECT_EQ(open->oVft, (7 + 28) * 8);
  ASSERT_EQ(open->cParams, 10);
  EXPECT_EQ(open->elemdescFunc.tdesc.vt, VT_BSTR);
  const ELEMDESC& center = open->lprgelemdescParam[2];
  EXPECT_EQ(center.tdesc.vt, VT_PTR);
  EXPECT_EQ(center.tdesc.lptdesc->vt, VT_BOOL);
  EXPECT_EQ(center.paramdesc.wParamFlags, PARAMFLAG_FIN | PARAMFLAG_FOPT | PARAMFLAG_FHASDEFAULT);
  EXPECT_EQ(center.paramdesc.pparamdescex->varDefaultValue.boolVal, VARIANT_TRUE);
  EXPECT_EQ(ViewOf(open->lprgelemdescParam[8].paramdesc.pparamdescex->varDefaultValue.bstrVal), u"Open file");
  EXPECT_EQ(open->lprgelemdescParam[1].paramdesc.wParamFlags, PARAMFLAG_FIN | PARAMFLAG_FOUT);
  info->ReleaseFuncDesc(open);
  BSTR names[4] = {};
  UINT count = 0;
  ASSERT_EQ(info->GetNames(14, names, 4, &count), S_OK);
  ASSERT_EQ(count, 4u);
  EXPECT_EQ(ViewOf(names[0]), u"GetElement");
  EXPECT_EQ(ViewOf(names[3]), u"sSeparator");
  for (BSTR name : names) SysFreeString(name);
  EXPECT_EQ(HelpOf(*info.get(), 12), u"Returns the position of  sElementToBeFound in the list.");
  EXPECT_EQ(HelpOf(*info.get(), 17), u"Makes a directory including its non-existant parentdirectories.");
  EXPECT_EQ(HelpOf(*info.get(), 1), u"");
  const auto enumeration = TypeOf(GUID_enumRegistryConsts);
  VARDESC* users = nullptr;
  ASSERT_EQ(enumeration->GetVarDesc(12, &users), S_OK);
  EXPECT_EQ(users->lpvarValue->lVal, -2147483645);
  EXPECT_EQ(HelpOf(*enumeration.get(), users->memid), u"oxHKEY_USERS");
  enumeration->ReleaseVarDesc(users);
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
