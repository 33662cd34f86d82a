// Householder triangularisation of dense matrices and the vector helpers, against their formulas written out.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

// Column after column, each reflection applied to one column at a time.
Grid TriangularFactor(Grid a) {
  std::vector<double> length(a.n);
  for (unsigned j = 0; j < a.n; ++j) {
    for (unsigned i = 0; i < a.m; ++i) length[j] += a(i, j) * a(i, j);
  }
  std::vector<double> v(a.m);
  for (unsigned j = 0; j < a.n; ++j) {
    double sigma = 0.0;
    for (unsigned i = j + 1; i < a.m; ++i) sigma += a(i, j) * a(i, j);
    if (sigma != 0.0) {
      const double x = a(j, j);
      const double mu = std::sqrt(sigma + x * x);
      const double v0 = x <= 0.0 ? x - mu : -sigma / (x + mu);
      const double beta = 2.0 * v0 * v0 / (sigma + v0 * v0);
      for (unsigned i = j + 1; i < a.m; ++i) v[i] = a(i, j) / v0;
      for (unsigned c = 0; c < a.n; ++c) {
        double s = a(j, c);
        for (unsigned i = j + 1; i < a.m; ++i) {
          if (v[i] != 0.0) s += a(i, c) * v[i];
        }
        if (s == 0.0) continue;
        s *= beta;
        a(j, c) -= s;
        for (unsigned i = j + 1; i < a.m; ++i) {
          if (v[i] != 0.0) a(i, c) -= s * v[i];
        }
      }
    }
    if (a(j, j) * a(j, j) < length[j] * 1e-22) a(j, j) = 0.0;
  }
  Grid r(a.n, a.n);
  for (unsigned i = 0; i < a.n; ++i) {
    for (unsigned j = i; j < a.n; ++j) r(i, j) = a(i, j);
  }
  return r;
}

struct Pair {
  Grid r;
  std::vector<double> zr;
  Grid a;
  std::vector<double> za;
};

// One element after the other.
void Reduce(Pair& p, unsigned m) {
  const unsigned n = p.r.n;
  for (unsigned j = 0; j < n; ++j) {
    double x = 0.0;
    for (unsigned i = 0; i < m; ++i) x += p.a(i, j) * p.a(i, j);
    if (x <= 0.0) continue;
    double s = std::sqrt(x + p.r(j, j) * p.r(j, j));
    if (p.r(j, j) > 0.0) s = -s;
    const double u = p.r(j, j) - s;
    const double f = -1.0 / (s * u);
    p.r(j, j) = std::fabs(s);
    for (unsigned k = j + 1; k <= n; ++k) {
      const bool vector = k == n;
      double gamma = 0.0;
      for (unsigned i = 0; i < m; ++i) gamma += (vector ? p.za[i] : p.a(i, k)) * p.a(i, j);
      double& top = vector ? p.zr[j] : p.r(j, k);
      gamma = (gamma + u * top) * f;
      top = s < 0.0 ? -top + u * gamma : top - u * gamma;
      for (unsigned i = 0; i < m; ++i) {
        double& e = vector ? p.za[i] : p.a(i, k);
        e = s < 0.0 ? -e + gamma * p.a(i, j) : e - gamma * p.a(i, j);
      }
    }
  }
}

RegularMatrix Column(const std::vector<double>& v) {
  RegularMatrix c(static_cast<unsigned>(v.size()), 1);
  for (unsigned i = 0; i < v.size(); ++i) c(i, 0) = v[i];
  return c;
}

Grid Deficient(unsigned m, unsigned n, Random& random) {
  Grid a = RandomGrid(m, n, random);
  for (unsigned j = 2; j < n; j += 3) {
    for (unsigned i = 0; i < m; ++i) a(i, j) = a(i, j - 1) - 2.0 * a(i, j - 2);
  }
  for (unsigned i = 0; i < m && n > 4; ++i) a(i, 4) = 0.0;
  return a;
}

}  // namespace

