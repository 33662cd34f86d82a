// The inverse of a symmetric positive semi-definite matrix through its tolerant factor: A = L*L', so that
// inv(A) = inv(L)'*inv(L).
#include "core/ownership.h"
#include "factor/tri_inverse.h"
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

/// inv(L)' * inv(L); L is used up.
SymmetricMatrix& SquareOfInverse(LowerTriangularMatrix& L) {
  const index_t n = L.ndim();
  RequireInvertibleOrder(n);
  PanelScratch scratch(n);
  NewResult<SymmetricMatrix> S(n);
  double* const x = scratch.data();
  const Matrix::nsing_type singular = InvertDiagonal(L.data(), n);
  InvertPanels(L.data(), n, x, [&](index_t first, index_t count) noexcept {
    if (first + count < n) kernels().store_columns(L.data(), n, first, count, x);  // for the panels to come
    kernels().square_columns(S->data(), L.data(), n, first, count, x);
  });
  S->set_nsing(singular);
  return S.hand_over();
}

SymmetricSparseMatrix& SquareOfInverse(RegularSparseMatrix& L) {
  inv_lt(L, true);
  SymmetricSparseMatrix& S = LTL(L);
  S.set_nsing(L.nsing());
  return S;
}

template <class Factor, class K>
K& InverseThrough(K& A, double tol) {
  if (A.ndim() == 2) return inv2x2(A, false);
  if (A.ndim() == 3) return inv3x3(A, false);
  Factor L(CholeskyFactor(A, tol));
  return SquareOfInverse(L);
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
