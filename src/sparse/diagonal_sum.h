// A diagonal matrix added into a sparse one.
#ifndef QUORVEL_SPARSE_DIAGONAL_SUM_H
#define QUORVEL_SPARSE_DIAGONAL_SUM_H

#include "quorvel/DiagonalMatrix.h"
#include "quorvel/SparseMatrix.h"

namespace quorvel::detail {

/// a(i, i) += d(i), or -= when `subtract`, from the last row to the first: the order in which missing elements are taken
/// from the pool. A new value of exactly 0 removes its element. Both matrices are of one order.
inline void AddToDiagonal(SparseMatrix& a, const DiagonalMatrix& d, bool subtract) {
  for (unsigned i = d.ndim(); i-- > 0;) {
    const double x = subtract ? -d.data()[i] : d.data()[i];
    SparseElement* const e = a.Cell_Loc(i, i);
    if (e == nullptr) {
      if (x != 0.0) a.SparseMatrixInsert(i, i, x);
      continue;
    }
    const double sum = e->value + x;
    if (sum == 0.0) {
      a.SparseMatrixRemove(e);
    } else {
      e->value = sum;
    }
  }
}

}  // namespace quorvel::detail

#endif
