// docs/QUIRKS.md, "Navigation": each statement as a test. (That a NaN ends the process: rooms unit, L1 and Simplex.)

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(NavigationQuirks, LegendreOfOrderTwo) {
  LowerTriangularMatrix two(2), three(3);
  LegendreFunctions(two, 60.0);
  LegendreFunctions(three, 60.0);
  EXPECT_EQ(two(1, 1), 1.0);
  EXPECT_NEAR(three(1, 1), 0.5, 1e-15);
}

TEST(NavigationQuirks, LegendreOverflows) {
  const auto finite = [](unsigned n) {
    LowerTriangularMatrix p(n);
    LegendreFunctions(p, 45.0);
    return p.AllElementsOnInterval(-1e308, 1e308);
  };
  EXPECT_TRUE(finite(150));
  EXPECT_FALSE(finite(152));
}

TEST(NavigationQuirks, TheDerivativeIsPerRadian) {
  const RegularMatrix d(DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(3, 90.0));
  EXPECT_EQ(d(0, 0), -1.0);
}

TEST(NavigationQuirks, NegativeZeros) {
  const RegularMatrix e(denu_dxyz(0, 0)), d(DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(1, 0));
  for (const double zero : {e(0, 0), e(1, 0), e(1, 1), d(1, 1), d(2, 2)}) {
    EXPECT_EQ(zero, 0.0);
    EXPECT_TRUE(std::signbit(zero));
    EXPECT_FALSE(std::signbit(zero + 0.0));
  }
}

TEST(NavigationQuirks, PendingCodes) {
  EXPECT_CODE_WHILE_PENDING(7, Primary_Axis_Rotation_Matrix_RAD(1, 0), 7);
  const auto free = [] {
    const RegularMatrix e(std::move(denu_dxyz(0, 0)));
    const RegularMatrix d(std::move(dxyz_dblh(0, 0, 0, 1, 0)));
    LowerTriangularMatrix p(2);
    p.set_ok(false);
    LegendreFunctions(p, 0);
    double x;
    const double y = 3;
    RegularMatrix one(1, 1);
    *one.data() = 1.0;
    L1Regression(&y, one, &x);
  };
  EXPECT_NO_CODE_WHILE_PENDING(7, free());
}

TEST(NavigationQuirks, ScalingOfTheNoise) {
  SymmetricMatrix pv, pva;
  Q_PV(pv, kInf, 0.0);
  Q_PVA(pva, kInf, 0.0);
  EXPECT_TRUE(std::isnan(pv(0, 0)));
  EXPECT_TRUE(pva == 0.0);
}

TEST(NavigationQuirks, KinematicTargets) {
  EXPECT_CODE(Phi_PV(Dispensable<UpperTriangularMatrix>(2u), 1.0), 50000);
  SymmetricMatrix q;
  Q_PV(q, -1.0, 1.0);
  EXPECT_LT(q(0, 0), 0.0);
}

// The median of 2, 4, 6 by a column of ones; the other order fits the ones by the observations.
TEST(NavigationQuirks, ArgumentOrdersOfL1) {
  RegularMatrix A(3, 1), y(3, 1), x;
  A = 1.0;
  y(0) = 2.0;
  y(1) = 4.0;
  y(2) = 6.0;
  double value;
  EXPECT_EQ(L1Regression(y.data(), A, &value), 0);
  EXPECT_EQ(value, 4.0);
  EXPECT_EQ(L1Regression(A, y, x), 0);
  EXPECT_EQ(x(0), 4.0);
  EXPECT_EQ(L1Regression(y, A, x), 0);
  EXPECT_NE(x(0), 4.0);
}

TEST(NavigationQuirks, ScaleOfL1) {
  RegularMatrix A(3, 1), y(3, 1), x;
  A = 1e-7;
  y = 1.0;
  EXPECT_EQ(L1Regression(A, y, x), 1);
  y(0) = kInf;
  A = 1.0;
  double values[1];
  EXPECT_EQ(L1Regression(y.data(), A, values), 0);
  EXPECT_TRUE(std::isnan(values[0]));
  y(0) = 1.0;
  for (const double bad : {kInf, -kInf, std::numeric_limits<double>::quiet_NaN()}) {
    A(1) = bad;
    EXPECT_EQ(L1Regression(A, y, x), -1);
    EXPECT_EQ(x.nrows(), 0u);
  }
}

// Found by fuzzing, 2026-11-21: 2a - 3b - 2c subject to 2a + 3b + c >= 3, -a + b + c = 1 has the optimum -2 on a whole ray,
// and looks unbounded. With a bound on a it is found.
TEST(NavigationQuirks, ConstantObjectiveAlongARay20261121) {
  RegularMatrix a(4, 4);
  const double rows[3][4] = {{0, 2, -3, -2}, {3, -2, -3, -1}, {1, 1, -1, -1}};
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 4; ++j) a(i, j) = rows[i][j];
  }
  int nonbasic[3], basic[3];
  EXPECT_EQ(Simplx(a, 2, 3, 0, 1, 1, nonbasic, basic), 1);

  RegularMatrix bounded(5, 4);
  const double more[4][4] = {{0, 2, -3, -2}, {9, -1, 0, 0}, {3, -2, -3, -1}, {1, 1, -1, -1}};
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) bounded(i, j) = more[i][j];
  }
  EXPECT_EQ(Simplx(bounded, 3, 3, 1, 1, 1, nonbasic, basic), 0);
  EXPECT_NEAR(bounded(0, 0), -2.0, 1e-12);
}

TEST(NavigationQuirks, PolyFitDividesByTheNumberOfPoints) {
  RegularMatrix t(3, 1), y(3, 1), c(1, 1);
  c = 1e300;  // does not matter
  y(2) = 3.0;
  double rms;
  PolyFit(t, y, c, rms);
  EXPECT_NEAR(c(0), 1.0, 1e-15);
  EXPECT_NEAR(rms, std::sqrt((1.0 + 1.0 + 4.0) / 3), 1e-15);
  // One abscissa does not determine a line: one coefficient is 0.
  RegularMatrix line(2, 1);
  t = 1.0;
  PolyFit(t, y, line, rms);
  EXPECT_TRUE(line(0) == 0.0 || line(1) == 0.0);
  EXPECT_NEAR(line(0) + line(1), 1.0, 1e-15);
}

}  // namespace
}  // namespace quorvel::test
