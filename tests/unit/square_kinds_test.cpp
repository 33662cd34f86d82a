// The square dense kinds: access, sizing, insertion, removal, line operations, readers, against plain models.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;

namespace {

constexpr unsigned npos = 0xFFFFFFFFu;

template <class K>
K Counting(unsigned n) {
  K a(n);
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = k + 1;
  return a;
}

template <class K>
class SquareKind : public ::testing::Test {};
using SquareKinds = ::testing::Types<SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix>;
TYPED_TEST_SUITE(SquareKind, SquareKinds);

template <class K>
constexpr int write_code = std::is_same_v<K, DiagonalMatrix> ? 60090 : 60021;

TYPED_TEST(SquareKind, Access) {
  TypeParam a(3);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      a = 0.0;
      if (Keeps<TypeParam>(i, j)) {
        a(i, j) = 4.0;
        EXPECT_EQ(a(i, j), 4.0);
        EXPECT_EQ(std::as_const(a)(i, j), 4.0);
        if (std::as_const(a).IsSymmetric()) {
          EXPECT_EQ(a(j, i), 4.0);
        }
        a(i, j) += 2.0;
        a(i, j) -= 1.0;
        a(i, j) *= 6.0;
        a(i, j) /= 4.0;
        EXPECT_EQ(a(i, j), 7.5);
      } else {
        EXPECT_CODE(a(i, j) = 0.0, write_code<TypeParam>);
        EXPECT_CODE(a(i, j) = 3.0, write_code<TypeParam>);
        EXPECT_CODE(a(i, j) += 0.0, write_code<TypeParam>);
        EXPECT_EQ(a(i, j), 0.0);
      }
    }
  }
  EXPECT_CODE(static_cast<double>(a(3, 0)), 60090);
  EXPECT_CODE(static_cast<double>(a(0, 3)), 60090);
  EXPECT_CODE(std::as_const(a)(3, 3), 60090);
  EXPECT_CODE(a(3, 3) = 1.0, write_code<TypeParam>);
  EXPECT_CODE_WHILE_PENDING(8, a(3, 3) = 1.0, 8);
  EXPECT_NO_CODE_WHILE_PENDING(8, a(2, 2) = 1.0);
}

TYPED_TEST(SquareKind, ProxiesCopyValues) {
  TypeParam a = Counting<TypeParam>(3), b(3);
  b(1, 1) = a(2, 2);
  EXPECT_EQ(b(1, 1), a(2, 2));
  a(2, 2) = 99.0;
  EXPECT_NE(b(1, 1), a(2, 2));
}

TYPED_TEST(SquareKind, ConstructionFromRowsAndColumns) {
  const int code = std::is_same_v<TypeParam, DiagonalMatrix> ? 40210 : 40180;
  EXPECT_CODE(TypeParam(2, 3), code);
  EXPECT_CODE_WHILE_PENDING(4, TypeParam(2, 3), 4);
  EXPECT_NO_CODE_WHILE_PENDING(4, TypeParam(3, 3));
  EXPECT_FALSE((std::is_convertible_v<unsigned, TypeParam>));
}

TYPED_TEST(SquareKind, GetArrayCountOfOblongSizesThrowsZero) {
  EXPECT_CODE(TypeParam().GetArrayCount(2, 3), 0);
  EXPECT_EQ(ErrorState(), 0);
  EXPECT_CODE_WHILE_PENDING(4, TypeParam().GetArrayCount(2, 3), 4);
  EXPECT_CODE(Dispensable<TypeParam>(2u).GetArrayCount(2, 3), 0);  // destroyed
}

TYPED_TEST(SquareKind, SetSize) {
  for (unsigned n = 0; n <= 5; ++n) {
    for (unsigned size = 0; size <= 6; ++size) {
      TypeParam a = Counting<TypeParam>(n);
      Model expected = Zeros(size, size);
      for (unsigned i = 0; i < std::min(n, size); ++i) {
        for (unsigned j = 0; j < std::min(n, size); ++j) expected[i][j] = a(i, j);
      }
      const unsigned capacity = a.capacity();
      a.SetSize(size, size, true);
      ExpectElements(expected, a);
      EXPECT_EQ(a.capacity(), std::max(capacity, a.StoredCount()));
    }
  }
  TypeParam a(2);
  EXPECT_CODE(a.SetSize(2, 3, false), 40000);
  EXPECT_CODE(Dispensable<TypeParam>(2u).SetSize(2, 3, false), 40000);
}

