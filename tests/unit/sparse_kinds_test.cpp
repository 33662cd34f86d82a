// The two sparse kinds: construction, copies, moves, conversions from and to the other kinds, lines as vectors.
#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/model.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using R = RegularMatrix;
using S = SymmetricMatrix;
using U = UpperTriangularMatrix;
using L = LowerTriangularMatrix;
using D = DiagonalMatrix;
using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;
using Cells = std::vector<Cell>;

template <class To, class From>
constexpr bool converts = std::is_constructible_v<To, From&> && std::is_constructible_v<To, const From&> &&
                          std::is_constructible_v<To, From> && std::is_assignable_v<To&, From&> &&
                          std::is_assignable_v<To&, const From&> && std::is_assignable_v<To&, From>;
template <class To, class From>
constexpr bool refuses = !std::is_constructible_v<To, From&> && !std::is_constructible_v<To, const From&> &&
                         !std::is_constructible_v<To, From> && !std::is_assignable_v<To&, From&> &&
                         !std::is_assignable_v<To&, const From&> && !std::is_assignable_v<To&, From>;

static_assert(converts<RS, RS> && converts<RS, SS> && converts<RS, R> && converts<RS, S> && converts<RS, U> &&
              converts<RS, L> && converts<RS, D>);
static_assert(converts<SS, SS> && converts<SS, S> && converts<SS, D>);
static_assert(refuses<SS, RS> && refuses<SS, R> && refuses<SS, U> && refuses<SS, L>);
static_assert(converts<R, RS> && converts<R, SS> && converts<S, SS>);
static_assert(refuses<S, RS> && refuses<U, RS> && refuses<U, SS> && refuses<L, RS> && refuses<L, SS> &&
              refuses<D, RS> && refuses<D, SS>);
static_assert(!std::is_convertible_v<unsigned, SS> && !std::is_convertible_v<unsigned, RS>);
static_assert(std::is_nothrow_move_constructible_v<RS> && std::is_nothrow_move_assignable_v<RS> &&
              std::is_nothrow_move_constructible_v<SS> && std::is_nothrow_move_assignable_v<SS>);
// Moving between the kinds through their base must not be possible.
static_assert(!std::is_assignable_v<SparseMatrix&, RS> && !std::is_assignable_v<SparseMatrix&, SS&>);
static_assert(std::is_abstract_v<SparseMatrix>);

template <class K>
K Of(unsigned m, unsigned n, const Cells& cells) {
  K a(m, n);
  for (const Cell& c : cells) a.Put(c.row, c.col, c.value);
  return a;
}

template <class K>
class SparseKinds : public ::testing::Test {};
using Kinds = ::testing::Types<RS, SS>;
TYPED_TEST_SUITE(SparseKinds, Kinds);

TYPED_TEST(SparseKinds, NamesAndSlots) {
  constexpr bool symmetric = std::is_same_v<TypeParam, SS>;
  TypeParam a(3, 3);
  const Matrix& base = a;
  EXPECT_STREQ(base.ClassName(), symmetric ? "SymmetricSparseMatrix" : "RegularSparseMatrix");
  EXPECT_EQ(base.IsSymmetric(), symmetric);
  EXPECT_EQ(base.kind(), symmetric ? Matrix::symmetric_sparse : Matrix::regular_sparse);
  EXPECT_EQ(base.nrows(), 3u);
  EXPECT_EQ(a.ndim(), 3u);
  EXPECT_EQ(TypeParam(2, 3).ndim(), 0u);
  EXPECT_EQ(TypeParam().nrows(), 0u);
  EXPECT_EQ(a.nsing(), -1);
}

TYPED_TEST(SparseKinds, CopiesAreDeep) {
  TypeParam a = Of<TypeParam>(3, 3, {{0, 2, 4.0}, {1, 1, -1.0}});
  a.set_nsing(2);
  const TypeParam b(a), c(std::as_const(a));
  a(0, 2) = 5.0;
  EXPECT_EQ(CellsOf(b), (Cells{{0, 2, 4.0}, {1, 1, -1.0}}));
  EXPECT_EQ(CellsOf(c), CellsOf(b));
  EXPECT_EQ(b.nsing(), -1);  // a copy of the elements, not of the count
  TypeParam d(7, 7);
  d.set_nsing(9);
  d = b;
  EXPECT_EQ(CellsOf(d), CellsOf(b));
  EXPECT_EQ(d.nrows(), 3u);
  EXPECT_EQ(d.nsing(), 9);
}

