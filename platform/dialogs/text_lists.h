// Lists of the dialog component, called by name: the filter texts, which grow,
// and the names of the chosen files, which stay as they are.
#ifndef ORVIX_PLATFORM_DIALOGS_TEXT_LISTS_H
#define ORVIX_PLATFORM_DIALOGS_TEXT_LISTS_H

#include <vector>

#include "platform/automation/late_object.h"

namespace Orvix {

// Base of the dialog's objects: an interface of their own besides IDispatch, and
// the place of an argument that cannot be converted.
class DialogObject : public LateObject {
 public:
  HRESULT ORVIX_CALL QueryInterface(REFIID riid, void** object) noexcept override;
  HRESULT ORVIX_CALL Invoke(DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result,
                            EXCEPINFO* exception, UINT* argument_error) noexcept override;

 protected:
  explicit DialogObject(REFIID own) : own_(own) {}

 private:
  const IID own_;
};

// Conversions of arguments; what cannot be converted fails the call.
[[nodiscard]] Text TextArgument(const VARIANT& value);
[[nodiscard]] LONG LongArgument(const VARIANT& value);
[[nodiscard]] bool TruthArgument(const VARIANT& value);
// Results of a call, into an empty value.
void GiveText(TextView text, VARIANT* result);
void GiveLong(LONG number, VARIANT* result);
void GiveTruth(bool truth, VARIANT* result);

// Count, and Item by 0-based index: error 9 outside.
class TextList : public DialogObject {
 public:
  [[nodiscard]] const std::vector<Text>& Texts() const noexcept { return texts_; }

 protected:
  enum Member : DISPID { kItem = DISPID_VALUE, kCount = 1, kAdd = 2, kRemove = 3, kClear = 4 };

  TextList(REFIID own, std::vector<Text> texts) : DialogObject(own), texts_(std::move(texts)) {}
  void Call(DISPID member, const LateArguments& arguments, VARIANT* result) override;

  std::vector<Text> texts_;

 private:
  [[nodiscard]] std::size_t PositionOf(const VARIANT& index) const;
};

class ChosenNames final : public TextList {
 public:
  explicit ChosenNames(std::vector<Text> names);

 protected:
  [[nodiscard]] std::span<const LateMember> Members() const noexcept override;
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.FileDialogFiles"; }
};

// Add of one text, Remove of the one at a 0-based index, Clear.
class FilterTexts final : public TextList {
 public:
  FilterTexts();

 protected:
  [[nodiscard]] std::span<const LateMember> Members() const noexcept override;
  [[nodiscard]] TextView ClassName() const noexcept override { return u"Orvix.FileDialogFilters"; }
};

}  // namespace Orvix

#endif
