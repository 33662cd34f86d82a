// Free functions for U-D factorisation, U-D filter updates, rank-one updates.
#ifndef QUORVEL_UD_H
#define QUORVEL_UD_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