TYPED_TEST(SparseKinds, CopiesAndBlockSizes) {
  TypeParam a(4, 4);
  a.SetGrowBy(2);
  a.Put(0, 0, 1.0);
  const TypeParam copy(a);
  EXPECT_EQ(copy.growBy, 3u);
  EXPECT_EQ(copy.HeapReserved(), a.HeapReserved());
  TypeParam chosen;
  chosen.SetGrowBy(6);
  chosen = a;
  EXPECT_EQ(chosen.growBy, 7u);
  TypeParam open(2, 2);
  open = a;
  EXPECT_EQ(open.growBy, 3u);
}

TYPED_TEST(SparseKinds, ADispensableSourceGivesItsStore) {
  TypeParam& a = Dispensable<TypeParam>(3u, 3u);
  a.Put(1, 2, 5.0);
  a.set_nsing(4);
  const SparseElement* e = a.Cell_Loc(1, 2);
  const long before = Allocations();
  TypeParam b(a);
  EXPECT_EQ(Allocations(), before);
  EXPECT_EQ(b.Cell_Loc(1, 2), e);
  EXPECT_EQ(b.nsing(), 4);
  EXPECT_FALSE(b.dispensable());
  TypeParam& c = DispensableCopy(b);
  e = c.Cell_Loc(1, 2);
  b = c;
  EXPECT_EQ(b.Cell_Loc(1, 2), e);
}

TYPED_TEST(SparseKinds, Moves) {
  TypeParam a = Of<TypeParam>(3, 3, {{1, 2, 5.0}});
  a.set_nsing(4);
  const SparseElement* e = a.Cell_Loc(1, 2);
  int pending = 5;
  abort_set(pending);
  TypeParam b(std::move(a));  // checks nothing
  EXPECT_EQ(b.Cell_Loc(1, 2), e);
  EXPECT_EQ(b.nsing(), 4);
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.growBy, 0u);
  EXPECT_EQ(a.nsing(), -1);
  TypeParam c = Of<TypeParam>(2, 2, {{0, 0, 1.0}});
  c.set_ok(false);
  c = std::move(b);
  EXPECT_TRUE(c.ok());
  EXPECT_EQ(c.Cell_Loc(1, 2), e);
  c = std::move(static_cast<TypeParam&>(c));
  EXPECT_EQ(c.Cell_Loc(1, 2), e);
  abort_reset();
  TypeParam& d = DispensableCopy(c);
  TypeParam f(std::move(d));  // a dispensable source is destroyed
  EXPECT_EQ(f.used, 1u);
  c = std::move(DispensableCopy(f));
  EXPECT_EQ(CellsOf(c), CellsOf(f));
  EXPECT_SOUND(c);
}

TYPED_TEST(SparseKinds, ADispensableMatrixAssignedToItselfSurvives) {
  TypeParam& a = Dispensable<TypeParam>(2u, 2u);
  a.Put(0, 1, 3.0);
  a = a;
  a = std::move(static_cast<TypeParam&>(a));
  a.Swap(a);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 1, 3.0}}));
  a.DestroyIfDispensable();
}

TYPED_TEST(SparseKinds, SwapKeepsTheDispensableFlags) {
  TypeParam& a = Dispensable<TypeParam>(2u, 2u);
  a.Put(0, 1, 3.0);
  a.set_nsing(1);
  a.set_ok(false);
  TypeParam b(4, 4);
  a.Swap(b);
  EXPECT_TRUE(a.dispensable() && a.ok() && a.nrows() == 4 && a.nsing() == -1);
  EXPECT_TRUE(!b.dispensable() && !b.ok() && b.used == 1 && b.nsing() == 1);
  a.DestroyIfDispensable();
}

