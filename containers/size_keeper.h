// Gives a buffer its size back when a member that enlarged it fails, or has done
// what it needed the room for.
#ifndef ORVIX_CONTAINERS_SIZE_KEEPER_H
#define ORVIX_CONTAINERS_SIZE_KEEPER_H

#include "containers/class_string.h"

namespace Orvix::component {

class classString::SizeKeeper {
 public:
  explicit SizeKeeper(classString& string) : string_(string), size_(string.bufferSize) {}
  SizeKeeper(SizeKeeper&&) = delete;
  ~SizeKeeper();

  // The new size stays.
  void Dismiss() { size_ = string_.bufferSize; }

 private:
  classString& string_;
  LONG size_;
};

}  // namespace Orvix::component

#endif
