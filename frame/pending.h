// A member whose turn has not come: its call answers E_NOTIMPL.
#ifndef ORVIX_FRAME_PENDING_H
#define ORVIX_FRAME_PENDING_H

namespace Orvix::component {

struct PendingMember {};

}  // namespace Orvix::component

#endif
