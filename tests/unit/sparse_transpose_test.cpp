// The transpose of large sparse matrices, which is made in two ways: the same records at the same places as by single
// steps, column after column.
#include <gtest/gtest.h>

#include <new>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/random.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

// 12 000 elements of 3000 x 2000 at random, some rows and columns empty; those of a column are far from each other. The
// rows are written in order, or from the last to the first.
RegularSparseMatrix Scattered(bool backwards = false) {
  RegularSparseMatrix a(3000, 2000);
  Random random(11);
  for (unsigned t = 0; t < a.nrows(); ++t) {
    const unsigned i = backwards ? a.nrows() - 1 - t : t;
    if (i % 50 == 0) continue;
    SparseElement* prev = nullptr;
    for (unsigned k = 0; k < 4; ++k) {
      const unsigned j = 500 * k + random.Below(500);
      const double value = random.Uniform(1.0, 2.0);
      if (j % 31 != 0) prev = a.SparseMatrixInsert(prev, i, j, value);
    }
  }
  return a;
}

void ExpectSingleSteps(const RegularSparseMatrix& a) {
  RegularSparseMatrix expected(a.ncols(), a.nrows());
  for (unsigned j = 0; j < a.ncols(); ++j) {
    SparseElement* prev = nullptr;
    for (const SparseElement* e = a.GetFirstInCol(j); e != nullptr; e = e->nextInCol) {
      prev = expected.SparseMatrixInsert(prev, j, e->row, e->value);
    }
  }
  const RegularSparseMatrix result(transpose(a));
  EXPECT_EQ(result.used, expected.used);
  EXPECT_EQ(CellsOf(result), CellsOf(expected));
  EXPECT_EQ(PlacesOf(result), PlacesOf(expected));
  EXPECT_EQ(result.HeapReserved(), expected.HeapReserved());
}

TEST(SparseTranspose, ElementsFarApart) {
  const RegularSparseMatrix a = Scattered();
  ASSERT_GT(a.used, 10000u);
  ExpectSingleSteps(a);
  EXPECT_SOUND(RegularSparseMatrix(transpose(a)));
  ExpectSingleSteps(Scattered(true));
  const RegularSparseMatrix back(transpose(RegularSparseMatrix(transpose(a))));
  EXPECT_EQ(CellsOf(back), CellsOf(a));
}

TEST(SparseTranspose, ElementsOfAColumnNearEachOther) {
  RegularSparseMatrix a(3000, 3000);
  for (unsigned i = 0; i < a.nrows(); ++i) {
    SparseElement* prev = nullptr;
    for (unsigned j = i; j < i + 3 && j < a.ncols(); ++j) prev = a.SparseMatrixInsert(prev, i, j, 1.0 + i);
  }
  ExpectSingleSteps(a);
}

// The order of cells that are stored twice is that of their column.
TEST(SparseTranspose, CellsStoredTwice) {
  RegularSparseMatrix a = Scattered();
  SparseElement* const e = a.GetFirstInRow(1502);
  a.SparseMatrixInsert(e, e->row, e->col, 7.0);  // in front of e in its column, behind it in its row
  ExpectSingleSteps(a);
  RegularSparseMatrix b = Scattered();
  b.SparseMatrixInsert(e->row, e->col, 7.0);  // in front of e in both
  ExpectSingleSteps(b);
}

// An element that was taken out of its row list alone is still in its column.
TEST(SparseTranspose, AnElementInNoRow) {
  RegularSparseMatrix a = Scattered();
  SparseElement* const e = a.GetFirstInRow(1501);
  a.SparseMatrixRowRemove(e);
  ExpectSingleSteps(a);
  a.SparseMatrixRowInsert(e->row, e->col, e);
  ExpectSingleSteps(a);
}

// One that was taken out of its column alone is not seen.
TEST(SparseTranspose, AnElementInNoColumn) {
  RegularSparseMatrix a = Scattered();
  SparseElement* const e = a.GetFirstInRow(1501);
  a.SparseMatrixColRemove(e);
  ExpectSingleSteps(a);
  a.SparseMatrixColInsert(e->row, e->col, e);
  ExpectSingleSteps(a);
}

// One that was moved to the row list of another row comes where its own index says.
TEST(SparseTranspose, AnElementInAnotherRow) {
  RegularSparseMatrix a = Scattered();
  SparseElement* e = a.GetFirstInCol(41);
  ASSERT_GT(e->row, 1u);
  a.SparseMatrixRowRemove(e);
  a.SparseMatrixRowInsert(1, e->col, e);
  ExpectSingleSteps(a);
}

TEST(SparseTranspose, EveryAllocationFails) {
  const RegularSparseMatrix a = Scattered();
  for (unsigned k = 1;; ++k) {
    bool thrown = false, failed;
    {
      FailAllocations fail(k, Fail::kOnce);
      try {
        const RegularSparseMatrix result(transpose(a));
      } catch (const std::bad_alloc&) {
        thrown = true;
      }
      failed = fail.failed();
    }
    ASSERT_EQ(thrown, failed) << "allocation " << k;
    if (!failed) {
      EXPECT_GT(k, 8u);
      break;
    }
  }
}

}  // namespace
