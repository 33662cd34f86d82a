// The tolerant Cholesky factorisation, the same for dense and sparse matrices: what it checks, consumes and counts.
#ifndef QUORVEL_FACTOR_CHOLESKY_TEMPLATE_H
#define QUORVEL_FACTOR_CHOLESKY_TEMPLATE_H

#include "core/invariant.h"
#include "core/ownership.h"

namespace quorvel::detail {

// For each pair of kinds: the lower triangle of `a` as a new matrix (it may take the storage of a dispensable `a`), and
// the factorisation of that triangle, which returns the number of singular pivots.

void TakeLowerTriangle(LowerTriangularMatrix& lower, SymmetricMatrix& a);
Matrix::nsing_type FactorInPlace(LowerTriangularMatrix& lower, double tol, const char* signature);

/// A negative diagonal element is a broken precondition. NaN is none.
inline void RequireNotNegative(double unreduced_diagonal, const char* signature) {
  Invariant(!(unreduced_diagonal < 0.0), "!(unreduced_diagonal < 0.0)", "templates", 1342, signature);
}

}  // namespace quorvel::detail

template <class TL, class TS>
TL& CholeskyFactor_T(TS& A, double tol) {
  using namespace quorvel::detail;
  A.ThrowNotOk(code::cholesky);
  const bool counted = !A.dispensable();
  const Consumed operand(A);
  NewResult<TL> L;
  TakeLowerTriangle(*L, A);
  L->set_nsing(FactorInPlace(*L, tol, __PRETTY_FUNCTION__));
  if (counted) A.set_nsing(L->nsing());
  return L.hand_over();
}

#endif
