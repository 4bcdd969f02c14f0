// The application's global object as each thread sees it.
#ifndef ORVIX_PLATFORM_WINDOWS_GLOBAL_OBJECT_H
#define ORVIX_PLATFORM_WINDOWS_GLOBAL_OBJECT_H

namespace Orvix {

// Releases the calling thread's reference; the next OxGlobalObject fetches anew.
void ForgetGlobalObject() noexcept;

}  // namespace Orvix

#endif
