// Free functions for L1 regression and polynomial fit.
#ifndef QUORVEL_REGRESSION_H
#define QUORVEL_REGRESSION_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
