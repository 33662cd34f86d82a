// A U-D filter of 15 states over 10000 steps beside the same filter in covariance form.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

using Wide = long double;

constexpr unsigned n = 15;

// The covariance form, with Joseph's measurement update: a different computation altogether.
class CovarianceFilter {
 public:
  explicit CovarianceFilter(const Grid& p) {
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) p_[i][j] = p(i, j);
    }
  }

  void Propagate(const Grid& phi, const Grid& noise) {
    Wide t[n][n];
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) {
        t[i][j] = 0;
        for (unsigned k = 0; k < n; ++k) t[i][j] += phi(i, k) * p_[k][j];
      }
    }
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j <= i; ++j) {
        Wide s = noise(i, j);
        for (unsigned k = 0; k < n; ++k) s += t[i][k] * phi(j, k);
        p_[i][j] = p_[j][i] = s;
      }
    }
  }

  // P = (I - K*h)*P*(I - K*h)' + K*r*K'; returns the innovation variance.
  Wide Measure(const double* h, double r, Wide* gain) {
    Wide ph[n], s = r;
    for (unsigned i = 0; i < n; ++i) {
      ph[i] = 0;
      for (unsigned j = 0; j < n; ++j) ph[i] += p_[i][j] * h[j];
    }
    for (unsigned i = 0; i < n; ++i) s += h[i] * ph[i];
    Wide b[n][n];
    for (unsigned i = 0; i < n; ++i) {
      gain[i] = ph[i] / s;
      for (unsigned j = 0; j < n; ++j) b[i][j] = p_[i][j] - gain[i] * ph[j];
    }
    for (unsigned i = 0; i < n; ++i) {
      Wide bh = 0;
      for (unsigned k = 0; k < n; ++k) bh += b[i][k] * h[k];
      for (unsigned j = 0; j <= i; ++j) p_[i][j] = p_[j][i] = b[i][j] - bh * gain[j] + gain[i] * r * gain[j];
    }
    return s;
  }

  Wide p(unsigned i, unsigned j) const { return p_[i][j]; }

 private:
  Wide p_[n][n];
};

// Five axes of position, velocity and a Gauss-Markov acceleration, weakly coupled.
Grid Transition(double dt, Random& random) {
  Grid phi(n, n);
  for (unsigned axis = 0; axis < n / 3; ++axis) {
    const unsigned p = 3 * axis;
    for (unsigned i = 0; i < 3; ++i) phi(p + i, p + i) = i == 2 ? 0.95 : 1.0;
    phi(p, p + 1) = phi(p + 1, p + 2) = dt;
    phi(p, p + 2) = dt * dt / 2;
    for (unsigned j = 0; j < n; ++j) {
      if (j / 3 != axis) phi(p + 2, j) = 1e-3 * random.Uniform();
    }
  }
  return phi;
}

}  // namespace

TEST(UDFilter, TenThousandStepsEqualTheCovarianceForm) {
  Random random(571);
  const Grid phi = Transition(0.1, random);
  const Grid g = RandomGrid(n, 5, random);
  DiagonalMatrix Q(5);
  for (unsigned i = 0; i < 5; ++i) Q(i, i) = 1e-4 * (i + 1);
  const Grid noise = Times(Times(g, GridOf(Q)), Transposed(g));
  Grid p = SymmetricSample(Family::kDefinite, n, random);
  for (double& e : p.e) e *= 100.0;

  UpperTriangularMatrix U;
  DiagonalMatrix D;
  RegularMatrix K;
  UDFactor(U, D, SymmetricOf(p));
  ASSERT_EQ(U.nsing(), 0);
  CovarianceFilter reference(p);
  const RegularMatrix Phi(RegularOf(phi)), G(RegularOf(g));

  double worst = 0.0;
  for (unsigned step = 0; step < 10000; ++step) {
    UDTimeUpdate(U, D, Phi, G, Q);
    reference.Propagate(phi, noise);

    RegularMatrix h(1, n);
    for (unsigned j = 0; j < n; ++j) h(0, j) = (step % 5 == j / 3 && j % 3 == 0 ? 1.0 : 0.0) + 0.05 * random.Uniform();
    const double r = step % 7 == 0 ? 1e-4 : 0.25;
    Wide gain[n];
    const Wide s = reference.Measure(h.data(), r, gain);
    const double innovation = UDMeasurementUpdate(U, D, h, r, K);
    ASSERT_NEAR(innovation, static_cast<double>(s), 1e-9 * static_cast<double>(s)) << "step " << step;
    for (unsigned i = 0; i < n; ++i) ASSERT_GE(D(i, i), 0.0) << "step " << step;
    if (step % 100 != 99) continue;
    const Grid now = Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U)));
    for (unsigned i = 0; i < n; ++i) {
      ASSERT_NEAR(K(i, 0), static_cast<double>(gain[i]), 1e-9) << "step " << step;
      for (unsigned j = 0; j <= i; ++j) {
        // Relative to what a covariance is measured by: its two standard deviations.
        const Wide scale = std::sqrt(reference.p(i, i) * reference.p(j, j));
        const double error = static_cast<double>(std::fabs(now(i, j) - reference.p(i, j)) / scale);
        ASSERT_LE(error, 1e-9) << "step " << step << ", (" << i << ", " << j << ")";
        worst = std::fmax(worst, error);
      }
    }
  }
  std::printf("U-D filter and covariance form differ by at most %.2g\n", worst);
  EXPECT_GT(worst, 0.0);
  digest::Feed(U);
  digest::Feed(D);
}
