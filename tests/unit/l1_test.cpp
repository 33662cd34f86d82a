// L1 regression, against the best of all interpolating subsets.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/linear_program.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

struct Problem {
  std::vector<double> a, y;  // a: m x n by rows
  unsigned n;
  unsigned m() const { return static_cast<unsigned>(y.size()); }
  RegularMatrix A() const {
    RegularMatrix matrix(m(), n);
    if (!a.empty()) matrix.Assign(a.data(), m(), n);
    return matrix;
  }
  RegularMatrix Y() const {
    RegularMatrix column(m(), 1);
    if (!y.empty()) column.Assign(y.data(), m(), 1);
    return column;
  }
};

// Ordinary data: coefficients of order 1, a column of ones first, some gross errors.
Problem RandomProblem(Random& random, unsigned m, unsigned n) {
  Problem p;
  p.n = n;
  for (unsigned i = 0; i < m; ++i) {
    double value = random.Uniform(-0.1, 0.1);
    for (unsigned k = 0; k < n; ++k) {
      const double coefficient = k == 0 ? 1.0 : random.Uniform(-2, 2);
      p.a.push_back(coefficient);
      value += (k % 2 == 0 ? 1.5 : -0.75) * coefficient;
    }
    if (random.Chance(5)) value += random.Uniform(-30, 30);
    p.y.push_back(value);
  }
  return p;
}

std::vector<double> Solved(const Problem& p) {
  std::vector<double> x(p.n, -9.0);
  const RegularMatrix A = p.A();
  EXPECT_EQ(L1Regression(p.y.data(), A, x.data()), 0);
  digest::Feed(x.data(), x.size());
  return x;
}

TEST(L1, PointsOnALine) {
  const Problem p{{1, 0, 1, 1, 1, 2}, {2, 5, 8}, 2};
  const std::vector<double> x = Solved(p);
  EXPECT_NEAR(x[0], 2.0, 1e-14);
  EXPECT_NEAR(x[1], 3.0, 1e-14);
}

TEST(L1, NegativeObservations) {
  const std::vector<double> down = Solved({{1, 0, 1, 1, 1, 2}, {2, -1, -4}, 2});  // y = 2 - 3 t
  EXPECT_NEAR(down[0], 2.0, 1e-14);
  EXPECT_NEAR(down[1], -3.0, 1e-14);
  const std::vector<double> below = Solved({{1, 0, 1, 1, 1, 2}, {-2, -5, -8}, 2});
  EXPECT_NEAR(below[0], -2.0, 1e-14);
  EXPECT_NEAR(below[1], -3.0, 1e-14);
}

TEST(L1, TheMedian) {
  const std::vector<double> x = Solved({{1, 1, 1, 1, 1}, {3, -100, 4, 1000, 5}, 1});
  EXPECT_NEAR(x[0], 4.0, 1e-13);
}

TEST(L1, ReachesTheLeastSum) {
  Random random(83);
  for (unsigned n = 1; n <= 3; ++n) {
    for (int trial = 0; trial < 250; ++trial) {
      const unsigned m = n + random.Below(10);
      const Problem p = RandomProblem(random, m, n);
      const double least = LeastAbsoluteSum(p.a, p.y, n);
      const std::vector<double> x = Solved(p);
      EXPECT_NEAR(AbsoluteSum(p.a, p.y, x), least, 1e-9 * (1 + least)) << "n " << n << " trial " << trial;
    }
  }
}

TEST(L1, IntegerDataWithManyTies) {
  Random random(84);
  for (int trial = 0; trial < 300; ++trial) {
    Problem p;
    p.n = 2;
    const unsigned m = 3 + random.Below(8);
    for (unsigned i = 0; i < m; ++i) {
      p.a.push_back(1.0);
      p.a.push_back(i);  // distinct abscissae: full rank
      p.y.push_back(random.Integer(-5, 5));
    }
    const double least = LeastAbsoluteSum(p.a, p.y, 2);
    EXPECT_NEAR(AbsoluteSum(p.a, p.y, Solved(p)), least, 1e-9 * (1 + least)) << trial;
  }
}

// Sizes for which 2 m and 2 n + m are far beyond 100; optimality is proved by the dual.
TEST(L1, LargeProblems) {
  Random random(85);
  for (const unsigned m : {49u, 51u, 80u, 150u}) {
    for (const unsigned n : {2u, 4u}) {
      const Problem p = RandomProblem(random, m, n);
      const std::vector<double> x = Solved(p);
      EXPECT_EQ(ProvesLeastSum(p.a, p.y, x, 1e-9), std::optional<bool>(true)) << m << " x " << n;
    }
  }
}

