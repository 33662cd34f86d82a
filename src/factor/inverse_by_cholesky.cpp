// The inverse of a symmetric positive semi-definite matrix through its tolerant factor: A = L*L', so that
// inv(A) = inv(L)'*inv(L).
#include "core/ownership.h"
#include "factor/tri_inverse.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/cholesky.h"
#include "quorvel/small_inverses.h"
#include "quorvel/structured.h"

namespace detail = quorvel::detail;

SymmetricMatrix& InverseByCholesky(SymmetricMatrix& A, double tol) {
  if (A.ndim() == 2) return inv2x2(A, false);
  if (A.ndim() == 3) return inv3x3(A, false);
  LowerTriangularMatrix L(CholeskyFactor(A, tol));
  detail::RequireInvertibleOrder(L.ndim());
  const int singular = detail::InvertTriangle(L.data(), L.ndim());
  SymmetricMatrix& inverse = LTL(L);
  inverse.set_nsing(singular);
  return inverse;
}

SymmetricMatrix& InverseByCholesky(const SymmetricMatrix& A, double tol) {
  return InverseByCholesky(detail::Mutable(A), tol);
}
