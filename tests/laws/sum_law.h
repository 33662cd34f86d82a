// Laws of sums: every pair of kinds, in every form and ownership state, against plain arrays, bit for bit.

#ifndef QUORVEL_TESTS_LAWS_SUM_LAW_H
#define QUORVEL_TESTS_LAWS_SUM_LAW_H

#include <gtest/gtest.h>

#include <type_traits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/digest.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {

inline constexpr unsigned kSumSizes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 31, 32, 33, 64};

template <class K>
constexpr bool kSparse = std::is_same_v<K, RegularSparseMatrix> || std::is_same_v<K, SymmetricSparseMatrix>;
template <class K>
constexpr bool kRectangular = std::is_same_v<K, RegularMatrix> || std::is_same_v<K, RegularSparseMatrix>;

// An m x n matrix of a dense kind (square kinds: m = n) with random stored doubles.
template <class K>
K DenseSample(unsigned m, unsigned n, Pattern pattern, Random& random) {
  K a(m, n);
  FillMatrix(a, pattern, random);
  return a;
}

// The element a + b or a - b.
struct PlusOp {
  static constexpr bool minus = false;
  static const char* name() { return "+"; }
  static double of(double a, double b) { return a + b; }
  template <class A, class B>
  static auto& apply(A& a, B& b) { return a + b; }
  template <class R, class A, class B>
  static auto& assign(R& r, A& a, B& b) { return Plus(r, a, b); }
  template <class X, class Y>
  static auto& compound(X& x, Y& y) { return x += y; }
};

struct MinusOp {
  static constexpr bool minus = true;
  static const char* name() { return "-"; }
  static double of(double a, double b) { return a - b; }
  template <class A, class B>
  static auto& apply(A& a, B& b) { return a - b; }
  template <class R, class A, class B>
  static auto& assign(R& r, A& a, B& b) { return Minus(r, a, b); }
  template <class X, class Y>
  static auto& compound(X& x, Y& y) { return x -= y; }
};

// What the elements of a sum of dense kinds are. With a diagonal operand the others keep their bits, or change their
// sign when the diagonal comes first in a difference, but for a symmetric subtrahend.
template <class Op, class A, class B>
Plain ExpectedDense(const Plain& a, const Plain& b) {
  constexpr bool a_diagonal = std::is_same_v<A, DiagonalMatrix>;
  constexpr bool b_diagonal = std::is_same_v<B, DiagonalMatrix>;
  Plain r(a.m, a.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) {
      r(i, j) = Op::of(a(i, j), b(i, j));
      if (i == j || a_diagonal == b_diagonal) continue;
      if (b_diagonal) r(i, j) = a(i, j);
      if (a_diagonal) r(i, j) = Op::minus && !std::is_same_v<B, SymmetricMatrix> ? -b(i, j) : b(i, j);
    }
  }
  // Outside its triangle a result has no elements.
  if (std::is_same_v<A, UpperTriangularMatrix> || std::is_same_v<B, UpperTriangularMatrix>) {
    if (a_diagonal || b_diagonal) {
      for (unsigned i = 0; i < a.m; ++i) {
        for (unsigned j = 0; j < i; ++j) r(i, j) = 0.0;
      }
    }
  }
  if (std::is_same_v<A, LowerTriangularMatrix> || std::is_same_v<B, LowerTriangularMatrix>) {
    if (a_diagonal || b_diagonal) {
      for (unsigned i = 0; i < a.m; ++i) {
        for (unsigned j = i + 1; j < a.n; ++j) r(i, j) = 0.0;
      }
    }
  }
  if (std::is_same_v<A, B> && !std::is_same_v<A, RegularMatrix> && !std::is_same_v<A, SymmetricMatrix>) {
    for (std::size_t k = 0; k < r.e.size(); ++k) {
      if (a.e[k] == 0.0 && b.e[k] == 0.0 && !std::signbit(a.e[k]) && !std::signbit(b.e[k])) r.e[k] = 0.0;
    }
  }
  return r;
}

}  // namespace quorvel::test

#endif
