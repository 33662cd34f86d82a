// One row or column: sums, negation, scaling, clearing, reading it into a vector.
#include "core/ownership.h"
#include "sparse/axis.h"
#include "sparse/cursor.h"
#include "sparse/pool.h"

namespace detail = quorvel::detail;
namespace fixed = quorvel::detail::fixed;
using detail::ByCol;
using detail::ByRow;
using detail::index_t;
using detail::LineCursor;
using detail::ListHead;
using detail::SparseLines;

namespace {

template <class Axis>
LineCursor LineOf(const SparseMatrix& a, index_t i) noexcept {
  if constexpr (std::is_same_v<Axis, ByRow>) {
    return SparseLines(a).row(i);
  } else {
    return SparseLines(a).col(i);
  }
}

/// Calls use(e) for the stored elements first..last of a line, in increasing index, after the checks.
template <class Axis, class Use>
void ForEachIn(const SparseMatrix& a, index_t i, index_t first, index_t last, Use use) {
  const index_t length = Axis::Cross::count(a);
  if (last == Matrix::npos) last = length - 1;
  // A line of length 0 has no valid index.
  const index_t count = length != 0 ? Axis::count(a) : 0;
  a.ThrowForEachIn(detail::code::none, i, count, first, 0, last, length - 1);
  LineCursor e = LineOf<Axis>(a, i);
  for (e.skip_to(first); e && e.index() <= last; e.next()) use(e.element());
}

template <class Axis>
double Sum(const SparseMatrix& a, index_t i, index_t first, index_t last) {
  double sum = 0.0;
  ForEachIn<Axis>(a, i, first, last, [&sum](const SparseElement& e) { sum += e.value; });
  return sum;
}

template <class Axis>
double SumSq(const SparseMatrix& a, index_t i, index_t first, index_t last) {
  double sum = 0.0;
  ForEachIn<Axis>(a, i, first, last, [&sum](const SparseElement& e) { sum += e.value * e.value; });
  return sum;
}

template <class Axis>
void NegateLine(const SparseMatrix& a, index_t i, index_t first, index_t last) {
  ForEachIn<Axis>(a, i, first, last, [](SparseElement& e) { e.value = -e.value; });
}

template <class Axis>
void MultLine(const SparseMatrix& a, index_t i, double factor, index_t first, index_t last) {
  ForEachIn<Axis>(a, i, first, last, [factor](SparseElement& e) { e.value = e.value * factor; });
}

/// Removes the stretch first..last of list i. `last` is clamped by the number of lines, not by their length: kept. The
/// records go back as one run in their order, so the first of them is the next to be used.
template <class Axis>
void ClearLine(SparseMatrix& a, index_t i, index_t first, index_t last, int failure) {
  using Cross = typename Axis::Cross;
  const index_t count = Axis::count(a);
  if (last >= count) last = count - 1;
  if (i >= count || first > last) detail::FailWith(failure);
  SparseElement** link = &Axis::heads(a)[i];
  while (*link != nullptr && Axis::along(**link) < first) link = &Axis::next(**link);
  SparseElement* const run = *link;
  SparseElement* end = run;
  SparseElement* tail = nullptr;
  while (end != nullptr && Axis::along(*end) <= last) {
    SparseElement* const e = end;
    end = Axis::next(*e);
    detail::UnlinkThis<Cross>(a, e);
    e->nextInRow = nullptr;
    if (tail != nullptr) tail->nextInCol = e;
    tail = e;
    --a.used;
  }
  if (tail == nullptr) return;
  *link = end;
  detail::ReturnRun(a, run, tail);
}

/// Puts values into the first column of `out`, one by one with ascending indices, each behind the one before.
class VectorWriter {
 public:
  explicit VectorWriter(SparseMatrix& out) noexcept : out_(out), tail_(nullptr), next_(0), ascending_(true) {
    out_.Clear();
  }

  void put(index_t i, double value) {
    ascending_ = ascending_ && i >= next_;
    next_ = i + 1;
    if (!ascending_) {
      out_.Put(i, 0, value);
    } else if (value != 0.0) {
      append(i, value);
    }
  }

