// Sums when memory runs out: every allocation failed in turn. Dispensable operands die, also the one
// that was becoming the result; nothing leaks (the leak check of the room); other operands are as they were.

#include <gtest/gtest.h>

#include <new>

#include "support/allocations.h"
#include "support/plain.h"
#include "support/sparse.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

enum class Outcome { kDone, kOutOfMemory };

// Dense storage reports 10680, the sparse pool std::bad_alloc; anything else is a failure of the test.
template <class Call>
Outcome Try(Call call) {
  try {
    call();
    return Outcome::kDone;
  } catch (const MatrixException& e) {
    EXPECT_EQ(e.code(), 10680);
  } catch (const std::bad_alloc&) {
  }
  abort_reset();
  return Outcome::kOutOfMemory;
}

// Calls body(k), which prepares and makes one call with its k-th allocation failing and tells whether one failed.
template <class Body>
void ForEachAllocation(Body body) {
  for (unsigned k = 1; body(k); ++k) ASSERT_LT(k, 200u);
}

template <class Call>
bool FailsAt(unsigned k, Call call) {
  Outcome outcome;
  bool failed;
  {
    FailAllocations fail(k, Fail::kOnce);
    outcome = Try(call);
    failed = fail.failed();
  }
  EXPECT_EQ(outcome == Outcome::kOutOfMemory, failed);
  return failed;
}

template <class Op, class R, class A, class B>
void CheckSumFailures(unsigned n) {
  SCOPED_TRACE(::testing::Message() << A().ClassName() << " " << Op::name() << " " << B().ClassName() << ", size "
                                    << n);
  Random random(n);
  const A a = SumSample<A>(n, n, Pattern::kUniform, random);
  const B b = SumSample<B>(n, n, Pattern::kUniform, random);
  const Plain before_a = PlainOf(a), before_b = PlainOf(b);
  for (int state = 0; state < 4; ++state) {
    ForEachAllocation([&](unsigned k) {
      const A& x = state & 1 ? DispensableCopy(a) : a;
      const B& y = state & 2 ? DispensableCopy(b) : b;
      return FailsAt(k, [&] { Drop(Op::apply(x, y)); });
    });
    ForEachAllocation([&](unsigned k) {
      R result(2, 2);
      const A& x = state & 1 ? DispensableCopy(a) : a;
      const B& y = state & 2 ? DispensableCopy(b) : b;
      const bool failed = FailsAt(k, [&] { Op::assign(result, x, y); });
      if constexpr (kSparse<R>) {
        EXPECT_SOUND(result);
      }
      return failed;
    });
    ForEachAllocation([&](unsigned k) {  // a dispensable result: sparse ones cannot be resized
      R& result = Dispensable<R>(n, n);
      const A& x = state & 1 ? DispensableCopy(a) : a;
      const B& y = state & 2 ? DispensableCopy(b) : b;
      const bool failed = FailsAt(k, [&] { Op::assign(result, x, y); });
      if (!failed) Drop(result);
      return failed;
    });
    if constexpr (std::is_same_v<R, A>) {
      ForEachAllocation([&](unsigned k) {
        R& target = state & 1 ? DispensableCopy(a) : *new R(a);
        const B& y = state & 2 ? DispensableCopy(b) : b;
        const bool failed = FailsAt(k, [&] { Op::compound(target, y); });
        if (!(state & 1)) {
          target.set_dispensable(true);
          if constexpr (kSparse<R>) {
            EXPECT_SOUND(target);
          }
          Drop(target);
        } else if (!failed) {
          Drop(target);
        }
        return failed;
      });
    }
  }
  EXPECT_TRUE(Same(a, before_a));
  EXPECT_TRUE(Same(b, before_b));
}

struct CheckFailures {
  template <class R, class A, class B>
  void pair() const {
    for (const unsigned n : {3u, 9u, 70u}) {  // 70 is beyond the scratch on the stack
      CheckSumFailures<PlusOp, R, A, B>(n);
      CheckSumFailures<MinusOp, R, A, B>(n);
    }
  }
};

TEST(SumFailures, DensePairs) { ForEachDenseSum(CheckFailures()); }
TEST(SumFailures, PairsWithSparse) { ForEachSumWithSparse(CheckFailures()); }

template <class X, class Y>
void CheckConvertedFailures() {
  Random random(7);
  for (const unsigned n : {4u, 70u}) {
    const X x = SumSample<X>(n, n, Pattern::kUniform, random);
    const Y y = SumSample<Y>(n, n, Pattern::kUniform, random);
    for (int state = 0; state < 4; ++state) {
      ForEachAllocation([&](unsigned k) {
        X ordinary(x);
        X& target = state & 1 ? DispensableCopy(x) : ordinary;
        const Y& other = state & 2 ? DispensableCopy(y) : y;
        const bool failed = FailsAt(k, [&] { target += other; });
        if (!failed && (state & 1)) Drop(target);
        EXPECT_SOUND(ordinary);
        return failed;
      });
    }
  }
}

TEST(SumFailures, SparseInPlaceWithDense) {
  CheckConvertedFailures<RegularSparseMatrix, RegularMatrix>();
  CheckConvertedFailures<RegularSparseMatrix, SymmetricMatrix>();
  CheckConvertedFailures<RegularSparseMatrix, UpperTriangularMatrix>();
  CheckConvertedFailures<RegularSparseMatrix, LowerTriangularMatrix>();
  CheckConvertedFailures<SymmetricSparseMatrix, SymmetricMatrix>();
}

}  // namespace
}  // namespace quorvel::test
