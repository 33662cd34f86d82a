// Cholesky factors of sparse matrices against a cell-by-cell form, and against the dense factors.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

constexpr unsigned kNone = ~0u;

// Cells are absent where they are 0.0. Products run over cells that both rows have.
struct Cells {
  explicit Cells(unsigned n) : g(n, n) {}
  double operator()(unsigned i, unsigned j) const { return g(i, j); }
  void Put(unsigned i, unsigned j, double value) { g(i, j) = value; }
  unsigned FirstInRow(unsigned i) const {
    for (unsigned j = 0; j < g.n; ++j) {
      if (g(i, j) != 0.0) return j;
    }
    return kNone;
  }
  double Dot(unsigned i, unsigned j, unsigned first, unsigned last) const {
    double sum = 0.0;
    for (unsigned k = first; k <= last; ++k) {
      if (g(i, k) != 0.0 && g(j, k) != 0.0) sum += g(i, k) * g(j, k);
    }
    return sum;
  }
  Grid g;
};

Grid CellByCell(const Grid& a, double tol, int& singular) {
  Cells l(a.n);
  singular = 0;
  for (unsigned i = 0; i < a.n; ++i) {
    for (unsigned j = 0; j <= i; ++j) l.Put(i, j, a(i, j));
  }
  for (unsigned i = 0; i < a.n; ++i) {
    const unsigned first = l.FirstInRow(i);
    if (first == kNone) continue;
    const double unreduced = l(i, i);
    for (unsigned j = first; j <= i; ++j) {
      if (j < i) {
        l.Put(i, j, l(i, j) * l(j, j));
      } else if (l(i, i) == 0.0 ? 0.0 < std::fabs(tol * unreduced) : std::fabs(l(i, i)) < std::fabs(tol * unreduced)) {
        ++singular;
        for (unsigned k = 0; k < a.n; ++k) {
          l.Put(i, k, 0.0);
          l.Put(k, i, 0.0);
        }
      } else {
        l.Put(i, i, l(i, i) == 0.0 ? std::numeric_limits<double>::infinity() : 1.0 / std::sqrt(l(i, i)));
      }
      if (j + 1 > i) continue;
      const unsigned other = l.FirstInRow(j + 1);
      if (other == kNone || std::max(first, other) > j) continue;
      l.Put(i, j + 1, l(i, j + 1) - l.Dot(i, j + 1, std::max(first, other), j));
    }
  }
  for (unsigned i = 0; i < a.n; ++i) {
    if (l(i, i) != 0.0) l.Put(i, i, 1.0 / l(i, i));
  }
  return l.g;
}

Grid RootCellByCell(const Grid& a, bool lower) {
  Cells f(a.n);
  const unsigned n = a.n;
  for (unsigned step = 0; step < n; ++step) {
    const unsigned i = lower ? step : n - 1 - step;
    for (unsigned k = 0; k < (lower ? i : n - 1 - i); ++k) {
      const unsigned j = lower ? k : n - 1 - k;
      double sum = 0.0;
      if (lower ? j > 0 : j < n - 1) sum = lower ? f.Dot(i, j, 0, j - 1) : f.Dot(i, j, j + 1, n - 1);
      f.Put(i, j, (a(i, j) - sum) / f(j, j));
    }
    double sum = 0.0;
    if (lower ? i > 0 : i < n - 1) sum = lower ? f.Dot(i, i, 0, i - 1) : f.Dot(i, i, i + 1, n - 1);
    f.Put(i, i, std::sqrt(a(i, i) - sum));
  }
  return f.g;
}

SymmetricSparseMatrix SparseOf(const Grid& a) {
  SymmetricSparseMatrix s(a.n);
  for (unsigned i = 0; i < a.n; ++i) {
    for (unsigned j = i; j < a.n; ++j) s.Put(i, j, a(i, j));
  }
  return s;
}

// About `per_row` elements off the diagonal in each row; diagonally dominant, unless the diagonal is thinned too.
Grid SparseSample(unsigned n, unsigned per_row, bool thin_diagonal, Random& random) {
  Grid a(n, n);
  for (unsigned i = 0; i < n; ++i) a(i, i) = thin_diagonal && random.Chance(4) ? 0.0 : 2.0 * per_row + random.Uniform(1.0, 2.0);
  for (unsigned k = 0; n > 1 && k < per_row * n / 2; ++k) {
    const unsigned i = random.Below(n), j = random.Below(n);
    if (i != j) a(i, j) = a(j, i) = random.Uniform();
  }
  return a;
}

