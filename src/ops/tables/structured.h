// Structured products: result kind and operand kinds of each family. Data only.
#ifndef QUORVEL_OPS_TABLES_STRUCTURED_H
#define QUORVEL_OPS_TABLES_STRUCTURED_H

// ATA, dense operands.
#define QUORVEL_DENSE_ATA(ROW) \
  ROW(SymmetricMatrix, RegularMatrix)

// ATA, with a sparse operand.
#define QUORVEL_SPARSE_ATA(ROW) \
  ROW(SymmetricMatrix, RegularSparseMatrix)

// AAT, dense operands.
#define QUORVEL_DENSE_AAT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix)

// AAT, with a sparse operand.
#define QUORVEL_SPARSE_AAT(ROW) \
  ROW(SymmetricMatrix, RegularSparseMatrix)

// UTU, dense operands.
#define QUORVEL_DENSE_UTU(ROW) \
  ROW(SymmetricMatrix, UpperTriangularMatrix)

// UTU, with a sparse operand.
#define QUORVEL_SPARSE_UTU(ROW) \
  ROW(SymmetricSparseMatrix, RegularSparseMatrix)

// LTL, dense operands.
#define QUORVEL_DENSE_LTL(ROW) \
  ROW(SymmetricMatrix, LowerTriangularMatrix)

// LTL, with a sparse operand.
#define QUORVEL_SPARSE_LTL(ROW) \
  ROW(SymmetricSparseMatrix, RegularSparseMatrix)

// ATB, dense operands.
#define QUORVEL_DENSE_ATB(ROW) \
  ROW(RegularMatrix, RegularMatrix, RegularMatrix) \
  ROW(RegularMatrix, RegularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, RegularMatrix, DiagonalMatrix)

// ATB, with a sparse operand.
#define QUORVEL_SPARSE_ATB(ROW) \
  ROW(RegularMatrix, RegularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, RegularMatrix, SymmetricSparseMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, RegularMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, RegularSparseMatrix, SymmetricSparseMatrix)

// ABT, dense operands.
#define QUORVEL_DENSE_ABT(ROW) \
  ROW(RegularMatrix, RegularMatrix, RegularMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, RegularMatrix) \
  ROW(RegularMatrix, DiagonalMatrix, RegularMatrix)

// ABT, with a sparse operand.
#define QUORVEL_SPARSE_ABT(ROW) \
  ROW(RegularMatrix, RegularSparseMatrix, RegularMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, RegularMatrix) \
  ROW(RegularMatrix, RegularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, SymmetricMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, DiagonalMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix, RegularSparseMatrix)

// SymmetricOfProduct, dense operands.
#define QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, RegularMatrix)

// SymmetricOfProduct, with a sparse operand.
#define QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, RegularSparseMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, RegularMatrix) \
  ROW(SymmetricSparseMatrix, RegularSparseMatrix, RegularSparseMatrix)

// SymmetricOfABT, dense operands.
#define QUORVEL_DENSE_SYMMETRIC_OF_ABT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, RegularMatrix)

// SymmetricOfABT, with a sparse operand.
#define QUORVEL_SPARSE_SYMMETRIC_OF_ABT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, RegularSparseMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, RegularMatrix) \
  ROW(SymmetricSparseMatrix, RegularSparseMatrix, RegularSparseMatrix)

// ATPA, dense operands.
#define QUORVEL_DENSE_ATPA(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, RegularMatrix, DiagonalMatrix)

// ATPA, with a sparse operand.
#define QUORVEL_SPARSE_ATPA(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, SymmetricSparseMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, SymmetricMatrix)

// AQAT, dense operands.
#define QUORVEL_DENSE_AQAT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, RegularMatrix, DiagonalMatrix) \
  ROW(SymmetricMatrix, UpperTriangularMatrix, SymmetricMatrix)

// AQAT, with a sparse operand.
#define QUORVEL_SPARSE_AQAT(ROW) \
  ROW(SymmetricMatrix, RegularMatrix, SymmetricSparseMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, DiagonalMatrix) \
  ROW(SymmetricMatrix, RegularSparseMatrix, SymmetricSparseMatrix)

// SQS, dense operands.
#define QUORVEL_DENSE_SQS(ROW) \
  ROW(SymmetricMatrix, DiagonalMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, SymmetricMatrix, SymmetricMatrix)

// SQS, with a sparse operand.
#define QUORVEL_SPARSE_SQS(ROW) \
  ROW(SymmetricMatrix, SymmetricMatrix, SymmetricSparseMatrix) \
  ROW(SymmetricMatrix, SymmetricSparseMatrix, SymmetricMatrix)

// PWeightedNorm, dense operands.
#define QUORVEL_DENSE_PWEIGHTED_NORM(ROW) \
  ROW(RegularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, RegularMatrix)

// PWeightedNorm, with a sparse operand.
#define QUORVEL_SPARSE_PWEIGHTED_NORM(ROW) \
  ROW(RegularMatrix, RegularSparseMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricMatrix) \
  ROW(RegularSparseMatrix, DiagonalMatrix) \
  ROW(RegularSparseMatrix, RegularMatrix) \
  ROW(RegularSparseMatrix, RegularSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix)

// ATPA with a block size: operands of the SymmetricSparseMatrix.
#define QUORVEL_ATPA_BLOCKS(ROW) \
  ROW(RegularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricMatrix) \
  ROW(RegularSparseMatrix, DiagonalMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix)

// AQAT with a block size: operands of the SymmetricSparseMatrix.
#define QUORVEL_AQAT_BLOCKS(ROW) \
  ROW(RegularMatrix, SymmetricMatrix) \
  ROW(RegularMatrix, DiagonalMatrix) \
  ROW(RegularMatrix, SymmetricSparseMatrix) \
  ROW(RegularSparseMatrix, SymmetricMatrix) \
  ROW(RegularSparseMatrix, DiagonalMatrix) \
  ROW(RegularSparseMatrix, SymmetricSparseMatrix) \
  ROW(UpperTriangularMatrix, SymmetricMatrix)

// SQS with a block size: operands of the SymmetricSparseMatrix.
#define QUORVEL_SQS_BLOCKS(ROW) \
  ROW(DiagonalMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, SymmetricMatrix) \
  ROW(SymmetricMatrix, SymmetricSparseMatrix) \
  ROW(SymmetricSparseMatrix, SymmetricMatrix) \
  ROW(SymmetricSparseMatrix, SymmetricSparseMatrix)

#endif
