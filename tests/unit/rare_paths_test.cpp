// Paths that ordinary programs seldom take: an operation that finds nothing to do, an operand of unlike sizes, an object
// given as its own source.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <optional>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/random.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

template <class K>
void MoveIntoItself() {
  K a(2, 2);
  a(1, 1) = 3.0;
  a.set_nsing(1);
  K& same = a;
  a = std::move(same);
  EXPECT_EQ(a.nrows(), 2u) << a.ClassName();
  EXPECT_EQ(std::as_const(a)(1, 1), 3.0) << a.ClassName();
  EXPECT_EQ(a.nsing(), 1) << a.ClassName();
  EXPECT_TRUE(a.ok()) << a.ClassName();
}

TEST(RarePaths, AMatrixMovedIntoItselfStays) {
  MoveIntoItself<RegularMatrix>();
  MoveIntoItself<SymmetricMatrix>();
  MoveIntoItself<UpperTriangularMatrix>();
  MoveIntoItself<LowerTriangularMatrix>();
  MoveIntoItself<DiagonalMatrix>();
  MoveIntoItself<RegularSparseMatrix>();
  MoveIntoItself<SymmetricSparseMatrix>();
}

TEST(RarePaths, NothingIsFreed) {
  RegularMatrix a;
  a.FreeMemory();
  EXPECT_EQ(a.capacity(), 0u);
  EXPECT_EQ(a.data(), nullptr);
}

TEST(RarePaths, NoRowsAreSet) {
  RegularMatrix a(2, 2);
  a.SetRows(5.0, 1, 0);
  a.SetRows(5.0, 2, 0);
  EXPECT_EQ(a.NumberNonZero(), 0u);
}

TEST(RarePaths, NonZerosOfASymmetricMatrixCountBothTriangles) {
  SymmetricMatrix a(3);
  a(0, 0) = 1.0;
  a(0, 2) = 2.0;
  a(1, 2) = std::nan("");
  EXPECT_EQ(a.NumberNonZero(), 5u);
}

TEST(RarePaths, ColumnsAreReadLikeRows) {
  RegularMatrix a(3, 2);
  a(1, 1) = 4.0;
  double out[3] = {9.0, 9.0, 9.0};
  unsigned first = 0, last = 2;
  a.GetLimitedCol(1, out, first, last);
  EXPECT_EQ(std::vector<double>(out, out + 3), (std::vector<double>{0.0, 4.0, 0.0}));
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(last, 1u);
}

TEST(RarePaths, ADiagonalMatrixIntoOneOfItsOrder) {
  DiagonalMatrix d(2);
  d(0, 0) = 2.0;
  d(1, 1) = 3.0;
  SymmetricMatrix s(2);
  UpperTriangularMatrix u(2);
  LowerTriangularMatrix l(2);
  s(0, 1) = u(0, 1) = l(1, 0) = 7.0;
  s = d;
  u = d;
  l = d;
  for (const SquareMatrix* a : {static_cast<const SquareMatrix*>(&s), static_cast<const SquareMatrix*>(&u),
                                static_cast<const SquareMatrix*>(&l)}) {
    EXPECT_EQ((*a)(0, 0), 2.0) << a->ClassName();
    EXPECT_EQ((*a)(0, 1), 0.0) << a->ClassName();
    EXPECT_EQ((*a)(1, 0), 0.0) << a->ClassName();
    EXPECT_EQ((*a)(1, 1), 3.0) << a->ClassName();
  }
}

TEST(RarePaths, InverseOfThreeRowsOnly) {
  RegularMatrix wide(3, 4), wider(2, 5);
  const std::optional<int> code = CodeOf([&] { static_cast<void>(inv(wider)); });
  ASSERT_TRUE(code.has_value());
  EXPECT_CODE(static_cast<void>(inv(wide)), *code);
}

TEST(RarePaths, TimeUpdateWithATransitionOfUnlikeSizes) {
  UpperTriangularMatrix U(3);
  DiagonalMatrix D(3);
  SymmetricMatrix Q(3);
  EXPECT_CODE(UDTimeUpdate(U, D, RegularMatrix(2, 3), Q), 40000);
  EXPECT_CODE(UDTimeUpdate(U, D, RegularMatrix(3, 2), Q), 40000);
}

