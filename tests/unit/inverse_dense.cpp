// inv of the dense kinds: golden values, the literal computation bit for bit, where results land.

#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "quorvel/inverses.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/make.h"
#include "unit/inverse_literal.h"

namespace quorvel::test {
namespace {

constexpr unsigned kSizes[] = {1, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 24, 25, 33, 64};
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Inverse, OfTheHilbertMatrixOfOrder4) {
  const RegularMatrix h = RegularOf(HilbertMatrix(4));
  const Held<RegularMatrix> x(inv(h));
  EXPECT_EQ(x->nsing(), 0);
  const double row0[] = {0x1.000000000007bp+4, -0x1.e0000000000f2p+6, 0x1.e0000000000eep+7, -0x1.1800000000088p+7};
  for (unsigned j = 0; j < 4; ++j) EXPECT_TRUE(SameBits((*x)(0, j), row0[j])) << j;
  EXPECT_TRUE(SameBits((*x)(3, 0), -0x1.1800000000098p+7));
  EXPECT_TRUE(SameBits((*x)(3, 3), 0x1.5e00000000015p+11));
}

TEST(Inverse, OfAMatrixWithTwoEqualRows) {
  RegularMatrix a(4, 4);
  const double values[] = {2, 1, 3, 1, 4, -1, 0, 2, 2, 1, 3, 1, 1, 1, 1, 1};
  a.Assign(values, 4, 4);
  inv(a, true);
  EXPECT_EQ(a.nsing(), 1);
  for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(a(3, j), 0.0);
  const double row0[] = {-0x1.c71c71c71c730p-5, 0x1.c71c71c71c71dp-3, -0x1.c71c71c71c708p-5, 0x1.5555555555554p-2};
  for (unsigned j = 0; j < 4; ++j) EXPECT_TRUE(SameBits(a(0, j), row0[j])) << j;
}

TEST(Inverse, TwoEqualRowsAlwaysCount) {
  Random random(601);
  for (int trial = 0; trial < 5000; ++trial) {
    RegularMatrix a = Filled<RegularMatrix>(trial % 2 == 0 ? Pattern::kUniform : Pattern::kInteger, random, 4u, 4u);
    const unsigned p = random.Below(4);
    const unsigned q = (p + 1 + random.Below(3)) % 4;
    for (unsigned j = 0; j < 4; ++j) a(p, j) = a(q, j);
    inv(a, true);
    EXPECT_GE(a.nsing(), 1) << trial;
  }
}

TEST(Inverse, OfAFactorOfTheHilbertMatrix) {
  LowerTriangularMatrix l(5);
  const double rows[] = {1,
                         0x1p-1,
                         0x1.279a74590331cp-2,
                         0x1.5555555555555p-2,
                         0x1.279a74590331dp-2,
                         0x1.314c3d92a9e87p-4,
                         0x1p-2,
                         0x1.0a0b02501c79ap-2,
                         0x1.c9f25c5bfedcbp-4,
                         0x1.35a0e521ffa7ap-6,
                         0x1.999999999999ap-3,
                         0x1.d8f7208e6b82cp-3,
                         0x1.05af103491a38p-3,
                         0x1.35a0e521ff8d1p-5,
                         0x1.381381381584ap-8};
  const double* e = rows;
  for (unsigned i = 0; i < 5; ++i) {
    for (unsigned j = 0; j <= i; ++j) l(i, j) = *e++;
  }
  inv(l, true);
  EXPECT_EQ(l.nsing(), 0);
  const double last[] = {0x1.7ffffffffc881p+1, -0x1.dffffffffc312p+5, 0x1.0dfffffffe0aep+8, -0x1.a3fffffffd265p+8,
                         0x1.a3fffffffd4a6p+7};
  for (unsigned j = 0; j < 5; ++j) EXPECT_TRUE(SameBits(l(4, j), last[j])) << j;
}

TEST(Inverse, OfADiagonalMatrix) {
  DiagonalMatrix d(3);
  d(0, 0) = 2;
  d(2, 2) = 4;
  d.set_nsing(7);
  {
    const Held<DiagonalMatrix> x(inv(d));
    EXPECT_EQ(x->nsing(), 1);
    EXPECT_EQ((*x)(0, 0), 0.5);
    EXPECT_EQ((*x)(1, 1), 0.0);
    EXPECT_EQ((*x)(2, 2), 0.25);
    EXPECT_EQ(d(0, 0), 2.0);
    EXPECT_EQ(d.nsing(), 7);
  }
  d(1, 1) = 1e-200;  // not beyond the threshold
  EXPECT_EQ(&inv(d, true), &d);
  EXPECT_EQ(d.nsing(), 1);
  EXPECT_EQ(d(0, 0), 0.5);
  EXPECT_EQ(d(1, 1), 1e-200);
  EXPECT_EQ(d(2, 2), 0.25);
  DiagonalMatrix nan(1);
  nan(0, 0) = kNaN;
  {
    const Held<DiagonalMatrix> x(inv(static_cast<const DiagonalMatrix&>(nan)));
    EXPECT_EQ(x->data()[0], 0.0);
    EXPECT_EQ(x->nsing(), 1);
  }
  DiagonalMatrix& temporary = DispensableCopy(d);
  const Held<DiagonalMatrix> x(inv(temporary));
  EXPECT_EQ(&*x, &temporary);
  EXPECT_EQ(x->nsing(), 1);
  EXPECT_EQ(x->data()[1], 1e-200);
}

TEST(Inverse, OfTheIdentity) {
  RegularMatrix a(4, 4);
  for (unsigned i = 0; i < 4; ++i) a(i, i) = 1.0;
  const Plain identity = PlainOf(a);
  inv(a, true);
  EXPECT_EQ(a.nsing(), 0);
  EXPECT_TRUE(Same(a, identity, true));
}

// ---------------------------------------------------------------------------------------------------------------------

// inv(a) for every way to own a; `keeps_count`: a's own count stays when the inverse goes to a new matrix.
template <class K>
void Everywhere(const K& a, const Counted& expected, bool keeps_count) {
  const Plain before = PlainOf(a);
  K own(a);
  own.set_nsing(9);
  {
    const Held<K> x(inv(own));
    EXPECT_TRUE(Same(*x, expected.x, true));
    EXPECT_EQ(x->nsing(), expected.count);
    EXPECT_TRUE(Same(own, before));
    EXPECT_EQ(own.nsing(), keeps_count ? 9 : 0);
    digest::Feed(x->nsing());
    for (double e : PlainOf(*x).e) digest::Feed(e == 0.0 ? 0.0 : e);
  }
  own.set_nsing(9);
  {
    const K& constant = own;
    const Held<K> x(inv(constant));
    EXPECT_TRUE(Same(*x, expected.x, true));
    EXPECT_TRUE(Same(own, before));
  }
  {
    K& temporary = DispensableCopy(a);
    const Held<K> x(inv(temporary));
    EXPECT_EQ(&*x, &temporary);
    EXPECT_TRUE(Same(*x, expected.x, true));
    EXPECT_EQ(x->nsing(), expected.count);
  }
  EXPECT_EQ(&inv(own, true), &own);
  EXPECT_TRUE(Same(own, expected.x, true));
  EXPECT_EQ(own.nsing(), expected.count);
  EXPECT_FALSE(own.dispensable());
}

void EveryKind(const Plain& a) {
  Everywhere(RegularOf(a), LiteralInverse(a), false);
  Counted symmetric = LiteralInverse(UpperOnBothSides(a));
  symmetric.x = UpperOnBothSides(symmetric.x);
  Everywhere(PackedOf<SymmetricMatrix>(a), symmetric, true);
  const UpperTriangularMatrix upper = PackedOf<UpperTriangularMatrix>(a);
  Everywhere(upper, LiteralUpperInverse(PlainOf(upper)), true);
  const LowerTriangularMatrix lower = PackedOf<LowerTriangularMatrix>(a);
  Everywhere(lower, LiteralLowerInverse(PlainOf(lower)), true);
}

TEST(Inverse, EqualsTheLiteralComputation) {
  Random random(602);
  for (unsigned n : kSizes) {
    for (Pattern pattern : kAllPatterns) {
      SCOPED_TRACE(::testing::Message() << "order " << n << " " << Name(pattern));
      Plain a(n, n);
      Fill(a.e.data(), a.e.size(), pattern, random);
      EveryKind(a);
      for (unsigned i = 0; i < n; ++i) a(i, i) = a(i, i) + (a(i, i) < 0.0 ? -n : n);
      EveryKind(a);
    }
    SCOPED_TRACE(::testing::Message() << "order " << n);
    EveryKind(HilbertMatrix(n));
    EveryKind(Plain(n, n));
    EveryKind(OfRank(n, (n + 1) / 2, random));
  }
}

TEST(Inverse, EqualsTheLiteralComputationAtOrder100) {
  Random random(603);
  Plain a(100, 100);
  Fill(a.e.data(), a.e.size(), Pattern::kUniform, random);
  EveryKind(a);
}

// Beyond order 128 all scratch comes from the heap.
TEST(Inverse, EqualsTheLiteralComputationAtOrder131) {
  Random random(608);
  Plain a(131, 131);
  Fill(a.e.data(), a.e.size(), Pattern::kUniform, random);
  EveryKind(a);
}

// Zeros and small whole numbers: reflections that skip rows and columns, pivots that vanish.
TEST(Inverse, EqualsTheLiteralComputationOnSparsePatterns) {
  Random random(604);
  int singular = 0;
  for (unsigned n : {4u, 6u, 9u, 15u}) {
    for (int trial = 0; trial < 60; ++trial) {
      SCOPED_TRACE(::testing::Message() << "order " << n << " trial " << trial);
      Plain a(n, n);
      for (double& e : a.e) e = random.Chance(3) ? random.Integer(-2, 2) : 0.0;
      if (random.Chance(8)) {
        const unsigned i = random.Below(n);  // drawn one after the other: the order is the same everywhere
        const unsigned j = random.Below(n);
        a(i, j) = random.Chance(2) ? kNaN : 1e-201;
      }
      EveryKind(a);
      singular += LiteralInverse(a).count != 0;
    }
  }
  EXPECT_GT(singular, 20);
}

TEST(Inverse, EqualsTheLiteralComputationAtTheEndsOfTheRange) {
  Random random(605);
  for (double scale : {1e-150, 1e-155, 1e-160, 1e-170, 1e-201, 1e150, 1e154, 1e155, 1e160}) {
    for (int trial = 0; trial < 10; ++trial) {
      SCOPED_TRACE(::testing::Message() << scale << " trial " << trial);
      Plain a(5, 5);
      for (double& e : a.e) {
        const double u = random.Uniform();
        e = u * (random.Chance(2) ? scale : 1.0);
      }
      EveryKind(a);
    }
  }
}

// Orders 2 and 3 use the closed forms, whatever the kind.
TEST(Inverse, SmallOrdersAreTheClosedForms) {
  Random random(606);
  for (unsigned n : {2u, 3u}) {
    const auto expect = [n](auto a) {
      using K = decltype(a);
      K closed(a);
      n == 2 ? inv2x2(closed, true) : inv3x3(closed, true);
      Everywhere(a, {PlainOf(closed), closed.nsing()}, true);
    };
    for (Pattern pattern : kAllPatterns) {
      expect(Filled<RegularMatrix>(pattern, random, n, n));
      expect(Filled<SymmetricMatrix>(pattern, random, n));
      expect(Filled<UpperTriangularMatrix>(pattern, random, n));
      expect(Filled<LowerTriangularMatrix>(pattern, random, n));
    }
  }
}

// ---------------------------------------------------------------------------------------------------------------------

template <class K>
void Refuses(unsigned n, int code) {
  K bad(n, n);
  bad.set_ok(false);
  EXPECT_CODE(inv(bad), code);
  EXPECT_CODE(inv(bad, true), code);
  EXPECT_CODE(inv(static_cast<const K&>(bad)), code);
  K& temporary = Dispensable<K>(n, n);
  temporary.set_ok(false);
  EXPECT_CODE(inv(temporary), code);
  K fine(n, n);
  EXPECT_CODE_WHILE_PENDING(321, inv(fine), 321);
  EXPECT_CODE_WHILE_PENDING(321, inv(Dispensable<K>(n, n)), 321);
}

TEST(InverseCodes, NotOk) {
  for (unsigned n : {0u, 1u, 4u}) {
    Refuses<DiagonalMatrix>(n, 50570);
    Refuses<UpperTriangularMatrix>(n, 50500);
    Refuses<LowerTriangularMatrix>(n, 50500);
    Refuses<RegularMatrix>(n, 50940);
    Refuses<SymmetricMatrix>(n, 50940);
  }
  for (unsigned n : {2u, 3u}) {
    Refuses<DiagonalMatrix>(n, 50570);
    Refuses<UpperTriangularMatrix>(n, 50000);
    Refuses<LowerTriangularMatrix>(n, 50000);
    Refuses<RegularMatrix>(n, 50000);
    Refuses<SymmetricMatrix>(n, 50000);
  }
}

TEST(InverseCodes, NotSquare) {
  RegularMatrix a(2, 3);
  EXPECT_CODE(inv(a), 40900);
  EXPECT_CODE(inv(a, true), 40900);
  EXPECT_CODE(inv(Dispensable<RegularMatrix>(0u, 5u)), 40900);
  a.set_ok(false);
  EXPECT_CODE(inv(a), 50940);
}

template <class K>
void OrderZeroHasNoInverse() {
  K empty;
  empty.set_nsing(9);
  EXPECT_THROW(inv(empty), std::bad_array_new_length);
  EXPECT_EQ(empty.nsing(), 9);
  EXPECT_THROW(inv(empty, true), std::bad_array_new_length);
  EXPECT_EQ(empty.nsing(), (std::is_same_v<K, SymmetricMatrix>) ? 9 : 0);
  EXPECT_THROW(inv(static_cast<const K&>(empty)), std::bad_array_new_length);
  EXPECT_THROW(inv(Dispensable<K>()), std::bad_array_new_length);
  EXPECT_EQ(GetErrorCode(), 0);
}

TEST(InverseCodes, OrderZero) {
  OrderZeroHasNoInverse<RegularMatrix>();
  OrderZeroHasNoInverse<SymmetricMatrix>();
  OrderZeroHasNoInverse<UpperTriangularMatrix>();
  OrderZeroHasNoInverse<LowerTriangularMatrix>();
  DiagonalMatrix d;
  const Held<DiagonalMatrix> x(inv(d));
  EXPECT_EQ(x->ndim(), 0u);
  EXPECT_EQ(x->nsing(), 0);
}

// Up to order 24 scratch is on the stack: a new result costs its object and its array, in place nothing.
template <class K>
void Allocates(unsigned n, long in_place) {
  K a(n, n);
  const long before = Allocations();
  K& x = inv(static_cast<const K&>(a));
  EXPECT_EQ(Allocations() - before, 2 + in_place) << n;
  Drop(x);
  const long middle = Allocations();
  inv(a, true);
  EXPECT_EQ(Allocations() - middle, in_place) << n;
}

// In place the symmetric inverse comes as by an assignment of sym's result: with an array of just its size.
TEST(InverseMemory, OfASymmetricMatrixWithRoomToSpare) {
  SymmetricMatrix a(5), b;
  for (unsigned i = 0; i < 5; ++i) {
    for (unsigned j = i; j < 5; ++j) a(i, j) = i == j ? 4.0 + i : 1.0 / (1.0 + i + j);
  }
  b = a;
  a.Reserve(10, 10);
  EXPECT_EQ(&inv(a, true), &a);
  EXPECT_EQ(a.HeapReserved(), 15u * 8u);
  inv(b, true);
  for (unsigned k = 0; k < 15; ++k) EXPECT_EQ(a.data()[k], b.data()[k]);
  EXPECT_EQ(a.nsing(), 0);
  for (unsigned i = 0; i < 5; ++i) a(i, i) = i == 3 ? 0.0 : 2.0;
  for (unsigned i = 0; i < 5; ++i) {
    for (unsigned j = i + 1; j < 5; ++j) a(i, j) = 0.0;
  }
  a.Reserve(7, 7);
  inv(a, true);
  EXPECT_EQ(a.nsing(), 1);
  EXPECT_EQ(a.HeapReserved(), 15u * 8u);
}

TEST(InverseMemory, SmallOrdersNeedNoScratch) {
  for (unsigned n : {1u, 2u, 3u, 4u, 15u, 24u}) {
    Allocates<RegularMatrix>(n, 0);
    Allocates<SymmetricMatrix>(n, 0);
    Allocates<UpperTriangularMatrix>(n, 0);
    Allocates<LowerTriangularMatrix>(n, 0);
    Allocates<DiagonalMatrix>(n, 0);
  }
  Allocates<UpperTriangularMatrix>(100, 0);
  Allocates<RegularMatrix>(25, 1);
  Allocates<SymmetricMatrix>(25, 2);
}

template <class K>
void RunsOutOfMemory() {
  Random random(607);
  const K a = [&] {
    K m(30, 30);
    FillMatrix(m, Pattern::kUniform, random);
    return m;
  }();
  const Plain before = PlainOf(a);
  for (unsigned k = 1;; ++k) {
    K own(a);
    K& temporary = DispensableCopy(a);
    std::optional<int> code;
    K* x = nullptr;
    bool failed;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { x = &inv(own); });
      failed = fail.failed();
    }
    EXPECT_TRUE(Same(own, before));
    if (failed) {
      EXPECT_EQ(code, 10680);
    } else {
      Drop(*x);
    }
    bool failed_in_place;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { inv(own, true); });
      failed_in_place = fail.failed();
    }
    if (failed_in_place) {
      EXPECT_EQ(code, 10680);
      EXPECT_TRUE(Same(own, before));
    }
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { inv(temporary); });
    }
    if (!failed_in_place) Drop(temporary);
    if (!failed) break;
  }
}

TEST(InverseMemory, RunsOutCleanly) {
  RunsOutOfMemory<RegularMatrix>();
  RunsOutOfMemory<SymmetricMatrix>();
  RunsOutOfMemory<UpperTriangularMatrix>();
}

}  // namespace
}  // namespace quorvel::test
