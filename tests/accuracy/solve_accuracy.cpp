// Left division against exact rational solutions, and scale-free residual ratios in the manner of LAPACK's test suite.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "quorvel/inverses.h"
#include "support/big_integer.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

SymmetricMatrix SymmetricOf(const Plain& p) {
  SymmetricMatrix a(p.n);
  for (unsigned i = 0; i < p.n; ++i) {
    for (unsigned j = i; j < p.n; ++j) a(i, j) = p(i, j);
  }
  return a;
}

RegularMatrix RegularOf(const Plain& p) {
  RegularMatrix a(p.m, p.n);
  a.Assign(p.e.data(), p.m, p.n);
  return a;
}

RegularMatrix ColumnOf(const std::vector<double>& b) {
  RegularMatrix column(static_cast<unsigned>(b.size()), 1);
  column.Assign(b.data(), column.nrows(), 1);
  return column;
}

double WorstUlps(const RegularMatrix& x, const ExactSolution& exact) {
  double worst = 0.0;
  for (unsigned i = 0; i < x.nrows(); ++i) worst = std::max(worst, UlpsOff(x.data()[i], exact, i));
  return worst;
}

TEST(BigIntegers, DoWhatTheyShould) {
  const BigInteger a = BigInteger(1000000007) * BigInteger(1000000009) * BigInteger(-998244353);
  EXPECT_EQ(ExactQuotient(a, BigInteger(-998244353)), BigInteger(1000000016000000063LL));
  EXPECT_EQ(ExactQuotient(a * a, a), a);
  EXPECT_TRUE((a - a).IsZero());
  EXPECT_TRUE(a < BigInteger(0));
  EXPECT_EQ(BigInteger::Scaled(0.75, 2), BigInteger(3));
  EXPECT_EQ(BigInteger(5).ShiftedLeft(40) - BigInteger(5LL << 40), BigInteger(0));
  // [[2, 1], [1, 3]] x = (1, 0.5): x = (0.5, 0).
  Plain p(2, 2);
  p.e = {2, 1, 1, 3};
  const ExactSolution exact = Solve(p, {1, 0.5});
  EXPECT_EQ(UlpsOff(0.5, exact, 0), 0.0);
  EXPECT_EQ(UlpsOff(0.0, exact, 1), 0.0);
  EXPECT_NEAR(UlpsOff(std::nextafter(0.5, 1.0), exact, 0), 1.0, 1e-9);
  // x = 1/3 rounds to 0.333..., off by a third of an ulp.
  Plain three(1, 1);
  three(0, 0) = 3.0;
  EXPECT_EQ(UlpsOff(1.0 / 3.0, Solve(three, {1.0}), 0), 0.5);
  EXPECT_NEAR(UlpsOff(std::nextafter(1.0 / 3.0, 1.0), Solve(three, {1.0}), 0), 2.0 / 3.0, 1e-6);
}

// Hilbert systems, with the matrix as doubles have it, up to a condition of 1e13: the exact solution rounded.
TEST(SolveAccuracy, HilbertSystemsAreCorrectlyRounded) {
  Random random(701);
  for (unsigned n = 1; n <= 10; ++n) {
    Plain h(n, n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) h(i, j) = 1.0 / (i + j + 1);
    }
    for (int trial = 0; trial < 5; ++trial) {
      std::vector<double> b(n, 1.0);
      for (double& e : b) e = trial == 0 ? 1.0 : trial < 3 ? random.Integer(-9, 9) : random.Uniform();
      const ExactSolution exact = Solve(h, b);
      const SymmetricMatrix s = SymmetricOf(h);
      const Held<RegularMatrix> x(s > ColumnOf(b));
      EXPECT_LE(WorstUlps(*x, exact), 0.5) << "order " << n << " trial " << trial;
      EXPECT_EQ(s.nsing(), 0);
      RegularMatrix r = RegularOf(h);
      const Held<RegularMatrix> y(r > ColumnOf(b));
      EXPECT_TRUE(Same(*y, PlainOf(*x)));
      digest::Feed(*x);
    }
  }
}

