// Single elements: lookup, insertion, removal, Put, and the element reference.
#include <utility>

#include "core/ownership.h"
#include "sparse/axis.h"
#include "sparse/pool.h"

namespace detail = quorvel::detail;
namespace fixed = quorvel::detail::fixed;
using detail::ByCol;
using detail::ByRow;

namespace {

/// In the symmetric kind cell (i, j), j < i, is cell (j, i).
void Mirror(const SparseMatrix& a, unsigned& row, unsigned& col) noexcept {
  if (col < row && detail::is_symmetric_sparse(a)) std::swap(row, col);
}

void RequireCell(const SparseMatrix& a, unsigned row, unsigned col, int code) {
  if (row >= a.rows || col >= a.cols) detail::FailWith(code);
}

template <class Axis>
SparseElement* Find(const SparseMatrix& a, unsigned line, unsigned along) noexcept {
  SparseElement* e = detail::ListHead<Axis>(a, line);
  while (e != nullptr && Axis::along(*e) < along) e = Axis::next(*e);
  return e != nullptr && Axis::along(*e) == along ? e : nullptr;
}

}  // namespace

SparseElement* SparseMatrix::Cell_Loc(unsigned row, unsigned col) const noexcept {
  Mirror(*this, row, col);
  if (row >= rows || col >= cols) return nullptr;
  return row >= col ? Find<ByRow>(*this, row, col) : Find<ByCol>(*this, col, row);
}

SparseElement* SparseMatrix::GetFirstInRow(unsigned row) const {
  if (row >= rows) detail::FailWith(fixed::sparse_row);
  return rowHeads[row];
}

SparseElement* SparseMatrix::GetFirstInCol(unsigned col) const {
  if (col >= cols) detail::FailWith(fixed::sparse_col);
  return colHeads[col];
}

void SparseMatrix::SparseMatrixRowInsert(unsigned row, unsigned col, SparseElement* e) {
  RequireCell(*this, row, col, fixed::sparse_link_row);
  detail::LinkSorted<ByRow>(*this, row, col, e);
}

void SparseMatrix::SparseMatrixColInsert(unsigned row, unsigned col, SparseElement* e) {
  RequireCell(*this, row, col, fixed::sparse_link_col);
  detail::LinkSorted<ByCol>(*this, col, row, e);
}

SparseElement* SparseMatrix::SparseMatrixInsert(unsigned row, unsigned col, double value) {
  Mirror(*this, row, col);
  RequireCell(*this, row, col, fixed::sparse_insert);
  SparseElement* const e = detail::NewElement(*this, row, col, value);
  detail::LinkSorted<ByRow>(*this, row, col, e);
  detail::LinkSorted<ByCol>(*this, col, row, e);
  return e;
}

SparseElement* SparseMatrix::SparseMatrixInsert(SparseElement* prevInRow, unsigned row, unsigned col, double value) {
  RequireCell(*this, row, col, fixed::sparse_append);
  SparseElement* const e = detail::NewElement(*this, row, col, value);
  SparseElement*& link = prevInRow != nullptr ? prevInRow->nextInRow : rowHeads[row];
  e->nextInRow = link;
  link = e;
  if (detail::in_column_list(*this, row, col)) detail::LinkSorted<ByCol>(*this, col, row, e);
  return e;
}

void SparseMatrix::SparseMatrixRowRemove(SparseElement* e) noexcept { detail::Unlink<ByRow>(*this, e); }

void SparseMatrix::SparseMatrixColRemove(SparseElement* e) noexcept { detail::Unlink<ByCol>(*this, e); }

void SparseMatrix::SparseMatrixRemove(SparseElement* e) noexcept {
  detail::UnlinkThis<ByRow>(*this, e);
  detail::UnlinkThis<ByCol>(*this, e);
  detail::ReturnRecord(*this, e);
  --used;
}

void SparseMatrix::SparseMatrixRemove(SparseElement* prevInRow, SparseElement* e) noexcept {
  (prevInRow != nullptr ? prevInRow->nextInRow : rowHeads[e->row]) = e->nextInRow;
  e->nextInRow = nullptr;
  detail::UnlinkThis<ByCol>(*this, e);
  detail::ReturnRecord(*this, e);
  --used;
}

void SparseMatrix::Put(unsigned row, unsigned col, double value) {
  SparseElement* const e = Cell_Loc(row, col);
  if (e == nullptr) {
    if (value != 0.0) SparseMatrixInsert(row, col, value);
  } else if (value == 0.0) {
    SparseMatrixRemove(e);
  } else {
    e->value = value;
  }
}

void SparseMatrix::ThrowSparseMatrixAccessor(unsigned row, unsigned col) const {
  RequireCell(*this, row, col, fixed::sparse_index);
}

double SparseMatrix::operator()(size_type row, size_type col) const {
  ThrowSparseMatrixAccessor(row, col);
  const SparseElement* const e = Cell_Loc(row, col);
  return e != nullptr ? e->value : 0.0;
}

SparseMatrix::proxy::operator double() const {
  const SparseElement* const e = matrix_->Cell_Loc(row_, col_);
  return e != nullptr ? e->value : 0.0;
}

SparseMatrix::proxy& SparseMatrix::proxy::operator=(double value) {
  matrix_->Put(row_, col_, value);
  return *this;
}

SparseMatrix::proxy& SparseMatrix::proxy::operator=(const proxy& other) { return *this = static_cast<double>(other); }

void SparseMatrix::proxy::Change(SparseElement* e, double value) const {
  if (value == 0.0) {
    matrix_->SparseMatrixRemove(e);
  } else {
    e->value = value;
  }
}

SparseMatrix::proxy& SparseMatrix::proxy::operator+=(double d) {
  if (SparseElement* const e = matrix_->Cell_Loc(row_, col_)) {
    Change(e, e->value + d);
  } else if (d != 0.0) {
    matrix_->SparseMatrixInsert(row_, col_, d);
  }
  return *this;
}

SparseMatrix::proxy& SparseMatrix::proxy::operator-=(double d) { return *this += -d; }

SparseMatrix::proxy& SparseMatrix::proxy::operator*=(double d) {
  if (SparseElement* const e = matrix_->Cell_Loc(row_, col_)) Change(e, d * e->value);
  return *this;
}

SparseMatrix::proxy& SparseMatrix::proxy::operator/=(double d) {
  if (d == 0.0) detail::FailWith(fixed::sparse_division);
  if (SparseElement* const e = matrix_->Cell_Loc(row_, col_)) Change(e, d / e->value);
  return *this;
}
