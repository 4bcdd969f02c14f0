// The platform functions that the component calls, by the platform's own names
// and signatures, and the runtime's. No other declaration of them is used.
#ifndef ORVIX_FRAME_MODORVIX_H
#define ORVIX_FRAME_MODORVIX_H

#include "orvix/automation.h"
#include "orvix/orvix.h"
#include "orvix/platform.h"
#include "orvix/runtime.h"
#include "orvix/text.h"

#endif