TYPED_TEST(SquareKind, InsertionAndRemoval) {
  for (unsigned n = 0; n <= 5; ++n) {
    for (unsigned at = 0; at <= n; ++at) {
      for (unsigned count = 0; count <= 3; ++count) {
        TypeParam a = Counting<TypeParam>(n);
        a.set_nsing(3);
        const Model before = FullOf(std::as_const(a));
        Model expected = Zeros(n + count, n + count);
        for (unsigned i = 0; i < n; ++i) {
          for (unsigned j = 0; j < n; ++j) expected[i + (i >= at ? count : 0)][j + (j >= at ? count : 0)] = before[i][j];
        }
        a.InsertRowsAndCols(at, count);
        ExpectElements(expected, a);
        a.RemoveRowsAndCols(at, count);
        ExpectElements(before, a);
        EXPECT_EQ(a.nsing(), 3);
      }
    }
  }
  TypeParam a = Counting<TypeParam>(4);
  a.RemoveRowsAndCols(0, 4);
  EXPECT_EQ(a.ndim(), 0u);
  EXPECT_GT(a.capacity(), 0u);
}

TYPED_TEST(SquareKind, RemovalOfAnyBand) {
  for (unsigned n = 0; n <= 6; ++n) {
    for (unsigned at = 0; at <= n; ++at) {
      for (unsigned count = 0; at + count <= n; ++count) {
        TypeParam a = Counting<TypeParam>(n);
        Model expected = FullOf(std::as_const(a));
        expected.erase(expected.begin() + at, expected.begin() + at + count);
        for (auto& row : expected) row.erase(row.begin() + at, row.begin() + at + count);
        a.RemoveRowsAndCols(at, count);
        ExpectElements(expected, a);
      }
    }
  }
}

TYPED_TEST(SquareKind, InsertionAndRemovalChecks) {
  TypeParam a(3);
  EXPECT_CODE(a.InsertRowsAndCols(4, 1), 30000);
  EXPECT_CODE(a.RemoveRowsAndCols(2, 2), 60000);
  EXPECT_CODE(Dispensable<TypeParam>(3u).InsertRowsAndCols(0, 1), 40000);
  EXPECT_CODE(Dispensable<TypeParam>(3u).RemoveRowsAndCols(0, 1), 60000);
  EXPECT_THROW(a.InsertRowsAndCols(0, npos), std::bad_array_new_length);
  EXPECT_EQ(a.ndim(), 3u);
  a.set_ok(false);
  EXPECT_CODE(a.InsertRowsAndCols(0, 1), 50000);
  EXPECT_CODE(a.RemoveRowsAndCols(0, 1), 60000);
  EXPECT_NO_CODE_WHILE_PENDING(5, a.InsertRowsAndCols(9, 0));
  EXPECT_NO_CODE_WHILE_PENDING(5, a.RemoveRowsAndCols(9, 0));
}

TYPED_TEST(SquareKind, Blocks) {
  const TypeParam a = Counting<TypeParam>(4);
  for (unsigned r0 = 0; r0 < 4; ++r0) {
    for (unsigned r1 = r0; r1 < 4; ++r1) {
      for (unsigned c0 = 0; c0 < 4; ++c0) {
        for (unsigned c1 = c0; c1 < 4; ++c1) {
          const RegularMatrix block(a(r0, r1, c0, c1));
          Model expected = Zeros(r1 + 1 - r0, c1 + 1 - c0);
          for (unsigned i = r0; i <= r1; ++i) {
            for (unsigned j = c0; j <= c1; ++j) expected[i - r0][j - c0] = a(i, j);
          }
          ExpectElements(expected, block);
        }
      }
    }
  }
  EXPECT_CODE(a(0, 4, 0, 0), 40000);
  EXPECT_CODE(DispensableCopy(a)(0, 0, 0, 4), 40000);
  const RegularMatrix whole(DispensableCopy(a)(0, 3, 0, 3));
  ExpectElements(FullOf(a), whole);
}

