// State that every dense kind shares: construction, moves, copies, swaps, flags, heap figures.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <type_traits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;

namespace {

template <class K>
K Order3() {
  Random random(7);
  return Filled<K>(Pattern::kUniform, random, 3u, 3u);
}

template <class K>
class DenseKind : public ::testing::Test {};
using DenseKinds =
    ::testing::Types<RegularMatrix, SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix>;
TYPED_TEST_SUITE(DenseKind, DenseKinds);

TYPED_TEST(DenseKind, DefaultIsEmpty) {
  const TypeParam a;
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.ncols(), 0u);
  EXPECT_EQ(a.nsing(), -1);
  EXPECT_TRUE(a.ok());
  EXPECT_FALSE(a.dispensable());
  EXPECT_EQ(a.data(), nullptr);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.HeapUsed(), 0u);
}

TYPED_TEST(DenseKind, ConstructsZeros) {
  const long before = Allocations();
  const TypeParam a(4, 4);
  EXPECT_EQ(Allocations() - before, 1);
  EXPECT_EQ(a.HeapReserved(), a.StoredCount() * 8);
  EXPECT_EQ(a.HeapUsed(), a.HeapReserved());
  EXPECT_TRUE(a == 0.0);
  Matrix::size_type rows, cols;
  a.GetSize(rows, cols);
  EXPECT_EQ(rows, 4u);
  EXPECT_EQ(cols, 4u);
}

TYPED_TEST(DenseKind, CopiesAreDeep) {
  TypeParam a = Order3<TypeParam>();
  a.set_nsing(2);
  const TypeParam& constant = a;
  TypeParam b(a), c(constant), d, e;
  d = a;
  e = constant;
  for (const TypeParam* copy : {&b, &c, &d, &e}) {
    EXPECT_NE(copy->data(), a.data());
    EXPECT_EQ(copy->nsing(), 2);
    ExpectElements(FullOf(constant), *copy);
  }
}

TYPED_TEST(DenseKind, CopyOfADispensableTakesItsStorage) {
  TypeParam& a = DispensableCopy(Order3<TypeParam>());
  a.set_nsing(5);
  const double* array = a.data();
  const long before = Allocations();
  TypeParam b(a);
  EXPECT_EQ(Allocations(), before);
  EXPECT_EQ(b.data(), array);
  EXPECT_EQ(b.nsing(), 5);
  EXPECT_FALSE(b.dispensable());
}

TYPED_TEST(DenseKind, AssignmentFromADispensableTakesItsStorage) {
  TypeParam target(5, 5);
  TypeParam& a = DispensableCopy(Order3<TypeParam>());
  const double* array = a.data();
  target = a;
  EXPECT_EQ(target.data(), array);
  EXPECT_EQ(target.nrows(), 3u);
  EXPECT_EQ(target.HeapReserved(), target.StoredCount() * 8);  // the source's capacity, not the larger old one
  EXPECT_FALSE(target.dispensable());
  // Through a const reference it is the same.
  const TypeParam& b = DispensableCopy(Order3<TypeParam>());
  target = b;
}

TYPED_TEST(DenseKind, SelfAssignmentDoesNothingAtAll) {
  TypeParam& a = DispensableCopy(Order3<TypeParam>());
  a.set_ok(false);
  TypeParam& alias = a;
  EXPECT_NO_CODE_WHILE_PENDING(77, (a = alias));
  EXPECT_FALSE(a.ok());
  a = std::move(alias);
  EXPECT_EQ(a.nrows(), 3u);
  EXPECT_TRUE(a.dispensable());
  a.DestroyIfDispensable();
}

TYPED_TEST(DenseKind, MovesTakeEverythingButTheDispensableFlag) {
  EXPECT_TRUE(std::is_nothrow_move_constructible_v<TypeParam>);
  EXPECT_TRUE(std::is_nothrow_move_assignable_v<TypeParam>);
  TypeParam a = Order3<TypeParam>();
  const double* array = a.data();
  a.set_nsing(4);
  a.set_ok(false);
  int pending = 3;
  abort_set(pending);  // moves check nothing
  TypeParam b(std::move(a));
  EXPECT_EQ(b.data(), array);
  EXPECT_EQ(b.nsing(), 4);
  EXPECT_FALSE(b.ok());
  EXPECT_EQ(a.data(), nullptr);
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.capacity(), 0u);
  EXPECT_EQ(a.nsing(), -1);
  EXPECT_TRUE(a.ok());
  TypeParam c(2, 2);
  c = std::move(b);
  EXPECT_EQ(c.data(), array);
  EXPECT_FALSE(c.ok());
  EXPECT_EQ(b.nrows(), 0u);
  abort_reset();
}

