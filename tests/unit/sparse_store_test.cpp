// The sparse element store: cells, both insertions, the pool and what HeapReserved shows of it.
#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using Cells = std::vector<Cell>;

TEST(SparseStore, NewEmptyMatrixOwnsNothing) {
  const RegularSparseMatrix a(0, 0);
  EXPECT_EQ(a.rowHeads, nullptr);
  EXPECT_EQ(a.colHeads, nullptr);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.HeapUsed(), 0u);
  const RegularSparseMatrix wide(0, 5);
  EXPECT_EQ(wide.rowHeads, nullptr);
  EXPECT_EQ(wide.HeapReserved(), 20u);
}

TEST(SparseStore, FirstInsertionAllocatesOneBlock) {
  RegularSparseMatrix a(3, 5);
  EXPECT_EQ(a.HeapReserved(), 32u);
  a.Put(0, 0, 1.0);
  EXPECT_EQ(a.growBy, 23u);
  EXPECT_EQ(a.HeapReserved(), 584u);
  EXPECT_EQ(a.HeapUsed(), 56u);
  // 22 records of the block can be used; cells are inserted twice because there are only 15.
  for (unsigned k = 1; k < 22; ++k) a.SparseMatrixInsert(k % 3, k % 5, 1.0);
  EXPECT_EQ(a.used, 22u);
  EXPECT_EQ(a.HeapReserved(), 584u);
  a.SparseMatrixInsert(0, 0, 1.0);
  EXPECT_EQ(a.HeapReserved(), 1136u);
}

TEST(SparseStore, GrowByIsChosenOnce) {
  RegularSparseMatrix a(3, 5);
  EXPECT_TRUE(a.SetGrowBy(9));
  EXPECT_EQ(a.HeapReserved(), 32u);  // nothing yet
  a.Put(1, 1, 2.0);
  EXPECT_EQ(a.HeapReserved(), 4u * (10 * 6 + 8));
  EXPECT_FALSE(a.SetGrowBy(3));
  EXPECT_EQ(a.growBy, 10u);
  a.Clear();
  EXPECT_FALSE(a.SetGrowBy(3));  // the block is still there
}

TEST(SparseStore, SmallestBlocks) {
  // One record per block cannot be: 0 counts as 1 from the first block on.
  RegularSparseMatrix a(4, 4);
  EXPECT_TRUE(a.SetGrowBy(0));
  EXPECT_EQ(a.growBy, 1u);
  for (unsigned i = 0; i < 4; ++i) {
    a.Put(i, 3 - i, i + 1.0);
    EXPECT_EQ(a.growBy, 2u);
    EXPECT_EQ(a.HeapReserved(), 4u * ((i + 1) * 2 * 6 + 8)) << "one block for each element";
    EXPECT_SOUND(a);
  }
  a.Clear();
  EXPECT_SOUND(a);
  for (unsigned i = 0; i < 3; ++i) a.Put(i, i, 1.0);
  EXPECT_EQ(BlocksOf(a), 4u);  // all but one of the blocks' records
  a.Put(3, 3, 1.0);
  EXPECT_EQ(BlocksOf(a), 5u);
  EXPECT_SOUND(a);
}

TEST(SparseStore, LargeBlocksAndTheWrap) {
  RegularSparseMatrix a(2, 2);
  EXPECT_TRUE(a.SetGrowBy(99999));
  a.Put(0, 0, 1.0);
  EXPECT_EQ(a.HeapReserved(), 4u * (100000u * 6 + 4));
  RegularSparseMatrix b(2, 2);
  EXPECT_TRUE(b.SetGrowBy(7));
  EXPECT_TRUE(b.SetGrowBy(0xFFFFFFFFu));  // back to "not chosen"
  b.Put(0, 0, 1.0);
  EXPECT_EQ(b.growBy, 22u);
}

// A 4 x 4 matrix with four records a block: 128 bytes with one block, 224 with two.
RegularSparseMatrix SmallPool() {
  RegularSparseMatrix a(4, 4);
  a.SetGrowBy(3);
  return a;
}

void PutInRow(RegularSparseMatrix& a, unsigned row, unsigned count, unsigned first = 0) {
  for (unsigned j = 0; j < count; ++j) a.Put(row, first + j, 1.0);
}

TEST(SparsePool, RecordsReturnedOnAnEndMarkAreLost) {
  RegularSparseMatrix a = SmallPool();
  PutInRow(a, 0, 3);
  EXPECT_EQ(a.HeapReserved(), 128u);
  for (unsigned j = 0; j < 3; ++j) a.Put(0, j, 0.0);
  PutInRow(a, 1, 1);
  EXPECT_EQ(a.HeapReserved(), 224u);
}

