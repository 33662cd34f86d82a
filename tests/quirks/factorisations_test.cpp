// The kept surprises of the factorisations: what docs/QUIRKS.md says, and the alternative that it names.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/grid.h"

using namespace quorvel::test;

namespace {

SymmetricMatrix Diagonal(std::initializer_list<double> values) {
  SymmetricMatrix a(static_cast<unsigned>(values.size()));
  unsigned i = 0;
  for (const double v : values) {
    a(i, i) = v;
    ++i;
  }
  return a;
}

}  // namespace

TEST(QuirksOfFactorisations, UDDecompositionIsNoFactorisation) {
  SymmetricMatrix P = Diagonal({6, 5, 4});
  P(0, 1) = 2.0;
  P(0, 2) = 1.0;
  P(1, 2) = 2.0;
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  const auto product = [&] { return Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U))); };
  UDDecomposition(U, D, P);
  EXPECT_EQ(std::as_const(U)(0, 1), 0.0);
  EXPECT_NE(product().e, GridOf(P).e);
  UDFactor(U, D, P);
  EXPECT_EQ(std::as_const(U)(0, 1), 0.375);
  EXPECT_EQ(product().e, GridOf(P).e);
}

TEST(QuirksOfFactorisations, ZeroDiagonal) {
  const SymmetricMatrix A = Diagonal({4, 0, 9});
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_EQ(L.nsing(), 0);
  EXPECT_TRUE(std::isnan(L(2, 2)));
  SymmetricSparseMatrix sparse(3);
  sparse.Put(0, 0, 4.0);
  sparse.Put(2, 2, 9.0);
  const RegularSparseMatrix l(CholeskyFactor(sparse, 1e-12));
  EXPECT_EQ(l.nsing(), 0);
  EXPECT_EQ(l(2, 2), 3.0);
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  UDFactor(U, D, A);
  EXPECT_EQ(D.nsing(), 1);
  const SymmetricMatrix inverse(InverseByCholesky(Diagonal({4, 0, 9, 1}), 1e-12));
  EXPECT_EQ(inverse.nsing(), 3);
}

TEST(QuirksOfFactorisations, NegativePivotGivesNaN) {
  SymmetricMatrix A = Diagonal({1, 1});
  A(0, 1) = 2.0;
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_TRUE(std::isnan(L(1, 1)));
  EXPECT_EQ(L.nsing(), 0);
}

TEST(QuirksOfFactorisations, DiagonalOfThree) {
  const LowerTriangularMatrix L(CholeskyFactor(Diagonal({3}), 1e-12));
  EXPECT_NE(L(0, 0), std::sqrt(3.0));
  EXPECT_NEAR(L(0, 0), std::sqrt(3.0), 3e-16);
  const LowerTriangularMatrix root(CholeskySquareRootLower(Diagonal({3})));
  EXPECT_EQ(root(0, 0), std::sqrt(3.0));
  const SymmetricMatrix inverse(InverseByCholesky(Diagonal({3}), 1e-12));
  EXPECT_EQ(inverse(0, 0), 0.3333333333333334);
}

TEST(QuirksOfFactorisations, UpperRoot) {
  SymmetricMatrix A = Diagonal({4, 2});
  A(0, 1) = 2.0;
  const UpperTriangularMatrix U(CholeskySquareRootUpper(A));
  const Grid u = GridOf(U);
  EXPECT_NEAR(Times(u, Transposed(u))(0, 0), 4.0, 1e-14);
  const SymmetricMatrix other(UTU(U));
  EXPECT_NEAR(other(0, 0), 2.0, 1e-14);
}

TEST(QuirksOfFactorisations, ThresholdOfSingularity) {
  DiagonalMatrix D(2);
  D(0, 0) = 1e-200;
  D(1, 1) = std::nan("");
  EXPECT_EQ(SingularityCountULD(D), 0);
  UpperTriangularMatrix U;
  UDFactor(U, D, Diagonal({1e-200, 5.0}));
  EXPECT_EQ(D.nsing(), 1);
}

TEST(QuirksOfFactorisations, RankOneOfASymmetricMatrix) {
  SymmetricMatrix S(2);
  RegularMatrix x(2, 1), y(2, 1);
  x(0, 0) = 1.0;
  x(1, 0) = 2.0;
  y(0, 0) = std::nan("");
  RankOneUpdate(S, x, y, 3.0);
  EXPECT_EQ(std::as_const(S)(1, 0), 6.0);
  EXPECT_EQ(std::as_const(S)(0, 0), 3.0);
}

TEST(QuirksOfFactorisations, TransformationReturnsTheOldMatrix) {
  RegularMatrix A(2, 1);
  A(0, 0) = 3.0;
  A(1, 0) = 4.0;
  const RegularMatrix result(HouseholderTransformation(A));
  EXPECT_EQ(result(1, 0), 4.0);
  EXPECT_EQ(std::as_const(A)(0, 0), 5.0);
  EXPECT_EQ(A.nrows(), 1u);
}

TEST(QuirksOfFactorisations, TinyColumnsAreZero) {
  RegularMatrix A(2, 1);
  A(0, 0) = 3e-170;
  A(1, 0) = 4e-170;
  HouseholderTransformation(A, true);
  EXPECT_EQ(std::as_const(A)(0, 0), 3e-170);  // no reflection: the squares are 0
}
