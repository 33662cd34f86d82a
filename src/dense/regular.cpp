// RegularMatrix: construction, conversion, sizing, whole-matrix operations.
#include "quorvel/RegularMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "core/storage.h"
#include "dense/block.h"
#include "dense/new_dense.h"
#include "factor/templates.h"

namespace detail = quorvel::detail;

static_assert(sizeof(void*) != 4 || sizeof(RegularMatrix) == 28);

template RegularMatrix* detail::NewDense<RegularMatrix>(detail::index_t rows, detail::index_t cols);

RegularMatrix::RegularMatrix() noexcept : SingleArrayMatrix(regular), m_(0), n_(0) {}

RegularMatrix::RegularMatrix(size_type rows, size_type cols) : SingleArrayMatrix(regular), m_(rows), n_(cols) {
  AllocateMemory(GetArrayCount(rows, cols), true);
}

RegularMatrix::RegularMatrix(RegularMatrix& source) : SingleArrayMatrix(regular), m_(0), n_(0) {
  if (!detail::TookOver(*this, source)) *this = source;
}

RegularMatrix::RegularMatrix(const RegularMatrix& source) : RegularMatrix(detail::Mutable(source)) {}

RegularMatrix::RegularMatrix(RegularMatrix&& source) noexcept
    : SingleArrayMatrix(std::move(source)),
      m_(std::exchange(source.m_, 0u)),
      n_(std::exchange(source.n_, 0u)) {
  source.DestroyIfDispensable();
}

RegularMatrix& RegularMatrix::operator=(RegularMatrix& source) { return detail::AssignSameKind(*this, source); }

RegularMatrix& RegularMatrix::operator=(const RegularMatrix& source) { return *this = detail::Mutable(source); }

RegularMatrix& RegularMatrix::operator=(RegularMatrix&& source) noexcept {
  if (this == &source) return *this;
  SingleArrayMatrix::operator=(std::move(source));
  m_ = std::exchange(source.m_, 0u);
  n_ = std::exchange(source.n_, 0u);
  source.DestroyIfDispensable();
  return *this;
}

RegularMatrix::RegularMatrix(const SymmetricMatrix& source) : RegularMatrix() { *this = source; }
RegularMatrix::RegularMatrix(const UpperTriangularMatrix& source) : RegularMatrix() { *this = source; }
RegularMatrix::RegularMatrix(const LowerTriangularMatrix& source) : RegularMatrix() { *this = source; }
RegularMatrix::RegularMatrix(const DiagonalMatrix& source) : RegularMatrix() { *this = source; }

RegularMatrix& RegularMatrix::operator=(const SymmetricMatrix& source) { return RM_EQ_TMat(*this, source); }
RegularMatrix& RegularMatrix::operator=(const UpperTriangularMatrix& source) { return RM_EQ_TMat(*this, source); }
RegularMatrix& RegularMatrix::operator=(const LowerTriangularMatrix& source) { return RM_EQ_TMat(*this, source); }
RegularMatrix& RegularMatrix::operator=(const DiagonalMatrix& source) { return RM_EQ_TMat(*this, source); }

RegularMatrix& RegularMatrix::operator=(double x) {
  SingleArrayMatrix::operator=(x);
  return *this;
}

const char* RegularMatrix::ClassName() const { return "RegularMatrix"; }

bool RegularMatrix::IsSymmetric() const { return false; }

void RegularMatrix::GetSize(size_type& rows, size_type& cols) const {
  rows = m_;
  cols = n_;
}

Matrix::size_type RegularMatrix::StoredCount() const { return GetArrayCount(m_, n_); }

Matrix::size_type RegularMatrix::GetArrayCount(size_type rows, size_type cols) const {
  return detail::saturated(std::uint64_t{rows} * cols);
}

void RegularMatrix::SetSize(size_type rows, size_type cols, bool keep) {
  ThrowNotOk(detail::code::none);
  if (rows == 0 || cols == 0) {
    m_ = rows;
    n_ = cols;
    return;
  }
  if (!keep) {
    // Within the capacity the doubles stay where they are: a result may be one of its own operands.
    if (GetArrayCount(rows, cols) > capacity()) {
      m_ = n_ = 0;  // nothing is worth copying
      Reserve(rows, cols);
    }
    m_ = rows;
    n_ = cols;
    return;
  }
  Reserve(rows, cols);
  if (m_ > rows) RemoveRows(rows, m_ - rows);
  if (n_ > cols) {
    RemoveCols(cols, n_ - cols);
  } else {
    InsertCols(n_, cols - n_);
  }
  if (m_ < rows) InsertRows(m_, rows - m_);
}

void RegularMatrix::Swap(RegularMatrix& other) noexcept {
  if (this == &other) return;
  SwapArray(other);
  std::swap(m_, other.m_);
  std::swap(n_, other.n_);
}

RegularMatrix& RegularMatrix::operator-() { return detail::Negated(*this); }

RegularMatrix& RegularMatrix::operator-() const { return detail::Negated(detail::Mutable(*this)); }

RegularMatrix& RegularMatrix::operator*=(double s) {
  Mult(*this, s);
  return *this;
}

RegularMatrix& RegularMatrix::operator/=(double s) {
  Mult(*this, 1.0 / s);
  return *this;
}

void RegularMatrix::ThrowRegularMatrixAccessor(unsigned i, unsigned j) const {
  if (ErrorState() != 0 || !(i < m_ && j < n_)) detail::FailWith(detail::fixed::regular_index);
}

void RegularMatrix::ThrowRegularMatrixAccessor(unsigned i) const {
  const bool in_vector = (n_ == 1 && i < m_) || (m_ == 1 && i < n_);
  if (ErrorState() != 0 || !in_vector) detail::FailWith(detail::fixed::regular_index);
}

double RegularMatrix::operator()(size_type i, size_type j) const {
  ThrowRegularMatrixAccessor(i, j);
  return data()[static_cast<std::size_t>(i) * n_ + j];
}

double& RegularMatrix::operator()(size_type i, size_type j) {
  ThrowRegularMatrixAccessor(i, j);
  return data()[static_cast<std::size_t>(i) * n_ + j];
}

double RegularMatrix::operator()(size_type i) const {
  ThrowRegularMatrixAccessor(i);
  return data()[i];
}

double& RegularMatrix::operator()(size_type i) {
  ThrowRegularMatrixAccessor(i);
  return data()[i];
}

RegularMatrix& RegularMatrix::operator()(size_type firstRow, size_type lastRow, size_type firstCol,
                                         size_type lastCol) const {
  return detail::BlockOf(*this, {firstRow, lastRow}, {firstCol, lastCol});
}
