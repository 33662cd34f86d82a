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

/// inv(T)' * inv(T) in the place of T, a packed lower triangle with reciprocals on its diagonal, panel by panel: once a
/// panel of inv(T) has been multiplied with the columns before it, none of their elements in its rows is needed any more,
/// and the packed array of a symmetric matrix has these products in their places.
void SquareInverse(double* t, index_t n) {
  if (n <= tiny_inverse) return kernels().square_inverse(t, n);
  PanelScratch scratch(n);
  double* const x = scratch.data();
  InvertPanels(t, n, x, [&](index_t first, index_t count) noexcept {
    if (first + count < n) kernels().store_columns(t, n, first, count, x);  // for the panels to come
    kernels().square_columns(t, t, n, first, count, x);
  });
}

/// inv(L)' * inv(L), in L's own array.
SymmetricMatrix& SquareOfInverse(LowerTriangularMatrix& L) {
  const index_t n = L.ndim();
  RequireInvertibleOrder(n);
  NewResult<SymmetricMatrix> S;
  if (L.capacity() != packed_count(n)) {  // the array of a dispensable operand: the result's has its exact length
    LowerTriangularMatrix exact(L);
    Access::swap_storage(L, exact);
  }
  S->set_nsing(InvertDiagonal(L.data(), n));
  SquareInverse(L.data(), n);
  Access::swap_storage(*S, L);
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
