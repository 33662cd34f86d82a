// Row and column operations of the sparse kinds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using Cells = std::vector<Cell>;

RegularSparseMatrix Regular(unsigned m, unsigned n, const Cells& cells) {
  return SparseOf<RegularSparseMatrix>(m, n, cells);
}
SymmetricSparseMatrix Symmetric(unsigned n, const Cells& cells) {
  return SparseOf<SymmetricSparseMatrix>(n, n, cells);
}
constexpr unsigned npos = Matrix::npos;

TEST(SparseLines, EmptyStretch) {
  const RegularSparseMatrix a = Regular(2, 3, {{0, 1, 2.0}});
  EXPECT_EQ(a.SumRow(1, 0, npos), 0.0);
  EXPECT_EQ(a.SumRow(0, 2, 2), 0.0);
  EXPECT_EQ(a.SumSqCol(0, 0, npos), 0.0);
  EXPECT_FALSE(std::signbit(a.SumRow(1)));
}

TEST(SparseLines, SumsOfASymmetricLineSeeBothSides) {
  const SymmetricSparseMatrix a = Symmetric(5, {{1, 3, 2.0}, {3, 4, 5.0}});
  EXPECT_EQ(a.SumRow(3, 0, npos), 7.0);
  EXPECT_EQ(a.SumCol(3, 0, npos), 7.0);
  EXPECT_EQ(a.SumSqRow(3, 0, npos), 29.0);
  EXPECT_EQ(a.SumRow(3, 0, 3), 2.0);
  EXPECT_EQ(a.SumRow(3, 3, 4), 5.0);
  EXPECT_EQ(a.SumRow(3, 2, 4), 5.0);
  EXPECT_EQ(a.SumRow(1, 0, npos), 2.0);
}

// Every stretch of every line against the full matrix; the order of the sum is that of the index.
TEST(SparseLines, SumsAgainstTheFullMatrix) {
  Random random(11);
  for (unsigned n = 1; n <= 8; ++n) {
    SymmetricSparseMatrix s(n);
    RegularSparseMatrix r(n, n + 2);
    const auto scatter = [&random](SparseMatrix& a) {
      for (unsigned k = 0; k < 2 * a.rows; ++k) {
        const unsigned i = random.Below(a.rows);
        const unsigned j = random.Below(a.cols);
        a.Put(i, j, random.Uniform());
      }
    };
    scatter(s);
    scatter(r);
    const auto check = [](const SparseMatrix& a) {
      for (unsigned i = 0; i < a.rows; ++i) {
        for (unsigned first = 0; first < a.cols; ++first) {
          double sum = 0.0, squares = 0.0;
          for (unsigned last = first; last < a.cols; ++last) {
            if (a.Cell_Loc(i, last) != nullptr) {
              sum += a(i, last);
              squares += a(i, last) * a(i, last);
            }
            EXPECT_TRUE(SameBits(a.SumRow(i, first, last), sum)) << i << ' ' << first << ' ' << last;
            EXPECT_TRUE(SameBits(a.SumSqRow(i, first, last), squares));
            digest::Feed(a.SumRow(i, first, last));
          }
        }
      }
    };
    check(s);
    check(r);
    for (unsigned j = 0; j < n; ++j) {
      double sum = 0.0;
      for (unsigned i = 0; i < n; ++i) sum += std::as_const(s)(i, j);
      EXPECT_TRUE(SameBits(s.SumCol(j), sum));
    }
  }
}

TEST(SparseLines, EachCellOfASymmetricLineChangesOnce) {
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned first = 0; first < 4; ++first) {
      for (unsigned last = first; last < 4; ++last) {
        SymmetricSparseMatrix a(4), b(4);
        a = 1.0;
        b = 1.0;
        a.MultRow(i, 3.0, first, last);
        b.MultCol(i, 3.0, first, last);
        for (unsigned r = 0; r < 4; ++r) {
          for (unsigned c = 0; c < 4; ++c) {
            const bool in_row = r == i && first <= c && c <= last, in_col = c == i && first <= r && r <= last;
            EXPECT_EQ(std::as_const(a)(r, c), in_row || in_col ? 3.0 : 1.0);
          }
        }
        EXPECT_EQ(CellsOf(a), CellsOf(b));
        a.NegateRow(i, first, last);
        EXPECT_EQ(std::as_const(a)(i, first), -3.0);
      }
    }
  }
}

TEST(SparseLines, ProductsOfZeroStayStored) {
  RegularSparseMatrix a = Regular(2, 3, {{1, 0, 2.0}, {1, 2, -4.0}});
  a.MultRow(1, 0.0, 0, npos);
  EXPECT_EQ(CellsOf(a), (Cells{{1, 0, 0.0}, {1, 2, -0.0}}));
  EXPECT_EQ(a.used, 2u);
}

TEST(SparseLines, ClearRowIsClampedByTheRowCount) {
  RegularSparseMatrix a(2, 5);
  a = 1.0;
  a.ClearRow(0, 0, npos);
  EXPECT_EQ(a.used, 8u);
  for (unsigned j = 0; j < 5; ++j) EXPECT_EQ(std::as_const(a)(0, j), j < 2 ? 0.0 : 1.0);
  EXPECT_SOUND(a);
  EXPECT_CODE(a.ClearRow(0, 2, 4), 32020);  // clamped to column 1
  EXPECT_NO_CODE(a.ClearRow(1, 1, 4));
  EXPECT_EQ(a.used, 7u);
  RegularSparseMatrix high(5, 2);
  high = 1.0;
  high.ClearRow(4);
  EXPECT_TRUE(high.IsRowEmpty(4));
  high.ClearCol(1);  // rows 0 and 1 only
  EXPECT_EQ(high.used, 6u);
  EXPECT_CODE(high.ClearCol(0, 2, 4), 32030);
  EXPECT_SOUND(high);
}

