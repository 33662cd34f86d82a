// Sums of dense kinds: every row of the pair table.

#include "laws/sum_law.h"

namespace quorvel::test {
namespace {

#define LIKE(K, METHOD, CODE) CheckLikeSums<K>(n, pattern, random);
#define TARGET(X, Y, METHOD, CODE) CheckUnlikeSums<X, X, Y>(n, pattern, random);
#define FRESH(A, B, METHOD, CODE) CheckUnlikeSums<RegularMatrix, A, B>(n, pattern, random);

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
