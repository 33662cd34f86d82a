// Assignment to temporaries when memory runs out: target and source die, like every dispensable operand.

#include <gtest/gtest.h>

#include <new>
#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/kinds.h"
#include "support/make.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

// A whole matrix of order n, the same elements in each kind that stores them.
template <class K>
K Sample(unsigned n) {
  K a(n, n);
  for (unsigned i = 0; i < n; ++i) a(i, i) = 1.0 + i;
  return a;
}

template <class T>
constexpr bool is_sparse = std::is_base_of_v<SparseMatrix, T>;

// target = source, both temporaries or the target alone, with allocation k failing for k = 1, 2, ... Sparse temporaries
// keep their size, and a regular one may not grow when it becomes a regular sparse one: it dies by that in the end.
template <class T, class S>
void ExpectNothingLeft(bool consume) {
  SCOPED_TRACE(::testing::Message() << T().ClassName() << " = " << S().ClassName());
  constexpr bool may_not_grow = std::is_same_v<T, R> && std::is_same_v<S, RS>;
  const S kept = Sample<S>(5);
  for (unsigned k = 1; k < 20; ++k) {
    const long before = LiveBlocks();
    T& target = DispensableCopy(T(is_sparse<T> ? 5u : 2u, is_sparse<T> ? 5u : 2u));
    const S& source = consume ? DispensableCopy(kept) : kept;
    int code = 0;
    bool failed;
    {
      FailAllocations fail(k, Fail::kOnce);
      try {
        target = source;
      } catch (const MatrixException& e) {
        code = e.code();
      } catch (const std::bad_alloc&) {
        code = -1;
      }
      failed = fail.failed();
    }
    abort_reset();
    if (!failed) {
      EXPECT_EQ(code, may_not_grow ? 40000 : 0);
      if (code == 0) target.DestroyIfDispensable();
      EXPECT_EQ(LiveBlocks(), before);
      EXPECT_GT(k, 1u) << "nothing was allocated";
      return;
    }
    EXPECT_EQ(code, is_sparse<T> ? -1 : 10680);
    EXPECT_EQ(LiveBlocks(), before) << "allocation " << k;
  }
  ADD_FAILURE() << "too many allocations";
}

template <class T, class S>
void ExpectNothingLeft() {
  ExpectNothingLeft<T, S>(false);
  if (!std::is_same_v<T, S>) ExpectNothingLeft<T, S>(true);  // of the same kind, a temporary gives its storage
}

}  // namespace

TEST(AssignmentFailure, TargetsOfTheSameKind) {
  ExpectNothingLeft<R, R>();
  ExpectNothingLeft<S, S>();
  ExpectNothingLeft<U, U>();
  ExpectNothingLeft<L, L>();
  ExpectNothingLeft<D, D>();
  ExpectNothingLeft<RS, RS>();
  ExpectNothingLeft<SS, SS>();
}

TEST(AssignmentFailure, TargetsOfAnotherKind) {
  ExpectNothingLeft<R, S>();
  ExpectNothingLeft<R, U>();
  ExpectNothingLeft<R, L>();
  ExpectNothingLeft<R, D>();
  ExpectNothingLeft<R, RS>();
  ExpectNothingLeft<R, SS>();
  ExpectNothingLeft<S, D>();
  ExpectNothingLeft<S, SS>();
  ExpectNothingLeft<U, D>();
  ExpectNothingLeft<L, D>();
  ExpectNothingLeft<RS, R>();
  ExpectNothingLeft<RS, S>();
  ExpectNothingLeft<RS, U>();
  ExpectNothingLeft<RS, L>();
  ExpectNothingLeft<RS, D>();
  ExpectNothingLeft<RS, SS>();
  ExpectNothingLeft<SS, S>();
  ExpectNothingLeft<SS, D>();
}
