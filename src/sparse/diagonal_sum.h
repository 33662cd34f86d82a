// A diagonal matrix added into a sparse one.
#ifndef QUORVEL_SPARSE_DIAGONAL_SUM_H
#define QUORVEL_SPARSE_DIAGONAL_SUM_H

#include "core/ownership.h"
#include "dense/rules.h"
#include "quorvel/SparseMatrix.h"

namespace quorvel::detail {

/// a(i, i) += term(b(i, i)) from the last row to the first, the order in which missing elements are taken from the
/// pool. A new value of exactly 0 removes its element. Throws 40000, 50000; consumes b; the singularity count stays.
template <class Term>
void AddDiagonal(SparseMatrix& a, const DiagonalMatrix& b, Term term) {
  a.ThrowNotSameDim(code::none, b);
  const Consumed operand(b);
  const Rule<DiagonalMatrix> from(b);
  for (index_t i = from.rows(); i-- > 0;) {
    const double d = term(from.at(i, i));
    SparseElement* const e = a.Cell_Loc(i, i);
    if (e == nullptr) {
      if (d != 0.0) a.SparseMatrixInsert(i, i, d);
      continue;
    }
    const double sum = e->value + d;
    if (sum == 0.0) {
      a.SparseMatrixRemove(e);
    } else {
      e->value = sum;
    }
  }
}

}  // namespace quorvel::detail

#endif