TEST(RarePaths, RegressionWithoutMeasurements) {
  RegularMatrix A(0, 2), y(0, 0), x;
  EXPECT_EQ(CodeOf([&] { static_cast<void>(L1Regression(A, y, x)); }), std::nullopt);
}

TEST(RarePaths, ABlockOfItselfThatIsTooLong) {
  RegularMatrix a(3, 3);
  EXPECT_CODE(static_cast<void>(GetSubMat(a, a, 0, 1, 0, 3)), 40000);
  EXPECT_CODE(static_cast<void>(GetSubMat(a, a, 0, 3, 0, 1)), 40000);
}

// Uncommon sizes of a congruence: long, with a diagonal weight, and more rows than four strips.
TEST(RarePaths, ALongAndWideCongruence) {
  Random random(7);
  const unsigned n = 97, m = 4097;
  RegularMatrix x(n, m);
  DiagonalMatrix q(m);
  FillMatrix(x, Pattern::kInteger, random);
  FillMatrix(q, Pattern::kInteger, random);
  const SymmetricMatrix s(AQAT(x, q));
  const std::pair<unsigned, unsigned> places[] = {{0, 0}, {3, 50}, {24, 96}, {95, 96}, {96, 96}};
  for (const auto& [i, j] : places) {
    double sum = 0.0;  // whole numbers: exact in any order
    for (unsigned k = 0; k < m; ++k) sum += x(i, k) * q(k, k) * x(j, k);
    EXPECT_EQ(s(i, j), sum) << i << ", " << j;
  }
}

// Found by fuzzing, 2026-11-21: no terms, but more strips than one. The second one looked behind a missing array.
TEST(RarePaths, CongruencesOfNothing20261121) {
  static constexpr unsigned n = 30;
  const RegularMatrix none(0, n), thin(n, 0);
  const auto expect_zeros = [](const SymmetricMatrix s) {
    ASSERT_EQ(s.ndim(), n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i; j < n; ++j) EXPECT_EQ(s(i, j), 0.0) << i << ", " << j;
    }
  };
  expect_zeros(ATPA(none, SymmetricSparseMatrix(0u)));
  expect_zeros(ATPA(none, SymmetricMatrix()));
  expect_zeros(ATPA(none, DiagonalMatrix()));
  expect_zeros(AQAT(thin, SymmetricSparseMatrix(0u)));
  expect_zeros(AQAT(thin, SymmetricMatrix()));
  expect_zeros(AQAT(thin, DiagonalMatrix()));
  expect_zeros(ATA(none));
  expect_zeros(AAT(thin));
  for (const unsigned m : {1u, 20u, 30u}) {
    EXPECT_EQ(SymmetricMatrix(AQAT(RegularMatrix(0, m), DiagonalMatrix(m))).ndim(), 0u);
    EXPECT_EQ(SymmetricMatrix(AQAT(RegularMatrix(0, m), SymmetricMatrix(m))).ndim(), 0u);
    EXPECT_EQ(SymmetricMatrix(ATPA(RegularMatrix(m, 0), DiagonalMatrix(m))).ndim(), 0u);
  }
}

