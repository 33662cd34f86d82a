// Structured products.
//
// These are the products that a filter or an adjustment forms again and again, each computed directly in the
// shape of its result.
//
// All families have in common:
//
// - Symmetric results are formed on the upper triangle only, so no element is computed twice and symmetry is exact.
// - Every element is its own sum that starts from 0.0 and takes its terms in increasing k: the same bits on every
//   platform. Structurally zero positions (outside a triangle, off a diagonal, absent sparse elements) give no term, a
//   stored zero does; a sum without terms is 0.0. Sparse results hold no zeros.
// - Results are new dispensable matrices with singularity count -1; dispensable operands are destroyed after use, an
//   operand that is given twice once.
// - Thrown: code + 40000 for shapes that do not fit, code + 50000 for an operand that is not ok; the code is 320 unless
//   the family says otherwise. Nothing is allocated before the check has passed.
#ifndef QUORVEL_STRUCTURED_H
#define QUORVEL_STRUCTURED_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
/// ATA(A) = A' A: normal matrix, information of unweighted observations. A is m x n, the result of order n:
/// (i, j) = sum over k of A(k, i) * A(k, j). Throws 50320; 10680 when memory is exhausted.
///
/// Cost: m n(n + 1)/2 multiplications. Allocates the result only; where A is dense and m and n are 500 or more, also
/// scratch of 128 m doubles, in which rows of A' lie one behind the other.
///
///     SymmetricMatrix N(ATA(A));
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATA(const RegularMatrix& A);
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATA(const RegularSparseMatrix& A);

/// AAT(A) = A A', of order rows(A): (i, j) = sum over k of A(i, k) * A(j, k). Throws 50320.
[[nodiscard]] QUORVEL_API SymmetricMatrix& AAT(const RegularMatrix& A);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AAT(const RegularSparseMatrix& A);

// ---------------------------------------------------------------------------------------------------------------------
/// ATB(A, B) = A' B, cols(A) x cols(B): (i, j) = sum over k of A(k, i) * B(k, j). Throws 40320 when the row counts
/// differ, 50320; 10680 when memory is exhausted.
///
/// Allocates the result only; where A and B are dense, not diagonal, and all of cols(A), cols(B) and rows(A) are 400 or
/// more, also scratch of 256 * rows(A) doubles, in which rows of A' lie one behind the other.
///
///     RegularMatrix b(ATB(A, y));   // right side of the normal equations
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularMatrix& A, const SymmetricMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularMatrix& A, const SymmetricSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularSparseMatrix& A, const SymmetricMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularSparseMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ATB(const RegularSparseMatrix& A, const SymmetricSparseMatrix& B);

/// ABT(A, B) = A B', rows(A) x rows(B): (i, j) = sum over k of A(i, k) * B(j, k). Throws 40320 when the column counts
/// differ, 50320.
///
///     RegularMatrix PHt(ABT(P, H));   // covariance of the state with the measurements
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const RegularMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const SymmetricMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const DiagonalMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const RegularSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const SymmetricSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const RegularMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const SymmetricMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const DiagonalMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& ABT(const SymmetricSparseMatrix& A, const RegularSparseMatrix& B);

