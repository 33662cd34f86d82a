// Singularity counts of triangular and diagonal matrices, whose unusable pivots are placed at random: 500 of each sort.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "accuracy/constructed.h"

namespace quorvel::test {
namespace {

struct Triangle {
  Grid a;                    // all elements; the caller takes one triangle
  std::vector<bool> usable;  // |d| > 1e-200
  int unusable = 0;
  int below = 0;             // |d| < 1e-200
};

// Whole numbers with the given usable pivots and others among them.
Triangle PlacedPivots(unsigned n, const std::vector<double>& good, Random& random) {
  const double below[] = {0.0, -0.0, 1e-201, -1e-250, 5e-324, -std::nextafter(1e-200, 0.0)};
  const double neither[] = {1e-200, -1e-200, std::numeric_limits<double>::quiet_NaN()};
  Triangle t{Grid(n, n), std::vector<bool>(n, true), 0, 0};
  for (double& e : t.a.e) e = random.Integer(-3, 3);
  for (unsigned i = 0; i < n; ++i) {
    const unsigned sort = random.Below(6);
    t.usable[i] = sort > 2;
    t.unusable += sort <= 2 ? 1 : 0;
    t.below += sort <= 1 ? 1 : 0;
    t.a(i, i) = sort <= 1   ? below[random.Below(6)]
                : sort == 2 ? neither[random.Below(3)]
                            : good[random.Below(static_cast<unsigned>(good.size()))];
  }
  return t;
}

std::vector<double> AllSortsOfPivots() {
  return {1.0, -7.0, 1e-150, -std::nextafter(1e-200, 1.0), 1e300, std::numeric_limits<double>::infinity()};
}

DiagonalMatrix DiagonalOf(const Grid& g) {
  DiagonalMatrix d(g.n);
  for (unsigned i = 0; i < g.n; ++i) d.data()[i] = g(i, i);
  return d;
}

template <class T>
void ExpectCount(const T& t, int count) {
  EXPECT_EQ(SingularityCountULD(t), count);
  EXPECT_EQ(t.nsing(), count);
}

TEST(PlacedPivots, SingularityCountULD) {
  ForEachCase(1, [](Random& random, unsigned k) {
    const Triangle t = PlacedPivots(1 + k % 16, AllSortsOfPivots(), random);
    ExpectCount(UpperOf(t.a), t.below);
    ExpectCount(LowerOf(t.a), t.below);
    ExpectCount(DiagonalOf(t.a), t.below);
    ExpectCount(SparseOf(t.a), t.below);
    ExpectCount(SymmetricSparseOf(t.a), t.below);
    Grid wide(t.a.m, t.a.n + 1 + k % 3);  // the diagonal ends with the shorter side
    for (unsigned i = 0; i < t.a.n; ++i) wide(i, i) = t.a(i, i);
    ExpectCount(SparseOf(wide), t.below);
    ExpectCount(SparseOf(Transposed(wide)), t.below);
  });
}

TEST(PlacedPivots, InversesOfTriangles) {
  ForEachCase(2, [](Random& random, unsigned k) {
    const unsigned n = 1 + k % 12;
    const bool in_place = random.Chance(2);
    const Triangle t = PlacedPivots(n, AllSortsOfPivots(), random);
    EXPECT_EQ(InverseCount(UpperOf(t.a), in_place), t.unusable);
    EXPECT_EQ(InverseCount(LowerOf(t.a), in_place), t.unusable);
    EXPECT_EQ(InverseCount(DiagonalOf(t.a), in_place), t.unusable);
    using Sparse = RegularSparseMatrix;
    const Sparse upper = SparseOf(PartOf(t.a, true, false)), lower = SparseOf(PartOf(t.a, false, true));
    EXPECT_EQ(CountOf(upper, in_place, [](Sparse& m, bool here) -> Sparse& { return inv_ut(m, here); }), t.unusable);
    EXPECT_EQ(CountOf(lower, in_place, [](Sparse& m, bool here) -> Sparse& { return inv_lt(m, here); }), t.unusable);
  });
}

TEST(PlacedPivots, ClosedFormsOfTriangles) {
  ForEachCase(9, [](Random& random, unsigned k) {
    const Triangle t = PlacedPivots(2 + k % 2, AllSortsOfPivots(), random);
    EXPECT_EQ(ClosedFormCount(UpperOf(t.a), k % 4 < 2), t.unusable);
    EXPECT_EQ(ClosedFormCount(LowerOf(t.a), k % 4 < 2), t.unusable);
  });
}

// The solution x has zeros where the pivots are unusable, so that it is the one that substitution gives, exactly.
TEST(PlacedPivots, SolutionsOfTriangles) {
  ForEachCase(3, [](Random& random, unsigned k) {
    const Triangle t = PlacedPivots(1 + k % 12, {1.0, -1.0, 2.0, -4.0, 0.5}, random);
    Grid x(t.a.n, 1 + k % 3);
    for (unsigned i = 0; i < x.m; ++i) {
      for (unsigned c = 0; c < x.n; ++c) x(i, c) = t.usable[i] ? random.Integer(-9, 9) : 0.0;
    }
    const UpperTriangularMatrix upper = UpperOf(t.a);
    const Held<RegularMatrix> from_upper(upper > RegularOf(Times(PartOf(t.a, true, false), x)));
    EXPECT_EQ(upper.nsing(), t.unusable);
    EXPECT_TRUE(Same(*from_upper, x, true));
    const LowerTriangularMatrix lower = LowerOf(t.a);
    const Held<RegularMatrix> from_lower(lower > RegularOf(Times(PartOf(t.a, false, true), x)));
    EXPECT_EQ(lower.nsing(), t.unusable);
    EXPECT_TRUE(Same(*from_lower, x, true));
    const DiagonalMatrix diagonal = DiagonalOf(t.a);
    Grid b(x.m, x.n);
    for (unsigned i = 0; i < x.m; ++i) {
      for (unsigned c = 0; c < x.n; ++c) {
        if (!t.usable[i]) x(i, c) = 5.0;  // stays as it is
        b(i, c) = t.usable[i] ? t.a(i, i) * x(i, c) : 5.0;
      }
    }
    const Held<RegularMatrix> from_diagonal(diagonal > RegularOf(b));
    EXPECT_EQ(diagonal.nsing(), t.unusable);
    EXPECT_TRUE(Same(*from_diagonal, x, true));
  });
}

}  // namespace
}  // namespace quorvel::test
