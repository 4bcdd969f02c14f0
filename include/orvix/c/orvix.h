/* clang-format off */
/* Made by c_headers.py from orvix/orvix.h. */
#ifndef ORVIX_C_ORVIX_H
#define ORVIX_C_ORVIX_H

#include "orvix/c/automation.h"

// Orvix's interfaces in slot order, its identifiers, enumerations and record.
/* Every member returns a result code; its real result is the last argument. A */
// null pointer for an optional by-reference argument means its default; for a
/* required one, or for the result, E_POINTER. Texts that a member returns or */
/* writes are freed by the caller with SysFreeString. */

static const GUID LIBID_Orvix = {0xBD495FF1, 0x92A6, 0x4A31, {0xA1, 0xA1, 0xA3, 0x8A, 0x28, 0xB5, 0x7C, 0x24}};
#define kLibraryMajor ((WORD)(1))
#define kLibraryMinor ((WORD)(0))

static const CLSID CLSID_classOrvix = {0x8E7D5CFD, 0xDD90, 0x4E2B, {0xA5, 0xCA, 0x31, 0x43, 0x8E, 0xEF, 0xFB, 0x49}};
static const CLSID CLSID_classFilename = {0xD2237103, 0xE00E, 0x4031, {0x90, 0xA7, 0xD5, 0x30, 0x0B, 0xFE, 0xB7, 0xF8}};
static const CLSID CLSID_classDirectory = {0x34C85F26, 0x99B7, 0x4B16, {0x83, 0xF2, 0x8B, 0xE1, 0x0A, 0xA7, 0x86, 0x23}};
static const CLSID CLSID_classString = {0x87BD65AC, 0xDEBE, 0x4A3A, {0xAA, 0xF5, 0x0C, 0x2B, 0x0C, 0x06, 0xEF, 0xF0}};
static const CLSID CLSID_classStack = {0x6BF4CED9, 0xD22F, 0x463D, {0xB5, 0xE3, 0x8B, 0x7E, 0x65, 0xBE, 0xE1, 0xBE}};
static const CLSID CLSID_classStackObject = {0x6F39D9DD, 0x7839, 0x4F69, {0x9B, 0x66, 0x1C, 0x2B, 0xD7, 0xAC, 0xFC, 0xBA}};
static const CLSID CLSID_CSHFileOp = {0x318FA501, 0xDF65, 0x466B, {0x91, 0x57, 0xD5, 0xBD, 0x99, 0xCC, 0x66, 0xEE}};

static const IID IID__classOrvix = {0xFB7F7D32, 0x23CF, 0x4EF0, {0x92, 0x68, 0xC3, 0x6E, 0xA4, 0x11, 0x9C, 0x5E}};
static const IID IID__classFilename = {0x9A28F775, 0x97D3, 0x408B, {0x82, 0x5F, 0x4D, 0xFE, 0xC3, 0x77, 0x22, 0x62}};
static const IID IID__classDirectory = {0x4C7DA243, 0x2E20, 0x4DFF, {0xB6, 0xEA, 0x69, 0x8F, 0x03, 0xB4, 0xD9, 0x04}};
static const IID IID__classString = {0x7AB8376E, 0x1C6C, 0x41FD, {0xBC, 0xAF, 0xA7, 0x39, 0x31, 0x90, 0x1A, 0x40}};
static const IID IID__classStack = {0xAE4976D1, 0x1130, 0x4FB3, {0x9C, 0x8D, 0xC5, 0x7B, 0x0D, 0x6C, 0x76, 0x23}};
static const IID IID__classStackObject = {0xE94A7766, 0x04FB, 0x45D2, {0xB2, 0xE1, 0x99, 0x76, 0xE6, 0xF8, 0x43, 0x3A}};
static const IID IID__CSHFileOp = {0x9F44D851, 0xC807, 0x4A13, {0x95, 0x67, 0x40, 0xC8, 0xCB, 0x8F, 0x94, 0x2C}};

