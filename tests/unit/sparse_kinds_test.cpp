// The two sparse kinds: construction, copies, moves, swaps, negation, diagonal sums.
#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

using Cells = std::vector<Cell>;

static_assert(std::is_nothrow_move_constructible_v<RS> && std::is_nothrow_move_assignable_v<RS> &&
              std::is_nothrow_move_constructible_v<SS> && std::is_nothrow_move_assignable_v<SS>);
// Moving between the kinds through their base must not be possible.
static_assert(!std::is_assignable_v<SparseMatrix&, RS> && !std::is_assignable_v<SparseMatrix&, SS&>);
static_assert(std::is_abstract_v<SparseMatrix>);

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
  TypeParam a = SparseOf<TypeParam>(3, 3, {{0, 2, 4.0}, {1, 1, -1.0}});
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
  TypeParam a = SparseOf<TypeParam>(3, 3, {{1, 2, 5.0}});
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
  TypeParam c = SparseOf<TypeParam>(2, 2, {{0, 0, 1.0}});
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
  a = static_cast<TypeParam&>(a);
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
  const TypeParam a = SparseOf<TypeParam>(3, 3, {{0, 2, 4.0}, {1, 1, -1.0}});
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
  TypeParam a = SparseOf<TypeParam>(3, 3, {{0, 0, 1.0}, {0, 2, 4.0}, {2, 2, -3.0}});
  DiagonalMatrix d(3);
  d(0, 0) = -1.0;
  d(1, 1) = 2.0;
  a.set_nsing(8);
  a += d;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 4.0}, {1, 1, 2.0}, {2, 2, -3.0}}));
  EXPECT_EQ(a.nsing(), 8);
  a -= d;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 0, 1.0}, {0, 2, 4.0}, {2, 2, -3.0}}));
  EXPECT_SOUND(a);
  a += Dispensable<DiagonalMatrix>(3u);
  a -= DispensableCopy(d);
  EXPECT_CODE(a += Dispensable<DiagonalMatrix>(2u), 40000);
  EXPECT_NO_CODE((TypeParam() += DiagonalMatrix()));
}

TEST(SparseKinds, NumberNonZero) {
  EXPECT_EQ(SparseOf<SS>(3, 3, {{0, 0, 1.0}, {0, 2, 4.0}}).NumberNonZero(), 3u);
  EXPECT_EQ(SS().NumberNonZero(), 0u);
}

}  // namespace
