// The members of `_CSHFileOp`, in slot order.
#include "desktop/file_operation_object.h"

namespace Orvix::component {

namespace {

constexpr MemberRow kRows[] = {
    PropertyPut<&CSHFileOp::SetAllowUndo, &_CSHFileOp::put_AllowUndo>("AllowUndo", {"bAllowUndo"}),
    PropertyGet<&CSHFileOp::AllowUndo, &_CSHFileOp::get_AllowUndo>("AllowUndo"),
    PropertyPut<&CSHFileOp::SetConfirmMakeDir, &_CSHFileOp::put_ConfirmMakeDir>("ConfirmMakeDir", {"bConfirmMakeDir"}),
    PropertyGet<&CSHFileOp::ConfirmMakeDir, &_CSHFileOp::get_ConfirmMakeDir>("ConfirmMakeDir"),
    PropertyPut<&CSHFileOp::SetConfirmOperation, &_CSHFileOp::put_ConfirmOperation>("ConfirmOperation",
                                                                                    {"bConfirmOperation"}),
    PropertyGet<&CSHFileOp::ConfirmOperation, &_CSHFileOp::get_ConfirmOperation>("ConfirmOperation"),
    PropertyPut<&CSHFileOp::SetCustomText, &_CSHFileOp::put_CustomText>("CustomText", {"sCustomText"}),
    PropertyGet<&CSHFileOp::CustomText, &_CSHFileOp::get_CustomText>("CustomText"),
    PropertyPut<&CSHFileOp::SetIncludeDirectories, &_CSHFileOp::put_IncludeDirectories>("IncludeDirectories",
                                                                                        {"bIncludeDirectories"}),
    PropertyGet<&CSHFileOp::IncludeDirectories, &_CSHFileOp::get_IncludeDirectories>("IncludeDirectories"),
    PropertyPut<&CSHFileOp::SetParentWnd, &_CSHFileOp::put_ParentWnd>("ParentWnd", {"hParentWnd"}),
    PropertyGet<&CSHFileOp::ParentWnd, &_CSHFileOp::get_ParentWnd>("ParentWnd"),
    PropertyPut<&CSHFileOp::SetRenameOnCollision, &_CSHFileOp::put_RenameOnCollision>("RenameOnCollision",
                                                                                      {"bRenameOnCollision"}),
    PropertyGet<&CSHFileOp::RenameOnCollision, &_CSHFileOp::get_RenameOnCollision>("RenameOnCollision"),
    PropertyPut<&CSHFileOp::SetSilentMode, &_CSHFileOp::put_SilentMode>("SilentMode", {"bSilentMode"}),
    PropertyGet<&CSHFileOp::SilentMode, &_CSHFileOp::get_SilentMode>("SilentMode"),
    Method<&CSHFileOp::MoveFiles, &_CSHFileOp::MoveFiles>("MoveFiles"),
    Method<&CSHFileOp::CopyFiles, &_CSHFileOp::CopyFiles>("CopyFiles"),
    Method<&CSHFileOp::DeleteFiles, &_CSHFileOp::DeleteFiles>("DeleteFiles"),
    Method<&CSHFileOp::RenameFiles, &_CSHFileOp::RenameFiles>("RenameFiles"),
    Method<&CSHFileOp::ClearSourceFiles, &_CSHFileOp::ClearSourceFiles>("ClearSourceFiles"),
    Method<&CSHFileOp::AddSourceFile, &_CSHFileOp::AddSourceFile>("AddSourceFile", {}, {"sFilename"}),
    Method<&CSHFileOp::ClearDestFiles, &_CSHFileOp::ClearDestFiles>("ClearDestFiles"),
    Method<&CSHFileOp::AddDestFile, &_CSHFileOp::AddDestFile>("AddDestFile", {}, {"sFilename"}),
};
static_assert(sizeof kRows / sizeof kRows[0] == 24);

constexpr InterfaceTable kTable = {"_CSHFileOp", &IID__CSHFileOp, kRows};

}  // namespace

template <>
const InterfaceTable& TableOf<_CSHFileOp>() {
  return kTable;
}

template <>
ComPtr<_CSHFileOp> NewObject<_CSHFileOp>() {
  return MakeObject<FileOperationObject, _CSHFileOp>();
}

}  // namespace Orvix::component
