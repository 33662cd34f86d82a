// Free functions for geodetic derivatives.
#ifndef QUORVEL_GEODESY_H
#define QUORVEL_GEODESY_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
