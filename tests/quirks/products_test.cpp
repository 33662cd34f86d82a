// docs/QUIRKS.md, "Products": each statement as a test.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <limits>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();

template <class K>
K Stored(unsigned rows, unsigned cols, std::initializer_list<double> values) {
  K a(rows, cols);
  EXPECT_EQ(a.StoredCount(), values.size());
  a.Assign(values.begin(), rows, cols);
  return a;
}

TEST(ProductQuirks, FactorsGiveNoStorage) {
  const RegularMatrix b = Stored<RegularMatrix>(2, 2, {1, 2, 3, 4});
  RegularMatrix& temporary = DispensableCopy(b);
  const long before = Allocations();
  const RegularMatrix c(temporary * b);
  EXPECT_EQ(Allocations() - before, 2);
  RegularMatrix result(2, 2);
  const double* const storage = result.data();
  const long between = Allocations();
  Mult(result, b, b);
  EXPECT_EQ(Allocations(), between);
  EXPECT_EQ(result.data(), storage);
  Mult(result, result, b);
  EXPECT_EQ(Allocations(), between + 1);
}

TEST(ProductQuirks, StructuralZerosGiveNoTerm) {
  const UpperTriangularMatrix u = Stored<UpperTriangularMatrix>(2, 2, {1, 1, 1});
  const RegularMatrix x = Stored<RegularMatrix>(2, 1, {kInf, 1});
  const RegularMatrix packed(u * x), full(RegularMatrix(u) * x);
  EXPECT_EQ(packed(1, 0), 1.0);
  EXPECT_TRUE(std::isnan(full(1, 0)));
  RegularSparseMatrix s(1, 2);
  s.Put(0, 1, 3.0);
  const RegularMatrix sparse(s * x);
  EXPECT_EQ(sparse(0, 0), 3.0);
  s.Put(0, 0, 1.0);
  s.Cell_Loc(0, 0)->value = 0.0;
  const RegularMatrix stored(s * x);
  EXPECT_TRUE(std::isnan(stored(0, 0)));
}

TEST(ProductQuirks, ZeroProductsArePlusZero) {
  const DiagonalMatrix d = Stored<DiagonalMatrix>(1, 1, {-1});
  const RegularMatrix zero = Stored<RegularMatrix>(1, 1, {0});
  const RegularMatrix product(d * zero), scaled(-1.0 * zero);
  EXPECT_FALSE(std::signbit(product.data()[0]));
  EXPECT_TRUE(std::signbit(scaled.data()[0]));
}

TEST(ProductQuirks, SymmetricProductsAreRegular) {
  const RegularMatrix a(2, 2);
  const SymmetricMatrix p(2);
  static_assert(std::is_same_v<decltype(a * p * a), RegularMatrix&>);
  static_assert(std::is_same_v<decltype(AQAT(a, p)), SymmetricMatrix&>);
}

TEST(ProductQuirks, UtuIsNotUut) {
  const UpperTriangularMatrix u = Stored<UpperTriangularMatrix>(2, 2, {1, 2, 3});
  const SymmetricMatrix s(UTU(u));
  EXPECT_EQ(s(1, 1), 13.0);  // U U' has 9 here
  RegularSparseMatrix full(2, 2);
  full.Put(0, 0, 1.0);
  full.Put(0, 1, 2.0);
  full.Put(1, 0, 100.0);
  full.Put(1, 1, 3.0);
  const SymmetricSparseMatrix t(UTU(full));
  EXPECT_EQ(t(0, 0), 1.0);
  EXPECT_EQ(t(1, 1), 13.0);
}

TEST(ProductQuirks, TheLowerTriangleIsDropped) {
  const RegularMatrix a = Stored<RegularMatrix>(2, 2, {1, 2, 3, 4}), one = Stored<RegularMatrix>(2, 2, {1, 0, 0, 1});
  const SymmetricMatrix s(SymmetricOfProduct(a, one)), t(SymmetricOfABT(a, one));
  EXPECT_EQ(s(1, 0), 2.0);
  EXPECT_EQ(t(1, 0), 2.0);
}

TEST(ProductQuirks, TheNormIsSquaredAndOfTheFirstColumn) {
  const RegularMatrix v = Stored<RegularMatrix>(2, 2, {3, 100, 4, 100});
  EXPECT_EQ(PWeightedNorm(v, Stored<DiagonalMatrix>(2, 2, {1, 1})), 25.0);
}

TEST(ProductQuirks, Codes) {
  const RegularMatrix a(2, 3);
  const SymmetricMatrix p(4);
  EXPECT_CODE(ATPA(a, p), 40000);
  EXPECT_CODE(AQAT(a, p), 40000);
  EXPECT_CODE(SQS(p, SymmetricMatrix(3)), 40000);
  EXPECT_CODE(PWeightedNorm(a, p), 40000);
  EXPECT_CODE(a * p, 40320);
  EXPECT_CODE(RegularSparseMatrix(2, 3) * RegularSparseMatrix(2, 3), 40294);
}

TEST(ProductQuirks, ABlockSizeThatDoesNotFit) {
  const RegularMatrix a(4, 4);
  const SymmetricMatrix p(4);
  int value = -1;
  try {
    static_cast<void>(ATPA(a, p, 3));
  } catch (const MatrixException& e) {
    value = e.code();
  }
  EXPECT_EQ(value, 0);
  EXPECT_EQ(ErrorState(), 0);
  const SymmetricSparseMatrix whole(ATPA(a, p, 0)), none(ATPA(RegularMatrix(4, 0), p, 0));
  EXPECT_EQ(whole.nrows(), 4u);
  EXPECT_EQ(none.nrows(), 0u);
}

// Row 1 of A Q is (1, 0), beside infinity in row 2 of A: 1 * 1 + 0 * inf.
TEST(ProductQuirks, BlockFormsDropZerosOnTheWay) {
  const RegularMatrix a = Stored<RegularMatrix>(2, 2, {1, 0, 1, kInf});
  const DiagonalMatrix q = Stored<DiagonalMatrix>(2, 2, {1, 1});
  const SymmetricMatrix dense(AQAT(a, q));
  const SymmetricSparseMatrix blocks(AQAT(a, q, 0));
  EXPECT_TRUE(std::isnan(dense(0, 1)));
  EXPECT_EQ(blocks(0, 1), 1.0);
}

TEST(ProductQuirks, SparseScaledByZero) {
  RegularSparseMatrix a(2, 3), c(1, 1);
  a.Put(0, 0, 1e-300);
  const RegularSparseMatrix zero(a * 0.0);
  EXPECT_EQ(zero.ncols(), 3u);
  EXPECT_EQ(zero.used, 0u);
  Mult(c, a, 0.0);
  EXPECT_EQ(c.ncols(), 1u);
  const RegularSparseMatrix tiny(a * 1e-300);
  EXPECT_EQ(tiny.used, 1u);
  EXPECT_EQ(tiny(0, 0), 0.0);
}

}  // namespace
}  // namespace quorvel::test
