// Calls of members through an object's interface, the object being the caller's
// or another implementation's.
#ifndef ORVIX_FRAME_OBJECT_CALL_H
#define ORVIX_FRAME_OBJECT_CALL_H

#include "frame/argument_types.h"
#include "frame/error.h"
#include "frame/modErrorCodes.h"

namespace Orvix::component {

// Calls a member; its failure is raised. Error 91 when there is no object. The
// slot of error info is emptied first, so that what is read is this call's.
template <class Interface, class... Parameters, class... Arguments>
void CallObject(Interface* object, HRESULT (ORVIX_CALL Interface::*member)(Parameters...), Arguments... arguments) {
  if (object == nullptr) RaiseRuntimeError(kObjectNotSet);
  SetErrorInfo(0, nullptr);
  const HRESULT result = (object->*member)(arguments...);
  if (FAILED(result)) RaiseFailureOfObject(result, object, *kInterfaceId<Interface>);
}

}  // namespace Orvix::component

#endif
