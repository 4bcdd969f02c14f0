// What each command does and how its arguments are typed, behind its options.
#ifndef ORVIX_TOOLS_ORVIXCTL_HELP_H
#define ORVIX_TOOLS_ORVIXCTL_HELP_H

namespace Orvix::ctl {

inline constexpr char kAppHelp[] = "Exit status: 0 done, 1 the call or the command failed, 2 wrong command line.";

inline constexpr char kDescribeHelp[] =
    R"(Case does not matter. A member is shown with its signature, parameters, defaults,
help string, slot (1 is the first after IDispatch's) and dispatch identifier. In a
signature, what may be left out stands in brackets and "*" means by reference.

Examples:
  orvixctl describe classString
  orvixctl describe classOrvix.GetElement
  orvixctl describe enumRegistryConsts)";

inline constexpr char kCallHelp[] =
    R"(Makes an object of the class, calls the member and prints its result. Options
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

Examples:
  orvixctl call classOrvix.GetElement a,b,c 2 ,
  orvixctl call classOrvix.Max '[3, 7.5, 1]'
  orvixctl call classOrvix.SuperRTrim 'text   ' @
  orvixctl call classFilename.CompleteFilename='C:\a.txt' .Extension .Path
  orvixctl call classString.Value=Hello .Mid=XY 2 2 .Value .Left 3 ..UCase)";

inline constexpr char kRunHelp[] =
    R"(A step is one line:
  NAME = new CLASS              an object
  NAME.MEMBER [ARGUMENT...]     calls a method or reads a property, and prints what
                                "orvixctl call" prints
  NAME.MEMBER=VALUE [INDEX...]  puts a property
  MEMBER [ARGUMENT...]          a member of the global object, classOrvix
  NAME = STEP                   keeps the result instead of printing it
  NAME = $OTHER                 the same value under another name
  print WORD...                 the words with blanks between
  ! STEP                        must fail; its error is printed, and the script goes on
  # ...                         nothing

Arguments are typed as for "orvixctl call". $NAME is what a name holds, and takes what
the call writes into it; @NAME is an empty variable that is named so afterwards. Words
end at blanks. '...' keeps all between as it is, "..." knows JSON's escapes (\n, \",
\u20ac); nothing in either has a meaning of its own.

A step that fails ends the script with its line's number and status 1.

Example:
  s = new classString
  s.Append 'some text'
  n = s.Length
  print length: $n)";

inline constexpr char kRegisterHelp[] =
    R"(Writes the classes, program identifiers and the type library into the registry,
so that CoCreateInstance finds them.)";

inline constexpr char kRegistryHelp[] =
    R"(The registry is kept in the directory that ORVIX_REGISTRY names, else in
orvix/registry under the user's data directory. A KEY begins with a root:
HKEY_CLASSES_ROOT (or HKCR), HKEY_CURRENT_USER (HKCU), HKEY_LOCAL_MACHINE (HKLM) or
HKEY_USERS (HKU). The value named "" is the key's default.

Values are written and read as
  "text"          a text, with \n, \r, \t, \", \\ and \u1234
  expand:"text"   a text with names of variables
  dword:42        a number of 32 bits
  hex:01 02       bytes
  hex(7):01 02    the bytes of a value of any type

Examples:
  orvixctl registry set HKCU\Software\Demo Name '"a text"'
  orvixctl registry list HKCU\Software --recursive
  orvixctl registry export HKCU\Software\Demo demo.txt
  orvixctl registry import demo.txt)";

}  // namespace Orvix::ctl

#endif
