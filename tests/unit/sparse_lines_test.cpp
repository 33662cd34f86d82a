// Row and column operations, element references and whole-matrix operations of the sparse kinds.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using Cells = std::vector<Cell>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr unsigned npos = Matrix::npos;

template <class K>
K Of(unsigned m, unsigned n, const Cells& cells) {
  K a(m, n);
  for (const Cell& c : cells) a.Put(c.row, c.col, c.value);
  return a;
}
RegularSparseMatrix Regular(unsigned m, unsigned n, const Cells& cells) { return Of<RegularSparseMatrix>(m, n, cells); }
SymmetricSparseMatrix Symmetric(unsigned n, const Cells& cells) { return Of<SymmetricSparseMatrix>(n, n, cells); }

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
    for (unsigned k = 0; k < 2 * n; ++k) {
      s.Put(random.Below(n), random.Below(n), random.Uniform());
      r.Put(random.Below(n), random.Below(n + 2), random.Uniform());
    }
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
    quorvel::test::CodeOf([&] { both = a; });  // refused when a mirror image has no place
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

TEST(SparseProxy, DividesTheDivisorByTheValue) {
  RegularSparseMatrix a = Regular(2, 2, {{0, 0, 2.0}});
  a(0, 0) /= 4.0;
  EXPECT_EQ(std::as_const(a)(0, 0), 2.0);
  a(0, 0) /= 5.0;
  EXPECT_EQ(std::as_const(a)(0, 0), 2.5);
  a(1, 1) /= 4.0;
  EXPECT_EQ(a.used, 1u);
  EXPECT_CODE(a(0, 0) /= 0.0, 82160);
  EXPECT_CODE(a(1, 1) /= -0.0, 82160);
  a.MultRow(0, 0.0);
  a(0, 0) /= 3.0;  // over a stored zero
  EXPECT_EQ(std::as_const(a)(0, 0), kInfinity);
  a(0, 0) /= 3.0;  // 3 / infinity is 0
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseProxy, SumsThatCancelRemove) {
  SymmetricSparseMatrix a(3);
  a(2, 0) = 1.5;
  a(0, 2) += 1.0;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 2.5}}));
  a(2, 0) += -2.5;
  EXPECT_EQ(a.used, 0u);
  a(1, 1) -= 2.0;
  EXPECT_EQ(CellsOf(a), (Cells{{1, 1, -2.0}}));
  a(1, 1) -= -2.0;
  EXPECT_EQ(a.used, 0u);
  a(1, 1) += 0.0;
  a(1, 1) -= 0.0;
  a(1, 1) *= 3.0;
  EXPECT_EQ(a.used, 0u);
  (a(1, 2) = 2.0) *= 0.0;
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseProxy, CopiesValuesAndOutlivesChanges) {
  RegularSparseMatrix a = Regular(2, 2, {{0, 0, 1.0}});
  SparseMatrix::proxy corner = a(1, 1);
  a(0, 1) = a(0, 0);
  EXPECT_EQ(std::as_const(a)(0, 1), 1.0);
  corner = a(0, 0);
  EXPECT_EQ(std::as_const(a)(1, 1), 1.0);
  a(0, 0) = a(1, 0);  // an absent cell
  EXPECT_EQ(std::as_const(a)(0, 0), 0.0);
  EXPECT_EQ(a.used, 2u);
  corner += 1.0;
  EXPECT_EQ(static_cast<double>(corner), 2.0);
  const SparseMatrix::proxy same(corner);
  EXPECT_EQ(static_cast<double>(same), 2.0);
}

TEST(SparseProxy, ChecksAtTheAccess) {
  RegularSparseMatrix a(2, 3);
  EXPECT_CODE(a(2, 0), 62090);
  EXPECT_CODE(a(0, 3) = 0.0, 62090);
  EXPECT_CODE(std::as_const(a)(0, 3), 62090);
  EXPECT_NO_CODE_WHILE_PENDING(5, a(1, 2) = 1.0);  // a pending code does not matter
  EXPECT_CODE_WHILE_PENDING(5, a(2, 2), 5);
  SparseMatrix::proxy last = a(1, 2);
  a.SetSize(1, 1, true);
  EXPECT_CODE(last = 1.0, 62060);  // not checked again; the insertion refuses
  EXPECT_NO_CODE(last = 0.0);
}

TEST(SparseWhole, MaxAndMinLookAtStoredValues) {
  const RegularSparseMatrix a = Regular(3, 3, {{0, 0, -2.0}, {2, 1, -1.0}});
  EXPECT_EQ(a.Max(), -1.0);
  EXPECT_EQ(a.Min(), -2.0);
  EXPECT_EQ(RegularSparseMatrix(2, 2).Max(), -kInfinity);
  EXPECT_EQ(SymmetricSparseMatrix(2).Min(), kInfinity);
  RegularSparseMatrix zeros = Regular(1, 2, {{0, 0, -3.0}});
  zeros.MultRow(0, 0.0);
  EXPECT_EQ(zeros.Max(), 0.0);  // a stored zero takes part
  EXPECT_EQ(DispensableCopy(a).Max(), -1.0);  // consumed
  EXPECT_EQ(DispensableCopy(a).Min(), -2.0);
  zeros.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(5, zeros.Min());
}

