#include "frame/argument_types.h"

namespace Orvix::component {

const VARIANT& EmptyTextVariant() {
  static const VARIANT value = [] {
    VARIANT text;
    VariantInit(&text);
    text.vt = VT_BSTR;  // a null text is the empty one
    return text;
  }();
  return value;
}

}  // namespace Orvix::component
