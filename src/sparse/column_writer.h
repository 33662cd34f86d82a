// Writing a sparse matrix column by column, as RowWriter writes one row by row: at a constant cost per element.
#ifndef QUORVEL_SPARSE_COLUMN_WRITER_H
#define QUORVEL_SPARSE_COLUMN_WRITER_H

#include "core/packed.h"
#include "sparse/pool.h"

namespace quorvel::detail {

/// For a matrix that has its size and no elements. Columns ascend, and the rows within a column; cells below the
/// diagonal of a symmetric matrix are not for it. Indices are taken as given. The rows are linked when the writer goes,
/// from the last column to the first, each element at the head of its list.
class ColumnWriter {
 public:
  explicit ColumnWriter(SparseMatrix& target) noexcept : target_(target), records_(target) {}
  ColumnWriter(const ColumnWriter&) = delete;
  ColumnWriter& operator=(const ColumnWriter&) = delete;
  ~ColumnWriter() {
    for (index_t j = target_.cols; j-- > 0;) {
      for (SparseElement* e = target_.colHeads[j]; e != nullptr; e = e->nextInCol) {
        e->nextInRow = target_.rowHeads[e->row];
        target_.rowHeads[e->row] = e;
      }
    }
  }

  SparseElement* append(SparseElement* prevInCol, index_t row, index_t col, double value) {
    SparseElement* const e = records_.make(row, col, value);
    (prevInCol != nullptr ? prevInCol->nextInCol : target_.colHeads[col]) = e;
    return e;
  }

 private:
  SparseMatrix& target_;
  RecordSupply records_;
};

}  // namespace quorvel::detail

#endif
