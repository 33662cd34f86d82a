// Writing a sparse matrix column by column, as RowWriter writes one row by row: at a constant cost per element.
#ifndef QUORVEL_SPARSE_COLUMN_WRITER_H
#define QUORVEL_SPARSE_COLUMN_WRITER_H

#include "sparse/append.h"

namespace quorvel::detail {

/// For a matrix that has its size and no elements. Columns ascend, and the rows within a column; cells below the diagonal
/// of a symmetric matrix are not for it. Indices are taken as given.
class ColumnWriter {
 public:
  explicit ColumnWriter(SparseMatrix& target) : target_(target), rows_(target) { rows_.begin(); }

  SparseElement* append(SparseElement* prevInCol, index_t row, index_t col, double value) {
    SparseElement* const e = NewElement(target_, row, col, value);
    (prevInCol != nullptr ? prevInCol->nextInCol : target_.colHeads[col]) = e;
    rows_.link(row, col, e);
    return e;
  }

 private:
  SparseMatrix& target_;
  ListHints<ByRow> rows_;
};

}  // namespace quorvel::detail

#endif
