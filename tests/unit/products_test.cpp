// Products, scaling and structured products by worked examples.

#include <gtest/gtest.h>

#include <limits>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/make.h"

namespace {

using namespace quorvel::test;

template <class K>
K Of(unsigned rows, unsigned cols, std::initializer_list<double> stored) {
  K a(rows, cols);
  EXPECT_EQ(a.StoredCount(), stored.size());
  a.Assign(stored.begin(), rows, cols);
  return a;
}

TEST(Products, UpperTimesUpper) {
  const UpperTriangularMatrix u = Of<UpperTriangularMatrix>(2, 2, {1, 2, 3});
  const UpperTriangularMatrix square(u * u);
  EXPECT_EQ(square(0, 0), 1.0);
  EXPECT_EQ(square(0, 1), 8.0);
  EXPECT_EQ(square(1, 0), 0.0);
  EXPECT_EQ(square(1, 1), 9.0);
}

TEST(Products, SymmetricTimesSymmetricIsRegular) {
  const SymmetricMatrix s = Of<SymmetricMatrix>(2, 2, {1, 2, 3});
  static_assert(std::is_same_v<decltype(s * s), RegularMatrix&>);
  const RegularMatrix p(s * s);
  EXPECT_EQ(p.kind(), Matrix::regular);
  EXPECT_EQ(p(0, 0), 5.0);
  EXPECT_EQ(p(0, 1), 8.0);
  EXPECT_EQ(p(1, 0), 8.0);
  EXPECT_EQ(p(1, 1), 13.0);
}

TEST(Products, OneDispensableObjectTwiceDiesOnce) {
  const NoLeak no_leak;
  RegularMatrix& a = Dispensable<RegularMatrix>(Of<RegularMatrix>(2, 2, {1, 2, 3, 4}));
  const RegularMatrix p(a * a);
  EXPECT_EQ(p(1, 0), 15.0);
}

TEST(Products, ScalingADispensableMatrixReturnsIt) {
  RegularMatrix& a = Dispensable<RegularMatrix>(Of<RegularMatrix>(1, 2, {1.5, -2}));
  RegularMatrix& scaled = a * 2.0;
  EXPECT_EQ(&scaled, &a);
  const RegularMatrix r(scaled);
  EXPECT_EQ(r(0, 0), 3.0);
  EXPECT_EQ(r(0, 1), -4.0);
}

TEST(Products, NoTermsGiveZero) {
  const RegularMatrix p(RegularMatrix(2, 0) * RegularMatrix(0, 3));
  EXPECT_EQ(p.nrows(), 2u);
  EXPECT_EQ(p.ncols(), 3u);
  EXPECT_TRUE(p == 0.0);
}

// Infinity beside a structural zero stays out; beside a stored zero it does not.
TEST(Products, StructuralZerosGiveNoTerm) {
  const double infinity = std::numeric_limits<double>::infinity();
  const UpperTriangularMatrix u = Of<UpperTriangularMatrix>(2, 2, {1, 0, 1});
  const RegularMatrix a = Of<RegularMatrix>(2, 1, {infinity, 2});
  const RegularMatrix p(u * a);
  EXPECT_EQ(p(0, 0), infinity);
  EXPECT_EQ(p(1, 0), 2.0);
  const RegularMatrix full = Of<RegularMatrix>(2, 2, {1, 0, 0, 1});
  const RegularMatrix q(full * a);
  EXPECT_EQ(q(0, 0), infinity);
  EXPECT_NE(q(1, 0), q(1, 0));
}

TEST(Products, OneTermProductsGivePlusZero) {
  const DiagonalMatrix d = Of<DiagonalMatrix>(1, 1, {-1});
  const RegularMatrix zero = Of<RegularMatrix>(1, 1, {0});
  const RegularMatrix left(d * zero), right(zero * d);
  EXPECT_TRUE(SameBits(left(0, 0), 0.0));
  EXPECT_TRUE(SameBits(right(0, 0), 0.0));
}

TEST(Products, PlainNumbersScale) {
  const SymmetricMatrix s = Of<SymmetricMatrix>(2, 2, {1, 2, 3});
  const SymmetricMatrix a(2 * s), b(s * 2u), c(s * 2.0f), d(2L * s);
  EXPECT_EQ(a(0, 1), 4.0);
  EXPECT_EQ(b(0, 1), 4.0);
  EXPECT_EQ(c(0, 1), 4.0);
  EXPECT_EQ(d(0, 1), 4.0);
}

// ---------------------------------------------------------------------------------------------------------------------

TEST(Structured, AtaOfNothing) {
  const SymmetricMatrix empty(ATA(RegularMatrix(0, 0)));
  EXPECT_EQ(empty.ndim(), 0u);
  const SymmetricMatrix zero(ATA(RegularMatrix(0, 3)));
  EXPECT_EQ(zero.ndim(), 3u);
  EXPECT_TRUE(zero == 0.0);
  EXPECT_EQ(PWeightedNorm(RegularMatrix(0, 1), SymmetricMatrix(0)), 0.0);
  EXPECT_EQ(PWeightedNorm(RegularMatrix(0, 0), RegularMatrix(0, 0)), 0.0);
}

TEST(Structured, SymmetricPartOfAProduct) {
  const RegularMatrix a = Of<RegularMatrix>(2, 3, {1, 2, 3, 4, 5, 6});
  const RegularMatrix b = Of<RegularMatrix>(3, 2, {1, 0, 2, 1, 0, 3});
  const SymmetricMatrix s(SymmetricOfProduct(a, b));  // the product is [[5, 11], [14, 23]]
  EXPECT_EQ(s(0, 0), 5.0);
  EXPECT_EQ(s(0, 1), 11.0);
  EXPECT_EQ(s(1, 0), 11.0);
  EXPECT_EQ(s(1, 1), 23.0);
}

TEST(Structured, AtaConsumesItsOperandOnce) {
  const NoLeak no_leak;
  const SymmetricMatrix s(ATA(Dispensable<RegularMatrix>(Of<RegularMatrix>(2, 2, {1, 2, 3, 4}))));
  EXPECT_EQ(s(0, 0), 10.0);
  EXPECT_EQ(s(0, 1), 14.0);
  EXPECT_EQ(s(1, 1), 20.0);
}

TEST(Structured, UtuIsNotUut) {
  const UpperTriangularMatrix u = Of<UpperTriangularMatrix>(2, 2, {1, 2, 3});
  const SymmetricMatrix s(UTU(u));
  EXPECT_EQ(s(0, 0), 1.0);
  EXPECT_EQ(s(0, 1), 2.0);
  EXPECT_EQ(s(1, 1), 13.0);
  const LowerTriangularMatrix l = Of<LowerTriangularMatrix>(2, 2, {1, 2, 3});  // [[1, 0], [2, 3]]
  const SymmetricMatrix t(LTL(l));
  EXPECT_EQ(t(0, 0), 5.0);
  EXPECT_EQ(t(0, 1), 6.0);
  EXPECT_EQ(t(1, 1), 9.0);
}

TEST(Structured, CovariancePropagation) {
  const RegularMatrix f = Of<RegularMatrix>(2, 2, {1, 2, 0, 1});
  const SymmetricMatrix p = Of<SymmetricMatrix>(2, 2, {4, 1, 9});
  const SymmetricMatrix p2(AQAT(f, p));
  EXPECT_EQ(p2(0, 0), 44.0);
  EXPECT_EQ(p2(0, 1), 19.0);
  EXPECT_EQ(p2(1, 1), 9.0);
  const SymmetricMatrix n(ATPA(f, p));
  EXPECT_EQ(n(0, 0), 4.0);
  EXPECT_EQ(n(0, 1), 9.0);
  EXPECT_EQ(n(1, 1), 29.0);
  EXPECT_EQ(PWeightedNorm(Of<RegularMatrix>(2, 1, {1, 2}), p), 44.0);
}

// Blocks of two: what lies outside them is not stored.
TEST(Structured, DiagonalBlocks) {
  Random random(1);
  RegularMatrix a(4, 4);
  SymmetricMatrix p(4);
  FillMatrix(a, Pattern::kInteger, random);
  FillMatrix(p, Pattern::kInteger, random);
  const SymmetricMatrix whole(ATPA(a, p));
  const SymmetricSparseMatrix blocks(ATPA(a, p, 2));
  EXPECT_EQ(blocks.nrows(), 4u);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) {
      if (i / 2 == j / 2) {
        EXPECT_EQ(blocks(i, j), whole(i, j));
      } else {
        EXPECT_EQ(blocks.Cell_Loc(i, j), nullptr);
      }
    }
  }
}

