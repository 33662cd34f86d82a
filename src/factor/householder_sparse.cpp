// HouseholderTransformation of sparse matrices.
#include "quorvel/householder.h"

#include "factor/householder.h"
#include "factor/sparse_reflections.h"

void quorvel::detail::TriangulariseMatrix(RegularSparseMatrix& A) {
  RegularSparseMatrix R;
  if (A.growBy != 0) R.SetGrowBy(A.growBy - 1);  // the block size is chosen once
  SparseReflections reflections;
  TriangulariseSparse(A, R, reflections);
  R.set_nsing(A.nsing());
  A.Swap(R);
}

RegularSparseMatrix& HouseholderTransformation(RegularSparseMatrix& A, bool inPlace) {
  return quorvel::detail::TransformedByReflections(A, inPlace);
}
