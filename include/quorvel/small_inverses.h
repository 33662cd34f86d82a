// Free functions for closed-form inverses of order 2 and 3.
#ifndef QUORVEL_SMALL_INVERSES_H
#define QUORVEL_SMALL_INVERSES_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
