// The type library as a browser sees it, against the written-out catalogue:
// every member, parameter, default, help string, constant, field and flag.
#include "tests/frame/interface_catalogue.h"

#include <gtest/gtest.h>

#include <span>

#include "tests/frame/catalogue_containers.h"
#include "tests/frame/catalogue_files.h"
#include "tests/frame/catalogue_orvix.h"
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

struct Documentation {
  std::string name;
  std::string help;
};
Documentation DocumentationOf(ITypeInfo& info, MEMBERID member) {
  BstrHandle name;
  BstrHandle help;
  EXPECT_EQ(info.GetDocumentation(member, name.Receive(), help.Receive(), nullptr, nullptr), S_OK);
  return {ToUtf8(name.View()), ToUtf8(help.View())};
}

std::string TypeText(ITypeInfo& info, const TYPEDESC& type) {
  switch (type.vt) {
    case VT_PTR:
      return TypeText(info, *type.lptdesc) + "*";
    case VT_SAFEARRAY:
      return "SAFEARRAY(" + TypeText(info, *type.lptdesc) + ")";
    case VT_USERDEFINED: {
      ComPtr<ITypeInfo> referred;
      EXPECT_EQ(info.GetRefTypeInfo(type.hreftype, referred.Receive()), S_OK);
      return referred ? DocumentationOf(*referred.get(), MEMBERID_NIL).name : "(no type)";
    }
    case VT_VOID:
      return "void";
    case VT_BSTR:
      return "BSTR";
    case VT_I4:
      return "long";
    case VT_I2:
      return "short";
    case VT_UI1:
      return "BYTE";
    case VT_R4:
      return "float";
    case VT_R8:
      return "double";
    case VT_BOOL:
      return "BOOL";
    case VT_VARIANT:
      return "VARIANT";
    case VT_DISPATCH:
      return "IDispatch";
    default:
      return "VARTYPE " + std::to_string(type.vt);
  }
}

std::string DefaultText(const VARIANT& value) {
  switch (value.vt) {
    case VT_BSTR:
      return '"' + ToUtf8(ViewOf(value.bstrVal)) + '"';
    case VT_BOOL:
      return value.boolVal == VARIANT_TRUE ? "True" : value.boolVal == VARIANT_FALSE ? "False" : "(no Boolean)";
    case VT_I4:
      return std::to_string(value.lVal);
    default:
      return "VARTYPE " + std::to_string(value.vt);
  }
}

// The names of a member and its parameters.
std::vector<std::string> NamesOf(ITypeInfo& info, MEMBERID member) {
  BSTR names[16] = {};
  UINT count = 0;
  EXPECT_EQ(info.GetNames(member, names, 16, &count), S_OK);
  std::vector<std::string> texts;
  for (UINT i = 0; i < count; ++i) {
    texts.push_back(ToUtf8(ViewOf(names[i])));
    SysFreeString(names[i]);
  }
  return texts;
}

std::string SignatureOf(ITypeInfo& info, const FUNCDESC& function) {
  const std::vector<std::string> names = NamesOf(info, function.memid);
  std::string text = TypeText(info, function.elemdescFunc.tdesc) + " (";
  for (SHORT i = 0; i < function.cParams; ++i) {
    const ELEMDESC& parameter = function.lprgelemdescParam[i];
    const USHORT flags = parameter.paramdesc.wParamFlags;
    if (i != 0) text += ", ";
    const auto place = static_cast<std::size_t>(i) + 1;
    text += TypeText(info, parameter.tdesc) + " " + (place < names.size() ? names[place] : "(no name)");
    if ((flags & PARAMFLAG_FIN) == 0) text += " [not in]";
    if ((flags & PARAMFLAG_FOUT) != 0) text += " [out]";
    if ((flags & PARAMFLAG_FOPT) != 0) text += " ?";
    const bool has_default = (flags & PARAMFLAG_FHASDEFAULT) != 0;
    EXPECT_EQ(parameter.paramdesc.pparamdescex != nullptr, has_default);
    if (has_default) text += "=" + DefaultText(parameter.paramdesc.pparamdescex->varDefaultValue);
  }
  return text + ")";
}

struct Class {
  GUID clsid;
  GUID iid;
  const char* name;
  WORD flags;
  std::span<const catalogue::Member> members;
};
constexpr WORD kCreatable = 0x2;
const Class kClasses[] = {
    {CLSID_classOrvix, IID__classOrvix, "classOrvix", 0x1 | kCreatable | 0x8, catalogue::kClassOrvix},
    {CLSID_classFilename, IID__classFilename, "classFilename", kCreatable, catalogue::kClassFilename},
    {CLSID_classDirectory, IID__classDirectory, "classDirectory", kCreatable, catalogue::kClassDirectory},
    {CLSID_classString, IID__classString, "classString", kCreatable, catalogue::kClassString},
    {CLSID_classStack, IID__classStack, "classStack", kCreatable, catalogue::kClassStack},
    {CLSID_classStackObject, IID__classStackObject, "classStackObject", kCreatable, catalogue::kClassStackObject},
    {CLSID_CSHFileOp, IID__CSHFileOp, "CSHFileOp", kCreatable, catalogue::kFileOperation},
};