TEST(HouseholderDense, TransformationEqualsTheColumnwiseForm) {
  Random random(551);
  for (const unsigned n : {0u, 1u, 2u, 3u, 4u, 5u, 7u, 8u, 12u, 17u, 24u, 33u, 64u}) {
    for (const unsigned surplus : {0u, 1u, 2u, 9u}) {
      for (const Pattern pattern : kAllPatterns) {
        RegularMatrix A = Filled<RegularMatrix>(pattern, random, n + surplus, n);
        const Grid expected = TriangularFactor(GridOf(A));
        HouseholderTransformation(A, true);
        ExpectSameValues(GridOf(A), expected, Name(pattern));
        digest::Feed(A);
      }
      const Grid a = Deficient(n + surplus, n, random);
      RegularMatrix A(RegularOf(a));
      HouseholderTransformation(A, true);
      ExpectSameValues(GridOf(A), TriangularFactor(a), "dependent columns");
    }
  }
}

// So many rows that strips may be narrower.
TEST(HouseholderDense, TransformationOfTallMatrices) {
  Random random(557);
  for (const unsigned n : {16u, 17u, 40u}) {
    const Grid a = Deficient(301, n, random);
    RegularMatrix A(RegularOf(a));
    HouseholderTransformation(A, true);
    ExpectSameValues(GridOf(A), TriangularFactor(a), "tall");
  }
}

TEST(HouseholderDense, FactorOfTheHilbertMatrix) {
  const double expected[4][4] = {
      {0x1.317264b8100a5p+0, 0x1.574ade976c308p-1, 0x1.e654bb5683ef6p-2, 0x1.7ab62651b6560p-2},
      {0.0, 0x1.e58323b593704p-4, 0x1.015775501ef16p-3, 0x1.e173b66d2bfecp-4},
      {0.0, 0.0, 0x1.97c00c1c81a4ep-8, 0x1.3976342f1f4f6p-7},
      {0.0, 0.0, 0.0, -0x1.8a10a8f7d2440p-13}};
  RegularMatrix A(4, 4);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) A(i, j) = 1.0 / (i + j + 1);
  }
  HouseholderTransformation(A, true);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(A(i, j), expected[i][j]) << i << j;
  }
}

TEST(HouseholderDense, ReturnsACopyOfWhatItWas) {
  RegularMatrix A(3, 2);
  A(0, 0) = 3.0;
  A(1, 0) = 4.0;
  A(2, 1) = 5.0;
  A.set_nsing(7);
  const Grid before = GridOf(A);
  const RegularMatrix result(HouseholderTransformation(A, false));
  ExpectSameValues(GridOf(result), before, "the result without the flag");
  Grid r(2, 2);
  r(0, 0) = r(1, 1) = 5.0;
  ExpectSameValues(GridOf(A), r, "the argument");
  EXPECT_EQ(A.nsing(), 7);
}

TEST(HouseholderDense, WorksInPlaceWithTheFlagOrOnATemporary) {
  RegularMatrix A(3, 2);
  A(0, 0) = 3.0;
  A(1, 0) = 4.0;
  A(2, 1) = 5.0;
  RegularMatrix& temporary = DispensableCopy(A);
  RegularMatrix& result = HouseholderTransformation(temporary, false);
  EXPECT_EQ(&result, &temporary);
  EXPECT_TRUE(result.dispensable());
  EXPECT_EQ(result.nrows(), 2u);
  EXPECT_EQ(result(0, 0), 5.0);
  EXPECT_EQ(result(1, 1), 5.0);
  result.DestroyIfDispensable();
  EXPECT_EQ(&HouseholderTransformation(A, true), &A);
  EXPECT_FALSE(A.dispensable());
  EXPECT_EQ(A.nrows(), 2u);
  EXPECT_EQ(A(0, 0), 5.0);
}