// A zero that comes out is not stored, and the lists of both directions are in order.
TEST(Products, SparseTimesSparse) {
  RegularSparseMatrix a(2, 3), b(3, 2);
  a.Put(0, 0, 1.0);
  a.Put(0, 2, 2.0);
  a.Put(1, 1, 3.0);
  b.Put(0, 0, 4.0);
  b.Put(2, 0, -2.0);
  b.Put(2, 1, 5.0);
  b.Put(1, 0, 6.0);
  const RegularSparseMatrix c(a * b);
  EXPECT_EQ(c.used, 2u);
  EXPECT_EQ(c.Cell_Loc(0, 0), nullptr);  // 4 - 4
  EXPECT_EQ(c(0, 1), 10.0);
  EXPECT_EQ(c(1, 0), 18.0);
}

// Old contents of a sparse result do not shine through.
TEST(Products, SparseResultIsEmptiedFirst) {
  RegularSparseMatrix a(2, 2), result(2, 2);
  a.Put(0, 1, 2.0);
  result.Put(0, 0, 7.0);
  result.Put(1, 1, 7.0);
  Mult(result, a, a);
  EXPECT_EQ(result.used, 0u);
  DiagonalMatrix d(2);
  d.data()[0] = 3.0;
  Mult(result, d, a);
  EXPECT_EQ(result.used, 1u);
  EXPECT_EQ(result(0, 1), 6.0);
}

