// Filling a whole sparse matrix: copies, scaling, a constant, dense sources. All write row by row.
#include "sparse/copy.h"

#include "core/ownership.h"

namespace detail = quorvel::detail;
namespace code = quorvel::detail::code;
using detail::ByCol;
using detail::ByRow;
using detail::index_t;

namespace {

/// Row i ascends strictly from the diagonal on, as the symmetric kind's own operations leave it.
bool IsUpperRow(const SparseMatrix& a, index_t i) noexcept {
  const SparseElement* e = a.rowHeads[i];
  if (e != nullptr && e->col < i) return false;
  for (; e != nullptr && e->nextInRow != nullptr; e = e->nextInRow) {
    if (e->nextInRow->col <= e->col) return false;
  }
  return true;
}

/// Row i of a symmetric matrix into a regular one, element by element with its mirror image: the element goes behind
/// whatever the row holds, the mirror image to its place.
void CopyRowAndMirror(SparseMatrix& target, const SparseMatrix& source, index_t i) {
  SparseElement* prev = target.rowHeads[i];
  while (prev != nullptr && prev->nextInRow != nullptr) prev = prev->nextInRow;
  for (const SparseElement* e = source.rowHeads[i]; e != nullptr; e = e->nextInRow) {
    prev = target.SparseMatrixInsert(prev, e->row, e->col, e->value);
    if (e->row != e->col) target.SparseMatrixInsert(e->col, e->row, e->value);
  }
}

/// Adds elements that come in ascending order to every list, rows and columns. They are linked in the end, from the
/// last to the first, each at the head of its lists. Until then they are a chain through nextInRow.
class AscendingElements {
 public:
  explicit AscendingElements(SparseMatrix& target) noexcept : target_(target), records_(target) {}
  AscendingElements(const AscendingElements&) = delete;
  AscendingElements& operator=(const AscendingElements&) = delete;
  ~AscendingElements() {
    for (SparseElement* e = last_; e != nullptr;) {
      SparseElement* const before = e->nextInRow;
      link(target_.rowHeads[e->row], e->nextInRow, e);
      link(target_.colHeads[e->col], e->nextInCol, e);
      e = before;
    }
  }

  /// Throws `failure` for a place outside the matrix.
  void add(index_t row, index_t col, double value, int failure) {
    if (row >= target_.rows || col >= target_.cols) detail::FailWith(failure);
    SparseElement* const e = records_.make(row, col, value);
    e->nextInRow = last_;
    last_ = e;
  }

 private:
  static void link(SparseElement*& head, SparseElement*& next, SparseElement* e) noexcept {
    next = head;
    head = e;
  }

  SparseMatrix& target_;
  detail::RecordSupply records_;
  SparseElement* last_ = nullptr;
};

/// The symmetric kind into the regular one. Mirror images lie in later rows and arrive there in ascending columns, all
/// of them before the row's own elements, and those of one row in its column behind the elements of earlier rows: all
/// lists ascend. From a row with elements below the diagonal on, places are searched.
void CopyBothTriangles(SparseMatrix& target, const SparseMatrix& source) {
  index_t i = 0;
  {
    AscendingElements elements(target);
    for (; i < source.rows && IsUpperRow(source, i); ++i) {
      for (const SparseElement* e = source.rowHeads[i]; e != nullptr; e = e->nextInRow) {
        elements.add(e->row, e->col, e->value, detail::fixed::sparse_append);
        if (e->row != e->col) elements.add(e->col, e->row, e->value, detail::fixed::sparse_insert);
      }
    }
  }
  for (; i < source.rows; ++i) CopyRowAndMirror(target, source, i);
}

template <class Change>
void ChangeEach(SparseMatrix& a, Change change) noexcept {
  for (index_t i = 0; i < a.rows; ++i) {
    for (SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) e->value = change(e->value);
  }
}

}  // namespace

namespace quorvel::detail {

void SizeForCopy(SparseMatrix& target, const SparseMatrix& source) {
  const index_t rows = source.rows;
  const index_t cols = source.cols;
  target.Clear();
  target.SetSize(rows, cols, true);
  if (target.growBy == 0) target.growBy = source.growBy;
}

void CopyRows(RowWriter& writer, const SparseMatrix& source) {
  for (index_t i = 0; i < source.rows; ++i) {
    SparseElement* prev = nullptr;
    for (const SparseElement* e = source.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      prev = writer.append(prev, e->row, e->col, e->value);
    }
  }
}

void CopyStored(SparseMatrix& target, const SparseMatrix& source, bool negate) {
  SizeForCopy(target, source);
  if (is_mirrored_copy(target, source)) {
    CopyBothTriangles(target, source);
  } else {
    RowWriter writer(target);
    CopyRows(writer, source);
  }
  if (negate) target.Negate();
}

}  // namespace quorvel::detail

void SparseMatrix::Copy(const SparseMatrix& source, bool negate) {
  ThrowEquals(code::sparse_copy, source);
  detail::CopyStored(*this, source, negate);
}

SparseMatrix& SparseMatrix::Negate() noexcept {
  ChangeEach(*this, [](double v) { return -v; });
  return *this;
}

void SparseMatrix::Mult(const SparseMatrix& source, double factor) {
  ThrowNotOk(code::none);
  if (factor == 0.0) {
    Clear();
    return;
  }
  if (this != &source) Copy(source, false);
  if (factor == -1.0) {
    Negate();
  } else if (factor != 1.0) {
    ChangeEach(*this, [factor](double v) { return v * factor; });
  }
}

SparseMatrix& SparseMatrix::operator=(double v) {
  ThrowNotOk(code::sparse_fill);
  Clear();
  if (v == 0.0) return *this;
  detail::RowWriter writer(*this);
  for (index_t i = 0; i < rows; ++i) {
    SparseElement* prev = nullptr;
    for (index_t j = detail::is_symmetric_sparse(*this) ? i : 0; j < cols; ++j) prev = writer.append(prev, i, j, v);
  }
  return *this;
}

template <class T>
void SparseMatrix::CopyMat(const T& source) {
  ThrowEquals(code::sparse_from_dense, source);
  const detail::Consumed operand(source);
  detail::FillTarget(*this, [&] { detail::CopyDense(*this, source); });
}

template void SparseMatrix::CopyMat(const RegularMatrix& source);
template void SparseMatrix::CopyMat(const SymmetricMatrix& source);
template void SparseMatrix::CopyMat(const UpperTriangularMatrix& source);
template void SparseMatrix::CopyMat(const LowerTriangularMatrix& source);
template void SparseMatrix::CopyMat(const DiagonalMatrix& source);
