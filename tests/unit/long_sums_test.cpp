// Sums of unlike dense kinds that are wider than the buffers they go through.

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/kinds.h"
#include "support/sums.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

template <class Op, class A, class B>
void CheckElements(const A& a, const B& b) {
  SCOPED_TRACE(::testing::Message() << a.ClassName() << " " << Op::name() << " " << b.ClassName() << ", order "
                                    << a.nrows());
  A first(a);
  B second(b);
  const R result(Op::apply(first, second));
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) {
      const double expected = Op::of(a(i, j), b(i, j));
      ASSERT_TRUE(result(i, j) == expected) << i << " " << j;
    }
  }
}

template <class A, class B>
void CheckPair(Random& random) {
  for (const unsigned n : {63u, 65u, 128u, 130u}) {
    const A a = DenseSample<A>(n, n, Pattern::kUniform, random);
    const B b = DenseSample<B>(n, n, Pattern::kUniform, random);
    CheckElements<PlusOp>(a, b);
    CheckElements<PlusOp>(b, a);
    CheckElements<MinusOp>(a, b);
    CheckElements<MinusOp>(b, a);
  }
}

}  // namespace

TEST(LongSums, UnlikeDenseKinds) {
  Random random(811);
  CheckPair<R, S>(random);
  CheckPair<R, U>(random);
  CheckPair<R, L>(random);
  CheckPair<S, U>(random);
  CheckPair<S, L>(random);
  CheckPair<U, L>(random);
}
