// Error info: the object that describes a failure, and the slot of each thread
// that holds the last one. The slot is released when its thread ends.
#include <atomic>
#include <new>

#include "orvix/automation.h"

namespace {

class HeldText {
 public:
  HeldText() = default;
  ~HeldText() { SysFreeString(text_); }
  HeldText(const HeldText&) = delete;
  HeldText& operator=(const HeldText&) = delete;

  HRESULT Set(const OLECHAR* text) { return SysReAllocString(&text_, text) != 0 ? S_OK : E_OUTOFMEMORY; }
  HRESULT Get(BSTR* text) const {
    if (text == nullptr) return E_INVALIDARG;
    *text = SysAllocString(text_);
    return *text == nullptr && text_ != nullptr ? E_OUTOFMEMORY : S_OK;
  }

 private:
  BSTR text_ = nullptr;
};

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"  // ended by Release alone
class ErrorObject final : public ICreateErrorInfo, public IErrorInfo, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(REFIID riid, void** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (riid == IID_IUnknown || riid == IID_ICreateErrorInfo) {
      *object = static_cast<ICreateErrorInfo*>(this);
    } else if (riid == IID_IErrorInfo) {
      *object = static_cast<IErrorInfo*>(this);
    } else if (riid == IID_ISupportErrorInfo) {
      *object = static_cast<ISupportErrorInfo*>(this);
    } else {
      return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
  }
  ULONG AddRef() override { return references_.fetch_add(1, std::memory_order_relaxed) + 1; }
  ULONG Release() override {
    const ULONG left = references_.fetch_sub(1, std::memory_order_acq_rel) - 1;
    if (left == 0) delete this;
    return left;
  }

  HRESULT SetGUID(REFGUID guid) override {
    guid_ = guid;
    return S_OK;
  }
  HRESULT SetSource(OLECHAR* source) override { return source_.Set(source); }
  HRESULT SetDescription(OLECHAR* description) override { return description_.Set(description); }
  HRESULT SetHelpFile(OLECHAR* file) override { return help_file_.Set(file); }
  HRESULT SetHelpContext(DWORD context) override {
    help_context_ = context;
    return S_OK;
  }

  HRESULT GetGUID(GUID* guid) override {
    if (guid == nullptr) return E_INVALIDARG;
    *guid = guid_;
    return S_OK;
  }
  HRESULT GetSource(BSTR* source) override { return source_.Get(source); }
  HRESULT GetDescription(BSTR* description) override { return description_.Get(description); }
  HRESULT GetHelpFile(BSTR* file) override { return help_file_.Get(file); }
  HRESULT GetHelpContext(DWORD* context) override {
    if (context == nullptr) return E_INVALIDARG;
    *context = help_context_;
    return S_OK;
  }

  HRESULT InterfaceSupportsErrorInfo(REFIID riid) override { return riid == IID_ICreateErrorInfo ? S_OK : S_FALSE; }

 private:
  ~ErrorObject() = default;

  std::atomic<ULONG> references_{1};
  GUID guid_{};
  HeldText source_;
  HeldText description_;
  HeldText help_file_;
  DWORD help_context_ = 0;
};
#pragma GCC diagnostic pop

// Every member call that ends well empties the slot, nearly always an empty
// one: that test must cost nothing, so the pointer stands apart from the guard
// that needs a set-up per thread.
[[gnu::tls_model("initial-exec")]] constinit thread_local IErrorInfo* t_current = nullptr;
[[gnu::tls_model("initial-exec")]] constinit thread_local bool t_thread_ends = false;

struct SlotGuard {
  bool armed = false;
  ~SlotGuard() {
    t_thread_ends = true;
    IErrorInfo* last = t_current;
    t_current = nullptr;
    if (last != nullptr) last->Release();
  }
};
thread_local SlotGuard t_guard;

}  // namespace

// A new error info object, empty, with one reference for the caller.
HRESULT CreateErrorInfo(ICreateErrorInfo** info) {
  if (info == nullptr) return E_INVALIDARG;
  *info = new (std::nothrow) ErrorObject;
  return *info == nullptr ? E_OUTOFMEMORY : S_OK;
}

// Makes `info` the calling thread's error info in place of the one before; null
// empties the slot. E_INVALIDARG when `reserved` is not 0.
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
  if (reserved != 0) return E_INVALIDARG;
  if (info == t_current) return S_OK;
  if (info != nullptr) {
    if (t_thread_ends) return S_OK;  // nobody could release it any more
    t_guard.armed = true;
    info->AddRef();
  }
  IErrorInfo* previous = t_current;
  t_current = info;
  if (previous != nullptr) previous->Release();
  return S_OK;
}

// Hands the thread's error info, with its reference, to the caller and empties
// the slot. S_FALSE and null when it is empty.
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
  if (info == nullptr) return E_INVALIDARG;
  *info = nullptr;
  if (reserved != 0) return E_INVALIDARG;
  if (t_current == nullptr) return S_FALSE;
  *info = t_current;
  t_current = nullptr;
  return S_OK;
}
