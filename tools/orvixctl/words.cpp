// Words for types, defaults and signatures.
#include "words.h"

#include <algorithm>
#include <numeric>

namespace Orvix::ctl {

namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

std::string_view PlainTypeText(VARTYPE type) {
  switch (type) {
    case VT_VOID:
    case VT_EMPTY:
      return "void";
    case VT_I2:
      return "short";
    case VT_I4:
    case VT_INT:
      return "long";
    case VT_R4:
      return "float";
    case VT_R8:
      return "double";
    case VT_CY:
      return "CURRENCY";
    case VT_DATE:
      return "DATE";
    case VT_BSTR:
      return "BSTR";
    case VT_DISPATCH:
      return "IDispatch*";
    case VT_UNKNOWN:
      return "IUnknown*";
    case VT_BOOL:
      return "VARIANT_BOOL";
    case VT_VARIANT:
      return "VARIANT";
    case VT_UI1:
      return "unsigned char";
    default:
      return "long";
  }
}

// Insertions, deletions and replacements that lead from one name to the other.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 1; i <= left.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i;
    for (std::size_t j = 1; j <= right.size(); ++j) {
      const std::size_t replaced = diagonal + (Lower(left[i - 1]) == Lower(right[j - 1]) ? 0 : 1);
      diagonal = row[j];
      row[j] = std::min({replaced, row[j] + 1, row[j - 1] + 1});
    }
  }
  return row.back();
}

}  // namespace

bool SameName(std::string_view left, std::string_view right) {
  return std::ranges::equal(left, right, [](char a, char b) { return Lower(a) == Lower(b); });
}

std::string GuidText(const GUID& guid, bool braces) {
  OLECHAR text[39] = {};
  StringFromGUID2(guid, text, 39);
  const std::string full = ToUtf8(text);
  return braces || full.size() != 38 ? full : full.substr(1, 36);
}

std::string TypeText(const Type& type) {
  std::string text;
  switch (type.user) {
    case Type::User::kNone:
      text = PlainTypeText(type.vt & VT_TYPEMASK);
      break;
    case Type::User::kInterface:
      text = type.user_name + "*";
      break;
    default:
      text = type.user_name;
      break;
  }
  return (type.vt & VT_ARRAY) != 0 ? "SAFEARRAY(" + text + ")" : text;
}

std::string Quoted(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

std::string DefaultText(const Parameter& parameter, const Library* library) {
  const Value& value = parameter.default_value;
  if (value.IsText()) return Quoted(value.To<std::string>());
  if (value.Type() == VT_BOOL) return value.get().boolVal == VARIANT_FALSE ? "0" : "-1";
  const Enumeration* const constants =
      library != nullptr ? library->FindEnumeration(parameter.type.user_name) : nullptr;
  if (constants != nullptr) {
    for (const Constant& constant : constants->constants) {
      if (constant.value == value.To<LONG>()) return constant.name;
    }
  }
  return value.To<std::string>();
}

std::string_view KindText(INVOKEKIND kind) {
  switch (kind) {
    case INVOKE_PROPERTYGET:
      return "property get";
    case INVOKE_PROPERTYPUT:
      return "property put";
    case INVOKE_PROPERTYPUTREF:
      return "property set";
    default:
      return "method";
  }
}

std::string Signature(const Member& member, const Library* library) {
  std::string text = TypeText(member.result) + " " + member.name + "(";
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    const Parameter& parameter = member.parameters[i];
    if (i > 0) text += ", ";
    if (parameter.IsOptional()) text += "[";
    text += TypeText(parameter.type) + (parameter.type.by_reference ? "* " : " ") + parameter.name;
    if (parameter.HasDefault()) text += " = " + DefaultText(parameter, library);
    if (parameter.IsOptional()) text += "]";
  }
  return text + ")";
}

std::string Suggestion(std::string_view typed, const std::vector<std::string>& names) {
  const std::string* nearest = nullptr;
  std::size_t least = std::max<std::size_t>(2, typed.size() / 3) + 1;
  for (const std::string& name : names) {
    const std::size_t distance = Distance(typed, name);
    if (distance < least) {
      least = distance;
      nearest = &name;
    }
  }
  return nearest == nullptr ? std::string() : " Did you mean " + *nearest + "?";
}

}  // namespace Orvix::ctl
