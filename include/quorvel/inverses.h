// Free functions for general inverses and the solve operators.
#ifndef QUORVEL_INVERSES_H
#define QUORVEL_INVERSES_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