TEST(HouseholderDense, KeepsTheSignOfColumnsWithoutAReflection) {
  RegularMatrix A(3, 2);
  A(0, 0) = -3.0;
  A(0, 1) = 1.0;
  A(1, 1) = -2.0;
  HouseholderTransformation(A, true);
  EXPECT_EQ(A(0, 0), -3.0);
  EXPECT_EQ(A(0, 1), 1.0);
  EXPECT_EQ(A(1, 1), -2.0);
  RegularMatrix one(1, 1);
  one(0, 0) = -4.0;
  HouseholderTransformation(one, true);
  EXPECT_EQ(one(0, 0), -4.0);
}

TEST(HouseholderDense, EmptyMatrices) {
  for (const unsigned m : {0u, 5u}) {
    RegularMatrix A(m, 0);
    EXPECT_EQ(&HouseholderTransformation(A, true), &A);
    EXPECT_EQ(A.nrows(), 0u);
    EXPECT_EQ(A.ncols(), 0u);
  }
}

TEST(HouseholderDense, DependentColumnGetsAnExactZero) {
  RegularMatrix A(5, 3);
  for (unsigned i = 0; i < 5; ++i) {
    A(i, 0) = 1.0 / (i + 1);
    A(i, 1) = 0.1 * i * i - 0.7;
    A(i, 2) = 3.0 * A(i, 0) - 0.3 * A(i, 1);
  }
  HouseholderTransformation(A, true);
  EXPECT_EQ(A(2, 2), 0.0);
  EXPECT_GT(A(1, 1), 0.0);
}

void ExpectElementwiseReduction(Random& random, Pattern pattern, unsigned m, unsigned n) {
  UpperTriangularMatrix R = Filled<UpperTriangularMatrix>(pattern, random, n);
  RegularMatrix zR = Filled<RegularMatrix>(pattern, random, n, 1u);
  // Rows and columns beyond the m x n part are not looked at.
  RegularMatrix A = Filled<RegularMatrix>(pattern, random, m + 2, n + 1);
  RegularMatrix zA = Filled<RegularMatrix>(pattern, random, 1u, m + 2);
  for (unsigned i = 0; n > 2 && i < m; ++i) A(i, 2) = 0.0;
  Pair p{GridOf(R), {zR.data(), zR.data() + n}, GridOf(A), {zA.data(), zA.data() + m + 2}};
  Reduce(p, m);
  Householder_Reduction(m, R, zR, A, zA);
  ExpectSameValues(GridOf(R), p.r, Name(pattern));
  ExpectSameValues(GridOf(zR), GridOf(Column(p.zr)), Name(pattern));
  ExpectSameValues(GridOf(A), p.a, Name(pattern));
  ExpectSameValues(Transposed(GridOf(zA)), GridOf(Column(p.za)), Name(pattern));
  digest::Feed(R);
  digest::Feed(zR);
  digest::Feed(A);
  digest::Feed(zA);
}

TEST(HouseholderReduction, EqualsTheElementwiseForm) {
  Random random(552);
  for (const unsigned n : {0u, 1u, 2u, 3u, 5u, 8u, 15u, 24u, 25u, 40u}) {
    for (const unsigned m : {0u, 1u, 2u, 7u, 30u}) {
      for (const Pattern pattern : kAllPatterns) ExpectElementwiseReduction(random, pattern, m, n);
    }
  }
}

// So many columns that they do not fit into the registers.
TEST(HouseholderReduction, EqualsTheElementwiseFormInLongRows) {
  Random random(558);
  for (const unsigned n : {57u, 64u, 121u}) {
    for (const unsigned m : {1u, 5u}) ExpectElementwiseReduction(random, Pattern::kUniform, m, n);
  }
}

TEST(HouseholderReduction, OneStateOneMeasurement) {
  UpperTriangularMatrix R(1);
  RegularMatrix zR(1, 1), A(1, 1), zA(1, 1);
  R(0, 0) = zR(0, 0) = 3.0;
  A(0, 0) = zA(0, 0) = 4.0;
  Householder_Reduction(1, R, zR, A, zA);
  EXPECT_EQ(R(0, 0), 5.0);
  EXPECT_EQ(zR(0, 0), 5.0);
  EXPECT_EQ(zA(0, 0), 0.0);
  EXPECT_EQ(A(0, 0), 4.0);
}

