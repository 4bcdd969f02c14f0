/* The version that these headers belong to. The same major works together. */
#ifndef ORVIX_VERSION_H
#define ORVIX_VERSION_H

#define ORVIX_VERSION_MAJOR 1
#define ORVIX_VERSION_MINOR 0
#define ORVIX_VERSION_PATCH 0
#define ORVIX_VERSION ((ORVIX_VERSION_MAJOR << 16) | (ORVIX_VERSION_MINOR << 8) | ORVIX_VERSION_PATCH)

#endif
