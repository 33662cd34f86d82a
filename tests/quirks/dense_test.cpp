// docs/QUIRKS.md, "Dense kinds": each statement as a test.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const double kNaN = std::numeric_limits<double>::quiet_NaN();

RegularMatrix Rows(unsigned rows, unsigned cols, std::initializer_list<double> values) {
  EXPECT_EQ(values.size(), std::size_t{rows} * cols);
  RegularMatrix a(rows, cols);
  a.Assign(values.begin(), rows, cols);
  return a;
}

void ExpectRows(const RegularMatrix& a, unsigned rows, unsigned cols, std::initializer_list<double> values) {
  ASSERT_EQ(a.nrows(), rows);
  ASSERT_EQ(a.ncols(), cols);
  EXPECT_TRUE(SameBits(a.data(), values.begin(), values.size()));
}

TEST(DenseQuirks, ValuesTakeTemporariesOver) {
  const RegularMatrix a = Rows(1, 2, {1, 2});
  RegularMatrix& temporary = -a;
  const double* const storage = temporary.data();
  auto c = temporary;
  static_assert(std::is_same_v<decltype(c), RegularMatrix>);
  EXPECT_EQ(c.data(), storage);
  EXPECT_FALSE(c.dispensable());
}

TEST(DenseQuirks, QuestionsConsumeNothingButMaxMinAndPrintDo) {
  const RegularMatrix a = Rows(1, 2, {1, 2});
  const long before = LiveBlocks();
  EXPECT_EQ((-a).Max(), -1.0);
  EXPECT_EQ((-a).Min(), -2.0);
  EXPECT_EQ(LiveBlocks(), before);
  RegularMatrix& temporary = -a;
  EXPECT_TRUE(temporary.Equals(-1.5, 0.5));
  EXPECT_TRUE(temporary < 0.0);
  EXPECT_EQ(temporary.SumRow(0), -3.0);
  EXPECT_EQ(temporary(0, 1), -2.0);
  EXPECT_EQ(LiveBlocks(), before + 2);  // still there
  EXPECT_EQ(temporary.Max(), -1.0);
  EXPECT_EQ(LiveBlocks(), before);
}

TEST(DenseQuirks, ComparisonsMeanEveryElement) {
  const RegularMatrix mixed = Rows(1, 2, {0, 1});
  EXPECT_FALSE(mixed == 0.0);
  EXPECT_FALSE(mixed != 0.0);
  const RegularMatrix none;
  EXPECT_TRUE(none == 1.0 && none != 1.0 && none < 1.0 && none > 1.0 && none <= 1.0 && none >= 1.0);
}

TEST(DenseQuirks, ImplicitZerosTakeNoPart) {
  DiagonalMatrix d(2);
  d(0, 0) = -1.0;
  d(1, 1) = -2.0;
  EXPECT_EQ(d.Max(), -1.0);
  UpperTriangularMatrix u(2);
  u = 1.0;
  EXPECT_EQ(u.StoredCount(), 3u);
  EXPECT_EQ(static_cast<double>(u(1, 0)), 0.0);
  EXPECT_TRUE(u == 1.0);
}

TEST(DenseQuirks, NaNIsNeverSelected) {
  const RegularMatrix some = Rows(1, 3, {kNaN, 2, 1});
  EXPECT_EQ(some.Max(), 2.0);
  EXPECT_EQ(some.Min(), 1.0);
  const RegularMatrix all = Rows(1, 1, {kNaN});
  EXPECT_EQ(all.Max(), -kInf);
  EXPECT_EQ(all.Min(), kInf);
  EXPECT_FALSE(all.Equals(0.0, kInf));
}

TEST(DenseQuirks, OnlyAssigningZeroResetsTheSingularityCount) {
  RegularMatrix a(2, 2);
  a.set_nsing(3);
  a = 2.0;
  a *= 0.0;
  a(0, 0) = 0.0;
  EXPECT_EQ(a.nsing(), 3);
  a = 0.0;
  EXPECT_EQ(a.nsing(), -1);
}

TEST(DenseQuirks, ScalingByZeroWipesNaNAndDividingMultiplies) {
  RegularMatrix a = Rows(1, 3, {kNaN, -kInf, -1.0});
  a *= 0.0;
  ExpectRows(a, 1, 3, {0.0, 0.0, 0.0});
  RegularMatrix b = Rows(1, 1, {5.0});
  b /= 49.0;
  EXPECT_EQ(b(0), 5.0 * (1.0 / 49.0));
  EXPECT_NE(b(0), 5.0 / 49.0);
  b /= kInf;
  EXPECT_EQ(b(0), 0.0);
}

TEST(DenseQuirks, InsertRowsInTheMiddleMovesTooLittle) {
  RegularMatrix a = Rows(2, 2, {1, 2, 3, 4});
  a.InsertRows(1, 1);
  ExpectRows(a, 3, 2, {1, 2, 0, 0, 3, 0});
  RegularMatrix b = Rows(2, 2, {1, 2, 3, 4});
  b.InsertRows(2, 1);
  ExpectRows(b, 3, 2, {1, 2, 3, 4, 0, 0});
  RegularMatrix c = Rows(2, 2, {1, 2, 3, 4});
  c.InsertCols(1, 1);
  ExpectRows(c, 2, 3, {1, 0, 2, 3, 0, 4});
}

