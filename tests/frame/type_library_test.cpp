// The structure of the type library, as a browser or compiler walks it. Names, types,
// defaults, help and order stand in docs/orvix.idl, which is compared as a whole.
#include <gtest/gtest.h>

#include <algorithm>
#include <span>

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
TYPEATTR AttributesOf(ITypeInfo& info) {
  TYPEATTR* attributes = nullptr;
  EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
  const TYPEATTR copy = *attributes;
  info.ReleaseTypeAttr(attributes);
  return copy;
}
Text NameOf(ITypeInfo& info, MEMBERID member = MEMBERID_NIL) {
  BstrHandle name;
  EXPECT_EQ(info.GetDocumentation(member, name.Receive(), nullptr, nullptr, nullptr), S_OK);
  return Text(name.View());
}

struct Class {
  GUID clsid;
  GUID iid;
  const char16_t* name;
  WORD flags;
  UINT members;
};
constexpr WORD kCreatable = 0x2;
const Class kClasses[] = {
    {CLSID_classOrvix, IID__classOrvix, u"classOrvix", 0x1 | kCreatable | 0x8, 70},
    {CLSID_classFilename, IID__classFilename, u"classFilename", kCreatable, 26},
    {CLSID_classDirectory, IID__classDirectory, u"classDirectory", kCreatable, 10},
    {CLSID_classString, IID__classString, u"classString", kCreatable, 31},
    {CLSID_classStack, IID__classStack, u"classStack", kCreatable, 9},
    {CLSID_classStackObject, IID__classStackObject, u"classStackObject", kCreatable, 7},
    {CLSID_CSHFileOp, IID__CSHFileOp, u"CSHFileOp", kCreatable, 24},
};

// Slots in order, and names that lead to the same identifiers on the type and an object.
TEST(TypeLibrary, MembersStandInTheirSlotsUnderTheirNames) {
  for (const Class& c : kClasses) {
    const auto info = TypeOf(c.iid);
    const auto object = Make<IDispatch>(c.clsid, IID_IDispatch);
    for (UINT i = 0; i < c.members; ++i) {
      SCOPED_TRACE(ToUtf8(c.name) + " " + std::to_string(i));
      FUNCDESC* function = nullptr;
      ASSERT_EQ(info->GetFuncDesc(i, &function), S_OK);
      EXPECT_EQ(function->oVft, static_cast<SHORT>((7 + i) * 8));
      EXPECT_EQ(function->callconv, CC_STDCALL);
      EXPECT_EQ(function->cScodes, 0);
      const std::span<const ELEMDESC> parameters(function->lprgelemdescParam,
                                                 static_cast<std::size_t>(function->cParams));
      const auto has = [](const ELEMDESC& parameter, USHORT flag) {
        return (parameter.paramdesc.wParamFlags & flag) != 0;
      };
      const auto optional = [&](const ELEMDESC& parameter) { return has(parameter, PARAMFLAG_FOPT); };
      EXPECT_EQ(function->cParamsOpt, std::ranges::count_if(parameters, optional));
      for (const ELEMDESC& parameter : parameters) {
        EXPECT_EQ(parameter.paramdesc.pparamdescex != nullptr, has(parameter, PARAMFLAG_FHASDEFAULT));
      }
      BSTR names[16] = {};
      UINT count = 0;
      EXPECT_EQ(info->GetNames(function->memid, names, 16, &count), S_OK);
      ASSERT_GT(count, 0U);
      EXPECT_EQ(NameOf(*info.get(), function->memid), names[0]);
      std::vector<DISPID> expected = {function->memid};
      for (UINT n = 1; n < count; ++n) expected.push_back(static_cast<DISPID>(n) - 1);
      std::vector<DISPID> found(count, -7);
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names, count, 0, found.data()), S_OK);
      EXPECT_EQ(found, expected);
      found.assign(count, -7);
      EXPECT_EQ(info->GetIDsOfNames(names, count, found.data()), S_OK);
      EXPECT_EQ(found, expected);
      for (UINT n = 0; n < count; ++n) SysFreeString(names[n]);
      info->ReleaseFuncDesc(function);
    }
    FUNCDESC* past = nullptr;
    EXPECT_EQ(info->GetFuncDesc(c.members, &past), TYPE_E_ELEMENTNOTFOUND);
  }
}

