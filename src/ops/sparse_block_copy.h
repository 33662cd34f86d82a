// Writing blocks that have a sparse matrix on one side. The cost is what is stored in the rows of the block.
#ifndef QUORVEL_OPS_SPARSE_BLOCK_COPY_H
#define QUORVEL_OPS_SPARSE_BLOCK_COPY_H

#include "ops/blocks.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

namespace quorvel::detail {

/// Calls use(j, v) for the non-zero elements of row i of `from` in columns begin..end - 1, ascending.
template <class S, class Use>
void ForNonZerosInRow(const Rule<S>& from, index_t i, Range cols, Use use) {
  if constexpr (is_dense<S>) {
    const Range visited = common(cols, from.in_row(i));
    for (index_t j = visited.begin; j < visited.end; ++j) {
      const double v = from.at(i, j);
      if (v != 0.0) use(j, v);
    }
  } else {
    LineCursor e = from.row(i);
    for (e.skip_to(cols.begin); e && e.index() < cols.end; e.next()) {
      if (e.value() != 0.0) use(e.index(), e.value());
    }
  }
}

/// The same along column j.
template <class S, class Use>
void ForNonZerosInCol(const Rule<S>& from, index_t j, Range rows, Use use) {
  if constexpr (is_dense<S>) {
    const Range visited = common(rows, from.in_col(j));
    for (index_t i = visited.begin; i < visited.end; ++i) {
      const double v = from.at(i, j);
      if (v != 0.0) use(i, v);
    }
  } else {
    LineCursor e = from.col(j);
    for (e.skip_to(rows.begin); e && e.index() < rows.end; e.next()) {
      if (e.value() != 0.0) use(e.index(), e.value());
    }
  }
}

/// A sparse source into a dense target: zeros first, then what is stored.
template <class T, class S>
void WriteStored(T& target, const S& src, const Block& b) noexcept {
  const Rule<T> to(target);
  const Rule<S> from(src);
  for (index_t r = 0; r < b.rows; ++r) {
    const index_t i = b.row + r;
    const Range cols = StoredColumns(to, b, r);
    for (index_t j = cols.begin; j < cols.end; ++j) to.store(i, j) = 0.0;
    const Range read = {cols.begin - b.col + b.src_col, cols.end - b.col + b.src_col};
    LineCursor e = from.row(b.src_row + r);
    for (e.skip_to(read.begin); e && e.index() < read.end; e.next()) {
      to.store(i, e.index() - b.src_col + b.col) = e.value();
    }
  }
}

/// Replaces parts of one row of a sparse matrix, from left to right.
class RowParts {
 public:
  RowParts(RowWriter& writer, SparseMatrix& target, index_t row) noexcept
      : writer_(writer), row_(row), prev_(nullptr), e_(target.rowHeads[row]) {}

  /// Columns begin..end - 1 get the elements that `for_each` passes to its argument, in ascending columns, and no
  /// other.
  template <class ForEach>
  void replace(Range cols, ForEach for_each) {
    if (cols.begin >= cols.end) return;
    while (e_ != nullptr && e_->col < cols.begin) pass();
    for_each([this](index_t j, double v) {
      remove_before(j);
      if (e_ != nullptr && e_->col == j) {
        e_->value = v;
        pass();
      } else {
        prev_ = writer_.append(prev_, row_, j, v);
      }
    });
    remove_before(cols.end);
  }

 private:
  void pass() noexcept {
    prev_ = e_;
    e_ = e_->nextInRow;
  }
  void remove_before(index_t end) noexcept {
    while (e_ != nullptr && e_->col < end) {
      SparseElement* const next = e_->nextInRow;
      writer_.remove(prev_, e_);
      e_ = next;
    }
  }

  RowWriter& writer_;
  index_t row_;
  SparseElement* prev_;
  SparseElement* e_;
};

/// Row by row.
template <class S>
void WriteRows(RegularSparseMatrix& target, const Rule<S>& from, const Block& b) {
  RowWriter writer(target);
  const Range read = {b.src_col, b.src_col + b.cols};
  for (index_t r = 0; r < b.rows; ++r) {
    RowParts(writer, target, b.row + r).replace({b.col, b.col + b.cols}, [&](auto put) {
      ForNonZerosInRow(from, b.src_row + r, read, [&](index_t j, double v) { put(j - b.src_col + b.col, v); });
    });
  }
}

/// The symmetric kind stores cell (p, q), p <= q: it comes from (q, p) of the block where the block covers that, else
/// from (p, q). So row p gets a stretch of a column of the source, and of a row what lies on both sides of it.
template <class S>
void WriteRows(SymmetricSparseMatrix& target, const Rule<S>& from, const Block& b) {
  RowWriter writer(target);
  const Range block_rows = {b.row, b.row + b.rows};
  const Range block_cols = {b.col, b.col + b.cols};
  const auto in = [](Range range, index_t k) { return range.begin <= k && k < range.end; };
  const index_t begin = b.row < b.col ? b.row : b.col;
  const index_t end = block_rows.end > block_cols.end ? block_rows.end : block_cols.end;
  for (index_t p = begin; p < end; ++p) {
    const Range by_row = in(block_rows, p) ? common(block_cols, {p, block_cols.end}) : Range{p, p};
    const Range by_col = in(block_cols, p) ? common(block_rows, {p + 1, block_rows.end}) : Range{p, p};
    RowParts parts(writer, target, p);
    const auto take_row = [&](Range cols) {
      parts.replace(cols, [&](auto put) {
        ForNonZerosInRow(from, p - b.row + b.src_row, {cols.begin - b.col + b.src_col, cols.end - b.col + b.src_col},
                         [&](index_t j, double v) { put(j - b.src_col + b.col, v); });
      });
    };
    if (by_col.begin >= by_col.end) {
      take_row(by_row);
      continue;
    }
    take_row({by_row.begin, by_row.end < by_col.begin ? by_row.end : by_col.begin});
    parts.replace(by_col, [&](auto put) {
      ForNonZerosInCol(from, p - b.col + b.src_col, {by_col.begin - b.row + b.src_row, by_col.end - b.row + b.src_row},
                       [&](index_t i, double v) { put(i - b.src_row + b.row, v); });
    });
    take_row({by_col.end, by_row.end});  // by_row begins at p, before by_col does
  }
}

/// Any source into a sparse target.
template <class T, class S>
void WriteSparseBlock(T& target, const S& src, const Block& b) {
  if constexpr (std::is_same_v<T, S>) {
    if (&target == &src) {  // read everything before anything is written
      RegularSparseMatrix buffer(b.rows, b.cols);
      WriteRows(buffer, Rule<S>(src), {0, 0, b.src_row, b.src_col, b.rows, b.cols});
      WriteRows(target, Rule<RegularSparseMatrix>(buffer), FromBuffer(b));
      return;
    }
  }
  WriteRows(target, Rule<S>(src), b);
}

}  // namespace quorvel::detail

#endif
