// The slots of the interfaces of the string buffer and the stacks.
#ifndef ORVIX_TESTS_FRAME_CATALOGUE_CONTAINERS_H
#define ORVIX_TESTS_FRAME_CATALOGUE_CONTAINERS_H

#include "tests/frame/interface_catalogue.h"

namespace Orvix::testing::catalogue {

// Value is the default member, so 2 is nobody's.
inline constexpr Member kClassString[] = {
    {1, "SetBufferSize", kMethod, 1, "void (long newSize, BOOL* clearIt ?)"},
    {2, "Value", kGet, 0, "BSTR ()"},
    {3, "Value", kPut, 0, "void (BSTR* newValue [out])"},
    {4, "StrPtr", kMethod, 3, "long ()"},
    {5, "Length", kGet, 4, "long ()"},
    {6, "Length", kPut, 4, "void (long newValue)"},
    {7, "Clear", kMethod, 5, "void ()"},
    {8, "Copy", kMethod, 6, "_classString* ()"},
    {9, "Left", kGet, 7, "_classString* (long NumChars)"},
    {10, "Left", kPut, 7, "void (long NumChars, VARIANT* newValue)"},
    {11, "Left", kPutRef, 7, "void (long NumChars, _classString** newValue)"},
    {12, "Right", kGet, 8, "_classString* (long NumChars)"},
    {13, "Right", kPut, 8, "void (long NumChars, VARIANT* newValue)"},
    {14, "Right", kPutRef, 8, "void (long NumChars, _classString** newValue)"},
    {15, "Mid", kGet, 9, "_classString* (long StartPos, VARIANT* NumChars ?)"},
    {16, "Mid", kPut, 9, "void (long StartPos, VARIANT* NumChars ?, VARIANT* newValue)"},
    {17, "Mid", kPutRef, 9, "void (long StartPos, VARIANT* NumChars ?, _classString** newValue)"},
    {18, "Asc", kMethod, 10, "short ()"},
    {19, "Char", kGet, 11, "BYTE (long index)"},
    {20, "Char", kPut, 11, "void (long index, BYTE newValue)"},
    {21, "Instr", kMethod, 12, "long (VARIANT* search, long* StartPos ?=1)"},
    {22, "UCase", kMethod, 13, "_classString* ()"},
    {23, "LCase", kMethod, 14, "_classString* ()"},
    {24, "ReverseStr", kMethod, 15, "_classString* ()"},
    {25, "Append", kMethod, 16, "_classString* (VARIANT* arg)"},
    {26, "Find", kMethod, 17, "long (BSTR* search, long* StartPos ?=1)"},
    {27, "WriteToFile", kMethod, 18, "void (short FileNum, BOOL* PrefixLength ?)"},
    {28, "ReadFromFile", kMethod, 19, "void (short FileNum, BOOL* PrefixLength ?)"},
    {29, "TrimToNull", kMethod, 20, "long ()"},
    {30, "GetElement", kMethod, 21, "BSTR (long lIndex, BSTR sSeparator)"},
    {31, "LengthList", kMethod, 22, "long (BSTR sSeparator)"},
};

inline constexpr Member kClassStack[] = {
    {1, "Push", kMethod, 1, "void (VARIANT* vValue)"},
    {2, "IsEmpty", kMethod, 2, "BOOL ()"},
    {3, "Pop", kMethod, 3, "VARIANT ()"},
    {4, "Peek", kMethod, 4, "VARIANT (long* lOffset ?=0)"},
    {5, "Size", kGet, 5, "long ()"},
    {6, "Reset", kMethod, 6, "void ()"},
    {7, "GetStackItem", kMethod, 7, "VARIANT (long* lIndex)"},
    {8, "Peek2", kMethod, 8, "VARIANT (long* lOffset ?=0)"},
    {9, "IsOnStack", kMethod, 9, "BOOL (VARIANT* vValue, StackSearchDirection* eDirection, long* lIndex [out])"},
};

inline constexpr Member kClassStackObject[] = {
    {1, "Push", kMethod, 1, "void (IDispatch* objValue)"},
    {2, "IsEmpty", kMethod, 2, "BOOL ()"},
    {3, "Pop", kMethod, 3, "IDispatch ()"},
    {4, "Peek", kMethod, 4, "IDispatch (long* lOffset ?=0)"},
    {5, "Size", kGet, 5, "long ()"},
    {6, "Reset", kMethod, 6, "void ()"},
    {7, "GetStackItem", kMethod, 7, "IDispatch (long* lIndex)"},
};

}  // namespace Orvix::testing::catalogue

#endif
