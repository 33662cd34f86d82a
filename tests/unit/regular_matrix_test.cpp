// RegularMatrix: access, sizing, blocks, operations on lines, against plain models.
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <vector>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;

namespace {

constexpr unsigned npos = 0xFFFFFFFFu;

RegularMatrix Counting(unsigned rows, unsigned cols) {
  RegularMatrix a(rows, cols);
  for (unsigned k = 0; k < rows * cols; ++k) a.data()[k] = k + 1;
  return a;
}

TEST(RegularMatrix_, EmptyShapesKeepTheirSizes) {
  const RegularMatrix a(0, 5);
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.ncols(), 5u);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.data(), nullptr);
}

TEST(RegularMatrix_, Access) {
  RegularMatrix a = Counting(2, 3);
  a(1, 2) = 9.0;
  EXPECT_EQ(std::as_const(a)(1, 2), 9.0);
  EXPECT_EQ(a.data()[5], 9.0);
  RegularMatrix v(3, 1);
  v(2) = 4.0;
  EXPECT_EQ(std::as_const(v)(2), 4.0);
  EXPECT_CODE(a(2, 0), 60080);
  EXPECT_CODE(a(0, 3), 60080);
  EXPECT_CODE(a(0), 60080);
  EXPECT_CODE_WHILE_PENDING(5, a(0, 0), 5);
}

TEST(RegularMatrix_, SetSizeWithKeepKeepsTheCommonPart) {
  for (unsigned m = 0; m <= 4; ++m) {
    for (unsigned n = 0; n <= 4; ++n) {
      for (unsigned rows = 1; rows <= 5; ++rows) {
        for (unsigned cols = 1; cols <= 5; ++cols) {
          RegularMatrix a = Counting(m, n);
          Model expected = Zeros(rows, cols);
          for (unsigned i = 0; i < m && i < rows; ++i) {
            for (unsigned j = 0; j < n && j < cols; ++j) expected[i][j] = a(i, j);
          }
          a.SetSize(rows, cols, true);
          ExpectElements(expected, a);
        }
      }
    }
  }
}

TEST(RegularMatrix_, SetSizeToNothingKeepsTheArray) {
  RegularMatrix a = Counting(2, 3);
  a.SetSize(0, 7, true);
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.ncols(), 7u);
  EXPECT_EQ(a.capacity(), 6u);
}

