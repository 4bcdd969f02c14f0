// Classes of the run-time's own, which CoCreateInstance finds like any other.
#ifndef ORVIX_PLATFORM_AUTOMATION_CLASS_TABLE_H
#define ORVIX_PLATFORM_AUTOMATION_CLASS_TABLE_H

#include "orvix/automation.h"

namespace Orvix {

// Makes an object and gives the interface `riid` of it; on failure `*object` is
// null.
using CreateNativeObject = HRESULT (*)(REFIID riid, void** object);

// Makes a class of this process known. What CoRegisterClassObject registers under
// the same identifier wins over it, and it wins over the registry. A second
// registration replaces the first. Nothing happens when memory is exhausted: the
// class is then not registered.
void RegisterNativeClass(REFCLSID clsid, CreateNativeObject create) noexcept;

}  // namespace Orvix

#endif
