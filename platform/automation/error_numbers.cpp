// Error numbers of the runtime: the number behind a result code, and the
// standard description of a number.
#include <algorithm>
#include <iterator>

#include "orvix/runtime.h"

namespace {

constexpr std::uint32_t kFirstNumbered = 0x800A0001;
constexpr std::uint32_t kLastNumbered = 0x800BFFFF;
constexpr std::uint32_t kNumberedBase = 0x800A0000;

struct CodeNumber {
  std::uint32_t code;
  LONG number;
};

// In order of the codes.
constexpr CodeNumber kCodeNumbers[] = {
    {0x80004001, 445},  // not implemented
    {0x80004002, 430},  // no interface
    {0x80020001, 438},  // unknown interface
    {0x80020003, 438},  // member not found
    {0x80020004, 448},  // parameter not found
    {0x80020005, 13},   // type mismatch
    {0x80020006, 438},  // unknown name
    {0x80020007, 446},  // no named arguments
    {0x80020008, 458},  // bad variable type
    {0x8002000A, 6},    // overflow
    {0x8002000B, 9},    // bad index
    {0x8002000C, 447},  // unknown locale
    {0x8002000D, 10},   // array is locked
    {0x8002000E, 450},  // bad parameter count
    {0x8002000F, 449},  // parameter not optional
    {0x80020011, 451},  // not a collection
    {0x80020012, 11},   // division by zero
    {0x8002802F, 453},  // library function not found
    {0x80028CA0, 13},   // type mismatch in a type library
    {0x80028CA1, 9},    // out of bounds
    {0x80028CA2, 57},   // input or output error
    {0x80028CA3, 322},  // no temporary file
    {0x80030002, 432},  // storage: file not found
    {0x80030003, 76},   // storage: path not found
    {0x80030004, 67},   // storage: too many open files
    {0x80030005, 70},   // storage: access denied
    {0x80030008, 7},    // storage: insufficient memory
    {0x80030012, 67},   // storage: no more files
    {0x80030013, 70},   // storage: write-protected
    {0x8003001D, 57},   // storage: write fault
    {0x8003001E, 57},   // storage: read fault
    {0x80030020, 75},   // storage: share violation
    {0x80030021, 70},   // storage: lock violation
    {0x80030050, 58},   // storage: file exists
    {0x80030070, 61},   // storage: medium full
    {0x800300FC, 53},   // storage: invalid name
    {0x80030100, 70},   // storage: in use
    {0x80030101, 70},   // storage: not current
    {0x80030103, 57},   // storage: cannot save
    {0x80040154, 429},  // class not registered
    {0x800401E3, 429},  // object unavailable
    {0x800401E6, 432},  // invalid extension
    {0x800401EA, 432},  // cannot open file
    {0x800401F3, 429},  // bad class text
    {0x800401F5, 429},  // application not found
    {0x800401FE, 429},  // application did not register
    {0x80070005, 70},   // access denied
    {0x8007000E, 7},    // out of memory
    {0x80070057, 5},    // invalid argument
    {0x800706BA, 462},  // server unavailable
    {0x80080005, 429},  // server start failed
};
static_assert(std::ranges::is_sorted(kCodeNumbers, {}, &CodeNumber::code));

struct NumberText {
  LONG number;
  const OLECHAR* text;
};

// In order of the numbers.
constexpr NumberText kDescriptions[] = {
    {3, u"Return without GoSub"},
    {5, u"Invalid procedure call or argument"},
    {6, u"Overflow"},
    {7, u"Out of memory"},
    {9, u"Subscript out of range"},
    {10, u"This array is fixed or temporarily locked"},
    {11, u"Division by zero"},
    {13, u"Type mismatch"},
    {14, u"Out of string space"},
    {28, u"Out of stack space"},
    {35, u"Sub, Function, or Property not defined"},
    {48, u"Error in loading DLL"},
    {51, u"Internal error"},
    {52, u"Bad file name or number"},
    {53, u"File not found"},
    {54, u"Bad file mode"},
    {55, u"File already open"},
    {57, u"Device I/O error"},
    {58, u"File already exists"},
    {59, u"Bad record length"},
    {61, u"Disk full"},
    {62, u"Input past end of file"},
    {63, u"Bad record number"},
    {67, u"Too many files"},
    {68, u"Device unavailable"},
    {70, u"Permission denied"},
    {71, u"Disk not ready"},
    {74, u"Can't rename with different drive"},
    {75, u"Path/File access error"},
    {76, u"Path not found"},
    {91, u"Object variable or With block variable not set"},
    {92, u"For loop not initialized"},
    {93, u"Invalid pattern string"},
    {94, u"Invalid use of Null"},
    {321, u"Invalid file format"},
    {322, u"Can't create necessary temporary file"},
    {380, u"Invalid property value"},
    {381, u"Invalid property-array index"},
    {424, u"Object required"},
    {429, u"ActiveX component can't create object"},
    {430, u"Class doesn't support Automation"},
    {432, u"File name or class name not found during Automation operation"},
    {438, u"Object doesn't support this property or method"},
    {440, u"Automation error"},
    {445, u"Object doesn't support this action"},
    {446, u"Object doesn't support named arguments"},
    {447, u"Object doesn't support current locale setting"},
    {448, u"Named argument not found"},
    {449, u"Argument not optional"},
    {450, u"Wrong number of arguments or invalid property assignment"},
    {451, u"Object not a collection"},
    {452, u"Invalid ordinal"},
    {453, u"Specified DLL function not found"},
    {457, u"This key is already associated with an element of this collection"},
    {458, u"Variable uses a type that Automation does not support"},
    {462, u"The remote server machine does not exist or is unavailable"},
};
static_assert(std::ranges::is_sorted(kDescriptions, {}, &NumberText::number));

constexpr const OLECHAR* kOtherDescription = u"Application-defined or object-defined error";

}  // namespace

LONG OxErrorNumber(HRESULT result) {
  const auto code = static_cast<std::uint32_t>(result);
  if (code >= kFirstNumbered && code <= kLastNumbered) return static_cast<LONG>(code - kNumberedBase);
  const auto* found = std::ranges::lower_bound(kCodeNumbers, code, {}, &CodeNumber::code);
  return found != std::end(kCodeNumbers) && found->code == code ? found->number : result;
}

HRESULT OxErrorDescription(LONG number, BSTR* description) {
  if (description == nullptr) return E_POINTER;
  const auto* found = std::ranges::lower_bound(kDescriptions, number, {}, &NumberText::number);
  const bool known = found != std::end(kDescriptions) && found->number == number;
  *description = SysAllocString(known ? found->text : kOtherDescription);
  return *description == nullptr ? E_OUTOFMEMORY : S_OK;
}