TYPED_TEST(SparseKinds, UnaryMinus) {
  const TypeParam a = Of<TypeParam>(3, 3, {{0, 2, 4.0}, {1, 1, -1.0}});
  a.set_nsing(2);
  const TypeParam b(-a);
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 4.0}, {1, 1, -1.0}}));
  EXPECT_EQ(CellsOf(b), (Cells{{0, 2, -4.0}, {1, 1, 1.0}}));
  EXPECT_EQ(b.nsing(), -1);
  TypeParam& temporary = DispensableCopy(a);
  temporary.set_nsing(6);
  TypeParam& result = -temporary;
  EXPECT_EQ(&result, &temporary);
  EXPECT_TRUE(result.dispensable());
  EXPECT_EQ(result.nsing(), 6);
  const TypeParam c(result);
  EXPECT_EQ(CellsOf(c), CellsOf(b));
  TypeParam& fresh = -a;
  EXPECT_TRUE(fresh.dispensable());
  fresh.DestroyIfDispensable();
}

TYPED_TEST(SparseKinds, DiagonalSums) {
  TypeParam a = Of<TypeParam>(3, 3, {{0, 0, 1.0}, {0, 2, 4.0}, {2, 2, -3.0}});
  D d(3);
  d(0, 0) = -1.0;
  d(1, 1) = 2.0;
  a.set_nsing(8);
  a += d;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 4.0}, {1, 1, 2.0}, {2, 2, -3.0}}));
  EXPECT_EQ(a.nsing(), 8);
  a -= d;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 0, 1.0}, {0, 2, 4.0}, {2, 2, -3.0}}));
  EXPECT_SOUND(a);
  a += Dispensable<D>(3u);
  a -= DispensableCopy(d);
  EXPECT_CODE(a += Dispensable<D>(2u), 40000);
  EXPECT_NO_CODE((TypeParam() += D()));
}

TEST(SparseKinds, BothTrianglesOfASymmetricSource) {
  const SS s = Of<SS>(3, 3, {{0, 2, 4.0}});
  const RS r(s);
  EXPECT_EQ(CellsOf(r), (Cells{{0, 2, 4.0}, {2, 0, 4.0}}));
  RS assigned(1, 9);
  assigned.set_nsing(3);
  assigned = DispensableCopy(s);
  EXPECT_EQ(CellsOf(assigned), CellsOf(r));
  EXPECT_EQ(assigned.nsing(), 3);
  EXPECT_SOUND(assigned);
  SS zero = s;
  zero.MultRow(0, 0.0);
  EXPECT_EQ(RS(zero).used, 2u);  // stored zeros are copied, with their mirror images
}

TEST(SparseKinds, NumberNonZero) {
  EXPECT_EQ(Of<SS>(3, 3, {{0, 0, 1.0}, {0, 2, 4.0}}).NumberNonZero(), 3u);
  EXPECT_EQ(SS().NumberNonZero(), 0u);
}

template <class K>
class SparseFromDense : public ::testing::Test {};
using DenseKinds = ::testing::Types<R, S, U, L, D>;
TYPED_TEST_SUITE(SparseFromDense, DenseKinds);

TYPED_TEST(SparseFromDense, ThereAndBack) {
  for (unsigned n = 0; n <= 6; ++n) {
    Random random(n);
    TypeParam a(n, n);
    FillMatrix(a, Pattern::kSpecial, random);
    a.set_nsing(5);
    RS sparse(2, 7);
    sparse = 1.0;
    sparse.set_nsing(3);
    sparse = a;
    EXPECT_EQ(sparse.nsing(), 3);
    ExpectElements(FullOf(std::as_const(a)), sparse);
    for (const Cell& cell : CellsOf(sparse)) EXPECT_NE(cell.value, 0.0);
    EXPECT_SOUND(sparse);
    const R back(sparse);
    ExpectElements(FullOf(std::as_const(a)), back);
    EXPECT_EQ(RS(DispensableCopy(a)).nrows(), n);
    if constexpr (std::is_same_v<TypeParam, S> || std::is_same_v<TypeParam, D>) {
      const SS symmetric(a);
      ExpectElements(FullOf(std::as_const(a)), symmetric);
      EXPECT_SOUND(symmetric);
      const S dense(symmetric);
      ExpectElements(FullOf(std::as_const(a)), dense);
      ExpectElements(FullOf(std::as_const(a)), R(symmetric));
      SS target(1);
      target = DispensableCopy(a);
      EXPECT_EQ(CellsOf(target), CellsOf(symmetric));
    }
  }
}