TEST(L1, NothingToSolve) {
  const RegularMatrix none(0, 2);
  double x[2] = {7, 7};
  EXPECT_EQ(L1Regression(nullptr, none, x), 0);
  EXPECT_EQ(x[0], 0.0);
  EXPECT_EQ(x[1], 0.0);
  const RegularMatrix no_unknowns(2, 0);
  const double y[] = {1, -2};
  EXPECT_EQ(L1Regression(y, no_unknowns, nullptr), 0);

  RegularMatrix column;
  EXPECT_EQ(L1Regression(none, RegularMatrix(0, 1), column), 0);
  EXPECT_EQ(column.nrows(), 2u);
  EXPECT_EQ(column.ncols(), 1u);
  EXPECT_TRUE(column == 0.0);
}

// All coefficients below the tolerance: no pivot exists, and x stays as it was.
TEST(L1, OutOfScale) {
  Problem p{{1, 0, 1, 1, 1, 2}, {2, 5, 8}, 2};
  for (double& v : p.a) v *= 1e-7;
  double x[2] = {7, 8};
  const RegularMatrix A = p.A();
  EXPECT_EQ(L1Regression(p.y.data(), A, x), 1);
  EXPECT_EQ(x[0], 7.0);
  EXPECT_EQ(x[1], 8.0);
  RegularMatrix column(1, 3);
  column = 4.0;
  EXPECT_EQ(L1Regression(A, p.Y(), column), 1);
  EXPECT_EQ(column.ncols(), 3u);
  EXPECT_TRUE(column == 4.0);
}

TEST(L1, MatrixFormShapesItsResult) {
  const Problem p{{1, 0, 1, 1, 1, 2}, {2, 5, 8}, 2};
  const RegularMatrix A = p.A();
  RegularMatrix y(3, 2);  // the second column plays no part
  for (unsigned i = 0; i < 3; ++i) {
    y(i, 0) = p.y[i];
    y(i, 1) = -1e9;
  }
  RegularMatrix fresh, row(1, 2), wide(3, 3);
  EXPECT_EQ(L1Regression(A, y, fresh), 0);
  EXPECT_EQ(L1Regression(A, y, row), 0);
  EXPECT_EQ(L1Regression(A, y, wide), 0);
  EXPECT_EQ(fresh.nrows(), 2u);
  EXPECT_EQ(fresh.ncols(), 1u);
  EXPECT_EQ(row.nrows(), 1u);  // stored two values already
  EXPECT_EQ(wide.nrows(), 2u);
  EXPECT_EQ(wide.ncols(), 1u);
  for (unsigned k = 0; k < 2; ++k) {
    EXPECT_NEAR(fresh(k), k == 0 ? 2.0 : 3.0, 1e-14);
    EXPECT_TRUE(SameBits(fresh(k), row(k)));
    EXPECT_TRUE(SameBits(fresh(k), wide(k)));
  }
  // x may be y itself, or A.
  EXPECT_EQ(L1Regression(A, y, y), 0);
  EXPECT_EQ(y.nrows(), 2u);
  EXPECT_TRUE(SameBits(y(0), fresh(0)));
  RegularMatrix same = p.A();
  EXPECT_EQ(L1Regression(same, p.Y(), same), 0);
  EXPECT_TRUE(SameBits(same(1), fresh(1)));
}

TEST(L1, ConsumesTemporaries) {
  const Problem p{{1, 0, 1, 1, 1, 2}, {2, 5, 8}, 2};
  RegularMatrix x(2, 1);
  {
    const NoLeak no_leak;
    EXPECT_EQ(L1Regression(DispensableCopy(p.A()), DispensableCopy(p.Y()), x), 0);
    EXPECT_EQ(L1Regression(p.y.data(), DispensableCopy(p.A()), x.data()), 0);
  }
  EXPECT_NEAR(x(1), 3.0, 1e-14);
  {
    const NoLeak no_leak;  // one object as both: y = its own first column, so x = (1, 0)
    RegularMatrix& both = DispensableCopy(p.A());
    EXPECT_EQ(L1Regression(both, both, x), 0);
  }
  EXPECT_NEAR(x(0), 1.0, 1e-14);
  {
    const NoLeak no_leak;  // the target is never consumed
    RegularMatrix& y = DispensableCopy(p.Y());
    const RegularMatrix A = p.A();
    EXPECT_EQ(L1Regression(A, y, y), 0);
    EXPECT_NEAR(y(1), 3.0, 1e-14);
    y.DestroyIfDispensable();
  }
  RegularMatrix poor = p.A();
  poor *= 1e-7;
  const NoLeak no_leak;
  EXPECT_EQ(L1Regression(DispensableCopy(poor), DispensableCopy(p.Y()), x), 1);
}

TEST(L1, ANotANumberEndsTheProcess) {
  KeepsBlocks();
  GTEST_FLAG_SET(death_test_style, "fast");
  const RegularMatrix A(3, 2);
  const double y[] = {1, std::numeric_limits<double>::quiet_NaN(), 2};
  double x[2];
  EXPECT_DEATH(L1Regression(y, A, x), "utility:.*Simplx.*Assertion `0\\.0 <= a\\(i\\+1,0\\)' failed");
}

}  // namespace
}  // namespace quorvel::test
