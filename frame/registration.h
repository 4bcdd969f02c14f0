// What the component writes into the registry, and takes away again.
#ifndef ORVIX_FRAME_REGISTRATION_H
#define ORVIX_FRAME_REGISTRATION_H

namespace Orvix::component {

// Raises SELFREG_E_CLASS when a key or value cannot be written.
void RegisterComponent();
// Values and keys of others stay, and with them the keys that hold them.
void UnregisterComponent();

}  // namespace Orvix::component

#endif
