// `classFilename` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_FILES_FILENAME_OBJECT_H
#define ORVIX_FILES_FILENAME_OBJECT_H

#include "files/class_filename.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class FilenameObject final : public Object<FilenameObject, _classFilename, classFilename> {
 public:
  HRESULT ORVIX_CALL put_CompleteFilename(BSTR* sNewName) noexcept override {
    return Do<&classFilename::SetCompleteFilename>(sNewName);
  }
  HRESULT ORVIX_CALL get_CompleteFilename(BSTR* result) noexcept override {
    return Call<&classFilename::CompleteFilename>(result);
  }
  HRESULT ORVIX_CALL Exists(VARIANT_BOOL* result) noexcept override { return Call<&classFilename::Exists>(result); }
  HRESULT ORVIX_CALL get_Filename(BSTR* result) noexcept override { return Call<&classFilename::Filename>(result); }
  HRESULT ORVIX_CALL get_Extension(BSTR* result) noexcept override { return Call<&classFilename::Extension>(result); }
  HRESULT ORVIX_CALL put_Extension(BSTR* sNewValue) noexcept override {
    return Do<&classFilename::SetExtension>(sNewValue);
  }
  HRESULT ORVIX_CALL get_Path(BSTR* result) noexcept override { return Call<&classFilename::Path>(result); }
  HRESULT ORVIX_CALL get_ExtensionlessFilename(BSTR* result) noexcept override {
    return Call<&classFilename::ExtensionlessFilename>(result);
  }
  HRESULT ORVIX_CALL get_ExtensionlessWithPath(BSTR* result) noexcept override {
    return Call<&classFilename::ExtensionlessWithPath>(result);
  }
  HRESULT ORVIX_CALL FileSize(LONG* result) noexcept override { return Call<&classFilename::FileSize>(result); }
  HRESULT ORVIX_CALL GetFile(BSTR* result) noexcept override { return Call<&classFilename::GetFile>(result); }
  HRESULT ORVIX_CALL ShortenedFilename(LONG* lMaxLength, BSTR* result) noexcept override {
    return Call<&classFilename::ShortenedFilename>(result, lMaxLength);
  }
  HRESULT ORVIX_CALL Drive(BSTR* result) noexcept override { return Call<&classFilename::Drive>(result); }
  HRESULT ORVIX_CALL put_AllowWildCards(VARIANT_BOOL* bNew) noexcept override {
    return Do<&classFilename::SetAllowWildCards>(bNew);
  }
  HRESULT ORVIX_CALL get_AllowWildCards(VARIANT_BOOL* result) noexcept override {
    return Call<&classFilename::AllowWildCards>(result);
  }
  HRESULT ORVIX_CALL HasWildCards(VARIANT_BOOL* result) noexcept override {
    return Call<&classFilename::HasWildCards>(result);
  }
  HRESULT ORVIX_CALL CreateFile(BSTR* sData) noexcept override { return Do<&classFilename::CreateFile>(sData); }
  HRESULT ORVIX_CALL IsReadOnly(VARIANT_BOOL* result) noexcept override {
    return Call<&classFilename::IsReadOnly>(result);
  }
  HRESULT ORVIX_CALL IsFTP(VARIANT_BOOL* result) noexcept override { return Call<&classFilename::IsFTP>(result); }
  HRESULT ORVIX_CALL GetDrivelessPath(BSTR* result) noexcept override {
    return Call<&classFilename::GetDrivelessPath>(result);
  }
  HRESULT ORVIX_CALL GetDrivelessCompleteFilename(BSTR* result) noexcept override {
    return Call<&classFilename::GetDrivelessCompleteFilename>(result);
  }
  HRESULT ORVIX_CALL DateTime(VARIANT* result) noexcept override { return Call<&classFilename::DateTime>(result); }
  HRESULT ORVIX_CALL GetDrivelessCompleteFilenameEx(VARIANT_BOOL* bAddRoot, BSTR* result) noexcept override {
    return Call<&classFilename::GetDrivelessCompleteFilenameEx>(result, bAddRoot);
  }
  HRESULT ORVIX_CALL HasReadPermission(VARIANT_BOOL* result) noexcept override {
    return Call<&classFilename::HasReadPermission>(result);
  }
  HRESULT ORVIX_CALL HasWritePersmission(VARIANT_BOOL* result) noexcept override {
    return Call<&classFilename::HasWritePersmission>(result);
  }
  HRESULT ORVIX_CALL Delete() noexcept override { return Do<&classFilename::Delete>(); }
};

}  // namespace Orvix::component

#endif
