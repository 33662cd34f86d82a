// Inverses and left division: any order, every kind.
//
// A pivot d is usable when |d| > 1e-200 (NaN is not). Singularity is no error: unusable pivots are counted in a
// singularity count and leave zeros. Misuse throws; so does order 0, for which inv (but of a diagonal matrix) ends as
// std::bad_array_new_length after its checks.
#ifndef QUORVEL_INVERSES_H
#define QUORVEL_INVERSES_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
// inv. The inverse lands in A when `inPlace` is true or A is dispensable; otherwise in a new dispensable matrix of the
// same kind, with A's elements unchanged. A const A is never written to unless it is dispensable. The singularity count
// is the result's. When an allocation fails in place, A's elements are unchanged (10680).
//
//     RegularMatrix B(inv(A));       // A unchanged
//     inv(P, true);                  // P becomes its inverse
//     const int lost = P.nsing();    // so many pivots were singular

/// 1/d for each usable diagonal element. Of the others a new matrix holds 0.0, while in place they stay as they are.
/// Throws 50570 when not ok. Order 0 gives an empty matrix with count 0.
QUORVEL_API DiagonalMatrix& inv(DiagonalMatrix& A, bool inPlace = false);
QUORVEL_API DiagonalMatrix& inv(const DiagonalMatrix& A, bool inPlace = false);

