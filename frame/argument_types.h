// What each pair of a member's parameter type and its slot's type means: its
// VARTYPE and flags, what a null pointer gives, and how the value crosses.
#ifndef ORVIX_FRAME_ARGUMENT_TYPES_H
#define ORVIX_FRAME_ARGUMENT_TYPES_H

#include <string_view>
#include <type_traits>

#include "frame/parameters.h"

namespace Orvix::component {

struct DefaultValue {
  VARTYPE type = VT_EMPTY;  // VT_EMPTY: none declared
  LONG number = 0;
  TextView text{};
};

// The type of a parameter or result as type information gives it.
struct TypeWords {
  VARTYPE type = VT_EMPTY;  // with VT_ARRAY for arrays
  bool by_reference = false;
  bool optional = false;
  bool written = false;          // may be written for the caller to see
  std::string_view user_type{};  // name of the enumeration, record or interface
  const IID* iid = nullptr;      // of that interface
  DefaultValue default_value{};
};

// Whether a VARIANT stands for an omitted argument, references followed.
inline bool IsMissing(const VARIANT& value) {
  const VARIANT* held = &value;
  for (int depth = 0; held->vt == (VT_BYREF | VT_VARIANT) && held->pvarVal != nullptr && depth < 16; ++depth) {
    held = held->pvarVal;
  }
  if (held->vt == (VT_BYREF | VT_ERROR)) return held->pscode != nullptr && *held->pscode == DISP_E_PARAMNOTFOUND;
  return held->vt == VT_ERROR && held->scode == DISP_E_PARAMNOTFOUND;
}

// ---- Parameters ------------------------------------------------------------------
//
// Accept says whether the slot's argument will do (S_OK) or the result code to
// fail with; Get hands it to the member.

template <class P, class S>
struct Argument;

template <class T>
inline constexpr VARTYPE kNumberType = VT_EMPTY;
template <>
inline constexpr VARTYPE kNumberType<LONG> = VT_I4;
template <>
inline constexpr VARTYPE kNumberType<SHORT> = VT_I2;
template <>
inline constexpr VARTYPE kNumberType<BYTE> = VT_UI1;
template <>
inline constexpr VARTYPE kNumberType<float> = VT_R4;
template <>
inline constexpr VARTYPE kNumberType<double> = VT_R8;

template <class E>
inline constexpr std::string_view kEnumerationName{};
template <>
inline constexpr std::string_view kEnumerationName<enumRGB> = "enumRGB";
template <>
inline constexpr std::string_view kEnumerationName<enumRegistryConsts> = "enumRegistryConsts";
template <>
inline constexpr std::string_view kEnumerationName<StackSearchDirection> = "StackSearchDirection";

template <class I>
inline constexpr std::string_view kInterfaceName{};
template <>
inline constexpr std::string_view kInterfaceName<_classFilename> = "_classFilename";
template <>
inline constexpr std::string_view kInterfaceName<_classString> = "_classString";
template <class I>
inline constexpr const IID* kInterfaceId = nullptr;
template <>
inline constexpr const IID* kInterfaceId<_classFilename> = &IID__classFilename;
template <>
inline constexpr const IID* kInterfaceId<_classString> = &IID__classString;

// By value.
template <class T>
requires(kNumberType<T> != VT_EMPTY) struct Argument<T, T> {
  static constexpr TypeWords kWords{.type = kNumberType<T>};
  static HRESULT Accept(T) { return S_OK; }
  static T Get(T value) { return value; }
};
template <>
struct Argument<TextView, BSTR> {
  static constexpr TypeWords kWords{.type = VT_BSTR};
  static HRESULT Accept(BSTR) { return S_OK; }
  static TextView Get(BSTR text) { return ViewOf(text); }
};

struct RequiredReference {
  static HRESULT Accept(const void* pointer) { return pointer == nullptr ? E_POINTER : S_OK; }
};
struct OptionalReference {
  static HRESULT Accept(const void*) { return S_OK; }
};

// By reference, read only.
template <class T>
requires(kNumberType<T> != VT_EMPTY) struct Argument<T, T*> : RequiredReference {
  static constexpr TypeWords kWords{.type = kNumberType<T>, .by_reference = true};
  static T Get(const T* value) { return *value; }
};
template <class E>
requires std::is_enum_v<E>
struct Argument<E, LONG*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_I4, .by_reference = true, .user_type = kEnumerationName<E>};
  static E Get(const LONG* value) { return static_cast<E>(*value); }
};
template <>
struct Argument<VariantBool, VARIANT_BOOL*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_BOOL, .by_reference = true};
  static VariantBool Get(const VARIANT_BOOL* value) { return {*value}; }
};
template <>
struct Argument<TextView, BSTR*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_BSTR, .by_reference = true};
  static TextView Get(const BSTR* text) { return ViewOf(*text); }
};
template <>
struct Argument<TextVariable, BSTR*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_BSTR, .by_reference = true};
  static TextVariable Get(const BSTR* text) { return TextVariable(text); }
};
template <>
struct Argument<const VARIANT&, VARIANT*> {
  static constexpr TypeWords kWords{.type = VT_VARIANT, .by_reference = true};
  static HRESULT Accept(const VARIANT* value) {
    if (value == nullptr) return E_POINTER;
    return IsMissing(*value) ? DISP_E_PARAMNOTOPTIONAL : S_OK;
  }
  static const VARIANT& Get(const VARIANT* value) { return *value; }
};
template <class T>
inline constexpr VARTYPE kElementType = kNumberType<T>;
template <>
inline constexpr VARTYPE kElementType<VARIANT> = VT_VARIANT;
template <>
inline constexpr VARTYPE kElementType<BSTR> = VT_BSTR;
template <class T>
struct Argument<ArrayOf<T>, SAFEARRAY**> : RequiredReference {
  static constexpr TypeWords kWords{.type = static_cast<VARTYPE>(VT_ARRAY | kElementType<T>), .by_reference = true};
  static ArrayOf<T> Get(SAFEARRAY* const* array) { return {*array}; }
};
template <class T>
struct Argument<ArrayVariable<T>, SAFEARRAY**> : RequiredReference {
  static constexpr TypeWords kWords = Argument<ArrayOf<T>, SAFEARRAY**>::kWords;
  static ArrayVariable<T> Get(SAFEARRAY* const* array) { return ArrayVariable<T>(array); }
};
// An object of the caller's, held while the member runs.
template <class I>
class Held {
 public:
  explicit Held(I* object) : object_(ComPtr<I>::Share(object)) {}
  operator I*() const { return object_.get(); }  // NOLINT(google-explicit-constructor)

