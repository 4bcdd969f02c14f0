// Reading arguments.
#include "argument.h"

#include <array>
#include <optional>

#include "array_text.h"
#include "console.h"
#include "words.h"

namespace Orvix::ctl {

namespace {

// `value` converted to the type; nothing when it cannot be.
std::optional<Value> Converted(const Value& value, VARTYPE type) {
  Value converted;
  if (FAILED(VariantChangeType(converted.Reference(), &value.get(), 0, type))) return std::nullopt;
  return converted;
}

std::optional<Value> BooleanOf(std::string_view word) {
  for (const std::string_view yes : {"true", "yes", "on"}) {
    if (SameName(word, yes)) return Value(true);
  }
  for (const std::string_view no : {"false", "no", "off"}) {
    if (SameName(word, no)) return Value(false);
  }
  const std::optional<Value> number = Converted(Value(word), VT_R8);
  if (!number) return std::nullopt;
  return Value(number->get().dblVal != 0);
}

bool LooksLikeNumber(std::string_view word) {
  if (word.starts_with('-') || word.starts_with('+')) word.remove_prefix(1);
  bool digits = false;
  bool point = false;
  for (std::size_t i = 0; i < word.size(); ++i) {
    const char c = word[i];
    if (c >= '0' && c <= '9') {
      digits = true;
    } else if (c == '.' && !point) {
      point = true;
    } else if ((c == 'e' || c == 'E') && digits) {
      std::string_view exponent = word.substr(i + 1);
      if (exponent.starts_with('-') || exponent.starts_with('+')) exponent.remove_prefix(1);
      return !exponent.empty() && exponent.find_first_not_of("0123456789") == std::string_view::npos;
    } else {
      return false;
    }
  }
  return digits;
}

// The narrowest of long and double that holds the number.
Value NumberOf(std::string_view word) {
  const bool whole = word.find_first_of(".eE") == std::string_view::npos;
  if (whole) {
    if (const std::optional<Value> number = Converted(Value(word), VT_I4)) return *number;
  }
  const std::optional<Value> number = Converted(Value(word), VT_R8);
  return number ? *number : Value(word);
}

[[noreturn]] void Refuse(const std::string& name, const std::string& word, const std::string& wanted) {
  throw UsageError(name + ": \"" + word + "\" is not " + wanted + ".");
}

struct Kind {
  std::string_view name;
  VARTYPE type;
};
constexpr std::array<Kind, 9> kKinds = {{{"text", VT_BSTR},
                                         {"long", VT_I4},
                                         {"short", VT_I2},
                                         {"byte", VT_UI1},
                                         {"single", VT_R4},
                                         {"double", VT_R8},
                                         {"boolean", VT_BOOL},
                                         {"date", VT_DATE},
                                         {"currency", VT_CY}}};

std::string WordsFor(VARTYPE type) {
  switch (type) {
    case VT_BOOL:
      return "true or false";
    case VT_DATE:
      return "a date such as 2002-11-30 or \"2002-11-30 10:00\"";
    case VT_I2:
      return "a number from -32768 to 32767";
    case VT_UI1:
      return "a number from 0 to 255";
    case VT_I4:
      return "a number from -2147483648 to 2147483647";
    default:
      return "a number";
  }
}

Type PlainType(VARTYPE vt) {
  Type type;
  type.vt = vt;
  return type;
}

std::optional<Value> PlainValue(VARTYPE type, const std::string& word) {
  if (type == VT_BSTR) return Value(word);
  if (type == VT_BOOL) return BooleanOf(word);
  return Converted(Value(word), type);
}

}  // namespace

Value ArgumentReader::Blank(const Type& type) {
  VARIANT blank{};
  blank.vt = type.vt == VT_VARIANT ? static_cast<VARTYPE>(VT_EMPTY) : type.vt;
  return Value::Adopt(blank);
}

Value ArgumentReader::Read(const Type& type, const std::string& name, const std::string& word) const {
  if ((type.vt & VT_ARRAY) != 0) return ReadArray(type.vt & VT_TYPEMASK, name, word);
  if (type.user == Type::User::kEnumeration) {
    const Enumeration* enumeration = library_.FindEnumeration(type.user_name);
    std::vector<std::string> names;
    if (enumeration != nullptr) {
      for (const Constant& constant : enumeration->constants) {
        if (SameName(constant.name, word)) return Value(constant.value);
        names.push_back(constant.name);
      }
    }
    if (const std::optional<Value> number = PlainValue(VT_I4, word)) return *number;
    throw UsageError(name + ": \"" + word + "\" is no constant of " + type.user_name + " and no number." +
                     Suggestion(word, names) + " \"orvixctl describe " + type.user_name + "\" shows the constants.");
  }
  if (type.vt == VT_VARIANT) return ReadVariant(name, word);
  if (type.vt == VT_DISPATCH || type.vt == VT_UNKNOWN) return ReadObject(type, name, word);
  if (std::optional<Value> value = PlainValue(type.vt, word)) return *value;
  Refuse(name, word, WordsFor(type.vt));
}

Value ArgumentReader::NewObject(const Class& its, const std::string* text) const {
  const Pointer<IDispatch> object = component_.Create<IDispatch>(its.clsid);
  if (text == nullptr) return Value(object);
  const Member* put = its.Default(INVOKE_PROPERTYPUT);
  if (put == nullptr) throw UsageError(its.name + " has no default property: write " + its.name + " alone.");
  Value value{*text};
  DISPID named = DISPID_PROPERTYPUT;
  DISPPARAMS params{value.Reference(), &named, 1, 1};
  EXCEPINFO exception{};
  const HRESULT result =
      object->Invoke(put->id, IID_NULL, 0, DISPATCH_PROPERTYPUT, &params, nullptr, &exception, nullptr);
  const String source = String::Adopt(exception.bstrSource);
  const String description = String::Adopt(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  if (result == DISP_E_EXCEPTION) {
    throw Error(exception.scode, OxErrorNumber(exception.scode), Text(source.View()), Text(description.View()));
  }
  Check(result);
  return Value(object);
}

Value ArgumentReader::ReadObject(const Type& type, const std::string& name, const std::string& word) const {
  if (SameName(word, "nothing")) return Value(Pointer<IDispatch>());
  const Class* wanted = library_.ClassOfInterface(type.user_name);
  const std::size_t colon = word.find(':');
  if (const Class* its = library_.FindClass(word.substr(0, colon))) {
    const std::string text = colon == std::string::npos ? std::string() : word.substr(colon + 1);
    return NewObject(*its, colon == std::string::npos ? nullptr : &text);
  }
  if (wanted != nullptr) return NewObject(*wanted, &word);
  Refuse(name, word, "an object: write a class, or CLASS:TEXT, or nothing");
}

Value ArgumentReader::ReadVariant(const std::string& name, const std::string& word) const {
  if (SameName(word, "empty")) return Value();
  if (SameName(word, "null")) return Value::Null();
  if (SameName(word, "nothing")) return Value(Pointer<IDispatch>());
  if (SameName(word, "true")) return Value(true);
  if (SameName(word, "false")) return Value(false);
  if (LooksLikeNumber(word)) return NumberOf(word);
  if (word.starts_with('[') && word.ends_with(']')) return ReadArray(VT_VARIANT, name, word);
  const std::size_t colon = word.find(':');
  if (colon != std::string::npos) {
    const std::string kind = word.substr(0, colon);
    const std::string text = word.substr(colon + 1);
    for (const Kind& one : kKinds) {
      if (!SameName(kind, one.name)) continue;
      if (std::optional<Value> value = PlainValue(one.type, text)) return *value;
      Refuse(name, text, WordsFor(one.type));
    }
    if (const Class* its = library_.FindClass(kind)) return NewObject(*its, &text);
  } else if (const Class* its = library_.FindClass(word)) {
    return NewObject(*its, nullptr);
  }
  return Value(word);
}

Value ArgumentReader::ReadArray(VARTYPE element, const std::string& name, const std::string& word) const {
  if (SameName(word, "none")) return Blank(PlainType(static_cast<VARTYPE>(VT_ARRAY | element)));
  const std::optional<std::vector<ArrayItem>> items = ParseArray(word);
  if (!items) Refuse(name, word, "an array: write [1, 2.5, \"text\", true], or none for one without bounds");
  SAFEARRAY* array = SafeArrayCreateVector(element, 0, static_cast<ULONG>(items->size()));
  if (array == nullptr) throw CommandError("out of memory");
  VARIANT raw{};
  raw.vt = static_cast<VARTYPE>(VT_ARRAY | element);
  raw.parray = array;
  Value owner = Value::Adopt(raw);
  LONG index = 0;
  for (const ArrayItem& item : *items) {
    const Type type = PlainType(element);
    Value value = element == VT_VARIANT && item.quoted
                      ? Value(item.text)
                      : Read(type, name + "[" + std::to_string(index) + "]", item.text);
    const VARIANT& content = value.get();
    const void* place = element == VT_VARIANT ? static_cast<const void*>(&content) : &content.llVal;
    // Texts and values are copied by what they are, everything else by address.
    Check(SafeArrayPutElement(array, &index, element == VT_BSTR ? content.bstrVal : const_cast<void*>(place)));
    ++index;
  }
  return owner;
}

}  // namespace Orvix::ctl