TEST(Catalogue, EveryMemberOfEveryInterface) {
  for (const Class& c : kClasses) {
    const auto info = TypeOf(c.iid);
    for (const catalogue::Member& m : c.members) {
      SCOPED_TRACE(std::string(c.name) + "." + m.name + " in slot " + std::to_string(m.slot));
      FUNCDESC* function = nullptr;
      ASSERT_EQ(info->GetFuncDesc(static_cast<UINT>(m.slot - 1), &function), S_OK);
      EXPECT_EQ(function->oVft, (7 + m.slot - 1) * 8);
      EXPECT_EQ(function->memid, m.id);
      EXPECT_EQ(function->invkind, m.kind);
      EXPECT_EQ(SignatureOf(*info.get(), *function), m.signature);
      const std::string signature = m.signature;
      EXPECT_EQ(function->cParamsOpt, std::count(signature.begin(), signature.end(), '?'));
      const Documentation words = DocumentationOf(*info.get(), function->memid);
      EXPECT_EQ(words.name, m.name);
      EXPECT_EQ(words.help, m.help);
      // The only member that a browser shows first.
      const bool shown_first = std::string_view(m.name) == "CompleteFilename";
      EXPECT_EQ(function->wFuncFlags, shown_first ? 0x20 : 0);
      EXPECT_EQ(function->callconv, CC_STDCALL);
      EXPECT_EQ(function->cScodes, 0);
      info->ReleaseFuncDesc(function);
    }
    FUNCDESC* past = nullptr;
    EXPECT_EQ(info->GetFuncDesc(static_cast<UINT>(c.members.size()), &past), TYPE_E_ELEMENTNOTFOUND);
  }
}

// The names lead to the same identifiers, on the type and on an object.
TEST(Catalogue, EveryNameLeadsToItsIdentifiers) {
  for (const Class& c : kClasses) {
    const auto info = TypeOf(c.iid);
    const auto object = Make<IDispatch>(c.clsid, IID_IDispatch);
    for (const catalogue::Member& m : c.members) {
      SCOPED_TRACE(std::string(c.name) + "." + m.name);
      std::vector<Text> spellings;
      for (const std::string& name : NamesOf(*info.get(), m.id)) spellings.push_back(FromUtf8(name));
      ASSERT_FALSE(spellings.empty());
      std::vector<OLECHAR*> names;
      for (Text& spelling : spellings) names.push_back(spelling.data());
      std::vector<DISPID> expected = {m.id};
      for (std::size_t i = 1; i < names.size(); ++i) expected.push_back(static_cast<DISPID>(i) - 1);
      const auto count = static_cast<UINT>(names.size());
      std::vector<DISPID> found(count, -7);
      EXPECT_EQ(object->GetIDsOfNames(IID_NULL, names.data(), count, 0, found.data()), S_OK);
      EXPECT_EQ(found, expected);
      found.assign(count, -7);
      EXPECT_EQ(info->GetIDsOfNames(names.data(), count, found.data()), S_OK);
      EXPECT_EQ(found, expected);
    }
  }
}

TEST(Catalogue, ClassesAndTheirInterfaces) {
  for (const Class& c : kClasses) {
    SCOPED_TRACE(c.name);
    const auto made = TypeOf(c.clsid);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(made->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->guid, c.clsid);
    EXPECT_EQ(attributes->typekind, TKIND_COCLASS);
    EXPECT_EQ(attributes->wTypeFlags, c.flags);
    EXPECT_EQ(attributes->cImplTypes, 1);
    EXPECT_EQ(attributes->cFuncs, 0);
    EXPECT_EQ(attributes->cVars, 0);
    made->ReleaseTypeAttr(attributes);
    EXPECT_EQ(DocumentationOf(*made.get(), MEMBERID_NIL).name, c.name);
    INT implemented = 0;
    EXPECT_EQ(made->GetImplTypeFlags(0, &implemented), S_OK);
    EXPECT_EQ(implemented, 1);  // the default interface, and no source
    HREFTYPE reference = 0;
    ASSERT_EQ(made->GetRefTypeOfImplType(0, &reference), S_OK);
    EXPECT_EQ(made->GetRefTypeOfImplType(1, &reference), TYPE_E_ELEMENTNOTFOUND);
    ComPtr<ITypeInfo> interface;
    ASSERT_EQ(made->GetRefTypeInfo(reference, interface.Receive()), S_OK);
    EXPECT_EQ(DocumentationOf(*interface.get(), MEMBERID_NIL).name, std::string("_") + c.name);
    ASSERT_EQ(interface->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->guid, c.iid);
    EXPECT_EQ(attributes->typekind, TKIND_DISPATCH);
    // Hidden, dual, not extensible, automation types only, dispatchable.
    EXPECT_EQ(attributes->wTypeFlags, 0x10 | 0x40 | 0x80 | 0x100 | 0x1000);
    EXPECT_EQ(attributes->cFuncs, c.members.size());
    EXPECT_EQ(attributes->cVars, 0);
    EXPECT_EQ(attributes->cbSizeVft, (7 + c.members.size()) * 8);
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    interface->ReleaseTypeAttr(attributes);
    // An object says the same of itself.
    const auto object = Make<IDispatch>(c.clsid, IID_IDispatch);
    UINT infos = 0;
    EXPECT_EQ(object->GetTypeInfoCount(&infos), S_OK);
    EXPECT_EQ(infos, 1u);
    ComPtr<ITypeInfo> own;
    ASSERT_EQ(object->GetTypeInfo(0, 0, own.Receive()), S_OK);
    EXPECT_EQ(DocumentationOf(*own.get(), MEMBERID_NIL).name, std::string("_") + c.name);
    EXPECT_EQ(object->GetTypeInfo(1, 0, own.Receive()), DISP_E_BADINDEX);
  }
}

