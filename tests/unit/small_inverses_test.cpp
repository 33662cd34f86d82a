// inv2x2, inv3x3 and the block diagonal inverse of matrices: values, where they land, counts, codes, memory.

#include "quorvel/small_inverses.h"

#include <gtest/gtest.h>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/digest.h"
#include "support/exhaust.h"
#include "support/make.h"
#include "support/plain.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

template <class K>
K& Inverse(unsigned n, K& a, bool inPlace) {
  return n == 2 ? inv2x2(a, inPlace) : inv3x3(a, inPlace);
}
template <class K>
K& Inverse(unsigned n, const K& a) {
  return n == 2 ? inv2x2(a) : inv3x3(a);
}

// What the kernel of the kind makes of the stored doubles.
int Kernel(unsigned n, const SymmetricMatrix&, double* d) {
  return n == 2 ? inv2x2_sm(d, d, 1e-200) : inv3x3_sm(d, d, 1e-200);
}
int Kernel(unsigned n, const TriMatrix&, double* d) { return n == 2 ? inv2x2_ulm(d, 1e-200) : inv3x3_ulm(d, 1e-200); }
int Kernel(unsigned n, const RegularMatrix&, double* d) {
  if (n == 2) return inv2x2_rm(reinterpret_cast<double(*)[2]>(d), reinterpret_cast<double(*)[2]>(d), 1e-200);
  return inv3x3_rm(reinterpret_cast<double(*)[3]>(d), reinterpret_cast<double(*)[3]>(d), 1e-200);
}

template <class K>
class SmallInverse : public ::testing::Test {};
using Kinds = ::testing::Types<SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, RegularMatrix>;
TYPED_TEST_SUITE(SmallInverse, Kinds, );

TYPED_TEST(SmallInverse, LandsWhereItShould) {
  using K = TypeParam;
  Random random(411);
  for (unsigned n : {2u, 3u}) {
    for (Pattern pattern : kAllPatterns) {
      for (int trial = 0; trial < 20; ++trial) {
        K a(n, n);
        FillMatrix(a, pattern, random);
        if (trial % 3 == 0) a.data()[0] = 0.0;
        a.set_nsing(9);
        K expected(a);
        const int count = Kernel(n, expected, expected.data());
        const Plain before = PlainOf(a);
        const Plain inverse = PlainOf(expected);
        {
          const Held<K> x(Inverse(n, a, false));
          EXPECT_TRUE(Same(*x, inverse));
          EXPECT_EQ(x->nsing(), count);
          EXPECT_TRUE(Same(a, before));
          EXPECT_EQ(a.nsing(), 9);
          digest::Feed(x->nsing());
        }
        {
          const Held<K> x(Inverse(n, static_cast<const K&>(a)));
          EXPECT_TRUE(Same(*x, inverse));
          EXPECT_TRUE(Same(a, before));
          EXPECT_EQ(a.nsing(), 9);
        }
        {
          K& temporary = DispensableCopy(a);
          const Held<K> x(Inverse(n, temporary, false));
          EXPECT_EQ(&*x, &temporary);
          EXPECT_TRUE(Same(*x, inverse));
          EXPECT_EQ(x->nsing(), count);
        }
        EXPECT_EQ(&Inverse(n, a, true), &a);
        EXPECT_TRUE(Same(a, inverse));
        EXPECT_EQ(a.nsing(), count);
        EXPECT_FALSE(a.dispensable());
      }
    }
  }
}

TYPED_TEST(SmallInverse, Codes) {
  using K = TypeParam;
  for (unsigned n : {2u, 3u}) {
    K wrong(5 - n, 5 - n);
    K bad(n, n);
    bad.set_ok(false);
    EXPECT_CODE(Inverse(n, wrong, false), 40000);
    EXPECT_CODE(Inverse(n, wrong, true), 40000);
    EXPECT_CODE(Inverse(n, static_cast<const K&>(wrong)), 40000);
    EXPECT_CODE(Inverse(n, bad, true), 50000);
    EXPECT_CODE(Inverse(n, Dispensable<K>(5 - n, 5 - n), false), 40000);
    EXPECT_CODE(Inverse(n, Dispensable<K>(), false), 40000);
    EXPECT_CODE_WHILE_PENDING(321, Inverse(n, Dispensable<K>(n, n), false), 321);
  }
}

TYPED_TEST(SmallInverse, Memory) {
  using K = TypeParam;
  const K a(3, 3);
  const long before = Allocations();
  K& x = inv3x3(a);
  EXPECT_EQ(Allocations() - before, 2);
  Drop(x);
  for (unsigned k : {1u, 2u}) {
    std::optional<int> code;
    {
      FailAllocations fail(k, Fail::kOnce);
      code = CodeOf([&] { inv3x3(a); });
    }
    EXPECT_EQ(code, 10680);
  }
}

