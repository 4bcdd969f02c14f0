/* clang-format off */
/* Made by c_headers.py from orvix/platform.h. */
#ifndef ORVIX_C_PLATFORM_H
#define ORVIX_C_PLATFORM_H

#include "orvix/c/automation.h"

// The platform's functions that the component calls, besides those of
/* automation.h and runtime.h: windows and input, time and version, memory, */
// shell, dialogs, help, sound. Texts of the "A" functions are ANSI
/* (Windows-1252). A host table (host.h) may replace each service. */

/* --- Windows and input ----------------------------------------------------------- */

#define MB_ICONERROR ((UINT)(0x10))
#define IDOK ((INT)(1))

/* Shows a message box and gives the button pressed. Natively nobody is at the */
// screen: the request becomes one record of the system log (a style of 16 is an
/* error) and the answer is IDOK at once. Null texts are empty ones. */
ORVIX_API INT ORVIX_CALL MessageBoxW(void* window, const OLECHAR* text, const OLECHAR* title, UINT style);
/* Non-zero when mouse-button or key messages wait in the queue that the host */
/* lends; 0 without a host that does. */
ORVIX_API BOOL ORVIX_CALL GetInputState(void);
/* Place in the z-order (`after` -1 is topmost), position and size in pixels, and */
/* show state of a window. Without a display nothing happens, which is a success. */
ORVIX_API BOOL ORVIX_CALL SetWindowPos(void* window, void* after, INT x, INT y, INT cx, INT cy, UINT flags);

/* --- Time and version ------------------------------------------------------------ */

#define INFINITE ((DWORD)(0xFFFFFFFF))

/* Suspends the calling thread; INFINITE never returns. */
ORVIX_API void ORVIX_CALL Sleep(DWORD milliseconds);
/* Milliseconds since the system started, wrapping after about 49.7 days. */
ORVIX_API DWORD ORVIX_CALL GetTickCount(void);

/* The version record, 148 bytes; a longer form of 156 has 8 bytes more. */
typedef struct OSVERSIONINFOA OSVERSIONINFOA;
struct OSVERSIONINFOA {
  DWORD dwOSVersionInfoSize;  /* 148 or 156, set by the caller */
  DWORD dwMajorVersion;
  DWORD dwMinorVersion;
  DWORD dwBuildNumber;
  DWORD dwPlatformId;
  char szCSDVersion[128];
};
_Static_assert(sizeof(OSVERSIONINFOA) == 148, "layout");

#define kPlatformUnix ((DWORD)(4))

/* Fills the record behind its size field: natively the first three numbers of */
// the kernel's release, platform identifier 4, no service pack. 0 for null or
/* another size, the record untouched. */
ORVIX_API BOOL ORVIX_CALL GetVersionExA(void* record);

/* --- Memory ---------------------------------------------------------------------- */

/* Copies a run of bytes; the two may overlap. */
ORVIX_API void ORVIX_CALL RtlMoveMemory(void* to, const void* from, size_t bytes);
ORVIX_API void ORVIX_CALL RtlFillMemory(void* to, size_t bytes, BYTE value);

/* --- Shell, dialogs, help, sound --------------------------------------------------- */

/* A file operation described by a packed record of 30 bytes; 0 is success. */
ORVIX_API INT ORVIX_CALL SHFileOperationA(void* request);
/* Opens a file with the program meant for it; a value above 32 is success. */
ORVIX_API void* ORVIX_CALL ShellExecuteA(void* window, const char* verb, const char* file, const char* parameters,
                                         const char* directory, INT show);
ORVIX_API BOOL ORVIX_CALL WinHelpA(void* window, const char* file, UINT command, uintptr_t data);
ORVIX_API void* ORVIX_CALL HtmlHelpA(void* window, const char* file, UINT command, uintptr_t data);
/* The open-file dialog, described by a packed record of 76 bytes; 0 when it was */
/* cancelled or failed, which CommDlgExtendedError (0 when cancelled) tells apart. */
ORVIX_API BOOL ORVIX_CALL GetOpenFileNameA(void* request);
ORVIX_API DWORD ORVIX_CALL CommDlgExtendedError(void);
ORVIX_API BOOL ORVIX_CALL sndPlaySoundA(const char* name, UINT flags);

#endif
