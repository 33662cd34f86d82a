// Matrix functions: transposes, triangles and diagonals, traces and scalars, Kronecker products, swaps.
//
// Unless a function says otherwise, it returns a new dispensable matrix whose singularity count is -1, consumes a
// dispensable operand, and costs one allocation of exactly the result's storage (dense) or a time proportional to the
// stored elements and the lines (sparse). Results are exact copies of elements (signs of zero included) wherever no
// arithmetic is named. Exhausted memory throws 10680 for a dense result and std::bad_alloc for a sparse one.
#ifndef QUORVEL_MATRIX_FUNCTIONS_H
#define QUORVEL_MATRIX_FUNCTIONS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
// transpose

/// Aᵀ, n x m for A m x n.
///
/// Where the result lives: `out` when one is given (resized, keeps its own dispensable flag and singularity count; a
/// dispensable A is consumed); A itself when A is dispensable and no `out` is given, or when out == &A; otherwise a new
/// dispensable matrix. In place a square A is transposed by exchanges and keeps its singularity count; any other A
/// takes one allocation and its count becomes -1.
///
/// Throws 51040 when A is not ok, then 50000 when `out` is not ok (A, when dispensable, is consumed).
///
///     RegularMatrix B(transpose(A));   // A unchanged
///     transpose(A, &A);                // in place
QUORVEL_API RegularMatrix& transpose(RegularMatrix& A, RegularMatrix* out = nullptr);
QUORVEL_API RegularMatrix& transpose(const RegularMatrix& A, RegularMatrix* out = nullptr);

/// The other triangular kind with the same packed array, copied, or taken over from a dispensable A without a copy. The
/// singularity count goes along. Throws 51020 (upper operand) or 50140 (lower operand) when A is not ok.
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& transpose(UpperTriangularMatrix& A);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& transpose(const UpperTriangularMatrix& A);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& transpose(LowerTriangularMatrix& A);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& transpose(const LowerTriangularMatrix& A);

/// A new matrix with every stored element, stored zeros included. Throws 51050 when A is not ok.
[[nodiscard]] QUORVEL_API RegularSparseMatrix& transpose(RegularSparseMatrix& A);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& transpose(const RegularSparseMatrix& A);

// ---------------------------------------------------------------------------------------------------------------------
// Triangles and diagonals of a square matrix

/// The symmetric matrix that has A's upper triangle. Nothing is averaged: A's lower triangle is not read (for a mean
/// write 0.5 * (A + Aᵀ) first). The singularity count is A's. Throws 50420 (not ok), 40420 (not square).
///
///     SymmetricMatrix S(sym(A));                            // [1 2 3; 2 5 6; 3 6 9] of [1 2 3; 4 5 6; 7 8 9]
///     SymmetricMatrix mean(sym(0.5 * (A + transpose(A))));   // [1 3 5; 3 5 7; 5 7 9]
[[nodiscard]] QUORVEL_API SymmetricMatrix& sym(const RegularMatrix& A);
/// The same of a sparse matrix; stored zeros are left out, and the singularity count is -1. Throws 50422 (not ok),
/// 40422 (not square).
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& sym(const RegularSparseMatrix& A);

/// The upper triangle, diagonal included; a -0.0 of A becomes 0.0. Throws 50390 (not ok), 40390 (not square).
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& triu(const RegularMatrix& A);
/// The lower triangle, diagonal included; a -0.0 of A becomes 0.0. Throws 50410 (not ok), 40410 (not square).
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& tril(const RegularMatrix& A);
/// The triangle of a symmetric matrix: its packed array as it stands, taken over from a dispensable A without a copy.
/// Throws 50390 (triu), 50410 (tril) when A is not ok.
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& triu(const SymmetricMatrix& A);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& tril(const SymmetricMatrix& A);
/// The triangles of a square sparse matrix of either kind (of a symmetric one, of the full matrix); stored zeros are
/// left out. Throw 50391, 40391 (triu) and 50393, 40393 (tril) when not ok, not square.
[[nodiscard]] QUORVEL_API RegularSparseMatrix& triu(const SparseMatrix& A);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& tril(const SparseMatrix& A);

/// The diagonal of a square matrix, absent cells as 0.0. Throws 50460 (not ok), and 40460 (not square) for a regular or
/// sparse A.
[[nodiscard]] QUORVEL_API DiagonalMatrix& diag(const RegularMatrix& A);
[[nodiscard]] QUORVEL_API DiagonalMatrix& diag(const SymmetricMatrix& A);
[[nodiscard]] QUORVEL_API DiagonalMatrix& diag(const UpperTriangularMatrix& A);
[[nodiscard]] QUORVEL_API DiagonalMatrix& diag(const LowerTriangularMatrix& A);
[[nodiscard]] QUORVEL_API DiagonalMatrix& diag(const SparseMatrix& A);

/// The n x n diagonal matrix with every diagonal value v. A pending code is not looked at.
///
///     A += eye(3, 0.5);
[[nodiscard]] QUORVEL_API DiagonalMatrix& eye(unsigned n, double v);

// ---------------------------------------------------------------------------------------------------------------------
// Numbers. Sums start at 0.0 and run in increasing index.

