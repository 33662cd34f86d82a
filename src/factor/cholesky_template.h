// The tolerant Cholesky factorisation, the same for dense and sparse matrices: what it checks, consumes and counts.
#ifndef QUORVEL_FACTOR_CHOLESKY_TEMPLATE_H
#define QUORVEL_FACTOR_CHOLESKY_TEMPLATE_H

#include "core/invariant.h"
#include "core/ownership.h"

namespace quorvel::detail {

// For each pair of kinds: the factor of `a` in `lower`, which is new (and may take the storage of a dispensable `a`).
// Both return the number of singular rows.

Matrix::nsing_type FactorLower(LowerTriangularMatrix& lower, SymmetricMatrix& a, double tol, const char* signature);
Matrix::nsing_type FactorLower(RegularSparseMatrix& lower, SymmetricSparseMatrix& a, double tol,
                               const char* signature);

/// A negative diagonal element is a broken precondition. NaN is none.
inline void RequireNotNegative(double unreduced_diagonal, const char* signature) {
  Invariant(!(unreduced_diagonal < 0.0), "!(unreduced_diagonal < 0.0)", "templates", 1342, signature);
}

}  // namespace quorvel::detail

template <class TL, class TS>
TL& CholeskyFactor_T(TS& A, double tol) {
  using namespace quorvel::detail;
  RequireOk(A, code::cholesky);
  RequireSquareShape(A, code::tril_sparse);  // a symmetric sparse matrix can be made so
  const bool counted = !A.dispensable();
  const Consumed operand(A);
  NewResult<TL> L;
  L->set_nsing(FactorLower(*L, A, tol, __PRETTY_FUNCTION__));
  if (counted) A.set_nsing(L->nsing());
  return L.hand_over();
}

#endif
