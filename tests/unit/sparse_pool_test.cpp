// The pool of records and what HeapReserved shows of it.
#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

TEST(SparsePool, FirstInsertionAllocatesOneBlock) {
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

TEST(SparsePool, GrowByIsChosenOnce) {
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

TEST(SparsePool, SmallestBlocks) {
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

TEST(SparsePool, LargeBlocksAndTheWrap) {
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

}  // namespace
