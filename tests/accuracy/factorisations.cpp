// Residuals of the factorisations as scale-free ratios, in the manner of LAPACK's test programs: the error of a product
// of factors over n * norm * eps, which stays of order 1 for a backward stable algorithm. The bound is 10.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

constexpr double kEpsilon = std::numeric_limits<double>::epsilon();
constexpr double kBound = 10.0;
constexpr unsigned kSeeds = 20;
constexpr std::array<unsigned, 8> kSizes = {1, 2, 3, 5, 10, 30, 60, 100};
// The closed forms of orders 2 and 3 compare a determinant with 1e-200: 1e-66 is as small as they can take.
constexpr std::array<double, 3> kScales = {1.0, 1e90, 1e-60};

double Difference(const Grid& a, const Grid& b) {
  Grid d = a;
  for (std::size_t k = 0; k < d.e.size(); ++k) d.e[k] -= b.e[k];
  return Norm1(d);
}

double Ratio(const Grid& actual, const Grid& expected) {
  return Difference(actual, expected) / (expected.n * Norm1(expected) * kEpsilon);
}

// Symmetric, condition number below about 10.
Grid WellConditioned(unsigned n, double scale, Random& random) {
  const Grid g = RandomGrid(n, n, random);
  Grid a = Times(g, Transposed(g));
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) a(i, j) = a(j, i) = (a(i, j) / n + (i == j ? 0.5 : 0.0)) * scale;
  }
  return a;
}

// Calls check(a, what) with every sample.
template <class Check>
void ForEachSample(std::uint64_t seed, Check check) {
  for (const unsigned n : kSizes) {
    for (unsigned k = 0; k < kSeeds; ++k) {
      Random random(1000 * seed + 100 * k + n);
      const Grid a = WellConditioned(n, kScales[k % kScales.size()], random);
      check(a);
      if (::testing::Test::HasFailure()) {
        ADD_FAILURE() << "order " << n << ", sample " << k;
        return;
      }
    }
  }
}

}  // namespace

TEST(Residuals, CholeskyFactorAndRoots) {
  ForEachSample(1, [](const Grid& a) {
    const SymmetricMatrix A(SymmetricOf(a));
    const Grid tolerant = GridOf(LowerTriangularMatrix(CholeskyFactor(A, 1e-12)));
    const Grid lower = GridOf(LowerTriangularMatrix(CholeskySquareRootLower(A)));
    const Grid upper = GridOf(UpperTriangularMatrix(CholeskySquareRootUpper(A)));
    EXPECT_EQ(A.nsing(), 0);
    EXPECT_LE(Ratio(Times(tolerant, Transposed(tolerant)), a), kBound);
    EXPECT_LE(Ratio(Times(lower, Transposed(lower)), a), kBound);
    EXPECT_LE(Ratio(Times(upper, Transposed(upper)), a), kBound);
  });
}

TEST(Residuals, UDFactor) {
  ForEachSample(2, [](const Grid& a) {
    UpperTriangularMatrix U;
    DiagonalMatrix D;
    UDFactor(U, D, SymmetricOf(a));
    EXPECT_EQ(U.nsing(), 0);
    EXPECT_LE(Ratio(Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U))), a), kBound);
  });
}

TEST(Residuals, InverseByCholesky) {
  ForEachSample(3, [](const Grid& a) {
    const SymmetricMatrix A(SymmetricOf(a));
    const Grid x = GridOf(SymmetricMatrix(InverseByCholesky(A, 1e-12)));
    Grid identity(a.n, a.n);
    for (unsigned i = 0; i < a.n; ++i) identity(i, i) = 1.0;
    EXPECT_LE(Difference(Times(a, x), identity) / (a.n * Norm1(a) * Norm1(x) * kEpsilon), kBound);
  });
}

// R'*R = A'*A, which says all about R but the signs of its rows.
TEST(Residuals, HouseholderTransformation) {
  for (const unsigned n : kSizes) {
    for (unsigned k = 0; k < kSeeds; ++k) {
      Random random(4000 + 100 * k + n);
      const Grid a = RandomGrid(n + k % 7, n, random);
      RegularMatrix A(RegularOf(a));
      HouseholderTransformation(A, true);
      const Grid r = GridOf(A);
      const double ratio = Difference(Times(Transposed(r), r), Times(Transposed(a), a)) /
                           (a.m * Norm1(a) * Norm1(Transposed(a)) * kEpsilon);
      ASSERT_LE(ratio, kBound) << a.m << " x " << n << ", sample " << k;
    }
  }
}