/// The triangular inverse; orders 2 and 3 go to inv2x2 and inv3x3. Row and column of an unusable diagonal element
/// become zero. With X(i, i) = 1/L(i, i), row by row: X(r, c) = -(w·X(r, r)), w = Σ L(r, j)·X(j, c), j = c .. r-1
/// increasing from 0.0, and 0.0 where w is 0.0; the upper inverse is the transpose of the inverse of the transpose, to
/// the last bit. Throws 50500 when not ok (orders 2 and 3: 50000). n³/3 operations; no allocation beyond a new result.
QUORVEL_API UpperTriangularMatrix& inv(UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API UpperTriangularMatrix& inv(const UpperTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv(LowerTriangularMatrix& A, bool inPlace = false);
QUORVEL_API LowerTriangularMatrix& inv(const LowerTriangularMatrix& A, bool inPlace = false);

/// A⁻¹ = R⁻¹·Qᵀ by Householder reflections; orders 2 and 3 go to inv2x2 and inv3x3. A diagonal element of R whose
/// square is less than 1e-22 times the squared length that its column had in A counts as 0: beyond a condition of 1e11
/// or so the result may therefore belong to a nearby singular matrix. To solve equations use A > b, which does no such
/// thing. When the inverse goes to a new matrix, A's own singularity count becomes 0 (kept).
///
/// Throws 50940 (not ok), 40900 (not square); order 2 and 3: 50000. 4·n³ operations; n(n + 1)/2 + 24n doubles of
/// scratch, on the stack up to order 24 (the 24n up to 128). Golub, Van Loan: Matrix Computations, 5.2.
QUORVEL_API RegularMatrix& inv(RegularMatrix& A, bool inPlace = false);
QUORVEL_API RegularMatrix& inv(const RegularMatrix& A, bool inPlace = false);

/// The upper triangle of the inverse that the full matrix has as a regular one (the two triangles of that inverse
/// differ by rounding; nothing is averaged). A's own singularity count stays. Throws 50940; orders 2 and 3: 50000. For
/// a positive definite matrix InverseByCholesky is faster and has no such rank test.
QUORVEL_API SymmetricMatrix& inv(SymmetricMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricMatrix& inv(const SymmetricMatrix& A, bool inPlace = false);

// Sparse kinds. Zeros of the result are not stored, and as long as nothing overflows its other values are those of the
// dense inverse to the last bit. In place the inverse takes the place of A's store when it is complete; it has A's
// block size. Beside it there are lists of the reflection vectors and of R, and panels of 32 columns; exhausted memory
// is a std::bad_alloc.

/// By reflections, orders 2 and 3 included. Codes and counts as for a regular matrix: 50940, 40900.
QUORVEL_API RegularSparseMatrix& inv(RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv(const RegularSparseMatrix& A, bool inPlace = false);
/// The upper triangle of the general inverse; orders 2 and 3 go to inv2x2 and inv3x3. Throws 50940 (orders 2 and
/// 3: 50000), 40900 (not square).
QUORVEL_API SymmetricSparseMatrix& inv(SymmetricSparseMatrix& A, bool inPlace = false);
QUORVEL_API SymmetricSparseMatrix& inv(const SymmetricSparseMatrix& A, bool inPlace = false);

/// The inverse of an upper (inv_ut) or lower (inv_lt) triangle that is kept in a regular sparse matrix; elements of the
/// other triangle must not be there and are not read. An absent diagonal element is a singular pivot. Orders 2 and 3
/// have no closed form here. Throws 50500 (not ok), 40500 (not square). Time: n² and the products of stored elements.
QUORVEL_API RegularSparseMatrix& inv_ut(RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv_ut(const RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv_lt(RegularSparseMatrix& A, bool inPlace = false);
QUORVEL_API RegularSparseMatrix& inv_lt(const RegularSparseMatrix& A, bool inPlace = false);

// ---------------------------------------------------------------------------------------------------------------------
// Left division: A > b. The solution X of A·X = b, column by column of b.
//
// X is b itself when b is dispensable, otherwise a new dispensable matrix; it keeps b's singularity count (a new sparse
// one has -1). A keeps its
// elements, is not consumed even when it is dispensable (keep hold of it), and its singularity count becomes the number
// of pivots that could not be used. A and b may be one object. Throws 50580 (not ok) and 40580 (columns of A differ
// from rows of b, or A not square: there is no least-squares solve); both operands, when dispensable, are destroyed
// then.
//
// Arithmetic binds tighter: A > b + c is A > (b + c), and (A > b) + c needs its parentheses. The operator of the same
// spelling that compares a dense matrix with a number (A > 0.5) is another one.
//
//     RegularMatrix x(N > b);
//     const bool unique = N.nsing() == 0;

/// Row i of b times 1/A(i). A row without a usable pivot is left as it is.
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(DiagonalMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const DiagonalMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const DiagonalMatrix& A, const RegularMatrix& b);

/// Substitution: row i of X is (b(i) - S)/A(i, i), S = Σ A(i, k)·X(k) from 0.0 over the rows that are solved, forwards
/// (k increasing) for a lower and backwards (k decreasing) for an upper A. Without a usable pivot the row becomes 0.0.
/// No scratch beyond one row of b.
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(LowerTriangularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const LowerTriangularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const LowerTriangularMatrix& A, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(UpperTriangularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const UpperTriangularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const UpperTriangularMatrix& A, const RegularMatrix& b);

/// Gaussian elimination with scaled partial pivoting, then refinement with residuals in twice the working precision (at
/// most 10 steps): as long as the condition of A stays clear of 1e16, X is the exact solution rounded, or next to it. A
/// may be indefinite. Where a column has no usable pivot its unknown is 0, the others solve what is left (a basic
/// solution of a consistent system), and nothing is refined. There is no relative rank test.
///
/// n³·2/3 operations and about 15·n² per column of b and step; scratch 2n² + 2nq + 4n + q doubles, on the stack up to
/// order 24 with a few columns. Higham: Accuracy and Stability of Numerical Algorithms, chapters 9 and 12.
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const SymmetricMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const SymmetricMatrix& A, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(RegularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const RegularMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const RegularMatrix& A, const RegularMatrix& b);

/// The same elimination and refinement on a dense copy of A (2n² doubles of scratch; 10680 or std::bad_array_new_length
/// when that is too much), so the same solution. A sparse solution holds no zeros.
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(RegularSparseMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const RegularSparseMatrix& A, RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator>(const RegularSparseMatrix& A, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(RegularSparseMatrix& A, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(const RegularSparseMatrix& A, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(const RegularSparseMatrix& A, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(SymmetricSparseMatrix& A, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(const SymmetricSparseMatrix& A, RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator>(const SymmetricSparseMatrix& A, const RegularSparseMatrix& b);

#endif