TYPED_TEST(SquareKind, LimitedLines) {
  TypeParam a = Counting<TypeParam>(4);
  a.data()[1] = 0.0;
  const auto read = [&a](bool row, unsigned index, unsigned first, unsigned last) {
    std::vector<double> out(6, -1.0);
    unsigned f = first, l = last;
    if (row) {
      a.GetLimitedRow(index, out.data(), f, l);
    } else {
      a.GetLimitedCol(index, out.data(), f, l);
    }
    // The naive reading of the same span.
    std::vector<double> expected(6, -1.0);
    unsigned expected_first = 5, expected_last = 0;
    const unsigned end = std::min(3u, last);
    for (unsigned k = first; k <= end; ++k) {
      const double v = index >= 4 ? 0.0 : row ? std::as_const(a)(index, k) : std::as_const(a)(k, index);
      expected[k - first] = 0.0;
      if (v == 0.0) continue;
      expected[k - first] = v;
      expected_last = k;
      expected_first = std::min(expected_first, k);
    }
    EXPECT_EQ(out, expected);
    EXPECT_EQ(f, expected_first);
    EXPECT_EQ(l, expected_last);
  };
  for (const bool row : {true, false}) {
    for (unsigned index = 0; index < 6; ++index) {
      for (unsigned first = 0; first < 6; ++first) {
        for (const unsigned last : {0u, 1u, 2u, 3u, 4u, npos}) read(row, index, first, last);
      }
    }
  }
  double out[4];
  unsigned first = 7, last = 8;
  a.GetEntireRow(2, out, first, last);
  unsigned limited_first = 0, limited_last = 3;
  double limited[4];
  a.GetLimitedRow(2, limited, limited_first, limited_last);
  EXPECT_EQ(first, limited_first);
  EXPECT_EQ(last, limited_last);
  EXPECT_TRUE(SameBits(out, limited, 4));
  a.GetEntireCol(0, out, first, last);
  TypeParam empty;
  first = last = 9;
  empty.GetEntireCol(0, out, first, last);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(last, 0u);
}

TYPED_TEST(SquareKind, LimitedLineChecks) {
  TypeParam a(3);
  a.set_ok(false);
  double out[3];
  unsigned first = 1, last = 1;
  EXPECT_CODE(a.GetLimitedRow(0, out, first, last), 51514);
  EXPECT_CODE(a.GetLimitedCol(0, out, first, last), 51513);
  EXPECT_EQ(first, 1u);
  EXPECT_CODE(a.GetEntireRow(0, out, first, last), 51514);
  EXPECT_EQ(first, 0u);  // set before the check
  EXPECT_EQ(last, 2u);
  EXPECT_CODE(a.GetEntireCol(0, out, first, last), 51513);
  EXPECT_CODE_WHILE_PENDING(4, Dispensable<TypeParam>(1u).GetEntireRow(0, out, first, last), 4);
}

TEST(LimitedLines, OfRegular) {
  RegularMatrix a(2, 4);
  a(1, 1) = 5.0;
  a(1, 2) = -3.0;
  double out[4] = {9, 9, 9, 9};
  unsigned first = 0, last = 3;
  a.GetLimitedRow(1, out, first, last);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(last, 2u);
  EXPECT_TRUE(SameBits(out, std::vector<double>{0, 5, -3, 0}.data(), 4));
  first = 2;
  last = npos;
  a.GetLimitedRow(1, out, first, last);
  EXPECT_EQ(first, 2u);
  EXPECT_EQ(last, 2u);
  EXPECT_EQ(out[0], -3.0);
  EXPECT_EQ(out[1], 0.0);
  a.GetEntireRow(0, out, first, last);
  EXPECT_EQ(first, 5u);  // columns + 1: nothing found
  EXPECT_EQ(last, 0u);
  EXPECT_TRUE(SameBits(out, std::vector<double>{0, 0, 0, 0}.data(), 4));
  a.GetEntireCol(0, out, first, last);
  EXPECT_EQ(first, 3u);  // rows + 1
  a.GetEntireCol(2, out, first, last);
  EXPECT_EQ(first, 1u);
  EXPECT_EQ(last, 1u);
  a.set_ok(false);
  EXPECT_CODE(a.GetLimitedRow(0, out, first, last), 51514);
  EXPECT_CODE(a.GetLimitedCol(0, out, first, last), 51513);
}

TEST(LimitedLines, DiagonalBesideTheDiagonal) {
  const DiagonalMatrix a = Counting<DiagonalMatrix>(3);
  double out[2] = {7, 7};
  unsigned first = 0, last = 1;
  a.GetLimitedRow(2, out, first, last);
  EXPECT_EQ(first, 4u);
  EXPECT_EQ(last, 0u);
  EXPECT_EQ(out[0], 0.0);
  EXPECT_EQ(out[1], 0.0);
}

// ---------------------------------------------------------------------------------------------------------------------
// Line operations of the packed kinds.

template <class K>
class PackedKind : public ::testing::Test {};
using PackedKinds = ::testing::Types<SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix>;
TYPED_TEST_SUITE(PackedKind, PackedKinds);

