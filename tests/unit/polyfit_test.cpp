// Polynomial fit.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/digest.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

RegularMatrix Column(const std::vector<double>& values) {
  RegularMatrix column(static_cast<unsigned>(values.size()), 1);
  if (!values.empty()) column.Assign(values.data(), column.nrows(), 1);
  return column;
}

double Polynomial(const std::vector<long double>& c, double t) {
  long double sum = 0;
  for (std::size_t k = c.size(); k-- > 0;) sum = sum * t + c[k];
  return static_cast<double>(sum);
}

// Least squares by orthogonal polynomials (long double): the values of the fit at the abscissae, whatever the basis.
std::vector<long double> FittedValues(const std::vector<double>& t, const std::vector<double>& y, unsigned k) {
  const std::size_t m = t.size();
  std::vector<std::vector<long double>> basis;
  std::vector<long double> fit(m, 0);
  for (unsigned j = 0; j < k; ++j) {
    std::vector<long double> p(m);
    for (std::size_t i = 0; i < m; ++i) p[i] = j == 0 ? 1.0L : basis[j - 1][i] * t[i];
    for (int pass = 0; pass < 2; ++pass) {
      for (const std::vector<long double>& q : basis) {
        long double s = 0;
        for (std::size_t i = 0; i < m; ++i) s += p[i] * q[i];
        for (std::size_t i = 0; i < m; ++i) p[i] -= s * q[i];
      }
    }
    long double square = 0, along = 0;
    for (long double v : p) square += v * v;
    for (long double& v : p) v /= std::sqrt(square);
    for (std::size_t i = 0; i < m; ++i) along += p[i] * y[i];
    for (std::size_t i = 0; i < m; ++i) fit[i] += along * p[i];
    basis.push_back(p);
  }
  return fit;
}

TEST(PolyFitting, ExactPolynomials) {
  const std::vector<double> t = {-2, -1, -0.5, 0, 0.25, 1, 1.5};
  const std::vector<long double> want = {2, -3, 0.5L, 1.25L, -0.75L};
  for (unsigned k = 1; k <= 5; ++k) {
    const std::vector<long double> coefficients(want.begin(), want.begin() + k);
    std::vector<double> y;
    for (double v : t) y.push_back(Polynomial(coefficients, v));
    RegularMatrix c(k, 1);
    double rms = -1;
    PolyFit(Column(t), Column(y), c, rms);
    digest::Feed(c);
    digest::Feed(rms);
    ASSERT_EQ(c.nrows(), k);
    ASSERT_EQ(c.ncols(), 1u);
    for (unsigned j = 0; j < k; ++j) EXPECT_NEAR(c(j), static_cast<double>(want[j]), 1e-12) << k;
    EXPECT_NEAR(rms, 0.0, 1e-12);
  }
}

TEST(PolyFitting, LeastSquares) {
  Random random(91);
  for (int trial = 0; trial < 200; ++trial) {
    const unsigned k = 1 + random.Below(5), m = k + 1 + random.Below(20);
    std::vector<double> t, y;
    for (unsigned i = 0; i < m; ++i) {
      t.push_back(-1.0 + 2.0 * i / (m - 1) + random.Uniform(-0.02, 0.02));
      y.push_back(random.Uniform(-5, 5));
    }
    RegularMatrix c(k, 1);
    double rms = -1;
    PolyFit(Column(t), Column(y), c, rms);
    digest::Feed(c);
    digest::Feed(rms);
    const std::vector<long double> fit = FittedValues(t, y, k);
    const std::vector<long double> got(c.data(), c.data() + k);
    long double square = 0;
    for (unsigned i = 0; i < m; ++i) {
      EXPECT_NEAR(Polynomial(got, t[i]), static_cast<double>(fit[i]), 1e-10) << "trial " << trial;
      square += (y[i] - fit[i]) * (y[i] - fit[i]);
    }
    EXPECT_NEAR(rms, static_cast<double>(std::sqrt(square / m)), 1e-12) << "trial " << trial;
  }
}

