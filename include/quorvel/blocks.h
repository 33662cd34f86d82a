// Blocks: CopySubMat, GetSubMat, SubMat.
//
//   CopySubMat(T, row, col, S, srcRow, srcCol, nRows, nCols)   block of S from (srcRow, srcCol) on -> T at (row, col)
//   CopySubMat(T, row, col, S)                                 all of S -> T at (row, col)
//   GetSubMat(out, S, firstRow, lastRow, firstCol, lastCol)    out = rows firstRow..lastRow, columns firstCol..lastCol
//   SubMat(S, firstRow, lastRow, firstCol, lastCol)            the same as a new RegularMatrix
//   GetSubMat(out, S, first, last), SubMat(S, first, last)     the principal block first..last of a symmetric or
//                                                              diagonal matrix, in its own kind
//
// Any kind is a source of CopySubMat, read as its full matrix: mirrored elements, implicit zeros and absent cells
// included. A *target* takes what it can store:
//   RegularMatrix, RegularSparseMatrix   the block. In a sparse target a zero removes the cell.
//   SymmetricMatrix, triangular kinds    the block must lie on one side of the diagonal and touch it at one corner at
//                                        most. A block on the zero side of a triangular matrix is accepted, but only
//                                        the corner on the diagonal is written: the rest is dropped without error.
//   SymmetricSparseMatrix                the block and its mirror image; where the block covers both (i, j) and (j, i),
//                                        the one below the diagonal wins.
//   DiagonalMatrix                       the diagonal of the block, min(nRows, nCols) elements from index `at` on; what
//                                        lies off the block's diagonal is ignored. The short form with `srcAt` copies n
//                                        elements of the source's diagonal. The whole block must fit the target.
// Target and source may be one matrix: the result is as if the block had been read before anything was written.
//
// Bounds of GetSubMat and SubMat are inclusive. `npos` has no meaning of its own here: last = first - 1 is an empty
// block, any other reversed range asks for too many doubles (std::bad_array_new_length).
//
// Returns: the target, `out`, or a new dispensable matrix. A dispensable source is consumed.
//
// Throws the bare codes 50000 (a matrix is not ok) and 40000 (the block does not fit a matrix, or the diagonal rule
// above); CopySubMat has then written nothing, and has destroyed a dispensable target and a dispensable source.
// GetSubMat gives `out` its size before it looks at the block: a refused block leaves `out` resized.
//
// Singularity count: CopySubMat and GetSubMat leave the target's; SubMat gives -1. Cost: the block; with a sparse
// source its stored elements in those rows. Allocation: the result only, a sparse target's pool, and a copy of the block
// where target and source are one packed or sparse matrix. Exactness: copies.
//
// Example:
//   RegularMatrix F(eye(6, 1.0));                   // position and velocity
//   CopySubMat(F, 0, 3, eye(3, dt));                // F(0:3, 3:6) = dt I
//   SymmetricMatrix Ppos(SubMat(P, 0, 2));          // covariance of the first three states
#ifndef QUORVEL_BLOCKS_H
#define QUORVEL_BLOCKS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// CopySubMat into the kinds that take a position.

QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const RegularMatrix& src,
                                      unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const SymmetricMatrix& src,
                                      unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                      unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                      unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const DiagonalMatrix& src,
                                      unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol, unsigned nRows,
                                      unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                      unsigned nRows, unsigned nCols);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const RegularMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const SymmetricMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const UpperTriangularMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const LowerTriangularMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col, const DiagonalMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const RegularSparseMatrix& src);
QUORVEL_API RegularMatrix& CopySubMat(RegularMatrix& target, unsigned row, unsigned col,
                                      const SymmetricSparseMatrix& src);

QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col, const RegularMatrix& src,
                                        unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const SymmetricMatrix& src, unsigned srcRow, unsigned srcCol, unsigned nRows,
                                        unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                        unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                        unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col, const DiagonalMatrix& src,
                                        unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                        unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                        unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col, const RegularMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const SymmetricMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const UpperTriangularMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const LowerTriangularMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col, const DiagonalMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const RegularSparseMatrix& src);
QUORVEL_API SymmetricMatrix& CopySubMat(SymmetricMatrix& target, unsigned row, unsigned col,
                                        const SymmetricSparseMatrix& src);

QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src);
QUORVEL_API UpperTriangularMatrix& CopySubMat(UpperTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src);

QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src);
QUORVEL_API LowerTriangularMatrix& CopySubMat(LowerTriangularMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src);

QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const RegularMatrix& src, unsigned srcRow, unsigned srcCol, unsigned nRows,
                                            unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const SymmetricMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const DiagonalMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                            unsigned nRows, unsigned nCols);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const RegularMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const SymmetricMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const UpperTriangularMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const LowerTriangularMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const DiagonalMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const RegularSparseMatrix& src);
