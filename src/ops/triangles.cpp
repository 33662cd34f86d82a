// Parts of a square matrix: sym, triu, tril, diag; and eye.
#include "quorvel/matrix_functions.h"

#include "core/ownership.h"
#include "core/sizing.h"
#include "ops/packed_twin.h"
#include "ops/views.h"

using namespace quorvel::detail;

namespace {

template <class K>
DiagonalMatrix& Diagonal(const K& A) {
  const Consumed operand(A);
  const Rule<K> a(A);
  NewResult<DiagonalMatrix> result(a.rows());
  for (index_t i = 0; i < a.rows(); ++i) result->data()[i] = a.store(i, i);
  return result.hand_over();
}

/// The packed positions of K, read from a square A. Zeros of either sign become +0.0.
template <class K>
K& Triangle(const RegularMatrix& A) {
  const Consumed operand(A);
  NewResult<K> result;
  SizeForResult(*result, A.nrows(), A.nrows());
  const Rule<RegularMatrix> a(A);
  const Rule<K> t(*result);
  for (index_t i = 0; i < a.rows(); ++i) {
    const Range part = t.stored_in_row(i);
    for (index_t j = part.begin; j < part.end; ++j) {
      t.store(i, j) = a.at(i, j) != 0.0 ? a.at(i, j) : 0.0;
    }
  }
  return result.hand_over();
}

}  // namespace

SymmetricMatrix& sym(const RegularMatrix& A) {
  RequireSquareShape(A, code::sym);
  const Consumed operand(A);
  const index_t n = A.nrows();
  NewResult<SymmetricMatrix> result;
  SizeForResult(*result, n, n);
  kernels().copy_lines(UpperTarget(*result), FactorOf(A), n, n);
  result->set_nsing(A.nsing());
  return result.hand_over();
}

UpperTriangularMatrix& triu(const RegularMatrix& A) {
  RequireSquareShape(A, code::triu);
  return Triangle<UpperTriangularMatrix>(A);
}

LowerTriangularMatrix& tril(const RegularMatrix& A) {
  RequireSquareShape(A, code::tril);
  return Triangle<LowerTriangularMatrix>(A);
}

UpperTriangularMatrix& triu(const SymmetricMatrix& A) {
  RequireOk(A, code::triu);
  return PackedTwin<UpperTriangularMatrix>(A, -1);
}

LowerTriangularMatrix& tril(const SymmetricMatrix& A) {
  RequireOk(A, code::tril);
  return PackedTwin<LowerTriangularMatrix>(A, -1);
}

DiagonalMatrix& diag(const RegularMatrix& A) {
  RequireSquareShape(A, code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const SymmetricMatrix& A) {
  RequireOk(A, code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const UpperTriangularMatrix& A) {
  RequireOk(A, code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const LowerTriangularMatrix& A) {
  RequireOk(A, code::diag);
  return Diagonal(A);
}

DiagonalMatrix& eye(unsigned n, double v) {
  NewResult<DiagonalMatrix> result(n);
  FillDoubles(result->data(), v, n);
  return result.hand_over();
}
