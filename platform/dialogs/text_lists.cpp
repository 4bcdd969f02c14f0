#include "platform/dialogs/text_lists.h"

#include <new>

#include "frame/runtime/runtime_error.h"
#include "platform/automation/variant.h"

namespace Orvix {
namespace {

constexpr IID kChosenNamesInterface = "D1879861-EC80-11CE-9C0D-00AA0062BE57"_guid;
constexpr IID kFilterTextsInterface = "A4622061-ED13-11CE-9C0D-00AA0062BE57"_guid;

constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;

void Convert(const VARIANT& value, VARTYPE type, OwnedVariant& converted) {
  const HRESULT result = VariantChangeTypeEx(&converted.value, &value, LOCALE_INVARIANT, 0, type);
  if (FAILED(result)) throw LateFailure{result};
}

}  // namespace

HRESULT DialogObject::QueryInterface(REFIID riid, void** object) noexcept {
  return LateObject::QueryInterface(riid == own_ ? IID_IDispatch : riid, object);
}

HRESULT DialogObject::Invoke(DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                             EXCEPINFO* exception, UINT* argument_error) noexcept {
  const HRESULT code = LateObject::Invoke(member, riid, lcid, flags, params, result, exception, argument_error);
  // No member has more than one argument.
  if (code == DISP_E_TYPEMISMATCH && argument_error != nullptr) *argument_error = 0;
  return code;
}

Text TextArgument(const VARIANT& value) {
  OwnedVariant text;
  Convert(value, VT_BSTR, text);
  return Text(ViewOf(text.value.bstrVal));
}

LONG LongArgument(const VARIANT& value) {
  OwnedVariant number;
  Convert(value, VT_I4, number);
  return number.value.lVal;
}

bool TruthArgument(const VARIANT& value) {
  OwnedVariant truth;
  Convert(value, VT_BOOL, truth);
  return truth.value.boolVal != VARIANT_FALSE;
}

void GiveText(TextView text, VARIANT* result) {
  result->bstrVal = NewBstr(text);
  if (result->bstrVal == nullptr) throw std::bad_alloc();
  result->vt = VT_BSTR;
}

void GiveLong(LONG number, VARIANT* result) {
  result->lVal = number;
  result->vt = VT_I4;
}

void GiveTruth(bool truth, VARIANT* result) {
  result->boolVal = truth ? VARIANT_TRUE : VARIANT_FALSE;
  result->vt = VT_BOOL;
}

std::size_t TextList::PositionOf(const VARIANT& index) const {
  const LONG position = LongArgument(index);
  if (position < 0 || static_cast<std::size_t>(position) >= texts_.size()) throw RuntimeError{9};
  return static_cast<std::size_t>(position);
}

void TextList::Call(DISPID member, const LateArguments& arguments, VARIANT* result) {
  const VARIANT* const first = arguments.given[0];
  switch (member) {
    case kItem:
      return GiveText(texts_[PositionOf(*first)], result);
    case kCount:
      return GiveLong(static_cast<LONG>(texts_.size()), result);
    case kAdd:
      texts_.push_back(TextArgument(*first));
      return;
    case kRemove:
      texts_.erase(texts_.begin() + static_cast<std::ptrdiff_t>(PositionOf(*first)));
      return;
    default:
      return texts_.clear();
  }
}

ChosenNames::ChosenNames(std::vector<Text> names) : TextList(kChosenNamesInterface, std::move(names)) {}

std::span<const LateMember> ChosenNames::Members() const noexcept {
  static constexpr LateMember kMembers[] = {
      {kItem, u"Item", kRead, {u"Index"}, 1},
      {kCount, u"Count", kRead},
  };
  return kMembers;
}

FilterTexts::FilterTexts() : TextList(kFilterTextsInterface, {}) {}

std::span<const LateMember> FilterTexts::Members() const noexcept {
  static constexpr LateMember kMembers[] = {
      {kItem, u"Item", kRead, {u"Index"}, 1},
      {kCount, u"Count", kRead},
      {kAdd, u"Add", DISPATCH_METHOD, {u"Filter"}, 1},
      {kRemove, u"Remove", DISPATCH_METHOD, {u"Index"}, 1},
      {kClear, u"Clear", DISPATCH_METHOD},
  };
  return kMembers;
}

}  // namespace Orvix
