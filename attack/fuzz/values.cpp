// Values of every type to every type and back, compared, and as text, number and date.
#include "attack/fuzz/fuzz.h"

using namespace Orvix;  // NOLINT(google-build-using-namespace)

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input(data, size);
  VARIANT value{};
  const auto type = static_cast<VARTYPE>(input.Byte() % 25);
  const auto wanted = static_cast<VARTYPE>(input.Byte() % 25);
  const auto flags = static_cast<USHORT>(input.Byte());
  if (type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_VARIANT) return 0;
  if (type == VT_DECIMAL) value.decVal = input.Number<DECIMAL>();
  value.vt = type;
  if (type == VT_BSTR) {
    value.bstrVal = NewBstr(input.Words());
  } else if (type != VT_DECIMAL) {
    value.llVal = input.Number<std::int64_t>();
  }
  VARIANT changed{};
  if (VariantChangeTypeEx(&changed, &value, LOCALE_INVARIANT, flags, wanted) == S_OK) {
    VARIANT back{};
    VariantChangeType(&back, &changed, 0, type);
    VarCmp(&changed, &value, 0, 0);
    VariantClear(&back);
  }
  BSTR text = nullptr;
  LONG number = 0;
  DATE date = 0;
  OxTextOf(&value, &text);
  OxLongOf(&value, &number);
  OxDateOf(&value, &date);
  SysFreeString(text);
  VariantClear(&changed);
  VariantClear(&value);
  return 0;
}