 private:
  ComPtr<I> object_;
};
template <class I>
struct Argument<I*, I**> : RequiredReference {
  static constexpr TypeWords kWords{
      .type = VT_DISPATCH, .by_reference = true, .user_type = kInterfaceName<I>, .iid = kInterfaceId<I>};
  static Held<I> Get(I* const* object) { return Held<I>(*object); }
};

// By reference, written.
template <>
struct Argument<LONG&, LONG*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_I4, .by_reference = true, .written = true};
  static LONG& Get(LONG* value) { return *value; }
};
template <>
struct Argument<VARIANT_BOOL&, VARIANT_BOOL*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_BOOL, .by_reference = true, .written = true};
  static VARIANT_BOOL& Get(VARIANT_BOOL* value) { return *value; }
};
template <>
struct Argument<TextReference, BSTR*> : RequiredReference {
  static constexpr TypeWords kWords{.type = VT_BSTR, .by_reference = true, .written = true};
  static TextReference Get(BSTR* text) { return TextReference(text); }
};

// By reference, optional.
template <>
struct Argument<OptionalLongOut, LONG*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_I4, .by_reference = true, .optional = true, .written = true};
  static OptionalLongOut Get(LONG* value) { return OptionalLongOut(value); }
};
template <>
struct Argument<OptionalBool, VARIANT_BOOL*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_BOOL, .by_reference = true, .optional = true};
  static OptionalBool Get(const VARIANT_BOOL* value) { return {value == nullptr ? VARIANT_FALSE : *value}; }
};
template <>
struct Argument<OptionalText, BSTR*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_BSTR, .by_reference = true, .optional = true};
  static OptionalText Get(const BSTR* text) { return {text == nullptr ? TextView{} : ViewOf(*text)}; }
};
template <>
struct Argument<OptionalTextReference, BSTR*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_BSTR, .by_reference = true, .optional = true, .written = true};
  static OptionalTextReference Get(BSTR* text) { return OptionalTextReference(text); }
};
template <>
struct Argument<OptionalVariant, VARIANT*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_VARIANT, .by_reference = true, .optional = true};
  static OptionalVariant Get(const VARIANT* value) { return {value == nullptr || IsMissing(*value) ? nullptr : value}; }
};
template <LONG D>
struct Argument<LongOr<D>, LONG*> : OptionalReference {
  static constexpr TypeWords kWords{
      .type = VT_I4, .by_reference = true, .optional = true, .default_value = {.type = VT_I4, .number = D}};
  static LongOr<D> Get(const LONG* value) { return {value == nullptr ? D : *value}; }
};
template <VARIANT_BOOL D>
struct Argument<BooleanOr<D>, VARIANT_BOOL*> : OptionalReference {
  static constexpr TypeWords kWords{
      .type = VT_BOOL, .by_reference = true, .optional = true, .default_value = {.type = VT_BOOL, .number = D}};
  static BooleanOr<D> Get(const VARIANT_BOOL* value) { return {value == nullptr ? D : *value}; }
};
template <FixedText D>
struct Argument<TextOr<D>, BSTR*> : OptionalReference {
  static constexpr TypeWords kWords{
      .type = VT_BSTR, .by_reference = true, .optional = true, .default_value = {.type = VT_BSTR, .text = D.View()}};
  static TextOr<D> Get(const BSTR* text) { return {text == nullptr ? D.View() : ViewOf(*text)}; }
};
template <class E, E D>
struct Argument<EnumerationOr<E, D>, LONG*> : OptionalReference {
  static constexpr TypeWords kWords{.type = VT_I4,
                                    .by_reference = true,
                                    .optional = true,
                                    .user_type = kEnumerationName<E>,
                                    .default_value = {.type = VT_I4, .number = D}};
  static EnumerationOr<E, D> Get(const LONG* value) { return {value == nullptr ? D : static_cast<E>(*value)}; }
};
// A VARIANT that holds the empty text.
const VARIANT& EmptyTextVariant();
template <>
struct Argument<VariantOrEmptyText, VARIANT*> : OptionalReference {
  static constexpr TypeWords kWords{
      .type = VT_VARIANT, .by_reference = true, .optional = true, .default_value = {.type = VT_BSTR}};
  static VariantOrEmptyText Get(const VARIANT* value) {
    return {value == nullptr || IsMissing(*value) ? &EmptyTextVariant() : value};
  }
};