// Found by fuzzing, 2026-11-21: a column without terms, of several registers. Missing arrays must not be stepped along.
TEST(RarePaths, ProductsOfNothing20261121) {
  const auto expect_zeros = [](const RegularMatrix c, unsigned rows, unsigned cols) {
    ASSERT_EQ(c.nrows(), rows);
    ASSERT_EQ(c.ncols(), cols);
    for (unsigned i = 0; i < rows; ++i) {
      for (unsigned j = 0; j < cols; ++j) EXPECT_EQ(c(i, j), 0.0) << i << ", " << j << " of " << rows << " x " << cols;
    }
  };
  const unsigned sizes[] = {0, 1, 2, 3, 4, 5, 9, 24, 25, 30, 70};
  for (const unsigned n : sizes) {
    for (const unsigned m : sizes) {
      const RegularMatrix high(n, 0), other(m, 0), wide(0, m), flat(0, n);
      expect_zeros(high * wide, n, m);
      expect_zeros(ATB(flat, wide), n, m);
      expect_zeros(ABT(high, other), n, m);
      expect_zeros(transpose(high), 0, n);
      expect_zeros(transpose(flat), n, 0);
      expect_zeros(high + high, n, 0);
      expect_zeros(RegularMatrix(flat * RegularMatrix(n, m)), 0, m);
      expect_zeros(RegularMatrix(n, m) * other, n, 0);
      expect_zeros(ATB(RegularMatrix(n, m), high), m, 0);
    }
    const RegularMatrix high(n, 0), flat(0, n);
    SymmetricMatrix s(n);
    UpperTriangularMatrix u(n);
    LowerTriangularMatrix l(n);
    for (unsigned i = 0; i < n; ++i) s(i, i) = u(i, i) = l(i, i) = 2.0;
    expect_zeros(s * high, n, 0);
    expect_zeros(u * high, n, 0);
    expect_zeros(l * high, n, 0);
    expect_zeros(flat * s, 0, n);
    expect_zeros(flat * u, 0, n);
    expect_zeros(flat * l, 0, n);
    expect_zeros(ABT(s, flat), n, 0);
    RegularMatrix sides(n, 0);
    expect_zeros(u > sides, n, 0);
    expect_zeros(l > sides, n, 0);
    expect_zeros(s > sides, n, 0);
    EXPECT_EQ(SymmetricMatrix(AQAT(flat, s)).ndim(), 0u);
    EXPECT_EQ(SymmetricMatrix(ATPA(high, s)).ndim(), 0u);
  }
}

TEST(RarePaths, UdFilterWithoutNoise) {
  for (const unsigned n : {1u, 5u, 24u, 30u, 70u}) {
    SymmetricMatrix p(n);
    RegularMatrix phi(n, n);
    for (unsigned i = 0; i < n; ++i) p(i, i) = phi(i, i) = 1.0 + i;
    UpperTriangularMatrix u;
    DiagonalMatrix d;
    UDFactor(u, d, p);
    UDTimeUpdate(u, d, phi, RegularMatrix(n, 0), DiagonalMatrix(0u));
    for (unsigned i = 0; i < n; ++i) {  // a diagonal covariance stays one
      EXPECT_EQ(d(i, i), (1.0 + i) * (1.0 + i) * (1.0 + i)) << i << " of " << n;
      for (unsigned j = i + 1; j < n; ++j) EXPECT_EQ(u(i, j), 0.0) << i << ", " << j << " of " << n;
    }
  }
}

// More rows than the update of a symmetric matrix takes at once.
TEST(RarePaths, ARankOneUpdateOfALargeMatrix) {
  const unsigned n = 300;
  SymmetricMatrix p(n);
  std::vector<double> x(n);
  for (unsigned i = 0; i < n; ++i) {
    x[i] = static_cast<double>(i % 11) - 4.0;
    for (unsigned j = i; j < n; ++j) p(i, j) = static_cast<double>(i + 2 * j);
  }
  RankOneUpdate(p, x.data(), 2.0);
  unsigned wrong = 0;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) wrong += p(i, j) == static_cast<double>(i + 2 * j) + 2.0 * x[i] * x[j] ? 0 : 1;
  }
  EXPECT_EQ(wrong, 0u);
}

TEST(RarePaths, ExtremesOfStoredElements) {
  const RegularSparseMatrix a = SparseOf<RegularSparseMatrix>(2, 3, {{0, 0, 2.0}, {0, 2, 5.0}, {1, 0, 1.0}, {1, 1, 3.0}});
  EXPECT_EQ(a.Max(), 5.0);
  EXPECT_EQ(a.Min(), 1.0);
}

