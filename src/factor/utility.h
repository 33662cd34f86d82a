// The Cholesky factor of a small plain array. Its assertion names this file's base name.
#ifndef QUORVEL_FACTOR_UTILITY_H
#define QUORVEL_FACTOR_UTILITY_H

#include "quorvel/Matrix.h"

/// Index of (i, j), i <= j, in an upper triangle that is packed by columns.
constexpr unsigned i_utc(unsigned i, unsigned j) noexcept { return i + j * (j + 1) / 2; }

/// A = Uᵀ·U for n <= 3, both i_utc; returns the number of singular pivots.
///
/// Pivot i is x = A(i, i) - Σ U(k, i)², taken off one by one for k = i-1 down to 0. When tol >= x (no absolute value: a
/// negative pivot counts, NaN does not) row and column i of U become 0.0 and are left out from there on; a negative
/// A(i, i) ends the process then. Six doubles of A are read whatever n is, before U is written: U may be A. No row of U
/// of an index >= n is touched.
Matrix::nsing_type CholeskyFactor(const double* A, unsigned n, double* U, double tol);

#endif
