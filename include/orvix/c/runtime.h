/* clang-format off */
/* Made by c_headers.py from orvix/runtime.h. */
#ifndef ORVIX_C_RUNTIME_H
#define ORVIX_C_RUNTIME_H

#include "orvix/c/automation.h"
#include "orvix/version.h"

// The run-time's own functions: file numbers, drives, directory search and
/* file facts, error numbers, formats, and the platform's registry functions. */
// Every Ox function returns an HRESULT; a failure is 0x800A0000 plus the
/* runtime's error number, with the standard description as the thread's error */
/* info. */

/* The version of the library that is loaded, as ORVIX_VERSION is that of the headers: */
/* major, minor and patch in bytes 2, 1 and 0. */
ORVIX_API DWORD ORVIX_CALL OxVersion(void);

/* --- Errors ------------------------------------------------------------------ */

/* The error number that a result code stands for: 0x800A0001 to 0x800BFFFF give */
// their distance to 0x800A0000, the platform's own codes their runtime number
/* (type mismatch 13, overflow 6, ...), every other code itself. */
ORVIX_API LONG ORVIX_CALL OxErrorNumber(HRESULT result);
/* The standard description of a runtime error number; "Application-defined or */
/* object-defined error" for a number without one. The caller frees it. */
ORVIX_API HRESULT ORVIX_CALL OxErrorDescription(LONG number, BSTR* description);

/* --- File numbers -------------------------------------------------------------- */
/* One table per process, safe across threads. Positions count from 1. */

#define kOxModeOutput ((LONG)(1))  /* sequential text, creates or empties */
#define kOxModeBinary ((LONG)(2))  // creates when missing, never empties
/* Output, by print and put, that becomes the file's content as a whole when its */
// number is closed: until then, and after a failed transfer or the end of the
/* process, what was there stays. Where a file cannot be replaced so (it is no */
/* plain file, has several links, its directory refuses) it is emptied at once. */
#define kOxModeStore ((LONG)(0x101))
/* The same for a file that must not be there: error 58 when it is, also at the */
/* closing when somebody else was first. */
#define kOxModeNew ((LONG)(0x102))
#define kOxAccessDefault ((LONG)(0))
#define kOxAccessRead ((LONG)(1))
#define kOxAccessWrite ((LONG)(2))
#define kOxAccessReadWrite ((LONG)(3))
#define kOxShareDefault ((LONG)(0))
#define kOxShareShared ((LONG)(1))

/* The lowest unused number in 1 to 255; error 67 when there is none. Asking does */
/* not reserve. */
ORVIX_API HRESULT ORVIX_CALL OxFreeFile(SHORT* number);
/* Opens `name` under a number from 1 to 511. Errors: 52 number or name, 53 not */
/* found, 55 number in use or file open for output, 61, 67, 70 locked, 75, 76. */
ORVIX_API HRESULT ORVIX_CALL OxOpenFile(const OLECHAR* name, SHORT number, LONG mode, LONG access, LONG share);
/* Takes the lowest unused number and opens under it in one step, so that no other */
// thread can be given the same one. `number` gets it, 0 after a failure: 67 when
/* there is none, else as `OxOpenFile`. */
ORVIX_API HRESULT ORVIX_CALL OxOpenFreeFile(const OLECHAR* name, SHORT* number, LONG mode, LONG access, LONG share);
/* Closing a number that is not open is no error. */
ORVIX_API HRESULT ORVIX_CALL OxCloseFile(SHORT number);
/* Binary transfer at the current position, which advances. Error 54 when the */
// file is not open for binary access. A read past the end succeeds, with `got`
/* short and the rest of the buffer untouched. */
ORVIX_API HRESULT ORVIX_CALL OxPutFile(SHORT number, const void* bytes, LONG count);
ORVIX_API HRESULT ORVIX_CALL OxGetFile(SHORT number, void* bytes, LONG count, LONG* got);
ORVIX_API HRESULT ORVIX_CALL OxSeekFile(SHORT number, LONG position);
ORVIX_API HRESULT ORVIX_CALL OxFileLength(SHORT number, LONG* length);
/* Writes the text as files hold it, and nothing more: no line end. */
ORVIX_API HRESULT ORVIX_CALL OxPrintFile(SHORT number, BSTR text);
/* What text in files is for OxPrintFile and OxTextOfFile: CP_ACP, the ANSI code page, */
// or 65001, UTF-8; E_INVALIDARG for another. At the start what the environment
/* variable ORVIX_FILE_TEXT says ("utf-8"), else CP_ACP. */
ORVIX_API HRESULT ORVIX_CALL OxSetFileText(UINT page);
ORVIX_API UINT ORVIX_CALL OxFileText(void);
/* Bytes of a file as text; the caller frees it. Every byte survives: in UTF-8 one that */
// belongs to no character is the private unit U+F700 and itself, and written back as
/* that byte. */
ORVIX_API HRESULT ORVIX_CALL OxTextOfFile(const char* bytes, LONG count, BSTR* text);