TYPED_TEST(SparseFromDense, Checks) {
  TypeParam bad(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(RS{bad}, 52260);
  RS target(2, 2);
  EXPECT_CODE(target = bad, 52260);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = Dispensable<TypeParam>(2u, 2u), 52260);  // the source dies all the same
  EXPECT_CODE_WHILE_PENDING(8, RS(Dispensable<TypeParam>(2u, 2u)), 8);
  if constexpr (std::is_same_v<TypeParam, S> || std::is_same_v<TypeParam, D>) {
    EXPECT_CODE(SS{bad}, (std::is_same_v<TypeParam, S> ? 50140 : 52260));
  }
  // A dispensable target cannot be resized; it and the source die.
  EXPECT_CODE(Dispensable<RS>(1u, 1u) = Dispensable<TypeParam>(2u, 2u), 40000);
  EXPECT_CODE(Dispensable<RS>(5u, 5u) = Dispensable<TypeParam>(2u, 2u), 60000);
}

TEST(SparseToDense, CountsSizesAndCodes) {
  const RS r = Of<RS>(2, 3, {{0, 1, 2.0}, {1, 2, -3.0}});
  R dense(4, 4);
  dense = 9.0;
  dense.set_nsing(6);
  dense = r;
  EXPECT_EQ(dense.nsing(), 6);
  ExpectElements({{0, 2, 0}, {0, 0, -3}}, dense);
  R same(2, 3);
  same = 7.0;
  same = DispensableCopy(r);
  ExpectElements({{0, 2, 0}, {0, 0, -3}}, same);
  SS s = Of<SS>(2, 2, {{0, 1, 5.0}, {1, 1, 1.0}});
  s.MultRow(1, 0.0, 1);
  dense = s;
  ExpectElements({{0, 5}, {5, 0}}, dense);
  S symmetric(3);
  symmetric = 4.0;
  symmetric.set_nsing(2);
  symmetric = DispensableCopy(s);
  EXPECT_EQ(symmetric.nsing(), 2);
  ExpectElements({{0, 5}, {5, 0}}, symmetric);
  RS bad_r(1, 1);
  bad_r.set_ok(false);
  SS bad_s(1);
  bad_s.set_ok(false);
  EXPECT_CODE(R{bad_r}, 52320);
  EXPECT_CODE(R{bad_s}, 52310);
  EXPECT_CODE(S{bad_s}, 52300);
  EXPECT_CODE(symmetric = bad_s, 52300);
  EXPECT_FALSE(symmetric.ok());
  // A dispensable target survives this check, unlike the others.
  S& target = Dispensable<S>(2u);
  EXPECT_CODE_WHILE_PENDING(4, target = Dispensable<SS>(2u), 4);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = DispensableCopy(s), 52300);
  target.DestroyIfDispensable();
  // A dispensable regular target keeps its elements when resized, and may not grow.
  EXPECT_CODE(Dispensable<R>(1u, 1u) = DispensableCopy(r), 40000);
  R& wide = Dispensable<R>(1u, 1u);
  wide = s;  // without keeping it may
  EXPECT_EQ(wide.nrows(), 2u);
  wide.DestroyIfDispensable();
}

// Elements of the symmetric kind below the diagonal convert like those above it.
TEST(SparseToDense, BelowTheDiagonal) {
  SS below(3), above(3);
  SparseElement* e = below.SparseMatrixInsert(nullptr, 2, 0, 4.0);
  below.SparseMatrixInsert(e, 2, 1, 5.0);
  EXPECT_EQ(below.Cell_Loc(2, 0), nullptr);  // in the row list of row 2 only
  above.Put(2, 0, 4.0);
  above.Put(2, 1, 5.0);
  ExpectElements(FullOf(S(above)), S(below));
  ExpectElements(FullOf(R(above)), R(below));
  EXPECT_EQ(below.SumRow(2), 0.0);
  below.ClearRow(2, 0, 0);
  EXPECT_EQ(below.used, 1u);
  below.RemoveRows(2, 1);
  EXPECT_EQ(below.used, 0u);
}