// ---- Results -----------------------------------------------------------------------

// A member that returns its own object.
struct Self {};

// A FileType that owns its texts.
class FileRecord {
 public:
  FileRecord() = default;
  FileRecord(FileRecord&& other) noexcept : record_(std::exchange(other.record_, FileType{})) {}
  FileRecord& operator=(FileRecord&& other) noexcept {
    std::swap(record_, other.record_);
    return *this;
  }
  ~FileRecord() {
    for (BSTR text : {record_.sCompleteFilename, record_.sFile, record_.sPath, record_.sExtension}) SysFreeString(text);
  }
  [[nodiscard]] FileType& get() { return record_; }
  [[nodiscard]] const FileType& get() const { return record_; }
  [[nodiscard]] FileType Detach() { return std::exchange(record_, FileType{}); }

 private:
  FileType record_{};
};

template <class R, class S>
struct Result;

template <class T>
requires(kNumberType<T> != VT_EMPTY) struct Result<T, T*> {
  static constexpr TypeWords kWords{.type = kNumberType<T>};
  static void Clear(T* target) { *target = T{}; }
  static void Store(T* target, T value) { *target = value; }
};
template <>
struct Result<bool, VARIANT_BOOL*> {
  static constexpr TypeWords kWords{.type = VT_BOOL};
  static void Clear(VARIANT_BOOL* target) { *target = VARIANT_FALSE; }
  static void Store(VARIANT_BOOL* target, bool value) { *target = value ? VARIANT_TRUE : VARIANT_FALSE; }
};
template <>
struct Result<VariantBool, VARIANT_BOOL*> {
  static constexpr TypeWords kWords{.type = VT_BOOL};
  static void Clear(VARIANT_BOOL* target) { *target = VARIANT_FALSE; }
  static void Store(VARIANT_BOOL* target, VariantBool value) { *target = value.raw; }
};
template <class T>
requires(std::is_same_v<T, Text> || std::is_same_v<T, TextView>) struct Result<T, BSTR*> {
  static constexpr TypeWords kWords{.type = VT_BSTR};
  static void Clear(BSTR* target) { *target = nullptr; }
  static void Store(BSTR* target, const T& value) { *target = BstrHandle(value).Detach(); }
};
template <>
struct Result<BstrHandle, BSTR*> {
  static constexpr TypeWords kWords{.type = VT_BSTR};
  static void Clear(BSTR* target) { *target = nullptr; }
  static void Store(BSTR* target, BstrHandle value) {
    *target = value.get() == nullptr ? BstrHandle(TextView{}).Detach() : value.Detach();
  }
};
template <>
struct Result<Variant, VARIANT*> {
  static constexpr TypeWords kWords{.type = VT_VARIANT};
  static void Clear(VARIANT* target) { VariantInit(target); }
  static void Store(VARIANT* target, Variant value) { *target = value.Detach(); }
};
template <class I>
struct Result<ComPtr<I>, I**> {
  static constexpr TypeWords kWords{.type = VT_DISPATCH, .user_type = kInterfaceName<I>, .iid = kInterfaceId<I>};
  static void Clear(I** target) { *target = nullptr; }
  static void Store(I** target, ComPtr<I> value) { *target = value.Detach(); }
};
template <class I>
struct Result<Self, I**> {
  static constexpr TypeWords kWords{.type = VT_DISPATCH, .user_type = kInterfaceName<I>, .iid = kInterfaceId<I>};
  static void Clear(I** target) { *target = nullptr; }
};
template <>
struct Result<FileRecord, FileType*> {
  static constexpr TypeWords kWords{.type = VT_RECORD, .user_type = "FileType"};
  static void Clear(FileType* target) { *target = FileType{}; }
  static void Store(FileType* target, FileRecord value) { *target = value.Detach(); }
};

}  // namespace Orvix::component

#endif