/* --- File operations ------------------------------------------------------------------ */

/* What became of the last file operation of this thread, whatever called for it. */
typedef struct OxFileOperationFacts OxFileOperationFacts;
struct OxFileOperationFacts {
  int64_t serial;  /* counts the thread's operations, from 1; 0 before the first */
  LONG code;       /* what SHFileOperationA answered: 0 done */
  LONG aborted;    /* not 0: a part was left out, or all was cancelled */
  int64_t itemsDone;
  int64_t bytesDone;
};
/* `item` takes the name of the latest item, the one that it stopped at, null for none; */
/* `words` the code in words, in English. Either may be null; the caller frees them. */
ORVIX_API HRESULT ORVIX_CALL OxLastFileOperation(OxFileOperationFacts* facts, BSTR* item, BSTR* words);

/* What lies in the user's trash, on all file systems that are mounted, the latest */
// deleted first: three texts for each item, one after the other: its id (its name in
/* the trash), the name that it had, and when it was deleted (local time, */
/* 2002-11-30T10:00:00). The caller's array. */
ORVIX_API HRESULT ORVIX_CALL OxListTrash(SAFEARRAY** texts);
/* Brings back the item with this id, or the latest that had this name. Error 53 when */
/* there is none, 58 when something has its place; nothing is ever replaced. */
ORVIX_API HRESULT ORVIX_CALL OxRestoreFromTrash(const OLECHAR* nameOrId);
/* Erases such an item for good, or with null all of them. */
ORVIX_API HRESULT ORVIX_CALL OxEraseFromTrash(const OLECHAR* nameOrId);

/* What became of the last dialog that the run-time showed on this thread. */
#define kOxDialogNone ((LONG)(0))
#define kOxDialogAnswered ((LONG)(1))
#define kOxDialogCancelled ((LONG)(2))
#define kOxDialogNotShown ((LONG)(3))  /* no display, or no dialog program */
ORVIX_API LONG ORVIX_CALL OxLastDialog(void);

/* --- Names ----------------------------------------------------------------------- */

/* Maps a drive letter or a share (`\\server\share`) to a native directory; null */
/* takes the mapping away. */
ORVIX_API HRESULT ORVIX_CALL OxMapDrive(OLECHAR letter, const char* utf8Directory);
ORVIX_API HRESULT ORVIX_CALL OxMapShare(const OLECHAR* serverShare, const char* utf8Directory);
/* The drive-qualified name of a native one, relative ones taken from the */
/* process's directory. The caller frees it with SysFreeString. */
ORVIX_API HRESULT ORVIX_CALL OxPlatformName(const char* native, BSTR* name);
/* The native name behind a name, as UTF-8 (the bytes on disk). The caller frees */
/* it with CoTaskMemFree. Errors 52 and 76. */
ORVIX_API HRESULT ORVIX_CALL OxNativeName(const OLECHAR* name, char** utf8);

/* --- Directory search and file facts ------------------------------------------------- */

#define kOxAttributeReadOnly ((LONG)(1))
#define kOxAttributeHidden ((LONG)(2))
#define kOxAttributeSystem ((LONG)(4))
#define kOxAttributeVolume ((LONG)(8))
#define kOxAttributeDirectory ((LONG)(16))
#define kOxAttributeArchive ((LONG)(32))

typedef struct OxEntry OxEntry;
struct OxEntry {
  const OLECHAR* name;  /* NUL-terminated, valid until the search ends */
  LONG nameLength;      /* code units */
  LONG attributes;
  LONG size;      /* bytes, wrapped to 32 bits */
  DATE modified;  /* local time, whole seconds */
};
typedef struct OxFileFacts OxFileFacts;
struct OxFileFacts {
  LONG attributes;
  LONG size;
  DATE modified;
};
typedef struct OxSearch OxSearch;  /* a snapshot of the entries that matched */

/* Whether a search would give an entry; `exists` is -1 or 0. One status call but */
/* for patterns with wildcards: "dir\" has its own "." whatever it holds. */
ORVIX_API HRESULT ORVIX_CALL OxEntryExists(BSTR pattern, LONG mask, VARIANT_BOOL* exists);