TEST(RarePaths, RandomZerosAndRandomNothing) {
  RegularSparseMatrix a(2, 3), flat(0, 3), narrow(3, 0);
  a.SetRandom(0.0, 0.0, 4);
  EXPECT_EQ(a.used, 0u);
  a.SetRandom(0.0, 1.0, 4);
  EXPECT_EQ(a.used, 4u);
  EXPECT_SOUND(a);
  flat.SetRandom(1.0, 2.0, 4);
  narrow.SetRandom(1.0, 2.0, 4);
  EXPECT_EQ(flat.used, 0u);
  EXPECT_EQ(narrow.used, 0u);
}

// A stored zero, which only the low level leaves, counts as none.
TEST(RarePaths, StoredZeros) {
  RegularSparseMatrix a(2, 2);
  a.SparseMatrixInsert(0, 1, 0.0);
  a.SparseMatrixInsert(1, 0, 2.0);
  SymmetricSparseMatrix above(4u), below(4u);
  CopySubMat(above, 0, 2, a);
  EXPECT_EQ(CellsOf(above), (std::vector<Cell>{{1, 2, 2.0}}));
  CopySubMat(below, 2, 0, a);
  EXPECT_EQ(CellsOf(below), (std::vector<Cell>{{0, 3, 2.0}}));
  SymmetricSparseMatrix s(2u);
  s.SparseMatrixInsert(0, 1, 0.0);
  s.SparseMatrixInsert(1, 1, 3.0);
  const SymmetricMatrix dense(s);
  EXPECT_EQ(dense(0, 1), 0.0);
  EXPECT_EQ(dense(1, 1), 3.0);
}

// The square root of an infinite pivot has the reciprocal 0, so the element is left out.
TEST(RarePaths, AnInfinitePivotOfASparseFactor) {
  SymmetricSparseMatrix a = SparseOf<SymmetricSparseMatrix>(2, 2, {{0, 0, kInfinity}, {1, 1, 4.0}});
  const RegularSparseMatrix factor(CholeskyFactor(a, 1e-12));
  EXPECT_EQ(factor(1, 1), 2.0);
  EXPECT_EQ(factor(0, 1), 0.0);
  EXPECT_EQ(factor(1, 0), 0.0);
}

// 1/infinity is 0, but infinity times that is NaN, in the sparse triangle as in the dense one. The line of an unusable
// pivot holds nothing to multiply.
TEST(RarePaths, AnInfinitePivotBesideAnInfiniteElement) {
  const RegularSparseMatrix lower = SparseOf<RegularSparseMatrix>(
      4, 4,
      {{0, 0, 1.0}, {1, 0, kInfinity}, {1, 1, kInfinity}, {2, 0, 2.0}, {2, 1, 3.0}, {2, 2, 4.0}, {3, 0, kInfinity}});
  const RegularSparseMatrix x(inv_lt(lower)), y(inv_ut(transpose(lower)));
  const LowerTriangularMatrix z(inv(tril(RegularMatrix(lower))));
  EXPECT_EQ(x.nsing(), 1);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j <= i; ++j) {
      const bool spoilt = j == 0 && (i == 1 || i == 2);
      EXPECT_EQ(std::isnan(x(i, j)), spoilt) << i << ' ' << j;
      EXPECT_EQ(std::isnan(y(j, i)), spoilt) << i << ' ' << j;
      EXPECT_TRUE(i == 3 || std::isnan(z(i, j)) == spoilt) << i << ' ' << j;
    }
  }
  EXPECT_EQ(x(0, 0), 1.0);
  EXPECT_EQ(x(2, 2), 0.25);
  EXPECT_EQ(x.used, 4u);
}

// A symmetric sparse matrix that was made with unlike sizes: what has no mirror image is taken once or refused.
TEST(RarePaths, ASymmetricSparseMatrixOfUnlikeSizes) {
  SymmetricSparseMatrix s(2u, 3u);
  s.Put(0, 2, 5.0);
  s.Put(0, 1, 3.0);
  SymmetricMatrix square(2);
  EXPECT_CODE(square = s, 40000);
  RegularMatrix sum(2, 3);
  sum += s;
  EXPECT_EQ(sum(0, 2), 5.0);
  EXPECT_EQ(sum(0, 1), 3.0);
  EXPECT_EQ(sum(1, 0), 3.0);
  SymmetricSparseMatrix tall(3u, 2u);
  tall.SparseMatrixInsert(nullptr, 2, 0, 5.0);
  RegularMatrix of_tall(3, 2);
  of_tall += tall;
  EXPECT_EQ(of_tall(2, 0), 5.0);
  of_tall -= tall;
  EXPECT_EQ(of_tall.NumberNonZero(), 0u);
  RegularSparseMatrix copy;
  EXPECT_CODE(copy.Copy(s, false), 62060);
  EXPECT_SOUND(copy);
}

