// Products: Mult, operator*, and scaling by a number.
//
// The kind of a product follows from the kinds of its factors, so that a packed or sparse kind survives only where the
// mathematics keeps the structure:
//
//   a \ b             Diagonal       Upper    Lower    Symmetric  Regular  RegularSparse  SymmetricSparse
//   Diagonal          Diagonal       Upper    Lower    Regular    Regular  RegularSparse  RegularSparse
//   Upper             Upper          Upper    Regular  Regular    Regular  Regular        Regular
//   Lower             Lower          Regular  Lower    Regular    Regular  Regular        Regular
//   Symmetric         Regular        Regular  Regular  Regular    Regular  Regular        Regular
//   Regular           Regular        Regular  Regular  Regular    Regular  Regular        Regular
//   RegularSparse     RegularSparse  Regular  Regular  Regular    Regular  RegularSparse  RegularSparse
//   SymmetricSparse   RegularSparse  Regular  Regular  Regular    Regular  RegularSparse  RegularSparse
//
// The product of two symmetric matrices is general even when it happens to be symmetric; a symmetric result comes from
// the structured products (quorvel/structured.h).
#ifndef QUORVEL_PRODUCTS_H
#define QUORVEL_PRODUCTS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// ---------------------------------------------------------------------------------------------------------------------
/// Mult(result, a, b): result(i, j) = sum over k of a(i, k) * b(k, j). Returns the result.
///
/// Shapes: a is m x n, b is n x p, the result becomes m x p (its storage is reused, its old contents do not matter).
/// The result may be one of the factors: the product is then formed aside and swapped in.
///
/// Consumes dispensable factors, each object once, but never the result.
///
/// Throws 40320 when the columns of a and the rows of b differ, 50320 when a factor is not ok; for the products with a
/// sparse result (both factors sparse, or one sparse and one diagonal) 40294 and 50294. Throws 50000 when the result
/// is not ok. Nothing is written before the check has passed.
///
/// The singularity count of the result becomes -1.
///
/// Exact in this sense: every element is its own sum that starts from 0.0 and takes its terms in increasing k, the same
/// bits on every platform. Where a factor is structurally zero (outside a triangle, off a diagonal, an absent sparse
/// element) there is no term; a stored zero is multiplied, so a zero times infinity in a stored position gives NaN. A
/// sum without terms is 0.0. Sparse results hold no zeros.
///
/// Cost: m n p multiplications for full factors, a third to a half of it with triangular ones, one per stored element
/// and column (row) of the other factor with a sparse one. Allocates only the result.
///
///     RegularMatrix C;
///     Mult(C, A, B);   // C = A * B, storage of C reused from one call to the next
QUORVEL_API DiagonalMatrix& Mult(DiagonalMatrix& result, const DiagonalMatrix& a, const DiagonalMatrix& b);
QUORVEL_API UpperTriangularMatrix& Mult(UpperTriangularMatrix& result, const DiagonalMatrix& a,
                                        const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Mult(LowerTriangularMatrix& result, const DiagonalMatrix& a,
                                        const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const DiagonalMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const DiagonalMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const DiagonalMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const DiagonalMatrix& a,
                                      const SymmetricSparseMatrix& b);

QUORVEL_API UpperTriangularMatrix& Mult(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                        const DiagonalMatrix& b);
QUORVEL_API UpperTriangularMatrix& Mult(UpperTriangularMatrix& result, const UpperTriangularMatrix& a,
                                        const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);

QUORVEL_API LowerTriangularMatrix& Mult(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                        const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API LowerTriangularMatrix& Mult(LowerTriangularMatrix& result, const LowerTriangularMatrix& a,
                                        const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricMatrix& a, const SymmetricSparseMatrix& b);

QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const RegularSparseMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, const SymmetricSparseMatrix& b);

QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const RegularSparseMatrix& a,
                                      const SymmetricSparseMatrix& b);

QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const SymmetricSparseMatrix& a,
                                      const DiagonalMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const SymmetricSparseMatrix& a, const RegularMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const SymmetricSparseMatrix& a,
                                      const RegularSparseMatrix& b);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const SymmetricSparseMatrix& a,
                                      const SymmetricSparseMatrix& b);

