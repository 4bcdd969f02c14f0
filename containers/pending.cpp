// Members whose turn has not come: E_NOTIMPL.
#include "frame/pending.h"
#include "containers/class_stack.h"
#include "containers/class_stack_object.h"
#include "containers/class_string.h"

namespace Orvix::component {

namespace {
[[noreturn]] void Pending() { throw PendingMember{}; }
}  // namespace

void classString::SetBufferSize(LONG, OptionalBool) { Pending(); }
Text classString::Value() const { Pending(); }
void classString::SetValue(TextReference) { Pending(); }
LONG classString::StrPtr() { Pending(); }
LONG classString::Length() const { Pending(); }
void classString::SetLength(LONG) { Pending(); }
void classString::Clear() { Pending(); }
ComPtr<_classString> classString::Copy() { Pending(); }
ComPtr<_classString> classString::Left(LONG) { Pending(); }
void classString::SetLeft(LONG, const VARIANT&) { Pending(); }
void classString::SetLeftFrom(LONG, _classString*) { Pending(); }
ComPtr<_classString> classString::Right(LONG) { Pending(); }
void classString::SetRight(LONG, const VARIANT&) { Pending(); }
void classString::SetRightFrom(LONG, _classString*) { Pending(); }
ComPtr<_classString> classString::Mid(LONG, OptionalVariant) { Pending(); }
void classString::SetMid(LONG, OptionalVariant, const VARIANT&) { Pending(); }
void classString::SetMidFrom(LONG, OptionalVariant, _classString*) { Pending(); }
SHORT classString::Asc() const { Pending(); }
BYTE classString::Char(LONG) const { Pending(); }
void classString::SetChar(LONG, BYTE) { Pending(); }
LONG classString::Instr(const VARIANT&, LongOr<1>) { Pending(); }
Self classString::UCase() { Pending(); }
Self classString::LCase() { Pending(); }
Self classString::ReverseStr() { Pending(); }
Self classString::Append(const VARIANT&) { Pending(); }
LONG classString::Find(TextView, LongOr<1>) { Pending(); }
void classString::WriteToFile(SHORT, OptionalBool) { Pending(); }
void classString::ReadFromFile(SHORT, OptionalBool) { Pending(); }
LONG classString::TrimToNull() { Pending(); }
Text classString::GetElement(LONG, TextView) { Pending(); }
LONG classString::LengthList(TextView) { Pending(); }
void classStack::Push(const VARIANT&) { Pending(); }
bool classStack::IsEmpty() const { Pending(); }
Variant classStack::Pop() { Pending(); }
Variant classStack::Peek(LongOr<0>) const { Pending(); }
LONG classStack::Size() const { Pending(); }
void classStack::Reset() { Pending(); }
Variant classStack::GetStackItem(LONG) const { Pending(); }
Variant classStack::Peek2(LongOr<0>) const { Pending(); }
bool classStack::IsOnStack(const VARIANT&, StackSearchDirection, LONG&) { Pending(); }
void classStackObject::Push(IDispatch*) { Pending(); }
bool classStackObject::IsEmpty() const { Pending(); }
ComPtr<IDispatch> classStackObject::Pop() { Pending(); }
ComPtr<IDispatch> classStackObject::Peek(LongOr<0>) const { Pending(); }
LONG classStackObject::Size() const { Pending(); }
void classStackObject::Reset() { Pending(); }
ComPtr<IDispatch> classStackObject::GetStackItem(LONG) const { Pending(); }

}  // namespace Orvix::component
