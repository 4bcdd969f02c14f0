// Owners of what crosses the edge: interface references, texts, values.
#ifndef ORVIX_FRAME_COM_PTR_H
#define ORVIX_FRAME_COM_PTR_H

#include <new>
#include <utility>

#include "frame/modOrvix.h"

namespace Orvix::component {

// One reference to an object.
template <class Interface>
class ComPtr {
 public:
  ComPtr() = default;
  ComPtr(std::nullptr_t) {}  // NOLINT(google-explicit-constructor)
  ComPtr(const ComPtr& other) : pointer_(other.pointer_) {
    if (pointer_ != nullptr) pointer_->AddRef();
  }
  ComPtr(ComPtr&& other) noexcept : pointer_(std::exchange(other.pointer_, nullptr)) {}
  ComPtr& operator=(ComPtr other) noexcept {
    std::swap(pointer_, other.pointer_);
    return *this;
  }
  ~ComPtr() {
    if (pointer_ != nullptr) pointer_->Release();
  }

  // Takes over a reference that the caller holds.
  [[nodiscard]] static ComPtr Adopt(Interface* pointer) {
    ComPtr owner;
    owner.pointer_ = pointer;
    return owner;
  }
  // Adds a reference of its own.
  [[nodiscard]] static ComPtr Share(Interface* pointer) {
    if (pointer != nullptr) pointer->AddRef();
    return Adopt(pointer);
  }

  [[nodiscard]] Interface* get() const { return pointer_; }
  [[nodiscard]] Interface* Detach() { return std::exchange(pointer_, nullptr); }
  Interface* operator->() const { return pointer_; }
  explicit operator bool() const { return pointer_ != nullptr; }

  // The place for an out parameter; what was held is released first.
  [[nodiscard]] Interface** Receive() {
    *this = nullptr;
    return &pointer_;
  }
  [[nodiscard]] void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }
  // Takes the interface that `object` gives for `iid`. Whatever a failing object
  // leaves in the place is none.
  [[nodiscard]] HRESULT Ask(IUnknown& object, REFIID iid) {
    void* found = nullptr;
    const HRESULT result = object.QueryInterface(iid, &found);
    *this = Adopt(SUCCEEDED(result) ? static_cast<Interface*>(found) : nullptr);
    return result;
  }

 private:
  Interface* pointer_ = nullptr;
};

// One BSTR.
class BstrHandle {
 public:
  BstrHandle() = default;
  explicit BstrHandle(TextView text) : text_(NewBstr(text)) {
    if (text_ == nullptr) throw std::bad_alloc();
  }
  // `length` units for the caller to write. std::bad_alloc also for a length that
  // no BSTR has.
  [[nodiscard]] static BstrHandle OfLength(std::size_t length) {
    BstrHandle text;
    if (length <= kMostUnits) text.text_ = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (text.text_ == nullptr) throw std::bad_alloc();
    return text;
  }
  BstrHandle(BstrHandle&& other) noexcept : text_(std::exchange(other.text_, nullptr)) {}
  BstrHandle& operator=(BstrHandle&& other) noexcept {
    std::swap(text_, other.text_);
    return *this;
  }
  ~BstrHandle() {
    if (text_ != nullptr) SysFreeString(text_);
  }

  [[nodiscard]] BSTR get() const { return text_; }
  [[nodiscard]] TextView View() const { return ViewOf(text_); }
  [[nodiscard]] BSTR Detach() { return std::exchange(text_, nullptr); }
  [[nodiscard]] OLECHAR* data() { return text_; }
  // Keeps the first `length` units, which there are.
  void Shorten(std::size_t length) {
    if (length != View().size() && SysReAllocStringLen(&text_, text_, static_cast<UINT>(length)) == 0) {
      throw std::bad_alloc();
    }
  }
  [[nodiscard]] BSTR* Receive() {
    SysFreeString(std::exchange(text_, nullptr));
    return &text_;
  }

 private:
  BSTR text_ = nullptr;
};

// One VARIANT and what it holds.
class Variant {
 public:
  Variant() = default;
  explicit Variant(LONG number) : Variant() {
    value_.vt = VT_I4;
    value_.lVal = number;
  }
  explicit Variant(double number) : Variant() {
    value_.vt = VT_R8;
    value_.dblVal = number;
  }
  explicit Variant(TextView text) : Variant() {
    value_.bstrVal = BstrHandle(text).Detach();
    value_.vt = VT_BSTR;
  }
  Variant(Variant&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() {
    if (value_.vt >= VT_BSTR) VariantClear(&value_);  // numbers, dates and Null own nothing
  }

  [[nodiscard]] static Variant Short(SHORT number) {
    Variant variant;
    variant.value_.vt = VT_I2;
    variant.value_.iVal = number;
    return variant;
  }
  [[nodiscard]] static Variant Boolean(VARIANT_BOOL truth) {
    Variant variant;
    variant.value_.vt = VT_BOOL;
    variant.value_.boolVal = truth;
    return variant;
  }
  [[nodiscard]] static Variant Date(DATE date) {
    Variant variant;
    variant.value_.vt = VT_DATE;
    variant.value_.date = date;
    return variant;
  }

  [[nodiscard]] const VARIANT& get() const { return value_; }
  [[nodiscard]] VARIANT* Address() { return &value_; }
  // The place for an out parameter; what was held is cleared first.
  VARIANT* Receive() {
    if (value_.vt >= VT_BSTR) VariantClear(&value_);
    value_ = {};
    return &value_;
  }
  [[nodiscard]] VARIANT Detach() { return std::exchange(value_, VARIANT{}); }

 private:
  VARIANT value_{};
};

}  // namespace Orvix::component

#endif
