// Every code of the sparse kinds: when it is thrown, what the pending code does to it, what dies and what stays.
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

constexpr unsigned npos = Matrix::npos;
constexpr int kPending = 777;

// A code that is thrown as it stands: a pending code is thrown in its place, nothing is destroyed, and while the call
// is right neither a pending code nor a matrix that is not ok matters.
void ExpectFixed(const std::function<void(RS&)>& wrong, int code, const std::function<void(RS&)>& right) {
  RS& a = Dispensable<RS>(2u, 3u);
  a.Put(0, 0, 1.0);
  EXPECT_CODE(wrong(a), code);
  EXPECT_CODE_WHILE_PENDING(kPending, wrong(a), kPending);
  EXPECT_EQ(a.used, 1u);
  a.set_ok(false);
  EXPECT_CODE(wrong(a), code);
  EXPECT_NO_CODE_WHILE_PENDING(kPending, right(a));
  EXPECT_SOUND(a);
  a.DestroyIfDispensable();
}

TEST(SparseCodes, Fixed) {
  SparseElement own{nullptr, nullptr, 1.0, 1, 2};
  RS out(3, 1);
  const auto link = [&own](RS& a) {
    a.SparseMatrixRowInsert(1, 2, &own);
    a.SparseMatrixRowRemove(&own);
    a.SparseMatrixColInsert(1, 2, &own);
    a.SparseMatrixColRemove(&own);
  };
  ExpectFixed([&](RS& a) { a.SparseMatrixRowInsert(2, 0, &own); }, 62040, link);
  ExpectFixed([&](RS& a) { a.SparseMatrixRowInsert(0, 3, &own); }, 62040, link);
  ExpectFixed([&](RS& a) { a.SparseMatrixColInsert(2, 0, &own); }, 62050, link);
  ExpectFixed([&](RS& a) { a.SparseMatrixColInsert(0, 3, &own); }, 62050, link);
  ExpectFixed([](RS& a) { a.SparseMatrixInsert(2, 0, 1.0); }, 62060, [](RS& a) { a.SparseMatrixInsert(1, 2, 1.0); });
  ExpectFixed([](RS& a) { a.SparseMatrixInsert(0, 3, 1.0); }, 62060, [](RS& a) { a.Put(1, 2, 1.0); });
  ExpectFixed([](RS& a) { a.Put(2, 0, 1.0); }, 62060, [](RS& a) { a.Put(2, 0, 0.0); });
  ExpectFixed([](RS& a) { a.Put(0, npos, 1.0); }, 62060, [](RS& a) { a.Put(0, npos, -0.0); });
  ExpectFixed([](RS& a) { a(2, 0); }, 62090, [](RS& a) { a(1, 2); });
  ExpectFixed([](RS& a) { std::as_const(a)(0, 3); }, 62090, [](RS& a) { std::as_const(a)(1, 2); });
  ExpectFixed([](RS& a) { a.ThrowSparseMatrixAccessor(2, 2); }, 62090,
              [](RS& a) { a.ThrowSparseMatrixAccessor(1, 2); });
  ExpectFixed([](RS& a) { a.GetFirstInRow(2); }, 62170, [](RS& a) { a.GetFirstInRow(1); });
  ExpectFixed([](RS& a) { a.IsRowEmpty(2); }, 62170, [](RS& a) { a.IsRowEmpty(1); });
  ExpectFixed([](RS& a) { a.GetFirstInCol(3); }, 62180, [](RS& a) { a.GetFirstInCol(2); });
  ExpectFixed([](RS& a) { a.IsColEmpty(3); }, 62180, [](RS& a) { a.IsColEmpty(2); });
  ExpectFixed([](RS& a) { a.SparseMatrixInsert(nullptr, 2, 0, 1.0); }, 62190,
              [](RS& a) { a.SparseMatrixInsert(nullptr, 1, 2, 1.0); });
  ExpectFixed([](RS& a) { a.SparseMatrixInsert(nullptr, 0, 3, 1.0); }, 62190,
              [](RS& a) { a.SparseMatrixInsert(a.rowHeads[0], 0, 2, 1.0); });
  const auto row = [&out](RS& a) { a.GetRowElements(1, 0, 2, out); };
  ExpectFixed([&](RS& a) { a.GetRowElements(2, 0, 0, out); }, 62200, row);
  ExpectFixed([&](RS& a) { a.GetRowElements(0, 2, 1, out); }, 62200, row);
  ExpectFixed([&](RS& a) { a.GetLimitedRow(0, out, 0, 3); }, 62200, row);
  ExpectFixed([&](RS& a) { a.GetLimitedRow(0, out, 0, npos); }, 62200, row);
  const auto column = [&out](RS& a) { a.GetColElements(1, 0, 1, out); };
  ExpectFixed([&](RS& a) { a.GetColElements(0, 1, 0, out); }, 62210, column);
  ExpectFixed([&](RS& a) { a.GetLimitedCol(0, out, 0, 2); }, 62210, column);
  ExpectFixed([&](RS& a) { a.GetLimitedCol(2, out, 0, 1); }, 62210, column);  // a column, but not a row
  ExpectFixed([&](RS& a) { a.GetEntireCol(3, out); }, 62220, [&](RS& a) { a.GetEntireCol(1, out); });
  ExpectFixed([&](RS& a) { a.GetEntireRow(2, out); }, 62230, [&](RS& a) { a.GetEntireRow(1, out); });
  ExpectFixed([](RS& a) { a.ClearRow(2); }, 32020, [](RS& a) { a.ClearRow(1); });
  ExpectFixed([](RS& a) { a.ClearRow(0, 1, 0); }, 32020, [](RS& a) { a.ClearRow(1, 1, 1); });
  ExpectFixed([](RS& a) { a.ClearRow(0, 2, npos); }, 32020, [](RS& a) { a.ClearRow(1, 1, npos); });
  ExpectFixed([](RS& a) { a.ClearCol(3); }, 32030, [](RS& a) { a.ClearCol(2); });
  ExpectFixed([](RS& a) { a.ClearCol(0, 3, npos); }, 32030, [](RS& a) { a.ClearCol(2, 2, 2); });
  ExpectFixed([](RS& a) { a(0, 0) /= 0.0; }, 82160, [](RS& a) { a(1, 0) /= 1.0; });
  ExpectFixed([](RS& a) { a(1, 1) /= 0.0; }, 82160, [](RS& a) { a(1, 1) /= 2.0; });
}