// The information and the right-hand side that a batch of measurements adds.
TEST(Residuals, HouseholderReduction) {
  for (const unsigned n : {1u, 2u, 3u, 5u, 10u, 30u}) {
    for (unsigned k = 0; k < kSeeds; ++k) {
      Random random(5000 + 100 * k + n);
      const unsigned m = 1 + k;
      UpperTriangularMatrix R = Filled<UpperTriangularMatrix>(Pattern::kUniform, random, n);
      for (unsigned i = 0; i < n; ++i) R(i, i) = random.Uniform(0.5, 2.0);
      RegularMatrix zR = Filled<RegularMatrix>(Pattern::kUniform, random, n, 1u);
      RegularMatrix A = Filled<RegularMatrix>(Pattern::kUniform, random, m, n);
      RegularMatrix zA = Filled<RegularMatrix>(Pattern::kUniform, random, m, 1u);
      Grid before(n + m, n + 1), after(n + m, n + 1);
      const auto fill = [&](Grid& g, bool with_measurements) {
        for (unsigned i = 0; i < n + m; ++i) {
          for (unsigned j = 0; j < n; ++j) {
            g(i, j) = i < n ? std::as_const(R)(i, j) : with_measurements ? A(i - n, j) : 0.0;
          }
          g(i, n) = i < n ? zR(i, 0) : zA(i - n, 0);
        }
      };
      fill(before, true);
      Householder_Reduction(m, R, zR, A, zA);
      fill(after, false);
      const double ratio = Difference(Times(Transposed(after), after), Times(Transposed(before), before)) /
                           ((n + m) * Norm1(before) * Norm1(Transposed(before)) * kEpsilon);
      ASSERT_LE(ratio, kBound) << n << " states, " << m << " measurements";
    }
  }
}

#ifdef QUORVEL_HAVE_LAPACK

extern "C" {
void dpotrf_(const char* uplo, const int* n, double* a, const int* lda, int* info, std::size_t);
void dpotri_(const char* uplo, const int* n, double* a, const int* lda, int* info, std::size_t);
void dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work, const int* lwork,
             int* info);
}

// Arrays by columns there: the transpose here.
TEST(BesideLapack, CholeskyFactorAndInverse) {
  ForEachSample(6, [](const Grid& a) {
    const SymmetricMatrix A(SymmetricOf(a));
    Grid theirs = a;
    const int n = static_cast<int>(a.n);
    int info = -1;
    dpotrf_("L", &n, theirs.e.data(), &n, &info, 1);
    ASSERT_EQ(info, 0);
    Grid l(a.n, a.n);
    for (unsigned i = 0; i < a.n; ++i) {
      for (unsigned j = 0; j <= i; ++j) l(i, j) = theirs(j, i);
    }
    EXPECT_LE(Ratio(GridOf(LowerTriangularMatrix(CholeskyFactor(A, 1e-12))), l), kBound);
    EXPECT_LE(Ratio(GridOf(LowerTriangularMatrix(CholeskySquareRootLower(A))), l), kBound);
    dpotri_("L", &n, theirs.e.data(), &n, &info, 1);
    ASSERT_EQ(info, 0);
    for (unsigned i = 0; i < a.n; ++i) {
      for (unsigned j = 0; j <= i; ++j) l(i, j) = l(j, i) = theirs(j, i);
    }
    EXPECT_LE(Ratio(GridOf(SymmetricMatrix(InverseByCholesky(A, 1e-12))), l), kBound);
  });
}

// R is unique up to the signs of its rows; LAPACK chooses others.
TEST(BesideLapack, TriangularFactor) {
  for (const unsigned n : kSizes) {
    for (unsigned k = 0; k < kSeeds; ++k) {
      Random random(7000 + 100 * k + n);
      Grid a = RandomGrid(n + 3, n, random);
      for (unsigned i = 0; i < n; ++i) a(i, i) += std::sqrt(static_cast<double>(n)) * 2.0;
      Grid theirs = Transposed(a);
      const int rows = static_cast<int>(a.m), cols = static_cast<int>(n), lwork = 64 * cols;
      std::vector<double> tau(n), work(static_cast<std::size_t>(lwork));
      int info = -1;
      dgeqrf_(&rows, &cols, theirs.e.data(), &rows, tau.data(), work.data(), &lwork, &info);
      ASSERT_EQ(info, 0);
      Grid r(n, n);
      for (unsigned i = 0; i < n; ++i) {
        for (unsigned j = i; j < n; ++j) r(i, j) = theirs(i, i) < 0.0 ? -theirs(j, i) : theirs(j, i);
      }
      RegularMatrix A(RegularOf(a));
      HouseholderTransformation(A, true);
      ASSERT_LE(Ratio(GridOf(A), r), kBound) << "order " << n << ", sample " << k;
    }
  }
}

#else

TEST(BesideLapack, NotHere) { GTEST_SKIP() << "built without LAPACK (Debian package liblapack-dev, host only)"; }

#endif
