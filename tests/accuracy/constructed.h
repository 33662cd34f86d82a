// Singularity counts of matrices whose count is known from how they are made: what the files that do so share.

#ifndef QUORVEL_TESTS_ACCURACY_CONSTRUCTED_H
#define QUORVEL_TESTS_ACCURACY_CONSTRUCTED_H

#include <gtest/gtest.h>

#include "quorvel/quorvel.h"
#include "support/grid.h"

namespace quorvel::test {

constexpr unsigned kCases = 500;

inline RegularSparseMatrix SparseOf(const Grid& g) {
  RegularSparseMatrix s(g.m, g.n);
  for (unsigned i = 0; i < g.m; ++i) {
    for (unsigned j = 0; j < g.n; ++j) {
      if (g(i, j) != 0.0) s.Put(i, j, g(i, j));
    }
  }
  return s;
}

inline SymmetricSparseMatrix SymmetricSparseOf(const Grid& g) {
  SymmetricSparseMatrix s(g.n, g.n);
  for (unsigned i = 0; i < g.n; ++i) {
    for (unsigned j = i; j < g.n; ++j) {
      if (g(i, j) != 0.0) s.Put(i, j, g(i, j));
    }
  }
  return s;
}

// Calls check(random, k) 500 times; the first failure ends it.
template <class Check>
void ForEachCase(unsigned seed, Check check) {
  for (unsigned k = 0; k < kCases; ++k) {
    Random random(1000ull * seed + k);
    check(random, k);
    if (::testing::Test::HasFailure()) {
      ADD_FAILURE() << "case " << k;
      return;
    }
  }
}

// The count of a result of invert(a, in place).
template <class K, class Invert>
int CountOf(K a, bool in_place, Invert invert) {
  if (in_place) return invert(a, true).nsing();
  const Held<K> x(invert(a, false));
  return x->nsing();
}

template <class K>
int InverseCount(const K& a, bool in_place) {
  return CountOf(a, in_place, [](K& m, bool here) -> K& { return inv(m, here); });
}

// The diagonal, and what is above and under it where asked for.
inline Grid PartOf(const Grid& a, bool above, bool under) {
  Grid p = a;
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) {
      if ((j > i && !above) || (j < i && !under)) p(i, j) = 0.0;
    }
  }
  return p;
}

template <class K>
int ClosedFormCount(const K& a, bool in_place) {
  return CountOf(a, in_place, [](K& m, bool here) -> K& { return m.nrows() == 2 ? inv2x2(m, here) : inv3x3(m, here); });
}

}  // namespace quorvel::test

#endif
