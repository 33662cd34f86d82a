// RegularSparseMatrix: construction, conversion, lines as vectors.
#include "quorvel/RegularSparseMatrix.h"

#include <utility>

#include "core/ownership.h"
#include "core/same_kind.h"
#include "sparse/copy.h"
#include "sparse/print.h"

namespace detail = quorvel::detail;
namespace fixed = quorvel::detail::fixed;

static_assert(sizeof(RegularSparseMatrix) == sizeof(SparseMatrix));

#define KIND RegularSparseMatrix
#include "sparse/sparse_kind.inc"

RegularSparseMatrix::RegularSparseMatrix() : SparseMatrix(regular_sparse, 0, 0) {}

RegularSparseMatrix::RegularSparseMatrix(size_type rowCount, size_type colCount)
    : SparseMatrix(regular_sparse, rowCount, colCount) {}

RegularSparseMatrix::RegularSparseMatrix(const SymmetricSparseMatrix& source) : RegularSparseMatrix() {
  *this = source;
}
RegularSparseMatrix::RegularSparseMatrix(const RegularMatrix& source) : RegularSparseMatrix() { CopyMat(source); }
RegularSparseMatrix::RegularSparseMatrix(const SymmetricMatrix& source) : RegularSparseMatrix() { CopyMat(source); }
RegularSparseMatrix::RegularSparseMatrix(const UpperTriangularMatrix& source) : RegularSparseMatrix() {
  CopyMat(source);
}
RegularSparseMatrix::RegularSparseMatrix(const LowerTriangularMatrix& source) : RegularSparseMatrix() {
  CopyMat(source);
}
RegularSparseMatrix::RegularSparseMatrix(const DiagonalMatrix& source) : RegularSparseMatrix() { CopyMat(source); }

RegularSparseMatrix& RegularSparseMatrix::operator=(const SymmetricSparseMatrix& source) {
  ThrowEquals(detail::code::sparse_copy, source);
  const detail::Consumed operand(source);
  detail::FillTarget(*this, [&] { detail::CopyStored(*this, source, false); });
  return *this;
}

RegularSparseMatrix& RegularSparseMatrix::operator=(const RegularMatrix& source) {
  CopyMat(source);
  return *this;
}

RegularSparseMatrix& RegularSparseMatrix::operator=(const SymmetricMatrix& source) {
  CopyMat(source);
  return *this;
}

RegularSparseMatrix& RegularSparseMatrix::operator=(const UpperTriangularMatrix& source) {
  CopyMat(source);
  return *this;
}

RegularSparseMatrix& RegularSparseMatrix::operator=(const LowerTriangularMatrix& source) {
  CopyMat(source);
  return *this;
}

RegularSparseMatrix& RegularSparseMatrix::operator=(const DiagonalMatrix& source) {
  CopyMat(source);
  return *this;
}

const char* RegularSparseMatrix::ClassName() const { return "RegularSparseMatrix"; }

bool RegularSparseMatrix::IsSymmetric() const { return false; }

void RegularSparseMatrix::GetLimitedRow(unsigned row, RegularSparseMatrix& out, unsigned first, unsigned last) const {
  GetRowElements(row, first, last, out);
}

void RegularSparseMatrix::GetLimitedCol(unsigned col, RegularSparseMatrix& out, unsigned first, unsigned last) const {
  GetColElements(col, first, last, out);
}

void RegularSparseMatrix::GetEntireRow(unsigned row, RegularSparseMatrix& out) const {
  if (row >= rows) detail::FailWith(fixed::sparse_entire_row);
  GetLimitedRow(row, out, 0, cols - 1);
}

void RegularSparseMatrix::GetEntireCol(unsigned col, RegularSparseMatrix& out) const {
  if (col >= cols) detail::FailWith(fixed::sparse_entire_col);
  GetLimitedCol(col, out, 0, rows - 1);
}