/* Entries that match the pattern ("*" and "?" in its last component, without */
// regard to case) and whose hidden, system and directory bits are all in
/* `mask`; "." and ".." first, then by name without regard to case. No match is */
/* no error: the search is empty. */
ORVIX_API HRESULT ORVIX_CALL OxStartSearch(BSTR pattern, LONG mask, OxSearch** search);
/* S_FALSE at the end. */
ORVIX_API HRESULT ORVIX_CALL OxNextEntry(OxSearch* search, OxEntry* entry);
ORVIX_API void ORVIX_CALL OxEndSearch(OxSearch* search);
/* Attributes, length and time of one file or directory. Errors 52, 53, 70, 76. */
ORVIX_API HRESULT ORVIX_CALL OxGetFileFacts(BSTR name, OxFileFacts* facts);
/* Makes one directory. Errors: 75 when it exists or access is denied, 76 when */
/* the parent is missing, 52 for a bad name, 61. */
ORVIX_API HRESULT ORVIX_CALL OxMakeDirectory(BSTR name);
/* Deletes one file (no wildcards). Errors: 53, 55 open here, 70, 75 read-only. */
ORVIX_API HRESULT ORVIX_CALL OxDeleteFile(BSTR name);

/* --- Conversions, formats, random numbers ----------------------------------------------- */

/* The runtime's conversions, with its error numbers (94 for Null, 13, 6): */
// Booleans are True or False, objects give their default member. The result is
/* freed by the caller. */
ORVIX_API HRESULT ORVIX_CALL OxTextOf(const VARIANT* value, BSTR* text);
ORVIX_API HRESULT ORVIX_CALL OxLongOf(const VARIANT* value, LONG* number);
/* A text that is no date is read as a number of days. */
ORVIX_API HRESULT ORVIX_CALL OxDateOf(const VARIANT* value, DATE* date);
/* Number format with the placeholders "0" and "#" ("00", "0#"), text format with */
/* "@" and "&" ("@&"). */
ORVIX_API HRESULT ORVIX_CALL OxFormatNumber(LONG value, const OLECHAR* pattern, BSTR* text);
ORVIX_API HRESULT ORVIX_CALL OxFormatText(BSTR value, const OLECHAR* pattern, BSTR* text);
/* Upper-case hexadecimal without leading zeros, two's complement. */
ORVIX_API HRESULT ORVIX_CALL OxHexText(LONG value, BSTR* text);
/* Reads "&h" and up to 8 hexadecimal digits as an unsigned number; error 13 for */
/* anything else. */
ORVIX_API HRESULT ORVIX_CALL OxHexValue(BSTR text, ULONG* value);
/* The next number of the process-wide uniform source, in [0, 1). */
ORVIX_API HRESULT ORVIX_CALL OxRandom(double* number);

/* --- Objects --------------------------------------------------------------------------- */

/* A keyed collection: Add(Item, Key, Before, After), Count, Item (the default */
// member), Remove; keys without regard to case. Errors: 5 missing key, 9 wrong
/* index, 457 key used twice. */
ORVIX_API HRESULT ORVIX_CALL OxCreateCollection(IDispatch** collection);
/* The host's global object, one reference per thread until the next OxSetHost; */
/* natively one whose Screen has Width, Height and MousePointer. */
ORVIX_API HRESULT ORVIX_CALL OxGlobalObject(IDispatch** global);
ORVIX_API HRESULT ORVIX_CALL OxDoEvents(void);

/* --- Low memory ---------------------------------------------------------------------------- */

/* Blocks whose addresses lie below 2^31, 16-byte aligned; null when exhausted. */
// Growing keeps the content; the old block stays when it fails. Freeing null is
/* harmless. */
ORVIX_API void* ORVIX_CALL OxLowAlloc(size_t bytes);
ORVIX_API void* ORVIX_CALL OxLowRealloc(void* block, size_t bytes);
ORVIX_API void ORVIX_CALL OxLowFree(void* block);

/* --- Registry and modules (the platform's own functions) ----------------------------------------- */

typedef struct HKEY__* HKEY;  /* pointer-sized; its values fit in 32 bits, sign-extended */

static inline HKEY MakeRootKey(LONG value) {
  return (HKEY)(intptr_t)value;
}
#define kClassesRoot ((LONG)((LONG)0x80000000))
#define kCurrentUser ((LONG)((LONG)0x80000001))
#define kLocalMachine ((LONG)((LONG)0x80000002))
#define kUsers ((LONG)((LONG)0x80000003))
#define REG_SZ ((DWORD)(1))
#define REG_BINARY ((DWORD)(3))
#define REG_DWORD ((DWORD)(4))

ORVIX_API LONG ORVIX_CALL RegCreateKeyExA(HKEY key, const char* name, DWORD reserved, char* className, DWORD options,
                                          DWORD access, void* security, HKEY* opened, DWORD* disposition);
ORVIX_API LONG ORVIX_CALL RegCreateKeyExW(HKEY key, const OLECHAR* name, DWORD reserved, OLECHAR* className,
                                          DWORD options, DWORD access, void* security, HKEY* opened,
                                          DWORD* disposition);
