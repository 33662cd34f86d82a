// RegularMatrix: operations on rows and columns. Storage is by rows: element (i, j) is data()[i * n + j].
#include "core/ownership.h"
#include "core/storage.h"
#include "factor/templates.h"
#include "quorvel/RegularMatrix.h"

namespace detail = quorvel::detail;
using detail::index_t;

// ---------------------------------------------------------------------------------------------------------------------
// One line. A row is a run of doubles, a column a stride of n.

namespace {

struct LineWalk {
  std::size_t begin;
  std::size_t step;
  index_t count;
};

LineWalk RowWalk(const RegularMatrix& a, index_t row, index_t first, index_t last) {
  const index_t n = a.ncols();
  if (last == Matrix::npos) last = n - 1;
  // A line without elements has no valid range.
  a.ThrowForEachIn(detail::code::none, row, n == 0 ? 0 : a.nrows(), first, 0, last, n - 1);
  return {std::size_t{row} * n + first, 1, last - first + 1};
}

LineWalk ColWalk(const RegularMatrix& a, index_t col, index_t first, index_t last) {
  const index_t m = a.nrows();
  if (last == Matrix::npos) last = m - 1;
  a.ThrowForEachIn(detail::code::none, col, m == 0 ? 0 : a.ncols(), first, 0, last, m - 1);
  return {std::size_t{first} * a.ncols() + col, a.ncols(), last - first + 1};
}

template <class Data, class Each>
void ForEach(Data* data, const LineWalk& walk, Each each) {
  Data* e = data + walk.begin;
  for (index_t k = 0; k < walk.count; ++k, e += walk.step) each(*e);
}

double Sum(const RegularMatrix& a, const LineWalk& walk) {
  double sum = 0.0;
  ForEach(a.data(), walk, [&sum](double e) { sum += e; });
  return sum;
}

double SumSq(const RegularMatrix& a, const LineWalk& walk) {
  double sum = 0.0;
  ForEach(a.data(), walk, [&sum](double e) { sum += e * e; });
  return sum;
}

void NegateLine(RegularMatrix& a, const LineWalk& walk) {
  ForEach(a.data(), walk, [](double& e) { e = -e; });
}

void MultLine(RegularMatrix& a, double factor, const LineWalk& walk) {
  ForEach(a.data(), walk, [factor](double& e) { e *= factor; });
}

void SetLine(RegularMatrix& a, double value, const LineWalk& walk) {
  ForEach(a.data(), walk, [value](double& e) { e = value; });
}

}  // namespace

double RegularMatrix::SumRow(size_type row, size_type first, size_type last) const {
  return Sum(*this, RowWalk(*this, row, first, last));
}
double RegularMatrix::SumCol(size_type col, size_type first, size_type last) const {
  return Sum(*this, ColWalk(*this, col, first, last));
}
double RegularMatrix::SumSqRow(size_type row, size_type first, size_type last) const {
  return SumSq(*this, RowWalk(*this, row, first, last));
}
double RegularMatrix::SumSqCol(size_type col, size_type first, size_type last) const {
  return SumSq(*this, ColWalk(*this, col, first, last));
}
void RegularMatrix::NegateRow(size_type row, size_type first, size_type last) {
  NegateLine(*this, RowWalk(*this, row, first, last));
}
void RegularMatrix::NegateCol(size_type col, size_type first, size_type last) {
  NegateLine(*this, ColWalk(*this, col, first, last));
}
void RegularMatrix::MultRow(size_type row, double factor, size_type first, size_type last) {
  MultLine(*this, factor, RowWalk(*this, row, first, last));
}
void RegularMatrix::MultCol(size_type col, double factor, size_type first, size_type last) {
  MultLine(*this, factor, ColWalk(*this, col, first, last));
}
void RegularMatrix::SetRow(size_type row, double value, size_type first, size_type last) {
  SetLine(*this, value, RowWalk(*this, row, first, last));
}
void RegularMatrix::SetCol(size_type col, double value, size_type first, size_type last) {
  SetLine(*this, value, ColWalk(*this, col, first, last));
}
void RegularMatrix::ClearRow(size_type row, size_type first, size_type last) { SetRow(row, 0.0, first, last); }
void RegularMatrix::ClearCol(size_type col, size_type first, size_type last) { SetCol(col, 0.0, first, last); }

// ---------------------------------------------------------------------------------------------------------------------
// Whole rows and columns.