/// Σ A(i, i), i < min(rows, columns): a regular or sparse A need not be square. 0.0 when there is none. Consumes a
/// dispensable A. Throws 50460 when A is not ok.
[[nodiscard]] QUORVEL_API double trace(const RegularMatrix& A);
[[nodiscard]] QUORVEL_API double trace(const SymmetricMatrix& A);
[[nodiscard]] QUORVEL_API double trace(const UpperTriangularMatrix& A);
[[nodiscard]] QUORVEL_API double trace(const LowerTriangularMatrix& A);
[[nodiscard]] QUORVEL_API double trace(const DiagonalMatrix& A);
[[nodiscard]] QUORVEL_API double trace(const SparseMatrix& A);

/// Element (0, 0), whatever the size of A (0.0 when A is empty): turns a 1 x 1 result into a number. Consumes a
/// dispensable A. Throws 50430 when A is not ok.
///
///     double chi2 = scalar(transpose(r) * W * r);
[[nodiscard]] QUORVEL_API double scalar(const RegularMatrix& A);
[[nodiscard]] QUORVEL_API double scalar(const SymmetricMatrix& A);
[[nodiscard]] QUORVEL_API double scalar(const UpperTriangularMatrix& A);
[[nodiscard]] QUORVEL_API double scalar(const LowerTriangularMatrix& A);
[[nodiscard]] QUORVEL_API double scalar(const DiagonalMatrix& A);
[[nodiscard]] QUORVEL_API double scalar(const SparseMatrix& A);

/// aᵀ·b for column vectors: Σ a(k, 0)·b(k, 0), k < min(rows(a), rows(b)). Of wider operands only the first column is
/// read; an operand without columns gives 0.0. Checks nothing, and consumes nothing: a dispensable operand stays alive
/// and leaks unless something else consumes it.
[[nodiscard]] QUORVEL_API double dot(const RegularMatrix& a, const RegularMatrix& b);

// ---------------------------------------------------------------------------------------------------------------------
// Kronecker products

/// A ⊗ B: element (i·p + k, j·q + l) = A(i, j)·B(k, l) for B p x q; size (rows(A)·p) x (columns(A)·q). The result is
/// diagonal for two diagonal operands, symmetric for two symmetric or diagonal ones, regular as soon as a regular
/// matrix takes part. Every element of a dense result is that one product, with implicit zeros of A and B read as 0.0
/// (so that infinities meet them as NaN); of a diagonal result only the diagonal exists. A sparse operand makes the
/// result sparse, symmetric for symmetric sparse and diagonal ones: it holds the products of stored elements that are
/// not 0.0.
///
/// Consumes nothing, unlike its siblings: a dispensable operand stays alive after success and leaks unless something
/// else consumes it. The same object may be given twice. Throws 50000 (not ok) and 40000 (empty, or symmetric
/// sparse and not square), A before B; the refused operand is destroyed when dispensable. A result of 2^28 doubles or
/// more is a std::bad_array_new_length.
///
///     DiagonalMatrix three(eye(3, 1.0));
///     RegularMatrix F(kron(Phi, three));   // one model on three axes: [Phi(0, 0)·I Phi(0, 1)·I; ...]
[[nodiscard]] QUORVEL_API DiagonalMatrix& kron(const DiagonalMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& kron(const DiagonalMatrix& A, const SymmetricMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& kron(const SymmetricMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricMatrix& kron(const SymmetricMatrix& A, const SymmetricMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& kron(const DiagonalMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& kron(const RegularMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& kron(const SymmetricMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& kron(const RegularMatrix& A, const SymmetricMatrix& B);
[[nodiscard]] QUORVEL_API RegularMatrix& kron(const RegularMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& kron(const DiagonalMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& kron(const RegularSparseMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& kron(const RegularMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& kron(const RegularSparseMatrix& A, const RegularMatrix& B);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& kron(const RegularSparseMatrix& A, const RegularSparseMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& kron(const DiagonalMatrix& A, const SymmetricSparseMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& kron(const SymmetricSparseMatrix& A, const DiagonalMatrix& B);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& kron(const SymmetricSparseMatrix& A, const SymmetricSparseMatrix& B);

// ---------------------------------------------------------------------------------------------------------------------
// Swaps

namespace std {

/// The member Swap of the kind: exchanges everything but the dispensable flags. Nothing for the same object.
QUORVEL_API void swap(RegularMatrix& a, RegularMatrix& b) noexcept;
QUORVEL_API void swap(SymmetricMatrix& a, SymmetricMatrix& b) noexcept;
QUORVEL_API void swap(UpperTriangularMatrix& a, UpperTriangularMatrix& b) noexcept;
QUORVEL_API void swap(LowerTriangularMatrix& a, LowerTriangularMatrix& b) noexcept;
QUORVEL_API void swap(DiagonalMatrix& a, DiagonalMatrix& b) noexcept;
QUORVEL_API void swap(RegularSparseMatrix& a, RegularSparseMatrix& b) noexcept;
QUORVEL_API void swap(SymmetricSparseMatrix& a, SymmetricSparseMatrix& b) noexcept;

}  // namespace std

#endif
