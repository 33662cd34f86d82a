// Every allocation of the sparse kinds fails in turn: std::bad_alloc, nothing lost, the store sound.
#include <gtest/gtest.h>

#include <new>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/sparse.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

// Runs call(a) on fresh copies of `before` with allocation k failing, k = 1, 2, ..., until it gets through, and shows
// the matrix to `after` each time. Returns the number of allocations the call needs.
template <class K, class Call, class After>
unsigned FailEach(const K& before, Call call, After after) {
  for (const Fail mode : {Fail::kOnce, Fail::kFromThenOn}) {
    for (unsigned k = 1;; ++k) {
      K a(before);
      bool failed, thrown = false;
      {
        FailAllocations fail(k, mode);
        try {
          call(a);
        } catch (const std::bad_alloc&) {
          thrown = true;
        } catch (const MatrixException&) {
          abort_reset();  // a dense operand or result reports by code
          thrown = true;
        }
        failed = fail.failed();
      }
      EXPECT_EQ(thrown, failed) << "allocation " << k;
      EXPECT_SOUND(a);
      if (failed) after(a);
      if (failed) continue;
      if (mode == Fail::kFromThenOn) return k - 1;
      break;
    }
  }
  return 0;
}

// The call changes nothing when it fails.
template <class K, class Call>
unsigned FailWhole(const K& before, Call call) {
  return FailEach(before, call, [&](const K& a) {
    EXPECT_EQ(CellsOf(a), CellsOf(before));
    EXPECT_EQ(a.nrows(), before.nrows());
    EXPECT_EQ(a.ncols(), before.ncols());
    EXPECT_EQ(a.HeapReserved(), before.HeapReserved());
  });
}

// The call may stop halfway.
template <class K, class Call>
unsigned FailPart(const K& before, Call call) {
  return FailEach(before, call, [](const K&) {});
}

template <class K>
K Sample(unsigned n) {
  K a(n, n);
  a.SetGrowBy(3);
  Random random(n);
  Scatter(a, 3 * n, random);
  return a;
}

template <class K>
class SparseFailure : public ::testing::Test {};
using Kinds = ::testing::Types<RS, SS>;
TYPED_TEST_SUITE(SparseFailure, Kinds);

TYPED_TEST(SparseFailure, SingleElements) {
  const TypeParam a = Sample<TypeParam>(8);
  EXPECT_EQ(FailWhole(TypeParam(3, 3), [](TypeParam& x) { x.Put(1, 2, 1.0); }), 1u);
  EXPECT_EQ(FailWhole(TypeParam(3, 3), [](TypeParam& x) { x(1, 2) += 1.0; }), 1u);
  EXPECT_EQ(FailWhole(TypeParam(3, 3), [](TypeParam& x) { x.AllocateMoreSpaces(); }), 1u);
  EXPECT_EQ(FailWhole(TypeParam(3, 3), [](TypeParam& x) { x.SparseMatrixInsert(nullptr, 1, 2, 1.0); }), 1u);
  EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.Put(0, 0, 0.0); }), 0u);
}

TYPED_TEST(SparseFailure, AFailedBlockLeavesTheBlockSizeOpen) {
  TypeParam a(3, 3);
  {
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_THROW(a.Put(0, 0, 1.0), std::bad_alloc);
  }
  EXPECT_EQ(a.growBy, 0u);
  EXPECT_TRUE(a.SetGrowBy(4));
}

TYPED_TEST(SparseFailure, Sizes) {
  const TypeParam a = Sample<TypeParam>(6);
  EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.SetSize(9, 9, true); }), 2u);
  EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.SetSize(3, 3, true); }), 0u);
  EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.SetSize(0, 0, true); }), 0u);
  if constexpr (std::is_same_v<TypeParam, RS>) {
    EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.InsertRows(2, 3); }), 1u);
    EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.InsertCols(6, 1); }), 1u);
    EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.SetSize(9, 0, true); }), 1u);
    EXPECT_EQ(FailWhole(a, [](TypeParam& x) { x.SetSize(4, 9, true); }), 1u);
  }
}

