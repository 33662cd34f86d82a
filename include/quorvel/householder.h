// Householder: triangularisation, the square-root information update, and helpers of such filters.
#ifndef QUORVEL_HOUSEHOLDER_H
#define QUORVEL_HOUSEHOLDER_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

/// Reduces A (m x n, m >= n) to the n x n upper triangular R of A = Q*R; Q is not kept.
///
/// A itself always becomes R. With `inPlace`, or when A is dispensable, the result is A; otherwise the result is a new
/// dispensable copy of A *as it was before*, m x n (kept on purpose: read R from A). A matrix passed as a temporary is
/// thus transformed and returned.
///
///   RegularMatrix A(3, 2);                        // [3 0; 4 0; 0 5]
///   A(0, 0) = 3.0; A(1, 0) = 4.0; A(2, 1) = 5.0;
///   HouseholderTransformation(A, true);           // A is now [5 0; 0 5]
///
/// The diagonal is non-negative wherever a reflection took place: a column that already is zero below the diagonal,
/// and the last column of a square matrix, keep their sign. A diagonal element whose square is less than 1e-22 times
/// the squared length that its column had in the beginning becomes exactly 0.
///
/// Throws 50000 (A not ok), 40000 (fewer rows than columns), 10680 (memory; A is then unchanged). The singularity count
/// of A stays. Exact order: all sums over increasing rows; the bits of inv(RegularMatrix&) rest on the same reflections.
/// Cost: 2*n^2*(m - n/3) operations; scratch on the heap above 24 rows.
/// Golub, Van Loan, Matrix Computations, 5.2.1.
QUORVEL_API RegularMatrix& HouseholderTransformation(RegularMatrix& A, bool inPlace = false);

/// The same for a sparse A: values as of the dense transformation of the same finite matrix, zeros are not stored.
/// Memory: 32 doubles a row, and the reflection vectors' non-zero elements; exhausted memory is a std::bad_alloc and
/// leaves A unchanged. No reordering is made: order the rows by their first column, so that little fills in.
QUORVEL_API RegularSparseMatrix& HouseholderTransformation(RegularSparseMatrix& A, bool inPlace = false);

/// Measurement update of a square-root information filter: folds m measurements into the information pair (R, zR) by
/// Householder reflections of [R zR; A zA].
///
/// R is n x n, zR and zA are vectors (row or column) of n and m values, A is the m x n measurement matrix; rows and
/// columns of A beyond m x n are ignored. Measurements must be whitened: unit covariance. Afterwards R'*R is the new
/// information matrix (old R'*R + A'*A), R*x = zR gives the new estimate x, zA holds the residuals (the sum of their
/// squares is the growth of the sum of squares), and A holds the reflection vectors.
///
///   UpperTriangularMatrix R(1);
///   RegularMatrix zR(1, 1), A(1, 1), zA(1, 1);
///   R(0, 0) = zR(0) = 3.0;               // 3*x = 3 so far
///   A(0, 0) = zA(0) = 4.0;               // and now 4*x = 4
///   Householder_Reduction(1, R, zR, A, zA);   // R = [5], zR = [5], zA = [0]
///
/// The diagonal of R becomes non-negative in every column that has a measurement: where a reflection would make it
/// negative, the whole transformed row changes sign, and the rest of A and zA with it. A column of A that is zero is
/// skipped, and keeps the sign of its diagonal element.
///
/// Nothing is checked, neither sizes nor flags nor a pending code; nothing is consumed. m = 0 and n = 0 do nothing.
/// Throws 10680 (memory: scratch above order 24, before anything is changed). Exact order: sums over increasing r from
/// 0.0, then + u*R(j, k), times f = -1/(s*u). Cost: 2*m*n^2 operations.
/// Bierman, Factorization Methods for Discrete Sequential Estimation, 1977, chapter IV and V.2.
QUORVEL_API void Householder_Reduction(unsigned m, UpperTriangularMatrix& R, RegularMatrix& zR, RegularMatrix& A,
                                       RegularMatrix& zA);

/// v = U*v in place, v a column vector: x = Phi*x of the kinematic models without an allocation.
///
///   VecEqMatrixTimesSelf(v, U);
///
/// Throws 50000 (v or U not ok), 40000 (v is not one column, or its rows are not U's order). A dispensable U is
/// consumed; v never, except that a failed check destroys both. No allocation. Exact order: v(i)*U(i, i), then
/// + v(k)*U(i, k), k increasing.
QUORVEL_API void VecEqMatrixTimesSelf(RegularMatrix& v, const UpperTriangularMatrix& U);

/// The outer product x*y' of two column vectors with the same number of rows n, a new dispensable n x n matrix. A row
/// whose x(i) is exactly 0.0 is zero, also where y is infinite or NaN.
///
/// Throws 50000 (x or y not ok), 40000 (not one column each, or different rows), 10680. Dispensable operands are
/// consumed. The singularity count is -1.
///
///   RegularMatrix product(MOutPrd(v, w));   // product(i, j) == v(i)*w(j)
[[nodiscard]] QUORVEL_API RegularMatrix& MOutPrd(RegularMatrix& x, RegularMatrix& y);
[[nodiscard]] QUORVEL_API RegularMatrix& MOutPrd(const RegularMatrix& x, const RegularMatrix& y);

/// Packs the non-zero values among the first n elements of the column x into the first stored positions of `out`, in
/// increasing order, writes their indices into idx[0 ..] and returns their number. The rest of `out` stays. NaN is not
/// zero. x and `out` may be the same matrix. The index list is what RankOneUpdateNZ takes (together with x itself, not
/// with the packed values).
///
/// Throws 40360 (x is not one column), 60360 (n greater than the rows of x or of `out`, or `out` has no columns); flags
/// are not read. n = 0 returns 0, after these checks. A dispensable x is consumed, `out` never, except that a failed
/// check destroys both.
///
///   unsigned idx[4];
///   const unsigned k = SetNonZeros(4, v, packed, idx);
///   RankOneUpdateNZ(P, v, idx, k, v, idx, k, 2.0);   // P += 2*v*v', at a cost of k*k
QUORVEL_API unsigned SetNonZeros(unsigned n, RegularMatrix& x, RegularMatrix& out, unsigned* idx);
QUORVEL_API unsigned SetNonZeros(unsigned n, const RegularMatrix& x, RegularMatrix& out, unsigned* idx);

#endif
