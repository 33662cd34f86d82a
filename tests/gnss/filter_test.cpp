#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "estimate/covariance_filter.h"
#include "estimate/filter_bank.h"
#include "estimate/information_filter.h"
#include "estimate/motion_model.h"
#include "estimate/ud_filter.h"
#include "simulate/random.h"

namespace gnss {
namespace {

constexpr unsigned kN = kStates;
using Plain = std::vector<std::vector<double>>;

// Gauss-Jordan elimination with pivoting: the inverse of a plain square array.
Plain Inverse(Plain a) {
  const std::size_t n = a.size();
  Plain x(n, std::vector<double>(n, 0.0));
  for (std::size_t i = 0; i < n; ++i) x[i][i] = 1.0;
  for (std::size_t c = 0; c < n; ++c) {
    std::size_t p = c;
    for (std::size_t i = c; i < n; ++i) {
      if (std::fabs(a[i][c]) > std::fabs(a[p][c])) p = i;
    }
    std::swap(a[c], a[p]);
    std::swap(x[c], x[p]);
    for (std::size_t i = 0; i < n; ++i) {
      const double f = i == c ? 0.0 : a[i][c] / a[c][c];
      for (std::size_t k = 0; k < n && f != 0.0; ++k) a[i][k] -= f * a[c][k], x[i][k] -= f * x[c][k];
    }
    const double d = a[c][c];
    for (std::size_t k = 0; k < n; ++k) a[c][k] /= d, x[c][k] /= d;
  }
  return x;
}

Measurement RandomMeasurement(Random& random, unsigned m) {
  Measurement out{RegularMatrix(m, kN), RegularMatrix(m, 1), DiagonalMatrix(m)};
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned k = 0; k < kN; ++k) out.design(i, k) = random.Normal();
    out.value(i) = 10.0 * random.Normal();
    out.variance(i, i) = 0.5 + random.Uniform();
  }
  return out;
}

// Without noise between the steps the filter must give the least squares solution of everything: prior information and
// all measurements, each brought to the last epoch by the inverse transition.
template <typename Form>
void ComparesWithLeastSquares() {
  Random random(11);
  const MotionModel model = MotionModel::Driving();
  SymmetricMatrix prior = InitialCovariance(model);
  RegularMatrix x(kN, 1);
  for (unsigned k = 0; k < kN; ++k) x(k) = random.Normal();

  // Information N and vector b of the normal equations N x = b for the state at the *first* epoch.
  Plain n(kN, std::vector<double>(kN, 0.0));
  std::vector<double> b(kN, 0.0);
  for (unsigned k = 0; k < kN; ++k) {
    n[k][k] = 1.0 / prior(k, k);
    b[k] = x(k) / prior(k, k);
  }

  Form filter;
  filter.Start(x, prior);
  double elapsed = 0.0;
  for (int step = 0; step < 6; ++step) {
    if (step > 0) {
      const double dt = 0.5 + step;
      Transition t = TransitionOver(dt, model);
      // As good as none, but positive: the square-root information form needs the inverse of Q.
      for (unsigned i = 0; i < kN; ++i) {
        for (unsigned j = i; j < kN; ++j) t.noise(i, j) = i == j ? 1e-18 : 0.0;
      }
      filter.Predict(t);
      elapsed += dt;
    }
    const Measurement m = RandomMeasurement(random, 4);
    filter.Update(m);
    for (unsigned i = 0; i < 4; ++i) {
      std::vector<double> h(kN);
      for (unsigned k = 0; k < kN; k += 2) {
        h[k] = m.design(i, k);
        h[k + 1] = m.design(i, k + 1) + elapsed * m.design(i, k);
      }
      for (unsigned k = 0; k < kN; ++k) {
        b[k] += h[k] * m.value(i) / m.variance(i, i);
        for (unsigned l = 0; l < kN; ++l) n[k][l] += h[k] * h[l] / m.variance(i, i);
      }
    }
  }
  const Plain covariance = Inverse(n);
  std::vector<double> first(kN, 0.0);
  for (unsigned k = 0; k < kN; ++k) {
    for (unsigned l = 0; l < kN; ++l) first[k] += covariance[k][l] * b[l];
  }
  const RegularMatrix estimate = filter.Estimate();
  const SymmetricMatrix p = filter.Covariance();
  for (unsigned k = 0; k < kN; k += 2) {
    EXPECT_NEAR(estimate(k), first[k] + elapsed * first[k + 1], 1e-8) << k;
    EXPECT_NEAR(estimate(k + 1), first[k + 1], 1e-9) << k;
    EXPECT_NEAR(p(k + 1, k + 1), covariance[k + 1][k + 1], 1e-9 * covariance[k + 1][k + 1]) << k;
    EXPECT_NEAR(p(k, k),
                covariance[k][k] + 2.0 * elapsed * covariance[k][k + 1] + elapsed * elapsed * covariance[k + 1][k + 1],
                1e-8 * p(k, k))
        << k;
  }
}

