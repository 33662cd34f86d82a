// U-D factorisation and rank-one updates, against their formulas written out.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

struct Factors {
  Grid u;
  std::vector<double> d;
  int singular = 0;
};

// The older form divides before it subtracts, and nothing else; the other is the factorisation.
Factors FactorsOf(const Grid& p, bool older) {
  const unsigned n = p.n;
  Factors f{Grid(n, n), std::vector<double>(n), 0};
  for (unsigned j = n; j-- > 0;) {
    f.u(j, j) = 1.0;
    const auto sum = [&](unsigned i) {
      double s = 0.0;
      for (unsigned k = j + 1; k < n; ++k) s += f.u(i, k) * (f.d[k] * f.u(j, k));
      return s;
    };
    f.d[j] = p(j, j) - sum(j);
    const bool singular = !older && !(std::fabs(f.d[j]) > 1e-200);
    if (singular) {
      f.d[j] = 0.0;
      ++f.singular;
    }
    for (unsigned i = 0; i < j && !singular; ++i) {
      f.u(i, j) = older ? p(i, j) / f.d[j] - sum(i) : (p(i, j) - sum(i)) / f.d[j];
    }
  }
  return f;
}

Grid Hilbert(unsigned n) {
  Random unused(0);
  return SymmetricSample(Family::kHilbert, n, unused);
}

Grid OrderThree() {
  Grid p(3, 3);
  const double values[3][3] = {{6, 2, 1}, {2, 5, 2}, {1, 2, 4}};
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) p(i, j) = values[i][j];
  }
  return p;
}

void ExpectFactors(const UpperTriangularMatrix& U, const DiagonalMatrix& D, const Factors& expected, const char* what) {
  ExpectSameValues(GridOf(U), expected.u, what);
  Grid d(U.ndim(), U.ndim());
  for (unsigned i = 0; i < d.n; ++i) d(i, i) = expected.d[i];
  ExpectSameValues(GridOf(D), d, what);
}

}  // namespace

TEST(UDDecompositionDense, EqualsTheElementwiseForm) {
  Random random(541);
  UpperTriangularMatrix U, compact;
  DiagonalMatrix D;
  for (const Family family : kFamilies) {
    for (const unsigned n : kOrders) {
      const Grid p = SymmetricSample(family, n, random);
      const SymmetricMatrix P(SymmetricOf(p));
      U.set_nsing(5);
      UDDecomposition(U, D, P);
      Factors expected = FactorsOf(p, true);
      ExpectFactors(U, D, expected, Name(family));
      EXPECT_EQ(U.nsing(), 5);
      UDDecomposition(compact, DispensableCopy(P));
      for (unsigned i = 0; i < n; ++i) expected.u(i, i) = expected.d[i];
      ExpectSameValues(GridOf(compact), expected.u, Name(family));
      digest::Feed(U);
      digest::Feed(D);
    }
  }
}

TEST(UDDecompositionDense, WorkedExamples) {
  SymmetricMatrix P(2);
  P(0, 0) = 4.0;
  P(0, 1) = 2.0;
  P(1, 1) = 3.0;
  UpperTriangularMatrix U(7);
  DiagonalMatrix D(1);
  UDDecomposition(U, D, P);
  EXPECT_EQ(U.ndim(), 2u);
  EXPECT_EQ(D(1, 1), 3.0);
  EXPECT_EQ(U(0, 1), 2.0 / 3.0);
  EXPECT_DOUBLE_EQ(D(0, 0), 8.0 / 3.0);
  EXPECT_EQ(U(0, 0), 1.0);
  EXPECT_EQ(U(1, 1), 1.0);

  // The sum of column 1 is not divided by d(1): 0 instead of 0.375.
  UDDecomposition(U, D, SymmetricOf(OrderThree()));
  EXPECT_EQ(D(2, 2), 4.0);
  EXPECT_EQ(U(0, 2), 0.25);
  EXPECT_EQ(U(1, 2), 0.5);
  EXPECT_EQ(D(1, 1), 4.0);
  EXPECT_EQ(U(0, 1), 0.0);
  EXPECT_EQ(D(0, 0), 5.75);

  SymmetricMatrix one(1);
  one(0, 0) = 9.0;
  UDDecomposition(U, D, one);
  EXPECT_EQ(U(0, 0), 1.0);
  EXPECT_EQ(D(0, 0), 9.0);
  UDDecomposition(U, one);
  EXPECT_EQ(U(0, 0), 9.0);

  UDDecomposition(U, D, SymmetricMatrix());
  EXPECT_EQ(U.ndim(), 0u);
  EXPECT_EQ(D.ndim(), 0u);
  UDDecomposition(U, SymmetricMatrix());
  EXPECT_EQ(U.ndim(), 0u);
}

