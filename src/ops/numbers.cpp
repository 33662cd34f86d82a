// Matrix functions that give a number: trace, scalar, dot.
#include "quorvel/matrix_functions.h"

#include "core/ownership.h"
#include "dense/rules.h"

using namespace quorvel::detail;

namespace {

template <class K>
double Trace(const K& A) {
  RequireOk(A, code::trace);
  const Consumed operand(A);
  const Rule<K> a(A);
  const index_t n = a.rows() < a.cols() ? a.rows() : a.cols();
  double sum = 0.0;
  for (index_t i = 0; i < n; ++i) sum += a.store(i, i);
  return sum;
}

/// Every dense kind stores (0, 0) first.
double Scalar(const SingleArrayMatrix& A) {
  RequireOk(A, code::scalar);
  const Consumed operand(A);
  return A.StoredCount() != 0 ? A.data()[0] : 0.0;
}

}  // namespace

double trace(const RegularMatrix& A) { return Trace(A); }
double trace(const SymmetricMatrix& A) { return Trace(A); }
double trace(const UpperTriangularMatrix& A) { return Trace(A); }
double trace(const LowerTriangularMatrix& A) { return Trace(A); }
double trace(const DiagonalMatrix& A) { return Trace(A); }

double scalar(const RegularMatrix& A) { return Scalar(A); }
double scalar(const SymmetricMatrix& A) { return Scalar(A); }
double scalar(const UpperTriangularMatrix& A) { return Scalar(A); }
double scalar(const LowerTriangularMatrix& A) { return Scalar(A); }
double scalar(const DiagonalMatrix& A) { return Scalar(A); }

double dot(const RegularMatrix& a, const RegularMatrix& b) {
  if (a.ncols() == 0 || b.ncols() == 0) return 0.0;
  const Rule<RegularMatrix> x(a);
  const Rule<RegularMatrix> y(b);
  const index_t n = x.rows() < y.rows() ? x.rows() : y.rows();
  double sum = 0.0;
  for (index_t k = 0; k < n; ++k) sum += x.at(k, 0) * y.at(k, 0);
  return sum;
}
