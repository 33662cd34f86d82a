// Products: result kind, left and right factor; and the kinds that are scaled. Data only.
#ifndef QUORVEL_OPS_TABLES_PRODUCTS_H
#define QUORVEL_OPS_TABLES_PRODUCTS_H

// Both factors dense: code 320.
#define QUORVEL_DENSE_PRODUCTS(ROW) \
  ROW(DiagonalMatrix, DiagonalMatrix, DiagonalMatrix) \
  ROW(UpperTriangularMatrix, DiagonalMatrix, UpperTriangularMatrix) \
  ROW(LowerTriangularMatrix, DiagonalMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, DiagonalMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, DiagonalMatrix, RegularMatrix) \
  ROW(UpperTriangularMatrix, UpperTriangularMatrix, DiagonalMatrix) \
  ROW(UpperTriangularMatrix, UpperTriangularMatrix, UpperTriangularMatrix) \
  ROW(RegularMatrix, UpperTriangularMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, UpperTriangularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, UpperTriangularMatrix, RegularMatrix) \
  ROW(LowerTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, LowerTriangularMatrix, UpperTriangularMatrix) \
  ROW(LowerTriangularMatrix, LowerTriangularMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, LowerTriangularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, LowerTriangularMatrix, RegularMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, UpperTriangularMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, RegularMatrix) \
  ROW(RegularMatrix, RegularMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, RegularMatrix, UpperTriangularMatrix) \
  ROW(RegularMatrix, RegularMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, RegularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, RegularMatrix, RegularMatrix)

// One factor sparse, result dense: code 320.
#define QUORVEL_MIXED_PRODUCTS(ROW) \
  ROW(RegularMatrix, UpperTriangularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, UpperTriangularMatrix, SymmetricSparseMatrix) \
  ROW(RegularMatrix, LowerTriangularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, LowerTriangularMatrix, SymmetricSparseMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, SymmetricSparseMatrix) \
  ROW(RegularMatrix, RegularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, RegularMatrix, SymmetricSparseMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, UpperTriangularMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, RegularMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, UpperTriangularMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, LowerTriangularMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, RegularMatrix)

// Sparse result: code 294.
#define QUORVEL_SPARSE_PRODUCTS(ROW) \
  ROW(RegularSparseMatrix, DiagonalMatrix, RegularSparseMatrix) \
  ROW(RegularSparseMatrix, DiagonalMatrix, SymmetricSparseMatrix) \
  ROW(RegularSparseMatrix, RegularSparseMatrix, DiagonalMatrix) \
  ROW(RegularSparseMatrix, RegularSparseMatrix, RegularSparseMatrix) \
  ROW(RegularSparseMatrix, RegularSparseMatrix, SymmetricSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix, DiagonalMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix, RegularSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix, SymmetricSparseMatrix)

#define QUORVEL_DENSE_SCALED(ROW) \
  ROW(RegularMatrix) \
  ROW(SymmetricMatrix) \
  ROW(UpperTriangularMatrix) \
  ROW(LowerTriangularMatrix) \
  ROW(DiagonalMatrix)

#define QUORVEL_SPARSE_SCALED(ROW) \
  ROW(RegularSparseMatrix) \
  ROW(SymmetricSparseMatrix)

#endif
