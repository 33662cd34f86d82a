// A program compiled as C++20 gets the comparisons that the headers state, or none.

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"

static_assert(__cplusplus > 201703L, "this room tests users of a later standard");

namespace {

template <class A, class B>
constexpr bool kCanCompare = requires(const A& a, const B& b) { a != b; };

TEST(Cxx20, ANumberOnTheLeftOfUnequalDoesNotCompile) {
  static_assert(kCanCompare<RegularMatrix, double>);
  static_assert(!kCanCompare<double, RegularMatrix>);
  static_assert(!kCanCompare<double, SymmetricMatrix>);
  static_assert(!kCanCompare<double, DiagonalMatrix>);
}

TEST(Cxx20, EqualIsTheSameFromBothSides) {
  RegularMatrix a(1, 2);
  a(0) = 1.0;
  EXPECT_FALSE(a == 0.0);
  EXPECT_FALSE(0.0 == a);
  EXPECT_FALSE(a != 0.0);  // no element is zero? one is
  a(0) = 0.0;
  EXPECT_TRUE(a == 0.0);
  EXPECT_TRUE(0.0 == a);
}

}  // namespace