// The same operation on the full matrix: a line of a symmetric matrix is a row and its column.
template <class K>
void ApplyToModel(Model& full, bool row, unsigned index, unsigned first, unsigned last,
                  const std::function<double(double)>& op) {
  for (unsigned k = first; k <= last; ++k) {
    double& e = row ? full[index][k] : full[k][index];
    e = op(e);
    if (std::is_same_v<K, SymmetricMatrix>) (row ? full[k][index] : full[index][k]) = e;
  }
}

template <class K>
bool StoredPart(bool row, unsigned index, unsigned n, unsigned& min, unsigned& max) {
  min = 0;
  max = n - 1;
  if (std::is_same_v<K, SymmetricMatrix>) return index < n;
  const bool ahead = row == std::is_same_v<K, UpperTriangularMatrix>;
  (ahead ? min : max) = index;
  return index < n;
}

TYPED_TEST(PackedKind, LineOperations) {
  const unsigned n = 5;
  for (const bool row : {true, false}) {
    for (unsigned index = 0; index <= n; ++index) {
      for (unsigned first = 0; first <= n; ++first) {
        for (unsigned last = 0; last <= n; ++last) {
          SCOPED_TRACE(::testing::Message() << (row ? "row " : "col ") << index << ", " << first << ".." << last);
          unsigned min, max;
          const bool in = StoredPart<TypeParam>(row, index, n, min, max);
          const bool valid = in && min <= first && first <= last && last <= max;
          TypeParam a = Counting<TypeParam>(n);
          const Model before = FullOf(std::as_const(a));
          if (!valid) {
            EXPECT_CODE(row ? a.SetRow(index, 7.0, first, last) : a.SetCol(index, 7.0, first, last), 40000);
            EXPECT_CODE(row ? a.SumRow(index, first, last) : a.SumCol(index, first, last), 40000);
            ExpectElements(before, a);
            continue;
          }
          double sum = 0.0, squares = 0.0;
          for (unsigned k = first; k <= last; ++k) {
            const double e = row ? before[index][k] : before[k][index];
            sum += e;
            squares += e * e;
          }
          EXPECT_EQ(row ? a.SumRow(index, first, last) : a.SumCol(index, first, last), sum);
          EXPECT_EQ(row ? a.SumSqRow(index, first, last) : a.SumSqCol(index, first, last), squares);
          Model expected = before;
          row ? a.MultRow(index, 3.0, first, last) : a.MultCol(index, 3.0, first, last);
          ApplyToModel<TypeParam>(expected, row, index, first, last, [](double e) { return e * 3.0; });
          ExpectElements(expected, a);
          row ? a.NegateRow(index, first, last) : a.NegateCol(index, first, last);
          ApplyToModel<TypeParam>(expected, row, index, first, last, [](double e) { return -e; });
          ExpectElements(expected, a);
          row ? a.SetRow(index, 0.5, first, last) : a.SetCol(index, 0.5, first, last);
          ApplyToModel<TypeParam>(expected, row, index, first, last, [](double) { return 0.5; });
          ExpectElements(expected, a);
          row ? a.ClearRow(index, first, last) : a.ClearCol(index, first, last);
          ApplyToModel<TypeParam>(expected, row, index, first, last, [](double) { return 0.0; });
          ExpectElements(expected, a);
        }
      }
    }
  }
}

TYPED_TEST(PackedKind, LineDefaults) {
  const unsigned n = 4;
  for (unsigned index = 0; index < n; ++index) {
    for (const bool row : {true, false}) {
      unsigned min, max;
      StoredPart<TypeParam>(row, index, n, min, max);
      const TypeParam a = Counting<TypeParam>(n);
      EXPECT_EQ(row ? a.SumRow(index) : a.SumCol(index),
                row ? a.SumRow(index, min, max) : a.SumCol(index, min, max));
      EXPECT_EQ(row ? a.SumRow(index, max, npos) : a.SumCol(index, max, npos),
                row ? a.SumRow(index, max, max) : a.SumCol(index, max, max));
      EXPECT_CODE(row ? a.SumRow(index, npos, max) : a.SumCol(index, npos, max), 40000);
    }
  }
  EXPECT_CODE(TypeParam().SumRow(0), 40000);
  TypeParam bad(2);
  bad.set_ok(false);
  EXPECT_CODE(bad.NegateCol(5), 50000);
}

