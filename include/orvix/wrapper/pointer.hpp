// One counted reference to an object, and the identifier of each interface.
#ifndef ORVIX_WRAPPER_POINTER_HPP
#define ORVIX_WRAPPER_POINTER_HPP

#include <cstddef>
#include <utility>

#include "orvix/orvix.h"

namespace Orvix {

// The identifier of an interface type.
template <class Interface>
inline constexpr IID kIidOf = IID_NULL;
template <>
inline constexpr IID kIidOf<IUnknown> = IID_IUnknown;
template <>
inline constexpr IID kIidOf<IDispatch> = IID_IDispatch;
template <>
inline constexpr IID kIidOf<IClassFactory> = IID_IClassFactory;
template <>
inline constexpr IID kIidOf<ITypeInfo> = IID_ITypeInfo;
template <>
inline constexpr IID kIidOf<ITypeLib> = IID_ITypeLib;
template <>
inline constexpr IID kIidOf<IErrorInfo> = IID_IErrorInfo;
template <>
inline constexpr IID kIidOf<ISupportErrorInfo> = IID_ISupportErrorInfo;
template <>
inline constexpr IID kIidOf<IRecordInfo> = IID_IRecordInfo;
template <>
inline constexpr IID kIidOf<_classOrvix> = IID__classOrvix;
template <>
inline constexpr IID kIidOf<_classFilename> = IID__classFilename;
template <>
inline constexpr IID kIidOf<_classDirectory> = IID__classDirectory;
template <>
inline constexpr IID kIidOf<_classString> = IID__classString;
template <>
inline constexpr IID kIidOf<_classStack> = IID__classStack;
template <>
inline constexpr IID kIidOf<_classStackObject> = IID__classStackObject;
template <>
inline constexpr IID kIidOf<_CSHFileOp> = IID__CSHFileOp;

template <class Interface>
class Pointer {
 public:
  Pointer() noexcept = default;
  Pointer(std::nullptr_t) noexcept {}  // NOLINT(google-explicit-constructor)
  Pointer(const Pointer& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->AddRef();
  }
  Pointer(Pointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  Pointer& operator=(Pointer other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }
  ~Pointer() {
    if (object_ != nullptr) object_->Release();
  }

  // Takes over the reference that the caller holds.
  [[nodiscard]] static Pointer Adopt(Interface* object) noexcept {
    Pointer owner;
    owner.object_ = object;
    return owner;
  }
  // Adds a reference of its own.
  [[nodiscard]] static Pointer Share(Interface* object) noexcept {
    if (object != nullptr) object->AddRef();
    return Adopt(object);
  }

  [[nodiscard]] Interface* get() const noexcept { return object_; }
  [[nodiscard]] Interface* Detach() noexcept { return std::exchange(object_, nullptr); }
  Interface* operator->() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }
  friend bool operator==(const Pointer& left, const Pointer& right) noexcept { return left.object_ == right.object_; }

  // The place for an out parameter; what was held is released first.
  [[nodiscard]] Interface** Receive() noexcept {
    *this = nullptr;
    return &object_;
  }
  [[nodiscard]] void** ReceiveVoid() noexcept { return reinterpret_cast<void**>(Receive()); }

  // Another interface of the same object; null when it has none.
  template <class Other>
  [[nodiscard]] Pointer<Other> As() const noexcept {
    Pointer<Other> other;
    if (object_ != nullptr && FAILED(object_->QueryInterface(kIidOf<Other>, other.ReceiveVoid()))) return nullptr;
    return other;
  }

 private:
  Interface* object_ = nullptr;
};

}  // namespace Orvix

#endif
