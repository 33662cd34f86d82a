// Inverses and solutions agree with LAPACK's within what the condition of the matrix allows.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/make.h"
#include "support/plain.h"

extern "C" {
void dgesv_(const int* n, const int* nrhs, double* a, const int* lda, int* ipiv, double* b, const int* ldb, int* info);
void dtrtri_(const char* uplo, const char* diag, const int* n, double* a, const int* lda, int* info);
void dgeqrf_(const int* m, const int* n, double* a, const int* lda, double* tau, double* work, const int* lwork,
             int* info);
}

namespace quorvel::test {
namespace {

constexpr double kEps = std::numeric_limits<double>::epsilon();

// LAPACK keeps matrices by columns.
std::vector<double> ByColumns(const Plain& a) {
  std::vector<double> columns;
  for (unsigned j = 0; j < a.n; ++j) {
    for (unsigned i = 0; i < a.m; ++i) columns.push_back(a(i, j));
  }
  return columns;
}

Plain FromColumns(const std::vector<double>& columns, unsigned m, unsigned n) {
  Plain a(m, n);
  for (unsigned j = 0; j < n; ++j) {
    for (unsigned i = 0; i < m; ++i) a(i, j) = columns[std::size_t{j} * m + i];
  }
  return a;
}

Plain LapackSolve(const Plain& a, const Plain& b) {
  const int n = static_cast<int>(a.n), q = static_cast<int>(b.n);
  std::vector<double> work = ByColumns(a), x = ByColumns(b);
  std::vector<int> pivots(a.n);
  int info = 0;
  dgesv_(&n, &q, work.data(), &n, pivots.data(), x.data(), &n, &info);
  EXPECT_EQ(info, 0);
  return FromColumns(x, a.n, b.n);
}

Plain Identity(unsigned n) {
  Plain a(n, n);
  for (unsigned i = 0; i < n; ++i) a(i, i) = 1.0;
  return a;
}

double Norm(const Plain& a) {
  double largest = 0.0;
  for (unsigned i = 0; i < a.m; ++i) {
    double sum = 0.0;
    for (unsigned j = 0; j < a.n; ++j) sum += std::fabs(a(i, j));
    largest = std::max(largest, sum);
  }
  return largest;
}

double Distance(const Plain& a, Plain b) {
  for (std::size_t k = 0; k < b.e.size(); ++k) b.e[k] -= a.e[k];
  return Norm(b);
}

// What two backward stable methods may differ by.
void ExpectClose(const Plain& a, const Plain& inverse, const Plain& ours, const Plain& theirs) {
  const double condition = Norm(a) * Norm(inverse);
  EXPECT_LE(Distance(ours, theirs), 10.0 * a.n * kEps * condition * Norm(theirs));
}

template <class K>
K KindOf(const Plain& p) {
  if constexpr (std::is_same_v<K, RegularMatrix>) {
    K a(p.n, p.n);
    a.Assign(p.e.data(), p.n, p.n);
    return a;
  } else {
    K a(p.n);
    for (unsigned i = 0; i < p.n; ++i) {
      for (unsigned j = i; j < p.n; ++j)
        std::is_same_v<K, LowerTriangularMatrix> ? a(j, i) = p(j, i) : a(i, j) = p(i, j);
    }
    return a;
  }
}

template <class K>
void Compare(unsigned seed) {
  KeepsBlocks();  // the BLAS keeps buffers and threads
  Random random(seed);
  for (unsigned n : {1u, 2u, 3u, 5u, 10u, 30u, 60u, 100u}) {
    for (int trial = 0; trial < 20; ++trial) {
      Plain drawn(n, n);
      for (double& e : drawn.e) e = random.Uniform();
      // Triangles with equal elements everywhere are hopelessly conditioned; a heavier diagonal is not.
      for (unsigned i = 0; i < n; ++i) drawn(i, i) += drawn(i, i) < 0.0 ? -0.2 * n : 0.2 * n;
      const K a = KindOf<K>(drawn);
      const Plain p = PlainOf(a);
      const Plain inverse = LapackSolve(p, Identity(n));
      SCOPED_TRACE(::testing::Message() << "order " << n << " trial " << trial);
      const Held<K> x(inv(a));
      if (x->nsing() == 0) ExpectClose(p, inverse, PlainOf(*x), inverse);
      EXPECT_EQ(x->nsing(), 0);
      const RegularMatrix b = Filled<RegularMatrix>(Pattern::kUniform, random, n, 3u);
      const Held<RegularMatrix> y(a > b);
      ExpectClose(p, inverse, PlainOf(*y), LapackSolve(p, PlainOf(b)));
    }
  }
}

TEST(BesideLapack, Regular) { Compare<RegularMatrix>(801); }
TEST(BesideLapack, Symmetric) { Compare<SymmetricMatrix>(802); }
TEST(BesideLapack, Upper) { Compare<UpperTriangularMatrix>(803); }
TEST(BesideLapack, Lower) { Compare<LowerTriangularMatrix>(804); }

TEST(BesideLapack, TriangularInverse) {
  KeepsBlocks();
  Random random(805);
  for (unsigned n : {1u, 4u, 17u, 60u}) {
    Plain drawn(n, n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i; j < n; ++j) drawn(i, j) = i == j ? n : random.Uniform();
    }
    std::vector<double> work = ByColumns(drawn);
    const int order = static_cast<int>(n);
    int info = 0;
    dtrtri_("U", "N", &order, work.data(), &order, &info);
    ASSERT_EQ(info, 0);
    const Plain theirs = FromColumns(work, n, n);
    const Held<UpperTriangularMatrix> x(inv(KindOf<UpperTriangularMatrix>(drawn)));
    ExpectClose(drawn, theirs, PlainOf(*x), theirs);
  }
}

TEST(BesideLapack, TheTriangleOfReflections) {
  KeepsBlocks();
  Random random(806);
  for (unsigned n : {1u, 4u, 17u, 60u}) {
    for (unsigned extra : {0u, 5u}) {
      const unsigned m = n + extra;
      RegularMatrix a = Filled<RegularMatrix>(Pattern::kUniform, random, m, n);
      const Plain p = PlainOf(a);
      std::vector<double> work = ByColumns(p), tau(n), scratch(64 * n);
      const int rows = static_cast<int>(m), cols = static_cast<int>(n), size = static_cast<int>(scratch.size());
      int info = 0;
      dgeqrf_(&rows, &cols, work.data(), &rows, tau.data(), scratch.data(), &size, &info);
      ASSERT_EQ(info, 0);
      HouseholderTransformation(a, true);
      // R is unique up to the signs of its rows.
      for (unsigned i = 0; i < n; ++i) {
        const double sign = (a(i, i) < 0.0) == (work[std::size_t{i} * m + i] < 0.0) ? 1.0 : -1.0;
        for (unsigned j = i; j < n; ++j) {
          EXPECT_NEAR(a(i, j), sign * work[std::size_t{j} * m + i], 1e-11 * Norm(p)) << i << " " << j;
        }
      }
    }
  }
}

}  // namespace
}  // namespace quorvel::test