TYPED_TEST(PackedKind, Bands) {
  for (unsigned at = 0; at <= 4; ++at) {
    for (unsigned count = 0; at + count <= 4; ++count) {
      for (const bool row : {true, false}) {
        TypeParam a = Counting<TypeParam>(4);
        Model expected = FullOf(std::as_const(a));
        for (unsigned i = at; i < at + count; ++i) {
          for (unsigned k = 0; k < 4; ++k) {
            const unsigned r = row ? i : k, c = row ? k : i;
            if (!Keeps<TypeParam>(r, c)) continue;
            expected[r][c] = 0.25;
            if (std::is_same_v<TypeParam, SymmetricMatrix>) expected[c][r] = 0.25;
          }
        }
        row ? a.SetRows(0.25, at, count) : a.SetCols(0.25, at, count);
        ExpectElements(expected, a);
      }
    }
  }
  TypeParam a(3);
  EXPECT_CODE(a.SetRows(1.0, 2, 2), 60000);
  EXPECT_CODE(Dispensable<TypeParam>(3u).SetCols(1.0, 0, 1), 60000);
  a.set_ok(false);
  EXPECT_CODE(a.SetCols(1.0, 0, 1), 60000);
  EXPECT_NO_CODE_WHILE_PENDING(3, a.SetRows(1.0, 9, 0));
}

TEST(PackedLines, WorkedExamples) {
  UpperTriangularMatrix u(3);
  u.SetRow(1, 5.0);
  ExpectElements({{0, 0, 0}, {0, 5, 5}, {0, 0, 0}}, u);
  u = 0.0;
  u.SetCol(1, 5.0);
  ExpectElements({{0, 5, 0}, {0, 5, 0}, {0, 0, 0}}, u);
  EXPECT_CODE(u.SetRow(1, 5.0, 0, 2), 40000);
  LowerTriangularMatrix l(3);
  l.SetRow(2, 4.0);
  ExpectElements({{0, 0, 0}, {0, 0, 0}, {4, 4, 4}}, l);
  l(0, 0) = 1.0;
  EXPECT_EQ(l.SumCol(0), 5.0);
  SymmetricMatrix s(3);
  s.SetRow(1, 7.0);
  ExpectElements({{0, 7, 0}, {7, 7, 7}, {0, 7, 0}}, s);
  UpperTriangularMatrix grown(2);
  grown(0, 0) = 1.0;
  grown(0, 1) = 2.0;
  grown(1, 1) = 3.0;
  grown.InsertRowsAndCols(1, 2);
  ExpectElements({{1, 0, 0, 2}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 3}}, grown);
  grown.RemoveRowsAndCols(1, 2);
  ExpectElements({{1, 2}, {0, 3}}, grown);
  DiagonalMatrix d(3);
  for (unsigned i = 0; i < 3; ++i) d(i, i) = i + 1;
  d.InsertRowsAndCols(1, 2);
  EXPECT_TRUE(SameBits(d.data(), std::vector<double>{1, 0, 0, 2, 3}.data(), 5));
  d.RemoveRowsAndCols(1, 2);
  EXPECT_TRUE(SameBits(d.data(), std::vector<double>{1, 2, 3}.data(), 3));
}

TEST(SymmetricMatrix_, SwapRowsAndCols) {
  for (unsigned n = 1; n <= 6; ++n) {
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) {
        SymmetricMatrix a = Counting<SymmetricMatrix>(n);
        Model expected = FullOf(std::as_const(a));
        std::swap(expected[i], expected[j]);
        for (auto& row : expected) std::swap(row[i], row[j]);
        a.SwapRowsAndCols(i, j);
        ExpectElements(expected, a);
      }
    }
  }
  SymmetricMatrix a(3);
  EXPECT_CODE(a.SwapRowsAndCols(0, 3), 60021);
  EXPECT_CODE(a.SwapRowsAndCols(3, 3), 60021);
  a.set_dispensable(true);
  EXPECT_CODE(a.SwapRowsAndCols(0, 3), 60021);  // and the matrix lives on
  a.set_dispensable(false);
}

TEST(PackedLayout, IsTheUpperTriangleByRows) {
  SymmetricMatrix s(3);
  UpperTriangularMatrix u(3);
  LowerTriangularMatrix l(3);
  double value = 1.0;
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) {
      s(j, i) = value;
      u(i, j) = value;
      l(j, i) = value;
      value += 1.0;
    }
  }
  for (unsigned k = 0; k < 6; ++k) {
    EXPECT_EQ(s.data()[k], k + 1.0);
    EXPECT_EQ(u.data()[k], k + 1.0);
    EXPECT_EQ(l.data()[k], k + 1.0);
  }
}

}  // namespace
