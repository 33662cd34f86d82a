// TriMatrix: size rule, insertion and removal, line operations of the packed kinds.
#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "core/storage.h"
#include "dense/rules.h"

namespace detail = quorvel::detail;
using detail::index_t;
using detail::packed_index;
using detail::packed_row;

TriMatrix::TriMatrix(class_type kind, size_type n) : SquareMatrix(kind) {
  if (n == 0) return;
  AllocateMemory(detail::saturated(detail::packed_count(n)), true);
  n_ = n;
}

TriMatrix::TriMatrix(class_type kind, size_type rows, size_type cols) : SquareMatrix(kind) {
  if (rows != cols) detail::FailWith(detail::code::packed_size + detail::offset::shape);
  AllocateMemory(detail::saturated(detail::packed_count(rows)), true);
  n_ = rows;
}

TriMatrix::TriMatrix(TriMatrix& source) : SquareMatrix(source.kind()) {
  if (detail::TookOver(*this, source)) return;
  ThrowEquals(detail::code::assign, source);
  const index_t n = source.ndim();
  if (n != 0) {
    AllocateMemory(detail::saturated(detail::packed_count(n)), false);
    n_ = n;
    detail::CopyDoubles(data(), source.data(), detail::packed_count(n));
  }
  set_nsing(source.nsing());
}

Matrix::size_type TriMatrix::StoredCount() const { return detail::saturated(detail::packed_count(n_)); }

Matrix::size_type TriMatrix::GetArrayCount(size_type rows, size_type cols) const {
  if (rows != cols) detail::FailWith(GetErrorCode(), this);
  return detail::saturated(detail::packed_count(rows));
}

void TriMatrix::ThrowTriMatrixAccessorSet(unsigned r, unsigned c) const {
  if (!(r <= c && c < n_)) detail::FailWith(detail::fixed::triangular_index);
}

// ---------------------------------------------------------------------------------------------------------------------
// Insertion and removal. Position (a, b) of the packed array moves to (a', b'), where an index at or behind `at`
// shifts by `count`. Rows before the band consist of a head (columns before `at`) and a tail; the triangle behind the
// band keeps its shape and moves as one block.

void TriMatrix::InsertRowsAndCols(size_type at, size_type count) {
  if (count == 0) return;
  ThrowInsert(detail::code::none, at, n_);
  detail::RequireSize(n_, count);
  const index_t n = n_;
  const index_t grown = n + count;
  Reserve(grown, grown);
  double* const d = data();
  // From the end backwards: every block moves to higher places, over ground that is already cleared.
  const index_t behind = n - at;
  if (behind != 0) {
    detail::MoveDoubles(d + packed_row(at + count, grown), d + packed_row(at, n), detail::packed_count(behind));
  }
  detail::FillDoubles(d + packed_row(at, grown), 0.0,
                      detail::packed_count(grown - at) - detail::packed_count(behind));
  for (index_t a = at; a-- > 0;) {
    double* const to = d + packed_row(a, grown);
    const double* const from = d + packed_row(a, n);
    const index_t head = at - a;
    detail::MoveDoubles(to + head + count, from + head, behind);
    detail::ClearDoubles(to + head, count);
    detail::MoveDoubles(to, from, head);
  }
  n_ = grown;
}