static const GUID GUID_FileType = {0xF779FF2C, 0xE269, 0x4239, {0xAC, 0x00, 0xDC, 0xC7, 0xB4, 0x68, 0x09, 0x38}};
static const GUID GUID_enumRGB = {0x93B1B367, 0x1667, 0x4C9E, {0x8A, 0x16, 0x75, 0xA2, 0x9F, 0x1E, 0x8F, 0xB6}};
static const GUID GUID_enumRegistryConsts = {0x45475017, 0x6D88, 0x433F, {0xA5, 0xA5, 0x71, 0xCD, 0x68, 0x65, 0x90, 0xA5}};
static const GUID GUID_StackSearchDirection = {0x61376888, 0x7AF1, 0x458B, {0x95, 0xA8, 0x4F, 0x78, 0x53, 0x49, 0x42, 0x0E}};

/* A channel of a packed colour. */
typedef int32_t enumRGB;
enum { oxRed = 0, oxGreen = 1, oxBlue = 2 };

/* Root keys, value types, access rights and result codes of the registry */
/* members. Some differ from the platform's constants of similar name. */
typedef int32_t enumRegistryConsts;
enum {
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

/* The direction in which classStack.IsOnStack visits the items. */
typedef int32_t StackSearchDirection;
enum { sdEndToStart = 0, sdStartToEnd = 1 };

/* One entry of a directory listing. Its texts belong to whoever holds the */
/* record; through IDispatch it travels as VT_RECORD. */
typedef struct FileType FileType;
struct FileType {
  BSTR sCompleteFilename;
  BSTR sFile;
  BSTR sPath;
  BSTR sExtension;  /* lower case; empty for a directory */
  LONG lSize;       /* bytes; 0 for a directory */
  DATE dDate;       /* last modification, local time */
};
#if UINTPTR_MAX > 0xFFFFFFFF
_Static_assert(sizeof(FileType) == 48 && offsetof(FileType, lSize) == 32 && offsetof(FileType, dDate) == 40, "layout");
#endif

typedef struct _classFilename _classFilename;
typedef struct _classString _classString;

/* The global object: lists, text, arrays, numbers, colours, paths, storing, */
/* dialogs, windows, registry, shell and help. */
typedef struct _classOrvix _classOrvix;
typedef struct _classOrvixVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classOrvix* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classOrvix* self);
  ULONG (ORVIX_CALL *Release)(_classOrvix* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classOrvix* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classOrvix* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classOrvix* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classOrvix* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *Wait)(_classOrvix* self, LONG* lMilliseconds);
  HRESULT (ORVIX_CALL *IsInCollection)(_classOrvix* self, BSTR* sKey, IDispatch** colCollection, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *MinButZero)(_classOrvix* self, SAFEARRAY** aValues, VARIANT* result);
  HRESULT (ORVIX_CALL *AlwaysInFront)(_classOrvix* self, LONG* lHandle, LONG* lX, LONG* lY, LONG* lCx, LONG* lCy);
  HRESULT (ORVIX_CALL *Min)(_classOrvix* self, SAFEARRAY** aValues, VARIANT* result);
  HRESULT (ORVIX_CALL *Max)(_classOrvix* self, SAFEARRAY** aValues, VARIANT* result);
  HRESULT (ORVIX_CALL *IsInStringArray)(_classOrvix* self, SAFEARRAY** asArray, BSTR sTarget, VARIANT_BOOL* bMatchCase, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *MyReplace)(_classOrvix* self, BSTR sText, BSTR sTarget, BSTR sReplacement, VARIANT_BOOL* bNoCaseMatch, LONG* lNumberOfReplacements, BSTR* result);
  HRESULT (ORVIX_CALL *ShowHelp)(_classOrvix* self, LONG* lId, BSTR* sHelpfile, LONG* hwnd, LONG* lCommand, BSTR* sText);
  HRESULT (ORVIX_CALL *SuperRTrim)(_classOrvix* self, BSTR sText, LONG* lTokensRemoved, BSTR* result);
  HRESULT (ORVIX_CALL *AddElement)(_classOrvix* self, BSTR sList, BSTR sElement, BSTR sSeparator, BSTR* result);
  HRESULT (ORVIX_CALL *FindFirstElement)(_classOrvix* self, BSTR sList, BSTR sElementToBeFound, BSTR sSeparator, LONG* result);
  HRESULT (ORVIX_CALL *GetPath)(_classOrvix* self, BSTR sFilename, BSTR* result);
  HRESULT (ORVIX_CALL *GetElement)(_classOrvix* self, BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result);
  HRESULT (ORVIX_CALL *InsertElement)(_classOrvix* self, BSTR sList, BSTR sElement, LONG lPosition, BSTR* sSeparator, BSTR* result);
  HRESULT (ORVIX_CALL *LengthList)(_classOrvix* self, BSTR sList, BSTR sSeparator, LONG* result);
  HRESULT (ORVIX_CALL *MakeDir)(_classOrvix* self, BSTR Path);
  HRESULT (ORVIX_CALL *SuperLTrim)(_classOrvix* self, BSTR sText, LONG* lTokensRemoved, VARIANT_BOOL* bIgnoreCrLf, BSTR* result);
  HRESULT (ORVIX_CALL *DeleteElement)(_classOrvix* self, BSTR sList, LONG lIndex, BSTR sSeparator, BSTR* result);
  HRESULT (ORVIX_CALL *DirExists)(_classOrvix* self, BSTR sDirectory, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *FileExists)(_classOrvix* self, BSTR sFilename, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *FileIsNewerThan)(_classOrvix* self, BSTR* sNewFile, BSTR* sExistingFile, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *HourglassOn)(_classOrvix* self);
  HRESULT (ORVIX_CALL *HourglassOff)(_classOrvix* self);
  HRESULT (ORVIX_CALL *ArrayIsEmpty)(_classOrvix* self, SAFEARRAY** aArray, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *StringArrayIsEmpty)(_classOrvix* self, SAFEARRAY** aArray, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *RoundSingle)(_classOrvix* self, float sngValue, float* result);
  HRESULT (ORVIX_CALL *OpenFile1)(_classOrvix* self, LONG* hwnd, BSTR* sFilter, LONG* lDefaultFilterIndex, BSTR* sDefaultFileName, BSTR* sDefaultExtension, BSTR* sInitDir, BSTR* sDlgTitle, _classFilename** result);
  HRESULT (ORVIX_CALL *OpenFile)(_classOrvix* self, LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir, BSTR* sDefaultFileName, VARIANT_BOOL* bHideReadOnly, VARIANT_BOOL* bMultiSelect, VARIANT_BOOL* bReadOnly, BSTR* sTitle, BSTR* sFilters, BSTR* result);
  HRESULT (ORVIX_CALL *SaveFile)(_classOrvix* self, LONG* hwnd, VARIANT_BOOL* bCancel, VARIANT_BOOL* bCenter, BSTR* sInitDir, BSTR* sDefaultFileName, BSTR* sTitle, BSTR* sFilters, VARIANT_BOOL* bOverwritePrompt, BSTR* result);
  HRESULT (ORVIX_CALL *DayTime)(_classOrvix* self, LONG* lSeconds, BSTR* result);
  HRESULT (ORVIX_CALL *CenterWindow)(_classOrvix* self, IDispatch** frmWindow);
  HRESULT (ORVIX_CALL *RunFile)(_classOrvix* self, BSTR* sFile, LONG* hwnd);
  HRESULT (ORVIX_CALL *GetRGB)(_classOrvix* self, LONG* lColor, LONG* ePart, LONG* result);
  HRESULT (ORVIX_CALL *MyStr)(_classOrvix* self, VARIANT* vString, BSTR* result);
  HRESULT (ORVIX_CALL *StoreData)(_classOrvix* self, _classFilename** objFilename, BSTR* sData);
  HRESULT (ORVIX_CALL *GetHexColor)(_classOrvix* self, LONG* lColor, BSTR* result);
  HRESULT (ORVIX_CALL *GetRed)(_classOrvix* self, LONG* lColor, LONG* result);
  HRESULT (ORVIX_CALL *GetBlue)(_classOrvix* self, LONG* lColor, LONG* result);
  HRESULT (ORVIX_CALL *GetGreen)(_classOrvix* self, LONG* lColor, LONG* result);
  HRESULT (ORVIX_CALL *InvertColor)(_classOrvix* self, LONG* lColor, LONG* result);
  HRESULT (ORVIX_CALL *StoreBinaryData)(_classOrvix* self, _classFilename** objFilename, SAFEARRAY** aData);
  HRESULT (ORVIX_CALL *MillisecondsToTime)(_classOrvix* self, LONG* lMilliseconds, BSTR* result);
  HRESULT (ORVIX_CALL *TabLTrim)(_classOrvix* self, BSTR sText, BSTR* result);
  HRESULT (ORVIX_CALL *CreateNewKey)(_classOrvix* self, BSTR* sNewKeyName, LONG* ePredefinedKey);
  HRESULT (ORVIX_CALL *SetKeyValue)(_classOrvix* self, BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType, LONG* ePredefinedKey);
  HRESULT (ORVIX_CALL *GetKeyValue)(_classOrvix* self, LONG* eKeyRoot, BSTR* KeyName, BSTR* SubKeyRef, BSTR* KeyVal, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *IsEven)(_classOrvix* self, LONG* lNumber, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *IsOdd)(_classOrvix* self, LONG* lNumber, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *RoundDouble)(_classOrvix* self, double dValue, float* result);
  HRESULT (ORVIX_CALL *SuperLTrim2)(_classOrvix* self, BSTR sText, BSTR* result);
  HRESULT (ORVIX_CALL *RunFileMore)(_classOrvix* self, BSTR* sFile, LONG* hwnd, LONG* lShowCommand, LONG* result);
  HRESULT (ORVIX_CALL *CreateNewKeyRet)(_classOrvix* self, BSTR* sNewKeyName, LONG* ePredefinedKey, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *SetKeyValueRet)(_classOrvix* self, BSTR* sKeyName, BSTR* sValueName, VARIANT* vValueSetting, LONG* eValueType, LONG* ePredefinedKey, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *GetOSVersion)(_classOrvix* self, LONG* lMajor, LONG* lMinor, LONG* lBuild, LONG* lPlatformId, BSTR* sExtraInfo);
  HRESULT (ORVIX_CALL *SetComboElement)(_classOrvix* self, IDispatch** objCombo, BSTR* sText);
  HRESULT (ORVIX_CALL *MakeDirEx)(_classOrvix* self, BSTR Path, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *MaxButZero)(_classOrvix* self, SAFEARRAY** aValues, VARIANT* result);
  HRESULT (ORVIX_CALL *ShowHTMLHelpKeyword)(_classOrvix* self, BSTR* sHelpfile, LONG* hwnd, BSTR* sText);
  HRESULT (ORVIX_CALL *PlaySound)(_classOrvix* self, _classFilename** objFilename);
  HRESULT (ORVIX_CALL *GetTick)(_classOrvix* self, LONG* result);
  HRESULT (ORVIX_CALL *get_lChopCodeTiming2)(_classOrvix* self, LONG* result);
  HRESULT (ORVIX_CALL *put_lChopCodeTiming2)(_classOrvix* self, LONG lChopCodeTiming2);
  HRESULT (ORVIX_CALL *GetRandom)(_classOrvix* self, LONG* lUpperbound, LONG* lLowerbound, LONG* result);
  HRESULT (ORVIX_CALL *MyDoEvents)(_classOrvix* self, VARIANT_BOOL* bIgnoreInputState);
  HRESULT (ORVIX_CALL *LockControl)(_classOrvix* self, IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty);
  HRESULT (ORVIX_CALL *UnLockControl)(_classOrvix* self, IDispatch** objControl, VARIANT_BOOL* bHasLockedProperty);
  HRESULT (ORVIX_CALL *CreateGUID)(_classOrvix* self, BSTR* result);
  HRESULT (ORVIX_CALL *TextBoxSetFocus)(_classOrvix* self, IDispatch** txtBox, VARIANT* result);
  HRESULT (ORVIX_CALL *MyFileCopy)(_classOrvix* self, BSTR* sSource, BSTR* sDestination, VARIANT_BOOL* bSubDirs);
} _classOrvixVtbl;
struct _classOrvix {
  const _classOrvixVtbl* lpVtbl;
};

