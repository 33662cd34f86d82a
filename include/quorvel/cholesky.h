// Cholesky: factors, roots and the inverse through them.
//
// All results are new dispensable matrices. A dispensable operand is consumed. Order 0 gives an empty factor.
#ifndef QUORVEL_CHOLESKY_H
#define QUORVEL_CHOLESKY_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

/// The tolerant factor A = L*L' of a symmetric positive semi-definite A, for covariances that may be singular.
///
/// Row i is singular when its reduced pivot x satisfies |x| < |tol*A(i, i)|, strictly: the tolerance is relative to
/// the row's own diagonal element, 1e-12 is usual, and 0 finds nothing. Row and column i of L are then zero. The number
/// of singular rows is the singularity count of the factor, and of A unless A was dispensable.
///
///   SymmetricMatrix A(2);                          // [4 2; 2 1] has rank 1
///   A(0, 0) = 4.0; A(0, 1) = 2.0; A(1, 1) = 1.0;
///   LowerTriangularMatrix L(CholeskyFactor(A, 1e-10));   // [2 0; 0 0], L.nsing() == 1, A.nsing() == 1
///
/// A diagonal element of exactly 0 whose pivot is 0 escapes the strict test: its column is divided by 0, the elements
/// below become infinite or NaN. A negative pivot that is not small gives NaN. A negative diagonal element of A
/// is no covariance: it ends the process (assertion "!(unreduced_diagonal < 0.0)").
///
/// Throws 50510 (A not ok), 10680 (memory). Exact order: S = sum of L(i, k)*L(j, k), k increasing from 0.0;
/// L(i, j) = (A(i, j) - S)*(1/sqrt(pivot of j)); the stored diagonal is 1/(1/sqrt(pivot)). Cost: n^3/3 operations, one
/// array for the result (none when A is dispensable), no other memory.
/// Golub, Van Loan, Matrix Computations, 4.2.
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& CholeskyFactor(SymmetricMatrix& A, double tol);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& CholeskyFactor(const SymmetricMatrix& A, double tol);

/// The same for a sparse A; L is an n x n sparse matrix that holds its lower triangle only. It never stores a zero.
///
/// Values and counts equal those of the dense factor of the same finite matrix, except that a row without any element
/// (in the lower triangle, singular columns left out) is skipped: diag(4, 0, 9) gives diag(2, -, 3) and count 0. Throws
/// 50510 (A not ok), 40393 (A not square), std::bad_alloc. Cost: operations on stored elements and fill-in only; no
/// reordering is made, so order the unknowns so that little fills in.
[[nodiscard]] QUORVEL_API RegularSparseMatrix& CholeskyFactor(SymmetricSparseMatrix& A, double tol);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& CholeskyFactor(const SymmetricSparseMatrix& A, double tol);

/// The plain root A = L*L' of a positive definite A, without tolerance: a pivot of 0 gives infinities or NaN, a
/// negative one NaN, and nothing is counted (the singularity count is -1).
///
/// Throws 50000 (A not ok), 10680. Exact order: S = sum of L(i, k)*L(j, k), k increasing from 0.0;
/// L(i, j) = (A(i, j) - S)/L(j, j), L(i, i) = sqrt(A(i, i) - S). Cost and memory as CholeskyFactor.
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& CholeskySquareRootLower(const SymmetricMatrix& A);

/// The plain root A = U*U' (not U'*U) with U upper triangular, built from the last row upwards, as square-root
/// covariance filters need it. [4 2; 2 2] gives [sqrt(2) sqrt(2); 0 sqrt(2)].
///
///   UpperTriangularMatrix U(CholeskySquareRootUpper(A));
///   SymmetricMatrix back(sym(U * transpose(U)));           // A, up to rounding
///
/// Codes, singular cases and cost as the lower root, with scratch on the heap above order 24. Exact order: S = sum of
/// U(r, k)*U(c, k), k = c+1 .. n-1 increasing from 0.0; U(r, c) = (A(r, c) - S)/U(c, c), U(r, r) = sqrt(A(r, r) - S).
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& CholeskySquareRootUpper(const SymmetricMatrix& A);

/// The plain roots of a sparse A, as n x n sparse matrices that hold one triangle; zeros are not stored. Values as the
/// dense roots. A diagonal element of 0 or NaN makes every later row (earlier, for the upper root) NaN there. Throw
/// 50000 (A not ok), 40000 (A not square), std::bad_alloc.
[[nodiscard]] QUORVEL_API RegularSparseMatrix& CholeskySquareRootLower(const SymmetricSparseMatrix& A);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& CholeskySquareRootUpper(const SymmetricSparseMatrix& A);

/// The inverse of a symmetric positive semi-definite A through its tolerant factor: inv(L)'*inv(L), a new dispensable
/// symmetric matrix. Half the work of inv(A), and the natural way to a covariance from an information matrix.
///
///   SymmetricMatrix P(InverseByCholesky(N, 1e-12));
///   const bool all = P.nsing() == 0;  // else some unknowns are not determined: their rows and columns of P are zero
///
/// Orders 2 and 3 take the closed forms inv2x2 and inv3x3: tol is not used then, the result carries the count, A's
/// stays, and a dispensable A is inverted in place and returned. Every other order: A gets the count of CholeskyFactor
/// (unless it is dispensable), the result that of the triangular inverse, which counts every pivot of L that does not
/// satisfy |d| > 1e-200: singular rows again, and infinite or NaN ones that escaped the tolerance.
///
/// Throws 50510 (A not ok; 50000 for orders 2 and 3), 10680, std::bad_array_new_length for order 0. A negative diagonal
/// element ends the process as in CholeskyFactor. Exact order: triangular inverse with reciprocal diagonal, then
/// sums over increasing k from 0.0. Cost: 2*n^3/3 operations; one array, in which the factor, its inverse and the result
/// follow one another; scratch of 24*n doubles, on the heap above order 128.
[[nodiscard]] QUORVEL_API SymmetricMatrix& InverseByCholesky(SymmetricMatrix& A, double tol);
[[nodiscard]] QUORVEL_API SymmetricMatrix& InverseByCholesky(const SymmetricMatrix& A, double tol);

/// The same for a sparse A, with a sparse inverse (which is mostly full, so this serves block-diagonal matrices best).
/// Throws as the dense form, also 40393 (A not square); exhausted memory is a std::bad_alloc. A row without elements is
/// skipped by the factorisation and counted by the triangular inverse.
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& InverseByCholesky(SymmetricSparseMatrix& A, double tol);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& InverseByCholesky(const SymmetricSparseMatrix& A, double tol);

#endif