TEST(SparseCodes, ColumnsOfAHighMatrix) {
  // Two rows more than columns: indices 2 and 3 pass the comparison with the row count.
  RS a(4, 2), out(4, 1);
  EXPECT_CODE(a.GetColElements(2, 0, 1, out), 62210);
  EXPECT_CODE(a.GetColElements(3, 0, 1, out), 62210);
  EXPECT_NO_CODE(a.GetColElements(1, 0, 3, out));
}

TEST(SparseCodes, TheOutputIsNotClearedByARefusedRead) {
  RS a(2, 3), out(3, 1);
  out.Put(1, 0, 5.0);
  EXPECT_CODE(a.GetRowElements(0, 0, 3, out), 62200);
  EXPECT_CODE(a.GetEntireRow(2, out), 62230);
  EXPECT_EQ(out.used, 1u);
}

TEST(SparseCodes, EmptyLines) {
  RS no_columns(2, 0), no_rows(0, 2), out(1, 1);
  EXPECT_CODE(no_columns.GetEntireRow(0, out), 62200);
  EXPECT_CODE(no_rows.GetEntireCol(0, out), 62210);
  EXPECT_CODE(no_columns.SumRow(0), 40000);
  EXPECT_CODE(no_columns.SumRow(0, 0, 0), 40000);
  EXPECT_CODE(no_rows.SumSqCol(1, 0, npos - 1), 40000);
  EXPECT_CODE(no_columns.MultCol(0, 1.0), 40000);
  EXPECT_CODE(no_rows.NegateRow(0), 40000);
  EXPECT_CODE(SS().SumRow(0), 40000);
  EXPECT_CODE(no_rows.ClearRow(0), 32020);
  EXPECT_NO_CODE(no_columns.ClearRow(1));
  EXPECT_CODE(no_columns.ClearCol(0), 32030);
}

