// The C++ way to Orvix: one class an interface, with every member as one line
// to call. Texts are UTF-16 or UTF-8 views, values and arrays are C++ values,
// optional arguments are default arguments, and a failure is an exception with
// number, source and description. Header-only; link liborvixrt.
//
//   Orvix::Global().GetElement("a,b,c", 2, ",");      // "b"
//   Orvix::Filename name(u"C:\\Data\\report.txt");
//   std::string extension = name.Extension().Utf8();  // "txt"
//
// wrapper/ holds the parts: error.hpp (the exception), pointer.hpp and text.hpp
// (owners), date.hpp, value.hpp, array.hpp (values), component.hpp (where
// objects come from), call.hpp (how a member is called), and the classes:
// utility.hpp, filename.hpp, directory.hpp, string_buffer.hpp, stack.hpp,
// file_operation.hpp.
#ifndef ORVIX_ORVIX_HPP
#define ORVIX_ORVIX_HPP

#include "orvix/wrapper/array.hpp"
#include "orvix/wrapper/call.hpp"
#include "orvix/wrapper/component.hpp"
#include "orvix/wrapper/date.hpp"
#include "orvix/wrapper/directory.hpp"
#include "orvix/wrapper/error.hpp"
#include "orvix/wrapper/file_operation.hpp"
#include "orvix/wrapper/filename.hpp"
#include "orvix/wrapper/list.hpp"
#include "orvix/wrapper/pointer.hpp"
#include "orvix/wrapper/stack.hpp"
#include "orvix/wrapper/string_buffer.hpp"
#include "orvix/wrapper/text.hpp"
#include "orvix/wrapper/utility.hpp"
#include "orvix/wrapper/value.hpp"

#endif
