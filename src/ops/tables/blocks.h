// The kinds between which blocks are copied. This file is data: it includes nothing.
//
// CopySubMat exists for every target with every source; a target by itself takes one of the PAIR lists. GetSubMat and
// SubMat exist for the dense sources, with a general result, and for the PRINCIPAL kinds with a result of that kind.
#ifndef QUORVEL_OPS_TABLES_BLOCKS_H
#define QUORVEL_OPS_TABLES_BLOCKS_H

#define QUORVEL_DENSE_BLOCK_SOURCES(PAIR, T) \
  PAIR(T, RegularMatrix)                     \
  PAIR(T, SymmetricMatrix)                   \
  PAIR(T, UpperTriangularMatrix)             \
  PAIR(T, LowerTriangularMatrix)             \
  PAIR(T, DiagonalMatrix)

#define QUORVEL_SPARSE_BLOCK_SOURCES(PAIR, T) \
  PAIR(T, RegularSparseMatrix)                \
  PAIR(T, SymmetricSparseMatrix)

// Targets that take a position (row, col); the diagonal kind takes one index and has forms of its own.
#define QUORVEL_DENSE_BLOCK_TARGETS(LIST, PAIR) \
  LIST(PAIR, RegularMatrix)                     \
  LIST(PAIR, SymmetricMatrix)                   \
  LIST(PAIR, UpperTriangularMatrix)             \
  LIST(PAIR, LowerTriangularMatrix)

#define QUORVEL_SPARSE_BLOCK_TARGETS(LIST, PAIR) \
  LIST(PAIR, RegularSparseMatrix)                \
  LIST(PAIR, SymmetricSparseMatrix)

#define QUORVEL_PRINCIPAL_BLOCKS(ROW) \
  ROW(DiagonalMatrix)                 \
  ROW(SymmetricMatrix)

#endif
