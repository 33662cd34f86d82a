// Free functions for associated Legendre functions.
#ifndef QUORVEL_LEGENDRE_H
#define QUORVEL_LEGENDRE_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
