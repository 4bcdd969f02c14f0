// Values as text and as JSON.
#include "show.h"

#include <cmath>
#include <utility>
#include <vector>

#include "quoted.h"

namespace Orvix::ctl {

namespace {

// No character: in a text it stands before the digits of a unit that JSON writes as
// an escape.
constexpr std::string_view kEscapeMark = "\xEF\xB7\x90";
constexpr char16_t kEscapeMarkUnit = u'\uFDD0';

// Whole numbers without a fraction.
Json JsonNumber(double number) {
  if (!std::isfinite(number)) return nullptr;
  constexpr double kExact = 9007199254740992;  // up to here every whole number is one
  if (number == std::trunc(number) && std::abs(number) <= kExact) return static_cast<std::int64_t>(number);
  return number;
}

std::vector<std::pair<String, Value>> FieldsOf(const VARIANT& value) {
  std::vector<std::pair<String, Value>> fields;
  IRecordInfo& info = *value.pRecInfo;
  ULONG count = 0;
  Check(info.GetFieldNames(&count, nullptr));
  std::vector<BSTR> names(count, nullptr);
  Check(info.GetFieldNames(&count, names.data()));
  for (BSTR name : names) fields.emplace_back(String::Adopt(name), Value());
  for (auto& [name, content] : fields) Check(info.GetField(value.pvRecord, name.get(), content.Receive()));
  return fields;
}

std::vector<Value> ElementsOf(const VARIANT& value) {
  std::vector<Value> elements;
  SAFEARRAY* array = value.parray;
  if (array == nullptr || SafeArrayGetDim(array) != 1) return elements;
  const VARTYPE type = value.vt & VT_TYPEMASK;
  const LONG lower = array->rgsabound[0].lLbound;
  for (ULONG i = 0; i < array->rgsabound[0].cElements; ++i) {
    LONG index = static_cast<LONG>(lower + static_cast<LONGLONG>(i));
    Value element;
    if (type == VT_VARIANT) {
      Check(SafeArrayGetElement(array, &index, element.Receive()));
    } else {
      VARIANT* place = element.Receive();
      Check(SafeArrayGetElement(array, &index, &place->llVal));
      place->vt = type;
    }
    elements.push_back(std::move(element));
  }
  return elements;
}

// What the object's default member says, when its class has one to read.
bool ReadDefault(const Pointer<IDispatch>& object, const Class& its, Value& content) {
  const Member* member = its.Default(INVOKE_PROPERTYGET);
  if (member == nullptr) return false;
  DISPPARAMS none{};
  return SUCCEEDED(
      object->Invoke(member->id, IID_NULL, 0, DISPATCH_PROPERTYGET, &none, content.Receive(), nullptr, nullptr));
}

Json JsonOfObject(const Value& value, const Library* library) {
  const auto object = value.To<Pointer<IDispatch>>();
  if (!object) return nullptr;
  const Class* its = library == nullptr ? nullptr : ClassOfObject(object, *library);
  if (its == nullptr) return {{"class", nullptr}};
  Json json{{"class", its->name}};
  if (Value content; ReadDefault(object, *its, content)) json["value"] = JsonOf(content, library);
  return json;
}

}  // namespace

Json JsonOf(TextView text) {
  std::string marked;
  std::size_t plain = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (!NeedsEscape(text, at) && text[at] != kEscapeMarkUnit) continue;
    marked += ToUtf8(text.substr(plain, at - plain)).append(kEscapeMark) + HexDigits(text[at]);
    plain = at + 1;
  }
  return marked + ToUtf8(text.substr(plain));
}

std::string Print(const Json& json) {
  std::string text = json.dump();
  for (std::size_t at = 0; (at = text.find(kEscapeMark, at)) != std::string::npos;) {
    text.replace(at, kEscapeMark.size(), "\\u");
  }
  return text;
}

Json JsonOf(const Value& value, const Library* library) {
  const VARIANT& raw = value.get();
  if (value.IsArray()) {
    Json json = Json::array();
    for (const Value& element : ElementsOf(raw)) json.push_back(JsonOf(element, library));
    return json;
  }
  switch (raw.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
      return nullptr;
    case VT_BOOL:
      return raw.boolVal != VARIANT_FALSE;
    case VT_R4:
      // The shortest digits that give this number back.
      return JsonNumber(std::stod(value.To<std::string>()));
    case VT_R8:
      return JsonNumber(raw.dblVal);
    case VT_DATE:
      return Date(raw.date).Iso('T');
    case VT_BSTR:
      return JsonOf(ViewOf(raw.bstrVal));
    case VT_RECORD: {
      Json json = Json::object();
      for (const auto& [name, content] : FieldsOf(raw)) json[name.Utf8()] = JsonOf(content, library);
      return json;
    }
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return JsonOfObject(value, library);
    default: {
      // A number that is too long for JSON's readers stays a text.
      const std::string digits = value.To<std::string>();
      Json number = Json::parse(digits, nullptr, /*allow_exceptions=*/false);
      return number.is_number() && number.dump() == digits ? number : Json(digits);
    }
  }
}

std::string ShowValue(const Value& value, const Library& library) {
  const VARIANT& raw = value.get();
  if (value.IsArray()) return Print(JsonOf(value, &library));
  switch (raw.vt) {
    case VT_EMPTY:
      return "Empty";
    case VT_NULL:
      return "Null";
    case VT_ERROR:
      return value.IsMissing() ? "Missing" : "Error " + std::to_string(raw.scode);
    case VT_DATE:
      return Date(raw.date).Iso();
    case VT_RECORD: {
      std::string text;
      for (const auto& [name, content] : FieldsOf(raw)) {
        if (!text.empty()) text += "\n";
        text += name.Utf8() + " = " + ShowValue(content, library);
      }
      return text;
    }
    case VT_DISPATCH:
    case VT_UNKNOWN: {
      const auto object = value.To<Pointer<IDispatch>>();
      if (!object) return "Nothing";
      const Class* its = ClassOfObject(object, library);
      if (its == nullptr) return "an object";
      Value content;
      return ReadDefault(object, *its, content) ? its->name + ": " + ShowValue(content, library) : its->name;
    }
    default:
      return value.To<std::string>();
  }
}

const Class* ClassOfObject(const Pointer<IDispatch>& object, const Library& library) {
  Pointer<ITypeInfo> info;
  String name;
  if (FAILED(object->GetTypeInfo(0, 0, info.Receive())) || !info) return nullptr;
  if (FAILED(info->GetDocumentation(MEMBERID_NIL, name.Receive(), nullptr, nullptr, nullptr))) return nullptr;
  return library.ClassOfInterface(name.Utf8());
}

}  // namespace Orvix::ctl
