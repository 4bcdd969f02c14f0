// Reading the type library through ITypeLib and ITypeInfo.
#include "library.h"

#include <array>
#include <memory>

#include "words.h"

namespace Orvix::ctl {

namespace {

// Descriptions belong to the type information that handed them out.
template <class Description, void (ITypeInfo::*Release)(Description*)>
struct Releaser {
  ITypeInfo* info;
  void operator()(Description* description) const { (info->*Release)(description); }
};
using Attributes = std::unique_ptr<TYPEATTR, Releaser<TYPEATTR, &ITypeInfo::ReleaseTypeAttr>>;
using Function = std::unique_ptr<FUNCDESC, Releaser<FUNCDESC, &ITypeInfo::ReleaseFuncDesc>>;
using Variable = std::unique_ptr<VARDESC, Releaser<VARDESC, &ITypeInfo::ReleaseVarDesc>>;

Attributes AttributesOf(ITypeInfo& info) {
  TYPEATTR* raw = nullptr;
  Check(info.GetTypeAttr(&raw));
  return Attributes(raw, {&info});
}

struct Documentation {
  std::string name;
  std::string help;
};
Documentation DocumentationOf(ITypeInfo& info, MEMBERID member) {
  String name;
  String help;
  Check(info.GetDocumentation(member, name.Receive(), help.Receive(), nullptr, nullptr));
  return {name.Utf8(), help.Utf8()};
}

Pointer<ITypeInfo> Referenced(ITypeInfo& info, HREFTYPE reference) {
  Pointer<ITypeInfo> target;
  Check(info.GetRefTypeInfo(reference, target.Receive()));
  return target;
}

Type TypeOf(ITypeInfo& info, const TYPEDESC& description) {
  Type type;
  const TYPEDESC* inner = &description;
  int pointers = 0;
  for (; inner->vt == VT_PTR; inner = inner->lptdesc) ++pointers;
  if (inner->vt == VT_SAFEARRAY) {
    type = TypeOf(info, *inner->lptdesc);
    type.vt |= VT_ARRAY;
  } else if (inner->vt == VT_USERDEFINED) {
    const Pointer<ITypeInfo> user = Referenced(info, inner->hreftype);
    type.user_name = DocumentationOf(*user.get(), MEMBERID_NIL).name;
    switch (AttributesOf(*user.get())->typekind) {
      case TKIND_ENUM:
        type.vt = VT_I4;
        type.user = Type::User::kEnumeration;
        break;
      case TKIND_RECORD:
        type.vt = VT_RECORD;
        type.user = Type::User::kRecord;
        break;
      default:
        // An object is one pointer already; a second makes it by reference.
        type.vt = VT_DISPATCH;
        type.user = Type::User::kInterface;
        --pointers;
        break;
    }
  } else {
    type.vt = inner->vt;
  }
  type.by_reference = pointers > 0;
  return type;
}

Parameter ParameterOf(ITypeInfo& info, const ELEMDESC& description, std::string name) {
  Parameter parameter;
  parameter.name = std::move(name);
  parameter.type = TypeOf(info, description.tdesc);
  parameter.flags = description.paramdesc.wParamFlags;
  if (parameter.HasDefault() && description.paramdesc.pparamdescex != nullptr) {
    parameter.default_value = Value(description.paramdesc.pparamdescex->varDefaultValue);
  }
  return parameter;
}

Member MemberOf(ITypeInfo& info, UINT index) {
  FUNCDESC* raw = nullptr;
  Check(info.GetFuncDesc(index, &raw));
  const Function function(raw, {&info});

  Member member;
  const Documentation words = DocumentationOf(info, function->memid);
  member.name = words.name;
  member.help = words.help;
  member.id = function->memid;
  member.kind = function->invkind;
  member.flags = function->wFuncFlags;
  // The vtable starts with the seven slots of IUnknown and IDispatch.
  member.slot = function->oVft / static_cast<int>(sizeof(void*)) - 6;
  member.result = TypeOf(info, function->elemdescFunc.tdesc);

  const auto count = static_cast<std::size_t>(function->cParams);
  std::vector<BSTR> names(count + 1, nullptr);
  UINT got = 0;
  Check(info.GetNames(function->memid, names.data(), static_cast<UINT>(names.size()), &got));
  std::vector<String> owned;
  for (BSTR name : names) owned.push_back(String::Adopt(name));
  for (std::size_t i = 0; i < count; ++i) {
    // The last parameter of a property's put is often nameless.
    std::string name = owned[i + 1].IsEmpty() ? "value" : owned[i + 1].Utf8();
    member.parameters.push_back(ParameterOf(info, function->lprgelemdescParam[i], std::move(name)));
  }
  return member;
}

Class ClassOf(ITypeInfo& info, const TYPEATTR& attributes) {
  Class found;
  const Documentation words = DocumentationOf(info, MEMBERID_NIL);
  found.name = words.name;
  found.help = words.help;
  found.clsid = attributes.guid;
  found.flags = attributes.wTypeFlags;
  HREFTYPE reference = 0;
  Check(info.GetRefTypeOfImplType(0, &reference));
  const Pointer<ITypeInfo> interface = Referenced(info, reference);
  const Attributes facts = AttributesOf(*interface.get());
  found.interface_name = DocumentationOf(*interface.get(), MEMBERID_NIL).name;
  found.iid = facts->guid;
  found.interface_flags = facts->wTypeFlags;
  for (UINT i = 0; i < facts->cFuncs; ++i) found.members.push_back(MemberOf(*interface.get(), i));
  return found;
}

Enumeration EnumerationOf(ITypeInfo& info, const TYPEATTR& attributes) {
  const Documentation words = DocumentationOf(info, MEMBERID_NIL);
  Enumeration found{words.name, words.help, attributes.guid, {}};
  for (UINT i = 0; i < attributes.cVars; ++i) {
    VARDESC* raw = nullptr;
    Check(info.GetVarDesc(i, &raw));
    const Variable variable(raw, {&info});
    const Documentation constant = DocumentationOf(info, variable->memid);
    found.constants.push_back({constant.name, constant.help, Value(*variable->lpvarValue).To<LONG>()});
  }
  return found;
}

Record RecordOf(ITypeInfo& info, const TYPEATTR& attributes) {
  const Documentation words = DocumentationOf(info, MEMBERID_NIL);
  Record found{words.name, words.help, attributes.guid, {}};
  for (UINT i = 0; i < attributes.cVars; ++i) {
    VARDESC* raw = nullptr;
    Check(info.GetVarDesc(i, &raw));
    const Variable variable(raw, {&info});
    found.fields.push_back({DocumentationOf(info, variable->memid).name, TypeOf(info, variable->elemdescVar.tdesc)});
  }
  return found;
}

template <class T>
const T* FindNamed(const std::vector<T>& all, std::string_view name) {
  constexpr std::string_view kPrefix = "Orvix.";
  if (name.size() > kPrefix.size() && SameName(name.substr(0, kPrefix.size()), kPrefix)) {
    name.remove_prefix(kPrefix.size());
  }
  for (const T& one : all) {
    if (SameName(one.name, name)) return &one;
  }
  return nullptr;
}

}  // namespace

Library ReadLibrary(ITypeLib& types) {
  Library library;
  String name;
  String help;
  Check(types.GetDocumentation(-1, name.Receive(), help.Receive(), nullptr, nullptr));
  library.name = name.Utf8();
  library.help = help.Utf8();
  TLIBATTR* raw = nullptr;
  Check(types.GetLibAttr(&raw));
  library.guid = raw->guid;
  library.major = raw->wMajorVerNum;
  library.minor = raw->wMinorVerNum;
  types.ReleaseTLibAttr(raw);

  const UINT count = types.GetTypeInfoCount();
  for (UINT i = 0; i < count; ++i) {
    Pointer<ITypeInfo> info;
    Check(types.GetTypeInfo(i, info.Receive()));
    const Attributes attributes = AttributesOf(*info.get());
    if (attributes->typekind == TKIND_COCLASS) {
      library.classes.push_back(ClassOf(*info.get(), *attributes));
    } else if (attributes->typekind == TKIND_ENUM) {
      library.enumerations.push_back(EnumerationOf(*info.get(), *attributes));
    } else if (attributes->typekind == TKIND_RECORD) {
      library.records.push_back(RecordOf(*info.get(), *attributes));
    }
  }
  return library;
}

const Member* Class::Find(std::string_view member, int kinds) const {
  for (const Member& one : members) {
    if ((one.kind & kinds) != 0 && SameName(one.name, member)) return &one;
  }
  return nullptr;
}

const Member* Class::Default(int kinds) const {
  const Member* shown = nullptr;
  for (const Member& one : members) {
    if ((one.kind & kinds) == 0) continue;
    if (one.id == DISPID_VALUE) return &one;
    if ((one.flags & FUNCFLAG_FUIDEFAULT) != 0) shown = &one;
  }
  return shown;
}

const Class* Library::FindClass(std::string_view class_name) const { return FindNamed(classes, class_name); }

const Class* Library::ClassOfInterface(std::string_view interface_name) const {
  for (const Class& one : classes) {
    if (one.interface_name == interface_name) return &one;
  }
  return nullptr;
}

const Enumeration* Library::FindEnumeration(std::string_view enumeration) const {
  return FindNamed(enumerations, enumeration);
}

const Record* Library::FindRecord(std::string_view record) const { return FindNamed(records, record); }

}  // namespace Orvix::ctl
