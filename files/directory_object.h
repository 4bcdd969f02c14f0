// `classDirectory` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_FILES_DIRECTORY_OBJECT_H
#define ORVIX_FILES_DIRECTORY_OBJECT_H

#include "files/class_directory.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class DirectoryObject final : public Object<DirectoryObject, _classDirectory, classDirectory> {
 public:
  HRESULT ORVIX_CALL get_lPointer(LONG* result) noexcept override { return Call<&classDirectory::pointer>(result); }
  HRESULT ORVIX_CALL put_lPointer(LONG lPointer) noexcept override {
    return Do<&classDirectory::set_pointer>(lPointer);
  }
  HRESULT ORVIX_CALL get_lNumFiles(LONG* result) noexcept override {
    return Call<&classDirectory::number_of_files>(result);
  }
  HRESULT ORVIX_CALL put_lNumFiles(LONG lNumFiles) noexcept override {
    return Do<&classDirectory::set_number_of_files>(lNumFiles);
  }
  HRESULT ORVIX_CALL Init(BSTR* sMask, LONG* lAttribute, VARIANT* vFromDate, VARIANT* vToDate) noexcept override {
    return Do<&classDirectory::Init>(sMask, lAttribute, vFromDate, vToDate);
  }
  HRESULT ORVIX_CALL File(LONG* lIndex, FileType* result) noexcept override {
    return Call<&classDirectory::File>(result, lIndex);
  }
  HRESULT ORVIX_CALL SortFilesDate() noexcept override { return Do<&classDirectory::SortFilesDate>(); }
  HRESULT ORVIX_CALL SoftFilesDateEx(VARIANT_BOOL* bAscending) noexcept override {
    return Do<&classDirectory::SoftFilesDateEx>(bAscending);
  }
  HRESULT ORVIX_CALL SortFilesName(VARIANT_BOOL* bAscending, VARIANT* result) noexcept override {
    return Call<&classDirectory::SortFilesName>(result, bAscending);
  }
  HRESULT ORVIX_CALL GetFileName(LONG* lIndex, BSTR* result) noexcept override {
    return Call<&classDirectory::GetFileName>(result, lIndex);
  }
};

}  // namespace Orvix::component

#endif
