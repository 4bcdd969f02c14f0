// Values for people and for programs.
#ifndef ORVIX_TOOLS_ORVIXCTL_SHOW_H
#define ORVIX_TOOLS_ORVIXCTL_SHOW_H

#include <nlohmann/json.hpp>
#include <string>

#include "library.h"

namespace Orvix::ctl {

using Json = nlohmann::ordered_json;

// A text as Print shows it: any code units.
[[nodiscard]] Json JsonOf(TextView text);

// Numbers, true, false, texts, dates as "2002-11-30T10:00:00", null for Empty, Null
// and Nothing, arrays, records by field, objects as {"class": ..., "value": ...}.
// `library` (may be null) names the classes.
[[nodiscard]] Json JsonOf(const Value& value, const Library* library);

// One line of UTF-8; control characters and halves of surrogate pairs are escaped.
[[nodiscard]] std::string Print(const Json& json);

// A value for people: texts as they are, numbers as the runtime writes them,
// dates as 2002-11-30 10:00:00, arrays as JSON, a record as one line a field,
// an object as its class and its default value.
[[nodiscard]] std::string ShowValue(const Value& value, const Library& library);

// The class of an object of this library, by its type information; null for
// any other object.
[[nodiscard]] const Class* ClassOfObject(const Pointer<IDispatch>& object, const Library& library);

}  // namespace Orvix::ctl

#endif