/* One file name, its parts, and the file behind it. */
typedef struct _classFilename _classFilename;
typedef struct _classFilenameVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classFilename* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classFilename* self);
  ULONG (ORVIX_CALL *Release)(_classFilename* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classFilename* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classFilename* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classFilename* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classFilename* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *put_CompleteFilename)(_classFilename* self, BSTR* sNewName);
  HRESULT (ORVIX_CALL *get_CompleteFilename)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *Exists)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *get_Filename)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *get_Extension)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *put_Extension)(_classFilename* self, BSTR* sNewValue);
  HRESULT (ORVIX_CALL *get_Path)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *get_ExtensionlessFilename)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *get_ExtensionlessWithPath)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *FileSize)(_classFilename* self, LONG* result);
  HRESULT (ORVIX_CALL *GetFile)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *ShortenedFilename)(_classFilename* self, LONG* lMaxLength, BSTR* result);
  HRESULT (ORVIX_CALL *Drive)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *put_AllowWildCards)(_classFilename* self, VARIANT_BOOL* bNew);
  HRESULT (ORVIX_CALL *get_AllowWildCards)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *HasWildCards)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *CreateFile)(_classFilename* self, BSTR* sData);
  HRESULT (ORVIX_CALL *IsReadOnly)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *IsFTP)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *GetDrivelessPath)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *GetDrivelessCompleteFilename)(_classFilename* self, BSTR* result);
  HRESULT (ORVIX_CALL *DateTime)(_classFilename* self, VARIANT* result);
  HRESULT (ORVIX_CALL *GetDrivelessCompleteFilenameEx)(_classFilename* self, VARIANT_BOOL* bAddRoot, BSTR* result);
  HRESULT (ORVIX_CALL *HasReadPermission)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *HasWritePersmission)(_classFilename* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *Delete)(_classFilename* self);
} _classFilenameVtbl;
struct _classFilename {
  const _classFilenameVtbl* lpVtbl;
};

