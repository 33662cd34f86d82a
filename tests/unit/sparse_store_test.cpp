// Cells of the sparse element store: lookup, insertion, removal.
#include <gtest/gtest.h>

#include <limits>
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
