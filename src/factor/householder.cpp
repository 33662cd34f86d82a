// HouseholderTransformation and Householder_Reduction of dense matrices.
#include "quorvel/householder.h"

#include <cmath>

#include "core/work_area.h"
#include "factor/axpy.h"
#include "factor/householder.h"
#include "factor/strips.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel::detail {
void TriangulariseMatrix(RegularMatrix& A) {
  const index_t m = A.nrows();
  const index_t n = A.ncols();
  if (n != 0) Triangularise(A.data(), m, n);
  A.SetSize(n, n, false);  // the first n rows stay where they are
}

namespace {

/// One reflection of the pair (row j of R with its right-hand side, all rows of A with theirs).
struct Reduction {
  index_t m;
  index_t n;
  double* a;
  std::size_t stride;
  double* r;
  double* zr;
  double* za;
  double* gamma;  // n doubles of scratch

  double* row(index_t i) const noexcept { return a + i * stride; }
};

/// to = to - from, or with `negated` the negative of that.
inline void Subtract(double& to, double from, bool negated) noexcept { to = negated ? -to + from : to - from; }

void ReduceColumn(const Reduction& p, index_t j) noexcept {
  double x = 0.0;
  for (index_t i = 0; i < p.m; ++i) x += p.row(i)[j] * p.row(i)[j];
  if (x <= 0.0) return;

  double* const r = p.r + packed_row(j, p.n) - j;
  double s = std::sqrt(x + r[j] * r[j]);
  const bool negated = r[j] > 0.0;
  if (negated) s = -s;
  const double u = r[j] - s;
  const double f = -1.0 / (s * u);
  r[j] = std::fabs(s);

  const index_t first = j + 1;
  const index_t count = p.n - first;
  double* const gamma = p.gamma;
  FillDoubles(gamma, 0.0, count);
  double gamma_z = 0.0;
  for (index_t i = 0; i < p.m; ++i) {
    AddScaled(gamma, count, p.row(i) + first, p.row(i)[j]);
    gamma_z += p.za[i] * p.row(i)[j];
  }
  for (index_t k = 0; k < count; ++k) {
    gamma[k] = (gamma[k] + u * r[first + k]) * f;
    Subtract(r[first + k], u * gamma[k], negated);
  }
  gamma_z = (gamma_z + u * p.zr[j]) * f;
  Subtract(p.zr[j], u * gamma_z, negated);
  for (index_t i = 0; i < p.m; ++i) {
    double* const row = p.row(i);
    const double v = row[j];
    if (negated) {
      for (index_t k = 0; k < count; ++k) row[first + k] = -row[first + k] + gamma[k] * v;
    } else {
      SubtractScaled(row + first, count, gamma, v);
    }
    Subtract(p.za[i], gamma_z * v, negated);
  }
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

RegularMatrix& HouseholderTransformation(RegularMatrix& A, bool inPlace) {
  return detail::TransformedByReflections(A, inPlace);
}

void Householder_Reduction(unsigned m, UpperTriangularMatrix& R, RegularMatrix& zR, RegularMatrix& A,
                           RegularMatrix& zA) {
  const unsigned n = R.ndim();
  if (m == 0 || n == 0) return;
  detail::WorkArea<detail::small_order> gamma(n);
  const detail::Reduction pair{m, n, A.data(), A.ncols(), R.data(), zR.data(), zA.data(), gamma.data()};
  for (unsigned j = 0; j < n; ++j) detail::ReduceColumn(pair, j);
}