TEST(RegularMatrix_, Blocks) {
  const RegularMatrix a = Counting(3, 3);
  RegularMatrix& column = a(1, 2, 0, 0);
  EXPECT_TRUE(column.dispensable());
  ExpectElements({{4}, {7}}, std::as_const(column));
  column.DestroyIfDispensable();
  const RegularMatrix empty(a(2, 1, 0, 2));  // last = first - 1
  EXPECT_EQ(empty.nrows(), 0u);
  EXPECT_EQ(empty.ncols(), 3u);
  const RegularMatrix none(a(0, npos, 0, 2));  // npos is not special
  EXPECT_EQ(none.nrows(), 0u);
  EXPECT_THROW(static_cast<void>(a(2, 0, 0, 0)), std::bad_array_new_length);
  EXPECT_THROW(static_cast<void>(DispensableCopy(a)(2, 0, 0, 0)), std::bad_array_new_length);
  EXPECT_CODE(a(0, 3, 0, 0), 40000);
  EXPECT_CODE(a(0, 0, 0, 3), 40000);
  EXPECT_CODE(DispensableCopy(a)(0, 3, 0, 0), 40000);
  EXPECT_CODE_WHILE_PENDING(6, DispensableCopy(a)(0, 1, 0, 1), 6);
  RegularMatrix bad = Counting(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(bad(0, 1, 0, 1), 50000);
  const RegularMatrix taken(DispensableCopy(a)(0, 1, 1, 2));  // the operand is consumed
  ExpectElements({{2, 3}, {5, 6}}, taken);
}

// ---------------------------------------------------------------------------------------------------------------------

TEST(RegularLines, SumsAndSumsOfSquares) {
  const RegularMatrix a = Counting(2, 3);
  EXPECT_EQ(a.SumRow(0, 0, npos), 6.0);
  EXPECT_EQ(a.SumRow(1), 15.0);
  EXPECT_EQ(a.SumRow(1, 1, 1), 5.0);
  EXPECT_EQ(a.SumCol(2), 9.0);
  EXPECT_EQ(a.SumSqRow(0, 1, 2), 13.0);
  EXPECT_EQ(a.SumSqCol(1), 29.0);
  Random random(3);
  const RegularMatrix b = Filled<RegularMatrix>(Pattern::kUniform, random, 9u, 11u);
  double sum = 0.0, squares = 0.0;
  for (unsigned i = 2; i <= 7; ++i) {
    sum += b(i, 4);
    squares += b(i, 4) * b(i, 4);
  }
  EXPECT_EQ(b.SumCol(4, 2, 7), sum);
  EXPECT_EQ(b.SumSqCol(4, 2, 7), squares);
  digest::Feed(b.SumCol(4, 2, 7));
  digest::Feed(b.SumSqRow(4));
}

TEST(RegularLines, Changes) {
  RegularMatrix a = Counting(3, 3);
  a.NegateRow(1, 1, npos);
  a.NegateCol(0, 0, 1);
  a.MultRow(2, 2.0, 0, 1);
  a.MultCol(2, 10.0, 2, 2);
  ExpectElements({{-1, 2, 3}, {-4, -5, -6}, {14, 16, 90}}, a);
  a.SetRow(0, 7.0, 1, 2);
  a.SetCol(0, 5.0);
  a.ClearRow(1, 1, 1);
  a.ClearCol(2, 0, 0);
  ExpectElements({{5, 7, 0}, {5, 0, -6}, {5, 16, 90}}, a);
}

TEST(RegularLines, BadRanges) {
  RegularMatrix a = Counting(2, 3);
  EXPECT_CODE(a.SumRow(2, 0, 1), 40000);
  EXPECT_CODE(a.SumRow(0, 2, 1), 40000);
  EXPECT_CODE(a.SumRow(0, 0, 3), 40000);
  EXPECT_CODE(a.SumCol(3, 0, 1), 40000);
  EXPECT_CODE(a.NegateCol(0, 0, 2), 40000);
  EXPECT_CODE(a.SetRow(0, 1.0, npos, npos), 40000);  // first is never resolved
  RegularMatrix no_cols(2, 0), no_rows(0, 2);
  EXPECT_CODE(no_cols.SumRow(0), 40000);
  EXPECT_CODE(no_cols.SetRow(0, 1.0, 0, 5), 40000);
  EXPECT_CODE(no_rows.ClearCol(0), 40000);
  EXPECT_CODE(no_rows.SumSqCol(0, 0, 0), 40000);
  a.set_ok(false);
  EXPECT_CODE(a.MultRow(0, 2.0), 50000);
  EXPECT_CODE(a.SumRow(9), 50000);
  RegularMatrix& temporary = Dispensable<RegularMatrix>(2u, 2u);
  EXPECT_CODE(temporary.SumRow(2), 40000);  // and it is gone
}

TEST(RegularBands, SetRowsAndCols) {
  RegularMatrix a = Counting(3, 3);
  a.SetRows(0.5, 1, 2);
  ExpectElements({{1, 2, 3}, {0.5, 0.5, 0.5}, {0.5, 0.5, 0.5}}, a);
  RegularMatrix square = Counting(3, 3);
  square.SetCols(0.0, 1, 2);
  ExpectElements({{1, 0, 0}, {4, 0, 0}, {7, 0, 0}}, square);
  // Not square: from the first column on, count doubles, then a step by the row count, n times.
  RegularMatrix wide = Counting(2, 3);
  wide.SetCols(0.0, 2, 1);  // flat 2, 4 and (skipped) 6
  ExpectElements({{1, 2, 0}, {4, 0, 6}}, wide);
  RegularMatrix tall = Counting(4, 2);
  tall.SetCols(0.0, 1, 1);  // flat 1 and 5
  ExpectElements({{1, 0}, {3, 4}, {5, 0}, {7, 8}}, tall);
  EXPECT_CODE(a.SetRows(1.0, 2, 2), 60000);
  EXPECT_CODE(a.SetCols(1.0, 4, 0), 60000);  // a count of 0 is checked too
  EXPECT_NO_CODE(a.SetCols(1.0, 3, 0));
  a.set_ok(false);
  EXPECT_CODE(a.SetRows(1.0, 0, 0), 60000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).SetCols(1.0, 0, 1), 60000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).SetRows(1.0, 0, 1), 60000);
}

