// Sums: samples of every kind, the two operations, and a visit of every pair.

#ifndef QUORVEL_TESTS_SUPPORT_SUMS_H
#define QUORVEL_TESTS_SUPPORT_SUMS_H

#include <type_traits>

#include "../src/ops/tables/sums.h"
#include "quorvel/quorvel.h"
#include "support/make.h"

namespace quorvel::test {

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

// The same of a sparse kind, with about one cell in three stored, none of them zero.
template <class K>
K SparseSample(unsigned m, unsigned n, Pattern pattern, Random& random) {
  K a(m, n);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      if (random.Chance(3)) a.Put(i, j, Draw(pattern, random));
    }
  }
  return a;
}

template <class K>
K SumSample(unsigned m, unsigned n, Pattern pattern, Random& random) {
  if constexpr (kSparse<K>) {
    return SparseSample<K>(m, n, pattern, random);
  } else {
    return DenseSample<K>(m, n, pattern, random);
  }
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


#define QUORVEL_VISIT_LIKE(K, METHOD, CODE) visit.template pair<K, K, K>();
#define QUORVEL_VISIT_TARGET(X, Y, METHOD, CODE) visit.template pair<X, X, Y>(), visit.template pair<X, Y, X>();
#define QUORVEL_VISIT_FRESH(A, B, METHOD, CODE) \
  visit.template pair<RegularMatrix, A, B>(), visit.template pair<RegularMatrix, B, A>();

// Calls visit.pair<result kind, left kind, right kind>() for every pair of kinds, in groups of a few, so that each
// test's code stays small.
template <class Visit>
void ForEachDenseSum(Visit visit) {
  QUORVEL_DENSE_LIKE_SUMS(QUORVEL_VISIT_LIKE)
  QUORVEL_DENSE_TARGET_SUMS(QUORVEL_VISIT_TARGET)
  QUORVEL_DENSE_FRESH_SUMS(QUORVEL_VISIT_FRESH)
}

template <class Visit>
void ForEachSumWithSparse(Visit visit) {
  QUORVEL_SPARSE_LIKE_SUMS(QUORVEL_VISIT_LIKE)
  QUORVEL_SPARSE_MIXED_SUMS(QUORVEL_VISIT_TARGET)
  QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(QUORVEL_VISIT_TARGET)
  QUORVEL_DENSE_SPARSE_TARGET_SUMS(QUORVEL_VISIT_TARGET)
  QUORVEL_DENSE_SPARSE_FRESH_SUMS(QUORVEL_VISIT_FRESH)
}

}  // namespace quorvel::test

#endif