QUORVEL_API RegularSparseMatrix& CopySubMat(RegularSparseMatrix& target, unsigned row, unsigned col,
                                            const SymmetricSparseMatrix& src);

QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src, unsigned srcRow, unsigned srcCol,
                                              unsigned nRows, unsigned nCols);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const RegularMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const SymmetricMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const UpperTriangularMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const LowerTriangularMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const DiagonalMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const RegularSparseMatrix& src);
QUORVEL_API SymmetricSparseMatrix& CopySubMat(SymmetricSparseMatrix& target, unsigned row, unsigned col,
                                              const SymmetricSparseMatrix& src);

// CopySubMat into a diagonal matrix.

QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularMatrix& src, unsigned srcAt,
                                       unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricMatrix& src, unsigned srcAt,
                                       unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const UpperTriangularMatrix& src,
                                       unsigned srcAt, unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const LowerTriangularMatrix& src,
                                       unsigned srcAt, unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const DiagonalMatrix& src, unsigned srcAt,
                                       unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularSparseMatrix& src,
                                       unsigned srcAt, unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricSparseMatrix& src,
                                       unsigned srcAt, unsigned n);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularMatrix& src, unsigned srcRow,
                                       unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricMatrix& src,
                                       unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const UpperTriangularMatrix& src,
                                       unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const LowerTriangularMatrix& src,
                                       unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const DiagonalMatrix& src, unsigned srcRow,
                                       unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularSparseMatrix& src,
                                       unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricSparseMatrix& src,
                                       unsigned srcRow, unsigned srcCol, unsigned nRows, unsigned nCols);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const UpperTriangularMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const LowerTriangularMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const DiagonalMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const RegularSparseMatrix& src);
QUORVEL_API DiagonalMatrix& CopySubMat(DiagonalMatrix& target, unsigned at, const SymmetricSparseMatrix& src);

// GetSubMat.

QUORVEL_API RegularMatrix& GetSubMat(RegularMatrix& out, const RegularMatrix& src, unsigned firstRow, unsigned lastRow,
                                     unsigned firstCol, unsigned lastCol);
QUORVEL_API RegularMatrix& GetSubMat(RegularMatrix& out, const SymmetricMatrix& src, unsigned firstRow,
                                     unsigned lastRow, unsigned firstCol, unsigned lastCol);
QUORVEL_API RegularMatrix& GetSubMat(RegularMatrix& out, const UpperTriangularMatrix& src, unsigned firstRow,
                                     unsigned lastRow, unsigned firstCol, unsigned lastCol);
QUORVEL_API RegularMatrix& GetSubMat(RegularMatrix& out, const LowerTriangularMatrix& src, unsigned firstRow,
                                     unsigned lastRow, unsigned firstCol, unsigned lastCol);
QUORVEL_API RegularMatrix& GetSubMat(RegularMatrix& out, const DiagonalMatrix& src, unsigned firstRow,
                                     unsigned lastRow, unsigned firstCol, unsigned lastCol);
QUORVEL_API DiagonalMatrix& GetSubMat(DiagonalMatrix& out, const DiagonalMatrix& src, unsigned first, unsigned last);
QUORVEL_API SymmetricMatrix& GetSubMat(SymmetricMatrix& out, const SymmetricMatrix& src, unsigned first, unsigned last);

// SubMat.

[[nodiscard]] QUORVEL_API RegularMatrix& SubMat(const RegularMatrix& src, unsigned firstRow, unsigned lastRow,
                                                unsigned firstCol, unsigned lastCol);
[[nodiscard]] QUORVEL_API RegularMatrix& SubMat(const SymmetricMatrix& src, unsigned firstRow, unsigned lastRow,
                                                unsigned firstCol, unsigned lastCol);
[[nodiscard]] QUORVEL_API RegularMatrix& SubMat(const UpperTriangularMatrix& src, unsigned firstRow, unsigned lastRow,
                                                unsigned firstCol, unsigned lastCol);
[[nodiscard]] QUORVEL_API RegularMatrix& SubMat(const LowerTriangularMatrix& src, unsigned firstRow, unsigned lastRow,
                                                unsigned firstCol, unsigned lastCol);
[[nodiscard]] QUORVEL_API RegularMatrix& SubMat(const DiagonalMatrix& src, unsigned firstRow, unsigned lastRow,
                                                unsigned firstCol, unsigned lastCol);
[[nodiscard]] QUORVEL_API DiagonalMatrix& SubMat(const DiagonalMatrix& src, unsigned first, unsigned last);
[[nodiscard]] QUORVEL_API SymmetricMatrix& SubMat(const SymmetricMatrix& src, unsigned first, unsigned last);

#endif