TEST(Catalogue, EnumerationsAndTheirConstants) {
  struct Enumeration {
    GUID guid;
    const char* name;
    std::span<const catalogue::Constant> constants;
  };
  const Enumeration enumerations[] = {
      {GUID_enumRGB, "enumRGB", catalogue::kColourChannels},
      {GUID_enumRegistryConsts, "enumRegistryConsts", catalogue::kRegistryConstants},
      {GUID_StackSearchDirection, "StackSearchDirection", catalogue::kSearchDirections},
  };
  for (const Enumeration& e : enumerations) {
    const auto info = TypeOf(e.guid);
    EXPECT_EQ(DocumentationOf(*info.get(), MEMBERID_NIL).name, e.name);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(attributes->typekind, TKIND_ENUM);
    EXPECT_EQ(attributes->cVars, e.constants.size());
    EXPECT_EQ(attributes->cFuncs, 0);
    EXPECT_EQ(attributes->cbSizeInstance, 4u);
    info->ReleaseTypeAttr(attributes);
    for (std::size_t i = 0; i < e.constants.size(); ++i) {
      SCOPED_TRACE(e.constants[i].name);
      VARDESC* constant = nullptr;
      ASSERT_EQ(info->GetVarDesc(static_cast<UINT>(i), &constant), S_OK);
      EXPECT_EQ(constant->varkind, VAR_CONST);
      EXPECT_EQ(constant->lpvarValue->vt, VT_I4);
      EXPECT_EQ(constant->lpvarValue->lVal, e.constants[i].value);
      const Documentation words = DocumentationOf(*info.get(), constant->memid);
      EXPECT_EQ(words.name, e.constants[i].name);
      EXPECT_EQ(words.help, e.constants[i].help);
      EXPECT_EQ(NamesOf(*info.get(), constant->memid), std::vector<std::string>{e.constants[i].name});
      info->ReleaseVarDesc(constant);
    }
  }
}

TEST(Catalogue, TheRecordAndItsFields) {
  const auto info = TypeOf(GUID_FileType);
  EXPECT_EQ(DocumentationOf(*info.get(), MEMBERID_NIL).name, "FileType");
  TYPEATTR* attributes = nullptr;
  ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->typekind, TKIND_RECORD);
  EXPECT_EQ(attributes->cVars, 6);
  EXPECT_EQ(attributes->cbSizeInstance, 48u);
  info->ReleaseTypeAttr(attributes);
  UINT index = 0;
  for (const catalogue::Field& f : catalogue::kFileType) {
    SCOPED_TRACE(f.name);
    VARDESC* field = nullptr;
    ASSERT_EQ(info->GetVarDesc(index++, &field), S_OK);
    EXPECT_EQ(field->varkind, VAR_PERINSTANCE);
    EXPECT_EQ(field->elemdescVar.tdesc.vt, f.type);
    EXPECT_EQ(field->oInst, f.offset);
    EXPECT_EQ(DocumentationOf(*info.get(), field->memid).name, f.name);
    info->ReleaseVarDesc(field);
  }
}

TEST(Catalogue, TheLibraryItself) {
  const auto library = Library();
  TLIBATTR* attributes = nullptr;
  ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
  EXPECT_EQ(attributes->guid, LIBID_Orvix);
  EXPECT_EQ(attributes->lcid, 0u);
  EXPECT_EQ(attributes->syskind, 3);  // 64 bits
  EXPECT_EQ(attributes->wMajorVerNum, 1);
  EXPECT_EQ(attributes->wMinorVerNum, 0);
  EXPECT_EQ(attributes->wLibFlags, 0);
  library->ReleaseTLibAttr(attributes);
  BstrHandle name;
  EXPECT_EQ(library->GetDocumentation(-1, name.Receive(), nullptr, nullptr, nullptr), S_OK);
  EXPECT_EQ(name.View(), u"Orvix");
  // Seven classes, their interfaces, three enumerations and the record.
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