TEST(SparseLines, ClearRowOfASymmetricMatrixTakesItsStoredPart) {
  SymmetricSparseMatrix a(4);
  a = 1.0;
  a.ClearRow(2);
  EXPECT_EQ(a.used, 8u);
  EXPECT_EQ(std::as_const(a)(2, 1), 1.0);
  EXPECT_EQ(std::as_const(a)(2, 3), 0.0);
  a.ClearCol(2);
  EXPECT_EQ(a.used, 6u);
  EXPECT_EQ(std::as_const(a)(2, 1), 0.0);
  EXPECT_SOUND(a);
  a.ClearRow(2, 0, 3);  // an empty run leaves the pool alone
  EXPECT_SOUND(a);
}

TEST(SparseLines, ClearIgnoresTheState) {
  RegularSparseMatrix a = Regular(2, 2, {{0, 0, 1.0}});
  a.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(9, a.ClearRow(0));
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseLines, InsertAndRemove) {
  RegularSparseMatrix a = Regular(3, 3, {{0, 0, 1.0}, {1, 1, 2.0}, {2, 0, 3.0}, {2, 2, 4.0}});
  a.InsertRows(1, 2);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 0, 1.0}, {3, 1, 2.0}, {4, 0, 3.0}, {4, 2, 4.0}}));
  a.InsertCols(0, 1);
  a.InsertCols(4, 1);
  EXPECT_EQ(a.ncols(), 5u);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 1, 1.0}, {3, 2, 2.0}, {4, 1, 3.0}, {4, 3, 4.0}}));
  EXPECT_SOUND(a);
  a.RemoveRows(0, 2);
  a.RemoveCols(1, 1);
  EXPECT_EQ(CellsOf(a), (Cells{{1, 1, 2.0}, {2, 2, 4.0}}));
  EXPECT_SOUND(a);
  a.RemoveRows(0, 3);
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.rowHeads, nullptr);
  EXPECT_EQ(a.ncols(), 4u);
  EXPECT_SOUND(a);
  a.InsertRows(0, 2);
  a.Put(1, 3, 1.0);
  EXPECT_SOUND(a);
}

TEST(SparseLines, CountZeroIsNotChecked) {
  RegularSparseMatrix a(2, 2);
  a.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(9, a.InsertRows(100, 0));
  EXPECT_NO_CODE_WHILE_PENDING(9, a.InsertCols(100, 0));
  EXPECT_NO_CODE_WHILE_PENDING(9, a.RemoveRows(100, 0));
  EXPECT_NO_CODE_WHILE_PENDING(9, a.RemoveCols(100, 0));
}

// Opening or removing lines alone takes a symmetric matrix apart; it stays readable and can be emptied.
TEST(SparseLines, OneSidedChangesOfASymmetricMatrix) {
  for (unsigned trial = 0; trial < 200; ++trial) {
    SCOPED_TRACE(trial);
    Random random(trial);
    SymmetricSparseMatrix a(5);
    Scatter(a, 12, random);
    if (random.Chance(2)) a.SparseMatrixInsert(nullptr, 4, random.Below(5), 7.0);
    for (unsigned k = 0; k < 3; ++k) {
      switch (random.Below(4)) {
        case 0: a.InsertRows(random.Below(a.rows + 1), 1); break;
        case 1: a.InsertCols(random.Below(a.cols + 1), 1); break;
        case 2: a.RemoveRows(random.Below(a.rows), 1); break;
        default: a.RemoveCols(random.Below(a.cols), 1); break;
      }
    }
    for (unsigned i = 0; i < a.rows; ++i) {
      a.NegateRow(i);
      digest::Feed(a.SumRow(i));
      digest::Feed(a.IsRowEmpty(i));
    }
    for (unsigned j = 0; j < a.cols; ++j) {
      a.MultCol(j, 2.0);
      digest::Feed(a.SumSqCol(j));
    }
    const RegularMatrix full(a);
    digest::Feed(full);
    digest::Feed(a.NumberNonZero());
    RegularSparseMatrix both;
    CodeOf([&] { both = a; });  // refused when a mirror image has no place
    CodeOf([&] { RegularSparseMatrix(full).Swap(both); });
    const unsigned n = std::max(a.rows, a.cols);
    a.SetSize(n, n, true);
    a.SetSize(0, 0, true);
    EXPECT_EQ(a.used, 0u);
    EXPECT_SOUND(a);
  }
}

TEST(SparseLines, IsEmpty) {
  const RegularSparseMatrix a = Regular(2, 3, {{1, 2, 1.0}});
  EXPECT_TRUE(a.IsRowEmpty(0));
  EXPECT_FALSE(a.IsRowEmpty(1));
  EXPECT_TRUE(a.IsColEmpty(1));
  EXPECT_FALSE(a.IsColEmpty(2));
  const SymmetricSparseMatrix s = Symmetric(4, {{1, 3, 1.0}});
  for (unsigned i = 0; i < 4; ++i) {
    EXPECT_EQ(s.IsRowEmpty(i), i == 0 || i == 2);
    EXPECT_EQ(s.IsColEmpty(i), i == 0 || i == 2);
  }
}

}  // namespace
