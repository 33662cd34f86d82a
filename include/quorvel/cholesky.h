// Free functions for Cholesky factorisation and inverse.
#ifndef QUORVEL_CHOLESKY_H
#define QUORVEL_CHOLESKY_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

#endif
