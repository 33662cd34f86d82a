// The updates of a U-D filter against the covariance form of the same update.

#include <gtest/gtest.h>

#include <cmath>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

// Unit upper triangular U and a non-negative D, some of whose elements are 0.
void RandomFactors(UpperTriangularMatrix& U, DiagonalMatrix& D, unsigned n, Random& random) {
  U = Filled<UpperTriangularMatrix>(Pattern::kUniform, random, n);
  D = DiagonalMatrix(n);
  for (unsigned i = 0; i < n; ++i) {
    U(i, i) = 1.0;
    D(i, i) = random.Chance(5) ? 0.0 : random.Uniform(0.1, 2.0);
  }
}

Grid Covariance(const UpperTriangularMatrix& U, const DiagonalMatrix& D) {
  return Times(Times(GridOf(U), GridOf(D)), Transposed(GridOf(U)));
}

void ExpectNear(const Grid& actual, const Grid& expected, double tolerance, const char* what) {
  ASSERT_EQ(actual.m, expected.m) << what;
  ASSERT_EQ(actual.n, expected.n) << what;
  for (std::size_t k = 0; k < actual.e.size(); ++k) {
    ASSERT_NEAR(actual.e[k], expected.e[k], tolerance) << what << ", element " << k << ", order " << actual.m;
  }
}

void ExpectUnitFactors(const UpperTriangularMatrix& U, const DiagonalMatrix& D) {
  for (unsigned i = 0; i < U.ndim(); ++i) {
    EXPECT_EQ(U(i, i), 1.0);
    EXPECT_GE(D(i, i), 0.0);
  }
}

Grid ProcessNoise(const Grid& g, const DiagonalMatrix& Q) { return Times(Times(g, GridOf(Q)), Transposed(g)); }

Grid Sum(Grid a, const Grid& b) {
  for (std::size_t k = 0; k < a.e.size(); ++k) a.e[k] += b.e[k];
  return a;
}

}  // namespace

TEST(UDMeasurement, EqualsTheCovarianceForm) {
  Random random(561);
  for (const unsigned n : {1u, 2u, 3u, 5u, 15u, 24u, 25u, 40u}) {
    for (const double r : {0.7, 1e-6}) {
      UpperTriangularMatrix U;
      DiagonalMatrix D;
      RandomFactors(U, D, n, random);
      U.set_nsing(2);
      const Grid p = Covariance(U, D);
      const RegularMatrix h = Filled<RegularMatrix>(Pattern::kUniform, random, 1u, n);
      const Grid hp = Times(GridOf(h), p);
      const double s = Times(hp, Transposed(GridOf(h)))(0, 0) + r;
      Grid gain(n, 1), after = p;
      for (unsigned i = 0; i < n; ++i) {
        gain(i, 0) = hp(0, i) / s;
        for (unsigned j = 0; j < n; ++j) after(i, j) -= hp(0, i) * hp(0, j) / s;
      }
      RegularMatrix K(7, 3);
      EXPECT_NEAR(UDMeasurementUpdate(U, D, h, r, K), s, 1e-13 * s * n);
      ExpectNear(GridOf(K), gain, 1e-12 * n, "gain");
      ExpectNear(Covariance(U, D), after, 1e-13 * n, "covariance");
      ExpectUnitFactors(U, D);
      EXPECT_EQ(U.nsing(), 2);
      digest::Feed(U);
      digest::Feed(D);
      digest::Feed(K);
    }
  }
}

TEST(UDMeasurement, OneState) {
  UpperTriangularMatrix U(1);
  DiagonalMatrix D(1);
  RegularMatrix h(1, 1), K;
  U(0, 0) = 1.0;
  D(0, 0) = 3.0;
  h(0, 0) = 2.0;
  EXPECT_EQ(UDMeasurementUpdate(U, D, h, 4.0, K), 16.0);  // 2*3*2 + 4
  EXPECT_EQ(K(0, 0), 0.375);                              // 6/16
  EXPECT_EQ(D(0, 0), 0.75);                               // 3 - 36/16
  EXPECT_EQ(UDMeasurementUpdate(U, D, h, 0.0, K), 3.0);
  EXPECT_EQ(K(0, 0), 0.5);
  EXPECT_EQ(D(0, 0), 0.0);
}

// A measurement without error makes its combination certain; the same once more changes nothing.
TEST(UDMeasurement, WithoutErrorTwice) {
  Random random(562);
  const unsigned n = 6;
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  RandomFactors(U, D, n, random);
  for (unsigned i = 0; i < n; ++i) D(i, i) = 1.0 + i;
  RegularMatrix h(n, 1), K;
  h(2, 0) = 1.0;  // state 2 is measured: its variance becomes 0
  EXPECT_GT(UDMeasurementUpdate(U, D, h, 0.0, K), 0.0);
  const Grid p = Covariance(U, D);
  for (unsigned i = 0; i < n; ++i) EXPECT_NEAR(p(2, i), 0.0, 1e-14) << i;
  EXPECT_DOUBLE_EQ(K(2, 0), 1.0);
  ExpectUnitFactors(U, D);

  DiagonalMatrix zero(n);
  const Grid u = GridOf(U);
  EXPECT_EQ(UDMeasurementUpdate(U, zero, h, 0.0, K), 0.0);
  ExpectSameValues(GridOf(U), u, "U of a certain state");
  ExpectSameValues(GridOf(K), Grid(n, 1), "gain of a certain state");
}

