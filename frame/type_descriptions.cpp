#include "frame/type_descriptions.h"

#include <new>

#include "frame/dispatch.h"

namespace Orvix::component {

namespace {

constexpr std::size_t kInheritedSlots = 7;

// A type and the types that it refers to.
struct TypeChain {
  TYPEDESC links[3];

  // The plain type, in the last link that is used.
  void Build(const TypeWords& words, TYPEDESC& head) {
    TYPEDESC* at = &head;
    std::size_t used = 0;
    const auto refer = [&](VARTYPE through) {
      at->vt = through;
      at->lptdesc = &links[used++];
      at = at->lptdesc;
    };
    if (words.by_reference) refer(VT_PTR);
    if (words.iid != nullptr) refer(VT_PTR);
    if ((words.type & VT_ARRAY) != 0) refer(VT_SAFEARRAY);
    if (!words.user_type.empty()) {
      at->vt = VT_USERDEFINED;
      at->hreftype = static_cast<HREFTYPE>(TypeIndexOf(words.user_type));
    } else {
      at->vt = words.type & VT_TYPEMASK;
    }
  }
};

struct FunctionBlock {
  FUNCDESC description;
  ELEMDESC parameters[kMaxParameters];
  TypeChain chains[kMaxParameters + 1];
  PARAMDESCEX defaults[kMaxParameters];

  ~FunctionBlock() {
    for (PARAMDESCEX& value : defaults) VariantClear(&value.varDefaultValue);
  }
};

struct ItemBlock {
  VARDESC description;
  VARIANT value;
};

VARIANT ValueOf(const DefaultValue& declared) {
  VARIANT value;
  VariantInit(&value);
  if (declared.type == VT_BSTR) {
    value.bstrVal = NewBstr(declared.text);
  } else if (declared.type == VT_BOOL) {
    value.boolVal = static_cast<VARIANT_BOOL>(declared.number);
  } else {
    value.lVal = declared.number;
  }
  value.vt = declared.type;
  return value;
}

USHORT FlagsOf(const TypeWords& words) {
  USHORT flags = PARAMFLAG_FIN;
  if (words.written) flags |= PARAMFLAG_FOUT;
  if (words.optional) flags |= PARAMFLAG_FOPT;
  if (words.default_value.type != VT_EMPTY) flags |= PARAMFLAG_FHASDEFAULT;
  return flags;
}

}  // namespace

FUNCDESC* NewFunctionDescription(const InterfaceTable& table, std::size_t index) noexcept {
  auto* block = new (std::nothrow) FunctionBlock{};
  if (block == nullptr) return nullptr;
  const MemberRow& row = table.rows[index];
  FUNCDESC& description = block->description;
  description.memid = DispatchIdOf(table, index);
  description.lprgelemdescParam = block->parameters;
  description.funckind = FUNC_DISPATCH;
  description.invkind = row.kind;
  description.callconv = CC_STDCALL;
  description.cParams = static_cast<SHORT>(row.count);
  description.oVft = static_cast<SHORT>((kInheritedSlots + index) * sizeof(void*));
  if (row.is_ui_default) description.wFuncFlags = FUNCFLAG_FUIDEFAULT;
  for (std::size_t i = 0; i < row.count; ++i) {
    const TypeWords& words = row.types[i];
    ELEMDESC& parameter = block->parameters[i];
    block->chains[i].Build(words, parameter.tdesc);
    parameter.paramdesc = {nullptr, FlagsOf(words)};
    if (words.optional) ++description.cParamsOpt;
    if (words.default_value.type != VT_EMPTY) {
      block->defaults[i] = {sizeof(PARAMDESCEX), ValueOf(words.default_value)};
      parameter.paramdesc.pparamdescex = &block->defaults[i];
    }
  }
  if (row.result.type == VT_EMPTY) {
    description.elemdescFunc.tdesc.vt = VT_VOID;
  } else {
    block->chains[kMaxParameters].Build(row.result, description.elemdescFunc.tdesc);
  }
  return &description;
}

void FreeFunctionDescription(FUNCDESC* description) noexcept {
  // The description is its block's first member.
  delete reinterpret_cast<FunctionBlock*>(description);
}

VARDESC* NewItemDescription(const TypeEntry& entry, std::size_t index) noexcept {
  auto* block = new (std::nothrow) ItemBlock{};
  if (block == nullptr) return nullptr;
  const NamedItem& item = entry.items[index];
  VARDESC& description = block->description;
  description.memid = ItemId(index);
  if (entry.kind == TKIND_ENUM) {
    description.varkind = VAR_CONST;
    description.elemdescVar.tdesc.vt = VT_INT;
    block->value.vt = VT_I4;
    block->value.lVal = item.value;
    description.lpvarValue = &block->value;
  } else {
    description.varkind = VAR_PERINSTANCE;
    description.elemdescVar.tdesc.vt = item.type;
    description.oInst = item.offset;
  }
  return &description;
}

void FreeItemDescription(VARDESC* description) noexcept { delete reinterpret_cast<ItemBlock*>(description); }

}  // namespace Orvix::component
