// Members whose turn has not come: E_NOTIMPL.
#include "frame/pending.h"
#include "frame/class_orvix.h"

namespace Orvix::component {

namespace {
[[noreturn]] void Pending() { throw PendingMember{}; }
}  // namespace

void classOrvix::MyFileCopy(TextView, TextView, FalseByDefault) { Pending(); }
void classOrvix::PlaySound(_classFilename*) { Pending(); }

}  // namespace Orvix::component
