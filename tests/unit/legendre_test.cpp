// Associated Legendre functions.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

constexpr double kRadians = 0.017453292519943295;

TEST(Legendre, OnTheEquator) {
  LowerTriangularMatrix p(3);
  LegendreFunctions(p, 0.0);
  EXPECT_EQ(p(0, 0), 1.0);
  EXPECT_EQ(p(1, 0), 0.0);
  EXPECT_EQ(p(1, 1), 1.0);
  EXPECT_EQ(p(2, 0), -0.5);
  EXPECT_EQ(p(2, 1), 0.0);
  EXPECT_EQ(p(2, 2), 3.0);
}

TEST(Legendre, SmallOrders) {
  LowerTriangularMatrix one(1);
  LegendreFunctions(one, 60.0);
  EXPECT_EQ(one(0, 0), 1.0);

  LowerTriangularMatrix two(2);
  LegendreFunctions(two, 60.0);
  EXPECT_EQ(two(0, 0), 1.0);
  EXPECT_DOUBLE_EQ(two(1, 0), std::sin(60.0 * kRadians));
  EXPECT_EQ(two(1, 1), 1.0);  // not cos 60 deg

  LowerTriangularMatrix three(3);
  LegendreFunctions(three, 60.0);
  EXPECT_DOUBLE_EQ(three(1, 1), std::cos(60.0 * kRadians));
}

// Closed forms of degrees 2 to 4 in s = sin, c = cos.
TEST(Legendre, ClosedForms) {
  Random random(71);
  for (int trial = 0; trial < 100; ++trial) {
    const double lat = random.Uniform(-90, 90);
    const double s = std::sin(lat * kRadians), c = std::cos(lat * kRadians);
    LowerTriangularMatrix p(5);
    LegendreFunctions(p, lat);
    const auto near = [&](unsigned n, unsigned m, double want) {
      EXPECT_NEAR(p(n, m), want, 1e-13 * p(n, n) + 1e-14) << n << " " << m << " at " << lat;
    };
    near(2, 0, (3 * s * s - 1) / 2);
    near(2, 1, 3 * s * c);
    near(2, 2, 3 * c * c);
    near(3, 0, (5 * s * s * s - 3 * s) / 2);
    near(3, 1, 1.5 * (5 * s * s - 1) * c);
    near(3, 2, 15 * s * c * c);
    near(3, 3, 15 * c * c * c);
    near(4, 0, (35 * s * s * s * s - 30 * s * s + 3) / 8);
    near(4, 1, 2.5 * (7 * s * s * s - 3 * s) * c);
    near(4, 2, 7.5 * (7 * s * s - 1) * c * c);
    near(4, 3, 105 * s * c * c * c);
    near(4, 4, 105 * c * c * c * c);
  }
}

// The recursion that goes up in the degree at fixed order, a different road to the same functions:
// (n - m) P(n, m) = (2n - 1) s P(n - 1, m) - (n + m - 1) P(n - 2, m).
TEST(Legendre, AgreesWithTheRecursionInTheDegree) {
  constexpr unsigned count = 40;
  for (double lat : {-89.0, -60.0, -33.3, -1.0, 0.5, 17.0, 45.0, 72.0, 88.0}) {
    LowerTriangularMatrix p(count);
    LegendreFunctions(p, lat);
    const long double s = std::sin(static_cast<long double>(lat * kRadians));
    const long double c = std::cos(static_cast<long double>(lat * kRadians));
    for (unsigned m = 0; m < count; ++m) {
      long double diagonal = 1;
      for (unsigned k = 1; k <= m; ++k) diagonal *= (2 * k - 1) * c;
      long double below = 0, value = diagonal;
      for (unsigned n = m; n < count; ++n) {
        if (n > m) {
          const long double next = ((2.0L * n - 1) * s * value - (n + m - 1.0L) * below) / (n - m);
          below = value;
          value = next;
        }
        // Fully normalised functions are of order 1 to 10: that is the scale of the error.
        long double norm = (m == 0 ? 1.0L : 2.0L) * (2 * n + 1);
        for (unsigned k = n - m + 1; k <= n + m; ++k) norm /= k;
        norm = std::sqrt(norm);
        EXPECT_NEAR(static_cast<double>(p(n, m) * norm), static_cast<double>(value * norm), 2e-12)
            << n << " " << m << " at " << lat;
      }
    }
  }
}

// Addition theorem: the squares of the fully normalised functions of a degree sum to 2n + 1, at every latitude.
TEST(Legendre, AdditionTheorem) {
  constexpr unsigned count = 100;
  LowerTriangularMatrix p(count);
  for (double lat : {-90.0, -80.0, -41.5, -7.0, 0.0, 3.0, 29.0, 55.0, 81.0, 90.0}) {
    LegendreFunctions(p, lat);
    for (unsigned n = 2; n < count; ++n) {
      double sum = 0;
      for (unsigned m = 0; m <= n; ++m) {
        // (n - m)! / (n + m)! is spread over the two factors, which alone would overflow.
        double root = 1;
        for (unsigned k = n - m + 1; k <= n + m; ++k) root /= std::sqrt(static_cast<double>(k));
        const double value = p(n, m) * root;
        sum += (m == 0 ? 1.0 : 2.0) * value * value;
      }
      EXPECT_NEAR(sum, 1.0, 1e-10) << n << " at " << lat;
    }
  }
}

TEST(Legendre, IsEvenOrOddInTheLatitude) {
  LowerTriangularMatrix north(30), south(30);
  LegendreFunctions(north, 37.7);
  LegendreFunctions(south, -37.7);
  for (unsigned n = 0; n < 30; ++n) {
    for (unsigned m = 0; m <= n; ++m) EXPECT_EQ(south(n, m), (n - m) % 2 == 0 ? north(n, m) : -north(n, m));
  }
}

TEST(Legendre, FiniteUpToOrder150) {
  const auto finite = [](unsigned count, double lat) {
    LowerTriangularMatrix p(count);
    LegendreFunctions(p, lat);
    for (unsigned k = 0; k < p.StoredCount(); ++k) {
      if (!std::isfinite(p.data()[k])) return false;
    }
    return true;
  };
  for (int lat = -90; lat <= 90; ++lat) EXPECT_TRUE(finite(150, lat)) << lat;
  for (int lat = -90; lat <= 90; ++lat) EXPECT_FALSE(finite(152, lat)) << lat;
}

}  // namespace
}  // namespace quorvel::test
