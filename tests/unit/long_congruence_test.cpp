// Congruences with many more observations than unknowns: the same sums at every length, and little scratch.

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"

namespace {

using namespace quorvel::test;

double Value(unsigned k) { return static_cast<double>(k * 7919u % 1009u) / 1009.0 - 0.5; }

bool SameBits(double a, double b) { return std::memcmp(&a, &b, sizeof a) == 0; }

struct Observations {
  RegularMatrix by_columns, by_rows;  // m x n, and its transpose
  DiagonalMatrix weights;
  SymmetricSparseMatrix correlated;  // two bands, the diagonal and the one beside it

  Observations(unsigned m, unsigned n) : by_columns(m, n), by_rows(n, m), weights(m), correlated(m) {
    for (unsigned t = 0; t < m; ++t) {
      for (unsigned i = 0; i < n; ++i) {
        by_rows.data()[i * m + t] = by_columns.data()[t * n + i] = Value(t * n + i);
      }
      weights.data()[t] = Value(t + 5);
      correlated.SparseMatrixInsert(t, t, weights.data()[t]);
      if (t + 1 < m) correlated.SparseMatrixInsert(t, t + 1, Value(t + 3));
    }
  }

  // Element (i, j) of A' P A, from w = row i of A' P.
  double sum(const std::vector<double>& w, unsigned j) const {
    double s = 0.0;
    for (unsigned t = 0; t < w.size(); ++t) s += w[t] * by_rows.data()[j * w.size() + t];
    return s;
  }
  std::vector<double> weighted(unsigned i) const {
    const unsigned m = weights.ndim();
    std::vector<double> w(m);
    for (unsigned k = 0; k < m; ++k) w[k] = 0.0 + by_rows.data()[i * m + k] * weights.data()[k];
    return w;
  }
  std::vector<double> decorrelated(unsigned i) const {
    const unsigned m = weights.ndim();
    std::vector<double> w(m);
    const double* const x = by_rows.data() + i * m;
    for (unsigned k = 0; k < m; ++k) {
      double s = 0.0;
      if (k != 0) s += x[k - 1] * Value(k - 1 + 3);
      s += x[k] * weights.data()[k];
      if (k + 1 < m) s += x[k + 1] * Value(k + 3);
      w[k] = s;
    }
    return w;
  }
};

TEST(LongCongruences, FollowTheirSums) {
  for (const unsigned m : {64u, 65u, 300u, 4096u, 4097u}) {
    for (const unsigned n : {1u, 3u, 8u, 9u, 25u}) {
      const Observations a(m, n);
      const SymmetricMatrix d(ATPA(a.by_columns, a.weights)), d_rows(AQAT(a.by_rows, a.weights));
      const SymmetricMatrix s(ATPA(a.by_columns, a.correlated)), s_rows(AQAT(a.by_rows, a.correlated));
      unsigned wrong = 0;
      for (unsigned i = 0; i < n; ++i) {
        const std::vector<double> w = a.weighted(i), u = a.decorrelated(i);
        for (unsigned j = i; j < n; ++j) {
          const double weighted = a.sum(w, j), decorrelated = a.sum(u, j);
          if (!SameBits(d(i, j), weighted) || !SameBits(d_rows(i, j), weighted)) ++wrong;
          if (!SameBits(s(i, j), decorrelated) || !SameBits(s_rows(i, j), decorrelated)) ++wrong;
        }
      }
      EXPECT_EQ(wrong, 0u) << "m = " << m << ", n = " << n;
    }
  }
}

SymmetricMatrix FullWeights(unsigned m) {
  SymmetricMatrix q(m);
  for (unsigned k = 0; k < q.StoredCount(); ++k) q.data()[k] = Value(k + 11);
  return q;
}

// Row i of both congruences with a full Q, beside sums that ascend for every element.
void CheckRow(unsigned m, unsigned n, std::initializer_list<unsigned> rows) {
  const Observations a(m, n);
  const SymmetricMatrix q(FullWeights(m));
  const SymmetricMatrix by_columns(ATPA(a.by_columns, q)), by_rows(AQAT(a.by_rows, q));
  for (const unsigned i : rows) {
    std::vector<double> w(m, 0.0);
    for (unsigned t = 0; t < m; ++t) {
      for (unsigned k = 0; k < m; ++k) {
        const unsigned line = k < t ? k : t, along = k < t ? t : k;
        w[k] += q.data()[line * m - line * (line + 1) / 2 + along] * a.by_rows.data()[i * m + t];
      }
    }
    unsigned wrong = 0;
    for (unsigned j = i; j < n; ++j) {
      double sum = 0.0;
      for (unsigned t = 0; t < m; ++t) sum += a.by_rows.data()[j * m + t] * w[t];
      if (!SameBits(by_columns(i, j), sum) || !SameBits(by_rows(i, j), sum)) ++wrong;
    }
    EXPECT_EQ(wrong, 0u) << "m = " << m << ", n = " << n << ", row " << i;
  }
}

// Q is so long that the sums over it are formed in several steps.
TEST(LongCongruences, WithAFullMatrix) { CheckRow(1100, 27, {0u, 25u}); }

// The result has so many rows that more of them are formed together.
TEST(LongCongruences, OfManyRows) {
  CheckRow(65, 191, {0u, 24u, 190u});
  CheckRow(65, 192, {0u, 71u, 72u, 150u, 191u});
  CheckRow(130, 221, {5u, 143u, 144u, 217u, 220u});
  CheckRow(66, 399, {72u, 398u});
  CheckRow(66, 433, {0u, 71u, 72u, 360u, 432u});
}

// No more scratch than the operand with few unknowns, and 8 lines of it with many, of a full Q 24 or 72.
TEST(LongCongruences, LittleScratch) {
  const unsigned m = 5000;
  for (const unsigned n : {1u, 3u, 50u}) {
    const Observations a(m, n);
    const unsigned lines = n < 8 ? n : 8;
    const unsigned long long result = sizeof(SymmetricMatrix) + 8ull * n * (n + 1) / 2;
    unsigned long long before = AllocatedBytes();
    ATPA(a.by_columns, a.weights).DestroyIfDispensable();
    EXPECT_EQ(AllocatedBytes() - before, result + 8ull * lines * m) << n;
    before = AllocatedBytes();
    AQAT(a.by_rows, a.correlated).DestroyIfDispensable();
    EXPECT_EQ(AllocatedBytes() - before, result + 16ull * lines * m) << n;
  }
  for (const unsigned n : {23u, 50u, 191u, 192u}) {
    const Observations a(70, n);
    const SymmetricMatrix q(FullWeights(70));
    const unsigned lines = n < 24 ? n : n < 192 ? 24 : 72;
    const unsigned long long before = AllocatedBytes();
    AQAT(a.by_rows, q).DestroyIfDispensable();
    EXPECT_EQ(AllocatedBytes() - before, sizeof(SymmetricMatrix) + 8ull * (n * (n + 1) / 2 + lines * 70)) << n;
  }
}

}  // namespace