ORVIX_API LONG ORVIX_CALL RegOpenKeyExA(HKEY key, const char* name, DWORD options, DWORD access, HKEY* opened);
ORVIX_API LONG ORVIX_CALL RegOpenKeyExW(HKEY key, const OLECHAR* name, DWORD options, DWORD access, HKEY* opened);
ORVIX_API LONG ORVIX_CALL RegSetValueExA(HKEY key, const char* name, DWORD reserved, DWORD type, const BYTE* data,
                                         DWORD bytes);
ORVIX_API LONG ORVIX_CALL RegSetValueExW(HKEY key, const OLECHAR* name, DWORD reserved, DWORD type, const BYTE* data,
                                         DWORD bytes);
ORVIX_API LONG ORVIX_CALL RegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type, BYTE* data,
                                           DWORD* bytes);
ORVIX_API LONG ORVIX_CALL RegQueryValueExW(HKEY key, const OLECHAR* name, DWORD* reserved, DWORD* type, BYTE* data,
                                           DWORD* bytes);
ORVIX_API LONG ORVIX_CALL RegCloseKey(HKEY key);
ORVIX_API LONG ORVIX_CALL RegDeleteKeyA(HKEY key, const char* name);
ORVIX_API LONG ORVIX_CALL RegDeleteKeyW(HKEY key, const OLECHAR* name);
ORVIX_API LONG ORVIX_CALL RegDeleteValueA(HKEY key, const char* name);
ORVIX_API LONG ORVIX_CALL RegDeleteValueW(HKEY key, const OLECHAR* name);
ORVIX_API LONG ORVIX_CALL RegEnumKeyExA(HKEY key, DWORD index, char* name, DWORD* characters, DWORD* reserved,
                                        char* className, DWORD* classCharacters, void* lastWrite);
ORVIX_API LONG ORVIX_CALL RegEnumKeyExW(HKEY key, DWORD index, OLECHAR* name, DWORD* characters, DWORD* reserved,
                                        OLECHAR* className, DWORD* classCharacters, void* lastWrite);
ORVIX_API LONG ORVIX_CALL RegEnumValueA(HKEY key, DWORD index, char* name, DWORD* characters, DWORD* reserved,
                                        DWORD* type, BYTE* data, DWORD* bytes);
ORVIX_API LONG ORVIX_CALL RegEnumValueW(HKEY key, DWORD index, OLECHAR* name, DWORD* characters, DWORD* reserved,
                                        DWORD* type, BYTE* data, DWORD* bytes);
/* What is wrong with the registry's store, a line each: the caller's, empty when it */
// is sound. 1009 for a file that is no store or a later one's, else the code of what
/* kept it from being read. */
ORVIX_API LONG ORVIX_CALL OxCheckRegistry(BSTR* faults);

typedef void* HMODULE;
#define GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT ((DWORD)(2))
#define GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS ((DWORD)(4))
ORVIX_API BOOL ORVIX_CALL GetModuleHandleExW(DWORD flags, const OLECHAR* moduleOrAddress, HMODULE* module);
/* The native file name of a module, in UTF-16; characters copied, cut at */
/* `capacity` as the platform does. */
ORVIX_API DWORD ORVIX_CALL GetModuleFileNameW(HMODULE module, OLECHAR* name, DWORD capacity);

/* The ANSI code page of this process, a single-byte one: 1250 to 1258, 874, 20866 and */
// 21866 (KOI8-R and KOI8-U), 28591 to 28606 (ISO 8859-1 to 16, without 12).
/* E_INVALIDARG for another. At the start what the environment variable ORVIX_CODE_PAGE */
/* names by its number, else 1252. Change it before texts are converted. */
ORVIX_API HRESULT ORVIX_CALL OxSetCodePage(UINT page);
ORVIX_API UINT ORVIX_CALL OxCodePage(void);
/* Text to and from the ANSI code page (substitute "?"; the only page known is CP_ACP, */
/* 0, and its own number). One byte per UTF-16 unit, and every byte has a unit. */
#define CP_ACP ((UINT)(0))
/* Text that was put into `where` ("a file"; a literal) lost characters: one line in the */
/* log for each such place and process. */
ORVIX_API void ORVIX_CALL OxNoteLostText(const char* where);
ORVIX_API INT ORVIX_CALL MultiByteToWideChar(UINT page, DWORD flags, const char* bytes, INT count, OLECHAR* text,
                                             INT capacity);
ORVIX_API INT ORVIX_CALL WideCharToMultiByte(UINT page, DWORD flags, const OLECHAR* text, INT units, char* bytes,
                                             INT capacity, const char* substitute, BOOL* substituted);

#endif
