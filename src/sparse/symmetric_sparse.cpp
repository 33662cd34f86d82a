// SymmetricSparseMatrix: construction, conversion, lines as vectors.
#include "quorvel/SymmetricSparseMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "sparse/copy.h"
#include "sparse/print.h"

namespace detail = quorvel::detail;
namespace fixed = quorvel::detail::fixed;

static_assert(sizeof(SymmetricSparseMatrix) == sizeof(SparseMatrix));

#define KIND SymmetricSparseMatrix
#include "sparse/sparse_kind.inc"

SymmetricSparseMatrix::SymmetricSparseMatrix() : SparseMatrix(symmetric_sparse, 0, 0) {}

SymmetricSparseMatrix::SymmetricSparseMatrix(size_type n) : SparseMatrix(symmetric_sparse, n, n) {}

SymmetricSparseMatrix::SymmetricSparseMatrix(size_type rowCount, size_type colCount)
    : SparseMatrix(symmetric_sparse, rowCount, colCount) {}

SymmetricSparseMatrix::SymmetricSparseMatrix(const SymmetricMatrix& source) : SymmetricSparseMatrix() {
  *this = source;
}

SymmetricSparseMatrix::SymmetricSparseMatrix(const DiagonalMatrix& source) : SymmetricSparseMatrix() {
  CopyMat(source);
}

SymmetricSparseMatrix& SymmetricSparseMatrix::operator=(const SymmetricMatrix& source) {
  ThrowEquals(detail::code::assign, source);
  const detail::Consumed operand(source);
  detail::FillTarget(*this, [&] { detail::CopyDense(*this, source); });
  return *this;
}

SymmetricSparseMatrix& SymmetricSparseMatrix::operator=(const DiagonalMatrix& source) {
  CopyMat(source);
  return *this;
}

const char* SymmetricSparseMatrix::ClassName() const { return "SymmetricSparseMatrix"; }

bool SymmetricSparseMatrix::IsSymmetric() const { return true; }

Matrix::size_type SymmetricSparseMatrix::NumberNonZero() const noexcept {
  size_type onDiagonal = 0;
  for (size_type i = 0; i < rows; ++i) {
    if (rowHeads[i] != nullptr && rowHeads[i]->col == i) ++onDiagonal;
  }
  return 2 * used - onDiagonal;
}

void SymmetricSparseMatrix::GetLimitedCol(unsigned i, RegularSparseMatrix& out, unsigned first, unsigned last) const {
  if (first > last || i >= cols || last >= rows) detail::FailWith(fixed::symmetric_sparse_line);
  if (i <= first) {
    GetRowElements(i, first, last, out);
  } else if (i >= last) {
    GetColElements(i, first, last, out);
  } else {
    GetColElements(i, first, i, out);
    // Written by absolute column, read from 0 on: documented, and kept.
    RegularSparseMatrix right(last - i, 1);
    GetRowElements(i, i + 1, last, right);
    for (unsigned k = 1; k <= last - i; ++k) {
      const SparseElement* const e = right.rowHeads[k - 1];
      out.Put(i + k, 0, e != nullptr ? e->value : 0.0);
    }
  }
}

void SymmetricSparseMatrix::GetLimitedRow(unsigned i, RegularSparseMatrix& out, unsigned first, unsigned last) const {
  GetLimitedCol(i, out, first, last);
}

void SymmetricSparseMatrix::GetEntireCol(unsigned i, RegularSparseMatrix& out) const { GetLimitedCol(i, out, 0, rows); }

void SymmetricSparseMatrix::GetEntireRow(unsigned i, RegularSparseMatrix& out) const { GetLimitedCol(i, out, 0, cols); }
