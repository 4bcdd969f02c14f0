// Values as text and as JSON.
#include "show.h"

#include <charconv>
#include <cmath>
#include <utility>
#include <vector>

namespace Orvix::ctl {

namespace {

constexpr bool IsHigh(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
constexpr bool IsLow(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

void AppendEscape(std::string& json, char16_t unit) {
  constexpr char kDigits[] = "0123456789abcdef";
  json += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) json += kDigits[unit >> shift & 0xF];
}

template <class Float>
std::string JsonNumber(Float number) {
  if (!std::isfinite(number)) return "null";
  char text[64];
  const auto end = std::to_chars(text, text + sizeof text, number);
  return std::string(text, end.ptr);
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

std::string JsonObject(const Value& value, const Library* library) {
  const auto object = value.To<Pointer<IDispatch>>();
  if (!object) return "null";
  const Class* its = library == nullptr ? nullptr : ClassOfObject(object, *library);
  if (its == nullptr) return "{\"class\":null}";
  Value content;
  const std::string name = JsonText(its->name);
  if (!ReadDefault(object, *its, content)) return "{\"class\":" + name + "}";
  return "{\"class\":" + name + ",\"value\":" + JsonValue(content, library) + "}";
}

}  // namespace

std::string JsonText(TextView text) {
  std::string json = "\"";
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char16_t unit = text[at];
    const bool pair = IsHigh(unit) && at + 1 < text.size() && IsLow(text[at + 1]);
    if (unit == u'"' || unit == u'\\') {
      json += '\\';
      json += static_cast<char>(unit);
    } else if (unit == u'\n') {
      json += "\\n";
    } else if (unit == u'\r') {
      json += "\\r";
    } else if (unit == u'\t') {
      json += "\\t";
    } else if (unit < 0x20 || unit == 0x7F || (!pair && (IsHigh(unit) || IsLow(unit)))) {
      AppendEscape(json, unit);
    } else {
      json += ToUtf8(text.substr(at, pair ? 2 : 1));
      if (pair) ++at;
    }
  }
  return json + '"';
}

std::string JsonText(std::string_view utf8) { return JsonText(TextView(FromUtf8(utf8))); }

std::string JsonValue(const Value& value, const Library* library) {
  const VARIANT& raw = value.get();
  if (value.IsArray()) {
    std::string json = "[";
    for (const Value& element : ElementsOf(raw)) {
      if (json.size() > 1) json += ",";
      json += JsonValue(element, library);
    }
    return json + "]";
  }
  switch (raw.vt) {
    case VT_EMPTY:
    case VT_NULL:
    case VT_ERROR:
      return "null";
    case VT_BOOL:
      return raw.boolVal == VARIANT_FALSE ? "false" : "true";
    case VT_R4:
      return JsonNumber(raw.fltVal);
    case VT_R8:
      return JsonNumber(raw.dblVal);
    case VT_DATE:
      return JsonText(Date(raw.date).Iso('T'));
    case VT_BSTR:
      return JsonText(ViewOf(raw.bstrVal));
    case VT_RECORD: {
      std::string json = "{";
      for (const auto& [name, content] : FieldsOf(raw)) {
        if (json.size() > 1) json += ",";
        json += JsonText(name.View()) + ":" + JsonValue(content, library);
      }
      return json + "}";
    }
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return JsonObject(value, library);
    default:
      return value.To<std::string>();
  }
}

std::string ShowValue(const Value& value, const Library& library) {
  const VARIANT& raw = value.get();
  if (value.IsArray()) return JsonValue(value, &library);
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