TYPED_TEST(DenseKind, AMovedDispensableSourceIsDestroyed) {
  TypeParam b(std::move(DispensableCopy(Order3<TypeParam>())));
  EXPECT_FALSE(b.dispensable());
  TypeParam c;
  c = std::move(DispensableCopy(Order3<TypeParam>()));
  ExpectElements(FullOf(std::as_const(b)), c);
  TypeParam& target = Dispensable<TypeParam>(1u, 1u);
  target = std::move(b);
  EXPECT_TRUE(target.dispensable());
  target.DestroyIfDispensable();
}

TYPED_TEST(DenseKind, SwapKeepsTheDispensableFlags) {
  EXPECT_TRUE(noexcept(std::declval<TypeParam&>().Swap(std::declval<TypeParam&>())));
  TypeParam a = Order3<TypeParam>();
  a.set_nsing(1);
  a.set_ok(false);
  TypeParam& b = Dispensable<TypeParam>(2u, 2u);
  const double* array = a.data();
  a.Swap(b);
  EXPECT_EQ(b.data(), array);
  EXPECT_EQ(b.nsing(), 1);
  EXPECT_FALSE(b.ok());
  EXPECT_TRUE(b.dispensable());
  EXPECT_EQ(a.nrows(), 2u);
  EXPECT_EQ(a.nsing(), -1);
  EXPECT_TRUE(a.ok());
  EXPECT_FALSE(a.dispensable());
  b.Swap(b);
  EXPECT_EQ(b.nrows(), 3u);
  b.DestroyIfDispensable();
}

TYPED_TEST(DenseKind, FailedAssignmentMarksItsTarget) {
  TypeParam good(2, 2), bad(2, 2), target(2, 2);
  bad.set_ok(false);
  EXPECT_CODE(target = bad, 50140);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(target = good, 50140);  // assignment does not repair it
  EXPECT_FALSE(target.ok());
  target = TypeParam(2, 2);  // a move does
  EXPECT_TRUE(target.ok());
  EXPECT_CODE_WHILE_PENDING(77, (target = good), 77);
  EXPECT_FALSE(target.ok());
  EXPECT_CODE(TypeParam{bad}, 50140);
  TypeParam& temporary = Dispensable<TypeParam>(1u, 1u);
  EXPECT_CODE(target = temporary, 50140);  // and the temporary is gone
  TypeParam& dispensable_target = Dispensable<TypeParam>(1u, 1u);
  EXPECT_CODE(dispensable_target = bad, 50140);  // so is a dispensable target
}

TYPED_TEST(DenseKind, UnaryMinus) {
  const TypeParam a = Order3<TypeParam>();
  TypeParam& n = -a;
  EXPECT_TRUE(n.dispensable());
  EXPECT_NE(&n, &a);
  for (unsigned k = 0; k < a.StoredCount(); ++k) EXPECT_TRUE(SameBits(n.data()[k], -a.data()[k]));
  TypeParam& again = -n;
  EXPECT_EQ(&again, &n);
  ExpectElements(FullOf(a), again);
  again.DestroyIfDispensable();
  TypeParam bad(1, 1);
  bad.set_ok(false);
  EXPECT_CODE(-bad, 50450);
  TypeParam& bad_temporary = Dispensable<TypeParam>(1u, 1u);
  bad_temporary.set_ok(false);
  EXPECT_CODE(-bad_temporary, 50450);
}

TYPED_TEST(DenseKind, ScalingAndDivision) {
  TypeParam a = Order3<TypeParam>();
  const TypeParam before(a);
  a.set_nsing(3);
  a *= 3.0;
  for (unsigned k = 0; k < a.StoredCount(); ++k) EXPECT_EQ(a.data()[k], 3.0 * before.data()[k]);
  TypeParam b(before);
  b /= 3.0;  // by the reciprocal
  for (unsigned k = 0; k < b.StoredCount(); ++k) EXPECT_EQ(b.data()[k], (1.0 / 3.0) * before.data()[k]);
  a.data()[0] = std::numeric_limits<double>::quiet_NaN();
  a *= 0.0;
  for (unsigned k = 0; k < a.StoredCount(); ++k) EXPECT_TRUE(SameBits(a.data()[k], 0.0));
  EXPECT_EQ(a.nsing(), 3);
  b /= 0.0;
  for (unsigned k = 0; k < b.StoredCount(); ++k) {
    EXPECT_EQ(b.data()[k], before.data()[k] * std::numeric_limits<double>::infinity());
  }
  TypeParam c(before);
  c.data()[0] = 0.0;
  c /= 0.0;
  EXPECT_TRUE(std::isnan(c.data()[0]));
  EXPECT_TRUE(std::isinf(c.data()[1]));
}

