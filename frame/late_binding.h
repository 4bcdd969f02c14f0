// Members of callers' objects, called by name. What such a call raises is what
// the object says: its error number, its description and its source.
#ifndef ORVIX_FRAME_LATE_BINDING_H
#define ORVIX_FRAME_LATE_BINDING_H

#include <span>

#include "frame/com_ptr.h"

namespace Orvix::component {

// All three look `name` up without regard to case and pass `arguments` in
// natural order, borrowed: they stay the caller's. By-reference arguments are
// written in place. The object is held during the call, so the caller's variable
// may change meanwhile.
//
// Errors: 91 when `object` is null; 438 when it has no such member, or none that
// can be read, called or written; what the object raised, by its number, source
// and description (the standard description of the number where it gives none);
// any other failure by its number (450 wrong number of arguments, 13, ...).

// The value of a property, or what a method returns: the call admits both. A
// reference is followed; the value is the caller's own.
[[nodiscard]] Variant GetMember(IDispatch* object, TextView name, std::span<const VARIANT> arguments = {});

// Calls a method and gives what it returns, Empty for one that returns nothing.
Variant CallMember(IDispatch* object, TextView name, std::span<const VARIANT> arguments = {});

// Writes a property; `indexes` are the arguments of an indexed one.
void PutMember(IDispatch* object, TextView name, const VARIANT& value, std::span<const VARIANT> indexes = {});

// A property with one index that is read again and again, like the entries of a
// list: its name is looked up once, with the first reading.
class IndexedMember {
 public:
  // Borrows both.
  IndexedMember(IDispatch* object, TextView name) : object_(object), name_(name) {}
  // What `value` held is cleared first.
  void Read(LONG index, Variant& value);

 private:
  IDispatch* object_;
  TextView name_;
  DISPID member_ = DISPID_UNKNOWN;
};

// The object in `value`, with a reference of its own, null for an empty
// reference. Error 424 for a value that is no object, 430 for an object without
// IDispatch.
[[nodiscard]] ComPtr<IDispatch> ObjectOf(const Variant& value);

}  // namespace Orvix::component

#endif
