// Orders 2 and 3: inverses in closed form, and products of order 3, on matrices and on plain arrays.
//
// When the determinant is too small to invert by, the routine inverts the best conditioned principal piece that it
// finds (a 2 x 2 block, then a single element), leaves zeros elsewhere and returns how many dimensions it gave up: the
// singularity count. It never fails on singularity.
//
// Plain arrays of doubles, named after their layout:
//   _sm    symmetric, the upper triangle by rows: [a00 a01 a11], [a00 a01 a02 a11 a12 a22] (as SymmetricMatrix::data())
//   _ulm   upper triangular in the same order, which is that of a lower triangular matrix by columns
//   _rm    general, by rows
//   i_utc  upper triangle by columns: [a00 a01 a11 a02 a12 a22]; index i + j(j + 1)/2 for i <= j. Mind places 2 and 3.
// Input and output may be the same array. Nothing here allocates or looks at a pending code, but the class forms do.
#ifndef QUORVEL_SMALL_INVERSES_H
#define QUORVEL_SMALL_INVERSES_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
// Kernels on plain arrays. `tol` is an absolute threshold: x passes when |x| > tol (so NaN does not). They return the
// singularity count.

/// out = a⁻¹ = adj(a)·(1/det), det = a00·a11 - a01². Otherwise all zeros but, for the first that passes: 1/a00 or 1/a11
/// in its place, or 1/a01 in place of a01 (the pseudo-inverse of a matrix with that one pair of elements); count 1.
/// Nothing passes: count 2.
///
///     double p[3] = {4, 1, 2}, q[3];
///     int singular = inv2x2_sm(p, q, 1e-200);
QUORVEL_API int inv2x2_sm(const double* a, double* out, double tol);

/// The same for a general matrix; tried in the order a00, a11, a01, a10, where 1/a01 goes to (1, 0) and 1/a10 to (0,
/// 1).
QUORVEL_API int inv2x2_rm(const double (*a)[2], double (*out)[2], double tol);

/// out = a⁻¹ by cofactors, det = (a00·C00 + a01·C01) + a02·C02, every cofactor times 1/det. Otherwise all zeros but,
/// for the first that passes: the inverse of the block of rows and columns {1, 2}, {0, 2} or {0, 1} (count 1); 1/a00,
/// 1/a11 or 1/a22 (count 2); 1/a01, 1/a02 or 1/a12 in its place (count 2). Nothing passes: count 3.
QUORVEL_API int inv3x3_sm(const double* a, double* out, double tol);

/// The same for a general matrix; off-diagonal elements are tried row by row and 1/a(r, c) goes to (c, r).
QUORVEL_API int inv3x3_rm(const double (*a)[3], double (*out)[3], double tol);

/// t = t⁻¹ for a packed triangle. A diagonal element that does not pass is counted, and its row and column become zero
/// (possibly -0.0).
QUORVEL_API int inv2x2_ulm(double* t, double tol);
QUORVEL_API int inv3x3_ulm(double* t, double tol);

/// a = Uᵀ·U for n <= 3, both i_utc; returns the number of singular pivots. (Mind: CholeskySquareRootUpper is U·Uᵀ.)
///
/// Pivot i is x = a(i, i) - Σ U(k, i)², taken off one by one for k = i - 1 down to 0. When tol >= x (absolute tolerance,
/// signed pivot: a negative one counts, NaN does not) row and column i of U become 0.0 and are left out from there on. A
/// negative a(i, i) at such a pivot ends the process (assertion "!(Acopy[i_utc(i,i)] < 0.0)"). Six doubles of `a` are
/// read whatever n is, before U is written: U may be `a`. Rows of U from n on stay.
///
///     double a[6] = {4, 2, 5, 0, 0, 9}, u[6];
///     int singular = CholeskyFactor(a, 3, u, 1e-12);   // 0; u = {2, 1, 2, 0, 0, 3}
QUORVEL_API int CholeskyFactor(const double* a, unsigned n, double* U, double tol);

