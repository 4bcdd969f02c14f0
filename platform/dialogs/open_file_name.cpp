// The open-file dialog: the host's, where it brings one; natively none is shown
// yet, which counts as cancelled.
#include "orvix/platform.h"
#include "platform/host/host_table.h"

BOOL ORVIX_CALL GetOpenFileNameA(void* request) {
  const OxHost host = Orvix::CurrentHost();
  return host.GetOpenFileNameA == nullptr ? 0 : host.GetOpenFileNameA(host.context, request);
}

DWORD ORVIX_CALL CommDlgExtendedError() { return 0; }
