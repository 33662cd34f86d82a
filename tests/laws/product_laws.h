// What the laws of products share: shapes, samples, and the comparison of one operation in every ownership state.

#ifndef QUORVEL_TESTS_LAWS_PRODUCT_LAWS_H
#define QUORVEL_TESTS_LAWS_PRODUCT_LAWS_H

#include <gtest/gtest.h>

#include "support/allocations.h"
#include "support/make.h"
#include "support/masked.h"

namespace quorvel::test::laws {

inline constexpr unsigned kSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 31, 32, 33, 64};

struct Shape3 {
  unsigned m, k, n;
};

// Calls f(shape, pattern): every size as a cube and with two other sizes drawn at random, small ones with every pattern.
template <class F>
void ForEachShape(unsigned seed, F f) {
  Random random(seed);
  for (const unsigned size : kSizes) {
    for (const Pattern pattern : kAllPatterns) {
      if (size > 17 && pattern != Pattern::kSpecial) continue;
      f(Shape3{size, size, size}, pattern);
      const unsigned other = random.Below(size > 17 ? 30u : 20u), third = random.Below(20u);
      f(Shape3{size, other, third}, pattern);
      f(Shape3{other, size, third}, pattern);
      f(Shape3{third, other, size}, pattern);
    }
  }
}

// Consumes a result and compares it.
template <class R>
void Expect(R& returned, const Masked& expected, const std::string& call) {
  const R result(returned);
  EXPECT_EQ(result.nsing(), -1) << call;
  const Masked masked = MaskedOf(result);
  EXPECT_TRUE(SameAs(masked, expected)) << call;
  EXPECT_TRUE(HoldsNoZero(result)) << call;
  FeedDigest(masked);
}

// The operation gives `expected` with neither, the first, the second, and both operands dispensable, and destroys what
// is dispensable.
template <class A, class B, class Operation>
void ExpectInEveryState(const A& a, const B& b, Operation operation, const Masked& expected, const std::string& call) {
  const NoLeak no_leak;
  Expect(operation(a, b), expected, call + ", first dispensable: no, second: no");
  Expect(operation(DispensableCopy(a), b), expected, call + ", first dispensable: yes, second: no");
  Expect(operation(a, DispensableCopy(b)), expected, call + ", first dispensable: no, second: yes");
  Expect(operation(DispensableCopy(a), DispensableCopy(b)), expected, call + ", both dispensable");
}

inline std::string Call(const char* name, Shape3 s, Pattern pattern) {
  return std::string(name) + " m " + std::to_string(s.m) + " k " + std::to_string(s.k) + " n " + std::to_string(s.n) +
         " " + Name(pattern);
}

}  // namespace quorvel::test::laws

#endif
