// U-D factors: factorisation, filter updates, rank-one updates.
//
// A U-D filter carries its covariance as P = U*D*U' with U unit upper triangular and D diagonal. UDFactor begins it,
// UDTimeUpdate and UDMeasurementUpdate run it. P itself is never formed, so it cannot lose symmetry or definiteness.
//
//   UpperTriangularMatrix U;
//   DiagonalMatrix D;
//   UDFactor(U, D, P0);
//   for (const double z : measured) {
//     x = Phi * x;
//     UDTimeUpdate(U, D, Phi, G, Q);
//     const double s = UDMeasurementUpdate(U, D, h, r, K);   // h*x measured as z with variance r; s: innovation variance
//     x += K * (z - scalar(h * x));
//   }
#ifndef QUORVEL_UD_H
#define QUORVEL_UD_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
// Factorisation

/// P = U*D*U' of a symmetric P, from the last column to the first:
///
///   d(j) = P(j, j) - sum of d(k)*U(j, k)^2, k > j;   U(i, j) = (P(i, j) - sum of d(k)*U(i, k)*U(j, k), k > j)/d(j)
///
/// U gets a unit diagonal. A pivot d(j) that does not satisfy |d(j)| > 1e-200 (NaN does not) is singular: d(j) becomes
/// 0 and column j of U zero above the diagonal; the number of such pivots is the singularity count of U and of D. A
/// semi-definite P is thus factored as far as it goes, and the filter runs on. A P with negative eigenvalues gives
/// negative d(j).
///
/// U and D take P's order; P is consumed when dispensable. Throws 50000 (U, D or P not ok), 40000 / 60000 (a
/// dispensable U or D of another order), 10680. Exact order: X(k) = d(k)*U(j, k), sums of U(i, k)*X(k) over increasing k
/// from 0.0, one subtraction, one division. Cost: n^3/3 operations, scratch on the heap above order 24.
/// Bierman, Factorization Methods for Discrete Sequential Estimation, 1977, III.3.
QUORVEL_API void UDFactor(UpperTriangularMatrix& U, DiagonalMatrix& D, const SymmetricMatrix& P);

/// The older form, kept as it is: U(i, j) = P(i, j)/d(j) - sum of U(i, k)*X(k), the sum *not* divided by d(j). From
/// order 3 on U*D*U' is therefore not P in general: use UDFactor for a filter.
///
/// No pivot is tested (0 gives infinities and NaN) and nothing is counted; the counts of U and D stay. U and D take P's
/// order; P is not checked, and consumed when dispensable. Throws 50000 (U or D not ok), 40000 / 60000 (a dispensable U
/// or D of another order), 10680. Exact order and cost as UDFactor, with the division first.
QUORVEL_API void UDDecomposition(UpperTriangularMatrix& U, DiagonalMatrix& D, const SymmetricMatrix& P);

/// The same with D's elements on the diagonal of U (whose unit diagonal is implied).
QUORVEL_API void UDDecomposition(UpperTriangularMatrix& U, const SymmetricMatrix& P);

/// Number of diagonal elements with |d| < 1e-200, which also becomes the singularity count of T. Strict: exactly 1e-200
/// is not counted here, while the inverses take it as singular. NaN is not counted. Of a sparse matrix that is not
/// square the first min(rows, columns) elements count, absent ones as 0. Nothing is checked or consumed.
QUORVEL_API int SingularityCountULD(const UpperTriangularMatrix& T);
QUORVEL_API int SingularityCountULD(const LowerTriangularMatrix& T);
QUORVEL_API int SingularityCountULD(const DiagonalMatrix& T);
QUORVEL_API int SingularityCountULD(const SparseMatrix& T);

// ---------------------------------------------------------------------------------------------------------------------
// Filter updates. U must have a unit diagonal (it is not read) and D no negative element; then D stays so. Only the
// factors are updated: the state x is the caller's. U, D and K are never consumed on success; other dispensable
// operands are. The singularity counts stay.