TEST(SparseWhole, ScalarAssignment) {
  RegularSparseMatrix a = Regular(2, 3, {{0, 1, 5.0}});
  a.set_nsing(3);
  a = 2.0;
  EXPECT_EQ(a.used, 6u);
  EXPECT_EQ(a.nsing(), 3);
  a = 0.0;
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.nsing(), 3);
  SymmetricSparseMatrix s(3);
  s = -1.0;
  EXPECT_EQ(s.used, 6u);
  EXPECT_EQ(s.NumberNonZero(), 9u);
  EXPECT_EQ(std::as_const(s)(2, 0), -1.0);
  EXPECT_SOUND(s);
  SparseMatrix& base = s;
  base = 4.0;
  EXPECT_EQ(std::as_const(s)(0, 2), 4.0);
  a.set_ok(false);
  EXPECT_CODE(a = 1.0, 50881);
}

TEST(SparseWhole, MultTakesSizeAndElements) {
  const RegularSparseMatrix a = Regular(2, 3, {{0, 1, 2.0}, {1, 2, -4.0}});
  RegularSparseMatrix b(5, 5);
  b.Mult(a, 0.5);
  EXPECT_EQ(b.nrows(), 2u);
  EXPECT_EQ(CellsOf(b), (Cells{{0, 1, 1.0}, {1, 2, -2.0}}));
  b.Mult(b, -1.0);
  EXPECT_EQ(CellsOf(b), (Cells{{0, 1, -1.0}, {1, 2, 2.0}}));
  RegularSparseMatrix c(4, 4);
  c = 1.0;
  c.Mult(a, 0.0);  // empties; the size stays
  EXPECT_EQ(c.nrows(), 4u);
  EXPECT_EQ(c.used, 0u);
  RegularSparseMatrix bad(1, 1);
  bad.set_ok(false);
  EXPECT_NO_CODE(c.Mult(bad, 0.0));  // the source is not looked at
  EXPECT_CODE(c.Mult(bad, 2.0), 52010);
  RegularSparseMatrix d = a;
  d *= 0.0;
  EXPECT_EQ(d.ncols(), 3u);
  EXPECT_EQ(d.used, 0u);
  RegularSparseMatrix& temporary = DispensableCopy(a);
  d.Mult(temporary, 1.0);
  EXPECT_EQ(CellsOf(d), CellsOf(a));
  temporary.DestroyIfDispensable();  // was not consumed
}

TEST(SparseWhole, RandomDrawsInTheirOrder) {
  RegularSparseMatrix a(5, 7);
  std::srand(42);
  a.SetRandom(-2.0, 3.0, 12);
  EXPECT_EQ(a.used, 12u);
  std::srand(42);
  RegularSparseMatrix expected(5, 7);
  const double step = (3.0 - -2.0) / 2147483647.0;
  while (expected.used != 12) {
    const int r = std::rand();
    const int c = std::rand();
    const int x = std::rand();
    expected.Put(static_cast<unsigned>(r) % 5, static_cast<unsigned>(c) % 7, -2.0 + x * step);
  }
  EXPECT_EQ(CellsOf(a), CellsOf(expected));
}

TEST(SparseWhole, RandomFillsAndEnds) {
  RegularSparseMatrix a(3, 4);
  a.SetRandom(1.0, 2.0, 1000);
  EXPECT_EQ(a.used, 12u);
  SymmetricSparseMatrix s(4);
  s.SetRandom(1.0, 2.0, 1000);
  EXPECT_EQ(s.used, 10u);
  std::srand(7);
  const int next = std::rand();
  std::srand(7);
  a.SetRandom(1.0, 2.0, 12);   // enough is stored
  a.SetRandom(1.0, 2.0, 3);
  RegularSparseMatrix b(3, 3);
  b.SetRandom(0.0, 0.0, 5);    // every value would be 0
  b.SetRandom(0.0, 1e-320, 5);
  RegularSparseMatrix(0, 4).SetRandom(1.0, 2.0, 5);
  EXPECT_EQ(b.used, 0u);
  EXPECT_EQ(std::rand(), next) << "something was drawn";
}

TEST(SparseWhole, RandomDiagonal) {
  RegularSparseMatrix a(3, 5);
  std::srand(3);
  a.SetRandomDiagonal(-1.0, 1.0);
  EXPECT_EQ(a.used, 3u);
  std::srand(3);
  for (unsigned i = 3; i-- > 0;) {
    EXPECT_EQ(std::as_const(a)(i, i), -1.0 + std::rand() * (2.0 / 2147483647.0)) << i;
  }
  SymmetricSparseMatrix s(2);
  s.SetRandomDiagonal(0.0, 0.0);
  EXPECT_EQ(CellsOf(s), (Cells{{0, 0, 1e-200}, {1, 1, 1e-200}}));
  s.SetRandomDiagonal(-1e-201, -1e-201);
  EXPECT_EQ(CellsOf(s), (Cells{{0, 0, -1e-200}, {1, 1, -1e-200}}));
  EXPECT_NO_CODE(RegularSparseMatrix(0, 3).SetRandomDiagonal(1.0, 2.0));
}

}  // namespace
