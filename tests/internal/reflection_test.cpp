// The reduction to triangular form against a literal element-by-element computation, bit for bit.

#include "factor/strips.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "support/digest.h"
#include "support/plain.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

// Columns one after the other, every column of the matrix touched, as one would write it down.
Plain LiteralR(Plain a) {
  const unsigned m = a.m;
  const unsigned n = a.n;
  std::vector<double> length(n, 0.0);
  for (unsigned j = 0; j < n; ++j) {
    for (unsigned i = 0; i < m; ++i) length[j] += a(i, j) * a(i, j);
  }
  for (unsigned j = 0; j < n; ++j) {
    double sigma = 0.0;
    for (unsigned i = j + 1; i < m; ++i) sigma += a(i, j) * a(i, j);
    if (j + 1 < m && sigma != 0.0) {
      const double x = a(j, j);
      const double mu = std::sqrt(sigma + x * x);
      const double v0 = x <= 0.0 ? x - mu : -sigma / (x + mu);
      const double beta = 2.0 * v0 * v0 / (sigma + v0 * v0);
      std::vector<double> v(m, 0.0);
      for (unsigned i = j + 1; i < m; ++i) v[i] = a(i, j) / v0;
      for (unsigned c = 0; c < n; ++c) {
        double s = a(j, c);
        for (unsigned i = j + 1; i < m; ++i) {
          if (v[i] != 0.0) s += a(i, c) * v[i];
        }
        if (s != 0.0) {
          s *= beta;
          a(j, c) = a(j, c) - s;
          for (unsigned i = j + 1; i < m; ++i) {
            if (v[i] != 0.0) a(i, c) = a(i, c) - s * v[i];
          }
        }
      }
    }
    if (a(j, j) * a(j, j) < length[j] * 1e-22) a(j, j) = 0.0;
  }
  Plain r(n, n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) r(i, j) = a(i, j);
  }
  return r;
}

Plain R(const Plain& a, void (*triangularise)(double*, unsigned, unsigned) = detail::Triangularise) {
  std::vector<double> work = a.e;
  if (a.n != 0) triangularise(work.data(), a.m, a.n);
  Plain r(a.n, a.n);
  for (std::size_t k = 0; k < r.e.size(); ++k) r.e[k] = work[k];
  return r;
}

Plain Hilbert(unsigned m, unsigned n) {
  Plain h(m, n);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned j = 0; j < n; ++j) h(i, j) = 1.0 / (i + j + 1);
  }
  return h;
}

TEST(Reduction, OfTheHilbertMatrixOfOrder4) {
  const double expected[4][4] = {
      {0x1.317264b8100a5p+0, 0x1.574ade976c308p-1, 0x1.e654bb5683ef6p-2, 0x1.7ab62651b6560p-2},
      {0, 0x1.e58323b593704p-4, 0x1.015775501ef16p-3, 0x1.e173b66d2bfecp-4},
      {0, 0, 0x1.97c00c1c81a4ep-8, 0x1.3976342f1f4f6p-7},
      {0, 0, 0, -0x1.8a10a8f7d2440p-13}};
  const Plain r = R(Hilbert(4, 4));
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) EXPECT_TRUE(SameBits(r(i, j), expected[i][j])) << i << " " << j;
  }
}

TEST(Reduction, KeepsTheSignWhereNothingIsReflected) {
  Plain a(3, 2);
  a.e = {-3, 1, 0, -2, 0, 0};
  const Plain r = R(a);
  EXPECT_EQ(r(0, 0), -3.0);
  EXPECT_EQ(r(1, 1), -2.0);
}

TEST(Reduction, ZeroesADependentColumn) {
  Plain a(4, 3);
  a.e = {1, 2, 3, 4, 5, 9, 7, 8, 15, 2, 2, 4};  // third column = first + second
  EXPECT_EQ(R(a)(2, 2), 0.0);
}

TEST(Reduction, EqualsTheLiteralComputation) {
  Random random(301);
  for (unsigned n : {0u, 1u, 2u, 3u, 4u, 5u, 8u, 13u, 17u, 24u, 33u, 64u}) {
    for (unsigned extra : {0u, 1u, 7u}) {
      for (Pattern pattern : kAllPatterns) {
        SCOPED_TRACE(::testing::Message() << n + extra << " x " << n << " " << Name(pattern));
        Plain a(n + extra, n);
        Fill(a.e.data(), a.e.size(), pattern, random);
        const Plain r = R(a);
        EXPECT_TRUE(Same(r, LiteralR(a)));
        EXPECT_TRUE(Same(R(a, detail::TriangulariseColumns), r));
        digest::Feed(r.e.data(), r.e.size());
      }
      EXPECT_TRUE(Same(R(Hilbert(n + extra, n)), LiteralR(Hilbert(n + extra, n))));
    }
  }
}

// Whole rows and columns of zeros and structure that leave some columns out of a reflection.
TEST(Reduction, EqualsTheLiteralComputationOnSparsePatterns) {
  Random random(302);
  for (unsigned n : {4u, 9u, 16u, 30u}) {
    for (unsigned trial = 0; trial < 20; ++trial) {
      Plain a(n + trial % 3, n);
      for (double& e : a.e) e = random.Chance(4) ? random.Integer(-3, 3) : 0.0;
      for (unsigned j = 0; j < n; ++j) {
        if (random.Chance(5)) a(j, j) = -0.0;
      }
      const Plain r = R(a);
      EXPECT_TRUE(Same(r, LiteralR(a))) << n << " " << trial;
      EXPECT_TRUE(Same(R(a, detail::TriangulariseColumns), r)) << n << " " << trial;
      digest::Feed(r.e.data(), r.e.size());
    }
  }
}

// Squares that underflow beside ones that do not, and lengths that overflow.
TEST(Reduction, EqualsTheLiteralComputationAtTheEndsOfTheRange) {
  Random random(303);
  for (double scale : {1e-150, 1e-155, 1e-160, 1e-170, 1e150, 1e153, 1e154, 1e160}) {
    for (unsigned trial = 0; trial < 20; ++trial) {
      Plain a(6, 5);
      for (double& e : a.e) {
        const double u = random.Uniform();
        e = u * (random.Chance(2) ? scale : 1.0);
      }
      EXPECT_TRUE(Same(R(a), LiteralR(a))) << scale << " " << trial;
    }
  }
}

}  // namespace
}  // namespace quorvel::test