TYPED_TEST(SparseFailure, ConstructionAndCopies) {
  const TypeParam a = Sample<TypeParam>(8);
  EXPECT_EQ(FailWhole(a, [](TypeParam&) { TypeParam(3, 3); }), 2u);
  EXPECT_GT(FailWhole(a, [](TypeParam& x) { TypeParam(std::as_const(x)); }), 3u);
  EXPECT_GT(FailWhole(a, [](TypeParam& x) { (-x).DestroyIfDispensable(); }), 4u);
  EXPECT_GT(FailPart(TypeParam(2, 2), [&](TypeParam& x) { x = a; }), 3u);
  EXPECT_GT(FailPart(TypeParam(2, 2), [&](TypeParam& x) { x.Mult(a, 2.0); }), 3u);
  EXPECT_GT(FailPart(a, [](TypeParam& x) { x = 3.0; }), 0u);
}

TYPED_TEST(SparseFailure, AcrossKinds) {
  const TypeParam a = Sample<TypeParam>(8);
  EXPECT_GT(FailWhole(a, [](TypeParam& x) { RegularMatrix{x}; }), 0u);
  EXPECT_GT(FailWhole(a, [](TypeParam& x) { RS{std::as_const(x)}; }), 3u);
  const RegularMatrix dense(a);
  EXPECT_GE(FailWhole(a, [&](TypeParam&) { RS{dense}; }), 3u);
}

TEST(SparseFailure, ConsumedSources) {
  const SS a = Sample<SS>(8);
  const RegularMatrix dense(a);
  // The operand is made before allocations fail; it must be gone afterwards, whatever happens.
  for (unsigned k = 1;; ++k) {
    SS& symmetric = DispensableCopy(a);
    RegularMatrix& regular = DispensableCopy(dense);
    RS first, second;
    bool failed = false;
    {
      FailAllocations fail(k, Fail::kOnce);
      try {
        first = symmetric;
      } catch (const std::bad_alloc&) {
      }
      failed = fail.failed();
    }
    {
      FailAllocations fail(k, Fail::kOnce);
      try {
        second = regular;
      } catch (const std::bad_alloc&) {
      }
      failed = failed || fail.failed();
    }
    EXPECT_SOUND(first);
    EXPECT_SOUND(second);
    if (!failed) break;
  }
}

TEST(SparseFailure, Lines) {
  SS a = Sample<SS>(8);
  a.ClearRow(3);
  a.Put(1, 3, 2.0);
  RS out(8, 1);
  out.SetGrowBy(1);
  EXPECT_GT(FailPart(out, [&](RS& x) { a.GetLimitedCol(3, x, 0, 7); }), 2u);
  RS r = Sample<RS>(8);
  EXPECT_GT(FailPart(out, [&](RS& x) { r.GetEntireRow(2, x); }), 0u);
  EXPECT_EQ(FailPart(r, [](RS& x) { x.ClearRow(2); }), 0u);
  EXPECT_EQ(FailPart(r, [](RS& x) { x.RemoveCols(2, 3); }), 0u);
}

// More columns than the scratch on the stack holds: its allocation comes first. Copies need none.
TEST(SparseFailure, WideMatrices) {
  RS a(3, 100);
  a.Put(0, 70, 1.0);
  a.Put(2, 70, 2.0);
  EXPECT_EQ(FailWhole(a, [](RS& x) { RS(std::as_const(x)); }), 3u);
  RS b(3, 100);
  b.Put(1, 70, 3.0);
  EXPECT_EQ(FailWhole(a, [&](RS& x) { x += std::as_const(b); }), 1u);
  SS s(100);
  s.Put(3, 80, 1.0);
  EXPECT_EQ(FailWhole(s, [](SS& x) { RS(std::as_const(x)); }), 3u);
}

}  // namespace
