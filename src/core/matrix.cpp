// State of the base class: count, flags, kind.
#include "core/kinds.h"

#include <utility>

const Matrix::size_type Matrix::npos;

Matrix::Matrix(Matrix&& source) noexcept
    : nsing_(std::exchange(source.nsing_, -1)),
      flags_(static_cast<unsigned char>(source.flags_ & ~dispensable_bit)),
      kind_(source.kind_) {
  source.flags_ &= dispensable_bit;
}

/// Not onto itself: the kinds see to that.
Matrix& Matrix::operator=(Matrix&& source) noexcept {
  nsing_ = std::exchange(source.nsing_, -1);
  flags_ = static_cast<unsigned char>((flags_ & dispensable_bit) | (source.flags_ & ~dispensable_bit));
  source.flags_ &= dispensable_bit;
  return *this;
}

void Matrix::SwapState(Matrix& other) noexcept { quorvel::detail::Access::swap_state(*this, other); }

Matrix::size_type Matrix::nrows() const {
  size_type rows, cols;
  GetSize(rows, cols);
  return rows;
}

Matrix::size_type Matrix::ncols() const {
  size_type rows, cols;
  GetSize(rows, cols);
  return cols;
}

void Matrix::set_ok(bool ok) noexcept {
  flags_ = static_cast<unsigned char>(ok ? flags_ & ~not_ok_bit : flags_ | not_ok_bit);
}

void Matrix::set_dispensable(bool dispensable) noexcept {
  flags_ = static_cast<unsigned char>(dispensable ? flags_ | dispensable_bit : flags_ & ~dispensable_bit);
}

void Matrix::DestroyIfDispensable() const noexcept {
  if (dispensable()) delete this;  // never all ways: the language asks whether this is null
}

// Offsets on machines with 4-byte pointers; wider ones keep the order of the fields.
static_assert(sizeof(void*) != 4 || sizeof(Matrix) == 12);
static_assert(sizeof(void*) != 4 || sizeof(SingleArrayMatrix) == 20);
static_assert(sizeof(void*) != 4 || sizeof(SquareMatrix) == 24);