void RegularMatrix::SetRows(double value, size_type first, size_type count) {
  ThrowDimRange(detail::code::none, first, count, m_);
  if (count == 0) return;
  detail::FillDoubles(data() + std::size_t{first} * n_, value, std::uint64_t{count} * n_);
}

void RegularMatrix::SetCols(double value, size_type first, size_type count) {
  ThrowDimRange(detail::code::none, first, count, n_);
  // The stride is the row count, and there are n steps; what would lie behind the last element is skipped. Steps that
  // touch are one run.
  const std::uint64_t stored = StoredCount();
  const bool touching = count >= m_;
  const std::uint64_t run = touching ? (std::uint64_t{n_} - 1) * m_ + count : count;
  std::uint64_t begin = first;
  for (size_type steps = touching ? 1 : n_; steps > 0 && begin < stored; --steps, begin += m_) {
    detail::FillDoubles(data() + begin, value, run < stored - begin ? run : stored - begin);
  }
}

void RegularMatrix::InsertRows(size_type at, size_type count) {
  if (count == 0) return;
  ThrowInsert(detail::code::none, at, m_);
  detail::RequireSize(m_, count);
  const std::uint64_t stored = StoredCount();
  Reserve(m_ + count, n_);
  double* const d = data();
  const std::uint64_t begin = std::uint64_t{at} * n_;
  const std::uint64_t end = begin + std::uint64_t{count} * n_;
  // Of the rows behind the gap only their first m - at doubles move: one per row, not n.
  const size_type moved = n_ == 0 ? 0 : m_ - at;
  const std::uint64_t grown = stored + (end - begin);
  detail::MoveDoubles(d + end, d + begin, moved);
  detail::ClearDoubles(d + begin, end - begin);
  const std::uint64_t unset = end + moved > stored ? end + moved : stored;
  if (unset < grown) detail::ClearDoubles(d + unset, grown - unset);
  m_ += count;
}

void RegularMatrix::InsertCols(size_type at, size_type count) {
  if (count == 0) return;
  ThrowInsert(detail::code::none, at, n_);
  detail::RequireSize(n_, count);
  Reserve(m_, n_ + count);
  double* const d = data();
  const size_type grown = n_ + count;
  const size_type tail = n_ - at;
  // From the last row backwards, each row from its end: no double is overwritten before it has moved.
  for (size_type i = m_; i-- > 0;) {
    double* const to = d + std::size_t{i} * grown;
    const double* const from = d + std::size_t{i} * n_;
    detail::MoveDoubles(to + at + count, from + at, tail);
    detail::ClearDoubles(to + at, count);
    detail::MoveDoubles(to, from, at);
  }
  n_ = grown;
}

void RegularMatrix::RemoveRows(size_type first, size_type count) {
  if (count == 0) return;
  ThrowDimRange(detail::code::none, first, count, m_);
  m_ -= count;
  double* const to = data() + std::size_t{first} * n_;
  detail::MoveDoubles(to, to + std::size_t{count} * n_, std::uint64_t{m_ - first} * n_);
}

void RegularMatrix::RemoveCols(size_type first, size_type count) {
  if (count == 0) return;
  ThrowDimRange(detail::code::none, first, count, n_);
  const size_type left = n_ - count;
  double* const d = data();
  for (size_type i = 0; i < m_; ++i) {
    double* const to = d + std::size_t{i} * left;
    const double* const from = d + std::size_t{i} * n_;
    detail::MoveDoubles(to, from, first);
    detail::MoveDoubles(to + first, from + first + count, left - first);
  }
  n_ = left;
}

// ---------------------------------------------------------------------------------------------------------------------
// Extraction.

void RegularMatrix::GetLimitedRow(size_type row, double* out, size_type& first, size_type& last) const {
  GetLimitedRow_T(*this, row, out, first, last);
}

void RegularMatrix::GetLimitedCol(size_type col, double* out, size_type& first, size_type& last) const {
  GetLimitedCol_T(*this, col, out, first, last);
}

void RegularMatrix::GetEntireRow(size_type row, double* out, size_type& first, size_type& last) const {
  first = 0;
  last = n_ - 1;
  GetLimitedRow_T(*this, row, out, first, last);
}

void RegularMatrix::GetEntireCol(size_type col, double* out, size_type& first, size_type& last) const {
  first = 0;
  last = m_ - 1;
  GetLimitedCol_T(*this, col, out, first, last);
}
