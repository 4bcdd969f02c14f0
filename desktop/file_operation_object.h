// `CSHFileOp` as callers hold it: every slot hands over to the plain class.
#ifndef ORVIX_DESKTOP_FILE_OPERATION_OBJECT_H
#define ORVIX_DESKTOP_FILE_OPERATION_OBJECT_H

#include "desktop/class_file_operation.h"
#include "frame/classes.h"
#include "frame/object.h"

namespace Orvix::component {

class FileOperationObject final : public Object<FileOperationObject, _CSHFileOp, CSHFileOp> {
 public:
  HRESULT ORVIX_CALL put_AllowUndo(VARIANT_BOOL* bAllowUndo) noexcept override {
    return Do<&CSHFileOp::SetAllowUndo>(bAllowUndo);
  }
  HRESULT ORVIX_CALL get_AllowUndo(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::AllowUndo>(result);
  }
  HRESULT ORVIX_CALL put_ConfirmMakeDir(VARIANT_BOOL* bConfirmMakeDir) noexcept override {
    return Do<&CSHFileOp::SetConfirmMakeDir>(bConfirmMakeDir);
  }
  HRESULT ORVIX_CALL get_ConfirmMakeDir(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::ConfirmMakeDir>(result);
  }
  HRESULT ORVIX_CALL put_ConfirmOperation(VARIANT_BOOL* bConfirmOperation) noexcept override {
    return Do<&CSHFileOp::SetConfirmOperation>(bConfirmOperation);
  }
  HRESULT ORVIX_CALL get_ConfirmOperation(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::ConfirmOperation>(result);
  }
  HRESULT ORVIX_CALL put_CustomText(BSTR* sCustomText) noexcept override {
    return Do<&CSHFileOp::SetCustomText>(sCustomText);
  }
  HRESULT ORVIX_CALL get_CustomText(BSTR* result) noexcept override { return Call<&CSHFileOp::CustomText>(result); }
  HRESULT ORVIX_CALL put_IncludeDirectories(VARIANT_BOOL* bIncludeDirectories) noexcept override {
    return Do<&CSHFileOp::SetIncludeDirectories>(bIncludeDirectories);
  }
  HRESULT ORVIX_CALL get_IncludeDirectories(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::IncludeDirectories>(result);
  }
  HRESULT ORVIX_CALL put_ParentWnd(LONG* hParentWnd) noexcept override {
    return Do<&CSHFileOp::SetParentWnd>(hParentWnd);
  }
  HRESULT ORVIX_CALL get_ParentWnd(LONG* result) noexcept override { return Call<&CSHFileOp::ParentWnd>(result); }
  HRESULT ORVIX_CALL put_RenameOnCollision(VARIANT_BOOL* bRenameOnCollision) noexcept override {
    return Do<&CSHFileOp::SetRenameOnCollision>(bRenameOnCollision);
  }
  HRESULT ORVIX_CALL get_RenameOnCollision(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::RenameOnCollision>(result);
  }
  HRESULT ORVIX_CALL put_SilentMode(VARIANT_BOOL* bSilentMode) noexcept override {
    return Do<&CSHFileOp::SetSilentMode>(bSilentMode);
  }
  HRESULT ORVIX_CALL get_SilentMode(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::SilentMode>(result);
  }
  HRESULT ORVIX_CALL MoveFiles(VARIANT_BOOL* result) noexcept override { return Call<&CSHFileOp::MoveFiles>(result); }
  HRESULT ORVIX_CALL CopyFiles(VARIANT_BOOL* result) noexcept override { return Call<&CSHFileOp::CopyFiles>(result); }
  HRESULT ORVIX_CALL DeleteFiles(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::DeleteFiles>(result);
  }
  HRESULT ORVIX_CALL RenameFiles(VARIANT_BOOL* result) noexcept override {
    return Call<&CSHFileOp::RenameFiles>(result);
  }
  HRESULT ORVIX_CALL ClearSourceFiles() noexcept override { return Do<&CSHFileOp::ClearSourceFiles>(); }
  HRESULT ORVIX_CALL AddSourceFile(BSTR* sFilename) noexcept override {
    return Do<&CSHFileOp::AddSourceFile>(sFilename);
  }
  HRESULT ORVIX_CALL ClearDestFiles() noexcept override { return Do<&CSHFileOp::ClearDestFiles>(); }
  HRESULT ORVIX_CALL AddDestFile(BSTR* sFilename) noexcept override { return Do<&CSHFileOp::AddDestFile>(sFilename); }
};

}  // namespace Orvix::component

#endif
