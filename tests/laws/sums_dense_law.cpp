// Sums of dense kinds: every row of the pair table.

#include "../src/ops/tables/sums.h"

#include "laws/sum_law.h"

namespace quorvel::test {
namespace {

template <class Op, class R, class A, class B>
void CheckDense(unsigned m, unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << A().ClassName() << " " << Op::name() << " " << B().ClassName());
  const A a = DenseSample<A>(m, n, pattern, random);
  const B b = DenseSample<B>(m, n, pattern, random);
  CheckSum<Op, R>(a, b, ExpectedDense<Op, R, A, B>(PlainOf(a), PlainOf(b)));
}

template <class R, class A, class B>
void CheckDensePair(unsigned m, unsigned n, Pattern pattern, Random& random) {
  CheckDense<PlusOp, R, A, B>(m, n, pattern, random);
  CheckDense<MinusOp, R, A, B>(m, n, pattern, random);
}

template <class K>
void CheckLike(unsigned n, Pattern pattern, Random& random) {
  const unsigned cols = kRectangular<K> ? OtherSize(n, random) : n;
  CheckDensePair<K, K, K>(n, cols, pattern, random);
  SCOPED_TRACE(K().ClassName());
  const K a = DenseSample<K>(n, cols, pattern, random);
  CheckSumWithItself<PlusOp>(a, ExpectedDense<PlusOp, K, K, K>(PlainOf(a), PlainOf(a)));
  CheckSumWithItself<MinusOp>(a, ExpectedDense<MinusOp, K, K, K>(PlainOf(a), PlainOf(a)));
}

#define LIKE(K, METHOD, CODE) CheckLike<K>(n, pattern, random);
#define TARGET(X, Y, METHOD, CODE)                 \
  CheckDensePair<X, X, Y>(n, n, pattern, random); \
  CheckDensePair<X, Y, X>(n, n, pattern, random);
#define FRESH(A, B, METHOD, CODE)                              \
  CheckDensePair<RegularMatrix, A, B>(n, n, pattern, random); \
  CheckDensePair<RegularMatrix, B, A>(n, n, pattern, random);

TEST(SumLaw, LikeDenseKinds) {
  ForSumSamples(1101, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_DENSE_LIKE_SUMS(LIKE) });
}

TEST(SumLaw, UnlikeDenseKinds) {
  ForSumSamples(1102, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_DENSE_TARGET_SUMS(TARGET) });
}

TEST(SumLaw, UnlikeDenseKindsWithANewResult) {
  ForSumSamples(1103, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_DENSE_FRESH_SUMS(FRESH) });
}

}  // namespace
}  // namespace quorvel::test
