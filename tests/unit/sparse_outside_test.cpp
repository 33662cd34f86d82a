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