// No zeros are stored, and rows and columns are threaded in order.
void ExpectSoundStore(const RegularSparseMatrix& a) {
  unsigned count = 0;
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (const SparseElement* e = a.GetFirstInRow(i); e != nullptr; e = e->nextInRow, ++count) {
      ASSERT_EQ(e->row, i);
      ASSERT_NE(e->value, 0.0);
      if (e->nextInRow != nullptr) {
        ASSERT_LT(e->col, e->nextInRow->col);
      }
      ASSERT_EQ(a.Cell_Loc(i, e->col), e);
    }
    for (const SparseElement* e = a.GetFirstInCol(i); e != nullptr && e->nextInCol != nullptr; e = e->nextInCol) {
      ASSERT_LT(e->row, e->nextInCol->row);
    }
  }
  ASSERT_EQ(count, a.used);
}

void FeedCells(const RegularSparseMatrix& a) {
  digest::Feed(a.used);
  digest::Feed(a.nsing());
  const Grid g = GridOf(a);
  digest::Feed(g.e.data(), g.e.size());
}

void Compare(const Grid& a, const char* what) {
  for (const double tol : {1e-12, 0.0, 0.2}) {
    int singular = 0;
    const Grid expected = CellByCell(a, tol, singular);
    const SymmetricSparseMatrix A(SparseOf(a));
    const RegularSparseMatrix L(CholeskyFactor(A, tol));
    ExpectSameValues(GridOf(L), expected, what);
    EXPECT_EQ(L.nsing(), singular) << what;
    EXPECT_EQ(A.nsing(), singular) << what;
    ExpectSoundStore(L);
    FeedCells(L);
  }
  const SymmetricSparseMatrix A(SparseOf(a));
  const RegularSparseMatrix lower(CholeskySquareRootLower(A));
  const RegularSparseMatrix upper(CholeskySquareRootUpper(A));
  ExpectSameValues(GridOf(lower), RootCellByCell(a, true), what);
  ExpectSameValues(GridOf(upper), RootCellByCell(a, false), what);
  EXPECT_EQ(lower.nsing(), -1);
  EXPECT_EQ(upper.nsing(), -1);
  ExpectSoundStore(lower);
  ExpectSoundStore(upper);
  FeedCells(lower);
  FeedCells(upper);
}

}  // namespace

TEST(CholeskySparse, EqualsTheCellByCellForm) {
  Random random(531);
  for (const unsigned n : {0u, 1u, 2u, 3u, 4u, 7u, 12u, 33u, 64u, 65u, 130u}) {
    for (const unsigned per_row : {0u, 1u, 3u, 10u}) {
      Compare(SparseSample(n, per_row, false, random), "sparse");
      Compare(SparseSample(n, per_row, true, random), "sparse, with absent diagonal elements");
    }
  }
  for (const Family family : kFamilies) {
    for (const unsigned n : {1u, 2u, 5u, 17u, 33u}) Compare(SymmetricSample(family, n, random), Name(family));
  }
}

TEST(CholeskySparse, EqualsTheDenseFactors) {
  Random random(532);
  for (const unsigned n : {1u, 4u, 20u, 64u, 100u}) {
    for (const unsigned per_row : {1u, 4u, 12u}) {
      const Grid a = SparseSample(n, per_row, false, random);
      const SymmetricMatrix dense(SymmetricOf(a));
      const SymmetricSparseMatrix sparse(SparseOf(a));
      const LowerTriangularMatrix L(CholeskyFactor(dense, 1e-12));
      const RegularSparseMatrix l(CholeskyFactor(sparse, 1e-12));
      ExpectSameValues(GridOf(l), GridOf(L), "tolerant");
      EXPECT_EQ(l.nsing(), L.nsing());
      ExpectSameValues(GridOf(RegularSparseMatrix(CholeskySquareRootLower(sparse))),
                       GridOf(LowerTriangularMatrix(CholeskySquareRootLower(dense))), "lower");
      ExpectSameValues(GridOf(RegularSparseMatrix(CholeskySquareRootUpper(sparse))),
                       GridOf(UpperTriangularMatrix(CholeskySquareRootUpper(dense))), "upper");
    }
  }
}

