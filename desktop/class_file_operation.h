// The plain class behind `CSHFileOp`: one request to the shell's file-operation
// service, made from two name lists and eight options.
#ifndef ORVIX_DESKTOP_CLASS_FILE_OPERATION_H
#define ORVIX_DESKTOP_CLASS_FILE_OPERATION_H

#include <vector>

#include "frame/argument_types.h"

namespace Orvix::component {

class CSHFileOp {
 public:
  static constexpr std::string_view kClassName = "CSHFileOp";

  void SetAllowUndo(VariantBool value) { allow_undo_ = value; }
  [[nodiscard]] VariantBool AllowUndo() const { return allow_undo_; }
  void SetConfirmMakeDir(VariantBool value) { confirm_make_dir_ = value; }
  [[nodiscard]] VariantBool ConfirmMakeDir() const { return confirm_make_dir_; }
  void SetConfirmOperation(VariantBool value) { confirm_operation_ = value; }
  [[nodiscard]] VariantBool ConfirmOperation() const { return confirm_operation_; }
  void SetCustomText(TextView value) { custom_text_ = value; }
  [[nodiscard]] Text CustomText() const { return custom_text_; }
  void SetIncludeDirectories(VariantBool value) { include_directories_ = value; }
  [[nodiscard]] VariantBool IncludeDirectories() const { return include_directories_; }
  void SetParentWnd(LONG value) { parent_window_ = value; }
  [[nodiscard]] LONG ParentWnd() const { return parent_window_; }
  void SetRenameOnCollision(VariantBool value) { rename_on_collision_ = value; }
  [[nodiscard]] VariantBool RenameOnCollision() const { return rename_on_collision_; }
  void SetSilentMode(VariantBool value) { silent_mode_ = value; }
  [[nodiscard]] VariantBool SilentMode() const { return silent_mode_; }

  // True when the service reported success for all of it and nobody cancelled.
  // Error -2147220504 without sources. The lists stay as they are.
  bool MoveFiles();
  bool CopyFiles();
  bool DeleteFiles();
  bool RenameFiles();
  // Names are kept as given, in the order given.
  void ClearSourceFiles();
  void AddSourceFile(TextView name);
  void ClearDestFiles();
  void AddDestFile(TextView name);

 private:
  bool DoFileOperation(ULONG operation) const;

  VariantBool allow_undo_{VARIANT_FALSE};
  VariantBool confirm_make_dir_{VARIANT_TRUE};
  VariantBool confirm_operation_{VARIANT_TRUE};
  Text custom_text_;
  VariantBool include_directories_{VARIANT_TRUE};
  LONG parent_window_ = 0;
  VariantBool rename_on_collision_{VARIANT_FALSE};
  VariantBool silent_mode_{VARIANT_FALSE};
  std::vector<Text> sources_;
  std::vector<Text> destinations_;
};

}  // namespace Orvix::component

#endif