// ---------------------------------------------------------------------------------------------------------------------
/// a * b as a new dispensable matrix; everything else as Mult. A factor's storage is never reused for the product.
///
/// Cost beyond Mult: the result object and its array.
///
///     RegularMatrix C(A * B);   // takes over the storage of the product
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator*(const DiagonalMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(const DiagonalMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(const DiagonalMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const DiagonalMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const DiagonalMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const DiagonalMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const DiagonalMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(const UpperTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(const UpperTriangularMatrix& a,
                                                           const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const UpperTriangularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const UpperTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const UpperTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const UpperTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const UpperTriangularMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(const LowerTriangularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const LowerTriangularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(const LowerTriangularMatrix& a,
                                                           const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const LowerTriangularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const LowerTriangularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const LowerTriangularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const LowerTriangularMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const RegularSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const RegularSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const RegularSparseMatrix& a, const SymmetricSparseMatrix& b);

[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const SymmetricSparseMatrix& a, const DiagonalMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricSparseMatrix& a, const UpperTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricSparseMatrix& a, const LowerTriangularMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricSparseMatrix& a, const SymmetricMatrix& b);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const SymmetricSparseMatrix& a, const RegularMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const SymmetricSparseMatrix& a, const RegularSparseMatrix& b);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const SymmetricSparseMatrix& a,
                                                         const SymmetricSparseMatrix& b);

// ---------------------------------------------------------------------------------------------------------------------
/// Mult(result, a, s): result = s * a, the size taken from a. Returns the result, which may be a.
///
/// Factors 0, 1 and -1 are special: s = 0 gives +0.0 everywhere, even over NaN and infinities, s = 1 copies and s = -1
/// negates. A sparse result scaled by 0 is emptied and keeps its own size.
///
/// Consumes a dispensable a that is not the result. Throws 50320 when a is not ok, 50000 when the result is not ok. The
/// result keeps its singularity count.
QUORVEL_API RegularMatrix& Mult(RegularMatrix& result, const RegularMatrix& a, double s);
QUORVEL_API SymmetricMatrix& Mult(SymmetricMatrix& result, const SymmetricMatrix& a, double s);
QUORVEL_API UpperTriangularMatrix& Mult(UpperTriangularMatrix& result, const UpperTriangularMatrix& a, double s);
QUORVEL_API LowerTriangularMatrix& Mult(LowerTriangularMatrix& result, const LowerTriangularMatrix& a, double s);
QUORVEL_API DiagonalMatrix& Mult(DiagonalMatrix& result, const DiagonalMatrix& a, double s);
QUORVEL_API RegularSparseMatrix& Mult(RegularSparseMatrix& result, const RegularSparseMatrix& a, double s);
QUORVEL_API SymmetricSparseMatrix& Mult(SymmetricSparseMatrix& result, const SymmetricSparseMatrix& a, double s);

// ---------------------------------------------------------------------------------------------------------------------
/// a * s and s * a: scales a dispensable a in place and returns it; otherwise a new dispensable copy, scaled. The
/// singularity count is a's (a sparse copy has -1). Special factors as in Mult, but the size is always a's. Throws
/// 50320 when a is not ok.
///
///     SymmetricMatrix P2(2.0 * (P + Q));   // one matrix in all: the sum is scaled in place
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(RegularMatrix& a, double s);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(const RegularMatrix& a, double s);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(double s, RegularMatrix& a);
[[nodiscard]] QUORVEL_API RegularMatrix& operator*(double s, const RegularMatrix& a);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator*(SymmetricMatrix& a, double s);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator*(const SymmetricMatrix& a, double s);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator*(double s, SymmetricMatrix& a);
[[nodiscard]] QUORVEL_API SymmetricMatrix& operator*(double s, const SymmetricMatrix& a);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(UpperTriangularMatrix& a, double s);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(const UpperTriangularMatrix& a, double s);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(double s, UpperTriangularMatrix& a);
[[nodiscard]] QUORVEL_API UpperTriangularMatrix& operator*(double s, const UpperTriangularMatrix& a);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(LowerTriangularMatrix& a, double s);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(const LowerTriangularMatrix& a, double s);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(double s, LowerTriangularMatrix& a);
[[nodiscard]] QUORVEL_API LowerTriangularMatrix& operator*(double s, const LowerTriangularMatrix& a);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator*(DiagonalMatrix& a, double s);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator*(const DiagonalMatrix& a, double s);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator*(double s, DiagonalMatrix& a);
[[nodiscard]] QUORVEL_API DiagonalMatrix& operator*(double s, const DiagonalMatrix& a);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(RegularSparseMatrix& a, double s);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(const RegularSparseMatrix& a, double s);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(double s, RegularSparseMatrix& a);
[[nodiscard]] QUORVEL_API RegularSparseMatrix& operator*(double s, const RegularSparseMatrix& a);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator*(SymmetricSparseMatrix& a, double s);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator*(const SymmetricSparseMatrix& a, double s);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator*(double s, SymmetricSparseMatrix& a);
[[nodiscard]] QUORVEL_API SymmetricSparseMatrix& operator*(double s, const SymmetricSparseMatrix& a);

#endif
