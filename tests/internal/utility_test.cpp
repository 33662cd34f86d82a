// The Cholesky factor of a small plain array.

#include "quorvel/small_inverses.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/allocations.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

void Expect(const double* a, unsigned n, double tol, int count, std::initializer_list<double> expected) {
  double u[6] = {};
  EXPECT_EQ(CholeskyFactor(a, n, u, tol), count);
  EXPECT_TRUE(SameBits(u, expected.begin(), expected.size()));
  double same[6];  // U may be A
  std::copy_n(a, 6, same);
  EXPECT_EQ(CholeskyFactor(same, n, same, tol), count);
  if (n == 3) {
    EXPECT_TRUE(SameBits(same, u, 6));
  }
  digest::Feed(u, 6);
}

TEST(SmallCholesky, OfTheHilbertMatrix) {
  const double h[6] = {1.0, 0.5, 1.0 / 3.0, 1.0 / 3.0, 0.25, 0.2};
  Expect(h, 3, 0.0, 0,
         {1.0, 0.5, 0x1.279a74590331cp-2, 0x1.5555555555555p-2, 0x1.279a74590331dp-2, 0x1.314c3d92a9e8ep-4});
}

TEST(SmallCholesky, LeavesOutASingularPivot) {
  const double a[6] = {4, 2, 1, 0, 0, 9};
  Expect(a, 3, 0.0, 1, {2, 0, 0, 0, 0, 3});
}

TEST(SmallCholesky, ToleranceIsAbsoluteAndEqualityIsSingular) {
  const double a[6] = {4, 0, 5, 0, 0, 6};
  Expect(a, 3, 4.0, 1, {0, 0, std::sqrt(5.0), 0, 0, std::sqrt(6.0)});
  Expect(a, 3, 3.9, 0, {2, 0, std::sqrt(5.0), 0, 0, std::sqrt(6.0)});
}

// A pivot that elimination made negative counts, as its diagonal element is not negative itself.
TEST(SmallCholesky, NegativePivotOfANonNegativeDiagonal) {
  const double a[6] = {1, 2, 1, 0, 0, 9};
  Expect(a, 3, 0.0, 1, {1, 0, 0, 0, 0, 3});
}

TEST(SmallCholesky, NaNPassesToTheRoot) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const double a[6] = {nan, 0, 1, 0, 0, 1};
  Expect(a, 1, 0.0, 0, {nan});
}

TEST(SmallCholesky, SmallerOrdersLeaveTheRestAlone) {
  const double a[6] = {4, 2, 5, 7, 7, 7};
  Expect(a, 2, 0.0, 0, {2, 1, 2, 0, 0, 0});
  Expect(a, 1, 0.0, 0, {2, 0, 0, 0, 0, 0});
  Expect(a, 0, 0.0, 0, {0, 0, 0, 0, 0, 0});
}

TEST(SmallCholeskyDeathTest, ANegativeDiagonalEndsTheProcess) {
  KeepsBlocks();
  const double a[6] = {-1, 0, 1, 0, 0, 1};
  double u[6] = {};
  EXPECT_DEATH(
      CholeskyFactor(a, 3, u, 0.0),
      "test_internal: utility:[0-9]+: .*CholeskyFactor\\(const double ?\\*, unsigned int, double ?\\*, double\\): "
      "Assertion `!\\(Acopy\\[i_utc\\(i,i\\)\\] < 0\\.0\\)' failed\\.");
}

}  // namespace
}  // namespace quorvel::test
