// `classOrvix` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_FRAME_ORVIX_OBJECT_H
#define ORVIX_FRAME_ORVIX_OBJECT_H

#include "frame/class_orvix.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class OrvixObject final : public Object<OrvixObject, _classOrvix, classOrvix> {
 public:
  HRESULT ORVIX_CALL Wait(LONG* lMilliseconds) noexcept override { return Do<&classOrvix::Wait>(lMilliseconds); }
  HRESULT ORVIX_CALL IsInCollection(BSTR* sKey, IDispatch** colCollection, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::IsInCollection>(result, sKey, colCollection);
  }
  HRESULT ORVIX_CALL MinButZero(SAFEARRAY** aValues, VARIANT* result) noexcept override {
    return Call<&classOrvix::MinButZero>(result, aValues);
  }
  HRESULT ORVIX_CALL AlwaysInFront(LONG* lHandle, LONG* lX, LONG* lY, LONG* lCx, LONG* lCy) noexcept override {
    return Do<&classOrvix::AlwaysInFront>(lHandle, lX, lY, lCx, lCy);
  }
  HRESULT ORVIX_CALL Min(SAFEARRAY** aValues, VARIANT* result) noexcept override {
    return Call<&classOrvix::Min>(result, aValues);
  }
  HRESULT ORVIX_CALL Max(SAFEARRAY** aValues, VARIANT* result) noexcept override {
    return Call<&classOrvix::Max>(result, aValues);
  }
  HRESULT ORVIX_CALL IsInStringArray(SAFEARRAY** asArray, BSTR sTarget, VARIANT_BOOL* bMatchCase,
                                     VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::IsInStringArray>(result, asArray, sTarget, bMatchCase);
  }
  HRESULT ORVIX_CALL MyReplace(BSTR sText, BSTR sTarget, BSTR sReplacement, VARIANT_BOOL* bNoCaseMatch,
                               LONG* lNumberOfReplacements, BSTR* result) noexcept override {
    return Call<&classOrvix::MyReplace>(result, sText, sTarget, sReplacement, bNoCaseMatch, lNumberOfReplacements);
  }
  HRESULT ORVIX_CALL ShowHelp(LONG* lId, BSTR* sHelpfile, LONG* hwnd, LONG* lCommand, BSTR* sText) noexcept override {
    return Do<&classOrvix::ShowHelp>(lId, sHelpfile, hwnd, lCommand, sText);
  }
  HRESULT ORVIX_CALL SuperRTrim(BSTR sText, LONG* lTokensRemoved, BSTR* result) noexcept override {
    return Call<&classOrvix::SuperRTrim>(result, sText, lTokensRemoved);
  }
  HRESULT ORVIX_CALL AddElement(BSTR sList, BSTR sElement, BSTR sSeparator, BSTR* result) noexcept override {
    return Call<&classOrvix::AddElement>(result, sList, sElement, sSeparator);
  }
  HRESULT ORVIX_CALL FindFirstElement(BSTR sList, BSTR sElementToBeFound, BSTR sSeparator,
                                      LONG* result) noexcept override {
    return Call<&classOrvix::FindFirstElement>(result, sList, sElementToBeFound, sSeparator);
  }
  HRESULT ORVIX_CALL GetPath(BSTR sFilename, BSTR* result) noexcept override {
    return Call<&classOrvix::GetPath>(result, sFilename);
  }
  HRESULT ORVIX_CALL GetElement(BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result) noexcept override {
    return Call<&classOrvix::GetElement>(result, sList, lIndex, sSeparator);
  }
  HRESULT ORVIX_CALL InsertElement(BSTR sList, BSTR sElement, LONG lPosition, BSTR* sSeparator,
                                   BSTR* result) noexcept override {
    return Call<&classOrvix::InsertElement>(result, sList, sElement, lPosition, sSeparator);
  }
  HRESULT ORVIX_CALL LengthList(BSTR sList, BSTR sSeparator, LONG* result) noexcept override {
    return Call<&classOrvix::LengthList>(result, sList, sSeparator);
  }
  HRESULT ORVIX_CALL MakeDir(BSTR Path) noexcept override { return Do<&classOrvix::MakeDir>(Path); }
  HRESULT ORVIX_CALL SuperLTrim(BSTR sText, LONG* lTokensRemoved, VARIANT_BOOL* bIgnoreCrLf,
                                BSTR* result) noexcept override {
    return Call<&classOrvix::SuperLTrim>(result, sText, lTokensRemoved, bIgnoreCrLf);
  }
  HRESULT ORVIX_CALL DeleteElement(BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result) noexcept override {
    return Call<&classOrvix::DeleteElement>(result, sList, lIndex, sSeparator);
  }
  HRESULT ORVIX_CALL DirExists(BSTR sDirectory, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::DirExists>(result, sDirectory);
  }
  HRESULT ORVIX_CALL FileExists(BSTR sFilename, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::FileExists>(result, sFilename);
  }
  HRESULT ORVIX_CALL FileIsNewerThan(BSTR* sNewFile, BSTR* sExistingFile, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::FileIsNewerThan>(result, sNewFile, sExistingFile);
  }
  HRESULT ORVIX_CALL HourglassOn() noexcept override { return Do<&classOrvix::HourglassOn>(); }
  HRESULT ORVIX_CALL HourglassOff() noexcept override { return Do<&classOrvix::HourglassOff>(); }
  HRESULT ORVIX_CALL ArrayIsEmpty(SAFEARRAY** aArray, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::ArrayIsEmpty>(result, aArray);
  }
  HRESULT ORVIX_CALL StringArrayIsEmpty(SAFEARRAY** aArray, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::StringArrayIsEmpty>(result, aArray);
  }
  HRESULT ORVIX_CALL RoundSingle(float sngValue, float* result) noexcept override {
    return Call<&classOrvix::RoundSingle>(result, sngValue);
  }
  HRESULT ORVIX_CALL OpenFile1(LONG* hwnd, BSTR* sFilter, LONG* lDefaultFilterIndex, BSTR* sDefaultFileName,
                               BSTR* sDefaultExtension, BSTR* sInitDir, BSTR* sDlgTitle,
                               _classFilename** result) noexcept override {
    return Call<&classOrvix::OpenFile1>(result, hwnd, sFilter, lDefaultFilterIndex, sDefaultFileName, sDefaultExtension,
                                        sInitDir, sDlgTitle);
  }
  HRESULT ORVIX_CALL OpenFile(LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir,
                              BSTR* sDefaultFileName, VARIANT_BOOL* bHideReadOnly, VARIANT_BOOL* bMultiSelect,
                              VARIANT_BOOL* bReadOnly, BSTR* sTitle, BSTR* sFilters, BSTR* result) noexcept override {
    return Call<&classOrvix::OpenFile>(result, hwnd, bCancel, bCenter, sInitDir, sDefaultFileName, bHideReadOnly,
                                       bMultiSelect, bReadOnly, sTitle, sFilters);
  }
  HRESULT ORVIX_CALL SaveFile(LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir,
                              BSTR* sDefaultFileName, BSTR* sTitle, BSTR* sFilters, VARIANT_BOOL* bOverwritePrompt,
                              BSTR* result) noexcept override {
    return Call<&classOrvix::SaveFile>(result, hwnd, bCancel, bCenter, sInitDir, sDefaultFileName, sTitle, sFilters,
                                       bOverwritePrompt);
  }
  HRESULT ORVIX_CALL DayTime(LONG* lSeconds, BSTR* result) noexcept override {
    return Call<&classOrvix::DayTime>(result, lSeconds);
  }
  HRESULT ORVIX_CALL CenterWindow(IDispatch** frmWindow) noexcept override {
    return Do<&classOrvix::CenterWindow>(frmWindow);
  }
  HRESULT ORVIX_CALL RunFile(BSTR* sFile, LONG* hwnd) noexcept override {
    return Do<&classOrvix::RunFile>(sFile, hwnd);
  }
  HRESULT ORVIX_CALL GetRGB(LONG* lColor, LONG* ePart, LONG* result) noexcept override {
    return Call<&classOrvix::GetRGB>(result, lColor, ePart);
  }
  HRESULT ORVIX_CALL MyStr(VARIANT* vString, BSTR* result) noexcept override {
    return Call<&classOrvix::MyStr>(result, vString);
  }
  HRESULT ORVIX_CALL StoreData(_classFilename** objFilename, BSTR* sData) noexcept override {
    return Do<&classOrvix::StoreData>(objFilename, sData);
  }
  HRESULT ORVIX_CALL GetHexColor(LONG* lColor, BSTR* result) noexcept override {
    return Call<&classOrvix::GetHexColor>(result, lColor);
  }
  HRESULT ORVIX_CALL GetRed(LONG* lColor, LONG* result) noexcept override {
    return Call<&classOrvix::GetRed>(result, lColor);
  }
  HRESULT ORVIX_CALL GetBlue(LONG* lColor, LONG* result) noexcept override {
    return Call<&classOrvix::GetBlue>(result, lColor);
  }
  HRESULT ORVIX_CALL GetGreen(LONG* lColor, LONG* result) noexcept override {
    return Call<&classOrvix::GetGreen>(result, lColor);
  }
  HRESULT ORVIX_CALL InvertColor(LONG* lColor, LONG* result) noexcept override {
    return Call<&classOrvix::InvertColor>(result, lColor);
  }
  HRESULT ORVIX_CALL StoreBinaryData(_classFilename** objFilename, SAFEARRAY** aData) noexcept override {
    return Do<&classOrvix::StoreBinaryData>(objFilename, aData);
  }
  HRESULT ORVIX_CALL MillisecondsToTime(LONG* lMilliseconds, BSTR* result) noexcept override {
    return Call<&classOrvix::MillisecondsToTime>(result, lMilliseconds);
  }
  HRESULT ORVIX_CALL TabLTrim(BSTR sText, BSTR* result) noexcept override {
    return Call<&classOrvix::TabLTrim>(result, sText);
  }
  HRESULT ORVIX_CALL CreateNewKey(BSTR* sNewKeyName, LONG* ePredefinedKey) noexcept override {
    return Do<&classOrvix::CreateNewKey>(sNewKeyName, ePredefinedKey);
  }
  HRESULT ORVIX_CALL SetKeyValue(BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType,
                                 LONG* ePredefinedKey) noexcept override {
    return Do<&classOrvix::SetKeyValue>(sKeyName, sValueName, vValueSetting, eValueType, ePredefinedKey);
  }
  HRESULT ORVIX_CALL GetKeyValue(LONG* eKeyRoot, BSTR* KeyName, BSTR* SubKeyRef, BSTR* KeyVal,
                                 VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::GetKeyValue>(result, eKeyRoot, KeyName, SubKeyRef, KeyVal);
  }
  HRESULT ORVIX_CALL IsEven(LONG* lNumber, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::IsEven>(result, lNumber);
  }
  HRESULT ORVIX_CALL IsOdd(LONG* lNumber, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::IsOdd>(result, lNumber);
  }
  HRESULT ORVIX_CALL RoundDouble(double dValue, float* result) noexcept override {
    return Call<&classOrvix::RoundDouble>(result, dValue);
  }
  HRESULT ORVIX_CALL SuperLTrim2(BSTR sText, BSTR* result) noexcept override {
    return Call<&classOrvix::SuperLTrim2>(result, sText);
  }
  HRESULT ORVIX_CALL RunFileMore(BSTR* sFile, LONG* hwnd, LONG* lShowCommand, LONG* result) noexcept override {
    return Call<&classOrvix::RunFileMore>(result, sFile, hwnd, lShowCommand);
  }
  HRESULT ORVIX_CALL CreateNewKeyRet(BSTR* sNewKeyName, LONG* ePredefinedKey, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::CreateNewKeyRet>(result, sNewKeyName, ePredefinedKey);
  }
  HRESULT ORVIX_CALL SetKeyValueRet(BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType,
                                    LONG* ePredefinedKey, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::SetKeyValueRet>(result, sKeyName, sValueName, vValueSetting, eValueType, ePredefinedKey);
  }
  HRESULT ORVIX_CALL GetOSVersion(LONG* lMajor, LONG* lMinor, LONG* lBuild, LONG* lPlatformId,
                                  BSTR* sExtraInfo) noexcept override {
    return Do<&classOrvix::GetOSVersion>(lMajor, lMinor, lBuild, lPlatformId, sExtraInfo);
  }
  HRESULT ORVIX_CALL SetComboElement(IDispatch** objCombo, BSTR* sText) noexcept override {
    return Do<&classOrvix::SetComboElement>(objCombo, sText);
  }
  HRESULT ORVIX_CALL MakeDirEx(BSTR Path, VARIANT_BOOL* result) noexcept override {
    return Call<&classOrvix::MakeDirEx>(result, Path);
  }
  HRESULT ORVIX_CALL MaxButZero(SAFEARRAY** aValues, VARIANT* result) noexcept override {
    return Call<&classOrvix::MaxButZero>(result, aValues);
  }
  HRESULT ORVIX_CALL ShowHTMLHelpKeyword(BSTR* sHelpfile, LONG* hwnd, BSTR* sText) noexcept override {
    return Do<&classOrvix::ShowHTMLHelpKeyword>(sHelpfile, hwnd, sText);
  }
  HRESULT ORVIX_CALL PlaySound(_classFilename** objFilename) noexcept override {
    return Do<&classOrvix::PlaySound>(objFilename);
  }
  HRESULT ORVIX_CALL GetTick(LONG* result) noexcept override { return Call<&classOrvix::GetTick>(result); }
  HRESULT ORVIX_CALL get_lChopCodeTiming2(LONG* result) noexcept override { return Call<&classOrvix::timing>(result); }
  HRESULT ORVIX_CALL put_lChopCodeTiming2(LONG lChopCodeTiming2) noexcept override {
    return Do<&classOrvix::set_timing>(lChopCodeTiming2);
  }
  HRESULT ORVIX_CALL GetRandom(LONG* lUpperbound, LONG* lLowerbound, LONG* result) noexcept override {
    return Call<&classOrvix::GetRandom>(result, lUpperbound, lLowerbound);
  }
  HRESULT ORVIX_CALL MyDoEvents(VARIANT_BOOL* bIgnoreInputState) noexcept override {
    return Do<&classOrvix::MyDoEvents>(bIgnoreInputState);
  }
  HRESULT ORVIX_CALL LockControl(IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty) noexcept override {
    return Do<&classOrvix::LockControl>(objControl, bHasLockedProperty);
  }
  HRESULT ORVIX_CALL UnLockControl(IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty) noexcept override {
    return Do<&classOrvix::UnLockControl>(objControl, bHasLockedProperty);
  }
  HRESULT ORVIX_CALL CreateGUID(BSTR* result) noexcept override { return Call<&classOrvix::CreateGUID>(result); }
  HRESULT ORVIX_CALL TextBoxSetFocus(IDispatch** txtBox, VARIANT* result) noexcept override {
    return Call<&classOrvix::TextBoxSetFocus>(result, txtBox);
  }
  HRESULT ORVIX_CALL MyFileCopy(BSTR* sSource, BSTR* sDestination, VARIANT_BOOL* bSubDirs) noexcept override {
    return Do<&classOrvix::MyFileCopy>(sSource, sDestination, bSubDirs);
  }
};

}  // namespace Orvix::component

#endif
