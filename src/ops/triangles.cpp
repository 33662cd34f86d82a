// Parts of a square matrix: sym, triu, tril, diag; and eye.
#include "quorvel/matrix_functions.h"

#include "core/ownership.h"
#include "core/storage.h"
#include "ops/packed_twin.h"

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

/// The packed positions of K, read from a square A. Zeros of either sign become the result's own +0.0.
template <class K>
K& Triangle(const RegularMatrix& A) {
  const Consumed operand(A);
  NewResult<K> result(A.nrows());
  const Rule<RegularMatrix> a(A);
  const Rule<K> t(*result);
  for (index_t i = 0; i < a.rows(); ++i) {
    const Range part = t.stored_in_row(i);
    for (index_t j = part.begin; j < part.end; ++j) {
      if (a.at(i, j) != 0.0) t.store(i, j) = a.at(i, j);
    }
  }
  return result.hand_over();
}

}  // namespace

SymmetricMatrix& sym(const RegularMatrix& A) {
  A.ThrowNotSquare(code::sym);
  const Consumed operand(A);
  const index_t n = A.nrows();
  NewResult<SymmetricMatrix> result(n);
  for (index_t i = 0; i < n; ++i) {
    CopyDoubles(result->data() + packed_row(i, n), A.data() + (std::size_t{n} + 1) * i, n - i);
  }
  result->set_nsing(A.nsing());
  return result.hand_over();
}

UpperTriangularMatrix& triu(const RegularMatrix& A) {
  A.ThrowNotSquare(code::triu);
  return Triangle<UpperTriangularMatrix>(A);
}

LowerTriangularMatrix& tril(const RegularMatrix& A) {
  A.ThrowNotSquare(code::tril);
  return Triangle<LowerTriangularMatrix>(A);
}

UpperTriangularMatrix& triu(const SymmetricMatrix& A) {
  A.ThrowNotOk(code::triu);
  return PackedTwin<UpperTriangularMatrix>(A, -1);
}

LowerTriangularMatrix& tril(const SymmetricMatrix& A) {
  A.ThrowNotOk(code::tril);
  return PackedTwin<LowerTriangularMatrix>(A, -1);
}

DiagonalMatrix& diag(const RegularMatrix& A) {
  A.ThrowNotSquare(code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const SymmetricMatrix& A) {
  A.ThrowNotOk(code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const UpperTriangularMatrix& A) {
  A.ThrowNotOk(code::diag);
  return Diagonal(A);
}

DiagonalMatrix& diag(const LowerTriangularMatrix& A) {
  A.ThrowNotOk(code::diag);
  return Diagonal(A);
}

DiagonalMatrix& eye(unsigned n, double v) {
  NewResult<DiagonalMatrix> result(n);
  FillDoubles(result->data(), v, n);
  return result.hand_over();
}