TEST(RarePaths, WeightedNormsOfSparseVectors) {
  const RegularSparseMatrix x = SparseOf<RegularSparseMatrix>(3, 1, {{0, 0, 2.0}, {2, 0, -1.0}});
  SymmetricMatrix p(3);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) p(i, j) = 1.0 + i + 3.0 * j;
  }
  // 4 p00 - 4 p02 + p22
  EXPECT_EQ(PWeightedNorm(x, p), 4.0 * 1.0 - 4.0 * 7.0 + 9.0);
  const SymmetricSparseMatrix sparse(p);
  EXPECT_EQ(PWeightedNorm(x, sparse), 4.0 * 1.0 - 4.0 * 7.0 + 9.0);
  EXPECT_CODE(static_cast<void>(PWeightedNorm(x, SymmetricMatrix(2))), 40000);
  EXPECT_CODE(static_cast<void>(PWeightedNorm(x, SymmetricSparseMatrix(2u))), 40000);
  EXPECT_CODE(static_cast<void>(PWeightedNorm(RegularSparseMatrix(3, 0), p)), 40000);
  EXPECT_EQ(PWeightedNorm(RegularSparseMatrix(0, 0), SymmetricMatrix()), 0.0);
}

// More rows than the strips of the triangularisation take: columns one by one.
TEST(RarePaths, ALongColumnIsTriangularised) {
  const unsigned m = (1u << 20) + 1;
  RegularMatrix a(m, 2);
  for (unsigned i = 0; i < m; ++i) a.data()[2 * std::size_t{i}] = 1.0;
  a.data()[1] = 3.0;
  a.data()[2 * std::size_t{m} - 1] = -4.0;
  const RegularMatrix& r = HouseholderTransformation(a, true);
  ASSERT_EQ(r.nrows(), 2u);
  ASSERT_EQ(r.ncols(), 2u);
  // R'R = A'A = {m, -1; -1, 25}, with the roundings of a million terms
  EXPECT_NEAR(r(0, 0), std::sqrt(static_cast<double>(m)), 1e-9);
  EXPECT_NEAR(r(0, 0) * r(0, 1), -1.0, 1e-8);
  EXPECT_NEAR(r(0, 1) * r(0, 1) + r(1, 1) * r(1, 1), 25.0, 1e-8);
  EXPECT_EQ(r(1, 0), 0.0);
}

TEST(RarePaths, ReversedColumnsOfABlock) {
  RegularMatrix a(3, 3), out;
  EXPECT_THROW(static_cast<void>(GetSubMat(out, a, 0, 1, 2, 0)), std::bad_array_new_length);
  EXPECT_THROW(static_cast<void>(GetSubMat(out, a, 2, 0, 0, 1)), std::bad_array_new_length);
}

// The code of a result that refuses to be resized passes, and the result dies.
TEST(RarePaths, ASumIntoADispensableSparseResultOfAnotherSize) {
  const RegularSparseMatrix a(3, 3), b(3, 3);
  EXPECT_CODE(static_cast<void>(Plus(Dispensable<RegularSparseMatrix>(2u, 2u), a, b)), 40000);
}

// A solution that overflows is not refined into NaN; the other unknowns are right.
TEST(RarePaths, ASolutionThatOverflows) {
  RegularMatrix a(2, 2), b(2, 1);
  a(0, 0) = 1e-150;
  a(1, 1) = 2.0;
  b(0) = 1e200;
  b(1) = 3.0;
  const RegularMatrix x(a > b);
  EXPECT_EQ(x(0), kInfinity);
  EXPECT_EQ(x(1), 1.5);
}

}  // namespace
}  // namespace quorvel::test