TEST(SolveAccuracy, HilbertSystemsScaledToWholeNumbers) {
  for (unsigned n = 1; n <= 10; ++n) {
    Plain h(n, n);
    std::vector<double> b(n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) h(i, j) = 232792560.0 / (i + j + 1);  // a multiple of 1 .. 20
      b[i] = i % 2 == 0 ? 1.0 : -3.0;
    }
    const SymmetricMatrix s = SymmetricOf(h);
    const Held<RegularMatrix> x(s > ColumnOf(b));
    EXPECT_LE(WorstUlps(*x, Solve(h, b)), 0.5) << "order " << n;
  }
}

// Normal equations of polynomial fits, powers of the abscissae taken as they are.
void Polynomial(double from, double to, double step, unsigned k) {
  SCOPED_TRACE(::testing::Message() << from << " to " << to << ", " << k << " coefficients");
  Plain normal(k, k);
  std::vector<double> b(k, 0.0);
  for (double t = from; t <= to; t += step) {
    const double y = std::floor(1000.0 * std::fmod(t * 0.618033988749895 + 0.1, 1.0));
    std::vector<double> power(k, 1.0);
    for (unsigned j = 1; j < k; ++j) power[j] = power[j - 1] * t;
    for (unsigned i = 0; i < k; ++i) {
      for (unsigned j = 0; j < k; ++j) normal(i, j) += power[i] * power[j];
      b[i] += y * power[i];
    }
  }
  const SymmetricMatrix s = SymmetricOf(normal);
  const Held<RegularMatrix> x(s > ColumnOf(b));
  EXPECT_EQ(s.nsing(), 0);
  EXPECT_LE(WorstUlps(*x, Solve(normal, b)), 1.0);
}

TEST(SolveAccuracy, PolynomialNormalEquationsAreRightToAnUlp) {
  Polynomial(0, 20, 1, 4);
  Polynomial(0, 20, 1, 6);
  Polynomial(0, 20, 1, 7);
  Polynomial(0, 20, 1, 9);
  Polynomial(0, 1000, 1, 4);
  Polynomial(0, 1000, 1, 6);
  Polynomial(1990, 2010, 1, 3);
}

TEST(SolveAccuracy, RandomSystemsAreCorrectlyRounded) {
  Random random(702);
  for (unsigned n : {1u, 2u, 3u, 5u, 10u, 16u}) {
    for (int trial = 0; trial < 5; ++trial) {
      Plain a(n, n);
      std::vector<double> b(n);
      for (double& e : a.e) e = static_cast<double>(random.Integer(-1000, 1000)) / 64.0;
      for (double& e : b) e = static_cast<double>(random.Integer(-1000, 1000)) / 64.0;
      const ExactSolution exact = Solve(a, b);
      if (exact.singular) continue;
      RegularMatrix r = RegularOf(a);
      const Held<RegularMatrix> x(r > ColumnOf(b));
      EXPECT_LE(WorstUlps(*x, exact), 0.5) << "order " << n << " trial " << trial;
    }
  }
}

// Rows of very different size are no obstacle.
TEST(SolveAccuracy, BadlyScaledRows) {
  Random random(703);
  for (int trial = 0; trial < 20; ++trial) {
    Plain a(6, 6);
    std::vector<double> b(6);
    for (unsigned i = 0; i < 6; ++i) {
      const double scale = std::ldexp(1.0, random.Integer(-150, 150));
      for (unsigned j = 0; j < 6; ++j) a(i, j) = random.Integer(-99, 99) * scale;
      b[i] = random.Integer(-99, 99) * scale;
    }
    RegularMatrix r = RegularOf(a);
    const Held<RegularMatrix> x(r > ColumnOf(b));
    EXPECT_LE(WorstUlps(*x, Solve(a, b)), 0.5) << trial;
  }
}

// ---------------------------------------------------------------------------------------------------------------------

constexpr double kEps = std::numeric_limits<double>::epsilon();