template <class Sparse, class Dense>
void SparseEqualsDense(unsigned seed) {
  Random random(seed);
  for (unsigned n : {2u, 3u}) {
    for (int trial = 0; trial < 200; ++trial) {
      Sparse a(n, n);
      Scatter(a, n * n, random);
      Dense d(a);
      (n == 2 ? inv2x2(d, true) : inv3x3(d, true));
      const Plain before = PlainOf(a);
      const Plain inverse = PlainOf(d);
      {
        const Held<Sparse> x(Inverse(n, static_cast<const Sparse&>(a)));
        EXPECT_TRUE(Same(*x, inverse, true));
        EXPECT_EQ(x->nsing(), d.nsing());
        EXPECT_TRUE(Same(a, before));
        EXPECT_EQ(a.nsing(), -1);
        EXPECT_SOUND(*x);
        for (const Cell& cell : CellsOf(*x)) EXPECT_NE(cell.value, 0.0);
        FeedDigest(*x);
      }
      Sparse& temporary = DispensableCopy(a);
      const Held<Sparse> x(Inverse(n, temporary, false));
      EXPECT_EQ(&*x, &temporary);
      EXPECT_TRUE(Same(*x, inverse, true));
      EXPECT_EQ(&Inverse(n, a, true), &a);
      EXPECT_TRUE(Same(a, inverse, true));
      EXPECT_EQ(a.nsing(), d.nsing());
      EXPECT_SOUND(a);
    }
    Sparse wrong(4, 4);
    Sparse bad(n, n);
    bad.set_ok(false);
    EXPECT_CODE(Inverse(n, wrong, true), 40000);
    EXPECT_CODE(Inverse(n, bad, false), 50000);
    EXPECT_CODE(Inverse(n, Dispensable<Sparse>(4u, 4u), false), 40000);
    EXPECT_CODE_WHILE_PENDING(321, Inverse(n, Dispensable<Sparse>(n, n), false), 321);
  }
}

TEST(SmallSparseInverse, EqualsTheDenseOne) {
  SparseEqualsDense<RegularSparseMatrix, RegularMatrix>(413);
  SparseEqualsDense<SymmetricSparseMatrix, SymmetricMatrix>(414);
}

TEST(SmallSparseInverse, Memory) {
  RegularSparseMatrix a(3, 3);
  a.Put(0, 0, 2.0);
  a.Put(1, 2, 3.0);
  a.Put(2, 1, 4.0);
  using RS = RegularSparseMatrix;
  EXPECT_GE(ExhaustMemory([&]() -> RS& { return a; }, [](RS& x) -> RS& { return inv3x3(x); }), 3);
  EXPECT_GE(ExhaustMemory([&]() -> RS& { return DispensableCopy(a); }, [](RS& x) -> RS& { return inv3x3(x); }), 0);
}

// ---------------------------------------------------------------------------------------------------------------------

TEST(BlockDiagonalInverse, InvertsCompleteBlocksAndLeavesTheRest) {
  Random random(412);
  for (unsigned n = 0; n < 14; ++n) {
    const SymmetricMatrix a = Filled<SymmetricMatrix>(Pattern::kUniform, random, n);
    Plain expected(n, n, 5.0);
    for (unsigned k = 0; k + 3 <= n; k += 3) {
      double block[6], *e = block;
      for (unsigned i = 0; i < 3; ++i) {
        for (unsigned j = i; j < 3; ++j) *e++ = a(k + i, k + j);
      }
      inv3x3_sm(block, block, 1e-200);
      e = block;
      for (unsigned i = 0; i < 3; ++i) {
        for (unsigned j = i; j < 3; ++j) expected(k + i, k + j) = expected(k + j, k + i) = *e++;
      }
    }
    SymmetricMatrix out(n);
    out = 5.0;
    out.set_nsing(4);
    Invert3x3BlockDiagMatrix(a, out);
    EXPECT_TRUE(Same(out, expected)) << n;
    EXPECT_EQ(out.nsing(), 4);
    digest::Feed(out);
    SymmetricMatrix fives(n);
    fives = 5.0;
    Invert3x3BlockDiagMatrix(DispensableCopy(a), fives);
    EXPECT_TRUE(Same(fives, expected)) << n;
  }
}

TEST(BlockDiagonalInverse, InPlace) {
  SymmetricMatrix a(3);
  a(0, 0) = 2;
  a(1, 1) = 4;
  a(2, 2) = 8;
  a(0, 1) = 0;
  Invert3x3BlockDiagMatrix(a, a);
  EXPECT_EQ(a(0, 0), 0.5);
  EXPECT_EQ(a(2, 2), 0.125);
  SymmetricMatrix& temporary = DispensableCopy(a);
  Invert3x3BlockDiagMatrix(temporary, temporary);  // a target is not consumed
  EXPECT_EQ(temporary(1, 1), 4.0);
  Drop(temporary);
}

TEST(BlockDiagonalInverse, Codes) {
  SymmetricMatrix a(3), bad(3), out(1);
  bad.set_ok(false);
  EXPECT_CODE(Invert3x3BlockDiagMatrix(bad, out), 50000);
  EXPECT_CODE(Invert3x3BlockDiagMatrix(a, bad), 50000);
  EXPECT_CODE(Invert3x3BlockDiagMatrix(Dispensable<SymmetricMatrix>(3u), bad), 50000);
  EXPECT_CODE_WHILE_PENDING(321, Invert3x3BlockDiagMatrix(Dispensable<SymmetricMatrix>(3u), out), 321);
  SymmetricMatrix& not_ok = Dispensable<SymmetricMatrix>(2u);
  not_ok.set_ok(false);
  EXPECT_CODE(Invert3x3BlockDiagMatrix(a, not_ok), 50000);
  std::optional<int> code;
  {
    FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([&] { Invert3x3BlockDiagMatrix(a, out); });
  }
  EXPECT_EQ(code, 10680);
  SymmetricMatrix& consumed = DispensableCopy(a);
  {
    FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([&] { Invert3x3BlockDiagMatrix(consumed, out); });
  }
  EXPECT_EQ(code, 10680);
}

}  // namespace
}  // namespace quorvel::test
