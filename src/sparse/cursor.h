// How an element of a sparse matrix is read: lines of both kinds in increasing index, and the stored elements.
//
//   const Rule<SymmetricSparseMatrix> a(A);           // or Rule<RegularSparseMatrix>; SparseLines for either
//   for (LineCursor e = a.row(i); e; e.next()) use(e.index(), e.value());
//   a.for_each_stored([&](const SparseElement& e) { use(e.row, e.col, e.value); });
//
// row(i) and col(j) are whole lines: in the symmetric kind, which stores only row <= col, line i is its column list
// before the diagonal (the mirrored part), then its row list from the diagonal on. Each cell comes once; stored zeros
// are cells. for_each_stored goes row by row over what is stored, so a symmetric matrix gives one triangle.
//
// A symmetric matrix may hold elements below the diagonal (put there by the insert behind a predecessor): they are in
// their row list only. for_each_stored finds them, the lines do not. A line that the matrix does not have is empty, and
// for_each_stored skips elements outside the matrix, which opening or removing the rows or columns of a symmetric
// matrix alone can leave behind: indices are always valid.
//
// The cursor may be advanced before the element it stood on is removed: next() reads one link.
#ifndef QUORVEL_SPARSE_CURSOR_H
#define QUORVEL_SPARSE_CURSOR_H

#include "dense/rules.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "sparse/axis.h"

namespace quorvel::detail {

/// Goes along one line: first the part kept in a column list (indices below `diagonal`), then the part in a row list.
class LineCursor {
 public:
  /// Elements of the row list with col >= end end the line.
  LineCursor(SparseElement* columnList, index_t diagonal, SparseElement* rowList, index_t end) noexcept
      : e_(columnList), diagonal_(diagonal), rowList_(rowList), end_(end), in_column_(true) {
    settle();
  }

  explicit operator bool() const noexcept { return e_ != nullptr; }
  index_t index() const noexcept { return in_column_ ? e_->row : e_->col; }
  double value() const noexcept { return e_->value; }
  SparseElement& element() const noexcept { return *e_; }

  void next() noexcept {
    if (in_column_) {
      e_ = e_->nextInCol;
      settle();
    } else {
      e_ = e_->nextInRow;
      clip();
    }
  }

  /// Goes on to the first element with index >= k.
  void skip_to(index_t k) noexcept {
    while (e_ != nullptr && index() < k) next();
  }

 private:
  void settle() noexcept {
    if (e_ != nullptr && e_->row < diagonal_) return;
    in_column_ = false;
    e_ = rowList_;
    clip();
  }
  void clip() noexcept {
    if (e_ != nullptr && e_->col >= end_) e_ = nullptr;
  }

  SparseElement* e_;
  index_t diagonal_;
  SparseElement* rowList_;
  index_t end_;
  bool in_column_;
};

/// The lines of a sparse matrix of either kind.
class SparseLines {
 public:
  explicit SparseLines(const SparseMatrix& a) noexcept : a_(&a) {}
  index_t rows() const noexcept { return a_->rows; }
  index_t cols() const noexcept { return a_->cols; }
  index_t stored() const noexcept { return a_->used; }

  LineCursor row(index_t i) const noexcept {
    return is_symmetric_sparse(*a_) ? symmetric_line(i, a_->cols)
                                    : LineCursor(nullptr, 0, ListHead<ByRow>(*a_, i), npos);
  }
  LineCursor col(index_t j) const noexcept {
    return is_symmetric_sparse(*a_) ? symmetric_line(j, a_->rows)
                                    : LineCursor(ListHead<ByCol>(*a_, j), npos, nullptr, npos);
  }

  /// What row i stores itself: in the symmetric kind from the diagonal on (and elements below it, see above).
  LineCursor stored_row(index_t i) const noexcept {
    return LineCursor(nullptr, 0, ListHead<ByRow>(*a_, i), a_->cols);
  }

  /// Element (i, j), 0.0 when absent. Walks a list.
  double at(index_t i, index_t j) const noexcept {
    const SparseElement* const e = a_->Cell_Loc(i, j);
    return e != nullptr ? e->value : 0.0;
  }

  template <class Use>
  void for_each_stored(Use use) const {
    for (index_t i = 0; i < a_->rows; ++i) {
      for (SparseElement* e = a_->rowHeads[i]; e != nullptr; e = e->nextInRow) {
        if (e->col < a_->cols) use(*e);
      }
    }
  }

 private:
  static constexpr index_t npos = 0xFFFFFFFFu;

  LineCursor symmetric_line(index_t i, index_t end) const noexcept {
    SparseElement* right = ListHead<ByRow>(*a_, i);
    while (right != nullptr && right->col < i) right = right->nextInRow;
    return LineCursor(ListHead<ByCol>(*a_, i), i, right, end);
  }

  const SparseMatrix* a_;
};

template <>
class Rule<RegularSparseMatrix> : public SparseLines {
 public:
  using SparseLines::SparseLines;
};

template <>
class Rule<SymmetricSparseMatrix> : public SparseLines {
 public:
  using SparseLines::SparseLines;
};

}  // namespace quorvel::detail

#endif
