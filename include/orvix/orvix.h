// Orvix's interfaces in slot order, its identifiers, enumerations and record.
// Every member returns a result code; its real result is the last argument. A
// null pointer for an optional by-reference argument means its default; for a
// required one, or for the result, E_POINTER. Texts that a member returns or
// writes are freed by the caller with SysFreeString.
#ifndef ORVIX_ORVIX_H
#define ORVIX_ORVIX_H

#ifndef __cplusplus
#include "orvix/c/orvix.h"
#else

#include "orvix/automation.h"

namespace Orvix {

inline constexpr GUID LIBID_Orvix = "BD495FF1-92A6-4A31-A1A1-A38A28B57C24"_guid;
inline constexpr WORD kLibraryMajor = 1;
inline constexpr WORD kLibraryMinor = 0;

inline constexpr CLSID CLSID_classOrvix = "8E7D5CFD-DD90-4E2B-A5CA-31438EEFFB49"_guid;
inline constexpr CLSID CLSID_classFilename = "D2237103-E00E-4031-90A7-D5300BFEB7F8"_guid;
inline constexpr CLSID CLSID_classDirectory = "34C85F26-99B7-4B16-83F2-8BE10AA78623"_guid;
inline constexpr CLSID CLSID_classString = "87BD65AC-DEBE-4A3A-AAF5-0C2B0C06EFF0"_guid;
inline constexpr CLSID CLSID_classStack = "6BF4CED9-D22F-463D-B5E3-8B7E65BEE1BE"_guid;
inline constexpr CLSID CLSID_classStackObject = "6F39D9DD-7839-4F69-9B66-1C2BD7ACFCBA"_guid;
inline constexpr CLSID CLSID_CSHFileOp = "318FA501-DF65-466B-9157-D5BD99CC66EE"_guid;

inline constexpr IID IID__classOrvix = "FB7F7D32-23CF-4EF0-9268-C36EA4119C5E"_guid;
inline constexpr IID IID__classFilename = "9A28F775-97D3-408B-825F-4DFEC3772262"_guid;
inline constexpr IID IID__classDirectory = "4C7DA243-2E20-4DFF-B6EA-698F03B4D904"_guid;
inline constexpr IID IID__classString = "7AB8376E-1C6C-41FD-BCAF-A73931901A40"_guid;
inline constexpr IID IID__classStack = "AE4976D1-1130-4FB3-9C8D-C57B0D6C7623"_guid;
inline constexpr IID IID__classStackObject = "E94A7766-04FB-45D2-B2E1-9976E6F8433A"_guid;
inline constexpr IID IID__CSHFileOp = "9F44D851-C807-4A13-9567-40C8CB8F942C"_guid;

inline constexpr GUID GUID_FileType = "F779FF2C-E269-4239-AC00-DCC7B4680938"_guid;
inline constexpr GUID GUID_enumRGB = "93B1B367-1667-4C9E-8A16-75A29F1E8FB6"_guid;
inline constexpr GUID GUID_enumRegistryConsts = "45475017-6D88-433F-A5A5-71CD686590A5"_guid;
inline constexpr GUID GUID_StackSearchDirection = "61376888-7AF1-458B-95A8-4F785349420E"_guid;

// A channel of a packed colour.
enum enumRGB : std::int32_t { oxRed = 0, oxGreen = 1, oxBlue = 2 };

// Root keys, value types, access rights and result codes of the registry
// members. Some differ from the platform's constants of similar name.
enum enumRegistryConsts : std::int32_t {
  oxREG_SZ = 1,
  oxREG_DWORD = 4,
  oxHKEY_CLASSES_ROOT = -2147483647 - 1,
  oxHKEY_CURRENT_USER = -2147483647,
  oxHKEY_LOCAL_MACHINE = -2147483646,
  oxKEY_QUERY_VALUE = 1,
  oxKEY_SET_VALUE = 2,
  oxKEY_CREATE_SUB_KEY = 4,
  oxKEY_ENUMERATE_SUB_KEYS = 8,
  oxKEY_NOTIFY = 16,
  oxKEY_CREATE_LINK = 32,
  oxREAD_CONTROL = 131072,
  oxHKEY_USERS = -2147483645,
  oxKEY_GENERAL = 31,
  oxERROR_SUCCESS = 0,
  oxERROR_NONE = 0,
  oxERROR_BADDB = 1,
  oxERROR_BADKEY = 2,
  oxERROR_CANTOPEN = 3,
  oxERROR_CANTREAD = 4,
  oxERROR_CANTWRITE = 5,
  oxERROR_OUTOFMEMORY = 6,
  oxERROR_INVALID_PARAMETER = 7,
  oxERROR_ACCESS_DENIED = 8,
  oxERROR_INVALID_PARAMETERS = 87,
  oxERROR_NO_MORE_ITEMS = 259,
  oxKEY_ALL_ACCESS = 63,
  oxREG_OPTION_NON_VOLATILE = 0,
};

// The direction in which classStack.IsOnStack visits the items.
enum StackSearchDirection : std::int32_t { sdEndToStart = 0, sdStartToEnd = 1 };

// One entry of a directory listing. Its texts belong to whoever holds the
// record; through IDispatch it travels as VT_RECORD.
struct FileType {
  BSTR sCompleteFilename;
  BSTR sFile;
  BSTR sPath;
  BSTR sExtension;  // lower case; empty for a directory
  LONG lSize;       // bytes; 0 for a directory
  DATE dDate;       // last modification, local time
};
#if UINTPTR_MAX > 0xFFFFFFFF
static_assert(sizeof(FileType) == 48 && offsetof(FileType, lSize) == 32 && offsetof(FileType, dDate) == 40);
#endif

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#endif

struct _classFilename;
struct _classString;

// The global object: lists, text, arrays, numbers, colours, paths, storing,
// dialogs, windows, registry, shell and help.
struct _classOrvix : IDispatch {
  virtual HRESULT ORVIX_CALL Wait(LONG* lMilliseconds) = 0;
  virtual HRESULT ORVIX_CALL IsInCollection(BSTR* sKey, IDispatch** colCollection, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL MinButZero(SAFEARRAY** aValues, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL AlwaysInFront(LONG* lHandle, LONG* lX, LONG* lY, LONG* lCx, LONG* lCy) = 0;
  virtual HRESULT ORVIX_CALL Min(SAFEARRAY** aValues, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL Max(SAFEARRAY** aValues, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL IsInStringArray(SAFEARRAY** asArray, BSTR sTarget, VARIANT_BOOL* bMatchCase,
                                             VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL MyReplace(BSTR sText, BSTR sTarget, BSTR sReplacement, VARIANT_BOOL* bNoCaseMatch,
                                       LONG* lNumberOfReplacements, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL ShowHelp(LONG* lId, BSTR* sHelpfile, LONG* hwnd, LONG* lCommand, BSTR* sText) = 0;
  virtual HRESULT ORVIX_CALL SuperRTrim(BSTR sText, LONG* lTokensRemoved, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL AddElement(BSTR sList, BSTR sElement, BSTR sSeparator, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL FindFirstElement(BSTR sList, BSTR sElementToBeFound, BSTR sSeparator, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL GetPath(BSTR sFilename, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL GetElement(BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL InsertElement(BSTR sList, BSTR sElement, LONG lPosition, BSTR* sSeparator,
                                           BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL LengthList(BSTR sList, BSTR sSeparator, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL MakeDir(BSTR Path) = 0;
  virtual HRESULT ORVIX_CALL SuperLTrim(BSTR sText, LONG* lTokensRemoved, VARIANT_BOOL* bIgnoreCrLf, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL DeleteElement(BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL DirExists(BSTR sDirectory, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL FileExists(BSTR sFilename, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL FileIsNewerThan(BSTR* sNewFile, BSTR* sExistingFile, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL HourglassOn() = 0;
  virtual HRESULT ORVIX_CALL HourglassOff() = 0;
  virtual HRESULT ORVIX_CALL ArrayIsEmpty(SAFEARRAY** aArray, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL StringArrayIsEmpty(SAFEARRAY** aArray, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL RoundSingle(float sngValue, float* result) = 0;
  virtual HRESULT ORVIX_CALL OpenFile1(LONG* hwnd, BSTR* sFilter, LONG* lDefaultFilterIndex, BSTR* sDefaultFileName,
                                       BSTR* sDefaultExtension, BSTR* sInitDir, BSTR* sDlgTitle,
                                       _classFilename** result) = 0;
  virtual HRESULT ORVIX_CALL OpenFile(LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir,
                                      BSTR* sDefaultFileName, VARIANT_BOOL* bHideReadOnly, VARIANT_BOOL* bMultiSelect,
                                      VARIANT_BOOL* bReadOnly, BSTR* sTitle, BSTR* sFilters, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL SaveFile(LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir,
                                      BSTR* sDefaultFileName, BSTR* sTitle, BSTR* sFilters,
                                      VARIANT_BOOL* bOverwritePrompt, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL DayTime(LONG* lSeconds, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL CenterWindow(IDispatch** frmWindow) = 0;
  virtual HRESULT ORVIX_CALL RunFile(BSTR* sFile, LONG* hwnd) = 0;
  virtual HRESULT ORVIX_CALL GetRGB(LONG* lColor, LONG* ePart, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL MyStr(VARIANT* vString, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL StoreData(_classFilename** objFilename, BSTR* sData) = 0;
  virtual HRESULT ORVIX_CALL GetHexColor(LONG* lColor, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL GetRed(LONG* lColor, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL GetBlue(LONG* lColor, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL GetGreen(LONG* lColor, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL InvertColor(LONG* lColor, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL StoreBinaryData(_classFilename** objFilename, SAFEARRAY** aData) = 0;
  virtual HRESULT ORVIX_CALL MillisecondsToTime(LONG* lMilliseconds, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL TabLTrim(BSTR sText, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL CreateNewKey(BSTR* sNewKeyName, LONG* ePredefinedKey) = 0;
  virtual HRESULT ORVIX_CALL SetKeyValue(BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType,
                                         LONG* ePredefinedKey) = 0;
  virtual HRESULT ORVIX_CALL GetKeyValue(LONG* eKeyRoot, BSTR* KeyName, BSTR* SubKeyRef, BSTR* KeyVal,
                                         VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL IsEven(LONG* lNumber, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL IsOdd(LONG* lNumber, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL RoundDouble(double dValue, float* result) = 0;
  virtual HRESULT ORVIX_CALL SuperLTrim2(BSTR sText, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL RunFileMore(BSTR* sFile, LONG* hwnd, LONG* lShowCommand, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL CreateNewKeyRet(BSTR* sNewKeyName, LONG* ePredefinedKey, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL SetKeyValueRet(BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType,
                                            LONG* ePredefinedKey, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL GetOSVersion(LONG* lMajor, LONG* lMinor, LONG* lBuild, LONG* lPlatformId,
                                          BSTR* sExtraInfo) = 0;
  virtual HRESULT ORVIX_CALL SetComboElement(IDispatch** objCombo, BSTR* sText) = 0;
  virtual HRESULT ORVIX_CALL MakeDirEx(BSTR Path, VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL MaxButZero(SAFEARRAY** aValues, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL ShowHTMLHelpKeyword(BSTR* sHelpfile, LONG* hwnd, BSTR* sText) = 0;
  virtual HRESULT ORVIX_CALL PlaySound(_classFilename** objFilename) = 0;
  virtual HRESULT ORVIX_CALL GetTick(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL get_lChopCodeTiming2(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL put_lChopCodeTiming2(LONG lChopCodeTiming2) = 0;
  virtual HRESULT ORVIX_CALL GetRandom(LONG* lUpperbound, LONG* lLowerbound, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL MyDoEvents(VARIANT_BOOL* bIgnoreInputState) = 0;
  virtual HRESULT ORVIX_CALL LockControl(IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty) = 0;
  virtual HRESULT ORVIX_CALL UnLockControl(IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty) = 0;
  virtual HRESULT ORVIX_CALL CreateGUID(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL TextBoxSetFocus(IDispatch** txtBox, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL MyFileCopy(BSTR* sSource, BSTR* sDestination, VARIANT_BOOL* bSubDirs) = 0;
};

// One file name, its parts, and the file behind it.
struct _classFilename : IDispatch {
  virtual HRESULT ORVIX_CALL put_CompleteFilename(BSTR* sNewName) = 0;
  virtual HRESULT ORVIX_CALL get_CompleteFilename(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL Exists(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL get_Filename(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL get_Extension(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL put_Extension(BSTR* sNewValue) = 0;
  virtual HRESULT ORVIX_CALL get_Path(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL get_ExtensionlessFilename(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL get_ExtensionlessWithPath(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL FileSize(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL GetFile(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL ShortenedFilename(LONG* lMaxLength, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL Drive(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL put_AllowWildCards(VARIANT_BOOL* bNew) = 0;
  virtual HRESULT ORVIX_CALL get_AllowWildCards(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL HasWildCards(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL CreateFile(BSTR* sData) = 0;
  virtual HRESULT ORVIX_CALL IsReadOnly(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL IsFTP(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL GetDrivelessPath(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL GetDrivelessCompleteFilename(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL DateTime(VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL GetDrivelessCompleteFilenameEx(VARIANT_BOOL* bAddRoot, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL HasReadPermission(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL HasWritePersmission(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL Delete() = 0;
};

// A snapshot of the entries of one directory; positions from 1 to lNumFiles.
struct _classDirectory : IDispatch {
  virtual HRESULT ORVIX_CALL get_lPointer(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL put_lPointer(LONG lPointer) = 0;
  virtual HRESULT ORVIX_CALL get_lNumFiles(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL put_lNumFiles(LONG lNumFiles) = 0;
  virtual HRESULT ORVIX_CALL Init(BSTR* sMask, LONG* lAttribute, VARIANT* vFromDate, VARIANT* vToDate) = 0;
  virtual HRESULT ORVIX_CALL File(LONG* lIndex, FileType* result) = 0;
  virtual HRESULT ORVIX_CALL SortFilesDate() = 0;
  virtual HRESULT ORVIX_CALL SoftFilesDateEx(VARIANT_BOOL* bAscending) = 0;
  virtual HRESULT ORVIX_CALL SortFilesName(VARIANT_BOOL* bAscending, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL GetFileName(LONG* lIndex, BSTR* result) = 0;
};

// A growable buffer of 8-bit text; positions count from 1.
struct _classString : IDispatch {
  virtual HRESULT ORVIX_CALL SetBufferSize(LONG newSize, VARIANT_BOOL* clearIt) = 0;
  virtual HRESULT ORVIX_CALL get_Value(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL put_Value(BSTR* newValue) = 0;
  virtual HRESULT ORVIX_CALL StrPtr(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL get_Length(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL put_Length(LONG newValue) = 0;
  virtual HRESULT ORVIX_CALL Clear() = 0;
  virtual HRESULT ORVIX_CALL Copy(_classString** result) = 0;
  virtual HRESULT ORVIX_CALL get_Left(LONG NumChars, _classString** result) = 0;
  virtual HRESULT ORVIX_CALL put_Left(LONG NumChars, VARIANT* newValue) = 0;
  virtual HRESULT ORVIX_CALL putref_Left(LONG NumChars, _classString** newValue) = 0;
  virtual HRESULT ORVIX_CALL get_Right(LONG NumChars, _classString** result) = 0;
  virtual HRESULT ORVIX_CALL put_Right(LONG NumChars, VARIANT* newValue) = 0;
  virtual HRESULT ORVIX_CALL putref_Right(LONG NumChars, _classString** newValue) = 0;
  virtual HRESULT ORVIX_CALL get_Mid(LONG StartPos, VARIANT* NumChars, _classString** result) = 0;
  virtual HRESULT ORVIX_CALL put_Mid(LONG StartPos, VARIANT* NumChars, VARIANT* newValue) = 0;
  virtual HRESULT ORVIX_CALL putref_Mid(LONG StartPos, VARIANT* NumChars, _classString** newValue) = 0;
  virtual HRESULT ORVIX_CALL Asc(SHORT* result) = 0;
  virtual HRESULT ORVIX_CALL get_Char(LONG index, BYTE* result) = 0;
  virtual HRESULT ORVIX_CALL put_Char(LONG index, BYTE newValue) = 0;
  virtual HRESULT ORVIX_CALL Instr(VARIANT* search, LONG* StartPos, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL UCase(_classString** result) = 0;
  virtual HRESULT ORVIX_CALL LCase(_classString** result) = 0;
  virtual HRESULT ORVIX_CALL ReverseStr(_classString** result) = 0;
  virtual HRESULT ORVIX_CALL Append(VARIANT* arg, _classString** result) = 0;
  virtual HRESULT ORVIX_CALL Find(BSTR* search, LONG* StartPos, LONG* result) = 0;
  virtual HRESULT ORVIX_CALL WriteToFile(SHORT FileNum, VARIANT_BOOL* PrefixLength) = 0;
  virtual HRESULT ORVIX_CALL ReadFromFile(SHORT FileNum, VARIANT_BOOL* PrefixLength) = 0;
  virtual HRESULT ORVIX_CALL TrimToNull(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL GetElement(LONG lIndex, BSTR sSeparator, BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL LengthList(BSTR sSeparator, LONG* result) = 0;
};

// A last-in-first-out stack of values; indexes count from 1 at the bottom.
struct _classStack : IDispatch {
  virtual HRESULT ORVIX_CALL Push(VARIANT* vValue) = 0;
  virtual HRESULT ORVIX_CALL IsEmpty(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL Pop(VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL Peek(LONG* lOffset, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL get_Size(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL Reset() = 0;
  virtual HRESULT ORVIX_CALL GetStackItem(LONG* lIndex, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL Peek2(LONG* lOffset, VARIANT* result) = 0;
  virtual HRESULT ORVIX_CALL IsOnStack(VARIANT* vValue, LONG* eDirection, LONG* lIndex, VARIANT_BOOL* result) = 0;
};

// A last-in-first-out stack of object references.
struct _classStackObject : IDispatch {
  virtual HRESULT ORVIX_CALL Push(IDispatch** objValue) = 0;
  virtual HRESULT ORVIX_CALL IsEmpty(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL Pop(IDispatch** result) = 0;
  virtual HRESULT ORVIX_CALL Peek(LONG* lOffset, IDispatch** result) = 0;
  virtual HRESULT ORVIX_CALL get_Size(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL Reset() = 0;
  virtual HRESULT ORVIX_CALL GetStackItem(LONG* lIndex, IDispatch** result) = 0;
};

// One request to the shell's file-operation service, made from two name lists
// and eight options.
struct _CSHFileOp : IDispatch {
  virtual HRESULT ORVIX_CALL put_AllowUndo(VARIANT_BOOL* bAllowUndo) = 0;
  virtual HRESULT ORVIX_CALL get_AllowUndo(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL put_ConfirmMakeDir(VARIANT_BOOL* bConfirmMakeDir) = 0;
  virtual HRESULT ORVIX_CALL get_ConfirmMakeDir(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL put_ConfirmOperation(VARIANT_BOOL* bConfirmOperation) = 0;
  virtual HRESULT ORVIX_CALL get_ConfirmOperation(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL put_CustomText(BSTR* sCustomText) = 0;
  virtual HRESULT ORVIX_CALL get_CustomText(BSTR* result) = 0;
  virtual HRESULT ORVIX_CALL put_IncludeDirectories(VARIANT_BOOL* bIncludeDirectories) = 0;
  virtual HRESULT ORVIX_CALL get_IncludeDirectories(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL put_ParentWnd(LONG* hParentWnd) = 0;
  virtual HRESULT ORVIX_CALL get_ParentWnd(LONG* result) = 0;
  virtual HRESULT ORVIX_CALL put_RenameOnCollision(VARIANT_BOOL* bRenameOnCollision) = 0;
  virtual HRESULT ORVIX_CALL get_RenameOnCollision(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL put_SilentMode(VARIANT_BOOL* bSilentMode) = 0;
  virtual HRESULT ORVIX_CALL get_SilentMode(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL MoveFiles(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL CopyFiles(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL DeleteFiles(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL RenameFiles(VARIANT_BOOL* result) = 0;
  virtual HRESULT ORVIX_CALL ClearSourceFiles() = 0;
  virtual HRESULT ORVIX_CALL AddSourceFile(BSTR* sFilename) = 0;
  virtual HRESULT ORVIX_CALL ClearDestFiles() = 0;
  virtual HRESULT ORVIX_CALL AddDestFile(BSTR* sFilename) = 0;
};

#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif

}  // namespace Orvix

// The component's entry points.
ORVIX_API HRESULT ORVIX_CALL DllGetClassObject(REFCLSID clsid, REFIID riid, void** object);
ORVIX_API HRESULT ORVIX_CALL DllCanUnloadNow();
ORVIX_API HRESULT ORVIX_CALL DllRegisterServer();
ORVIX_API HRESULT ORVIX_CALL DllUnregisterServer();

#endif  // __cplusplus

#endif