TEST(DenseQuirks, SetColsIsRightForSquareMatricesOnly) {
  RegularMatrix square(2, 2);
  square.SetCols(7.0, 1, 1);
  ExpectRows(square, 2, 2, {0, 7, 0, 7});
  RegularMatrix wide(2, 3);
  wide.SetCols(7.0, 2, 1);  // positions 2, 4, 6; the last one lies behind the array
  ExpectRows(wide, 2, 3, {0, 0, 7, 0, 7, 0});
  RegularMatrix fixed(2, 3);
  fixed.SetCol(2, 7.0);
  ExpectRows(fixed, 2, 3, {0, 0, 7, 0, 0, 7});
}

TEST(DenseQuirks, ACountOfZeroIsMostlyUnchecked) {
  RegularMatrix a(2, 2);
  EXPECT_NO_CODE(a.InsertRows(99, 0));
  EXPECT_NO_CODE(a.RemoveCols(99, 0));
  EXPECT_NO_CODE_WHILE_PENDING(5, a.InsertCols(0, 0));
  EXPECT_CODE(a.SetRows(1.0, 99, 0), 60000);
  SymmetricMatrix s(2);
  EXPECT_NO_CODE(s.SetRows(1.0, 99, 0));
}

TEST(DenseQuirks, NposEndsALineButNotABlock) {
  RegularMatrix a = Rows(2, 2, {1, 2, 3, 4});
  EXPECT_EQ(a.SumRow(1, 0, Matrix::npos), 7.0);
  EXPECT_THROW(static_cast<void>(a(1, Matrix::npos, 0, 1)), std::bad_array_new_length);
  const unsigned i = 0;
  a.ClearRow(1, 0, i - 1);
  ExpectRows(a, 2, 2, {1, 2, 0, 0});
}

TEST(DenseQuirks, PackedRangesStayInTheStoredPart) {
  UpperTriangularMatrix u(4);
  EXPECT_CODE(u.ClearRow(2, 0, 3), 40000);
  EXPECT_NO_CODE(u.ClearRow(2));
  EXPECT_CODE(u(2, 0) = 0.0, 60021);
}

TEST(DenseQuirks, ALineOfLengthZeroHasNoValidRange) {
  RegularMatrix a(3, 0);
  EXPECT_CODE(a.SumRow(0), 40000);
  EXPECT_CODE(a.SumRow(0, 0, 0), 40000);
}

TEST(DenseQuirks, GetLimitedRowReportsWhereTheNonZerosLie) {
  const RegularMatrix a = Rows(2, 4, {9, 0, kNaN, -0.0, 0, 0, 0, 0});
  double out[4] = {};
  unsigned first = 1;
  unsigned last = 3;
  a.GetLimitedRow(0, out, first, last);
  EXPECT_EQ(first, 2u);
  EXPECT_EQ(last, 2u);
  EXPECT_EQ(out[0], 0.0);  // element 1, where the call began
  EXPECT_TRUE(std::isnan(out[1]));
  first = 0;
  last = 3;
  a.GetLimitedRow(1, out, first, last);
  EXPECT_EQ(first, 5u);
  EXPECT_EQ(last, 0u);
}

TEST(DenseQuirks, StorageGrowsExactlyAndShrinksOnlyWhenFreed) {
  RegularMatrix a(2, 3);
  a.InsertRows(2, 1);
  EXPECT_EQ(a.HeapReserved(), 72u);
  a.SetSize(0, 0, false);
  EXPECT_EQ(a.HeapReserved(), 72u);
  EXPECT_CODE_WHILE_PENDING(5, a.FreeMemory(), 5);
  EXPECT_EQ(a.HeapReserved(), 72u);
  a.FreeMemory();
  EXPECT_EQ(a.HeapReserved(), 0u);
}

TEST(DenseQuirks, NumberNonZeroOfASymmetricMatrixDependsOnTheType) {
  SymmetricMatrix s(2);
  s = 1.0;
  EXPECT_EQ(s.NumberNonZero(), 4u);
  const SingleArrayMatrix& base = s;
  EXPECT_EQ(base.NumberNonZero(), 3u);
}

TEST(DenseQuirks, SetRandomDrawsFromTheLastElementToTheFirst) {
  RegularMatrix a(1, 3);
  std::srand(5);
  a.SetRandom(-1.0, 1.0);
  std::srand(5);
  const double step = 2.0 / 2147483647.0;
  for (unsigned k = 3; k-- > 0;) EXPECT_EQ(a(k), -1.0 + std::rand() * step);
}

TEST(DenseQuirks, SwapLeavesTheTemporariesMark) {
  RegularMatrix a(1, 1);
  RegularMatrix& temporary = Dispensable<RegularMatrix>(2u, 2u);
  a.Swap(temporary);
  EXPECT_FALSE(a.dispensable());
  EXPECT_TRUE(temporary.dispensable());
  EXPECT_EQ(a.nrows(), 2u);
  const RegularMatrix owner(temporary);
}

}  // namespace
}  // namespace quorvel::test
