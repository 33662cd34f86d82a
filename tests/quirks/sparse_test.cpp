// The behaviours of the sparse kinds that docs/QUIRKS.md lists, in its order.
#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

TEST(SparseQuirks, HeapFiguresAreThoseOf32Bits) {
  RS a(3, 5);
  a.Put(0, 0, 1.0);
  EXPECT_EQ(a.HeapReserved(), 23u * 24u + 8u * 4u);
}

TEST(SparseQuirks, RecordsCanBeLost) {
  RS a(4, 4);
  a.SetGrowBy(3);
  for (unsigned round = 0; round < 2; ++round) {
    for (unsigned j = 0; j < 3; ++j) a.Put(0, j, 1.0);
    for (unsigned j = 0; j < 3; ++j) a.Put(0, j, 0.0);
  }
  EXPECT_EQ(a.used, 0u);
  EXPECT_GT(a.HeapReserved(), 4u * 24u + 32u);  // more than the one block that three elements need
}

TEST(SparseQuirks, OneRecordOfABlockIsALink) {
  RS a(4, 4);
  EXPECT_TRUE(a.SetGrowBy(9));
  for (unsigned k = 0; k < 9; ++k) a.Put(k / 4, k % 4, 1.0);
  EXPECT_EQ(a.HeapReserved(), 10u * 24u + 32u);
  a.Put(3, 3, 1.0);
  EXPECT_EQ(a.HeapReserved(), 20u * 24u + 32u);
  a.Clear();
  EXPECT_FALSE(a.SetGrowBy(5));
}

TEST(SparseQuirks, SetSizeKeepsTheElements) {
  RS a(2, 2);
  a.Put(1, 1, 3.0);
  a.SetSize(4, 4, false);
  EXPECT_EQ(std::as_const(a)(1, 1), 3.0);
  a.SetSize(4, 0, true);
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseQuirks, ATemporaryCannotBeResized) {
  EXPECT_CODE(Dispensable<RS>(2u, 2u).SetSize(3, 3, true), 40000);
  EXPECT_CODE(Dispensable<RS>(2u, 2u).SetSize(1, 1, true), 60000);
  const RS larger(3, 3);
  EXPECT_CODE(Dispensable<RS>(2u, 2u) = larger, 40000);
}

TEST(SparseQuirks, TheInPlaceQuotientIsUpsideDown) {
  RS a(1, 1);
  a(0, 0) = 8.0;
  a(0, 0) /= 2.0;
  EXPECT_EQ(std::as_const(a)(0, 0), 0.25);
  a(0, 0) = 8.0;
  a(0, 0) = a(0, 0) / 2.0;  // instead
  EXPECT_EQ(std::as_const(a)(0, 0), 4.0);
  EXPECT_CODE(a(0, 0) /= 0.0, 82160);
}

TEST(SparseQuirks, ZeroIsRemovedHereAndKeptThere) {
  RS a(1, 2);
  a = 2.0;
  a(0, 0) -= 2.0;
  EXPECT_EQ(a.used, 1u);
  a.MultRow(0, 0.0);
  EXPECT_EQ(a.used, 1u);
  EXPECT_EQ(RS(a).used, 1u);
  a *= 0.0;
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseQuirks, ClearRowStopsAtTheNumberOfRows) {
  RS a(2, 4);
  a = 1.0;
  a.ClearRow(0);
  EXPECT_EQ(a.SumRow(0), 2.0);
  EXPECT_CODE(a.ClearRow(0, 2), 32020);
}

TEST(SparseQuirks, ClearRowOfASymmetricMatrixClearsHalfALine) {
  SS a(3);
  a = 1.0;
  a.ClearRow(1);
  EXPECT_EQ(a.SumRow(1), 1.0);
  a.ClearCol(1);  // the other half
  EXPECT_TRUE(a.IsRowEmpty(1));
}

TEST(SparseQuirks, ColumnsBeyondTheRowCountCannotBeExtracted) {
  RS a(2, 4), out(2, 1);
  EXPECT_CODE(a.GetEntireCol(2, out), 62210);
  EXPECT_NO_CODE(a.GetEntireCol(1, out));
}

TEST(SparseQuirks, ASymmetricLineAcrossTheDiagonal) {
  SS a(6);
  a.Put(1, 2, 5.0);
  RS out(6, 1);
  a.GetLimitedRow(1, out, 0, 5);
  EXPECT_EQ(std::as_const(out)(4, 0), 5.0);  // not (2, 0)
  a.GetLimitedRow(1, out, 1, 5);
  EXPECT_EQ(std::as_const(out)(2, 0), 5.0);  // one side at a time is right
  EXPECT_CODE(a.GetEntireRow(1, out), 62240);
  RS(a).GetEntireRow(1, out);
  EXPECT_EQ(std::as_const(out)(2, 0), 5.0);
}

TEST(SparseQuirks, ExtractionDoesNotResize) {
  RS a(1, 3), out(2, 1);
  a = 1.0;
  EXPECT_CODE(a.GetEntireRow(0, out), 62060);
  EXPECT_EQ(out.used, 2u);
  EXPECT_CODE(a.GetLimitedRow(0, out, 0, Matrix::npos), 62200);
}

TEST(SparseQuirks, OneLineMoreTakesASymmetricMatrixApart) {
  SS a(3);
  a.Put(0, 1, 2.0);
  a.InsertRows(0, 1);
  EXPECT_EQ(a.nrows(), 4u);
  EXPECT_EQ(a.ncols(), 3u);
  SS b(3);
  b.Put(0, 1, 2.0);
  b.SetSize(4, 4, true);  // instead
  EXPECT_EQ(std::as_const(b)(1, 0), 2.0);
}

TEST(SparseQuirks, LowLevelInsertionDoesNotLookFirst) {
  RS a(1, 1);
  a.SparseMatrixInsert(0, 0, 1.0);
  a.SparseMatrixInsert(0, 0, 2.0);
  EXPECT_EQ(a.used, 2u);
  EXPECT_EQ(std::as_const(a)(0, 0), 2.0);
  SS b(2);
  b.SparseMatrixInsert(nullptr, 1, 0, 3.0);
  EXPECT_EQ(std::as_const(b)(1, 0), 0.0);
}

TEST(SparseQuirks, MaximumIgnoresAbsentCells) {
  RS a(2, 2);
  EXPECT_EQ(a.Max(), -std::numeric_limits<double>::infinity());
  a.Put(0, 0, -1.0);
  EXPECT_EQ(a.Max(), -1.0);
}

TEST(SparseQuirks, CopiesKeepTheTargetsCount) {
  RS a(1, 1), b(1, 1);
  a.set_nsing(3);
  b.set_nsing(5);
  b = a;
  EXPECT_EQ(b.nsing(), 5);
  EXPECT_EQ(RS(a).nsing(), -1);
  b = std::move(a);
  EXPECT_EQ(b.nsing(), 3);
}

}  // namespace
