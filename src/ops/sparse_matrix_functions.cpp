// Matrix functions of the sparse kinds, kron apart. Records are taken from the result's pool in the order in which the
// elements are named in each function.
#include "core/ownership.h"
#include "quorvel/DiagonalMatrix.h"
#include "quorvel/matrix_functions.h"
#include "sparse/append.h"
#include "sparse/column_writer.h"
#include "sparse/cursor.h"
#include "sparse/transposed.h"

using namespace quorvel::detail;

namespace {

/// The elements (r, c), r <= c, of A's column lists, column by column; zeros stay behind.
void FillUpper(SparseMatrix& result, const SparseMatrix& A) {
  ColumnWriter writer(result);
  for (index_t c = 0; c < A.cols; ++c) {
    SparseElement* prev = nullptr;
    for (const SparseElement* e = A.colHeads[c]; e != nullptr && e->row <= c; e = e->nextInCol) {
      if (e->value != 0.0) prev = writer.append(prev, e->row, c, e->value);
    }
  }
}

template <class K>
K& UpperTriangle(const SparseMatrix& A) {
  const Consumed operand(A);
  NewResult<K> result(A.rows, A.cols);
  FillUpper(*result, A);
  return result.hand_over();
}

/// Row i of the lower triangle: the row list up to the diagonal, or the mirrored column list of a symmetric matrix.
void FillLower(RegularSparseMatrix& result, const SparseMatrix& A) {
  RowWriter writer(result);
  const bool mirror = is_symmetric_sparse(A);
  for (index_t i = 0; i < A.rows; ++i) {
    SparseElement* prev = nullptr;
    for (const SparseElement* e = mirror ? A.colHeads[i] : A.rowHeads[i]; e != nullptr;
         e = mirror ? e->nextInCol : e->nextInRow) {
      const index_t j = mirror ? e->row : e->col;
      if (j > i) break;
      if (e->value != 0.0) prev = writer.append(prev, i, j, e->value);
    }
  }
}

}  // namespace

RegularSparseMatrix& transpose(RegularSparseMatrix& A) {
  RequireOk(A, code::transpose_sparse);
  const Consumed operand(A);
  NewResult<RegularSparseMatrix> result(A.cols, A.rows);
  FillTransposed(*result, A);
  return result.hand_over();
}

RegularSparseMatrix& transpose(const RegularSparseMatrix& A) { return transpose(Mutable(A)); }

SymmetricSparseMatrix& sym(const RegularSparseMatrix& A) {
  RequireSquareShape(A, code::sym_sparse);
  return UpperTriangle<SymmetricSparseMatrix>(A);
}

RegularSparseMatrix& triu(const SparseMatrix& A) {
  RequireSquareShape(A, code::triu_sparse);
  return UpperTriangle<RegularSparseMatrix>(A);
}

RegularSparseMatrix& tril(const SparseMatrix& A) {
  RequireSquareShape(A, code::tril_sparse);
  const Consumed operand(A);
  NewResult<RegularSparseMatrix> result(A.rows, A.cols);
  FillLower(*result, A);
  return result.hand_over();
}

DiagonalMatrix& diag(const SparseMatrix& A) {
  RequireSquareShape(A, code::diag);
  const Consumed operand(A);
  const SparseLines a(A);
  NewResult<DiagonalMatrix> result(A.rows);
  for (index_t i = 0; i < A.rows; ++i) result->data()[i] = a.at(i, i);
  return result.hand_over();
}

double trace(const SparseMatrix& A) {
  RequireOk(A, code::trace);
  const Consumed operand(A);
  const SparseLines a(A);
  const index_t n = A.rows < A.cols ? A.rows : A.cols;
  double sum = 0.0;
  for (index_t i = 0; i < n; ++i) sum += a.at(i, i);
  return sum;
}

double scalar(const SparseMatrix& A) {
  RequireOk(A, code::scalar);
  const Consumed operand(A);
  return SparseLines(A).at(0, 0);
}