TEST(HouseholderReduction, SkippedColumnKeepsItsSign) {
  UpperTriangularMatrix R(1);
  RegularMatrix zR(1, 1), A(2, 1), zA(2, 1);
  R(0, 0) = -3.0;
  zR(0, 0) = 1.0;
  Householder_Reduction(2, R, zR, A, zA);
  EXPECT_EQ(R(0, 0), -3.0);
  EXPECT_EQ(zR(0, 0), 1.0);
}

// [R zR; A zA] loses nothing: the products of its columns stay what they were.
TEST(HouseholderReduction, KeepsInformationAndSumOfSquares) {
  Random random(553);
  const unsigned n = 6, m = 9;
  UpperTriangularMatrix R = Filled<UpperTriangularMatrix>(Pattern::kUniform, random, n);
  RegularMatrix zR = Filled<RegularMatrix>(Pattern::kUniform, random, n, 1u);
  RegularMatrix A = Filled<RegularMatrix>(Pattern::kUniform, random, m, n);
  RegularMatrix zA = Filled<RegularMatrix>(Pattern::kUniform, random, m, 1u);
  const auto stacked = [&](const Grid& r, const Grid& a) {
    Grid s(n + m, n + 1);
    for (unsigned i = 0; i < n + m; ++i) {
      for (unsigned j = 0; j < n; ++j) s(i, j) = i < n ? r(i, j) : a(i - n, j);
      s(i, n) = i < n ? zR(i, 0) : zA(i - n, 0);
    }
    return s;
  };
  const Grid before = stacked(GridOf(R), GridOf(A));
  Householder_Reduction(m, R, zR, A, zA);
  const Grid after = stacked(GridOf(R), Grid(m, n));  // the reflections have used up A
  const Grid p = Times(Transposed(before), before);
  const Grid q = Times(Transposed(after), after);
  for (unsigned i = 0; i <= n; ++i) {
    for (unsigned j = 0; j <= n; ++j) EXPECT_NEAR(p(i, j), q(i, j), 1e-13) << i << " " << j;
    if (i < n) {
      EXPECT_GE(after(i, i), 0.0);
    }
  }
}

TEST(VecEqMatrixTimesSelf, TwoByTwo) {
  UpperTriangularMatrix U(2);
  U(0, 0) = 2.0;
  U(0, 1) = 3.0;
  U(1, 1) = 4.0;
  RegularMatrix v(2, 1);
  v(0, 0) = v(1, 0) = 1.0;
  VecEqMatrixTimesSelf(v, U);
  EXPECT_EQ(v(0, 0), 5.0);
  EXPECT_EQ(v(1, 0), 4.0);
}

TEST(VecEqMatrixTimesSelf, EqualsTheSumsByRows) {
  Random random(554);
  for (const unsigned n : kOrders) {
    for (const Pattern pattern : kAllPatterns) {
      const UpperTriangularMatrix U = Filled<UpperTriangularMatrix>(pattern, random, n);
      RegularMatrix v = Filled<RegularMatrix>(pattern, random, n, 1u);
      const Grid x = GridOf(v);
      Grid expected(n, 1);
      for (unsigned i = 0; i < n; ++i) {
        double s = x(i, 0) * U(i, i);
        for (unsigned k = i + 1; k < n; ++k) s += x(k, 0) * U(i, k);
        expected(i, 0) = s;
      }
      v.set_nsing(4);
      VecEqMatrixTimesSelf(v, n % 2 == 0 ? U : DispensableCopy(U));
      ExpectSameValues(GridOf(v), expected, Name(pattern));
      EXPECT_EQ(v.nsing(), 4);
      digest::Feed(v);
    }
  }
}