// Powers that are zero take no part, and t = 0 is a point like any other.
TEST(PolyFitting, WorkedLine) {
  RegularMatrix c(2, 1);
  double rms;
  PolyFit(Column({0, 1, 2}), Column({1, 2, 4}), c, rms);
  EXPECT_NEAR(c(0), 5.0 / 6, 1e-14);
  EXPECT_NEAR(c(1), 1.5, 1e-14);
  EXPECT_NEAR(rms, std::sqrt((1.0 / 36 + 4.0 / 36 + 1.0 / 36) / 3), 1e-14);  // divided by 3 points, not by 1
}

TEST(PolyFitting, FewPoints) {
  RegularMatrix c(1, 1);
  double rms = -1;
  PolyFit(Column({3}), Column({7}), c, rms);
  EXPECT_EQ(c(0), 7.0);
  EXPECT_EQ(rms, 0.0);
  rms = -1;
  RegularMatrix none(2, 1);
  PolyFit(RegularMatrix(0, 1), RegularMatrix(0, 1), none, rms);
  EXPECT_EQ(none.nrows(), 2u);
  EXPECT_EQ(rms, 0.0);
}

TEST(PolyFitting, NoCoefficients) {
  RegularMatrix c(0, 4);
  double rms = -1;
  PolyFit(Column({1, 2}), Column({3, 4}), c, rms);
  EXPECT_EQ(rms, std::sqrt(12.5));
  EXPECT_EQ(c.nrows(), 0u);
  EXPECT_EQ(c.ncols(), 4u);
}

TEST(PolyFitting, ReadsFirstColumnsAndShapesItsResult) {
  RegularMatrix t(3, 2), y(3, 3), c(2, 5), plain(2, 1);
  const std::vector<double> at = {0, 1, 2}, values = {1, 2, 4};
  t = -50.0;
  y = 1e9;
  for (unsigned i = 0; i < 3; ++i) {
    t(i, 0) = at[i];
    y(i, 0) = values[i];
  }
  double rms, plain_rms;
  PolyFit(t, y, c, rms);
  PolyFit(Column(at), Column(values), plain, plain_rms);
  ASSERT_EQ(c.nrows(), 2u);
  ASSERT_EQ(c.ncols(), 1u);
  EXPECT_TRUE(SameBits(c.data(), plain.data(), 2));
  EXPECT_TRUE(SameBits(rms, plain_rms));
}

TEST(PolyFitting, TheResultMayBeAnOperand) {
  double rms, want_rms;
  RegularMatrix want(3, 1), y = Column({1, 2, 4}), t = Column({0, 1, 2});
  PolyFit(Column({0, 1, 2}), Column({1, 2, 4}), want, want_rms);
  PolyFit(Column({0, 1, 2}), y, y, rms);
  EXPECT_TRUE(SameBits(y.data(), want.data(), 3));
  EXPECT_TRUE(SameBits(rms, want_rms));
  PolyFit(t, Column({1, 2, 4}), t, rms);
  EXPECT_TRUE(SameBits(t.data(), want.data(), 3));
}

TEST(PolyFitting, ConsumesTemporaries) {
  const NoLeak no_leak;
  RegularMatrix c(2, 1);
  double rms;
  PolyFit(DispensableCopy(Column({0, 1, 2})), DispensableCopy(Column({1, 2, 4})), c, rms);
  EXPECT_NEAR(c(1), 1.5, 1e-14);
  RegularMatrix& both = DispensableCopy(Column({1, 2, 4}));
  PolyFit(both, both, c, rms);
  EXPECT_NEAR(c(1), 1.0, 1e-13);
  RegularMatrix& result = DispensableCopy(Column({1, 2, 4}));  // the result is not consumed
  PolyFit(Column({0, 1, 2}), result, result, rms);
  EXPECT_EQ(result.nrows(), 3u);
  result.DestroyIfDispensable();
}

}  // namespace
}  // namespace quorvel::test
