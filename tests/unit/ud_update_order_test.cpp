// Bierman's measurement update beside the recursion written down element by element: the same bits at every order.

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/make.h"
#include "support/plain.h"

using namespace quorvel::test;

namespace {

constexpr double kSmallest = 1e-200;

struct Update {
  Plain u;
  std::vector<double> d, gain;
  double variance = 0.0;

  Update(const Plain& u0, const std::vector<double>& d0, const std::vector<double>& h, double r) : u(u0), d(d0) {
    const unsigned n = u.n;
    std::vector<double> v(n), lambda(n);
    variance = r;
    for (unsigned j = 0; j < n; ++j) {
      double f = h[j];
      for (unsigned i = 0; i < j; ++i) f += h[i] * u(i, j);
      v[j] = d[j] * f;
      const double before = variance;
      variance += v[j] * f;
      lambda[j] = std::fabs(before) > kSmallest ? -f / before : 0.0;
      if (std::fabs(variance) > kSmallest) d[j] *= before / variance;
    }
    for (unsigned i = 0; i < n; ++i) {
      double sum = v[i];
      for (unsigned j = i + 1; j < n; ++j) {
        const double e = u(i, j);
        u(i, j) = e + lambda[j] * sum;
        sum += v[j] * e;
      }
      gain.push_back(std::fabs(variance) > kSmallest ? sum / variance : 0.0);
    }
  }
};

/// How a variance that counts as 0 comes about.
enum class Case { usual, exact_and_unseen_at_first, unseen, not_a_number };

void Check(unsigned n, Case which, Random& random) {
  Plain u(n, n);
  std::vector<double> d(n), h(n);
  for (unsigned i = 0; i < n; ++i) {
    u(i, i) = 1.0;
    for (unsigned j = i + 1; j < n; ++j) u(i, j) = random.Uniform();
    d[i] = random.Uniform(0.1, 2.0);
    h[i] = which == Case::unseen || (which == Case::exact_and_unseen_at_first && i < n / 2) ? 0.0 : random.Uniform();
  }
  if (which == Case::not_a_number) d[n / 2] = std::nan("");
  const double r = which == Case::usual || which == Case::not_a_number ? 0.75 : 0.0;

  UpperTriangularMatrix U(n);
  DiagonalMatrix D(n);
  RegularMatrix H(1, n), K;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) U(i, j) = u(i, j);
    D(i, i) = d[i];
    H(0, i) = h[i];
  }
  for (unsigned repeated = 0; repeated < 3; ++repeated) {
    const Update expected(u, d, h, r);
    const double s = UDMeasurementUpdate(U, D, H, r, K);
    EXPECT_TRUE(SameBits(s, expected.variance)) << n;
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i + 1; j < n; ++j) ASSERT_TRUE(SameBits(U(i, j), expected.u(i, j))) << n << ": " << i << ", " << j;
      ASSERT_TRUE(SameBits(D(i, i), expected.d[i])) << n << ": d " << i;
      ASSERT_TRUE(SameBits(K(i, 0), expected.gain[i])) << n << ": gain " << i;
    }
    u = expected.u;
    d = expected.d;
  }
}

TEST(UDUpdateOrder, IsThatOfTheRecursion) {
  Random random(1977);
  for (unsigned n = 1; n <= 45; ++n) {
    for (const Case which : {Case::usual, Case::exact_and_unseen_at_first, Case::unseen, Case::not_a_number}) {
      Check(n, which, random);
    }
  }
  Check(130, Case::usual, random);
}

}  // namespace
