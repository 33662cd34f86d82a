// The transpose of a sparse matrix.
#ifndef QUORVEL_SPARSE_TRANSPOSED_H
#define QUORVEL_SPARSE_TRANSPOSED_H

#include "quorvel/RegularSparseMatrix.h"

namespace quorvel::detail {

/// Fills a new matrix of the right size, without blocks: row by row from the columns of A.
void FillTransposed(RegularSparseMatrix& result, const RegularSparseMatrix& A);

}  // namespace quorvel::detail

#endif