TEST(UDDecompositionDense, FactorsOfTheHilbertMatrix) {
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  UDDecomposition(U, D, SymmetricOf(Hilbert(4)));
  const double u[4][4] = {{1.0, -0x1.e7d5793058a5dp+3, 0x1.ddaaaaaaaaa9ep+5, 0x1.c000000000000p+0},
                          {0.0, 1.0, 0x1.6622222222219p+5, 0x1.6666666666667p+0},
                          {0.0, 0.0, 1.0, 0x1.2aaaaaaaaaaabp+0},
                          {0.0, 0.0, 0.0, 1.0}};
  const double d[4] = {0x1.3f7bb00a1fa69p+11, -0x1.6291d67bd73d7p+3, 0x1.6c16c16c16c20p-8, 0x1.2492492492492p-3};
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(static_cast<double>(U(i, j)), u[i][j]) << i << j;
    EXPECT_EQ(static_cast<double>(D(i, i)), d[i]) << i;
  }
}

TEST(UDFactorDense, EqualsTheElementwiseForm) {
  Random random(542);
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  for (const Family family : kFamilies) {
    for (const unsigned n : kOrders) {
      const Grid p = SymmetricSample(family, n, random);
      UDFactor(U, D, DispensableCopy(SymmetricOf(p)));
      const Factors expected = FactorsOf(p, false);
      ExpectFactors(U, D, expected, Name(family));
      EXPECT_EQ(U.nsing(), expected.singular);
      EXPECT_EQ(D.nsing(), expected.singular);
      digest::Feed(U);
      digest::Feed(D);
    }
  }
}

// More rows than are found together.
TEST(UDFactorDense, LargeOrders) {
  Random random(544);
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  for (const Family family : kFamilies) {
    for (const unsigned n : {65u, 100u, 131u}) {
      const Grid p = SymmetricSample(family, n, random);
      UDFactor(U, D, SymmetricOf(p));
      const Factors expected = FactorsOf(p, false);
      ExpectFactors(U, D, expected, Name(family));
      EXPECT_EQ(U.nsing(), expected.singular);
      UDDecomposition(U, D, SymmetricOf(p));
      ExpectFactors(U, D, FactorsOf(p, true), Name(family));
    }
  }
}

// A column without a pivot takes no part in the sums: not as zero times its infinite neighbour either.
TEST(UDFactorDense, InfiniteFactorsBesideAColumnWithoutPivot) {
  Random random(545);
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  for (const unsigned n : {3u, 4u, 9u, 24u, 70u}) {
    for (unsigned j = 1; j + 1 < n; ++j) {
      Grid p = SymmetricSample(Family::kDefinite, n, random);
      for (unsigned k = 0; k < n; ++k) p(j, k) = p(k, j) = 0.0;
      p(j - 1, j + 1) = p(j + 1, j - 1) = std::numeric_limits<double>::infinity();
      UDFactor(U, D, SymmetricOf(p));
      const Factors expected = FactorsOf(p, false);
      EXPECT_EQ(expected.d[j], 0.0);
      EXPECT_EQ(expected.d[j - 1], -std::numeric_limits<double>::infinity());
      ExpectFactors(U, D, expected, "infinite");
      EXPECT_EQ(U.nsing(), expected.singular);
    }
  }
}

TEST(UDFactorDense, IsTheFactorisationWhereTheOlderFormIsNot) {
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  UDFactor(U, D, SymmetricOf(OrderThree()));
  EXPECT_EQ(static_cast<double>(U(0, 1)), 0.375);
  const Grid p = Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U)));
  ExpectSameValues(p, OrderThree(), "U*D*U'");
}

// Whole numbers, so that a singular pivot is exactly 0. The factors are found again where they are determined.
TEST(UDFactorDense, CountsOfConstructedRank) {
  Random random(543);
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  for (unsigned trial = 0; trial < 500; ++trial) {
    const unsigned n = 1 + random.Below(20);
    std::vector<double> d(n);
    int zeros = 0;
    for (double& e : d) {
      e = random.Chance(3) ? 0.0 : random.Integer(1, 9);
      zeros += e == 0.0 ? 1 : 0;
    }
    // Rows and columns in reverse order turn L*D*L' into U*D*U'.
    const Grid l = SymmetricOfFactors(d, random);
    Grid p(n, n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) p(i, j) = l(n - 1 - i, n - 1 - j);
    }
    UDFactor(U, D, SymmetricOf(p));
    ASSERT_EQ(U.nsing(), zeros) << "trial " << trial;
    for (unsigned i = 0; i < n; ++i) ASSERT_EQ(static_cast<double>(D(i, i)), d[n - 1 - i]) << "trial " << trial;
    ExpectSameValues(Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U))), p, "U*D*U'");
    EXPECT_EQ(SingularityCountULD(D), zeros);
  }
}

