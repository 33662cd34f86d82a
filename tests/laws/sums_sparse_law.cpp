// Sums with a sparse operand: every row of the pair table.

#include "laws/sum_law.h"

namespace quorvel::test {
namespace {

#define LIKE(K, METHOD, CODE) CheckLikeSums<K>(n, pattern, random);
#define TARGET(X, Y, METHOD, CODE) CheckUnlikeSums<X, X, Y>(n, pattern, random);
#define FRESH(A, B, METHOD, CODE) CheckUnlikeSums<RegularMatrix, A, B>(n, pattern, random);

TEST(SumLaw, LikeSparseKinds) {
  ForSumSamples(1111, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_SPARSE_LIKE_SUMS(LIKE) });
}

TEST(SumLaw, RegularWithSymmetricSparse) {
  ForSumSamples(1112, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_SPARSE_MIXED_SUMS(TARGET) });
}

TEST(SumLaw, SparseKindsWithDiagonal) {
  ForSumSamples(1113, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(TARGET) });
}

TEST(SumLaw, DenseKindsWithSparse) {
  ForSumSamples(1114, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_DENSE_SPARSE_TARGET_SUMS(TARGET) });
}

TEST(SumLaw, DenseKindsWithSparseAndANewResult) {
  ForSumSamples(1115, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_DENSE_SPARSE_FRESH_SUMS(FRESH) });
}

// A sparse matrix in place with a dense one: as with the sparse matrix that has its non-zero elements.
template <class Op, class X, class Y>
void CheckConvertedSum(unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << X().ClassName() << " " << Op::name() << "= " << Y().ClassName());
  const NoLeak balance;
  const unsigned cols = kRectangular<X> && kRectangular<Y> ? OtherSize(n, random) : n;
  const X x = SumSample<X>(n, cols, pattern, random);
  const Y y = SumSample<Y>(n, cols, pattern, random);
  const Plain expected = ExpectedSum<Op, X, X, X>(PlainOf(x), PlainOf(y));
  X target(x);
  target.set_nsing(4);
  static_assert(std::is_same_v<decltype(Op::compound(target, y)), X&>);
  EXPECT_EQ(&Op::compound(target, y), &target);
  EXPECT_TRUE(Same(target, expected));
  EXPECT_EQ(target.nsing(), 4);
  target = x;
  Op::compound(target, DispensableCopy(y));
  EXPECT_TRUE(Same(target, expected));
}

#define CONVERTED(X, Y)                               \
  CheckConvertedSum<PlusOp, X, Y>(n, pattern, random); \
  CheckConvertedSum<MinusOp, X, Y>(n, pattern, random);

TEST(SumLaw, SparseKindsInPlaceWithDense) {
  ForSumSamples(1116, [](unsigned n, Pattern pattern, Random& random) { QUORVEL_CONVERTED_SUMS(CONVERTED) });
}

}  // namespace
}  // namespace quorvel::test
