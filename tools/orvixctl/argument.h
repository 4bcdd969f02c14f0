// A word of the command line as the value that a parameter takes.
#ifndef ORVIX_TOOLS_ORVIXCTL_ARGUMENT_H
#define ORVIX_TOOLS_ORVIXCTL_ARGUMENT_H

#include <string>
#include <string_view>

#include "library.h"

namespace Orvix::ctl {

// Makes values of a type from text, and new objects where objects are asked for.
class ArgumentReader {
 public:
  ArgumentReader(const Library& library, const Component& component) : library_(library), component_(component) {}

  // The value of exactly the parameter's type (of any type for a VARIANT).
  //   text            as it is
  //   number          decimal, or hexadecimal after &H
  //   VARIANT_BOOL    true, false, yes, no, on, off, or a number
  //   enumeration     the constant's name or its number
  //   DATE            a date, such as 2002-11-30 10:00
  //   array           [1, 2.5, "text", true]; "none" for one without bounds
  //   object          CLASS or CLASS:TEXT for a new object whose default property
  //                   is put; the text alone where the class is known; "nothing"
  //   VARIANT         a number, true, false, an array, or else text; KIND:TEXT
  //                   says which: text, long, short, byte, single, double,
  //                   boolean, date, currency, or a class; empty, null, nothing
  // UsageError, naming the parameter, for anything else.
  [[nodiscard]] Value Read(const Type& type, const std::string& name, const std::string& word) const;

  // A variable of that type with nothing in it: zero, the empty text, Nothing, an
  // array without bounds, Empty.
  [[nodiscard]] static Value Blank(const Type& type);

 private:
  [[nodiscard]] Value ReadObject(const Type& type, const std::string& name, const std::string& word) const;
  [[nodiscard]] Value ReadVariant(const std::string& name, const std::string& word) const;
  [[nodiscard]] Value ReadArray(VARTYPE element, const std::string& name, const std::string& word) const;
  [[nodiscard]] Value NewObject(const Class& its, const std::string* text) const;

  const Library& library_;
  const Component& component_;
};

}  // namespace Orvix::ctl

#endif
