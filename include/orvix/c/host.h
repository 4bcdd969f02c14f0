/* clang-format off */
/* Made by c_headers.py from orvix/host.h. */
#ifndef ORVIX_C_HOST_H
#define ORVIX_C_HOST_H

#include "orvix/c/automation.h"

// The host table: what an application may supply in place of this machine's
/* native services. */

/* Texts of the "A" members are NUL-terminated ANSI (Windows-1252), null where */
// absent. Handles, data words and results have 32 bits; addresses inside packed
/* requests are real. A null member means the native default of that service. */
/* New members come at the end only; `size` says how many there are. */
typedef struct OxHost OxHost;
struct OxHost {
  uint32_t size;  /* sizeof(OxHost) as the caller was compiled */
  void* context;  /* handed to every member as its first argument */
  LONG (*MessageBox)(void* context, const OLECHAR* text, LONG style, const OLECHAR* title);
  LONG (*SHFileOperationA)(void* context, void* request);  /* 30 bytes; may write the aborted flag at 18 */
  LONG(*ShellExecuteA)
  (void* context, LONG hwnd, const char* verb, const char* file, const char* parameters, const char* directory,
   LONG show);
  LONG (*WinHelpA)(void* context, LONG hwnd, const char* file, LONG command, LONG data);
  LONG (*HtmlHelpA)(void* context, LONG hwnd, const char* file, LONG command, LONG data);
  LONG (*GetOpenFileNameA)(void* context, void* request);  /* 76 bytes */
  LONG (*sndPlaySoundA)(void* context, const char* name, LONG flags);
  LONG (*SetWindowPos)(void* context, LONG hwnd, LONG after, LONG x, LONG y, LONG cx, LONG cy, LONG flags);
  /* These two lend the calling thread's event queue, which only the host can */
  /* see, whatever its toolkit. GetInputState: non-zero when mouse-button or key */
  /* events wait; looks, waits for nothing and removes nothing. DoEvents: handles */
  /* all events that wait, then returns. Where they are null nothing waits. */
  LONG (*GetInputState)(void* context);
  void (*DoEvents)(void* context);
  /* The reference passes to the caller, who keeps one per thread until the next */
  /* OxSetHost; its Screen has Width, Height, MousePointer. */
  IDispatch* (*GlobalObject)(void* context);
  LONG (*GetVersionExA)(void* context, void* record);  /* 148 bytes */
  HRESULT (*CoCreateGuid)(void* context, GUID* guid);
  void (*Sleep)(void* context, uint32_t milliseconds);
  uint32_t (*GetTickCount)(void* context);
  /* Progress of a native shell operation, at most about ten times a second, at the end */
  /* once with all of all; non-zero cancels. `name` is the item's, behind the request's */
  /* own title and a line feed where it has one. */
  LONG(*FileProgress)
  (void* context, const OLECHAR* name, int64_t itemsDone, int64_t itemsTotal, int64_t bytesDone, int64_t bytesTotal);
  /* A confirmation (kind 1 overwrite, 2 delete, 3 make directory), answered */
  /* with 0 no, 1 yes, 2 yes to all, 3 cancel. Null: a window of the desktop asks; */
  /* where none can be shown, directories are made and items put into the trash, while */
  /* nothing is overwritten or erased. */
  LONG (*FileQuestion)(void* context, LONG kind, const OLECHAR* name);
};

#define kOxAskOverwrite ((LONG)(1))
#define kOxAskDelete ((LONG)(2))
#define kOxAskMakeDirectory ((LONG)(3))

/* Copies the table; null restores the native defaults. Safe from any thread; a */
// service call under way keeps the table that it started with. E_INVALIDARG
/* when `size` does not reach past `context`. */
ORVIX_API HRESULT ORVIX_CALL OxSetHost(const OxHost* host);

/* Takes a window of the application (an X window id) among those over which the */
// native screen's MousePointer shows, at once; `named` 0 takes it out again and
/* gives it the default pointer, that of its parent. Windows inside it follow, */
// unless they have a pointer of their own. Naming twice is naming once; a window
/* that is destroyed needs no taking out. S_FALSE when there is no such window, */
// when it is a root window, or when one taken out was not in; E_INVALIDARG for
/* null. Without a display nothing happens, which is a success. Safe from any */
/* thread. */
ORVIX_API HRESULT ORVIX_CALL OxNameWindow(void* window, BOOL named);

#endif
