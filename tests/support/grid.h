// Plain arrays as matrices (products, norms, comparison), and families of symmetric samples.

#ifndef QUORVEL_TESTS_SUPPORT_GRID_H
#define QUORVEL_TESTS_SUPPORT_GRID_H

#include <array>
#include <vector>

#include "support/plain.h"

namespace quorvel::test {

using Grid = Plain;

// All elements of a dense matrix, implicit ones included, read through the public element access.
template <class K>
Grid GridOf(const K& a) {
  Grid g(a.nrows(), a.ncols());
  for (unsigned i = 0; i < g.m; ++i) {
    for (unsigned j = 0; j < g.n; ++j) g(i, j) = a(i, j);
  }
  return g;
}

RegularMatrix RegularOf(const Grid& g);
SymmetricMatrix SymmetricOf(const Grid& g);  // from the upper triangle
UpperTriangularMatrix UpperOf(const Grid& g);
LowerTriangularMatrix LowerOf(const Grid& g);

// Same value in every element: same bits, but any NaN equals any other and 0.0 equals -0.0. On a difference it fails
// the test, naming the first element; `what` says which case.
void ExpectSameValues(const Grid& actual, const Grid& expected, const char* what);

Grid Times(const Grid& a, const Grid& b);
Grid Transposed(const Grid& a);
double Norm1(const Grid& a);  // largest column sum; NaN when an element is

// Random, with fixed seeds: the same on every platform.
Grid RandomGrid(unsigned rows, unsigned cols, Random& random);

enum class Family {
  kDefinite,   // G*G'/n + 0.1*I
  kHilbert,    // 1.0/(i + j + 1)
  kDeficient,  // whole numbers, of a rank below the order
  kHuge,       // definite * 1e+150
  kTiny,       // definite * 1e-150
  kDominant,   // diagonally dominant
  kSpecial     // definite, with NaN and infinities strewn in (none is negative on the diagonal)
};

constexpr std::array<Family, 7> kFamilies = {Family::kDefinite, Family::kHilbert, Family::kDeficient, Family::kHuge,
                                             Family::kTiny,     Family::kDominant, Family::kSpecial};
constexpr std::array<Family, 6> kFiniteFamilies = {Family::kDefinite, Family::kHilbert, Family::kDeficient,
                                                   Family::kHuge,     Family::kTiny,    Family::kDominant};

// Orders at which blocks, tails and tiles begin and end.
constexpr std::array<unsigned, 22> kOrders = {0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10,
                                              11, 12, 13, 14, 15, 16, 17, 24, 33, 64, 100};

const char* Name(Family family) noexcept;
Grid SymmetricSample(Family family, unsigned n, Random& random);

// L*D*L' in whole numbers, with unit lower L of small whole numbers and D of the given numbers; every row whose D is 0
// has a positive diagonal element (the first excepted).
Grid SymmetricOfFactors(const std::vector<double>& d, Random& random);

// Such a matrix whose D holds 0, 1, 4 and 16, but no 0 first: all roots are exact, so that a Cholesky factor in doubles
// meets a pivot of exactly 0 for each 0 in D.
struct RankSample {
  std::vector<double> d;
  int zeros = 0;
  Grid a;
};
RankSample SampleOfKnownRank(unsigned n, Random& random);

}  // namespace quorvel::test

#endif
