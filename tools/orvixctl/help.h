// What each command does and what to type.
#ifndef ORVIX_TOOLS_ORVIXCTL_HELP_H
#define ORVIX_TOOLS_ORVIXCTL_HELP_H

#include <string_view>

namespace Orvix::ctl {

inline constexpr std::string_view kHelp =
    R"(orvixctl shows Orvix's classes and calls their members.

Usage: orvixctl [--library FILE] COMMAND [OPTION...] [ARGUMENT...]

Commands:
  list                   the classes, enumerations and records
  describe NAME          a class, a member (classString.Mid), an enumeration or a record
  call CLASS.MEMBER ...  calls a member of a new object
  idl                    the interfaces as IDL text
  register               writes the classes into the registry
  unregister             takes them out again
  help [COMMAND]         this text, or a command's

Options:
  --library FILE         the component to use; else the liborvix.so that belongs to
                         this program
  --help                 this text, or the command's when it stands behind one
  --version              the version of the type library

Exit status: 0 done, 1 the call or the command failed, 2 wrong command line.
)";

inline constexpr std::string_view kListHelp =
    R"(Usage: orvixctl list [--json]

Shows the classes with the number of their methods and properties, the
enumerations and the records.

  --json   one JSON document, with constants and fields
)";

inline constexpr std::string_view kDescribeHelp =
    R"(Usage: orvixctl describe [--json] NAME

NAME is a class, a member, an enumeration or a record; case does not matter.
A member is shown with its signature, parameters, defaults, help string, slot
(1 is the first after IDispatch's) and dispatch identifier. In a signature, what
may be left out stands in brackets and "*" means by reference.

  --json   one JSON document

Examples:
  orvixctl describe classString
  orvixctl describe classOrvix.GetElement
  orvixctl describe enumRegistryConsts
)";

inline constexpr std::string_view kCallHelp =
    R"(Usage: orvixctl call [--json] CLASS.MEMBER[=VALUE] [ARGUMENT...] [STEP...]

Makes an object of the class, calls the member and prints its result. Options
stand before CLASS.MEMBER; everything behind it belongs to the call.

Steps go on with the same object:
  .MEMBER [ARGUMENT...]         calls a method or reads a property
  .MEMBER=VALUE [INDEX...]      puts a property
  ..MEMBER ...                  the same on the object that the last step returned

Arguments, typed as "orvixctl describe" shows them:
  texts          as they are, in UTF-8
  numbers        12, -3, 1.5, &HFF
  VARIANT_BOOL   true or false
  enumerations   a constant's name or a number
  dates          2002-11-30 or "2002-11-30 10:00"
  arrays         [1, 2, 3] or ["a", "b"]; none for one without bounds
  objects        CLASS or CLASS:TEXT for a new object, or nothing; the text
                 alone where the member says which class it takes
  VARIANT        a number, true, false, an array, else text; text:12 is the text
                 12; also long: short: byte: single: double: boolean: date:
                 currency: and empty, null, nothing
  NAME:=VALUE    an argument by its name
  _              left out, so that its default holds
  @              an empty variable for a by-reference argument, shown afterwards
A backslash in front of _, @ or a point that would start a step makes it text.

By-reference arguments that the call changed are printed as NAME = VALUE. What
the component would show in a message box goes to standard error.

  --json   one JSON document with every result, output and error

Examples:
  orvixctl call classOrvix.GetElement a,b,c 2 ,
  orvixctl call classOrvix.Max '[3, 7.5, 1]'
  orvixctl call classOrvix.SuperRTrim 'text   ' @
  orvixctl call classFilename.CompleteFilename='C:\a.txt' .Extension .Path
  orvixctl call classString.Value=Hello .Mid=XY 2 2 .Value .Left 3 ..UCase
)";

inline constexpr std::string_view kIdlHelp =
    R"(Usage: orvixctl idl

Prints the library, its enumerations, record, interfaces and classes as IDL text,
members in slot order.
)";

inline constexpr std::string_view kRegisterHelp =
    R"(Usage: orvixctl register

Writes the classes, program identifiers and the type library into the registry,
so that CoCreateInstance finds them. The registry is the file or directory that
ORVIX_REGISTRY names, else orvix/registry under the user's data directory.
)";

inline constexpr std::string_view kUnregisterHelp =
    R"(Usage: orvixctl unregister

Takes out of the registry what register wrote.
)";

}  // namespace Orvix::ctl

#endif
