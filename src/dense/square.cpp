// SquareMatrix: the order, resizing, and element access by proxy.
#include <utility>

#include "core/ownership.h"
#include "dense/rules.h"

namespace detail = quorvel::detail;

SquareMatrix::SquareMatrix(SquareMatrix&& source) noexcept
    : SingleArrayMatrix(std::move(source)), n_(std::exchange(source.n_, 0u)) {}

/// Not onto itself: the kinds see to that.
SquareMatrix& SquareMatrix::operator=(SquareMatrix&& source) noexcept {
  SingleArrayMatrix::operator=(std::move(source));
  n_ = std::exchange(source.n_, 0u);
  return *this;
}

void SquareMatrix::SwapSquare(SquareMatrix& other) noexcept {
  SwapArray(other);
  std::swap(n_, other.n_);
}

void SquareMatrix::GetSize(size_type& rows, size_type& cols) const { rows = cols = n_; }

void SquareMatrix::SetSize(size_type rows, size_type cols, bool keep) {
  ThrowNotOk(detail::code::none);
  if (rows != cols) detail::FailWith(detail::offset::shape, this);
  if (rows == n_) return;
  if (rows == 0) {
    n_ = 0;
  } else if (rows < n_) {
    if (keep) {
      RemoveRowsAndCols(rows, n_ - rows);
    } else {
      n_ = rows;
    }
  } else if (keep) {
    InsertRowsAndCols(n_, rows - n_);
  } else {
    n_ = 0;  // nothing is worth copying
    Reserve(rows, rows);
    n_ = rows;
  }
}

void SquareMatrix::ThrowSquareMatrixAccessorGet(unsigned i, unsigned j) const {
  if (!(i < n_ && j < n_)) detail::FailWith(detail::fixed::square_index);
}

double SquareMatrix::operator()(size_type i, size_type j) const {
  ThrowSquareMatrixAccessorGet(i, j);
  switch (kind()) {
    case symmetric:
      return data()[detail::packed_mirrored(i, j, n_)];
    case upper_triangular:
      return i <= j ? data()[detail::packed_index(i, j, n_)] : 0.0;
    case lower_triangular:
      return i >= j ? data()[detail::packed_index(j, i, n_)] : 0.0;
    default:
      return i == j ? data()[i] : 0.0;
  }
}

// ---------------------------------------------------------------------------------------------------------------------
// proxy

SquareMatrix::proxy::operator double() const { return std::as_const(*matrix_)(i_, j_); }

double& SquareMatrix::proxy::Target() const {
  size_type a = i_;
  size_type b = j_;
  switch (matrix_->kind()) {
    case diagonal:
      static_cast<DiagonalMatrix*>(matrix_)->ThrowDiagonalMatrixAccessorSet(a, b);
      return matrix_->data()[a];
    case lower_triangular:
      std::swap(a, b);
      break;
    case symmetric:
      if (a > b) std::swap(a, b);
      break;
    default:
      break;
  }
  static_cast<TriMatrix*>(matrix_)->ThrowTriMatrixAccessorSet(a, b);
  return matrix_->data()[detail::packed_index(a, b, matrix_->n_)];
}

SquareMatrix::proxy& SquareMatrix::proxy::operator=(double value) {
  Target() = value;
  return *this;
}

SquareMatrix::proxy& SquareMatrix::proxy::operator=(const proxy& other) { return *this = static_cast<double>(other); }

SquareMatrix::proxy& SquareMatrix::proxy::operator+=(double value) {
  Target() += value;
  return *this;
}

SquareMatrix::proxy& SquareMatrix::proxy::operator-=(double value) {
  Target() -= value;
  return *this;
}

SquareMatrix::proxy& SquareMatrix::proxy::operator*=(double value) {
  Target() *= value;
  return *this;
}

SquareMatrix::proxy& SquareMatrix::proxy::operator/=(double value) {
  Target() /= value;
  return *this;
}
