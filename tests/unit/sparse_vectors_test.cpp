// Rows and columns of sparse matrices read into vectors.
#include <gtest/gtest.h>

#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

using Cells = std::vector<Cell>;

TEST(SparseLineVectors, Regular) {
  const RS a = SparseOf<RS>(3, 4, {{1, 0, 1.0}, {1, 2, 2.0}, {1, 3, 3.0}, {2, 2, 4.0}});
  RS out(4, 1);
  a.GetEntireRow(1, out);
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {2, 0, 2.0}, {3, 0, 3.0}}));
  a.GetLimitedRow(1, out, 1, 2);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 2.0}}));
  a.GetEntireCol(2, out);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 4.0}}));
  a.GetLimitedCol(2, out, 0, 1);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}}));
  EXPECT_CODE(a.GetEntireCol(3, out), 62210);  // wider than high
  EXPECT_CODE(a.GetEntireCol(4, out), 62220);
  EXPECT_CODE(a.GetEntireRow(3, out), 62230);
  EXPECT_SOUND(out);
}

TEST(SparseLineVectors, ZerosAreSkippedAndBoundsRefused) {
  RS a = SparseOf<RS>(2, 4, {{0, 0, 1.0}, {0, 1, 2.0}, {0, 3, 3.0}});
  a.MultRow(0, 0.0, 1, 1);
  RS out(2, 1);
  EXPECT_CODE(a.GetLimitedRow(0, out, 0, 3), 62060);
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}}));  // what was written before
  RS none(4, 0);
  EXPECT_CODE(a.GetLimitedRow(0, none, 0, 3), 62060);
  EXPECT_NO_CODE(a.GetLimitedRow(1, none, 0, 3));
  SS symmetric(4);
  a.GetRowElements(0, 0, 3, symmetric);
  EXPECT_EQ(CellsOf(symmetric), (Cells{{0, 0, 1.0}, {0, 3, 3.0}}));
  EXPECT_SOUND(symmetric);
  a.GetLimitedRow(0, a, 0, 3);  // into itself: emptied first
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.ncols(), 4u);
}

TEST(SparseLineVectors, CellsStoredTwiceEndWithTheLast) {
  RS a(1, 3);
  a.SparseMatrixInsert(0, 1, 2.0);
  a.SparseMatrixInsert(0, 1, 1.0);  // in front
  a.Put(0, 2, 5.0);
  RS out(3, 1);
  a.GetEntireRow(0, out);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 5.0}}));
  EXPECT_SOUND(out);
}

TEST(SparseLineVectors, SymmetricOnOneSide) {
  const SS a = SparseOf<SS>(5, 5, {{0, 2, 1.0}, {1, 2, 2.0}, {2, 2, 3.0}, {2, 3, 4.0}, {2, 4, 5.0}});
  RS out(5, 1);
  a.GetLimitedRow(2, out, 2, 4);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 3.0}, {3, 0, 4.0}, {4, 0, 5.0}}));
  a.GetLimitedCol(2, out, 1, 2);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 3.0}}));
  a.GetLimitedCol(0, out, 0, 4);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 1.0}}));
}

// Across the diagonal the right part is buffered by column and read back from 0 on.
TEST(SparseLineVectors, SymmetricAcrossTheDiagonal) {
  const SS a = SparseOf<SS>(8, 8, {{0, 1, 1.0}, {1, 1, 2.0}, {1, 2, 3.0}, {1, 4, 5.0}});
  RS out(8, 1);
  a.GetLimitedCol(1, out, 0, 7);  // last - i = 6: columns 2 and 4 fit the buffer
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {1, 0, 2.0}, {4, 0, 3.0}, {6, 0, 5.0}}));
  RS row(8, 1);
  a.GetLimitedRow(1, row, 0, 7);
  EXPECT_EQ(CellsOf(row), CellsOf(out));
  EXPECT_CODE(a.GetLimitedCol(1, out, 0, 4), 62060);  // last - i = 3: column 4 does not
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {1, 0, 2.0}}));
  EXPECT_CODE(a.GetLimitedCol(8, out, 0, 1), 62240);
  EXPECT_CODE(a.GetLimitedCol(0, out, 2, 1), 62240);
  EXPECT_CODE(a.GetLimitedCol(0, out, 0, 8), 62240);
  EXPECT_CODE(a.GetLimitedRow(0, out, 0, Matrix::npos), 62240);
  EXPECT_CODE(a.GetEntireCol(0, out), 62240);
  EXPECT_CODE(a.GetEntireRow(0, out), 62240);
}

}  // namespace