/* A snapshot of the entries of one directory; positions from 1 to lNumFiles. */
typedef struct _classDirectory _classDirectory;
typedef struct _classDirectoryVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classDirectory* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classDirectory* self);
  ULONG (ORVIX_CALL *Release)(_classDirectory* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classDirectory* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classDirectory* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classDirectory* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classDirectory* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *get_lPointer)(_classDirectory* self, LONG* result);
  HRESULT (ORVIX_CALL *put_lPointer)(_classDirectory* self, LONG lPointer);
  HRESULT (ORVIX_CALL *get_lNumFiles)(_classDirectory* self, LONG* result);
  HRESULT (ORVIX_CALL *put_lNumFiles)(_classDirectory* self, LONG lNumFiles);
  HRESULT (ORVIX_CALL *Init)(_classDirectory* self, BSTR* sMask, LONG* lAttribute, VARIANT* vFromDate, VARIANT* vToDate);
  HRESULT (ORVIX_CALL *File)(_classDirectory* self, LONG* lIndex, FileType* result);
  HRESULT (ORVIX_CALL *SortFilesDate)(_classDirectory* self);
  HRESULT (ORVIX_CALL *SoftFilesDateEx)(_classDirectory* self, VARIANT_BOOL* bAscending);
  HRESULT (ORVIX_CALL *SortFilesName)(_classDirectory* self, VARIANT_BOOL* bAscending, VARIANT* result);
  HRESULT (ORVIX_CALL *GetFileName)(_classDirectory* self, LONG* lIndex, BSTR* result);
} _classDirectoryVtbl;
struct _classDirectory {
  const _classDirectoryVtbl* lpVtbl;
};

