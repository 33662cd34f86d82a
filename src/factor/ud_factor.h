// The U-D factorisation on raw arrays.
#ifndef QUORVEL_FACTOR_UD_FACTOR_H
#define QUORVEL_FACTOR_UD_FACTOR_H

#include "core/packed.h"

namespace quorvel::detail {

/// p = U*D*U' of order n; u and p are packed arrays. Returns the number of pivots that were singular, whose d(j) and
/// column j of U are zero.
int FactorUD(double* u, double* d, const double* p, index_t n);

}  // namespace quorvel::detail

#endif
