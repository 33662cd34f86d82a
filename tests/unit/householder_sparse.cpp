// Householder triangularisation of sparse matrices: bit for bit that of the dense one.

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

RegularSparseMatrix SparseOf(const Grid& g) {
  RegularSparseMatrix a(g.m, g.n);
  for (unsigned i = 0; i < g.m; ++i) {
    for (unsigned j = 0; j < g.n; ++j) a.Put(i, j, g(i, j));
  }
  return a;
}

// About one element in `one_in`; every third column depends on the two before it.
Grid Sample(unsigned m, unsigned n, unsigned one_in, bool dependent, Random& random) {
  Grid g(m, n);
  for (double& e : g.e) e = random.Chance(one_in) ? random.Uniform() : 0.0;
  for (unsigned j = 2; dependent && j < n; j += 3) {
    for (unsigned i = 0; i < m; ++i) g(i, j) = g(i, j - 1) - 2.0 * g(i, j - 2);
  }
  return g;
}

void Compare(const Grid& g) {
  RegularMatrix dense(RegularOf(g));
  HouseholderTransformation(dense, true);
  RegularSparseMatrix sparse(SparseOf(g));
  sparse.set_nsing(6);
  EXPECT_EQ(&HouseholderTransformation(sparse, true), &sparse);
  const Grid r = GridOf(std::as_const(sparse));
  ExpectSameValues(r, GridOf(dense), "R");
  EXPECT_EQ(sparse.nsing(), 6);
  unsigned stored = 0;
  for (unsigned i = 0; i < sparse.nrows(); ++i) {
    for (const SparseElement* e = sparse.GetFirstInRow(i); e != nullptr; e = e->nextInRow, ++stored) {
      ASSERT_NE(e->value, 0.0);
      ASSERT_EQ(sparse.Cell_Loc(e->row, e->col), e);
      ASSERT_TRUE(e->nextInRow == nullptr || e->col < e->nextInRow->col);
      ASSERT_TRUE(e->nextInCol == nullptr || e->row < e->nextInCol->row);
    }
  }
  EXPECT_EQ(stored, sparse.used);
  digest::Feed(r.e.data(), r.e.size());
}

}  // namespace

TEST(HouseholderSparse, EqualsTheDenseTransformation) {
  Random random(591);
  for (const unsigned n : {0u, 1u, 2u, 3u, 5u, 17u, 31u, 32u, 33u, 64u, 70u}) {
    for (const unsigned surplus : {0u, 1u, 20u}) {
      for (const unsigned one_in : {1u, 4u, 12u}) {
        Compare(Sample(n + surplus, n, one_in, false, random));
        Compare(Sample(n + surplus, n, one_in, true, random));
      }
    }
  }
}

// A triangle has nothing to reflect: not even an infinity beside a pivot is touched (a product with 0.0 would make it NaN).
TEST(HouseholderSparse, ATriangleStaysWhatItIs) {
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const unsigned n : {2u, 5u, 33u, 70u}) {
    Grid g(n + 3, n);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i; j < n; ++j) g(i, j) = j == i + 1 && i % 2 == 0 ? infinity : i + 2.0 * j + 1.0;
    }
    RegularMatrix dense(RegularOf(g));
    HouseholderTransformation(dense, true);
    RegularSparseMatrix sparse(SparseOf(g));
    HouseholderTransformation(sparse, true);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = i + 1; j < n; ++j) {
        EXPECT_EQ(dense(i, j), g(i, j)) << n << ": " << i << ", " << j;
        EXPECT_EQ(std::as_const(sparse)(i, j), g(i, j)) << n << ": " << i << ", " << j;
      }
      const double diagonal = i % 2 == 0 ? g(i, i) : 0.0;  // beside a column without end every pivot is as good as none
      EXPECT_EQ(dense(i, i), diagonal) << n << ": " << i;
      EXPECT_EQ(std::as_const(sparse)(i, i), diagonal) << n << ": " << i;
    }
  }
}

TEST(HouseholderSparse, ScaledValues) {
  Random random(592);
  for (const double scale : {1e150, 1e-150, 1e-165}) {
    Grid g = Sample(40, 35, 3, false, random);
    for (double& e : g.e) e *= scale;
    Compare(g);
  }
}

TEST(HouseholderSparse, ResultAndOwnership) {
  RegularSparseMatrix A(3, 2);
  A.Put(0, 0, 3.0);
  A.Put(1, 0, 4.0);
  A.Put(2, 1, 5.0);
  RegularSparseMatrix& temporary = DispensableCopy(A);
  RegularSparseMatrix& reduced = HouseholderTransformation(temporary);
  EXPECT_EQ(&reduced, &temporary);
  EXPECT_TRUE(reduced.dispensable());
  EXPECT_EQ(reduced.nrows(), 2u);
  reduced.DestroyIfDispensable();
  const RegularSparseMatrix before(HouseholderTransformation(A));
  EXPECT_EQ(before.nrows(), 3u);
  EXPECT_EQ(before(1, 0), 4.0);
  EXPECT_EQ(A.nrows(), 2u);
  EXPECT_EQ(std::as_const(A)(0, 0), 5.0);
  EXPECT_EQ(std::as_const(A)(1, 1), 5.0);
  EXPECT_EQ(A.used, 2u);
}

TEST(HouseholderSparse, KeepsTheBlockSize) {
  RegularSparseMatrix A(5, 4);
  A.SetGrowBy(7);
  for (unsigned i = 0; i < 5; ++i) A.Put(i, i % 4, 2.0);
  RegularSparseMatrix& R = HouseholderTransformation(A, true);
  EXPECT_EQ(&R, &A);
  EXPECT_EQ(A.growBy, 8u);
  EXPECT_FALSE(A.SetGrowBy(3));
}

// Work areas are counted as dense arrays are: 2^28 doubles are too many on every machine, before memory is asked for.
TEST(HouseholderSparse, TooManyRowsAreABadArrayLength) {
  RegularSparseMatrix A(1u << 23, 32);
  A.Put(1, 0, 3.0);
  EXPECT_THROW(HouseholderTransformation(A, true), std::bad_array_new_length);
  EXPECT_EQ(A.nrows(), 1u << 23);
  EXPECT_EQ(A.used, 1u);
  EXPECT_EQ(std::as_const(A)(1, 0), 3.0);
}