TEST(OuterProduct, RowsOfAZeroAreZero) {
  RegularMatrix x(3, 1), y(3, 1);
  x(0, 0) = 2.0;
  x(1, 0) = -0.0;
  x(2, 0) = -3.0;
  y(0, 0) = 5.0;
  y(1, 0) = kInfinity;
  y(2, 0) = std::nan("");
  const RegularMatrix P(MOutPrd(x, y));
  EXPECT_EQ(P(0, 0), 10.0);
  EXPECT_EQ(P(0, 1), kInfinity);
  EXPECT_TRUE(std::isnan(P(0, 2)));
  for (unsigned j = 0; j < 3; ++j) EXPECT_EQ(P(1, j), 0.0);
  EXPECT_EQ(P(2, 0), -15.0);
  EXPECT_EQ(P(2, 1), -kInfinity);
  EXPECT_EQ(P.nsing(), -1);
}

TEST(OuterProduct, OwnershipAndEmptyVectors) {
  Random random(555);
  const RegularMatrix x = Filled<RegularMatrix>(Pattern::kUniform, random, 4u, 1u);
  const RegularMatrix y = Filled<RegularMatrix>(Pattern::kUniform, random, 4u, 1u);
  const RegularMatrix expected(MOutPrd(x, y));
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(expected(i, j), x(i, 0) * y(j, 0));
  }
  const RegularMatrix first(MOutPrd(DispensableCopy(x), y));
  const RegularMatrix both(MOutPrd(DispensableCopy(x), DispensableCopy(y)));
  RegularMatrix& twice = DispensableCopy(x);
  const RegularMatrix square(MOutPrd(twice, twice));
  EXPECT_TRUE(SameBits(first.data(), expected.data(), 16));
  EXPECT_TRUE(SameBits(both.data(), expected.data(), 16));
  EXPECT_EQ(square(1, 2), x(1, 0) * x(2, 0));
  RegularMatrix empty(0, 1);
  const RegularMatrix none(MOutPrd(empty, empty));
  EXPECT_EQ(none.nrows(), 0u);
  EXPECT_EQ(none.ncols(), 0u);
}

TEST(NonZeros, PacksValuesAndIndices) {
  RegularMatrix x(6, 1), out(5, 1);
  const double values[] = {0.0, 2.0, -0.0, std::nan(""), 5.0, 7.0};
  for (unsigned i = 0; i < 6; ++i) x(i, 0) = values[i];
  for (unsigned i = 0; i < 5; ++i) out(i, 0) = 100.0 + i;
  unsigned index[6] = {9, 9, 9, 9, 9, 9};
  EXPECT_EQ(SetNonZeros(5, x, out, index), 3u);
  EXPECT_EQ(out(0, 0), 2.0);
  EXPECT_TRUE(std::isnan(out(1, 0)));
  EXPECT_EQ(out(2, 0), 5.0);
  EXPECT_EQ(out(3, 0), 103.0);
  EXPECT_EQ(out(4, 0), 104.0);
  EXPECT_EQ(index[0], 1u);
  EXPECT_EQ(index[1], 3u);
  EXPECT_EQ(index[2], 4u);
  EXPECT_EQ(index[3], 9u);
}

TEST(NonZeros, InPlaceAndOwnership) {
  RegularMatrix x(4, 1);
  x(1, 0) = 3.0;
  x(3, 0) = 4.0;
  unsigned index[4];
  EXPECT_EQ(SetNonZeros(4, DispensableCopy(x), x, index), 2u);
  EXPECT_EQ(x(0, 0), 3.0);
  EXPECT_EQ(x(1, 0), 4.0);
  EXPECT_EQ(x(3, 0), 4.0);
  EXPECT_EQ(SetNonZeros(4, x, x, index), 3u);
  EXPECT_EQ(x(2, 0), 4.0);
  EXPECT_EQ(index[2], 3u);
  RegularMatrix& both = DispensableCopy(x);  // the target lives, also when it is the source
  EXPECT_EQ(SetNonZeros(2, both, both, index), 2u);
  EXPECT_TRUE(both.dispensable());
  both.DestroyIfDispensable();
  EXPECT_EQ(SetNonZeros(0, x, x, nullptr), 0u);
}
