// CSHFileOp: one request to the shell's file-operation service.
#ifndef ORVIX_WRAPPER_FILE_OPERATION_HPP
#define ORVIX_WRAPPER_FILE_OPERATION_HPP

#include "orvix/wrapper/call.hpp"

namespace Orvix {

class FileOperation : public Object<_CSHFileOp> {
  using I = _CSHFileOp;

 public:
  FileOperation() : FileOperation(Component::Default()) {}
  explicit FileOperation(const Component& component) : Object(component.Create<I>(CLSID_CSHFileOp)) {}
  explicit FileOperation(Pointer<I> object) noexcept : Object(std::move(object)) {}

  void SetAllowUndo(bool allow) { Call(&I::put_AllowUndo, allow); }
  [[nodiscard]] bool AllowUndo() const { return Get<bool>(&I::get_AllowUndo); }
  void SetConfirmMakeDir(bool confirm) { Call(&I::put_ConfirmMakeDir, confirm); }
  [[nodiscard]] bool ConfirmMakeDir() const { return Get<bool>(&I::get_ConfirmMakeDir); }
  void SetConfirmOperation(bool confirm) { Call(&I::put_ConfirmOperation, confirm); }
  [[nodiscard]] bool ConfirmOperation() const { return Get<bool>(&I::get_ConfirmOperation); }
  void SetCustomText(TextArgument text) { Call(&I::put_CustomText, text); }
  [[nodiscard]] String CustomText() const { return Get<String>(&I::get_CustomText); }
  void SetIncludeDirectories(bool include) { Call(&I::put_IncludeDirectories, include); }
  [[nodiscard]] bool IncludeDirectories() const { return Get<bool>(&I::get_IncludeDirectories); }
  void SetParentWnd(LONG window) { Call(&I::put_ParentWnd, window); }
  [[nodiscard]] LONG ParentWnd() const { return Get<LONG>(&I::get_ParentWnd); }
  void SetRenameOnCollision(bool rename) { Call(&I::put_RenameOnCollision, rename); }
  [[nodiscard]] bool RenameOnCollision() const { return Get<bool>(&I::get_RenameOnCollision); }
  void SetSilentMode(bool silent) { Call(&I::put_SilentMode, silent); }
  [[nodiscard]] bool SilentMode() const { return Get<bool>(&I::get_SilentMode); }
  bool MoveFiles() { return Get<bool>(&I::MoveFiles); }
  bool CopyFiles() { return Get<bool>(&I::CopyFiles); }
  bool DeleteFiles() { return Get<bool>(&I::DeleteFiles); }
  bool RenameFiles() { return Get<bool>(&I::RenameFiles); }
  void ClearSourceFiles() { Call(&I::ClearSourceFiles); }
  void AddSourceFile(TextArgument name) { Call(&I::AddSourceFile, name); }
  void ClearDestFiles() { Call(&I::ClearDestFiles); }
  void AddDestFile(TextArgument name) { Call(&I::AddDestFile, name); }

  // What became of this thread's last file operation: code 0 is done, `item` the one
  // that it stopped at.
  struct Outcome {
    LONG code = 0;
    bool aborted = false;  // a part was left out, or all was cancelled
    int64_t items_done = 0;
    int64_t bytes_done = 0;
    String item;
    String words;  // in English
  };
  [[nodiscard]] static Outcome Last() {
    Outcome outcome;
    OxFileOperationFacts facts{};
    Check(OxLastFileOperation(&facts, outcome.item.Receive(), outcome.words.Receive()));
    outcome.code = facts.code;
    outcome.aborted = facts.aborted != 0;
    outcome.items_done = facts.itemsDone;
    outcome.bytes_done = facts.bytesDone;
    return outcome;
  }
};

}  // namespace Orvix

#endif
