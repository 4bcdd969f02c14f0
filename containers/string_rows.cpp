// The members of `_classString`, in slot order.
#include "containers/string_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    Method<&classString::SetBufferSize, &_classString::SetBufferSize>("SetBufferSize", {}, {"newSize", "clearIt"}),
    DefaultMember(PropertyGet<&classString::Value, &_classString::get_Value>("Value")),
    DefaultMember(PropertyPut<&classString::SetValue, &_classString::put_Value>("Value", {"newValue"})),
    Method<&classString::StrPtr, &_classString::StrPtr>("StrPtr"),
    PropertyGet<&classString::Length, &_classString::get_Length>("Length"),
    PropertyPut<&classString::SetLength, &_classString::put_Length>("Length", {"newValue"}),
    Method<&classString::Clear, &_classString::Clear>("Clear"),
    Method<&classString::Copy, &_classString::Copy>("Copy"),
    PropertyGet<&classString::Left, &_classString::get_Left>("Left", {"NumChars"}),
    PropertyPut<&classString::SetLeft, &_classString::put_Left>("Left", {"NumChars", "newValue"}),
    PropertyPutRef<&classString::SetLeftFrom, &_classString::putref_Left>("Left", {"NumChars", "newValue"}),
    PropertyGet<&classString::Right, &_classString::get_Right>("Right", {"NumChars"}),
    PropertyPut<&classString::SetRight, &_classString::put_Right>("Right", {"NumChars", "newValue"}),
    PropertyPutRef<&classString::SetRightFrom, &_classString::putref_Right>("Right", {"NumChars", "newValue"}),
    PropertyGet<&classString::Mid, &_classString::get_Mid>("Mid", {"StartPos", "NumChars"}),
    PropertyPut<&classString::SetMid, &_classString::put_Mid>("Mid", {"StartPos", "NumChars", "newValue"}),
    PropertyPutRef<&classString::SetMidFrom, &_classString::putref_Mid>("Mid", {"StartPos", "NumChars", "newValue"}),
    Method<&classString::Asc, &_classString::Asc>("Asc"),
    PropertyGet<&classString::Char, &_classString::get_Char>("Char", {"index"}),
    PropertyPut<&classString::SetChar, &_classString::put_Char>("Char", {"index", "newValue"}),
    Method<&classString::Instr, &_classString::Instr>("Instr", {}, {"search", "StartPos"}),
    Method<&classString::UCase, &_classString::UCase>("UCase"),
    Method<&classString::LCase, &_classString::LCase>("LCase"),
    Method<&classString::ReverseStr, &_classString::ReverseStr>("ReverseStr"),
    Method<&classString::Append, &_classString::Append>("Append", {}, {"arg"}),
    Method<&classString::Find, &_classString::Find>("Find", {}, {"search", "StartPos"}),
    Method<&classString::WriteToFile, &_classString::WriteToFile>("WriteToFile", {}, {"FileNum", "PrefixLength"}),
    Method<&classString::ReadFromFile, &_classString::ReadFromFile>("ReadFromFile", {}, {"FileNum", "PrefixLength"}),
    Method<&classString::TrimToNull, &_classString::TrimToNull>("TrimToNull"),
    Method<&classString::GetElement, &_classString::GetElement>("GetElement", {}, {"lIndex", "sSeparator"}),
    Method<&classString::LengthList, &_classString::LengthList>("LengthList", {}, {"sSeparator"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 31);

constexpr InterfaceTable kTable = {"_classString", &IID__classString, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classString>() {
  return kTable;
}

template <>
ComPtr<_classString> NewObject<_classString>() {
  return MakeObject<StringObject, _classString>();
}

}  // namespace Orvix::component
