// Singularity counts of matrices of known rank, 500 of each sort.
//
// Matrices for the reflections are integer combinations of columns of a unimodular matrix, dependent columns last:
// independent ones stand clear of the others by more than 1e-8 of their length, dependent ones by rounding only.
// Matrices for the elimination are totally unimodular (incidence matrices of graphs, with a vertex left out), so that
// every pivot order meets 0, 1 and -1 alone and no step rounds, also when rows and columns are scaled by powers of two.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>
#include <vector>

#include "accuracy/constructed.h"

namespace quorvel::test {
namespace {

std::vector<unsigned> Permutation(unsigned n, Random& random) {
  std::vector<unsigned> p(n);
  for (unsigned i = 0; i < n; ++i) p[i] = i;
  for (unsigned i = n; i > 1; --i) std::swap(p[i - 1], p[random.Below(i)]);
  return p;
}

Grid Permuted(const Grid& a, const std::vector<unsigned>& rows, const std::vector<unsigned>& cols) {
  Grid b(a.m, a.n);
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) b(rows[i], cols[j]) = a(i, j);
  }
  return b;
}

Grid SmallIntegers(unsigned rows, unsigned cols, Random& random) {
  Grid g(rows, cols);
  for (double& e : g.e) e = random.Integer(-1, 1);
  return g;
}

// --- Inverses by reflections and in closed form --------------------------------------------------------------------

// L*D*U with unit triangles of -1, 0, 1 and D of -1, 1; symmetric with U = L'.
Grid Unimodular(unsigned n, bool symmetric, Random& random) {
  Grid l = PartOf(SmallIntegers(n, n, random), false, true), u = PartOf(SmallIntegers(n, n, random), true, false);
  for (unsigned i = 0; i < n; ++i) l(i, i) = u(i, i) = 1.0;
  if (symmetric) u = Transposed(l);
  for (unsigned i = 0; i < n; ++i) {
    const double sign = random.Chance(2) ? 1.0 : -1.0;
    for (unsigned j = 0; j < n; ++j) u(i, j) *= sign;
  }
  return Times(l, u);
}

// Order n and rank r: the leading block is unimodular, the other rows and columns are combinations of its own.
Grid OfRank(unsigned n, unsigned r, bool symmetric, Random& random) {
  Grid rows = SmallIntegers(n, r, random), cols = SmallIntegers(r, n, random);
  for (unsigned i = 0; i < r; ++i) {
    for (unsigned j = 0; j < r; ++j) rows(i, j) = cols(i, j) = i == j ? 1.0 : 0.0;
  }
  return Times(Times(rows, Unimodular(r, symmetric, random)), symmetric ? Transposed(rows) : cols);
}

TEST(ConstructedRanks, InversesByReflections) {
  ForEachCase(4, [](Random& random, unsigned k) {
    const unsigned n = 4 + k % 6, r = random.Below(n + 1);
    const bool in_place = k % 4 < 2;
    const int count = static_cast<int>(n - r);
    std::vector<unsigned> in_order(n);
    for (unsigned i = 0; i < n; ++i) in_order[i] = i;
    const Grid a = Permuted(OfRank(n, r, false, random), Permutation(n, random), in_order);
    EXPECT_EQ(InverseCount(RegularOf(a), in_place), count);
    EXPECT_EQ(InverseCount(SparseOf(a), in_place), count);
    const Grid s = OfRank(n, r, true, random);
    EXPECT_EQ(InverseCount(SymmetricOf(s), in_place), count);
    EXPECT_EQ(InverseCount(SymmetricSparseOf(s), in_place), count);
  });
}

// A principal block of the rank's order has a determinant of 1 or -1, wherever it lies.
TEST(ConstructedRanks, ClosedForms) {
  ForEachCase(5, [](Random& random, unsigned k) {
    const unsigned n = 2 + k % 2, r = random.Below(n + 1);
    const bool in_place = k % 4 < 2;
    const int count = static_cast<int>(n - r);
    const std::vector<unsigned> p = Permutation(n, random);
    const Grid a = Permuted(OfRank(n, r, false, random), p, p), s = Permuted(OfRank(n, r, true, random), p, p);
    EXPECT_EQ(ClosedFormCount(RegularOf(a), in_place), count);
    EXPECT_EQ(ClosedFormCount(SparseOf(a), in_place), count);
    EXPECT_EQ(ClosedFormCount(SymmetricOf(s), in_place), count);
    EXPECT_EQ(ClosedFormCount(SymmetricSparseOf(s), in_place), count);
  });
}

// All principal blocks of a strict triangle are singular: one element is inverted, whatever the rank.
TEST(ConstructedRanks, ClosedFormsWithoutPrincipalBlock) {
  ForEachCase(6, [](Random& random, unsigned k) {
    const unsigned n = 2 + k % 2;
    Grid a(n, n);
    bool any = false;
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i + 1; j < n; ++j) any = (a(i, j) = random.Integer(-1, 1)) != 0.0 || any;
    }
    const std::vector<unsigned> p = Permutation(n, random);
    const int count = static_cast<int>(any ? n - 1 : n);
    EXPECT_EQ(ClosedFormCount(RegularOf(Permuted(a, p, p)), k % 4 < 2), count);
    EXPECT_EQ(ClosedFormCount(SparseOf(Permuted(a, p, p)), k % 4 < 2), count);
  });
}