/// Measurement update with one scalar measurement z = h*x + e of variance r >= 0: P becomes P - K*s*K' with the
/// innovation variance s = h*P*h' + r, which is returned, and the gain K = P*h'/s.
///
/// h is a row or a column of n values, K becomes n x 1. Then x += K*(z - h*x). For several measurements call it for
/// each in turn, with correlated errors decorrelated before.
///
/// A measurement without error (r = 0) is allowed: partial sums of the innovation variance up to 1e-200 count as 0;
/// when s itself does, P and x cannot change, and K is 0.
///
/// Throws 50000 (an operand not ok), 40000 (U, D, h of different orders), 10680. Cost: 2*n^2 operations, no allocation
/// beyond K; scratch on the heap above order 24.
/// Bierman, Factorization Methods for Discrete Sequential Estimation, 1977, V.3.
QUORVEL_API double UDMeasurementUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& h, double r,
                                       RegularMatrix& K);

/// Time update: P becomes Phi*P*Phi' + G*Q*G', with Phi n x n, G n x q, Q diagonal of order q, none negative. q = 0 is
/// no process noise. Then x = Phi*x.
///
/// A singular result (a new d(j) that does not pass 1e-200) gets d(j) = 0 and a zero column of U.
///
/// Throws 50000 (an operand not ok), 40000 (sizes), 10680 (then U and D are unchanged). Cost: n^2*(2n + 2q) operations;
/// scratch on the heap above order 24.
/// Thornton, Triangular Covariance Factorizations for Kalman Filtering, 1976 (modified weighted Gram-Schmidt); Bierman
/// 1977, VI.4.
QUORVEL_API void UDTimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi,
                              const RegularMatrix& G, const DiagonalMatrix& Q);

/// The same with P becoming Phi*P*Phi' + Q for a full positive semi-definite Q of order n, which is factored first.
QUORVEL_API void UDTimeUpdate(UpperTriangularMatrix& U, DiagonalMatrix& D, const RegularMatrix& Phi,
                              const SymmetricMatrix& Q);

// ---------------------------------------------------------------------------------------------------------------------
// Rank-one updates. Singularity counts stay; no allocation. Each element gets one product and one addition.

/// P += a*v*v' with n values v. Throws 50400 (P not ok).
///
///   const double v[] = {1, 2};
///   RankOneUpdate(P, v, 0.5);   // P += [0.5 1; 1 2]
QUORVEL_API void RankOneUpdate(SymmetricMatrix& P, const double* v, double a);

/// A += a*x*y' with vectors x, y (row or column) of as many values as A has rows and columns. The symmetric update is
/// a*x*x': y is not read, on purpose. Only a pending code is thrown: sizes and flags of the vectors are not checked.
/// Dispensable x and y are consumed. (70400: the target's kind tag is corrupt.)
QUORVEL_API void RankOneUpdate(SymmetricMatrix& A, const RegularMatrix& x, const RegularMatrix& y, double a);
QUORVEL_API void RankOneUpdate(RegularMatrix& A, const RegularMatrix& x, const RegularMatrix& y, double a);

/// The same for the listed rows xnz[0 .. nx-1] and columns ynz[0 .. ny-1] only: A(i, j) += (x(i)*a)*y(j). x and y are
/// full vectors indexed by the listed indices (SetNonZeros makes the lists). Of a symmetric A, pairs with i < j are
/// skipped, so that with equal lists each stored element is updated once, and the column's factor is x(j). Indices are
/// not checked. Cost: nx*ny.
QUORVEL_API void RankOneUpdateNZ(SymmetricMatrix& A, const RegularMatrix& x, const unsigned* xnz, unsigned nx,
                                 const RegularMatrix& y, const unsigned* ynz, unsigned ny, double a);
QUORVEL_API void RankOneUpdateNZ(RegularMatrix& A, const RegularMatrix& x, const unsigned* xnz, unsigned nx,
                                 const RegularMatrix& y, const unsigned* ynz, unsigned ny, double a);

/// The same for a sparse target of either kind with sparse column vectors: x(i) is cell (i, 0), absent cells count as
/// 0. An element that becomes exactly 0 is removed. Of a symmetric target pairs with i < j are skipped and y is not
/// read. Throws 70400 (kind tag), 62060 (an index outside A), std::bad_alloc.
QUORVEL_API void RankOneUpdateNZ(SparseMatrix& A, const RegularSparseMatrix& x, const unsigned* xnz, unsigned nx,
                                 const RegularSparseMatrix& y, const unsigned* ynz, unsigned ny, double a);

#endif