TEST(SingularityCount, CountsVanishingDiagonalElements) {
  DiagonalMatrix D(3);
  D(0, 0) = 1.0;
  D(2, 2) = 1e-300;
  EXPECT_EQ(SingularityCountULD(D), 2);
  EXPECT_EQ(D.nsing(), 2);
  UpperTriangularMatrix U(4);
  LowerTriangularMatrix L(4);
  const double diagonal[] = {1e-200, -0.9e-200, std::nan(""), -3.0};  // only the second is below the bound
  for (unsigned i = 0; i < 4; ++i) U(i, i) = L(i, i) = diagonal[i];
  EXPECT_EQ(SingularityCountULD(U), 1);
  EXPECT_EQ(SingularityCountULD(L), 1);
  EXPECT_EQ(U.nsing(), 1);
  EXPECT_EQ(L.nsing(), 1);
  const DiagonalMatrix empty;
  EXPECT_EQ(SingularityCountULD(empty), 0);
  EXPECT_EQ(empty.nsing(), 0);
  DiagonalMatrix& temporary = DispensableCopy(D);
  EXPECT_EQ(SingularityCountULD(temporary), 2);
  temporary.DestroyIfDispensable();
}

TEST(RankOne, EqualsTheElementwiseForm) {
  Random random(544);
  for (const unsigned n : kOrders) {
    for (const Pattern pattern : kAllPatterns) {
      const double a = random.Uniform();
      const RegularMatrix x = Filled<RegularMatrix>(pattern, random, n, 1u);
      const RegularMatrix y = Filled<RegularMatrix>(pattern, random, 1u, n + 2);
      SymmetricMatrix P = Filled<SymmetricMatrix>(pattern, random, n);
      RegularMatrix A = Filled<RegularMatrix>(pattern, random, n, n + 2);
      P.set_nsing(3);
      A.set_nsing(4);
      SymmetricMatrix Q(P);
      Grid p = GridOf(P), b = GridOf(A);
      for (unsigned i = 0; i < n; ++i) {
        const double t = x.data()[i] * a;
        for (unsigned j = 0; j <= i; ++j) p(i, j) = p(j, i) = p(i, j) + t * x.data()[j];
        for (unsigned j = 0; j < n + 2; ++j) b(i, j) += t * y.data()[j];
      }
      RankOneUpdate(P, x.data(), a);
      RankOneUpdate(Q, x, y, a);  // y is not read
      RankOneUpdate(A, DispensableCopy(x), DispensableCopy(y), a);
      ExpectSameValues(GridOf(P), p, Name(pattern));
      ExpectSameValues(GridOf(Q), p, Name(pattern));
      ExpectSameValues(GridOf(A), b, Name(pattern));
      EXPECT_EQ(P.nsing(), 3);
      EXPECT_EQ(A.nsing(), 4);
      digest::Feed(P);
      digest::Feed(A);
    }
  }
}

TEST(RankOne, ListedIndicesOnly) {
  Random random(545);
  for (const unsigned n : {1u, 2u, 5u, 12u}) {
    const double a = -1.75;
    const RegularMatrix x = Filled<RegularMatrix>(Pattern::kUniform, random, n, 1u);
    const RegularMatrix y = Filled<RegularMatrix>(Pattern::kUniform, random, n, 1u);
    SymmetricMatrix P = Filled<SymmetricMatrix>(Pattern::kUniform, random, n);
    RegularMatrix A = Filled<RegularMatrix>(Pattern::kUniform, random, n, n);
    std::vector<unsigned> rows, cols;
    for (unsigned i = 0; i < n; ++i) {
      if (random.Chance(2)) rows.push_back(i);
      if (random.Chance(2)) cols.push_back(i);
    }
    Grid p = GridOf(P), b = GridOf(A);
    for (const unsigned i : rows) {
      for (const unsigned j : cols) {
        b(i, j) += (x(i, 0) * a) * y(j, 0);
        if (j <= i) p(i, j) += (x(i, 0) * a) * x(j, 0);
        if (j < i) p(j, i) = p(i, j);
      }
    }
    const unsigned nx = static_cast<unsigned>(rows.size()), ny = static_cast<unsigned>(cols.size());
    RankOneUpdateNZ(P, DispensableCopy(x), rows.data(), nx, y, cols.data(), ny, a);
    RankOneUpdateNZ(A, x, rows.data(), nx, DispensableCopy(y), cols.data(), ny, a);
    ExpectSameValues(GridOf(P), p, "symmetric");
    ExpectSameValues(GridOf(A), b, "general");
  }
}

// The lists of SetNonZeros leave out what adds nothing: the result is that of the full update.
TEST(RankOne, ListsOfSetNonZerosGiveTheFullUpdate) {
  Random random(546);
  const unsigned n = 9;
  RegularMatrix x = Filled<RegularMatrix>(Pattern::kSignedZero, random, n, 1u);
  RegularMatrix packed(n, 1);
  unsigned index[n];
  const unsigned count = SetNonZeros(n, x, packed, index);
  ASSERT_LT(count, n);
  SymmetricMatrix P = Filled<SymmetricMatrix>(Pattern::kInteger, random, n);
  SymmetricMatrix Q(P);
  RankOneUpdate(P, x, x, 0.5);
  RankOneUpdateNZ(Q, x, index, count, x, index, count, 0.5);
  ExpectSameValues(GridOf(Q), GridOf(P), "listed");
}