// Line operations with the ordinary check: 50000, 40000, and a dispensable matrix dies.
TEST(SparseCodes, LineOperations) {
  const std::function<void(RS&, unsigned, unsigned, unsigned)> rows[] = {
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.SumRow(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.SumSqRow(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.NegateRow(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.MultRow(i, 2.0, f, l); }};
  const std::function<void(RS&, unsigned, unsigned, unsigned)> cols[] = {
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.SumCol(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.SumSqCol(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.NegateCol(i, f, l); },
      [](RS& a, unsigned i, unsigned f, unsigned l) { a.MultCol(i, 2.0, f, l); }};
  for (const bool by_row : {true, false}) {
    for (const auto& line : by_row ? rows : cols) {
      const auto make = [by_row]() -> RS& { return by_row ? Dispensable<RS>(2u, 3u) : Dispensable<RS>(3u, 2u); };
      RS a(by_row ? 2 : 3, by_row ? 3 : 2);
      EXPECT_NO_CODE(line(a, 1, 0, npos));
      EXPECT_NO_CODE(line(a, 1, 2, 2));
      EXPECT_CODE(line(a, 2, 0, npos), 40000);
      EXPECT_CODE(line(a, 1, 0, 3), 40000);
      EXPECT_CODE(line(a, 1, 2, 1), 40000);
      EXPECT_CODE(line(a, 1, 3, npos), 40000);
      EXPECT_CODE_WHILE_PENDING(kPending, line(a, 1, 0, npos), kPending);
      a.set_ok(false);
      EXPECT_CODE(line(a, 1, 0, npos), 50000);
      EXPECT_CODE(line(make(), 2, 0, 0), 40000);  // destroyed: the leak check sees it if not
      EXPECT_CODE_WHILE_PENDING(kPending, line(make(), 1, 0, 0), kPending);
    }
  }
}

TEST(SparseCodes, OpeningAndRemovingLines) {
  RS a(3, 2);
  EXPECT_CODE(a.InsertRows(4, 1), 30000);
  EXPECT_CODE(a.InsertCols(3, 1), 30000);
  EXPECT_CODE(a.RemoveRows(2, 2), 60000);
  EXPECT_CODE(a.RemoveCols(1, npos), 60000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).InsertRows(0, 1), 40000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).InsertCols(0, 1), 40000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).RemoveRows(0, 1), 60000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).RemoveCols(0, 1), 60000);
  EXPECT_CODE_WHILE_PENDING(kPending, a.InsertRows(0, 1), kPending);
  EXPECT_CODE_WHILE_PENDING(kPending, a.RemoveCols(0, 1), kPending);
  EXPECT_THROW(a.InsertRows(0, npos), std::bad_alloc);
  EXPECT_THROW(a.InsertCols(0, npos - 1), std::bad_alloc);
  a.set_ok(false);
  EXPECT_CODE(a.InsertRows(0, 1), 50000);
  EXPECT_CODE(a.RemoveRows(0, 1), 60000);
  EXPECT_TRUE(a.nrows() == 3 && a.ncols() == 2);
}

TEST(SparseCodes, SetSize) {
  SS s(3);
  s = 1.0;
  EXPECT_CODE(s.SetSize(2, 3, true), 40000);
  EXPECT_CODE(s.SetSize(0, 3, true), 40000);  // before anything is cleared
  EXPECT_EQ(s.used, 6u);
  EXPECT_CODE_WHILE_PENDING(kPending, s.SetSize(2, 2, true), kPending);
  s.set_ok(false);
  EXPECT_CODE(s.SetSize(2, 3, true), 50000);
  EXPECT_CODE(s.SetSize(3, 3, true), 50000);
  EXPECT_EQ(s.used, 6u);
  EXPECT_CODE(Dispensable<SS>(3u).SetSize(2, 1, true), 40000);
  EXPECT_CODE_WHILE_PENDING(kPending, Dispensable<SS>(3u).SetSize(3, 3, true), kPending);
  EXPECT_CODE(Dispensable<SS>(3u).SetSize(4, 4, true), 40000);
  EXPECT_CODE(Dispensable<SS>(3u).SetSize(2, 2, true), 60000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).SetSize(4, 2, true), 40000);  // rows come first
  EXPECT_CODE(Dispensable<RS>(3u, 3u).SetSize(2, 4, true), 60000);
  EXPECT_CODE(Dispensable<RS>(3u, 3u).SetSize(3, 4, true), 40000);
  RS& a = Dispensable<RS>(3u, 3u);
  EXPECT_NO_CODE(a.SetSize(3, 3, false));
  EXPECT_NO_CODE(a.SetSize(0, 9, false));  // the way through an empty matrix is open
  EXPECT_EQ(a.ncols(), 9u);
  EXPECT_NO_CODE(a.SetSize(0, 0, false));
  a.DestroyIfDispensable();
}

