// The layout of the small triangles by columns (CholeskyFactor of plain arrays, whose assertion names this base name).
#ifndef QUORVEL_FACTOR_UTILITY_H
#define QUORVEL_FACTOR_UTILITY_H

/// Index of (i, j), i <= j, in an upper triangle that is packed by columns.
constexpr unsigned i_utc(unsigned i, unsigned j) noexcept { return i + j * (j + 1) / 2; }

#endif