/// out = a⁻¹ for a symmetric positive semidefinite a, both i_utc, by a = Uᵀ·U (CholeskyFactor, with its tolerance and its
/// assertion) and U⁻¹·U⁻ᵀ. Rows and columns of singular pivots are zero; returns their number.
QUORVEL_API int CholeskyInverse3x3(const double* a, double* out, double tol);

/// out = S·Q·S, all _sm. This and the next two form full products of order 3, each sum in increasing index and without
/// a term dropped; packed results are the upper triangle of that.
QUORVEL_API void SQS3x3(double* out, const double* s, const double* q);

/// out = A·Q·Aᵀ, A by rows, Q and out _sm: covariance propagation of order 3.
QUORVEL_API void AQAT3x3(double* out, const double (*a)[3], const double* q);

/// vᵀ·P·v, P _sm: the squared norm of v with weights P; no root is taken.
[[nodiscard]] QUORVEL_API double PWeightedNorm3x3(const double* v, const double* p);

// ---------------------------------------------------------------------------------------------------------------------
// Matrices. The inverse lands in A when `inPlace` is true or A is dispensable; otherwise A is unchanged, singularity
// count included, and the result is a new dispensable matrix. A const A is never written to unless it is dispensable.
// The threshold is 1e-200; the result's singularity count is the kernel's. Throw 50000 (not ok) and 40000 (not of that
// order). Sparse matrices are read and written cell by cell: absent cells are 0.0, zeros of the result are not stored.
//
//     SymmetricMatrix W(inv2x2(R));        // R unchanged
//     inv3x3(P, true);                     // P becomes its inverse

QUORVEL_API SymmetricMatrix& inv2x2(SymmetricMatrix& A, bool inPlace = false);
QUORVEL_API UpperTriangularMatrix& inv2x2(UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv2x2(LowerTriangularMatrix& A, bool inPlace = false);
QUORVEL_API RegularMatrix& inv2x2(RegularMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricSparseMatrix& inv2x2(SymmetricSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv2x2(RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricMatrix& inv2x2(const SymmetricMatrix& A, bool inPlace = false);
QUORVEL_API UpperTriangularMatrix& inv2x2(const UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv2x2(const LowerTriangularMatrix& A, bool inPlace = false);
QUORVEL_API RegularMatrix& inv2x2(const RegularMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricSparseMatrix& inv2x2(const SymmetricSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv2x2(const RegularSparseMatrix& A, bool inPlace = false);

QUORVEL_API SymmetricMatrix& inv3x3(SymmetricMatrix& A, bool inPlace = false);
QUORVEL_API UpperTriangularMatrix& inv3x3(UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv3x3(LowerTriangularMatrix& A, bool inPlace = false);
QUORVEL_API RegularMatrix& inv3x3(RegularMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricSparseMatrix& inv3x3(SymmetricSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv3x3(RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricMatrix& inv3x3(const SymmetricMatrix& A, bool inPlace = false);
QUORVEL_API UpperTriangularMatrix& inv3x3(const UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv3x3(const LowerTriangularMatrix& A, bool inPlace = false);
QUORVEL_API RegularMatrix& inv3x3(const RegularMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricSparseMatrix& inv3x3(const SymmetricSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv3x3(const RegularSparseMatrix& A, bool inPlace = false);

/// The inverses of the 3 x 3 diagonal blocks of A, by inv3x3_sm, as the diagonal blocks of `out`, which is resized;
/// outside them `out` is left as SetSize leaves it (zeros in new storage, old numbers in storage that was large
/// enough). An order that is no multiple of 3 leaves its last rows alone. How many dimensions were given up is not
/// reported, and the singularity count of `out` stays. A may be `out`. Consumes a dispensable A. Throws 50000 when A or
/// `out` is not ok.
QUORVEL_API void Invert3x3BlockDiagMatrix(const SymmetricMatrix& A, SymmetricMatrix& out);

#endif