TEST(TypeLibrary, ClassesLeadToTheirInterfaces) {
  for (const Class& c : kClasses) {
    SCOPED_TRACE(ToUtf8(c.name));
    const auto made = TypeOf(c.clsid);
    const TYPEATTR of_class = AttributesOf(*made.get());
    EXPECT_EQ(of_class.guid, c.clsid);
    EXPECT_EQ(of_class.typekind, TKIND_COCLASS);
    EXPECT_EQ(of_class.wTypeFlags, c.flags);
    EXPECT_EQ(of_class.cImplTypes, 1);
    EXPECT_EQ(of_class.cFuncs + of_class.cVars, 0);
    EXPECT_EQ(NameOf(*made.get()), c.name);
    INT implemented = 0;
    EXPECT_EQ(made->GetImplTypeFlags(0, &implemented), S_OK);
    EXPECT_EQ(implemented, 1);  // the default interface, and no source
    HREFTYPE reference = 0;
    EXPECT_EQ(made->GetRefTypeOfImplType(1, &reference), TYPE_E_ELEMENTNOTFOUND);
    ASSERT_EQ(made->GetRefTypeOfImplType(0, &reference), S_OK);
    ComPtr<ITypeInfo> interface;
    ASSERT_EQ(made->GetRefTypeInfo(reference, interface.Receive()), S_OK);
    EXPECT_EQ(NameOf(*interface.get()), Text(u"_") + c.name);
    const TYPEATTR of_interface = AttributesOf(*interface.get());
    EXPECT_EQ(of_interface.guid, c.iid);
    EXPECT_EQ(of_interface.typekind, TKIND_DISPATCH);
    // Hidden, dual, not extensible, automation types only, dispatchable.
    EXPECT_EQ(of_interface.wTypeFlags, 0x10 | 0x40 | 0x80 | 0x100 | 0x1000);
    EXPECT_EQ(of_interface.cFuncs, c.members);
    EXPECT_EQ(of_interface.cVars, 0);
    EXPECT_EQ(of_interface.cbSizeVft, (7 + c.members) * 8);
    EXPECT_EQ(of_interface.wMajorVerNum, 1);
    EXPECT_EQ(of_interface.wMinorVerNum, 0);
    // An object says the same of itself.
    const auto object = Make<IDispatch>(c.clsid, IID_IDispatch);
    UINT infos = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&infos), S_OK);
    EXPECT_EQ(infos, 1u);
    ComPtr<ITypeInfo> own;
    ASSERT_EQ(object->GetTypeInfo(0, 0, own.Receive()), S_OK);
    EXPECT_EQ(NameOf(*own.get()), Text(u"_") + c.name);
    EXPECT_EQ(object->GetTypeInfo(1, 0, own.Receive()), DISP_E_BADINDEX);
  }
}

TEST(TypeLibrary, ConstantsAndFieldsAreDescribed) {
  const struct {
    GUID guid;
    const char16_t* name;
    TYPEKIND kind;
    UINT variables;
    ULONG size;
  } rows[] = {
      {GUID_enumRGB, u"enumRGB", TKIND_ENUM, 3, 4},
      {GUID_enumRegistryConsts, u"enumRegistryConsts", TKIND_ENUM, 28, 4},
      {GUID_StackSearchDirection, u"StackSearchDirection", TKIND_ENUM, 2, 4},
      {GUID_FileType, u"FileType", TKIND_RECORD, 6, 48},
  };
  constexpr ULONG kOffsets[] = {0, 8, 16, 24, 32, 40};
  for (const auto& row : rows) {
    const auto info = TypeOf(row.guid);
    const TYPEATTR attributes = AttributesOf(*info.get());
    EXPECT_EQ(NameOf(*info.get()), row.name);
    EXPECT_EQ(attributes.typekind, row.kind);
    EXPECT_EQ(attributes.cVars, row.variables);
    EXPECT_EQ(attributes.cFuncs, 0);
    EXPECT_EQ(attributes.cbSizeInstance, row.size);
    for (UINT i = 0; i < row.variables; ++i) {
      VARDESC* variable = nullptr;
      ASSERT_EQ(info->GetVarDesc(i, &variable), S_OK);
      EXPECT_EQ(variable->varkind, row.kind == TKIND_ENUM ? VAR_CONST : VAR_PERINSTANCE);
      if (row.kind == TKIND_ENUM) {
        EXPECT_EQ(variable->lpvarValue->vt, VT_I4);
      } else {
        EXPECT_EQ(variable->oInst, kOffsets[i]);
      }
      BSTR name = nullptr;
      UINT count = 0;
      EXPECT_EQ(info->GetNames(variable->memid, &name, 1, &count), S_OK);
      EXPECT_EQ(NameOf(*info.get(), variable->memid), ViewOf(name));
      SysFreeString(name);
      info->ReleaseVarDesc(variable);
    }
  }
}

TEST(TypeLibrary, IsOneOf64BitsWithEighteenTypes) {
  const auto library = Library();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, LIBID_Orvix);
  EXPECT_EQ(attributes->lcid, 0u);
  EXPECT_EQ(attributes->syskind, 3);
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->wLibFlags, 0);
  library->ReleaseTLibAttr(attributes);
  BstrHandle name;
  EXPECT_EQ(library->GetDocumentation(-1, name.Receive(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(name.View(), u"Orvix");
  ASSERT_EQ(library->GetTypeInfoCount(), 18u);
  int kinds[8] = {};
  for (UINT i = 0; i < 18; ++i) {
    TYPEKIND kind = TKIND_ALIAS;
    EXPECT_EQ(library->GetTypeInfoType(i, &kind), S_OK);
    ++kinds[kind];
  }
  EXPECT_EQ(kinds[TKIND_COCLASS], 7);
  EXPECT_EQ(kinds[TKIND_DISPATCH], 7);
  EXPECT_EQ(kinds[TKIND_ENUM], 3);
  EXPECT_EQ(kinds[TKIND_RECORD], 1);
}

}  // namespace
}  // namespace Orvix::testing
