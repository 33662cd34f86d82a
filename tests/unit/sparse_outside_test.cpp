// Elements that lie where their matrix has no place for them. A symmetric matrix may hold cells below the diagonal (put there
// behind a predecessor), which are in their row list only; when it loses columns alone, such cells can end up outside it.
#include <gtest/gtest.h>

#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

// 2 x 2 with 4 and 9 on the diagonal, or 4 alone, and in row 1 an element of column 2.
SymmetricSparseMatrix Torn(bool with_last) {
  SymmetricSparseMatrix a(4u);
  a.Put(2, 2, 4.0);
  if (with_last) a.Put(3, 3, 9.0);
  a.SparseMatrixInsert(nullptr, 3, 2, 5.0);
  a.RemoveCols(0, 2);
  a.RemoveRows(0, 2);
  EXPECT_EQ(a.rows, 2u);
  EXPECT_EQ(a.cols, 2u);
  EXPECT_EQ(a.used, with_last ? 3u : 2u);
  EXPECT_EQ(FaultOf(a), "element (1, 2) is outside");
  return a;
}

void ExpectRootsOfFourAndNine(const SymmetricSparseMatrix& a) {
  const RegularSparseMatrix lower(CholeskySquareRootLower(a)), upper(CholeskySquareRootUpper(a));
  const std::vector<Cell> roots{{0, 0, 2.0}, {1, 1, 3.0}};
  EXPECT_EQ(CellsOf(lower), roots);
  EXPECT_EQ(CellsOf(upper), roots);
}

TEST(SparseOutside, SquareRootsReadOneTriangleOfTheMatrix) {
  ExpectRootsOfFourAndNine(Torn(true));
  SymmetricSparseMatrix below(2u);
  below.Put(0, 0, 4.0);
  below.Put(1, 1, 9.0);
  below.SparseMatrixInsert(nullptr, 1, 0, 7.0);
  ExpectRootsOfFourAndNine(below);
}

// Whether the rows ascend or not: the element has no place in the copy.
TEST(SparseOutside, CopiesRefuse) {
  RegularSparseMatrix copy;
  EXPECT_CODE(copy.Copy(Torn(true), false), 62190);
  EXPECT_SOUND(copy);
  EXPECT_CODE(copy.Copy(Torn(false), false), 62190);
  EXPECT_SOUND(copy);
}

SymmetricSparseMatrix WithoutLastColumns() {
  SymmetricSparseMatrix a(4u);
  a.Put(1, 1, 2.0);
  a.SparseMatrixInsert(nullptr, 3, 2, 5.0);
  a.RemoveCols(2, 2);
  return a;
}

TEST(SparseOutside, RowsGoWithWhatTheyHold) {
  SymmetricSparseMatrix removed = WithoutLastColumns(), cleared = WithoutLastColumns(), single = WithoutLastColumns();
  removed.RemoveRows(3, 1);
  cleared.ClearRow(3, 0, Matrix::npos);
  single.SparseMatrixRemove(single.GetFirstInRow(3));
  for (const SymmetricSparseMatrix* a : {&removed, &cleared, &single}) {
    EXPECT_SOUND(*a);
    EXPECT_EQ(CellsOf(*a), (std::vector<Cell>{{1, 1, 2.0}}));
  }
}

// Removing columns takes what their column lists hold; an element below the diagonal is in its row list only, and
// stays.
TEST(SparseOutside, ColumnsGoWithWhatTheirListsHold) {
  SymmetricSparseMatrix a(4, 5);
  a.Put(3, 3, 2.0);
  a.SparseMatrixInsert(nullptr, 3, 1, 5.0);
  a.SparseMatrixInsert(a.GetFirstInRow(3)->nextInRow, 3, 4, 7.0);
  a.RemoveCols(1, 3);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{3, 1, 5.0}, {3, 1, 7.0}}));
  EXPECT_EQ(a.used, 2u);
  EXPECT_EQ(a.GetFirstInCol(1)->value, 7.0);
  a.RemoveRows(3, 1);
  EXPECT_EQ(a.used, 0u);
  EXPECT_SOUND(a);
}

// A symmetric matrix that holds a cell and, below the diagonal, its mirror image gives a regular one in which both cells
// are stored twice, with another one first in the row than in the column.
RegularSparseMatrix StoredTwice() {
  SymmetricSparseMatrix a(4u);
  a.Put(0, 2, 4.0);
  a.Put(2, 3, 8.0);
  a.SparseMatrixInsert(nullptr, 2, 0, 5.0);
  RegularSparseMatrix both(a);
  both.Put(3, 0, 6.0);
  EXPECT_EQ(both.used, 7u);
  EXPECT_NE(both.GetFirstInRow(2), both.GetFirstInCol(0));
  return both;
}

