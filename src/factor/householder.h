// HouseholderTransformation, the same for dense and sparse matrices: what it checks, copies and consumes.
#ifndef QUORVEL_FACTOR_HOUSEHOLDER_H
#define QUORVEL_FACTOR_HOUSEHOLDER_H

#include "core/ownership.h"

namespace quorvel::detail {

// A becomes R; without memory for scratch A stays as it was.
void TriangulariseMatrix(RegularMatrix& A);
void TriangulariseMatrix(RegularSparseMatrix& A);

template <class K>
K& TransformedByReflections(K& A, bool inPlace) {
  A.ThrowNotOk(code::none);
  if (A.nrows() < A.ncols()) FailWith(offset::shape, &A);
  if (inPlace || A.dispensable()) {
    Consumed operand(A);
    TriangulariseMatrix(A);
    operand.release(A);
    return A;
  }
  NewResult<K> before(A);
  TriangulariseMatrix(A);
  return before.hand_over();
}

}  // namespace quorvel::detail

#endif