/* A growable buffer of 8-bit text; positions count from 1. */
typedef struct _classString _classString;
typedef struct _classStringVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classString* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classString* self);
  ULONG (ORVIX_CALL *Release)(_classString* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classString* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classString* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classString* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classString* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *SetBufferSize)(_classString* self, LONG newSize, VARIANT_BOOL* clearIt);
  HRESULT (ORVIX_CALL *get_Value)(_classString* self, BSTR* result);
  HRESULT (ORVIX_CALL *put_Value)(_classString* self, BSTR* newValue);
  HRESULT (ORVIX_CALL *StrPtr)(_classString* self, LONG* result);
  HRESULT (ORVIX_CALL *get_Length)(_classString* self, LONG* result);
  HRESULT (ORVIX_CALL *put_Length)(_classString* self, LONG newValue);
  HRESULT (ORVIX_CALL *Clear)(_classString* self);
  HRESULT (ORVIX_CALL *Copy)(_classString* self, _classString** result);
  HRESULT (ORVIX_CALL *get_Left)(_classString* self, LONG NumChars, _classString** result);
  HRESULT (ORVIX_CALL *put_Left)(_classString* self, LONG NumChars, VARIANT* newValue);
  HRESULT (ORVIX_CALL *putref_Left)(_classString* self, LONG NumChars, _classString** newValue);
  HRESULT (ORVIX_CALL *get_Right)(_classString* self, LONG NumChars, _classString** result);
  HRESULT (ORVIX_CALL *put_Right)(_classString* self, LONG NumChars, VARIANT* newValue);
  HRESULT (ORVIX_CALL *putref_Right)(_classString* self, LONG NumChars, _classString** newValue);
  HRESULT (ORVIX_CALL *get_Mid)(_classString* self, LONG StartPos, VARIANT* NumChars, _classString** result);
  HRESULT (ORVIX_CALL *put_Mid)(_classString* self, LONG StartPos, VARIANT* NumChars, VARIANT* newValue);
  HRESULT (ORVIX_CALL *putref_Mid)(_classString* self, LONG StartPos, VARIANT* NumChars, _classString** newValue);
  HRESULT (ORVIX_CALL *Asc)(_classString* self, SHORT* result);
  HRESULT (ORVIX_CALL *get_Char)(_classString* self, LONG index, BYTE* result);
  HRESULT (ORVIX_CALL *put_Char)(_classString* self, LONG index, BYTE newValue);
  HRESULT (ORVIX_CALL *Instr)(_classString* self, VARIANT* search, LONG* StartPos, LONG* result);
  HRESULT (ORVIX_CALL *UCase)(_classString* self, _classString** result);
  HRESULT (ORVIX_CALL *LCase)(_classString* self, _classString** result);
  HRESULT (ORVIX_CALL *ReverseStr)(_classString* self, _classString** result);
  HRESULT (ORVIX_CALL *Append)(_classString* self, VARIANT* arg, _classString** result);
  HRESULT (ORVIX_CALL *Find)(_classString* self, BSTR* search, LONG* StartPos, LONG* result);
  HRESULT (ORVIX_CALL *WriteToFile)(_classString* self, SHORT FileNum, VARIANT_BOOL* PrefixLength);
  HRESULT (ORVIX_CALL *ReadFromFile)(_classString* self, SHORT FileNum, VARIANT_BOOL* PrefixLength);
  HRESULT (ORVIX_CALL *TrimToNull)(_classString* self, LONG* result);
  HRESULT (ORVIX_CALL *GetElement)(_classString* self, LONG lIndex, BSTR sSeparator, BSTR* result);
  HRESULT (ORVIX_CALL *LengthList)(_classString* self, BSTR sSeparator, LONG* result);
} _classStringVtbl;
struct _classString {
  const _classStringVtbl* lpVtbl;
};

