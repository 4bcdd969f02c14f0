// From native names to the component's, and what its services can take.
#ifndef ORVIX_EXAMPLES_SHARED_NAMES_H
#define ORVIX_EXAMPLES_SHARED_NAMES_H

#include <string>

#include "command_line.h"
#include "orvix/orvix.hpp"

namespace examples {

// The name as the component knows it, with a drive: members take a name that
// starts with a separator for one without.
inline Orvix::Text QualifiedName(const std::string& native) {
  Orvix::String name;
  Orvix::Check(OxPlatformName(native.c_str(), name.Receive()));
  return Orvix::Text(name.View());
}

inline Orvix::Text WithSeparator(Orvix::Text name) {
  if (!name.ends_with(u'\\') && !name.ends_with(u'/')) name += u'\\';
  return name;
}

// The native name behind one of the component's, for people and for the system.
inline std::string NativeName(const Orvix::Text& name) {
  struct Freer {
    char* text = nullptr;
    ~Freer() { CoTaskMemFree(text); }
  } native;
  Orvix::Check(OxNativeName(name.c_str(), &native.text));
  return native.text;
}

// A bound of the date filter; empty is none.
inline void RequireDate(const std::string& option, const std::string& bound) {
  if (bound.empty()) return;
  DATE unused = 0;
  const Orvix::Value text(bound);
  if (FAILED(OxDateOf(&text.get(), &unused))) {
    throw UsageError(option + " takes a date such as 2002-11-30, not \"" + bound + "\".");
  }
}

}  // namespace examples

#endif
