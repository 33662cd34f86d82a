// Laws of sums: every pair of kinds, in every form and ownership state, against plain arrays, bit for bit.

#ifndef QUORVEL_TESTS_LAWS_SUM_LAW_H
#define QUORVEL_TESTS_LAWS_SUM_LAW_H

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "support/allocations.h"
#include "support/digest.h"
#include "support/plain.h"
#include "support/sparse.h"
#include "support/sums.h"

namespace quorvel::test {

inline constexpr unsigned kSumSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 31, 32, 33, 64};

// Where a kind has elements: the others are zero by definition.
template <class K>
constexpr bool Has(unsigned i, unsigned j) {
  if (std::is_same_v<K, UpperTriangularMatrix>) return i <= j;
  if (std::is_same_v<K, LowerTriangularMatrix>) return i >= j;
  if (std::is_same_v<K, DiagonalMatrix>) return i == j;
  return true;
}

// The sum, element by element, with a result of kind R.
//
// With a diagonal operand the elements off the diagonal keep their bits, and so do those of a dense matrix where a
// sparse operand stores nothing; in a difference that begins with the diagonal or the sparse operand they change their
// sign (but those of a dense symmetric subtrahend of a diagonal matrix stay). A sparse result has no zeros of its own.
template <class Op, class R, class A, class B>
Plain ExpectedSum(const Plain& a, const Plain& b) {
  constexpr bool a_diagonal = std::is_same_v<A, DiagonalMatrix>;
  constexpr bool b_diagonal = std::is_same_v<B, DiagonalMatrix>;
  Plain r(a.m, a.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) {
      if (!Has<R>(i, j)) continue;
      const bool only_a = b_diagonal && !a_diagonal ? i != j : kSparse<B> && !kSparse<R> && b(i, j) == 0.0;
      const bool only_b = a_diagonal && !b_diagonal ? i != j : kSparse<A> && !kSparse<R> && a(i, j) == 0.0;
      if (only_a) {
        r(i, j) = a(i, j);
      } else if (only_b) {
        r(i, j) = Op::minus && !(a_diagonal && std::is_same_v<B, SymmetricMatrix>) ? -b(i, j) : b(i, j);
      } else {
        r(i, j) = Op::of(a(i, j), b(i, j));
      }
      if (kSparse<R> && r(i, j) == 0.0) r(i, j) = 0.0;
    }
  }
  return r;
}

// Which of two dispensable (or not) operands becomes the result: 1, 2, or 0 for a new matrix. Of two sparse operands
// the one with more elements is preferred.
template <class R, class A, class B>
int ExpectedReuse(const A& a, const B& b, bool a_dispensable, bool b_dispensable) {
  const bool first = a_dispensable && std::is_same_v<A, R>;
  const bool second = b_dispensable && std::is_same_v<B, R>;
  if constexpr (kSparse<A> && kSparse<B>) {
    if (a.used < b.used) return second ? 2 : first ? 1 : 0;
  }
  return first ? 1 : second ? 2 : 0;
}

// What every result of a sum has in common; `r` is looked at, not consumed.
template <class R>
void ExpectSum(const R& r, const Plain& expected) {
  EXPECT_TRUE(Same(r, expected));
  EXPECT_EQ(r.nsing(), -1);
  EXPECT_TRUE(r.ok());
  if constexpr (kSparse<R>) {
    EXPECT_SOUND(r);
  }
}

// One pair with given operands: every form, every ownership state.
template <class Op, class R, class A, class B>
void CheckSum(const A& a, const B& b, const Plain& expected) {
  const Plain before_a = PlainOf(a);
  const Plain before_b = PlainOf(b);
  {
    A x(a);
    B y(b);
    static_assert(std::is_same_v<decltype(Op::apply(x, y)), R&>);
    const Held<R> sum(Op::apply(x, y));
    ExpectSum(*sum, expected);
    EXPECT_NE(static_cast<const Matrix*>(&*sum), &x);
    EXPECT_NE(static_cast<const Matrix*>(&*sum), &y);
    EXPECT_TRUE(Same(x, before_a));
    EXPECT_TRUE(Same(y, before_b));
    digest::Feed(PlainOf(*sum).e.data(), expected.e.size());
  }
  {
    static_assert(std::is_same_v<decltype(Op::apply(a, b)), R&>);
    const Held<R> sum(Op::apply(a, b));
    ExpectSum(*sum, expected);
  }
  // A dispensable operand of the result's kind becomes the result, the first one first; the others die (the count of
  // live blocks tells).
  for (int state = 1; state <= 3; ++state) {
    const NoLeak balance;
    A x(a);
    B y(b);
    A& first = state & 1 ? DispensableCopy(x) : x;
    B& second = state & 2 ? DispensableCopy(y) : y;
    const Matrix* const first_address = &first;
    const Matrix* const second_address = &second;
    first.set_nsing(2);
    second.set_nsing(3);
    const int reused = ExpectedReuse<R>(a, b, (state & 1) != 0, (state & 2) != 0);
    const Held<R> sum(Op::apply(first, second));
    const Matrix* const result = &*sum;
    EXPECT_EQ(result == first_address, reused == 1) << "state " << state;
    EXPECT_EQ(result == second_address, reused == 2) << "state " << state;
    ExpectSum(*sum, expected);
  }
  // Three operands: a new result, a used one, one that is an operand; operands consumed when dispensable.
  {
    R result;
    result.set_nsing(3);
    static_assert(std::is_same_v<decltype(Op::assign(result, a, b)), R&>);
    EXPECT_EQ(&Op::assign(result, a, b), &result);
    ExpectSum(result, expected);
    EXPECT_FALSE(result.dispensable());
  }
  {
    const NoLeak balance;
    R result(4, 4);
    Op::assign(result, DispensableCopy(a), DispensableCopy(b));
    ExpectSum(result, expected);
  }
  if constexpr (std::is_same_v<R, A>) {
    R result(a);
    result.set_nsing(3);
    EXPECT_EQ(&Op::assign(result, result, b), &result);
    ExpectSum(result, expected);
    R& dispensable = DispensableCopy(a);
    EXPECT_EQ(&Op::assign(dispensable, dispensable, b), &dispensable);
    ExpectSum(dispensable, expected);
    Drop(dispensable);
  }
  if constexpr (std::is_same_v<R, B>) {
    R result(b);
    result.set_nsing(3);
    EXPECT_EQ(&Op::assign(result, a, result), &result);
    ExpectSum(result, expected);
    R& dispensable = DispensableCopy(b);
    EXPECT_EQ(&Op::assign(dispensable, a, dispensable), &dispensable);
    ExpectSum(dispensable, expected);
    Drop(dispensable);
  }
  if constexpr (std::is_same_v<R, A>) {
    const NoLeak balance;
    R target(a);
    target.set_nsing(3);
    static_assert(std::is_same_v<decltype(Op::compound(target, b)), R&>);
    EXPECT_EQ(&Op::compound(target, b), &target);
    EXPECT_TRUE(Same(target, expected));
    if constexpr (kSparse<R>) {
      EXPECT_SOUND(target);
    }
    EXPECT_EQ(target.nsing(), kSparse<R> ? 3 : -1);
    target = a;
    Op::compound(target, DispensableCopy(b));
    EXPECT_TRUE(Same(target, expected));
  }
}

