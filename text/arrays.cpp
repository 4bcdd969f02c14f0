// Questions about arrays of texts, and about what a collection holds.
#include <algorithm>

#include "frame/class_orvix.h"
#include "frame/error_styles.h"
#include "frame/late_binding.h"
#include "text/array_elements.h"

namespace Orvix::component {

namespace {

// Error 9 for an array that has no bounds. One without elements has some.
void AskForUpperBound(SAFEARRAY* array) {
  if (IsUnallocated(array)) RaiseRuntimeError(kSubscriptOutOfRange);
  LONG bound = 0;
  CheckRuntime(SafeArrayGetUBound(array, 1, &bound));
}

bool HasNoBounds(SAFEARRAY* array) {
  return FallBackSilently(true, [&] {
    AskForUpperBound(array);
    return false;
  });
}

}  // namespace

bool classOrvix::ArrayIsEmpty(ArrayOf<float> array) { return HasNoBounds(array.array); }

bool classOrvix::StringArrayIsEmpty(ArrayOf<BSTR> array) { return HasNoBounds(array.array); }

bool classOrvix::IsInStringArray(ArrayOf<BSTR> texts, TextView target, FalseByDefault match_case) {
  return ReportAndContinue(u"Error searching string.", false, [&] {
    if (StringArrayIsEmpty(texts)) return false;
    const ArrayElements<BSTR> elements(texts);
    const Text wanted = match_case ? Text(target) : Upper(target);
    return std::ranges::any_of(elements.All(), [&](BSTR element) {
      const TextView text = ViewOf(element);
      // Upper case keeps the length.
      if (text.size() != wanted.size()) return false;
      return match_case ? Equal(text, wanted) : Equal(Upper(text), wanted);
    });
  });
}

bool classOrvix::IsInCollection(TextView key, IDispatch* collection) {
  return FallBackSilently(false, [&] {
    const Variant wanted(key);
    const Variant item = GetMember(collection, u"Item", {&wanted.get(), 1});
    static_cast<void>(ObjectOf(item));  // an empty object reference is an object as well
    return true;
  });
}

}  // namespace Orvix::component
