// Component libraries in this process: each is loaded once, and stays.
#ifndef ORVIX_PLATFORM_AUTOMATION_COMPONENT_LIBRARY_H
#define ORVIX_PLATFORM_AUTOMATION_COMPONENT_LIBRARY_H

#include "orvix/text.h"

namespace Orvix {

using GetClassObjectFunction = HRESULT(ORVIX_CALL*)(REFCLSID, REFIID, void**);

// The DllGetClassObject of the library with this native file name, which is
// loaded when it is not yet. Null when it cannot be loaded or has none, and for
// a name that is not absolute: what is loaded must not depend on where the
// process stands.
[[nodiscard]] GetClassObjectFunction LoadComponent(TextView file);

}  // namespace Orvix

#endif
