// Block copies when memory runs out: every allocation failed in turn. Dispensable matrices die, targets included;
// nothing leaks (the leak check of the room); others are sound, and sources are as they were.

#include <gtest/gtest.h>

#include <new>

#include "support/allocations.h"
#include "support/plain.h"
#include "support/sparse.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

template <class Call>
bool FailsAt(unsigned k, Call call) {
  bool thrown = false;
  FailAllocations fail(k, Fail::kOnce);
  try {
    call();
  } catch (const MatrixException& e) {
    thrown = e.code() == 10680;
  } catch (const std::bad_alloc&) {
    thrown = true;
  }
  abort_reset();
  const bool failed = fail.failed();
  return failed && thrown;
}

template <class K>
void ExpectIntact(const K& a) {
  EXPECT_TRUE(a.ok());
  if constexpr (kSparse<K>) {
    EXPECT_SOUND(a);
  }
}

// body(k) makes its call with the k-th allocation failing and tells whether it failed; the first k that does not ends
// the loop. Returns how many allocations there were.
template <class Body>
unsigned Failures(Body body) {
  unsigned k = 1;
  while (k < 200 && body(k)) ++k;
  EXPECT_LT(k, 200u);
  return k - 1;
}

template <class T, class S>
unsigned CopyFailures(const T& target, const S& src, unsigned row, unsigned col, unsigned n) {
  const Plain before = PlainOf(src);
  const unsigned count = Failures([&](unsigned k) {
    T ordinary(target);
    const bool failed = FailsAt(k, [&] { CopySubMat(ordinary, row, col, DispensableCopy(src), 0, 0, n, n); });
    ExpectIntact(ordinary);
    return failed;
  });
  Failures([&](unsigned k) {
    T& dispensable = DispensableCopy(target);
    const bool failed = FailsAt(k, [&] { CopySubMat(dispensable, row, col, src, 0, 0, n, n); });
    if (!failed) Drop(dispensable);
    return failed;
  });
  EXPECT_TRUE(Same(src, before));
  return count;
}

TEST(BlockFailures, Copies) {
  Random random(31);
  const unsigned n = 70;
  const RegularMatrix r = SumSample<RegularMatrix>(n, n, Pattern::kUniform, random);
  const SymmetricSparseMatrix ss = SumSample<SymmetricSparseMatrix>(n, n, Pattern::kUniform, random);
  EXPECT_GT(CopyFailures(RegularSparseMatrix(n, n), r, 3, 3, 60), 1u);
  EXPECT_GT(CopyFailures(RegularSparseMatrix(n, n), ss, 3, 3, 60), 1u);
  EXPECT_GT(CopyFailures(ss, r, 3, 5, 60), 1u);
}

// A block of a matrix to another place of it: a copy of the block is made.
template <class K>
void CheckWithin() {
  Random random(32);
  const K a = SumSample<K>(12, 12, Pattern::kUniform, random);
  const unsigned count = Failures([&](unsigned k) {
    K ordinary(a);
    const bool failed = FailsAt(k, [&] { CopySubMat(ordinary, 1, 8, ordinary, 0, 6, 4, 4); });
    ExpectIntact(ordinary);
    if (failed && !kSparse<K>) {
      EXPECT_TRUE(Same(ordinary, PlainOf(a)));
    }
    return failed;
  });
  EXPECT_GE(count, 1u);
  Failures([&](unsigned k) {
    K& dispensable = DispensableCopy(a);
    const bool failed = FailsAt(k, [&] { CopySubMat(dispensable, 1, 8, dispensable, 0, 6, 4, 4); });
    if (!failed) Drop(dispensable);
    return failed;
  });
}

TEST(BlockFailures, WithinOneMatrix) {
  CheckWithin<SymmetricMatrix>();
  CheckWithin<UpperTriangularMatrix>();
  CheckWithin<RegularSparseMatrix>();
  CheckWithin<SymmetricSparseMatrix>();
}

TEST(BlockFailures, Extraction) {
  Random random(33);
  const SymmetricMatrix s = SumSample<SymmetricMatrix>(6, 6, Pattern::kUniform, random);
  const auto given = [&](bool dispensable) -> const SymmetricMatrix& { return dispensable ? DispensableCopy(s) : s; };
  for (const bool dispensable : {false, true}) {
    EXPECT_EQ(Failures([&](unsigned k) {
                const SymmetricMatrix& a = given(dispensable);
                return FailsAt(k, [&] { Drop(SubMat(a, 1, 3, 0, 4)); });
              }),
              2u);
    EXPECT_EQ(Failures([&](unsigned k) {
                const SymmetricMatrix& a = given(dispensable);
                return FailsAt(k, [&] { Drop(SubMat(a, 1, 3)); });
              }),
              2u);
    EXPECT_EQ(Failures([&](unsigned k) {
                const SymmetricMatrix& a = given(dispensable);
                RegularMatrix out;
                return FailsAt(k, [&] { GetSubMat(out, a, 1, 3, 0, 4); });
              }),
              1u);
    EXPECT_EQ(Failures([&](unsigned k) {
                const SymmetricMatrix& a = given(dispensable);
                SymmetricMatrix& out = Dispensable<SymmetricMatrix>();
                const bool failed = FailsAt(k, [&] { GetSubMat(out, a, 1, 3); });
                if (!failed) Drop(out);
                return failed;
              }),
              1u);
  }
  EXPECT_EQ(Failures([&](unsigned k) {
              SymmetricMatrix& itself = DispensableCopy(s);
              const bool failed = FailsAt(k, [&] { GetSubMat(itself, itself, 1, 3); });
              if (!failed) Drop(itself);
              return failed;
            }),
            1u);
}

}  // namespace
}  // namespace quorvel::test