 private:
  void append(index_t i, double value) {
    const bool mirrored = detail::is_symmetric_sparse(out_);
    const index_t row = mirrored ? 0 : i;
    const index_t col = mirrored ? i : 0;
    if (row >= out_.rows || col >= out_.cols) detail::FailWith(fixed::sparse_insert);
    SparseElement* const e = detail::NewElement(out_, row, col, value);
    // The vector lies along one list; in the other direction every list gets one element.
    (mirrored ? out_.colHeads[col] : out_.rowHeads[row]) = e;
    SparseElement*& vector = mirrored ? out_.rowHeads[0] : out_.colHeads[0];
    if (tail_ == nullptr) {
      vector = e;
    } else {
      (mirrored ? tail_->nextInRow : tail_->nextInCol) = e;
    }
    tail_ = e;
  }

  SparseMatrix& out_;
  SparseElement* tail_;
  index_t next_;
  bool ascending_;
};

template <class Axis>
void ReadLine(const SparseMatrix& a, index_t i, index_t first, index_t last, SparseMatrix& out) {
  VectorWriter writer(out);  // empties `out`, which may be `a`
  for (SparseElement* e = ListHead<Axis>(a, i); e != nullptr && Axis::along(*e) <= last; e = Axis::next(*e)) {
    if (Axis::along(*e) >= first) writer.put(Axis::along(*e), e->value);
  }
}

bool IsLineEmpty(const SparseMatrix& a, index_t i, bool byRow, bool byCol) noexcept {
  return !(byRow && ListHead<ByRow>(a, i) != nullptr) && !(byCol && ListHead<ByCol>(a, i) != nullptr);
}

}  // namespace

double SparseMatrix::SumRow(unsigned row, unsigned first, unsigned last) const {
  return Sum<ByRow>(*this, row, first, last);
}

double SparseMatrix::SumCol(unsigned col, unsigned first, unsigned last) const {
  return Sum<ByCol>(*this, col, first, last);
}

double SparseMatrix::SumSqRow(unsigned row, unsigned first, unsigned last) const {
  return SumSq<ByRow>(*this, row, first, last);
}

double SparseMatrix::SumSqCol(unsigned col, unsigned first, unsigned last) const {
  return SumSq<ByCol>(*this, col, first, last);
}

void SparseMatrix::NegateRow(unsigned row, unsigned first, unsigned last) {
  NegateLine<ByRow>(*this, row, first, last);
}

void SparseMatrix::NegateCol(unsigned col, unsigned first, unsigned last) {
  NegateLine<ByCol>(*this, col, first, last);
}

void SparseMatrix::MultRow(unsigned row, double factor, unsigned first, unsigned last) {
  MultLine<ByRow>(*this, row, factor, first, last);
}

void SparseMatrix::MultCol(unsigned col, double factor, unsigned first, unsigned last) {
  MultLine<ByCol>(*this, col, factor, first, last);
}

void SparseMatrix::ClearRow(unsigned row, unsigned first, unsigned last) {
  ClearLine<ByRow>(*this, row, first, last, fixed::sparse_clear_row);
}

void SparseMatrix::ClearCol(unsigned col, unsigned first, unsigned last) {
  ClearLine<ByCol>(*this, col, first, last, fixed::sparse_clear_col);
}

bool SparseMatrix::IsRowEmpty(unsigned row) const {
  if (row >= rows) detail::FailWith(fixed::sparse_row);
  return IsLineEmpty(*this, row, true, detail::is_symmetric_sparse(*this));
}

bool SparseMatrix::IsColEmpty(unsigned col) const {
  if (col >= cols) detail::FailWith(fixed::sparse_col);
  return IsLineEmpty(*this, col, detail::is_symmetric_sparse(*this), true);
}

void SparseMatrix::GetRowElements(unsigned row, unsigned first, unsigned last, SparseMatrix& out) const {
  if (row >= rows || first > last || last >= cols) detail::FailWith(fixed::sparse_row_elements);
  ReadLine<ByRow>(*this, row, first, last, out);
}

void SparseMatrix::GetColElements(unsigned col, unsigned first, unsigned last, SparseMatrix& out) const {
  // The comparison with the row count is kept; the one with the column count keeps the read inside the lists.
  if (first > last || last >= rows || col >= rows || col >= cols) detail::FailWith(fixed::sparse_col_elements);
  ReadLine<ByCol>(*this, col, first, last, out);
}