TEST(SparsePool, AClearedRowComesBackAsOneRun) {
  RegularSparseMatrix a = SmallPool();
  PutInRow(a, 2, 3);
  a.ClearRow(2);
  PutInRow(a, 0, 2);
  EXPECT_EQ(a.HeapReserved(), 128u);
  PutInRow(a, 1, 1);
  EXPECT_EQ(a.HeapReserved(), 224u);
  RegularSparseMatrix b = SmallPool();
  for (unsigned i = 0; i < 3; ++i) b.Put(i, 1, 1.0);
  b.ClearCol(1);
  PutInRow(b, 0, 2);
  EXPECT_EQ(b.HeapReserved(), 128u);
  PutInRow(b, 1, 1);
  EXPECT_EQ(b.HeapReserved(), 224u);
}

TEST(SparsePool, ClearMakesAllButOneUsableAgain) {
  RegularSparseMatrix a = SmallPool();
  PutInRow(a, 0, 3);
  a.Clear();
  EXPECT_EQ(a.HeapReserved(), 128u);
  PutInRow(a, 0, 2);
  EXPECT_EQ(a.HeapReserved(), 128u);
  PutInRow(a, 1, 1);
  EXPECT_EQ(a.HeapReserved(), 224u);
}

TEST(SparsePool, SingleReturnsBeforeTheEndMarkAreUsed) {
  RegularSparseMatrix a = SmallPool();
  PutInRow(a, 0, 2);
  a.Put(0, 0, 0.0);
  a.Put(0, 1, 0.0);
  PutInRow(a, 1, 3);
  EXPECT_EQ(a.HeapReserved(), 128u);
  PutInRow(a, 2, 1);
  EXPECT_EQ(a.HeapReserved(), 224u);
}

TEST(SparsePool, TwoBlocksAfterClear) {
  RegularSparseMatrix a = SmallPool();
  PutInRow(a, 0, 4);
  ASSERT_EQ(BlocksOf(a), 2u);
  a.Clear();
  PutInRow(a, 0, 4);
  PutInRow(a, 1, 1);
  EXPECT_EQ(a.HeapReserved(), 224u);
  PutInRow(a, 2, 1);
  EXPECT_EQ(BlocksOf(a), 3u);
}

TEST(SparsePool, AddingABlockDropsTheChain) {
  RegularSparseMatrix a = SmallPool();
  a.AllocateMoreSpaces();
  PutInRow(a, 0, 1);
  a.AllocateMoreSpaces();
  EXPECT_EQ(a.HeapReserved(), 224u);
  EXPECT_EQ(ChainOf(a), 4u);
  EXPECT_SOUND(a);
  PutInRow(a, 1, 3);
  EXPECT_EQ(BlocksOf(a), 2u);
  PutInRow(a, 2, 1);
  EXPECT_EQ(BlocksOf(a), 3u);
  a.Clear();
  EXPECT_EQ(ChainOf(a), 9u);
  EXPECT_SOUND(a);
}

TEST(SparseStore, PutSetsAndRemoves) {
  RegularSparseMatrix a(3, 4);
  a.Put(1, 2, 0.0);
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(BlocksOf(a), 0u);
  a.Put(1, 2, 5.0);
  a.Put(1, 2, 6.0);
  EXPECT_EQ(CellsOf(a), (Cells{{1, 2, 6.0}}));
  a.Put(1, 2, -0.0);
  EXPECT_EQ(a.used, 0u);
  a.Put(7, 7, 0.0);  // a zero outside does nothing
  EXPECT_SOUND(a);
}

TEST(SparseStore, ASymmetricCellHasOneElement) {
  SymmetricSparseMatrix a(5);
  a.Put(4, 1, 2.5);
  EXPECT_EQ(CellsOf(a), (Cells{{1, 4, 2.5}}));
  a.Put(1, 4, 3.5);
  EXPECT_EQ(a.used, 1u);
  EXPECT_EQ(std::as_const(a)(4, 1), 3.5);
  EXPECT_EQ(a.Cell_Loc(4, 1), a.Cell_Loc(1, 4));
  EXPECT_EQ(a.GetFirstInRow(4), nullptr);  // lists are not mirrored
  EXPECT_EQ(a.GetFirstInRow(1), a.GetFirstInCol(4));
  a.Put(4, 1, 0.0);
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseStore, AnEqualIndexGoesInFront) {
  RegularSparseMatrix a(2, 2);
  SparseElement* first = a.SparseMatrixInsert(0, 1, 1.0);
  SparseElement* second = a.SparseMatrixInsert(0, 1, 2.0);
  EXPECT_EQ(a.rowHeads[0], second);
  EXPECT_EQ(second->nextInRow, first);
  EXPECT_EQ(a.colHeads[1], second);
  EXPECT_EQ(second->nextInCol, first);
  EXPECT_EQ(a.Cell_Loc(0, 1), second);
  a.SparseMatrixRemove(second);
  EXPECT_EQ(a.Cell_Loc(0, 1), first);
  EXPECT_SOUND(a);
}