/* A last-in-first-out stack of values; indexes count from 1 at the bottom. */
typedef struct _classStack _classStack;
typedef struct _classStackVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classStack* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classStack* self);
  ULONG (ORVIX_CALL *Release)(_classStack* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classStack* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classStack* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classStack* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classStack* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *Push)(_classStack* self, VARIANT* vValue);
  HRESULT (ORVIX_CALL *IsEmpty)(_classStack* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *Pop)(_classStack* self, VARIANT* result);
  HRESULT (ORVIX_CALL *Peek)(_classStack* self, LONG* lOffset, VARIANT* result);
  HRESULT (ORVIX_CALL *get_Size)(_classStack* self, LONG* result);
  HRESULT (ORVIX_CALL *Reset)(_classStack* self);
  HRESULT (ORVIX_CALL *GetStackItem)(_classStack* self, LONG* lIndex, VARIANT* result);
  HRESULT (ORVIX_CALL *Peek2)(_classStack* self, LONG* lOffset, VARIANT* result);
  HRESULT (ORVIX_CALL *IsOnStack)(_classStack* self, VARIANT* vValue, LONG* eDirection, LONG* lIndex, VARIANT_BOOL* result);
} _classStackVtbl;
struct _classStack {
  const _classStackVtbl* lpVtbl;
};

/* A last-in-first-out stack of object references. */
typedef struct _classStackObject _classStackObject;
typedef struct _classStackObjectVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_classStackObject* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_classStackObject* self);
  ULONG (ORVIX_CALL *Release)(_classStackObject* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_classStackObject* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_classStackObject* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_classStackObject* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_classStackObject* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *Push)(_classStackObject* self, IDispatch** objValue);
  HRESULT (ORVIX_CALL *IsEmpty)(_classStackObject* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *Pop)(_classStackObject* self, IDispatch** result);
  HRESULT (ORVIX_CALL *Peek)(_classStackObject* self, LONG* lOffset, IDispatch** result);
  HRESULT (ORVIX_CALL *get_Size)(_classStackObject* self, LONG* result);
  HRESULT (ORVIX_CALL *Reset)(_classStackObject* self);
  HRESULT (ORVIX_CALL *GetStackItem)(_classStackObject* self, LONG* lIndex, IDispatch** result);
} _classStackObjectVtbl;
struct _classStackObject {
  const _classStackObjectVtbl* lpVtbl;
};

