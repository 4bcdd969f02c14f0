// Values for people and for programs.
#ifndef ORVIX_TOOLS_ORVIXCTL_SHOW_H
#define ORVIX_TOOLS_ORVIXCTL_SHOW_H

#include <string>
#include <string_view>

#include "library.h"

namespace Orvix::ctl {

// A text as a JSON string: control characters and lone surrogates escaped, so
// the output is always UTF-8.
[[nodiscard]] std::string JsonText(std::string_view utf8);
[[nodiscard]] std::string JsonText(TextView text);

// A value as JSON: numbers, true, false, texts, dates as "2002-11-30T10:00:00",
// null for Empty, Null and Nothing, arrays, records by field, objects as
// {"class": ..., "value": ...}. `library` (may be null) names the classes.
[[nodiscard]] std::string JsonValue(const Value& value, const Library* library);

// A value for people: texts as they are, numbers as the runtime writes them,
// dates as 2002-11-30 10:00:00, arrays as JSON, a record as one line a field,
// an object as its class and its default value.
[[nodiscard]] std::string ShowValue(const Value& value, const Library& library);

// The class of an object of this library, by its type information; null for
// any other object.
[[nodiscard]] const Class* ClassOfObject(const Pointer<IDispatch>& object, const Library& library);

}  // namespace Orvix::ctl

#endif