TEST(RegularBands, SetColsOverAllShapes) {
  for (unsigned m = 0; m <= 5; ++m) {
    for (unsigned n = 0; n <= 5; ++n) {
      for (unsigned first = 0; first <= n; ++first) {
        for (unsigned count = 0; first + count <= n; ++count) {
          RegularMatrix a = Counting(m, n);
          std::vector<double> flat(a.data(), a.data() + m * n);
          for (unsigned step = 0; step < n; ++step) {
            for (unsigned k = 0; k < count; ++k) {
              const unsigned at = first + step * m + k;
              if (at < m * n) flat[at] = -1.0;
            }
          }
          a.SetCols(-1.0, first, count);
          EXPECT_TRUE(SameBits(flat.data(), a.data(), m * n)) << m << "x" << n << " " << first << "+" << count;
        }
      }
    }
  }
}

// Steps that overlap, and steps behind the last element, are no work: visiting each would take hours.
TEST(RegularBands, SetColsCostsNoMoreThanTheMatrix) {
  const unsigned n = 1u << 18;
  RegularMatrix row(1, n);
  row.SetCols(2.0, 3, n - 3);
  EXPECT_EQ(row.NumberNonZero(), n - 3);
  EXPECT_EQ(row.SumRow(0, 0, 2), 0.0);
  RegularMatrix empty(0, Matrix::npos);
  EXPECT_NO_CODE(empty.SetCols(2.0, 0, Matrix::npos));
  EXPECT_EQ(empty.ncols(), Matrix::npos);
}

TEST(RegularBands, InsertRowsInTheMiddleMovesLittle) {
  RegularMatrix a = Counting(2, 2);
  a.InsertRows(0, 1);
  ExpectElements({{0, 0}, {1, 2}, {0, 0}}, a);
  a = Counting(2, 2);
  a.InsertRows(1, 1);
  ExpectElements({{1, 2}, {0, 0}, {3, 0}}, a);
  a = Counting(4, 2);
  a.InsertRows(0, 1);
  ExpectElements({{0, 0}, {1, 2}, {3, 4}, {7, 8}, {0, 0}}, a);
  a = Counting(3, 3);
  a.InsertRows(1, 2);
  ExpectElements({{1, 2, 3}, {0, 0, 0}, {0, 0, 0}, {4, 5, 0}, {0, 0, 0}}, a);
}

TEST(RegularBands, InsertRowsIsExactWhereItMoves) {
  for (unsigned m = 0; m <= 4; ++m) {
    for (unsigned n = 0; n <= 3; ++n) {
      for (unsigned count = 0; count <= 3; ++count) {
        for (unsigned at = n == 1 ? 0 : m; at <= m; ++at) {
          RegularMatrix a = Counting(m, n);
          Model expected = FullOf(std::as_const(a));
          expected.insert(expected.begin() + at, count, std::vector<double>(n, 0.0));
          a.Reserve(m + 1, n);  // sometimes with room to spare, holding old doubles
          a.InsertRows(at, count);
          ExpectElements(expected, a);
        }
      }
    }
  }
}

TEST(RegularBands, InsertAndRemoveColumns) {
  for (unsigned m = 0; m <= 4; ++m) {
    for (unsigned n = 0; n <= 4; ++n) {
      for (unsigned at = 0; at <= n; ++at) {
        for (unsigned count = 0; count <= 3; ++count) {
          RegularMatrix a = Counting(m, n);
          const Model before = FullOf(std::as_const(a));
          Model expected = before;
          for (auto& row : expected) row.insert(row.begin() + at, count, 0.0);
          a.InsertCols(at, count);
          EXPECT_EQ(a.ncols(), n + count);
          ExpectElements(expected, a);
          a.RemoveCols(at, count);
          EXPECT_EQ(a.ncols(), n);
          ExpectElements(before, a);
        }
      }
    }
  }
}

TEST(RegularBands, RemoveRows) {
  for (unsigned m = 0; m <= 5; ++m) {
    for (unsigned first = 0; first <= m; ++first) {
      for (unsigned count = 0; first + count <= m; ++count) {
        RegularMatrix a = Counting(m, 3);
        Model expected = FullOf(std::as_const(a));
        expected.erase(expected.begin() + first, expected.begin() + first + count);
        a.RemoveRows(first, count);
        EXPECT_EQ(a.nrows(), m - count);
        ExpectElements(expected, a);
      }
    }
  }
  RegularMatrix a = Counting(2, 3);
  a.RemoveCols(0, 3);
  EXPECT_EQ(a.nrows(), 2u);
  EXPECT_EQ(a.ncols(), 0u);
  EXPECT_EQ(a.capacity(), 6u);
}