void TriMatrix::RemoveRowsAndCols(size_type at, size_type count) {
  if (count == 0) return;
  ThrowDimRange(detail::code::none, at, count, n_);
  const index_t n = n_;
  const index_t left = n - count;
  n_ = left;
  if (left == 0) return;
  double* const d = data();
  const index_t behind = left - at;
  for (index_t a = 0; a < at; ++a) {
    double* const to = d + packed_row(a, left);
    const double* const from = d + packed_row(a, n);
    const index_t head = at - a;
    detail::MoveDoubles(to, from, head);
    detail::MoveDoubles(to + head, from + head + count, behind);
  }
  if (behind != 0) {
    detail::MoveDoubles(d + packed_row(at, left), d + packed_row(at + count, n), detail::packed_count(behind));
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// Line operations: one walk over the packed array. Along row i of the array the elements lie side by side from (i, i)
// to (i, n - 1); along its column i they are (0, i) .. (i, i). A row of an upper matrix is a row of the array, a row of
// a lower matrix a column, and a line of a symmetric matrix a column followed by a row.

namespace {

enum class Line { row, col };

/// The span of array positions that line `index` of a matrix owns, or one reduced to `first`..`last` of it.
struct LineWalk {
  index_t index;
  index_t first;
  index_t last;
};

LineWalk CheckedWalk(const TriMatrix& a, Line line, index_t index, index_t first, index_t last) {
  const index_t n = a.ndim();
  index_t min = 0;
  index_t max = n - 1;
  if (a.kind() != Matrix::symmetric) {
    const bool along_array_row = (line == Line::row) == (a.kind() == Matrix::upper_triangular);
    if (along_array_row) {
      min = index;
    } else {
      max = index;
    }
  }
  if (last == Matrix::npos) {
    last = max;
    if (first == Matrix::npos) first = min;
  }
  a.ThrowForEachIn(detail::code::none, index, n, first, min, last, max);
  return {index, first, last};
}

template <class Data, class Each>
void ForEach(Data* d, index_t n, const LineWalk& walk, Each each) {
  index_t p = walk.first;
  for (; p < walk.index && p <= walk.last; ++p) each(d[packed_index(p, walk.index, n)]);
  if (p > walk.last) return;
  Data* const row = d + packed_row(walk.index, n) - walk.index;
  for (; p <= walk.last; ++p) each(row[p]);
}

void Set(TriMatrix& a, Line line, index_t index, double value, index_t first, index_t last) {
  const LineWalk walk = CheckedWalk(a, line, index, first, last);
  ForEach(a.data(), a.ndim(), walk, [value](double& e) { e = value; });
}

double Sum(const TriMatrix& a, Line line, index_t index, index_t first, index_t last) {
  const LineWalk walk = CheckedWalk(a, line, index, first, last);
  double sum = 0.0;
  ForEach(a.data(), a.ndim(), walk, [&sum](double e) { sum += e; });
  return sum;
}

double SumSq(const TriMatrix& a, Line line, index_t index, index_t first, index_t last) {
  const LineWalk walk = CheckedWalk(a, line, index, first, last);
  double sum = 0.0;
  ForEach(a.data(), a.ndim(), walk, [&sum](double e) { sum += e * e; });
  return sum;
}

void NegateLine(TriMatrix& a, Line line, index_t index, index_t first, index_t last) {
  const LineWalk walk = CheckedWalk(a, line, index, first, last);
  ForEach(a.data(), a.ndim(), walk, [](double& e) { e = -e; });
}

void MultLine(TriMatrix& a, Line line, index_t index, double factor, index_t first, index_t last) {
  const LineWalk walk = CheckedWalk(a, line, index, first, last);
  ForEach(a.data(), a.ndim(), walk, [factor](double& e) { e *= factor; });
}

void SetBand(TriMatrix& a, Line line, double value, index_t at, index_t count) {
  if (count == 0) return;
  a.ThrowDimRange(detail::code::none, at, count, a.ndim());
  for (index_t i = at; i < at + count; ++i) Set(a, line, i, value, Matrix::npos, Matrix::npos);
}

}  // namespace

void TriMatrix::SetRow(size_type i, double v, size_type first, size_type last) { Set(*this, Line::row, i, v, first, last); }
void TriMatrix::SetCol(size_type i, double v, size_type first, size_type last) { Set(*this, Line::col, i, v, first, last); }
void TriMatrix::ClearRow(size_type i, size_type first, size_type last) { Set(*this, Line::row, i, 0.0, first, last); }
void TriMatrix::ClearCol(size_type i, size_type first, size_type last) { Set(*this, Line::col, i, 0.0, first, last); }
double TriMatrix::SumRow(size_type i, size_type first, size_type last) const {
  return Sum(*this, Line::row, i, first, last);
}
double TriMatrix::SumCol(size_type i, size_type first, size_type last) const {
  return Sum(*this, Line::col, i, first, last);
}
double TriMatrix::SumSqRow(size_type i, size_type first, size_type last) const {
  return SumSq(*this, Line::row, i, first, last);
}
double TriMatrix::SumSqCol(size_type i, size_type first, size_type last) const {
  return SumSq(*this, Line::col, i, first, last);
}
void TriMatrix::NegateRow(size_type i, size_type first, size_type last) { NegateLine(*this, Line::row, i, first, last); }
void TriMatrix::NegateCol(size_type i, size_type first, size_type last) { NegateLine(*this, Line::col, i, first, last); }
void TriMatrix::MultRow(size_type i, double factor, size_type first, size_type last) {
  MultLine(*this, Line::row, i, factor, first, last);
}
void TriMatrix::MultCol(size_type i, double factor, size_type first, size_type last) {
  MultLine(*this, Line::col, i, factor, first, last);
}
void TriMatrix::SetRows(double value, size_type at, size_type count) { SetBand(*this, Line::row, value, at, count); }
void TriMatrix::SetCols(double value, size_type at, size_type count) { SetBand(*this, Line::col, value, at, count); }
