// The inverse of a symmetric positive semi-definite matrix through its tolerant factor: A = L*L', so that
// inv(A) = inv(L)'*inv(L).
#include "core/ownership.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "quorvel/cholesky.h"
#include "quorvel/inverses.h"
#include "quorvel/small_inverses.h"
#include "quorvel/structured.h"

namespace quorvel::detail {
namespace {

void InvertFactor(LowerTriangularMatrix& L) { inv(L, true); }
void InvertFactor(RegularSparseMatrix& L) { inv_lt(L, true); }

template <class Factor, class K>
K& InverseThrough(K& A, double tol) {
  if (A.ndim() == 2) return inv2x2(A, false);
  if (A.ndim() == 3) return inv3x3(A, false);
  Factor L(CholeskyFactor(A, tol));
  InvertFactor(L);
  K& inverse = LTL(L);
  inverse.set_nsing(L.nsing());
  return inverse;
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

SymmetricMatrix& InverseByCholesky(SymmetricMatrix& A, double tol) {
  return detail::InverseThrough<LowerTriangularMatrix>(A, tol);
}

SymmetricMatrix& InverseByCholesky(const SymmetricMatrix& A, double tol) {
  return InverseByCholesky(detail::Mutable(A), tol);
}

SymmetricSparseMatrix& InverseByCholesky(SymmetricSparseMatrix& A, double tol) {
  return detail::InverseThrough<RegularSparseMatrix>(A, tol);
}

SymmetricSparseMatrix& InverseByCholesky(const SymmetricSparseMatrix& A, double tol) {
  return InverseByCholesky(detail::Mutable(A), tol);
}