TEST(SparseStore, LinkingAndUnlinkingOnly) {
  RegularSparseMatrix a(3, 3);
  a.Put(0, 0, 1.0);
  a.Put(0, 2, 3.0);
  SparseElement own{nullptr, nullptr, 2.0, 0, 1};
  a.SparseMatrixRowInsert(0, 1, &own);
  EXPECT_EQ(a.used, 2u);  // links, nothing else
  EXPECT_EQ(a.rowHeads[0]->nextInRow, &own);
  EXPECT_EQ(own.nextInRow, a.Cell_Loc(0, 2));
  a.SparseMatrixColInsert(0, 1, &own);
  EXPECT_EQ(a.colHeads[1], &own);
  EXPECT_EQ(a.Cell_Loc(0, 1), &own);
  a.SparseMatrixColRemove(&own);
  a.SparseMatrixRowRemove(&own);
  EXPECT_EQ(a.colHeads[1], nullptr);
  EXPECT_EQ(own.nextInRow, nullptr);
  a.SparseMatrixRowRemove(&own);  // no longer there: nothing happens
  a.SparseMatrixColRemove(&own);
  EXPECT_SOUND(a);
}

TEST(SparseStore, AppendingBehindAPredecessor) {
  RegularSparseMatrix a(3, 4);
  SparseElement* e = a.SparseMatrixInsert(nullptr, 1, 0, 1.0);
  e = a.SparseMatrixInsert(e, 1, 2, 2.0);
  e = a.SparseMatrixInsert(nullptr, 0, 2, 3.0);  // an earlier row: its column place is searched
  EXPECT_SOUND(a);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 3.0}, {1, 0, 1.0}, {1, 2, 2.0}}));
  EXPECT_EQ(a.colHeads[2], e);
  a.SparseMatrixRemove(a.rowHeads[1], a.rowHeads[1]->nextInRow);
  a.SparseMatrixRemove(nullptr, a.rowHeads[1]);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 3.0}}));
  EXPECT_SOUND(a);
}

TEST(SparseStore, NaNIsAnElement) {
  RegularSparseMatrix a(1, 1);
  a.Put(0, 0, std::numeric_limits<double>::quiet_NaN());
  EXPECT_EQ(a.used, 1u);
}

TEST(SparseStore, ElementsOutsideTheListsAreNotFound) {
  const RegularSparseMatrix a(2, 3);
  EXPECT_EQ(a.Cell_Loc(2, 0), nullptr);
  EXPECT_EQ(a.Cell_Loc(0, 3), nullptr);
  EXPECT_EQ(a.Cell_Loc(0xFFFFFFFFu, 0xFFFFFFFFu), nullptr);
  const SymmetricSparseMatrix wide(2, 5), high(5, 2);  // no check here: the symmetric kind may be made so
  EXPECT_EQ(wide.Cell_Loc(4, 4), nullptr);
  EXPECT_EQ(high.Cell_Loc(4, 1), nullptr);
}

// PutNew and GetFirst on a matrix that the symmetric kind should not be.
TEST(SparseStore, ASymmetricMatrixThatIsNotSquareStaysDefined) {
  SymmetricSparseMatrix wide(2, 5);
  wide.Put(4, 1, 2.0);  // cell (1, 4)
  EXPECT_EQ(CellsOf(wide), (Cells{{1, 4, 2.0}}));
  EXPECT_EQ(wide.SumRow(1), 2.0);
  EXPECT_EQ(wide.SumCol(4, 0, 1), 2.0);
  EXPECT_TRUE(wide.IsRowEmpty(0));
  EXPECT_FALSE(wide.IsColEmpty(4));
  EXPECT_CODE(wide.Put(3, 4, 1.0), 62060);
  SymmetricSparseMatrix high(5, 2);
  EXPECT_CODE(high.Put(4, 0, 1.0), 62060);  // cell (0, 4)
  high.Put(1, 0, 1.0);
  EXPECT_TRUE(high.IsRowEmpty(4));
  EXPECT_EQ(high.SumRow(4), 0.0);
  EXPECT_EQ(RegularMatrix(high).nrows(), 5u);
  EXPECT_EQ(RegularMatrix(wide).ncols(), 5u);
  EXPECT_CODE(SymmetricMatrix(wide), 40000);
}

}  // namespace
