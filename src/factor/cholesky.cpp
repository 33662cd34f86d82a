// Cholesky factors of dense symmetric matrices.
//
// The packed array of a symmetric matrix, read as that of a lower triangular one, is its lower triangle. Column j of
// that triangle is row j of the array, so all loops run along rows.
#include "quorvel/cholesky.h"

#include <cerrno>
#include <cmath>

#include "core/ownership.h"
#include "core/sizing.h"
#include "core/work_area.h"
#include "factor/cholesky_template.h"
#include "factor/left_looking.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel::detail {

namespace {

/// Makes room for the factor in the array of a dispensable `a`, or in one of its own. Returns where the lower triangle is:
/// it has the packed array of the symmetric matrix.
const double* MakeRoom(LowerTriangularMatrix& lower, SymmetricMatrix& a) {
  if (a.dispensable()) {
    Access::swap_storage(lower, a);
    return lower.data();
  }
  SizeForResult(lower, a.ndim(), a.ndim());
  lower.set_nsing(a.nsing());
  return a.data();
}

/// Row and column c of the panel become 0.0. The elements of the column go on as if they were 0.0 in A: infinities in
/// their rows still show as NaN.
void ClearSingular(CholeskyPanel& panel, index_t c) noexcept {
  const index_t j = panel.first + c;
  const auto element = [&](index_t i, index_t k) noexcept -> double& {
    return panel.packed[packed_index(k, i, panel.order)];
  };
  for (index_t k = 0; k < j; ++k) element(j, k) = 0.0;
  for (index_t k = 0; k < c; ++k) panel.square[k][c] = 0.0;
  panel.cleared[c] = true;
  panel.scale[c] = element(j, j) = 0.0;
  double* const s = panel.square[c];
  for (index_t r = c + 1; r < panel.count; ++r) {
    const index_t i = panel.first + r;
    double sum = 0.0;
    for (index_t k = 0; k < j; ++k) sum += element(i, k) * 0.0;
    s[r] = element(i, j) = (0.0 - sum) * 0.0;
  }
  for (index_t d = c + 1; d < panel.count; ++d) {
    for (index_t r = d; r < panel.count; ++r) panel.square[d][r] += s[d] * s[r];
  }
}

/// The factor in the place of A's lower triangle, a panel of columns at a time. Returns the number of singular pivots.
Matrix::nsing_type FactorPanels(CholeskyPanel& panel) noexcept {
  const index_t n = panel.order;
  const index_t width = kernels().cholesky_columns;
  Matrix::nsing_type singular = 0;
  for (panel.first = 0; panel.first < n; panel.first += width) {
    panel.count = n - panel.first < width ? n - panel.first : width;
    for (index_t c = 0; (c = kernels().cholesky_square(panel, c)) < panel.count; ++c) {
      ClearSingular(panel, c);
      ++singular;
    }
    if (panel.first + width < n) kernels().cholesky_rows(panel);
  }
  return singular;
}

/// The root of a negative number is a domain error, for which the C library sets errno; the kernels do not.
void ReportRootOf(double least) noexcept {
  if (least < 0.0) errno = EDOM;
}

/// The factor of the lower triangle `a`, which may lie in its place. Its columns are divided by the root of the pivot, or
/// multiplied with the root's reciprocal. Returns the number of singular pivots.
Matrix::nsing_type FactorOf(LowerTriangularMatrix& lower, const double* a, bool divide, double tolerance) noexcept {
  const index_t n = lower.ndim();
  if (n == 0) return 0;
  if (n <= small_factor) {
    double least = 0.0;
    const auto singular = kernels().cholesky_few(lower.data(), a, n, divide, tolerance, least);
    ReportRootOf(least);
    return static_cast<Matrix::nsing_type>(singular);
  }
  CholeskyPanel panel;
  panel.packed = lower.data();
  panel.source = a;
  panel.order = n;
  panel.divide = divide;
  panel.tolerance = tolerance;
  panel.least = 0.0;
  const Matrix::nsing_type singular = FactorPanels(panel);
  ReportRootOf(panel.least);
  return singular;
}

}  // namespace

Matrix::nsing_type FactorLower(LowerTriangularMatrix& lower, SymmetricMatrix& a, double tol, const char* signature) {
  const double* const from = MakeRoom(lower, a);
  const index_t n = lower.ndim();
  const double* pivot = from;
  for (index_t left = n; left > 0; --left) {
    RequireNotNegative(*pivot, signature);
    pivot += left;
  }
  return FactorOf(lower, from, false, tol);
}

namespace {

void UpperRoot(const double* a, double* u, index_t n) {
  const auto as_it_is = [](index_t, double e) noexcept { return e; };
  FactorFromLastColumn(a, u, n, as_it_is, [](index_t c, double* column, const double* s) noexcept {
    column[c] = std::sqrt(column[c] - s[c]);
    FinishColumn(column, s, column[c], c);
  });
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

LowerTriangularMatrix& CholeskyFactor(SymmetricMatrix& A, double tol) {
  return CholeskyFactor_T<LowerTriangularMatrix>(A, tol);
}

LowerTriangularMatrix& CholeskyFactor(const SymmetricMatrix& A, double tol) {
  return CholeskyFactor(detail::Mutable(A), tol);
}

LowerTriangularMatrix& CholeskySquareRootLower(const SymmetricMatrix& A) {
  A.ThrowNotOk(detail::code::none);
  const detail::Consumed operand(A);
  detail::NewResult<LowerTriangularMatrix> L;
  const double* const from = detail::MakeRoom(*L, detail::Mutable(A));
  detail::FactorOf(*L, from, true, 0.0);
  L->set_nsing(-1);
  return L.hand_over();
}

UpperTriangularMatrix& CholeskySquareRootUpper(const SymmetricMatrix& A) {
  A.ThrowNotOk(detail::code::none);
  const detail::Consumed operand(A);
  detail::NewResult<UpperTriangularMatrix> U(A.ndim());
  detail::UpperRoot(A.data(), U->data(), A.ndim());
  return U.hand_over();
}