double Norm1(const Plain& a) {
  double largest = 0.0;
  for (unsigned j = 0; j < a.n; ++j) {
    double sum = 0.0;
    for (unsigned i = 0; i < a.m; ++i) sum += std::fabs(a(i, j));
    largest = std::max(largest, sum);
  }
  return largest;
}

Plain Times(const Plain& a, const Plain& b) {
  Plain c(a.m, b.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned k = 0; k < a.n; ++k) {
      for (unsigned j = 0; j < b.n; ++j) c(i, j) += a(i, k) * b(k, j);
    }
  }
  return c;
}

Plain MinusIdentity(Plain a) {
  for (unsigned i = 0; i < a.n; ++i) a(i, i) -= 1.0;
  return a;
}

// norm(A·X - I) / (n·norm(A)·norm(X)·eps), both sides.
double InverseRatio(const Plain& a, const Plain& x) {
  const double scale = a.n * Norm1(a) * Norm1(x) * kEps;
  return std::max(Norm1(MinusIdentity(Times(a, x))), Norm1(MinusIdentity(Times(x, a)))) / scale;
}

// norm(A·X - B) / (n·norm(A)·norm(X)·eps).
double SolveRatio(const Plain& a, const Plain& x, const Plain& b) {
  Plain r = Times(a, x);
  for (std::size_t k = 0; k < r.e.size(); ++k) r.e[k] -= b.e[k];
  return Norm1(r) / (a.n * Norm1(a) * Norm1(x) * kEps);
}

Plain WellConditioned(unsigned n, Random& random) {
  Plain a(n, n);
  for (double& e : a.e) e = random.Uniform();
  for (unsigned i = 0; i < n; ++i) a(i, i) += a(i, i) < 0.0 ? -2.0 : 2.0;
  return a;
}

template <class K>
K KindOf(const Plain& p) {
  if constexpr (std::is_same_v<K, RegularMatrix>) {
    return RegularOf(p);
  } else if constexpr (std::is_same_v<K, SymmetricMatrix>) {
    return SymmetricOf(p);
  } else {
    K a(p.n);
    for (unsigned i = 0; i < p.n; ++i) {
      for (unsigned j = i; j < p.n; ++j) {
        const double e = i == j ? p(i, i) : p(i, j) / p.n;  // triangles are well conditioned when their diagonal rules
        std::is_same_v<K, UpperTriangularMatrix> ? a(i, j) = e : a(j, i) = e;
      }
    }
    return a;
  }
}

template <class K>
void Ratios() {
  Random random(704);
  double inverse = 0.0, solve = 0.0;
  for (unsigned n : {1u, 2u, 3u, 5u, 10u, 30u, 60u, 100u}) {
    for (int seed = 0; seed < 20; ++seed) {
      const K a = KindOf<K>(WellConditioned(n, random));
      const Plain p = PlainOf(a);
      const Held<K> x(inv(a));
      EXPECT_EQ(x->nsing(), 0);
      inverse = std::max(inverse, InverseRatio(p, PlainOf(*x)));
      const RegularMatrix b = Filled<RegularMatrix>(Pattern::kUniform, random, n, 2u);
      const Held<RegularMatrix> y(a > b);
      EXPECT_EQ(a.nsing(), 0);
      solve = std::max(solve, SolveRatio(p, PlainOf(*y), PlainOf(b)));
    }
  }
  EXPECT_LE(inverse, 10.0);
  EXPECT_LE(solve, 10.0);
}

TEST(ResidualRatios, Regular) { Ratios<RegularMatrix>(); }
TEST(ResidualRatios, Symmetric) { Ratios<SymmetricMatrix>(); }
TEST(ResidualRatios, Upper) { Ratios<UpperTriangularMatrix>(); }
TEST(ResidualRatios, Lower) { Ratios<LowerTriangularMatrix>(); }

// ---------------------------------------------------------------------------------------------------------------------

