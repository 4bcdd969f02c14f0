// The members of `_classOrvix`, in slot order.
#include "frame/orvix_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    Method<&classOrvix::Wait, &_classOrvix::Wait>("Wait", {}, {"lMilliseconds"}),
    Method<&classOrvix::IsInCollection, &_classOrvix::IsInCollection>(
        "IsInCollection", "Checks if there is an object with sKey as the key in the collection.",
        {"sKey", "colCollection"}),
    Method<&classOrvix::MinButZero, &_classOrvix::MinButZero>(
        "MinButZero", "Returns the lowest value but ignores the zeros.", {"aValues"}),
    Method<&classOrvix::AlwaysInFront, &_classOrvix::AlwaysInFront>(
        "AlwaysInFront", "Places the window always in front", {"lHandle", "lX", "lY", "lCx", "lCy"}),
    Method<&classOrvix::Min, &_classOrvix::Min>("Min", "Returns the lowest value.", {"aValues"}),
    Method<&classOrvix::Max, &_classOrvix::Max>("Max", "Returns the highest value.", {"aValues"}),
    Method<&classOrvix::IsInStringArray, &_classOrvix::IsInStringArray>(
        "IsInStringArray", "Returns if sTarget is somewhere in asArray.", {"asArray", "sTarget", "bMatchCase"}),
    Method<&classOrvix::MyReplace, &_classOrvix::MyReplace>(
        "MyReplace", "Replaces all occurences of sTarget with sReplacement in Text.",
        {"sText", "sTarget", "sReplacement", "bNoCaseMatch", "lNumberOfReplacements"}),
    Method<&classOrvix::ShowHelp, &_classOrvix::ShowHelp>("ShowHelp", "Shows topic in Helpfile.",
                                                          {"lId", "sHelpfile", "hwnd", "lCommand", "sText"}),
    Method<&classOrvix::SuperRTrim, &_classOrvix::SuperRTrim>(
        "SuperRTrim", "Removes trailing spaces and tabs from the string.", {"sText", "lTokensRemoved"}),
    Method<&classOrvix::AddElement, &_classOrvix::AddElement>(
        "AddElement", "Add the element Element at the end of the list", {"sList", "sElement", "sSeparator"}),
    Method<&classOrvix::FindFirstElement, &_classOrvix::FindFirstElement>(
        "FindFirstElement", "Returns the position of  sElementToBeFound in the list.",
        {"sList", "sElementToBeFound", "sSeparator"}),
    Method<&classOrvix::GetPath, &_classOrvix::GetPath>("GetPath", "Returns the path-part of a complete filename.",
                                                        {"sFilename"}),
    Method<&classOrvix::GetElement, &_classOrvix::GetElement>(
        "GetElement", "Returns the element on position Index in the list.", {"sList", "lIndex", "sSeparator"}),
    Method<&classOrvix::InsertElement, &_classOrvix::InsertElement>(
        "InsertElement", "Inserts sElement on lPosition in sList.", {"sList", "sElement", "lPosition", "sSeparator"}),
    Method<&classOrvix::LengthList, &_classOrvix::LengthList>(
        "LengthList", "Returns the number of elements in the list.", {"sList", "sSeparator"}),
    Method<&classOrvix::MakeDir, &_classOrvix::MakeDir>(
        "MakeDir", "Makes a directory including its non-existant parentdirectories.", {"Path"}),
    Method<&classOrvix::SuperLTrim, &_classOrvix::SuperLTrim>(
        "SuperLTrim", "Removes leading spaces and tabs from the string.", {"sText", "lTokensRemoved", "bIgnoreCrLf"}),
    Method<&classOrvix::DeleteElement, &_classOrvix::DeleteElement>(
        "DeleteElement", "Removes the element on position Index from the list.", {"sList", "lIndex", "sSeparator"}),
    Method<&classOrvix::DirExists, &_classOrvix::DirExists>("DirExists", "Checks if the directory exists.",
                                                            {"sDirectory"}),
    Method<&classOrvix::FileExists, &_classOrvix::FileExists>("FileExists", "Checks if the file exists.",
                                                              {"sFilename"}),
    Method<&classOrvix::FileIsNewerThan, &_classOrvix::FileIsNewerThan>("FileIsNewerThan", {},
                                                                        {"sNewFile", "sExistingFile"}),
    Method<&classOrvix::HourglassOn, &_classOrvix::HourglassOn>("HourglassOn"),
    Method<&classOrvix::HourglassOff, &_classOrvix::HourglassOff>("HourglassOff"),
    Method<&classOrvix::ArrayIsEmpty, &_classOrvix::ArrayIsEmpty>("ArrayIsEmpty", {}, {"aArray"}),
    Method<&classOrvix::StringArrayIsEmpty, &_classOrvix::StringArrayIsEmpty>("StringArrayIsEmpty", {}, {"aArray"}),
    Method<&classOrvix::RoundSingle, &_classOrvix::RoundSingle>("RoundSingle", {}, {"sngValue"}),
    Method<&classOrvix::OpenFile1, &_classOrvix::OpenFile1>(
        "OpenFile1", {},
        {"hwnd", "sFilter", "lDefaultFilterIndex", "sDefaultFileName", "sDefaultExtension", "sInitDir", "sDlgTitle"}),
    Method<&classOrvix::OpenFile, &_classOrvix::OpenFile>(
        "OpenFile", {},
        {"hwnd", "bCancel", "bCenter", "sInitDir", "sDefaultFileName", "bHideReadOnly", "bMultiSelect", "bReadOnly",
         "sTitle", "sFilters"}),
    Method<&classOrvix::SaveFile, &_classOrvix::SaveFile>(
        "SaveFile", {},
        {"hwnd", "bCancel", "bCenter", "sInitDir", "sDefaultFileName", "sTitle", "sFilters", "bOverwritePrompt"}),
    Method<&classOrvix::DayTime, &_classOrvix::DayTime>("DayTime", {}, {"lSeconds"}),
    Method<&classOrvix::CenterWindow, &_classOrvix::CenterWindow>("CenterWindow", {}, {"frmWindow"}),
    Method<&classOrvix::RunFile, &_classOrvix::RunFile>("RunFile", {}, {"sFile", "hwnd"}),
    Method<&classOrvix::GetRGB, &_classOrvix::GetRGB>("GetRGB", {}, {"lColor", "ePart"}),
    Method<&classOrvix::MyStr, &_classOrvix::MyStr>("MyStr", {}, {"vString"}),
    Method<&classOrvix::StoreData, &_classOrvix::StoreData>("StoreData", {}, {"objFilename", "sData"}),
    Method<&classOrvix::GetHexColor, &_classOrvix::GetHexColor>("GetHexColor", {}, {"lColor"}),
    Method<&classOrvix::GetRed, &_classOrvix::GetRed>("GetRed", {}, {"lColor"}),
    Method<&classOrvix::GetBlue, &_classOrvix::GetBlue>("GetBlue", {}, {"lColor"}),
    Method<&classOrvix::GetGreen, &_classOrvix::GetGreen>("GetGreen", {}, {"lColor"}),
    Method<&classOrvix::InvertColor, &_classOrvix::InvertColor>("InvertColor", {}, {"lColor"}),
    Method<&classOrvix::StoreBinaryData, &_classOrvix::StoreBinaryData>("StoreBinaryData", {},
                                                                        {"objFilename", "aData"}),
    Method<&classOrvix::MillisecondsToTime, &_classOrvix::MillisecondsToTime>("MillisecondsToTime", {},
                                                                              {"lMilliseconds"}),
    Method<&classOrvix::TabLTrim, &_classOrvix::TabLTrim>("TabLTrim", {}, {"sText"}),
    Method<&classOrvix::CreateNewKey, &_classOrvix::CreateNewKey>("CreateNewKey", {},
                                                                  {"sNewKeyName", "ePredefinedKey"}),
    Method<&classOrvix::SetKeyValue, &_classOrvix::SetKeyValue>(
        "SetKeyValue", {}, {"sKeyName", "sValueName", "vValueSetting", "eValueType", "ePredefinedKey"}),
    Method<&classOrvix::GetKeyValue, &_classOrvix::GetKeyValue>("GetKeyValue", {},
                                                                {"eKeyRoot", "KeyName", "SubKeyRef", "KeyVal"}),
    Method<&classOrvix::IsEven, &_classOrvix::IsEven>("IsEven", {}, {"lNumber"}),
    Method<&classOrvix::IsOdd, &_classOrvix::IsOdd>("IsOdd", {}, {"lNumber"}),
    Method<&classOrvix::RoundDouble, &_classOrvix::RoundDouble>("RoundDouble", {}, {"dValue"}),
    Method<&classOrvix::SuperLTrim2, &_classOrvix::SuperLTrim2>("SuperLTrim2", {}, {"sText"}),
    Method<&classOrvix::RunFileMore, &_classOrvix::RunFileMore>("RunFileMore", {}, {"sFile", "hwnd", "lShowCommand"}),
    Method<&classOrvix::CreateNewKeyRet, &_classOrvix::CreateNewKeyRet>("CreateNewKeyRet", {},
                                                                        {"sNewKeyName", "ePredefinedKey"}),
    Method<&classOrvix::SetKeyValueRet, &_classOrvix::SetKeyValueRet>(
        "SetKeyValueRet", {}, {"sKeyName", "sValueName", "vValueSetting", "eValueType", "ePredefinedKey"}),
    Method<&classOrvix::GetOSVersion, &_classOrvix::GetOSVersion>(
        "GetOSVersion", {}, {"lMajor", "lMinor", "lBuild", "lPlatformId", "sExtraInfo"}),
    Method<&classOrvix::SetComboElement, &_classOrvix::SetComboElement>("SetComboElement", {}, {"objCombo", "sText"}),
    Method<&classOrvix::MakeDirEx, &_classOrvix::MakeDirEx>("MakeDirEx", {}, {"Path"}),
    Method<&classOrvix::MaxButZero, &_classOrvix::MaxButZero>("MaxButZero", {}, {"aValues"}),
    Method<&classOrvix::ShowHTMLHelpKeyword, &_classOrvix::ShowHTMLHelpKeyword>("ShowHTMLHelpKeyword", {},
                                                                                {"sHelpfile", "hwnd", "sText"}),
    Method<&classOrvix::PlaySound, &_classOrvix::PlaySound>("PlaySound", {}, {"objFilename"}),
    Method<&classOrvix::GetTick, &_classOrvix::GetTick>("GetTick"),
    PropertyGet<&classOrvix::timing, &_classOrvix::get_lChopCodeTiming2>("lChopCodeTiming2"),
    PropertyPut<&classOrvix::set_timing, &_classOrvix::put_lChopCodeTiming2>("lChopCodeTiming2", {"lChopCodeTiming2"}),
    Method<&classOrvix::GetRandom, &_classOrvix::GetRandom>("GetRandom", {}, {"lUpperbound", "lLowerbound"}),
    Method<&classOrvix::MyDoEvents, &_classOrvix::MyDoEvents>("MyDoEvents", {}, {"bIgnoreInputState"}),
    Method<&classOrvix::LockControl, &_classOrvix::LockControl>("LockControl", {},
                                                                {"objControl", "bHasLockedProperty"}),
    Method<&classOrvix::UnLockControl, &_classOrvix::UnLockControl>("UnLockControl", {},
                                                                    {"objControl", "bHasLockedProperty"}),
    Method<&classOrvix::CreateGUID, &_classOrvix::CreateGUID>("CreateGUID"),
    Method<&classOrvix::TextBoxSetFocus, &_classOrvix::TextBoxSetFocus>("TextBoxSetFocus", {}, {"txtBox"}),
    Method<&classOrvix::MyFileCopy, &_classOrvix::MyFileCopy>("MyFileCopy", {},
                                                              {"sSource", "sDestination", "bSubDirs"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 70);

constexpr InterfaceTable kTable = {"_classOrvix", &IID__classOrvix, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_classOrvix>() {
  return kTable;
}

template <>
ComPtr<_classOrvix> NewObject<_classOrvix>() {
  return MakeObject<OrvixObject, _classOrvix>();
}

}  // namespace Orvix::component