TEST(SparseCodes, SetSizeToZeroDropsEverything) {
  RS a(3, 3);
  a = 1.0;
  const std::size_t before = a.HeapReserved();
  a.SetSize(3, 0, true);
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.nrows(), 3u);
  EXPECT_EQ(a.HeapReserved(), before - 4 * 3);  // the pool stays
  a.SetSize(5, 4, false);
  a.Put(4, 3, 1.0);
  EXPECT_EQ(a.growBy, 23u);
  EXPECT_SOUND(a);
}

template <class K>
class SparseAssignmentCodes : public ::testing::Test {};
using Kinds = ::testing::Types<RS, SS>;
TYPED_TEST_SUITE(SparseAssignmentCodes, Kinds);

TYPED_TEST(SparseAssignmentCodes, MarkTheirTarget) {
  using K = TypeParam;
  K bad(2, 2), target(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(K{bad}, 50140);
  EXPECT_CODE(K{std::as_const(bad)}, 50140);
  EXPECT_CODE(target = bad, 50140);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = Dispensable<K>(2u, 2u), 50140);
  K fine(2, 2);
  EXPECT_CODE_WHILE_PENDING(kPending, fine = Dispensable<K>(2u, 2u), kPending);
  EXPECT_FALSE(fine.ok());
  EXPECT_CODE_WHILE_PENDING(kPending, K(Dispensable<K>(2u, 2u)), kPending);
  fine.set_ok(true);
  EXPECT_CODE(fine.Copy(bad, false), 52010);
  EXPECT_FALSE(fine.ok());
  EXPECT_CODE(fine.Copy(Dispensable<K>(2u, 2u), false), 52010);  // a failing check takes its operands along
  EXPECT_CODE(fine.Mult(target, 0.0), 50000);
}

TYPED_TEST(SparseAssignmentCodes, NegationScalarAndDiagonal) {
  using K = TypeParam;
  K bad(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(-bad, 50450);
  EXPECT_CODE(-std::as_const(bad), 50450);
  K& dying = Dispensable<K>(2u, 2u);
  dying.set_ok(false);
  EXPECT_CODE(-dying, 50450);
  EXPECT_CODE_WHILE_PENDING(kPending, -Dispensable<K>(2u, 2u), kPending);
  EXPECT_CODE(bad = 1.0, 50881);
  EXPECT_CODE_WHILE_PENDING(kPending, Dispensable<K>(2u, 2u) = 0.0, kPending);
  EXPECT_CODE(bad *= 2.0, 50000);
  EXPECT_CODE(bad += DiagonalMatrix(2), 50000);
  EXPECT_CODE(bad -= Dispensable<DiagonalMatrix>(2u), 50000);
  K fine(2, 2);
  EXPECT_CODE(fine -= Dispensable<DiagonalMatrix>(3u), 40000);
  EXPECT_CODE(fine += Dispensable<DiagonalMatrix>(1u), 40000);
}

TEST(SparseCodes, SymmetricIntoRegular) {
  SS bad(2);
  bad.set_ok(false);
  EXPECT_CODE(RS{bad}, 52010);
  RS target;
  EXPECT_CODE(target = bad, 52010);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = Dispensable<SS>(2u), 52010);
  EXPECT_CODE(Dispensable<RS>(1u, 1u) = Dispensable<SS>(2u), 40000);  // cannot grow; both die
}

TEST(SparseCodes, CopyMatIntoTheSymmetricKind) {
  SS target(2);
  RegularMatrix wide(2, 3), square(2, 2);
  square = 1.0;
  EXPECT_CODE(target.CopyMat(wide), 40000);
  EXPECT_CODE(target.CopyMat(Dispensable<RegularMatrix>(2u, 3u)), 40000);
  EXPECT_NO_CODE(target.CopyMat(square));  // below the diagonal an element enters its row list only
  EXPECT_EQ(target.used, 4u);
  EXPECT_EQ(std::as_const(target)(1, 0), 1.0);
  target.Clear();
  EXPECT_SOUND(target);
  RS copied(1, 1);
  copied.CopyMat<RegularMatrix>(square);
  EXPECT_EQ(copied.used, 4u);
}

}  // namespace