TEST(CholeskySparse, EmptyRowIsSkipped) {
  Grid a(3, 3);
  a(0, 0) = 4.0;
  a(2, 2) = 9.0;
  const SymmetricSparseMatrix A(SparseOf(a));
  const RegularSparseMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_EQ(L.nsing(), 0);
  EXPECT_EQ(L.used, 2u);
  EXPECT_EQ(L(0, 0), 2.0);
  EXPECT_EQ(L(2, 2), 3.0);
}

TEST(CholeskySparse, CountsOfConstructedRank) {
  Random random(533);
  for (unsigned trial = 0; trial < 500; ++trial) {
    const RankSample sample = SampleOfKnownRank(1 + random.Below(20), random);
    const SymmetricSparseMatrix A(SparseOf(sample.a));
    const RegularSparseMatrix L(CholeskyFactor(A, 1e-12));
    ASSERT_EQ(L.nsing(), sample.zeros) << "trial " << trial;
  }
}

TEST(CholeskySparse, OwnershipAndEmptyMatrix) {
  Random random(534);
  const SymmetricSparseMatrix A(SparseOf(SparseSample(30, 4, false, random)));
  const RegularSparseMatrix L(CholeskyFactor(A, 1e-12));
  RegularSparseMatrix& l = CholeskyFactor(DispensableCopy(A), 1e-12);
  EXPECT_TRUE(l.dispensable());
  EXPECT_EQ(l.nsing(), 0);
  ExpectSameValues(GridOf(std::as_const(l)), GridOf(L), "of a temporary");
  l.DestroyIfDispensable();
  RegularSparseMatrix(CholeskySquareRootLower(DispensableCopy(A)));
  RegularSparseMatrix(CholeskySquareRootUpper(DispensableCopy(A)));
  const SymmetricSparseMatrix empty;
  const RegularSparseMatrix none(CholeskyFactor(empty, 1e-12));
  EXPECT_EQ(none.nrows(), 0u);
  EXPECT_EQ(none.nsing(), 0);
  EXPECT_EQ(empty.nsing(), 0);
}

// A bidiagonal triangle times its transpose, and one element at the far end of a long line: all exact. A line costs
// what it stores, however far apart that lies.
TEST(CholeskySparse, LongLinesWithElementsFarApart) {
  constexpr unsigned n = 20000;
  const auto check = [](const RegularSparseMatrix& factor, unsigned far_row, unsigned far_col, unsigned next_row,
                        unsigned next_col) {
    ASSERT_EQ(factor.used, 2 * n);
    for (unsigned i = 0; i < n; ++i) ASSERT_EQ(factor(i, i), 2.0) << i;
    for (unsigned i = 0; i + 1 < n; ++i) ASSERT_EQ(factor(i + next_row, i + next_col), 1.0) << i;
    ASSERT_EQ(factor(far_row, far_col), 1.0);
  };
  SymmetricSparseMatrix A(n);
  for (unsigned i = 0; i < n; ++i) {
    A.Put(i, i, i == 0 ? 4.0 : i + 1 == n ? 6.0 : 5.0);
    if (i + 1 < n) A.Put(i, i + 1, 2.0);
  }
  A.Put(0, n - 1, 2.0);  // 1 times the first diagonal element
  A.Put(1, n - 1, 1.0);  // 1 times the element below that
  check(RegularSparseMatrix(CholeskyFactor(std::as_const(A), 1e-12)), n - 1, 0, 1, 0);
  check(RegularSparseMatrix(CholeskySquareRootLower(std::as_const(A))), n - 1, 0, 1, 0);
  A.Put(0, 0, 6.0);
  A.Put(n - 1, n - 1, 4.0);
  A.Put(1, n - 1, 0.0);
  A.Put(0, n - 2, 1.0);
  check(RegularSparseMatrix(CholeskySquareRootUpper(std::as_const(A))), 0, n - 1, 0, 1);
}

TEST(SingularityCount, SparseDiagonal) {
  RegularSparseMatrix wide(3, 5);
  wide.Put(0, 0, 2.0);
  wide.Put(1, 1, 1e-300);
  wide.Put(2, 4, 1.0);
  EXPECT_EQ(SingularityCountULD(wide), 2);
  EXPECT_EQ(wide.nsing(), 2);
  const SymmetricSparseMatrix empty(4);
  EXPECT_EQ(SingularityCountULD(empty), 4);
}