// An element that goes leaves both of its lists, itself and no other.
TEST(SparseOutside, ElementsStoredTwiceGoOneByOne) {
  const std::vector<Cell> rest{{2, 3, 8.0}, {3, 0, 6.0}, {3, 2, 8.0}};
  RegularSparseMatrix put = StoredTwice();
  for (int k = 0; k < 2; ++k) {
    put.Put(2, 0, 0.0);
    put.Put(0, 2, 0.0);
  }
  EXPECT_SOUND(put);
  EXPECT_EQ(CellsOf(put), rest);

  RegularSparseMatrix behind = StoredTwice();
  SparseElement* const first = behind.GetFirstInRow(2);
  behind.SparseMatrixRemove(first, first->nextInRow);
  behind.Put(2, 0, 0.0);
  behind.ClearRow(0);
  EXPECT_SOUND(behind);
  EXPECT_EQ(CellsOf(behind), rest);

  RegularSparseMatrix cleared = StoredTwice();
  cleared.ClearRow(2, 0, 0);
  cleared.ClearCol(2, 0, 0);
  EXPECT_SOUND(cleared);
  EXPECT_EQ(CellsOf(cleared), rest);

  RegularSparseMatrix cancelled = StoredTwice();
  cancelled -= StoredTwice();
  EXPECT_SOUND(cancelled);
  EXPECT_EQ(cancelled.used, 0u);

  RegularSparseMatrix removed = StoredTwice();
  removed.RemoveCols(0, 1);
  removed.RemoveRows(0, 1);
  EXPECT_SOUND(removed);
  EXPECT_EQ(CellsOf(removed), (std::vector<Cell>{{1, 2, 8.0}, {2, 1, 8.0}}));
}

// The copy appends what a row holds itself, so that a row may descend: its elements go with their columns all the same.
TEST(SparseOutside, RowsThatDescendLoseTheirElementsToo) {
  SymmetricSparseMatrix a(3u);
  a.Put(0, 2, 4.0);
  a.Put(1, 2, 3.0);
  a.SparseMatrixInsert(nullptr, 2, 0, 5.0);
  RegularSparseMatrix both(a);
  EXPECT_EQ(CellsOf(both),
            (std::vector<Cell>{{0, 2, 5.0}, {0, 2, 4.0}, {1, 2, 3.0}, {2, 0, 4.0}, {2, 1, 3.0}, {2, 0, 5.0}}));
  both.RemoveCols(0, 1);
  EXPECT_EQ(CellsOf(both), (std::vector<Cell>{{0, 1, 5.0}, {0, 1, 4.0}, {1, 1, 3.0}, {2, 0, 3.0}}));
  both.RemoveRows(0, 1);
  EXPECT_SOUND(both);
}

// By hand: a record of one's own stands for the element that has its indices, and for nothing outside the matrix.
TEST(SparseOutside, UnlinkingByHandGoesByIndex) {
  RegularSparseMatrix a = SparseOf<RegularSparseMatrix>(2, 2, {{0, 0, 1.0}, {0, 1, 2.0}, {1, 1, 3.0}});
  SparseElement own{a.Cell_Loc(1, 1), a.Cell_Loc(0, 0), 0.0, 0, 1};
  a.SparseMatrixRowRemove(&own);
  a.SparseMatrixColRemove(&own);
  EXPECT_EQ(own.nextInRow, nullptr);
  EXPECT_EQ(own.nextInCol, nullptr);
  EXPECT_EQ(a.Cell_Loc(0, 1), nullptr);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 0, 1.0}, {1, 1, 3.0}}));
  own = SparseElement{&own, &own, 0.0, 2, 2};
  a.SparseMatrixRowRemove(&own);
  a.SparseMatrixColRemove(&own);
  EXPECT_EQ(own.nextInRow, nullptr);
  EXPECT_EQ(own.nextInCol, nullptr);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 0, 1.0}, {1, 1, 3.0}}));
}

// A sum that cancels an element which its column list does not hold: the list stays as it is.
TEST(SparseOutside, SumsCancelWhatIsInRowListsOnly) {
  SymmetricSparseMatrix s(3u), t(3u);
  s.Put(0, 0, 1.0);
  s.SparseMatrixInsert(s.GetFirstInRow(2), 2, 0, 4.0);
  t.SparseMatrixInsert(nullptr, 2, 0, -4.0);
  s += t;
  EXPECT_EQ(CellsOf(s), (std::vector<Cell>{{0, 0, 1.0}}));
  EXPECT_SOUND(s);

  RegularSparseMatrix a = SparseOf<RegularSparseMatrix>(3, 1, {{0, 0, 1.0}, {1, 0, 2.0}, {2, 0, 3.0}});
  a.SparseMatrixColRemove(a.Cell_Loc(1, 0));
  a -= SparseOf<RegularSparseMatrix>(3, 1, {{1, 0, 2.0}});
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 0, 1.0}, {2, 0, 3.0}}));
  EXPECT_SOUND(a);
}

}  // namespace
}  // namespace quorvel::test