TEST(RegularBands, InsertionAndRemovalChecks) {
  RegularMatrix a = Counting(2, 3);
  EXPECT_CODE(a.InsertRows(3, 1), 30000);
  EXPECT_CODE(a.InsertCols(4, 1), 30000);
  EXPECT_CODE(a.RemoveRows(1, 2), 60000);
  EXPECT_CODE(a.RemoveCols(3, 1), 60000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).InsertRows(0, 1), 40000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).InsertCols(0, 1), 40000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).RemoveRows(0, 1), 60000);
  EXPECT_CODE(Dispensable<RegularMatrix>(2u, 2u).RemoveCols(0, 1), 60000);
  a.set_ok(false);
  EXPECT_CODE(a.InsertRows(0, 1), 50000);
  EXPECT_CODE(a.InsertCols(0, 1), 50000);
  EXPECT_CODE(a.RemoveCols(0, 1), 60000);
  EXPECT_NO_CODE_WHILE_PENDING(5, a.InsertRows(99, 0));  // nothing to do, nothing checked
  EXPECT_NO_CODE_WHILE_PENDING(5, a.InsertCols(99, 0));
  EXPECT_NO_CODE_WHILE_PENDING(5, a.RemoveRows(99, 0));
  EXPECT_NO_CODE_WHILE_PENDING(5, a.RemoveCols(99, 0));
}

// ---------------------------------------------------------------------------------------------------------------------

TEST(RegularLimits, TooLargeIsABadArrayLengthAndChangesNothing) {
  EXPECT_THROW(RegularMatrix(1u << 14, 1u << 14), std::bad_array_new_length);    // 2^28 doubles
  EXPECT_THROW(RegularMatrix(65536, 65536), std::bad_array_new_length);          // 2^32 wraps to 0
  EXPECT_THROW(RegularMatrix(npos, npos), std::bad_array_new_length);
  EXPECT_THROW(SymmetricMatrix(23170), std::bad_array_new_length);
  EXPECT_THROW(UpperTriangularMatrix{npos}, std::bad_array_new_length);
  EXPECT_THROW(DiagonalMatrix(1u << 28), std::bad_array_new_length);
  EXPECT_EQ(ErrorState(), 0);
  RegularMatrix a = Counting(2, 2);
  EXPECT_THROW(a.Reserve(65536, 65536), std::bad_array_new_length);
  EXPECT_THROW(a.SetSize(65536, 65536, true), std::bad_array_new_length);
  EXPECT_THROW(a.InsertRows(0, npos), std::bad_array_new_length);
  EXPECT_THROW(a.InsertCols(2, npos - 1), std::bad_array_new_length);
  ExpectElements({{1, 2}, {3, 4}}, a);
  EXPECT_EQ(a.capacity(), 4u);
  EXPECT_THROW(a.SetSize(65536, 65536, false), std::bad_array_new_length);
  EXPECT_EQ(a.nrows(), 0u);  // without keep the size goes first
  RegularMatrix flat(7, 0);
  EXPECT_THROW(flat.InsertRows(0, npos), std::bad_array_new_length);  // no storage, but no such size
  EXPECT_EQ(flat.nrows(), 7u);
  EXPECT_EQ(a.GetArrayCount(65536, 65536), npos);
  EXPECT_EQ(DiagonalMatrix().GetArrayCount(9, 9), 9u);
  EXPECT_EQ(SymmetricMatrix().GetArrayCount(23169, 23169), 268412865u);
}

}  // namespace

// Copies, assignments and multiples keep nothing of what was there: a temporary may grow by them, which it may not where
// its elements are kept.
TEST(RegularMatrix_, TemporariesGrowByWhatReplacesTheirElements) {
  const RegularMatrix a = Counting(2, 3);
  RegularMatrix& copy = Dispensable<RegularMatrix>(1u, 1u);
  EXPECT_NO_CODE(copy.Copy(a, false));
  RegularMatrix& assigned = Dispensable<RegularMatrix>(1u, 1u);
  EXPECT_NO_CODE(assigned.Assign(a.data(), 2, 3));
  RegularMatrix& multiple = Dispensable<RegularMatrix>(1u, 1u);
  EXPECT_NO_CODE(multiple.Mult(a, 2.0));
  for (const RegularMatrix* m : {&copy, &assigned, &multiple}) {
    ASSERT_EQ(m->nrows(), 2u);
    ASSERT_EQ(m->ncols(), 3u);
    for (unsigned k = 0; k < 6; ++k) EXPECT_EQ(m->data()[k], (m == &multiple ? 2.0 : 1.0) * a.data()[k]);
    m->DestroyIfDispensable();
  }
  EXPECT_CODE(Dispensable<RegularMatrix>(1u, 1u).SetSize(2, 3, true), 40000);
}