TEST(CovarianceFilter, IsLeastSquaresWithoutNoise) { ComparesWithLeastSquares<CovarianceFilter>(); }
TEST(UDFilter, IsLeastSquaresWithoutNoise) { ComparesWithLeastSquares<UDFilter>(); }
TEST(InformationFilter, IsLeastSquaresWithoutNoise) { ComparesWithLeastSquares<InformationFilter>(); }

// With noise the three forms must agree with each other, covariances included, over many steps.
TEST(FilterBank, FormsAgreeOverAThousandSteps) {
  Random random(5);
  const MotionModel model = MotionModel::Driving();
  FilterBank bank;
  bank.Start(RegularMatrix(kN, 1), InitialCovariance(model));
  for (int step = 0; step < 1000; ++step) {
    if (step > 0) {
      Transition t = TransitionOver(0.1 + random.Uniform(), model);
      if (step % 100 == 0) t.shift(kClock) = -299792.458;
      bank.Predict(t);
    }
    bank.Update(RandomMeasurement(random, 1 + static_cast<unsigned>(step % 6)));
    ASSERT_LT(bank.Disagreement(), 1e-8) << step;
  }
  const SymmetricMatrix p = bank.form(0).Covariance();
  for (std::size_t form = 1; form < FilterBank::kForms; ++form) {
    const SymmetricMatrix q = bank.form(form).Covariance();
    for (unsigned i = 0; i < kN; ++i) {
      for (unsigned j = 0; j < kN; ++j) {
        EXPECT_NEAR(q(i, j), p(i, j), 1e-9 * std::sqrt(p(i, i) * p(j, j))) << form << ' ' << i << ' ' << j;
      }
    }
  }
}

// A disagreement must be seen: one form alone is fed.
TEST(FilterBank, DisagreementIsNoticed) {
  FilterBank bank;
  bank.Start(RegularMatrix(kN, 1), InitialCovariance(MotionModel::Standing()));
  EXPECT_LT(bank.Disagreement(), 1e-12);
  Random random(3);
  const_cast<FilterForm&>(bank.form(2)).Update(RandomMeasurement(random, 3));
  EXPECT_GT(bank.Disagreement(), 1e-3);
}

TEST(MotionModel, TransitionsComposeAndUndoThemselves) {
  const Transition t = TransitionOver(2.5, MotionModel::Walking());
  const RegularMatrix unit(RegularMatrix(t.phi) * RegularMatrix(t.phi_inverse));
  for (unsigned i = 0; i < kN; ++i) {
    for (unsigned j = 0; j < kN; ++j) EXPECT_EQ(unit(i, j), i == j ? 1.0 : 0.0);
  }
  const MotionModel model = MotionModel::Walking();
  const double s = model.acceleration * model.acceleration;
  EXPECT_NEAR(t.noise(2, 2), s * 2.5 * 2.5 * 2.5 / 3.0, 1e-15);
  EXPECT_NEAR(t.noise(2, 3), s * 2.5 * 2.5 / 2.0, 1e-15);
  EXPECT_NEAR(t.noise(3, 3), s * 2.5, 1e-15);
  EXPECT_EQ(t.noise(1, 2), 0.0);
}

}  // namespace
}  // namespace gnss