// --- Elimination ---------------------------------------------------------------------------------------------------

// m x n of rank r <= min(m, n). Columns are edges between m vertices and one that is left out: r of them join parts of
// the graph that were not joined before, the others close a cycle or (an edge from a vertex to itself) are zero.
Grid Incidence(unsigned m, unsigned n, unsigned r, Random& random) {
  std::vector<unsigned> part(m + 1);
  for (unsigned v = 0; v <= m; ++v) part[v] = v;
  Grid a(m, n);
  for (unsigned e = 0; e < n; ++e) {
    unsigned from = 0, to = 0;
    do {
      from = random.Below(m + 1);
      to = random.Below(m + 1);
    } while ((part[from] != part[to]) != (e < r));
    const unsigned joined = part[to], with = part[from];
    for (unsigned& p : part) p = p == joined ? with : p;
    if (from < m) a(from, e) += 1.0;
    if (to < m) a(to, e) -= 1.0;
  }
  return Permuted(a, Permutation(m, random), Permutation(n, random));
}

std::vector<double> PowersOfTwo(unsigned n, Random& random) {
  std::vector<double> p(n);
  for (double& e : p) e = std::ldexp(1.0, random.Integer(-6, 6));
  return p;
}

void Scale(Grid& a, const std::vector<double>& rows, const std::vector<double>& cols) {
  for (unsigned i = 0; i < a.m; ++i) {
    for (unsigned j = 0; j < a.n; ++j) a(i, j) *= rows[i] * cols[j];
  }
}

// A solution and the count of the unknowns that elimination leaves at 0.
template <class K>
void ExpectSolved(const K& A, const Grid& a, const Grid& b, unsigned count) {
  using Side = std::conditional_t<std::is_same_v<K, SymmetricSparseMatrix>, RegularSparseMatrix, RegularMatrix>;
  const RegularMatrix dense = RegularOf(b);
  const Side side(dense);
  const Held<Side> x(A > side);
  EXPECT_EQ(A.nsing(), static_cast<int>(count));
  const Grid solution = PlainOf(*x);
  EXPECT_TRUE(Same(Times(a, solution), b, true));
  unsigned zero_rows = 0;
  for (unsigned i = 0; i < solution.m; ++i) {
    bool zero = true;
    for (unsigned c = 0; c < solution.n; ++c) zero = zero && solution(i, c) == 0.0;
    zero_rows += zero ? 1 : 0;
  }
  EXPECT_GE(zero_rows, count);
}

Grid ConsistentSides(const Grid& a, unsigned sides, Random& random) {
  Grid x(a.n, sides);
  for (double& e : x.e) e = random.Integer(-9, 9);
  return Times(a, x);
}

TEST(ConstructedRanks, SolutionsByElimination) {
  ForEachCase(7, [](Random& random, unsigned k) {
    const unsigned n = 1 + k % 12, r = random.Below(n + 1);
    Grid a = Incidence(n, n, r, random);
    Scale(a, PowersOfTwo(n, random), PowersOfTwo(n, random));
    const Grid b = ConsistentSides(a, 1 + k % 3, random);
    ExpectSolved(RegularOf(a), a, b, n - r);
    ExpectSolved(SparseOf(a), a, b, n - r);
  });
}

// [0 B 0; B' 0 0; 0 0 D], with rows and columns permuted alike: rank 2*rank(B) + rank(D).
TEST(ConstructedRanks, SymmetricSolutionsByElimination) {
  ForEachCase(8, [](Random& random, unsigned k) {
    const unsigned m = 1 + random.Below(4), q = 1 + random.Below(4), n = m + q + random.Below(4);
    const unsigned r = random.Below(std::min(m, q) + 1);
    const Grid b = Incidence(m, q, r, random);
    Grid s(n, n);
    for (unsigned i = 0; i < m; ++i) {
      for (unsigned j = 0; j < q; ++j) s(i, m + j) = s(m + j, i) = b(i, j);
    }
    unsigned rank = 2 * r;
    for (unsigned i = m + q; i < n; ++i) {
      s(i, i) = random.Integer(-1, 1);
      rank += s(i, i) != 0.0 ? 1 : 0;
    }
    const std::vector<unsigned> p = Permutation(n, random);
    s = Permuted(s, p, p);
    const std::vector<double> scale = PowersOfTwo(n, random);
    Scale(s, scale, scale);
    const Grid sides = ConsistentSides(s, 1 + k % 3, random);
    ExpectSolved(SymmetricOf(s), s, sides, n - rank);
    ExpectSolved(SymmetricSparseOf(s), s, sides, n - rank);
  });
}

}  // namespace
}  // namespace quorvel::test
