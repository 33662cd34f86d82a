// Conversions between the sparse and the other kinds: which exist, what they write, what is consumed.
#include <gtest/gtest.h>

#include <type_traits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/model.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

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
TEST(SparseConversions, BothTrianglesOfASymmetricSource) {
  const SS s = SparseOf<SS>(3, 3, {{0, 2, 4.0}});
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
  const RS r = SparseOf<RS>(2, 3, {{0, 1, 2.0}, {1, 2, -3.0}});
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
  SS s = SparseOf<SS>(2, 2, {{0, 1, 5.0}, {1, 1, 1.0}});
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

}  // namespace
