// Members whose turn has not come: E_NOTIMPL.
#include "frame/pending.h"
#include "desktop/class_file_operation.h"
#include "frame/class_orvix.h"

namespace Orvix::component {

namespace {
[[noreturn]] void Pending() { throw PendingMember{}; }
}  // namespace

ComPtr<_classFilename> classOrvix::OpenFile1(LONG, TextReference, LONG, TextReference, TextReference, TextReference,
                                             TextReference) {
  Pending();
}
Text classOrvix::OpenFile(LONG, VARIANT_BOOL&, TrueByDefault, TextOr<u"">, TextOr<u"">, TrueByDefault, FalseByDefault,
                          FalseByDefault, TextOr<u"Open file">, TextOr<u"">) {
  Pending();
}
Text classOrvix::SaveFile(LONG, VARIANT_BOOL&, TrueByDefault, TextOr<u"">, TextOr<u"">, TextOr<u"Save file">,
                          TextOr<u"">, TrueByDefault) {
  Pending();
}
void classOrvix::AlwaysInFront(LONG, LONG, LONG, LONG, LONG) { Pending(); }
void classOrvix::CenterWindow(IDispatch*) { Pending(); }
void classOrvix::HourglassOn() { Pending(); }
void classOrvix::HourglassOff() { Pending(); }
void classOrvix::SetComboElement(IDispatch*, TextView) { Pending(); }
void classOrvix::LockControl(IDispatch*, TrueByDefault) { Pending(); }
void classOrvix::UnLockControl(IDispatch*, TrueByDefault) { Pending(); }
Variant classOrvix::TextBoxSetFocus(IDispatch*) { Pending(); }
void classOrvix::MyDoEvents(TrueByDefault) { Pending(); }
void classOrvix::CreateNewKey(TextReference, enumRegistryConsts) { Pending(); }
bool classOrvix::CreateNewKeyRet(TextReference, enumRegistryConsts) { Pending(); }
void classOrvix::SetKeyValue(TextReference, TextReference, const VARIANT&, enumRegistryConsts, RootKeyOrClasses) {
  Pending();
}
bool classOrvix::SetKeyValueRet(TextReference, TextReference, const VARIANT&, enumRegistryConsts, RootKeyOrClasses) {
  Pending();
}
bool classOrvix::GetKeyValue(enumRegistryConsts, TextReference, TextReference, TextReference) { Pending(); }
void classOrvix::RunFile(TextReference, LONG) { Pending(); }
LONG classOrvix::RunFileMore(TextReference, LONG, LONG) { Pending(); }
void classOrvix::ShowHelp(LONG, TextReference, LONG, LONG, OptionalTextReference) { Pending(); }
void classOrvix::ShowHTMLHelpKeyword(TextReference, LONG, TextReference) { Pending(); }
void classOrvix::GetOSVersion(LONG&, LONG&, LONG&, LONG&, TextReference) { Pending(); }
Text classOrvix::CreateGUID() { Pending(); }
bool CSHFileOp::MoveFiles() { Pending(); }
bool CSHFileOp::CopyFiles() { Pending(); }
bool CSHFileOp::DeleteFiles() { Pending(); }
bool CSHFileOp::RenameFiles() { Pending(); }
void CSHFileOp::ClearSourceFiles() { Pending(); }
void CSHFileOp::AddSourceFile(TextView) { Pending(); }
void CSHFileOp::ClearDestFiles() { Pending(); }
void CSHFileOp::AddDestFile(TextView) { Pending(); }

}  // namespace Orvix::component
