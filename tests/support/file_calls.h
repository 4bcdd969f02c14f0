// The runtime's file functions as tests call them: error numbers (0 for
// success) instead of result codes, texts instead of BSTRs.
#ifndef ORVIX_TESTS_SUPPORT_FILE_CALLS_H
#define ORVIX_TESTS_SUPPORT_FILE_CALLS_H

#include <string>
#include <vector>

#include "orvix/runtime.h"
#include "orvix/text.h"

namespace Orvix::testing {

inline LONG NumberOf(HRESULT result) { return SUCCEEDED(result) ? 0 : OxErrorNumber(result); }

class CallText {
 public:
  explicit CallText(TextView text) : text_(NewBstr(text)) {}
  CallText(const CallText&) = delete;
  CallText& operator=(const CallText&) = delete;
  ~CallText() { SysFreeString(text_); }
  [[nodiscard]] BSTR get() const { return text_; }

 private:
  BSTR text_;
};

inline LONG Open(TextView name, SHORT number, LONG mode, LONG access = kOxAccessDefault, LONG share = kOxShareDefault) {
  return NumberOf(OxOpenFile(Text(name).c_str(), number, mode, access, share));
}
// The lowest unused number, 0 when there is none.
inline SHORT LowestFree() {
  SHORT number = 0;
  return OxFreeFile(&number) == S_OK ? number : SHORT{0};
}
inline LONG Close(SHORT number) { return NumberOf(OxCloseFile(number)); }
inline LONG Put(SHORT number, const std::string& bytes) {
  return NumberOf(OxPutFile(number, bytes.data(), static_cast<LONG>(bytes.size())));
}
inline LONG Print(SHORT number, TextView text) { return NumberOf(OxPrintFile(number, CallText(text).get())); }
inline LONG MakeDirectory(TextView name) { return NumberOf(OxMakeDirectory(CallText(name).get())); }
inline LONG DeleteFile(TextView name) { return NumberOf(OxDeleteFile(CallText(name).get())); }
inline LONG Facts(TextView name, OxFileFacts& facts) { return NumberOf(OxGetFileFacts(CallText(name).get(), &facts)); }

// The names that a search gives, each followed by "|"; "error n" when it fails.
inline std::string Search(TextView pattern, LONG mask) {
  OxSearch* search = nullptr;
  if (const LONG number = NumberOf(OxStartSearch(CallText(pattern).get(), mask, &search)); number != 0) {
    return "error " + std::to_string(number);
  }
  std::string names;
  OxEntry entry{};
  while (OxNextEntry(search, &entry) == S_OK) {
    names += ToUtf8({entry.name, static_cast<std::size_t>(entry.nameLength)}) + "|";
  }
  OxEndSearch(search);
  return names;
}

// The native name behind a name, or "error n".
inline std::string Native(TextView name) {
  char* native = nullptr;
  if (const LONG number = NumberOf(OxNativeName(Text(name).c_str(), &native)); number != 0) {
    return "error " + std::to_string(number);
  }
  std::string text = native;
  CoTaskMemFree(native);
  return text;
}

// The caller's name for a native one, as UTF-8, or "error n".
inline std::string Platform(const std::string& native) {
  BSTR name = nullptr;
  if (const LONG number = NumberOf(OxPlatformName(native.c_str(), &name)); number != 0) {
    return "error " + std::to_string(number);
  }
  std::string text = ToUtf8(ViewOf(name));
  SysFreeString(name);
  return text;
}

}  // namespace Orvix::testing

#endif
