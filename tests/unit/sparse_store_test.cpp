// The sparse element store: cells, pool, sizes.

#include "quorvel/quorvel.h"

#include <gtest/gtest.h>

#include "support/codes.h"

namespace {

using quorvel::test::CodeOf;

TEST(SparseStore, NewEmptyMatrixOwnsNothing) {
  const RegularSparseMatrix a(0, 0);
  EXPECT_EQ(a.rowHeads, nullptr);
  EXPECT_EQ(a.colHeads, nullptr);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.HeapUsed(), 0u);
}

TEST(SparseStore, FirstInsertionAllocatesOneBlock) {
  RegularSparseMatrix a(3, 5);
  EXPECT_EQ(a.HeapReserved(), 32u);
  a.Put(0, 0, 1.0);
  EXPECT_EQ(a.HeapReserved(), 584u);
  // 22 records of the block can be used; cells are inserted twice because there are only 15.
  for (unsigned k = 1; k < 22; ++k) a.SparseMatrixInsert(k % 3, k % 5, 1.0);
  EXPECT_EQ(a.used, 22u);
  EXPECT_EQ(a.HeapReserved(), 584u);
  a.SparseMatrixInsert(0, 0, 1.0);
  EXPECT_EQ(a.HeapReserved(), 1136u);
}

}  // namespace