TEST(RankOne, SparseTargets) {
  Random random(535);
  for (const unsigned n : {1u, 4u, 9u}) {
    RegularSparseMatrix A(n, n), x(n, 1), y(n, 1);
    SymmetricSparseMatrix S(n);
    std::vector<unsigned> rows, cols;
    for (unsigned i = 0; i < n; ++i) {
      if (random.Chance(2)) x.Put(i, 0, random.Integer(-4, 4));
      if (random.Chance(2)) y.Put(i, 0, random.Integer(-4, 4));
      if (random.Chance(2)) rows.push_back(i);
      if (random.Chance(2)) cols.push_back(i);
      for (unsigned j = 0; j < n; ++j) {
        A.Put(i, j, random.Integer(-2, 2));
        if (i <= j) S.Put(i, j, random.Integer(-2, 2));
      }
    }
    Grid a = GridOf(std::as_const(A)), s = GridOf(std::as_const(S));
    const Grid vx = GridOf(std::as_const(x)), vy = GridOf(std::as_const(y));
    for (const unsigned i : rows) {
      for (const unsigned j : cols) {
        a(i, j) += (vx(i, 0) * 0.5) * vy(j, 0);
        if (j <= i) s(i, j) = s(j, i) = s(i, j) + (vx(i, 0) * 0.5) * vx(j, 0);
      }
    }
    const unsigned nx = static_cast<unsigned>(rows.size()), ny = static_cast<unsigned>(cols.size());
    RankOneUpdateNZ(A, x, rows.data(), nx, DispensableCopy(y), cols.data(), ny, 0.5);
    RankOneUpdateNZ(S, DispensableCopy(x), rows.data(), nx, y, cols.data(), ny, 0.5);
    ExpectSameValues(GridOf(std::as_const(A)), a, "general");
    ExpectSameValues(GridOf(std::as_const(S)), s, "symmetric");
    ExpectSoundStore(A);
  }
}

TEST(InverseByCholeskySparse, EqualsTheDenseInverse) {
  Random random(536);
  for (const unsigned n : {1u, 2u, 3u, 4u, 20u, 64u}) {
    for (const unsigned per_row : {1u, 4u}) {
      const Grid a = SparseSample(n, per_row, false, random);
      const SymmetricMatrix dense(SymmetricOf(a));
      const SymmetricSparseMatrix sparse(SparseOf(a));
      const SymmetricMatrix expected(InverseByCholesky(dense, 1e-12));
      const SymmetricSparseMatrix inverse(InverseByCholesky(sparse, 1e-12));
      ExpectSameValues(GridOf(inverse), GridOf(expected), "inverse");
      EXPECT_EQ(inverse.nsing(), expected.nsing());
      EXPECT_EQ(sparse.nsing(), dense.nsing());
      const SymmetricSparseMatrix again(InverseByCholesky(DispensableCopy(sparse), 1e-12));
      ExpectSameValues(GridOf(again), GridOf(expected), "inverse of a temporary");
      digest::Feed(inverse.used);
    }
  }
}

TEST(InverseByCholeskySparse, CountsOfConstructedRank) {
  Random random(537);
  for (unsigned trial = 0; trial < 500; ++trial) {
    const RankSample sample = SampleOfKnownRank(4 + random.Below(12), random);
    const SymmetricSparseMatrix A(SparseOf(sample.a));
    const SymmetricSparseMatrix inverse(InverseByCholesky(A, 1e-12));
    ASSERT_EQ(inverse.nsing(), sample.zeros) << "trial " << trial;
    ASSERT_EQ(A.nsing(), sample.zeros) << "trial " << trial;
  }
}

// A state without any element: skipped by the factor, counted by the triangular inverse.
TEST(InverseByCholeskySparse, EmptyRow) {
  SymmetricSparseMatrix A(4);
  A.Put(0, 0, 4.0);
  A.Put(2, 2, 16.0);
  A.Put(3, 3, 1.0);
  const SymmetricSparseMatrix inverse(InverseByCholesky(A, 1e-12));
  EXPECT_EQ(A.nsing(), 0);
  EXPECT_EQ(inverse.nsing(), 1);
  EXPECT_EQ(inverse.used, 3u);
  EXPECT_EQ(inverse(0, 0), 0.25);
  EXPECT_EQ(inverse(2, 2), 0.0625);
}

TEST(InverseByCholeskySparse, OrderZeroIsABadArrayLength) {
  const SymmetricSparseMatrix empty;
  EXPECT_THROW(static_cast<void>(InverseByCholesky(empty, 1e-12)), std::bad_array_new_length);
  EXPECT_EQ(ErrorState(), 0);
}