TEST(UDMeasurement, GainInPlaceOfTheMeasurementRow) {
  Random random(563);
  for (const unsigned n : {5u, 12u, 33u}) {
    UpperTriangularMatrix U, V;
    DiagonalMatrix D;
    RandomFactors(U, D, n, random);
    V = U;
    DiagonalMatrix E(D);
    RegularMatrix h = Filled<RegularMatrix>(Pattern::kUniform, random, 1u, n);
    RegularMatrix K;
    const double s = UDMeasurementUpdate(U, D, DispensableCopy(h), 0.25, K);
    EXPECT_EQ(UDMeasurementUpdate(V, E, h, 0.25, h), s);
    ExpectSameValues(GridOf(h), GridOf(K), "gain");
    ExpectSameValues(GridOf(V), GridOf(U), "U");
    ExpectSameValues(GridOf(E), GridOf(D), "D");
  }
}

TEST(UDTime, EqualsTheCovarianceForm) {
  Random random(564);
  for (const unsigned n : {1u, 2u, 3u, 5u, 15u, 24u, 25u, 40u}) {
    for (const unsigned q : {0u, 1u, 3u, n, n + 4}) {
      UpperTriangularMatrix U;
      DiagonalMatrix D;
      RandomFactors(U, D, n, random);
      const RegularMatrix Phi = Filled<RegularMatrix>(Pattern::kUniform, random, n, n);
      const RegularMatrix G = Filled<RegularMatrix>(Pattern::kUniform, random, n, q);
      DiagonalMatrix Q(q);
      for (unsigned i = 0; i < q; ++i) Q(i, i) = random.Uniform(0.0, 2.0);
      const Grid phi = GridOf(Phi);
      const Grid expected = Sum(Times(Times(phi, Covariance(U, D)), Transposed(phi)), ProcessNoise(GridOf(G), Q));
      UDTimeUpdate(U, D, DispensableCopy(Phi), G, Q);
      ExpectNear(Covariance(U, D), expected, 1e-13 * n * (1.0 + Norm1(expected)), "covariance");
      ExpectUnitFactors(U, D);
      digest::Feed(U);
      digest::Feed(D);
    }
  }
}

TEST(UDTime, FullProcessNoise) {
  Random random(565);
  for (const unsigned n : {1u, 4u, 15u, 30u}) {
    UpperTriangularMatrix U;
    DiagonalMatrix D;
    RandomFactors(U, D, n, random);
    const RegularMatrix Phi = Filled<RegularMatrix>(Pattern::kUniform, random, n, n);
    const SymmetricMatrix Q(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    const Grid phi = GridOf(Phi);
    const Grid expected = Sum(Times(Times(phi, Covariance(U, D)), Transposed(phi)), GridOf(Q));
    UDTimeUpdate(U, D, Phi, DispensableCopy(Q));
    ExpectNear(Covariance(U, D), expected, 1e-13 * n * (1.0 + Norm1(expected)), "covariance");
    ExpectUnitFactors(U, D);
    digest::Feed(U);
    digest::Feed(D);
  }
}

// Phi of whole numbers and of rank 1 makes every pivot but one vanish exactly.
TEST(UDTime, SingularTransition) {
  UpperTriangularMatrix U(3);
  DiagonalMatrix D(3);
  RegularMatrix Phi(3, 3), G(3, 0);
  for (unsigned i = 0; i < 3; ++i) {
    U(i, i) = D(i, i) = 1.0;
    Phi(i, 0) = i + 1.0;
  }
  UDTimeUpdate(U, D, Phi, G, DiagonalMatrix());
  EXPECT_EQ(D(2, 2), 9.0);
  EXPECT_NEAR(D(1, 1), 0.0, 1e-30);
  EXPECT_NEAR(D(0, 0), 0.0, 1e-30);
  EXPECT_DOUBLE_EQ(U(0, 2), 1.0 / 3.0);
  EXPECT_DOUBLE_EQ(U(1, 2), 2.0 / 3.0);

  RegularMatrix none(3, 3);
  UDTimeUpdate(U, D, none, G, DiagonalMatrix());
  ExpectSameValues(GridOf(D), Grid(3, 3), "D of a vanished covariance");
  Grid one(3, 3);
  for (unsigned i = 0; i < 3; ++i) one(i, i) = 1.0;
  ExpectSameValues(GridOf(U), one, "U of a vanished covariance");
}

TEST(UDTime, OrderZero) {
  UpperTriangularMatrix U;
  DiagonalMatrix D;
  RegularMatrix empty, h(0, 1), K;
  UDTimeUpdate(U, D, empty, empty, DiagonalMatrix());
  UDTimeUpdate(U, D, empty, SymmetricMatrix());
  EXPECT_EQ(UDMeasurementUpdate(U, D, h, 2.5, K), 2.5);
  UDTimeUpdate(U, D, empty, RegularMatrix(0, 20), DiagonalMatrix(20));  // noise that reaches no state
  EXPECT_EQ(U.ndim(), 0u);
  EXPECT_EQ(D.ndim(), 0u);
}