TYPED_TEST(DenseKind, ScalarAssignment) {
  TypeParam a(3, 3);
  a.set_nsing(2);
  TypeParam& returned = (a = 2.0);
  EXPECT_EQ(&returned, &a);
  EXPECT_TRUE(a == 2.0);
  EXPECT_EQ(a.nsing(), 2);
  a = -0.0;
  EXPECT_EQ(a.nsing(), -1);
  EXPECT_TRUE(std::signbit(a.data()[0]));
  a.set_ok(false);
  EXPECT_CODE(a = 1.0, 50000);
}

TYPED_TEST(DenseKind, ReserveKeepsOrGrowsExactly) {
  TypeParam a = Order3<TypeParam>();
  const auto full = FullOf(std::as_const(a));
  const double* array = a.data();
  a.Reserve(2, 2);
  EXPECT_EQ(a.data(), array);
  a.Reserve(3, 3);  // no more than it has
  EXPECT_EQ(a.data(), array);
  EXPECT_EQ(a.capacity(), a.StoredCount());
  a.Reserve(5, 5);
  EXPECT_EQ(a.capacity(), a.GetArrayCount(5, 5));
  ExpectElements(full, a);
  a.SetSize(0, 0, true);
  EXPECT_EQ(a.capacity(), a.GetArrayCount(5, 5));
  a.SetSize(4, 4, false);
  EXPECT_EQ(a.capacity(), a.GetArrayCount(5, 5));
  a.FreeMemory();
  EXPECT_EQ(a.data(), nullptr);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.nrows(), 0u);
}

TYPED_TEST(DenseKind, SetSizeWithoutChangeLeavesTheDoubles) {
  TypeParam a = Order3<TypeParam>();
  const auto full = FullOf(std::as_const(a));
  const double* array = a.data();
  a.SetSize(3, 3, false);
  EXPECT_EQ(a.data(), array);
  ExpectElements(full, a);
  a.set_ok(false);
  EXPECT_CODE(a.SetSize(3, 3, false), 50000);
  EXPECT_CODE_WHILE_PENDING(9, a.SetSize(3, 3, true), 9);
}

TYPED_TEST(DenseKind, ADispensableMatrixIsNotResizedWithKeep) {
  EXPECT_CODE(Dispensable<TypeParam>(3u, 3u).SetSize(2, 2, true), 60000);
  EXPECT_CODE(Dispensable<TypeParam>(3u, 3u).SetSize(4, 4, true), 40000);
  TypeParam& a = Dispensable<TypeParam>(3u, 3u);
  a.SetSize(4, 4, false);
  a.SetSize(2, 2, false);
  EXPECT_EQ(a.nrows(), 2u);
  a.DestroyIfDispensable();
}

TYPED_TEST(DenseKind, AssignAndCopy) {
  const double values[] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  TypeParam a(1, 1);
  a.set_nsing(6);
  a.Assign(values, 3, 3);
  EXPECT_EQ(a.nsing(), 6);
  EXPECT_EQ(std::memcmp(a.data(), values, a.StoredCount() * sizeof(double)), 0);
  TypeParam b;
  b.Copy(a, true);
  EXPECT_EQ(b.nsing(), 6);
  for (unsigned k = 0; k < b.StoredCount(); ++k) EXPECT_EQ(b.data()[k], -values[k]);
  b.Copy(b, true);
  for (unsigned k = 0; k < b.StoredCount(); ++k) EXPECT_EQ(b.data()[k], values[k]);
  a.Assign(nullptr, 0, 0);
  EXPECT_EQ(a.nrows(), 0u);
  a.set_ok(false);
  EXPECT_CODE(a.Assign(values, 3, 3), 50000);
  EXPECT_CODE(a.Copy(b, false), 50000);
}

TYPED_TEST(DenseKind, MemberMult) {
  const TypeParam source = Order3<TypeParam>();
  for (const double s : {0.0, -0.0, 1.0, -1.0, 2.0, -2.0, 2.5}) {
    TypeParam target(1, 1);
    target.set_nsing(8);
    target.Mult(source, s);
    EXPECT_EQ(target.nsing(), 8);
    for (unsigned k = 0; k < source.StoredCount(); ++k) {
      EXPECT_TRUE(SameBits(target.data()[k], s == 0.0 ? 0.0 : s * source.data()[k]));
    }
  }
}

TYPED_TEST(DenseKind, SetRandomFillsFromTheEnd) {
  TypeParam a(3, 3);
  std::srand(42);
  a.SetRandom(-2.0, 5.0);
  std::srand(42);
  for (unsigned k = a.StoredCount(); k-- > 0;) {
    EXPECT_EQ(a.data()[k], -2.0 + static_cast<double>(std::rand()) * ((5.0 - -2.0) / 2147483647.0));
  }
  // One number for each stored element, and no more.
  TypeParam b(2, 2);
  std::srand(43);
  b.SetRandom(0.0, 1.0);
  const int next = std::rand();
  std::srand(43);
  for (unsigned k = 0; k < b.StoredCount(); ++k) static_cast<void>(std::rand());
  EXPECT_EQ(std::rand(), next);
}