// Whole numbers of known rank: independent columns, then whole combinations of them. (In another order the count may be
// larger: a dependent column leaves nothing but rounding errors to reflect, and that reflection may use up the
// direction of a later column.)
Plain OfExactRank(unsigned n, unsigned rank, Random& random) {
  Plain a(n, n);
  for (unsigned j = 0; j < rank; ++j) {
    for (unsigned i = 0; i < n; ++i) a(i, j) = i == j ? 8.0 + random.Integer(0, 3) : random.Integer(-1, 1);
  }
  for (unsigned j = rank; j < n; ++j) {
    for (unsigned k = 0; k < rank; ++k) {
      const double factor = random.Integer(-2, 2);
      for (unsigned i = 0; i < n; ++i) a(i, j) += factor * a(i, k);
    }
  }
  // Rows in random order, so that the structure is not where the algorithm looks first.
  for (unsigned i = n; i > 1; --i) {
    const unsigned k = random.Below(i);
    for (unsigned j = 0; j < n; ++j) std::swap(a(i - 1, j), a(k, j));
  }
  return a;
}

TEST(SingularityCounts, OfTheGeneralInverse) {
  Random random(705);
  for (int trial = 0; trial < 500; ++trial) {
    const unsigned n = 4 + random.Below(9);
    const unsigned rank = random.Below(n + 1);
    RegularMatrix a = RegularOf(OfExactRank(n, rank, random));
    inv(a, true);
    EXPECT_EQ(a.nsing(), static_cast<int>(n - rank)) << "order " << n << " rank " << rank << " trial " << trial;
  }
}

TEST(SingularityCounts, OfTriangularInversesAndSubstitution) {
  Random random(706);
  for (int trial = 0; trial < 500; ++trial) {
    const unsigned n = 4 + random.Below(9);
    UpperTriangularMatrix u = Filled<UpperTriangularMatrix>(Pattern::kUniform, random, n);
    int zeros = 0;
    for (unsigned i = 0; i < n; ++i) {
      if (!random.Chance(3)) continue;
      u(i, i) = random.Chance(2) ? 0.0 : 1e-201;
      ++zeros;
    }
    const RegularMatrix b(n, 1);
    Drop(static_cast<const UpperTriangularMatrix&>(u) > b);
    EXPECT_EQ(u.nsing(), zeros);
    inv(u, true);
    EXPECT_EQ(u.nsing(), zeros);
  }
}

// Elimination without a relative rank test counts exactly when its arithmetic is exact: triangles in disguise.
TEST(SingularityCounts, OfElimination) {
  Random random(707);
  for (int trial = 0; trial < 500; ++trial) {
    const unsigned n = 1 + random.Below(10);
    // Echelon form: rank rows with pivots of 1 in increasing columns, then zeros; rows in random order.
    const unsigned rank = random.Below(n + 1);
    std::vector<unsigned> columns;
    for (unsigned j = 0; j < n; ++j) {
      if (random.Below(n - j) < rank - columns.size()) columns.push_back(j);
    }
    Plain a(n, n);
    for (unsigned k = 0; k < rank; ++k) {
      a(k, columns[k]) = 1.0;
      for (unsigned j = columns[k] + 1; j < n; ++j) a(k, j) = random.Integer(-1, 1);
    }
    Plain x(n, 1);
    for (unsigned k = 0; k < rank; ++k) x(columns[k], 0) = random.Integer(-9, 9);
    for (unsigned i = n; i > 1; --i) {
      const unsigned k = random.Below(i);
      for (unsigned j = 0; j < n; ++j) std::swap(a(i - 1, j), a(k, j));
    }
    RegularMatrix r = RegularOf(a);
    const Held<RegularMatrix> solution(r > RegularOf(Times(a, x)));
    EXPECT_EQ(r.nsing(), static_cast<int>(n - rank)) << "order " << n << " rank " << rank;
    // Consistent: the basic solution is the one that it was made from.
    EXPECT_TRUE(Same(*solution, x, true)) << "order " << n << " rank " << rank;
  }
}

}  // namespace
}  // namespace quorvel::test
