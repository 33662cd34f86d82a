// DiagonalMatrix: construction, insertion and removal.
#include "quorvel/DiagonalMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "dense/block.h"
#include "dense/new_dense.h"
#include "factor/templates.h"

namespace detail = quorvel::detail;

#define KIND DiagonalMatrix
#define BASE SquareMatrix
#include "dense/square_kind.inc"

DiagonalMatrix::DiagonalMatrix() noexcept : SquareMatrix(diagonal) {}

DiagonalMatrix::DiagonalMatrix(size_type n) : SquareMatrix(diagonal) {
  AllocateMemory(n, true);
  n_ = n;
}

DiagonalMatrix::DiagonalMatrix(size_type rows, size_type cols) : SquareMatrix(diagonal) {
  if (rows != cols) detail::FailWith(detail::code::diagonal_size + detail::offset::shape);
  AllocateMemory(rows, true);
  n_ = rows;
}

DiagonalMatrix::DiagonalMatrix(DiagonalMatrix& source) : DiagonalMatrix() { *this = source; }

const char* DiagonalMatrix::ClassName() const { return "DiagonalMatrix"; }

bool DiagonalMatrix::IsSymmetric() const { return true; }

Matrix::size_type DiagonalMatrix::StoredCount() const { return ndim(); }

Matrix::size_type DiagonalMatrix::GetArrayCount(size_type rows, size_type cols) const {
  if (rows != cols) detail::FailWith(GetErrorCode(), this);
  return rows;
}

void DiagonalMatrix::ThrowDiagonalMatrixAccessorSet(unsigned i, unsigned j) const {
  if (!(i == j && i < ndim())) detail::FailWith(detail::fixed::square_index);
}

void DiagonalMatrix::InsertRowsAndCols(size_type at, size_type count) {
  if (count == 0) return;
  ThrowInsert(detail::code::none, at, n_);
  detail::RequireSize(n_, count);
  Reserve(n_ + count, n_ + count);
  double* const d = data();
  detail::MoveDoubles(d + at + count, d + at, n_ - at);
  detail::ClearDoubles(d + at, count);
  n_ += count;
}

void DiagonalMatrix::RemoveRowsAndCols(size_type at, size_type count) {
  if (count == 0) return;
  ThrowDimRange(detail::code::none, at, count, n_);
  n_ -= count;
  double* const d = data();
  detail::MoveDoubles(d + at, d + at + count, n_ - at);
}