TYPED_TEST(DenseKind, Extremes) {
  const double inf = std::numeric_limits<double>::infinity();
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(TypeParam().Max(), -inf);
  EXPECT_EQ(TypeParam().Min(), inf);
  TypeParam a(3, 3);
  a = 1.0;
  a.data()[0] = nan;
  a.data()[1] = -7.0;
  a.data()[2] = 9.0;
  EXPECT_EQ(a.Max(), 9.0);
  EXPECT_EQ(a.Min(), -7.0);
  EXPECT_EQ(DispensableCopy(a).Max(), 9.0);  // consumed
  EXPECT_EQ(DispensableCopy(a).Min(), -7.0);
}

// Wherever the element stands that decides, the first and the last place included.
TYPED_TEST(DenseKind, EveryStoredElementDecides) {
  TypeParam a(3, 3);
  for (unsigned k = 0; k < a.StoredCount(); ++k) {
    a = 2.0;
    a.data()[k] = 5.0;
    EXPECT_EQ(a.Max(), 5.0) << k;
    EXPECT_EQ(a.Min(), 2.0) << k;
    EXPECT_FALSE(a == 2.0 || a != 5.0 || a < 5.0 || a <= 4.0 || a.AllElementsOnInterval(2.0, 4.0)) << k;
    EXPECT_FALSE(a.Equals(3.0, 1.0)) << k;
    a.data()[k] = -1.0;
    EXPECT_EQ(a.Max(), 2.0) << k;
    EXPECT_EQ(a.Min(), -1.0) << k;
    EXPECT_FALSE(a == 2.0 || a != -1.0 || a > -1.0 || a >= 0.0 || a.AllElementsOnInterval(0.0, 2.0)) << k;
  }
}

TYPED_TEST(DenseKind, ComparisonsLookAtStoredDoublesOnly) {
  TypeParam a(3, 3);
  a = 2.0;
  EXPECT_TRUE(a == 2.0);  // implicit zeros take no part
  EXPECT_FALSE(a != 2.0);
  EXPECT_TRUE(a != 3.0);
  a.data()[1] = 3.0;
  EXPECT_FALSE(a == 2.0);
  EXPECT_FALSE(a != 2.0);  // both false: != is not the negation of ==
  EXPECT_TRUE(a >= 2.0);
  EXPECT_FALSE(a > 2.0);
  EXPECT_TRUE(a < 4.0);
  EXPECT_TRUE(a <= 3.0);
  EXPECT_FALSE(a < 3.0);
  EXPECT_TRUE(a.AllElementsOnInterval(2.0, 3.0));
  EXPECT_FALSE(a.AllElementsOnInterval(2.0, 2.5));
  EXPECT_TRUE(a.Equals(2.5, 0.5));
  EXPECT_FALSE(a.Equals(2.5, 0.25));
  const TypeParam empty;
  EXPECT_TRUE(empty == 1.0 && empty != 1.0 && empty < 1.0 && empty > 1.0 && empty <= 1.0 && empty >= 1.0);
  EXPECT_TRUE(empty.Equals(1.0, 0.0));
  TypeParam& temporary = DispensableCopy(a);
  EXPECT_FALSE(temporary == 2.0);
  EXPECT_TRUE(temporary.Equals(2.5, 0.5));
  temporary.DestroyIfDispensable();  // still alive: comparisons consume nothing
}

TEST(Equals, TheBoundsAreComputedOnce) {
  // |e - x| <= tol would accept e; the closed interval [x - tol, x + tol] does not.
  const double x = 1.0, tol = 0.1;
  DiagonalMatrix a(1);
  a.data()[0] = std::nextafter(x + tol, 2.0);
  EXPECT_FALSE(a.Equals(x, tol));
  a.data()[0] = x - tol;
  EXPECT_TRUE(a.Equals(x, tol));
}

TEST(NumberNonZero, CountsStoredOrFull) {
  SymmetricMatrix s(2);
  s(0, 0) = 1.0;
  s(0, 1) = 2.0;
  EXPECT_EQ(s.NumberNonZero(), 3u);
  EXPECT_EQ(static_cast<const SingleArrayMatrix&>(s).NumberNonZero(), 2u);
  EXPECT_EQ(SymmetricMatrix().NumberNonZero(), 0u);
  RegularMatrix r(2, 2);
  r(0, 0) = -0.0;
  r(1, 1) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(r.NumberNonZero(), 1u);
  r.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(5, r.NumberNonZero());
}

}  // namespace