TEST(SparseLineVectors, Regular) {
  const RS a = Of<RS>(3, 4, {{1, 0, 1.0}, {1, 2, 2.0}, {1, 3, 3.0}, {2, 2, 4.0}});
  RS out(4, 1);
  a.GetEntireRow(1, out);
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {2, 0, 2.0}, {3, 0, 3.0}}));
  a.GetLimitedRow(1, out, 1, 2);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 2.0}}));
  a.GetEntireCol(2, out);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 4.0}}));
  a.GetLimitedCol(2, out, 0, 1);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}}));
  EXPECT_CODE(a.GetEntireCol(3, out), 62210);  // wider than high
  EXPECT_CODE(a.GetEntireCol(4, out), 62220);
  EXPECT_CODE(a.GetEntireRow(3, out), 62230);
  EXPECT_SOUND(out);
}

TEST(SparseLineVectors, ZerosAreSkippedAndBoundsRefused) {
  RS a = Of<RS>(2, 4, {{0, 0, 1.0}, {0, 1, 2.0}, {0, 3, 3.0}});
  a.MultRow(0, 0.0, 1, 1);
  RS out(2, 1);
  EXPECT_CODE(a.GetLimitedRow(0, out, 0, 3), 62060);
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}}));  // what was written before
  RS none(4, 0);
  EXPECT_CODE(a.GetLimitedRow(0, none, 0, 3), 62060);
  EXPECT_NO_CODE(a.GetLimitedRow(1, none, 0, 3));
  SS symmetric(4);
  a.GetRowElements(0, 0, 3, symmetric);
  EXPECT_EQ(CellsOf(symmetric), (Cells{{0, 0, 1.0}, {0, 3, 3.0}}));
  EXPECT_SOUND(symmetric);
  a.GetLimitedRow(0, a, 0, 3);  // into itself: emptied first
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.ncols(), 4u);
}

TEST(SparseLineVectors, CellsStoredTwiceEndWithTheLast) {
  RS a(1, 3);
  a.SparseMatrixInsert(0, 1, 2.0);
  a.SparseMatrixInsert(0, 1, 1.0);  // in front
  a.Put(0, 2, 5.0);
  RS out(3, 1);
  a.GetEntireRow(0, out);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 5.0}}));
  EXPECT_SOUND(out);
}

TEST(SparseLineVectors, SymmetricOnOneSide) {
  const SS a = Of<SS>(5, 5, {{0, 2, 1.0}, {1, 2, 2.0}, {2, 2, 3.0}, {2, 3, 4.0}, {2, 4, 5.0}});
  RS out(5, 1);
  a.GetLimitedRow(2, out, 2, 4);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 3.0}, {3, 0, 4.0}, {4, 0, 5.0}}));
  a.GetLimitedCol(2, out, 1, 2);
  EXPECT_EQ(CellsOf(out), (Cells{{1, 0, 2.0}, {2, 0, 3.0}}));
  a.GetLimitedCol(0, out, 0, 4);
  EXPECT_EQ(CellsOf(out), (Cells{{2, 0, 1.0}}));
}

// Across the diagonal the right part is buffered by column and read back from 0 on.
TEST(SparseLineVectors, SymmetricAcrossTheDiagonal) {
  const SS a = Of<SS>(8, 8, {{0, 1, 1.0}, {1, 1, 2.0}, {1, 2, 3.0}, {1, 4, 5.0}});
  RS out(8, 1);
  a.GetLimitedCol(1, out, 0, 7);  // last - i = 6: columns 2 and 4 fit the buffer
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {1, 0, 2.0}, {4, 0, 3.0}, {6, 0, 5.0}}));
  RS row(8, 1);
  a.GetLimitedRow(1, row, 0, 7);
  EXPECT_EQ(CellsOf(row), CellsOf(out));
  EXPECT_CODE(a.GetLimitedCol(1, out, 0, 4), 62060);  // last - i = 3: column 4 does not
  EXPECT_EQ(CellsOf(out), (Cells{{0, 0, 1.0}, {1, 0, 2.0}}));
  EXPECT_CODE(a.GetLimitedCol(8, out, 0, 1), 62240);
  EXPECT_CODE(a.GetLimitedCol(0, out, 2, 1), 62240);
  EXPECT_CODE(a.GetLimitedCol(0, out, 0, 8), 62240);
  EXPECT_CODE(a.GetLimitedRow(0, out, 0, Matrix::npos), 62240);
  EXPECT_CODE(a.GetEntireCol(0, out), 62240);
  EXPECT_CODE(a.GetEntireRow(0, out), 62240);
}

}  // namespace
