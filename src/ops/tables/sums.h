// The pairs of kinds that have a sum and a difference: all 49, as rows. Definitions, compound members and tests expand
// from here; the header declares the same functions as ordinary text. This file is data: it includes nothing.
//
// LIKE(kind, method, code)             two of one kind
// TARGET(result, other, method, code)  the operand of the result's kind is updated by the other one, in both orders
// FRESH(left, right, method, code)     the result is a new RegularMatrix, in both orders
// METHOD names the algorithm (src/ops/sum_methods.h, src/ops/sparse_sums.h), CODE the operation code of the check.
#ifndef QUORVEL_OPS_TABLES_SUMS_H
#define QUORVEL_OPS_TABLES_SUMS_H

#define QUORVEL_DENSE_LIKE_SUMS(LIKE)                      \
  LIKE(RegularMatrix, Elementwise, sum_like)               \
  LIKE(SymmetricMatrix, Elementwise, sum_like)             \
  LIKE(UpperTriangularMatrix, Elementwise, sum_like)       \
  LIKE(LowerTriangularMatrix, Elementwise, sum_like)       \
  LIKE(DiagonalMatrix, Elementwise, sum_like)

#define QUORVEL_SPARSE_LIKE_SUMS(LIKE)                     \
  LIKE(RegularSparseMatrix, SparseMerge, none)             \
  LIKE(SymmetricSparseMatrix, SparseMerge, none)

#define QUORVEL_DENSE_TARGET_SUMS(TARGET)                            \
  TARGET(RegularMatrix, SymmetricMatrix, ByBlocks, sum_mixed)        \
  TARGET(RegularMatrix, UpperTriangularMatrix, ByBlocks, sum_mixed)  \
  TARGET(RegularMatrix, LowerTriangularMatrix, ByBlocks, sum_mixed)  \
  TARGET(RegularMatrix, DiagonalMatrix, OnDiagonal, sum_mixed)       \
  TARGET(SymmetricMatrix, DiagonalMatrix, OnDiagonal, sum_mixed)     \
  TARGET(UpperTriangularMatrix, DiagonalMatrix, OnDiagonal, sum_mixed) \
  TARGET(LowerTriangularMatrix, DiagonalMatrix, OnDiagonal, sum_mixed)

#define QUORVEL_DENSE_SPARSE_TARGET_SUMS(TARGET)                     \
  TARGET(RegularMatrix, RegularSparseMatrix, StoredOnDense, none)    \
  TARGET(RegularMatrix, SymmetricSparseMatrix, StoredOnDense, none)  \
  TARGET(SymmetricMatrix, SymmetricSparseMatrix, StoredOnDense, none)

#define QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(TARGET)                  \
  TARGET(RegularSparseMatrix, DiagonalMatrix, OnDiagonal, none)      \
  TARGET(SymmetricSparseMatrix, DiagonalMatrix, OnDiagonal, none)

#define QUORVEL_SPARSE_MIXED_SUMS(TARGET) \
  TARGET(RegularSparseMatrix, SymmetricSparseMatrix, SparseMerge, none)

#define QUORVEL_DENSE_FRESH_SUMS(FRESH)                                   \
  FRESH(SymmetricMatrix, UpperTriangularMatrix, ByBlocks, sum_mixed)      \
  FRESH(SymmetricMatrix, LowerTriangularMatrix, ByBlocks, sum_mixed)      \
  FRESH(UpperTriangularMatrix, LowerTriangularMatrix, ByBlocks, sum_mixed)

#define QUORVEL_DENSE_SPARSE_FRESH_SUMS(FRESH)                       \
  FRESH(RegularSparseMatrix, SymmetricMatrix, StoredOnDense, none)       \
  FRESH(RegularSparseMatrix, UpperTriangularMatrix, StoredOnDense, none) \
  FRESH(RegularSparseMatrix, LowerTriangularMatrix, StoredOnDense, none) \
  FRESH(SymmetricSparseMatrix, UpperTriangularMatrix, StoredOnDense, none) \
  FRESH(SymmetricSparseMatrix, LowerTriangularMatrix, StoredOnDense, none)

// Sums of a sparse matrix in place with a dense one that is converted to its own kind first.
#define QUORVEL_CONVERTED_SUMS(ROW)                 \
  ROW(RegularSparseMatrix, RegularMatrix)           \
  ROW(RegularSparseMatrix, SymmetricMatrix)         \
  ROW(RegularSparseMatrix, UpperTriangularMatrix)   \
  ROW(RegularSparseMatrix, LowerTriangularMatrix)   \
  ROW(SymmetricSparseMatrix, SymmetricMatrix)

// Operators exist for each pair with its operand of the result's kind (like kinds: both) by non-const reference, and
// with both by const reference. Since kinds convert into one another, a few calls would be ambiguous with these forms
// alone: the rows below add what makes them exact. ROW(result, left, right), types as written.
#define QUORVEL_EXACT_SUM_FORMS(ROW)                                         \
  ROW(RegularMatrix, RegularMatrix, const RegularMatrix)                     \
  ROW(RegularMatrix, const RegularMatrix, RegularMatrix)                     \
  ROW(SymmetricMatrix, SymmetricMatrix, const SymmetricMatrix)               \
  ROW(SymmetricMatrix, const SymmetricMatrix, SymmetricMatrix)               \
  ROW(RegularMatrix, RegularSparseMatrix, const SymmetricMatrix)             \
  ROW(RegularMatrix, const SymmetricMatrix, RegularSparseMatrix)

#define QUORVEL_LIKE_SUMS(LIKE) QUORVEL_DENSE_LIKE_SUMS(LIKE) QUORVEL_SPARSE_LIKE_SUMS(LIKE)
#define QUORVEL_TARGET_SUMS(TARGET)                                             \
  QUORVEL_DENSE_TARGET_SUMS(TARGET) QUORVEL_DENSE_SPARSE_TARGET_SUMS(TARGET)    \
  QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(TARGET) QUORVEL_SPARSE_MIXED_SUMS(TARGET)
#define QUORVEL_FRESH_SUMS(FRESH) QUORVEL_DENSE_FRESH_SUMS(FRESH) QUORVEL_DENSE_SPARSE_FRESH_SUMS(FRESH)

#endif