// One object in both places.
template <class Op, class K>
void CheckSumWithItself(const K& a, const Plain& expected) {
  const NoLeak balance;
  {
    K x(a);
    const Held<K> sum(Op::apply(x, x));
    ExpectSum(*sum, expected);
    EXPECT_NE(&*sum, &x);
    EXPECT_TRUE(Same(x, PlainOf(a)));
  }
  {
    K& x = DispensableCopy(a);
    const Held<K> sum(Op::apply(x, x));
    EXPECT_EQ(&*sum, &x);
    ExpectSum(*sum, expected);
  }
  {
    K result;
    K& x = DispensableCopy(a);
    Op::assign(result, x, x);
    ExpectSum(result, expected);
  }
  {
    K x(a);
    Op::assign(x, x, x);
    ExpectSum(x, expected);
    x = a;
    Op::compound(x, x);
    EXPECT_TRUE(Same(x, expected));
    K& dispensable = DispensableCopy(a);
    EXPECT_EQ(&Op::compound(dispensable, dispensable), &dispensable);
    EXPECT_TRUE(Same(dispensable, expected));
    Drop(dispensable);
  }
}

template <class Op, class R, class A, class B>
void CheckRandomSum(unsigned m, unsigned n, Pattern pattern, Random& random) {
  SCOPED_TRACE(::testing::Message() << A().ClassName() << " " << Op::name() << " " << B().ClassName());
  const A a = SumSample<A>(m, n, pattern, random);
  const B b = SumSample<B>(m, n, pattern, random);
  CheckSum<Op, R>(a, b, ExpectedSum<Op, R, A, B>(PlainOf(a), PlainOf(b)));
}

template <class R, class A, class B>
void CheckRandomSums(unsigned m, unsigned n, Pattern pattern, Random& random) {
  CheckRandomSum<PlusOp, R, A, B>(m, n, pattern, random);
  CheckRandomSum<MinusOp, R, A, B>(m, n, pattern, random);
}

// The column count that goes with a row count of n, where the kinds allow another.
inline unsigned OtherSize(unsigned n, Random& random) { return n < 18 ? random.Below(18) : n - random.Below(3); }

template <class K>
void CheckLikeSums(unsigned n, Pattern pattern, Random& random) {
  const unsigned cols = kRectangular<K> ? OtherSize(n, random) : n;
  CheckRandomSums<K, K, K>(n, cols, pattern, random);
  SCOPED_TRACE(K().ClassName());
  const K a = SumSample<K>(n, cols, pattern, random);
  CheckSumWithItself<PlusOp>(a, ExpectedSum<PlusOp, K, K, K>(PlainOf(a), PlainOf(a)));
  CheckSumWithItself<MinusOp>(a, ExpectedSum<MinusOp, K, K, K>(PlainOf(a), PlainOf(a)));
}

// A pair in both orders, with a result of kind R.
template <class R, class A, class B>
void CheckUnlikeSums(unsigned n, Pattern pattern, Random& random) {
  const unsigned cols = kRectangular<A> && kRectangular<B> ? OtherSize(n, random) : n;
  CheckRandomSums<R, A, B>(n, cols, pattern, random);
  CheckRandomSums<R, B, A>(n, cols, pattern, random);
}

// Large sizes take their turn with the patterns, small ones take them all.
template <class Body>
void ForSumSamples(std::uint64_t seed, Body body) {
  Random random(seed);
  unsigned turn = 0;
  for (unsigned n : kSumSizes) {
    for (Pattern pattern : kAllPatterns) {
      if (n > 6 && turn++ % kAllPatterns.size() != n % kAllPatterns.size()) continue;
      SCOPED_TRACE(::testing::Message() << "size " << n << ", " << Name(pattern) << ", seed " << seed);
      body(n, pattern, random);
      if (::testing::Test::HasFailure()) return;
    }
  }
}

}  // namespace quorvel::test

#endif
