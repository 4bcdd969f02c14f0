// The rights of an ordinary user for the length of a test, for tests that are
// run with more.
#ifndef ORVIX_TESTS_SUPPORT_ORDINARY_USER_H
#define ORVIX_TESTS_SUPPORT_ORDINARY_USER_H

#include <unistd.h>

namespace Orvix::testing {

class OrdinaryUser {
 public:
  OrdinaryUser() : privileged_(geteuid() == 0) {
    if (privileged_) changed_ = seteuid(65534) == 0;
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (changed_ && seteuid(0) != 0) _exit(3);
  }
  // False when the rights could not be given up.
  [[nodiscard]] bool ok() const { return !privileged_ || changed_; }

 private:
  bool privileged_;
  bool changed_ = false;
};

}  // namespace Orvix::testing

#endif