// Scaling by zero empties: the operator's copy has the operand's size, a given result keeps its own.
TEST(Products, SparseScaledByZero) {
  RegularSparseMatrix a(3, 4), result(5, 5);
  a.Put(1, 2, 2.0);
  const RegularSparseMatrix zero(a * 0.0);
  EXPECT_EQ(zero.nrows(), 3u);
  EXPECT_EQ(zero.ncols(), 4u);
  EXPECT_EQ(zero.used, 0u);
  Mult(result, a, 0.0);
  EXPECT_EQ(result.nrows(), 5u);
  EXPECT_EQ(result.used, 0u);
}

// The outer sum of the weighted norm runs down: (1 + 1e16) - 1e16 in this order, and not 1 at the end.
TEST(Structured, WeightedNormSumsDown) {
  const DiagonalMatrix p = Of<DiagonalMatrix>(3, 3, {1, 1e16, -1e16});
  const RegularMatrix ones = Of<RegularMatrix>(3, 1, {1, 1, 1});
  EXPECT_EQ(PWeightedNorm(ones, p), 1.0);  // -1e16 + 1e16 + 1
  const DiagonalMatrix q = Of<DiagonalMatrix>(3, 3, {-1e16, 1e16, 1});
  EXPECT_EQ(PWeightedNorm(ones, q), 0.0);  // 1 + 1e16 - 1e16
}

// ---------------------------------------------------------------------------------------------------------------------
// What an operation allocates: the object and its array, nothing else at filter sizes.

template <class Call>
long AllocationsOf(Call call) {
  const long before = Allocations();
  const Matrix& result = call();
  const long after = Allocations();
  result.DestroyIfDispensable();
  return after - before;
}

TEST(ProductAllocations, ObjectAndArray) {
  for (const unsigned n : {3u, 9u, 24u, 60u}) {
    const RegularMatrix a(n, n);
    const SymmetricMatrix s(n);
    const UpperTriangularMatrix u(n);
    const DiagonalMatrix d(n);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return a * a; }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return a * s; }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return u * u; }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return ATA(a); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return AAT(a); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return ATB(a, a); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return ABT(a, a); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return ATPA(a, s); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return ATPA(a, d); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return AQAT(a, s); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return SQS(s, s); }), 2);
    EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return 2.0 * s; }), 2);
  }
  const RegularMatrix a(9, 9);
  RegularMatrix c(9, 9);
  EXPECT_EQ(AllocationsOf([&]() -> Matrix& { return Mult(c, a, a); }), 0);
  const long before = Allocations();
  EXPECT_EQ(PWeightedNorm(a, a), 0.0);
  EXPECT_EQ(Allocations(), before);
}

}  // namespace
