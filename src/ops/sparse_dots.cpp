// RowDotCol, RowDotRow, ColDotCol: two sparse lines walked in step.
#include "quorvel/structured.h"

#include "sparse/cursor.h"

namespace detail = quorvel::detail;

namespace {

using detail::index_t;
using detail::LineCursor;

/// The line, or the refusal of an index outside the matrix.
LineCursor Row(const SparseMatrix& a, index_t i) {
  static_cast<void>(a.GetFirstInRow(i));
  return detail::SparseLines(a).row(i);
}
LineCursor Column(const SparseMatrix& a, index_t j) {
  static_cast<void>(a.GetFirstInCol(j));
  return detail::SparseLines(a).col(j);
}

double Dot(LineCursor a, LineCursor b, index_t first, index_t last) {
  double sum = 0.0;
  a.skip_to(first);
  while (a && a.index() <= last) {
    b.skip_to(a.index());
    if (!b) break;
    if (b.index() == a.index()) sum += a.value() * b.value();
    a.next();
  }
  return sum;
}

}  // namespace

#define QUORVEL_DEFINE(NAME, LINE_A, LINE_B, K1, K2) \
  double NAME(const K1& A, const K2& B, unsigned i, unsigned j, unsigned first, unsigned last) { \
    const LineCursor a = LINE_A(A, i); \
    return Dot(a, LINE_B(B, j), first, last); \
  }
#define QUORVEL_DEFINE_PAIRS(NAME, LINE_A, LINE_B) \
  QUORVEL_DEFINE(NAME, LINE_A, LINE_B, RegularSparseMatrix, RegularSparseMatrix) \
  QUORVEL_DEFINE(NAME, LINE_A, LINE_B, RegularSparseMatrix, SymmetricSparseMatrix) \
  QUORVEL_DEFINE(NAME, LINE_A, LINE_B, SymmetricSparseMatrix, RegularSparseMatrix) \
  QUORVEL_DEFINE(NAME, LINE_A, LINE_B, SymmetricSparseMatrix, SymmetricSparseMatrix)
QUORVEL_DEFINE_PAIRS(RowDotCol, Row, Column)
QUORVEL_DEFINE_PAIRS(RowDotRow, Row, Row)
QUORVEL_DEFINE_PAIRS(ColDotCol, Column, Column)
