// Conversions between dense kinds: which exist, what they write, the singularity count, what is consumed.
#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

template <class To, class From>
constexpr bool converts = std::is_constructible_v<To, From&> && std::is_constructible_v<To, const From&> &&
                          std::is_assignable_v<To&, From&> && std::is_assignable_v<To&, const From&>;
template <class To, class From>
constexpr bool refuses =
    !std::is_constructible_v<To, From&> && !std::is_constructible_v<To, const From&> &&
    !std::is_constructible_v<To, From> && !std::is_assignable_v<To&, From&> &&
    !std::is_assignable_v<To&, const From&> && !std::is_assignable_v<To&, From>;

static_assert(converts<R, R> && converts<R, S> && converts<R, U> && converts<R, L> && converts<R, D>);
static_assert(converts<S, S> && converts<S, D> && converts<U, U> && converts<U, D> && converts<L, L> &&
              converts<L, D> && converts<D, D>);
// Nothing narrows, and triangular kinds do not convert into one another.
static_assert(refuses<S, R> && refuses<S, U> && refuses<S, L>);
static_assert(refuses<U, R> && refuses<U, S> && refuses<U, L>);
static_assert(refuses<L, R> && refuses<L, S> && refuses<L, U>);
static_assert(refuses<D, R> && refuses<D, S> && refuses<D, U> && refuses<D, L>);
// A size is not a matrix.
static_assert(!std::is_convertible_v<unsigned, S> && !std::is_convertible_v<unsigned, U> &&
              !std::is_convertible_v<unsigned, L> && !std::is_convertible_v<unsigned, D>);

template <class K>
class ToRegular : public ::testing::Test {};
using Sources = ::testing::Types<S, U, L, D>;
TYPED_TEST_SUITE(ToRegular, Sources);

TYPED_TEST(ToRegular, WritesEveryElement) {
  for (unsigned n = 0; n <= 6; ++n) {
    Random random(n);
    TypeParam source = Filled<TypeParam>(Pattern::kSignedZero, random, n);
    source.set_nsing(4);
    R target(2, 5);
    target = 7.0;
    target = source;
    EXPECT_EQ(target.nsing(), 4);
    ExpectElements(FullOf(std::as_const(source)), target);
    const R built(source);
    ExpectElements(FullOf(std::as_const(source)), built);
  }
}

TYPED_TEST(ToRegular, ConsumesAndChecks) {
  R target(1, 1);
  target = Dispensable<TypeParam>(3u);
  EXPECT_EQ(target.nrows(), 3u);
  const R built(Dispensable<TypeParam>(2u));
  EXPECT_EQ(built.nrows(), 2u);
  TypeParam bad(2);
  bad.set_ok(false);
  EXPECT_CODE(R(bad), 50140);
  EXPECT_CODE(target = bad, 50140);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = Dispensable<TypeParam>(2u), 50140);
}

template <class K>
class FromDiagonal : public ::testing::Test {};
using Targets = ::testing::Types<S, U, L>;
TYPED_TEST_SUITE(FromDiagonal, Targets);

TYPED_TEST(FromDiagonal, WritesTheDiagonal) {
  D d(3);
  for (unsigned i = 0; i < 3; ++i) d(i, i) = i + 1.0;
  d(1, 1) = -0.0;
  d.set_nsing(2);
  TypeParam target(5);
  target = 9.0;
  target.set_nsing(7);
  target = d;
  ExpectElements({{1, 0, 0}, {0, -0.0, 0}, {0, 0, 3}}, target);
  // The symmetric kind keeps its count, the triangular kinds take the source's.
  EXPECT_EQ(target.nsing(), (std::is_same_v<TypeParam, S> ? 7 : 2));
  const TypeParam built(d);
  EXPECT_EQ(built.nsing(), (std::is_same_v<TypeParam, S> ? -1 : 2));
  ExpectElements({{1, 0, 0}, {0, -0.0, 0}, {0, 0, 3}}, built);
}

TYPED_TEST(FromDiagonal, ConsumesAndChecks) {
  const int code = std::is_same_v<TypeParam, S> ? 50240 : std::is_same_v<TypeParam, U> ? 50330 : 50380;
  TypeParam target(1);
  target = Dispensable<D>(3u);
  EXPECT_EQ(target.ndim(), 3u);
  const TypeParam built(Dispensable<D>(2u));
  EXPECT_EQ(built.ndim(), 2u);
  D bad(2);
  bad.set_ok(false);
  EXPECT_CODE(TypeParam(bad), code);
  EXPECT_CODE(target = bad, code);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE_WHILE_PENDING(3, (target = Dispensable<D>(2u)), 3);
}

}  // namespace
