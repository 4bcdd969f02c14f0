// The seven classes: one table for class objects, registration and the type
// library.
#ifndef ORVIX_FRAME_CLASSES_H
#define ORVIX_FRAME_CLASSES_H

#include <span>
#include <string_view>

#include "frame/com_ptr.h"
#include "frame/member_row.h"

namespace Orvix::component {

// A new object of an interface's class; specialised next to the interface's rows.
template <class Interface>
ComPtr<Interface> NewObject();

struct ClassEntry {
  std::string_view name;
  const CLSID* clsid;
  WORD flags;  // TYPEFLAG_...
  const InterfaceTable& (*table)();
  ComPtr<IDispatch> (*create)();
};

[[nodiscard]] std::span<const ClassEntry> Classes();

}  // namespace Orvix::component

#endif
