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

/// to - from, or with `negated` the negative of that.
inline double Less(double to, double from, bool negated) noexcept { return negated ? -to + from : to - from; }

/// The pair of R with its right-hand side and all rows of A with theirs. A reflection makes a column of A vanish; while
/// it is applied, the sums of the next one are formed. All run over increasing rows, from 0.0.
class PairReduction {
 public:
  PairReduction(index_t m, index_t n, double* a, std::size_t stride, double* r, double* zr, double* za,
                double* gamma) noexcept
      : m_(m), n_(n), a_(a), stride_(stride), r_(r), zr_(zr), za_(za), gamma_(gamma) {}

  void run() noexcept {
    bool formed = false;
    for (index_t j = 0; j < n_; ++j) {
      if (!formed) form_sums(j);
      formed = !(square_ <= 0.0);
      if (formed) reflect(j);
    }
  }

 private:
  double* row(index_t i) const noexcept { return a_ + i * stride_; }

  /// The sums of column j, for the columns behind it and the right-hand side.
  void form_sums(index_t j) noexcept {
    square_ = gamma_z_ = 0.0;
    FillDoubles(gamma_, 0.0, n_);
    for (index_t i = 0; i < m_; ++i) {
      const double v = row(i)[j];
      square_ += v * v;
      gamma_z_ += za_[i] * v;
      AddScaled(gamma_ + j + 1, n_ - j - 1, row(i) + j + 1, v);
    }
  }

  void reflect(index_t j) noexcept {
    double* const r = r_ + packed_row(j, n_) - j;
    double s = std::sqrt(square_ + r[j] * r[j]);
    const bool negated = r[j] > 0.0;
    if (negated) s = -s;
    const double u = r[j] - s;
    const double f = -1.0 / (s * u);
    r[j] = std::fabs(s);

    const double gamma_z = (gamma_z_ + u * zr_[j]) * f;
    zr_[j] = Less(zr_[j], u * gamma_z, negated);
    square_ = gamma_z_ = 0.0;
    if (j + 1 == n_) {
      for (index_t i = 0; i < m_; ++i) za_[i] = Less(za_[i], gamma_z * row(i)[j], negated);
      return;
    }
    const double g = (gamma_[j + 1] + u * r[j + 1]) * f;
    r[j + 1] = Less(r[j + 1], u * g, negated);
    for (index_t i = 0; i < m_; ++i) {
      double* const a = row(i) + j;
      a[1] = Less(a[1], g * a[0], negated);
      square_ += a[1] * a[1];
      za_[i] = Less(za_[i], gamma_z * a[0], negated);
      gamma_z_ += za_[i] * a[1];
    }
    const index_t count = n_ - j - 2;
    const kernel_offset stride = static_cast<kernel_offset>(stride_);
    const Reduction behind{a_ + j, stride, m_, r + j + 2, gamma_ + j + 2, u, f, negated};
    if (count >= few_behind) {
      kernels().reduce(behind, count);
    } else {
      for (index_t k = 0; k < count; ++k) reduce_column(behind, k);
    }
  }

  /// As the kernel does it, one column: fewer than so many are done sooner that way.
  static constexpr index_t few_behind = 8;
  static void reduce_column(const Reduction& p, index_t k) noexcept {
    const double g = (p.gamma[k] + p.u * p.r[k]) * p.f;
    p.r[k] = Less(p.r[k], p.u * g, p.negated);
    double sum = 0.0;
    for (index_t i = 0; i < p.rows; ++i) {
      double* const a = p.a + static_cast<kernel_offset>(i) * p.stride;
      a[k + 2] = Less(a[k + 2], g * a[0], p.negated);
      sum += a[k + 2] * a[1];
    }
    p.gamma[k] = sum;
  }

  index_t m_;
  index_t n_;
  double* a_;
  std::size_t stride_;
  double* r_;
  double* zr_;
  double* za_;
  double* gamma_;  // n doubles: of the columns behind j
  double square_ = 0.0;
  double gamma_z_ = 0.0;
};

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
  detail::PairReduction(m, n, A.data(), A.ncols(), R.data(), zR.data(), zA.data(), gamma.data()).run();
}