// ---------------------------------------------------------------------------------------------------------------------
/// SymmetricOfProduct(A, B): the upper triangle of A B as a symmetric matrix, for products that are symmetric by
/// mathematics (a covariance times its own gain, say); of any other product the lower triangle is dropped. A is n x m,
/// B is m x n.
///
/// Throws 40320 when columns of A and rows of B differ, 50320; 40000 when the product is not square. The three-operand
/// form writes into R, keeps its flags, sets its singularity count to -1 and returns it; it throws 50000 when R is not
/// ok.
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfProduct(const RegularMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfProduct(const RegularMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfProduct(const RegularSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SymmetricOfProduct(const RegularSparseMatrix& A,
                                                                    const RegularSparseMatrix& B);
QUORVEL_API SymmetricMatrix& SymmetricOfProduct(SymmetricMatrix& R, const RegularSparseMatrix& A,
                                                const RegularSparseMatrix& B);

/// SymmetricOfABT(A, B): the upper triangle of A B' as a symmetric matrix; A and B are n x m. Throws 40320 when the
/// column counts differ, 50320; 40000 when the row counts differ.
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfABT(const RegularMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfABT(const RegularMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SymmetricOfABT(const RegularSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SymmetricOfABT(const RegularSparseMatrix& A,
                                                                const RegularSparseMatrix& B);

// ---------------------------------------------------------------------------------------------------------------------
/// UTU(U) = U' U of an upper triangular U (this is not U U'): (i, j) = sum over k <= min(i, j) of U(k, i) * U(k, j).
/// Elements of a sparse operand below the diagonal do not enter. Throws 50320; a sparse operand that is not square
/// 40320.
///
///     SymmetricMatrix information(UTU(R));   // of a square-root information filter
///
/// UTU does not give a matrix back from its CholeskySquareRootUpper, which is a root A = U U': that takes U * transpose(U).
[[nodiscard]] QUORVEL_API SymmetricMatrix& UTU(const UpperTriangularMatrix& U);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& UTU(const RegularSparseMatrix& U);

/// LTL(L) = L' L of a lower triangular L: (i, j) = sum over k >= max(i, j) of L(k, i) * L(k, j). Elements of a sparse
/// operand above the diagonal do not enter. Throws as UTU.
[[nodiscard]] QUORVEL_API SymmetricMatrix& LTL(const LowerTriangularMatrix& L);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& LTL(const RegularSparseMatrix& L);

// ---------------------------------------------------------------------------------------------------------------------
/// ATPA(A, P) = A' P A: normal matrix of weighted observations. A is m x n, P is m x m, the result of order n. Formed
/// row by row as (A' P) A: w(k) = sum over t of A(t, i) * P(t, k), then (i, j) = sum over t of w(t) * A(t, j), j >= i.
///
/// Thrown: 40000 when the row counts differ or P is not square (a symmetric sparse matrix may be made so), 50000.
///
/// With a block size, only the diagonal blocks of that size are formed: a SymmetricSparseMatrix of their non-zero
/// elements. 0 means one block, the whole matrix; any other size must divide the order. One that does not destroys the
/// dispensable operands and throws MatrixException with the bare value 0: nothing becomes pending and no callback runs.
/// (With order 0, only 0 is a block size.)
///
/// Cost: m^2 n + m n(n + 1)/2 multiplications. Scratch besides the result: up to m = 64 on the stack; beyond, m
/// times the smaller of n and 24 doubles (72 with a full P and n >= 192), of n and 8 with a diagonal or sparse P,
/// m > 4096 and n < 96; twice that with a sparse one.
///
///     SymmetricMatrix N(ATPA(A, P));
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATPA(const RegularMatrix& A, const SymmetricMatrix& P);
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATPA(const RegularMatrix& A, const DiagonalMatrix& P);
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATPA(const RegularMatrix& A, const SymmetricSparseMatrix& P);
[[nodiscard]] QUORVEL_API SymmetricMatrix& ATPA(const RegularSparseMatrix& A, const SymmetricMatrix& P);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularMatrix& A, const SymmetricMatrix& P, unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularMatrix& A, const DiagonalMatrix& P, unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularMatrix& A, const SymmetricSparseMatrix& P,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularSparseMatrix& A, const SymmetricMatrix& P,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularSparseMatrix& A, const DiagonalMatrix& P,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& ATPA(const RegularSparseMatrix& A, const SymmetricSparseMatrix& P,
                                                      unsigned block);

/// AQAT(A, Q) = A Q A': covariance propagation. A is n x m, Q is m x m, the result of order n:
/// w(k) = sum over t of A(i, t) * Q(t, k), then (i, j) = sum over t of w(t) * A(j, t), j >= i. Thrown: 40000 when the
/// columns of A and the rows of Q differ or Q is not square, 50000. Block sizes, cost and scratch as for ATPA.
///
///     SymmetricMatrix P2(AQAT(F, P) + Q);   // one array for the result in all
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularMatrix& A, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularMatrix& A, const DiagonalMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularMatrix& A, const SymmetricSparseMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularSparseMatrix& A, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularSparseMatrix& A, const DiagonalMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const RegularSparseMatrix& A, const SymmetricSparseMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& AQAT(const UpperTriangularMatrix& A, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularMatrix& A, const SymmetricMatrix& Q, unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularMatrix& A, const DiagonalMatrix& Q, unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularMatrix& A, const SymmetricSparseMatrix& Q,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularSparseMatrix& A, const SymmetricMatrix& Q,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularSparseMatrix& A, const DiagonalMatrix& Q,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const RegularSparseMatrix& A, const SymmetricSparseMatrix& Q,
                                                      unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& AQAT(const UpperTriangularMatrix& A, const SymmetricMatrix& Q,
                                                      unsigned block);

/// SQS(S, Q) = S Q S, of the common order: w(k) = sum over t of S(i, t) * Q(t, k), then (i, j) = sum over t of
/// w(t) * S(t, j), j >= i. A diagonal S scales rows and columns: each sum has one term. Thrown, block sizes, cost and
/// scratch as for AQAT.
///
///     SymmetricMatrix scaled(SQS(S, Q));   // S a diagonal of 1/sigma: correlations of a covariance Q
[[nodiscard]] QUORVEL_API SymmetricMatrix& SQS(const DiagonalMatrix& S, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SQS(const SymmetricMatrix& S, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SQS(const SymmetricMatrix& S, const SymmetricSparseMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SQS(const SymmetricSparseMatrix& S, const SymmetricMatrix& Q);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SQS(const DiagonalMatrix& S, const SymmetricMatrix& Q, unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SQS(const SymmetricMatrix& S, const SymmetricMatrix& Q,
                                                     unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SQS(const SymmetricMatrix& S, const SymmetricSparseMatrix& Q,
                                                     unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SQS(const SymmetricSparseMatrix& S, const SymmetricMatrix& Q,
                                                     unsigned block);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& SQS(const SymmetricSparseMatrix& S, const SymmetricSparseMatrix& Q,
                                                     unsigned block);

// ---------------------------------------------------------------------------------------------------------------------
/// PWeightedNorm(A, P) = v' P v with v the first column of A: the squared norm of residuals v with weights P (no root
/// is taken). P is n x n, n = rows(A). The inner sums w(i) = sum over k of v(k) * P(k, i) run up; the outer sum of
/// v(i) * w(i) runs down, from i = n - 1 to 0. 0.0 when n = 0.
///
/// Thrown: 40000 when the row counts differ, P is not square, or A has rows but no column; 50000.
///
/// Cost: n^2 + n multiplications; scratch of n doubles, on the stack up to n = 256.
///
///     const double chi2 = PWeightedNorm(v, P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularMatrix& A, const SymmetricMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularMatrix& A, const DiagonalMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularMatrix& A, const RegularMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularMatrix& A, const RegularSparseMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularMatrix& A, const SymmetricSparseMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularSparseMatrix& A, const SymmetricMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularSparseMatrix& A, const DiagonalMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularSparseMatrix& A, const RegularMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularSparseMatrix& A, const RegularSparseMatrix& P);
[[nodiscard]] QUORVEL_API double PWeightedNorm(const RegularSparseMatrix& A, const SymmetricSparseMatrix& P);

// ---------------------------------------------------------------------------------------------------------------------
/// Dot products of sparse lines over first <= k <= last: RowDotCol sum of A(i, k) * B(k, j), RowDotRow of
/// A(i, k) * B(j, k), ColDotCol of A(k, i) * B(k, j). Only elements that both lines store give a term. `last` is cut to
/// the end of the shorter line (npos: to the end); an empty range gives 0.0. A line of a symmetric sparse matrix is its
/// full line, mirrored elements included.
///
/// These are kernels: they check nothing but the line indices (62170 for a row, 62180 for a column outside the matrix)
/// and never destroy an operand.
[[nodiscard]] QUORVEL_API double RowDotCol(const RegularSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotCol(const RegularSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotCol(const SymmetricSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotCol(const SymmetricSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotRow(const RegularSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotRow(const RegularSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotRow(const SymmetricSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double RowDotRow(const SymmetricSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double ColDotCol(const RegularSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double ColDotCol(const RegularSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double ColDotCol(const SymmetricSparseMatrix& A, const RegularSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API double ColDotCol(const SymmetricSparseMatrix& A, const SymmetricSparseMatrix& B, unsigned i,
                                           unsigned j, unsigned first, unsigned last);

#endif
