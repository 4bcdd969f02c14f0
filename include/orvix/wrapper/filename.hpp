// classFilename: one file name, its parts, and the file behind it.
#ifndef ORVIX_WRAPPER_FILENAME_HPP
#define ORVIX_WRAPPER_FILENAME_HPP

#include <optional>

#include "orvix/wrapper/call.hpp"

namespace Orvix {

class Filename : public Object<_classFilename> {
  using I = _classFilename;

 public:
  Filename() : Filename(Component::Default()) {}
  explicit Filename(const Component& component) : Object(component.Create<I>(CLSID_classFilename)) {}
  explicit Filename(Pointer<I> object) noexcept : Object(std::move(object)) {}
  // A new object with its name given: error 60000 when it ends in a separator.
  template <AnyText T>
  explicit Filename(const T& name) : Filename() {
    SetCompleteFilename(name);
  }

  void SetCompleteFilename(TextArgument name) { Call(&I::put_CompleteFilename, name); }
  [[nodiscard]] String CompleteFilename() const { return Get<String>(&I::get_CompleteFilename); }
  [[nodiscard]] bool Exists() const { return Get<bool>(&I::Exists); }
  [[nodiscard]] String Name() const { return Get<String>(&I::get_Filename); }  // the member Filename
  [[nodiscard]] String Extension() const { return Get<String>(&I::get_Extension); }
  void SetExtension(TextArgument extension) { Call(&I::put_Extension, extension); }
  [[nodiscard]] String Path() const { return Get<String>(&I::get_Path); }
  [[nodiscard]] String ExtensionlessFilename() const { return Get<String>(&I::get_ExtensionlessFilename); }
  [[nodiscard]] String ExtensionlessWithPath() const { return Get<String>(&I::get_ExtensionlessWithPath); }
  [[nodiscard]] LONG FileSize() const { return Get<LONG>(&I::FileSize); }  // bytes
  [[nodiscard]] String GetFile() const { return Get<String>(&I::GetFile); }
  [[nodiscard]] String ShortenedFilename(LONG max_length) const {
    return Get<String>(&I::ShortenedFilename, max_length);
  }
  [[nodiscard]] String Drive() const { return Get<String>(&I::Drive); }
  void SetAllowWildCards(bool allow) { Call(&I::put_AllowWildCards, allow); }
  [[nodiscard]] bool AllowWildCards() const { return Get<bool>(&I::get_AllowWildCards); }
  [[nodiscard]] bool HasWildCards() const { return Get<bool>(&I::HasWildCards); }
  void CreateFile(std::optional<TextArgument> data = {}) { Call(&I::CreateFile, data); }
  [[nodiscard]] bool IsReadOnly() const { return Get<bool>(&I::IsReadOnly); }
  [[nodiscard]] bool IsFTP() const { return Get<bool>(&I::IsFTP); }
  [[nodiscard]] String GetDrivelessPath() const { return Get<String>(&I::GetDrivelessPath); }
  [[nodiscard]] String GetDrivelessCompleteFilename() const { return Get<String>(&I::GetDrivelessCompleteFilename); }
  [[nodiscard]] Value DateTime() const { return Get<Value>(&I::DateTime); }
  [[nodiscard]] String GetDrivelessCompleteFilenameEx(bool add_root = true) const {
    return Get<String>(&I::GetDrivelessCompleteFilenameEx, add_root);
  }
  [[nodiscard]] bool HasReadPermission() const { return Get<bool>(&I::HasReadPermission); }
  [[nodiscard]] bool HasWritePersmission() const { return Get<bool>(&I::HasWritePersmission); }
  void Delete() { Call(&I::Delete); }
};

}  // namespace Orvix

#endif