/* One request to the shell's file-operation service, made from two name lists */
/* and eight options. */
typedef struct _CSHFileOp _CSHFileOp;
typedef struct _CSHFileOpVtbl {
  HRESULT (ORVIX_CALL *QueryInterface)(_CSHFileOp* self, REFIID riid, void** object);
  ULONG (ORVIX_CALL *AddRef)(_CSHFileOp* self);
  ULONG (ORVIX_CALL *Release)(_CSHFileOp* self);
  HRESULT (ORVIX_CALL *GetTypeInfoCount)(_CSHFileOp* self, UINT* count);
  HRESULT (ORVIX_CALL *GetTypeInfo)(_CSHFileOp* self, UINT index, LCID lcid, ITypeInfo** info);
  HRESULT (ORVIX_CALL *GetIDsOfNames)(_CSHFileOp* self, REFIID riid, OLECHAR** names, UINT count, LCID lcid, DISPID* ids);
  HRESULT (ORVIX_CALL *Invoke)(_CSHFileOp* self, DISPID member, REFIID riid, LCID lcid, WORD flags, DISPPARAMS* params, VARIANT* result, EXCEPINFO* exception, UINT* argumentError);
  HRESULT (ORVIX_CALL *put_AllowUndo)(_CSHFileOp* self, VARIANT_BOOL* bAllowUndo);
  HRESULT (ORVIX_CALL *get_AllowUndo)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *put_ConfirmMakeDir)(_CSHFileOp* self, VARIANT_BOOL* bConfirmMakeDir);
  HRESULT (ORVIX_CALL *get_ConfirmMakeDir)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *put_ConfirmOperation)(_CSHFileOp* self, VARIANT_BOOL* bConfirmOperation);
  HRESULT (ORVIX_CALL *get_ConfirmOperation)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *put_CustomText)(_CSHFileOp* self, BSTR* sCustomText);
  HRESULT (ORVIX_CALL *get_CustomText)(_CSHFileOp* self, BSTR* result);
  HRESULT (ORVIX_CALL *put_IncludeDirectories)(_CSHFileOp* self, VARIANT_BOOL* bIncludeDirectories);
  HRESULT (ORVIX_CALL *get_IncludeDirectories)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *put_ParentWnd)(_CSHFileOp* self, LONG* hParentWnd);
  HRESULT (ORVIX_CALL *get_ParentWnd)(_CSHFileOp* self, LONG* result);
  HRESULT (ORVIX_CALL *put_RenameOnCollision)(_CSHFileOp* self, VARIANT_BOOL* bRenameOnCollision);
  HRESULT (ORVIX_CALL *get_RenameOnCollision)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *put_SilentMode)(_CSHFileOp* self, VARIANT_BOOL* bSilentMode);
  HRESULT (ORVIX_CALL *get_SilentMode)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *MoveFiles)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *CopyFiles)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *DeleteFiles)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *RenameFiles)(_CSHFileOp* self, VARIANT_BOOL* result);
  HRESULT (ORVIX_CALL *ClearSourceFiles)(_CSHFileOp* self);
  HRESULT (ORVIX_CALL *AddSourceFile)(_CSHFileOp* self, BSTR* sFilename);
  HRESULT (ORVIX_CALL *ClearDestFiles)(_CSHFileOp* self);
  HRESULT (ORVIX_CALL *AddDestFile)(_CSHFileOp* self, BSTR* sFilename);
} _CSHFileOpVtbl;
struct _CSHFileOp {
  const _CSHFileOpVtbl* lpVtbl;
};

/* The component's entry points. */
ORVIX_API HRESULT ORVIX_CALL DllGetClassObject(REFCLSID clsid, REFIID riid, void** object);
ORVIX_API HRESULT ORVIX_CALL DllCanUnloadNow(void);
ORVIX_API HRESULT ORVIX_CALL DllRegisterServer(void);
ORVIX_API HRESULT ORVIX_CALL DllUnregisterServer(void);

#endif
