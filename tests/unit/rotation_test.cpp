// Rotations, local level axes and geodetic derivatives, compared within a few units of the last place: sine and cosine
// belong to the C library.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

constexpr double kUlp = std::numeric_limits<double>::epsilon();
const double kPi = std::acos(-1.0);

using Rows = std::array<std::array<double, 3>, 3>;

void ExpectRows(const RegularMatrix& got, const Rows& want, double tolerance) {
  ASSERT_EQ(got.nrows(), 3u);
  ASSERT_EQ(got.ncols(), 3u);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) {
      EXPECT_NEAR(got(i, j), want[i][j], tolerance) << "(" << i << ", " << j << ")";
    }
  }
}

double Dot(const RegularMatrix& a, unsigned i, unsigned j) {
  return a(i, 0) * a(j, 0) + a(i, 1) * a(j, 1) + a(i, 2) * a(j, 2);
}

void ExpectOrthonormal(const RegularMatrix& a) {
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) EXPECT_NEAR(Dot(a, i, j), i == j ? 1.0 : 0.0, 4 * kUlp);
  }
  const double det = a(0, 0) * (a(1, 1) * a(2, 2) - a(1, 2) * a(2, 1)) -
                     a(0, 1) * (a(1, 0) * a(2, 2) - a(1, 2) * a(2, 0)) +
                     a(0, 2) * (a(1, 0) * a(2, 1) - a(1, 1) * a(2, 0));
  EXPECT_NEAR(det, 1.0, 4 * kUlp);
}

TEST(Rotation, QuarterTurnAboutZ) {
  const RegularMatrix r(Primary_Axis_Rotation_Matrix_DEG(3, 90));
  ExpectRows(r, {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}, 1e-16);
  EXPECT_EQ(r(0, 1), 1.0);
  EXPECT_EQ(r(2, 2), 1.0);
}

// A vector along one axis seen from the frame that was turned about another.
TEST(Rotation, TurnsTheFrameNotTheVector) {
  const double c = std::cos(0.3), s = std::sin(0.3);
  ExpectRows(RegularMatrix(Primary_Axis_Rotation_Matrix_RAD(1, 0.3)), {{{1, 0, 0}, {0, c, s}, {0, -s, c}}}, kUlp);
  ExpectRows(RegularMatrix(Primary_Axis_Rotation_Matrix_RAD(2, 0.3)), {{{c, 0, -s}, {0, 1, 0}, {s, 0, c}}}, kUlp);
  ExpectRows(RegularMatrix(Primary_Axis_Rotation_Matrix_RAD(3, 0.3)), {{{c, s, 0}, {-s, c, 0}, {0, 0, 1}}}, kUlp);
}

// Correctly rounded sines and cosines (computed with 300 bits): within one unit of the last place on every platform.
TEST(Rotation, SineAndCosineToTheLastPlace) {
  const struct {
    double angle, sine, cosine;
  } cases[] = {{0x1.999999999999ap-4, 0x1.98eaecb8bcb2cp-4, 0x1.fd712f9a817c1p-1},
               {0x1.0000000000000p-1, 0x1.eaee8744b05f0p-2, 0x1.c1528065b7d50p-1},
               {0x1.0000000000000p+0, 0x1.aed548f090ceep-1, 0x1.14a280fb5068cp-1},
               {0x1.921fb54442d18p+0, 0x1.0000000000000p+0, 0x1.1a62633145c07p-54},
               {0x1.0000000000000p+1, 0x1.d18f6ead1b446p-1, -0x1.aa22657537205p-2},
               {0x1.8000000000000p+1, 0x1.210386db6d55bp-3, -0x1.fae04be85e5d2p-1},
               {0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53, -0x1.0000000000000p+0},
               {-0x1.6666666666666p-1, -0x1.49d6e694619b8p-1, 0x1.87996529f9d93p-1},
               {-0x1.4000000000000p+1, -0x1.326af0dcfcab1p-1, -0x1.9a2f7ef858b7dp-1},
               {0x1.4000000000000p+3, -0x1.1689ef5f34f52p-1, -0x1.ad9ac890c6b1fp-1},
               {0x1.9000000000000p+6, -0x1.03425b78c4db8p-1, 0x1.b981dbf665fdfp-1},
               {0x1.86a0000000000p+16, 0x1.24daa9c527e96p-5, -0x1.ffac3841b3da7p-1},
               {0x1.1df46a2529d39p-6, 0x1.1df0b2b89dd1ep-6, 0x1.ffec097f5af8ap-1}};
  const auto near = [](double got, double want) {
    EXPECT_GE(got, std::nextafter(want, -2.0));
    EXPECT_LE(got, std::nextafter(want, 2.0));
  };
  for (const auto& c : cases) {
    const RegularMatrix r(Primary_Axis_Rotation_Matrix_RAD(2, c.angle));
    near(r(0, 0), c.cosine);
    near(r(2, 0), c.sine);
    near(-r(0, 2), c.sine);
    const RegularMatrix d(DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(2, c.angle));
    near(d(2, 0), c.cosine);
    near(-d(2, 2), c.sine);
    const RegularMatrix e(denu_dxyz(0.0, c.angle));
    near(-e(0, 0), c.sine);
    near(e(0, 1), c.cosine);
  }
}

TEST(Rotation, IsOrthonormalAndCountsFromZero) {
  Random random(63);
  for (unsigned axis = 1; axis <= 3; ++axis) {
    for (int trial = 0; trial < 50; ++trial) {
      const RegularMatrix r(Primary_Axis_Rotation_Matrix_RAD(axis, random.Uniform(-10, 10)));
      ExpectOrthonormal(r);
      EXPECT_EQ(r.nsing(), -1);
    }
    const RegularMatrix none(Primary_Axis_Rotation_Matrix_RAD(axis, 0.0));
    ExpectRows(none, {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}, 0.0);
  }
}

TEST(Rotation, DegreesAreMultipliedByTheConstant) {
  Random random(64);
  for (int trial = 0; trial < 200; ++trial) {
    const double degrees = random.Uniform(-400, 400);
    const double radians = degrees * 0.017453292519943295;
    for (unsigned axis = 1; axis <= 3; ++axis) {
      const RegularMatrix r(Primary_Axis_Rotation_Matrix_DEG(axis, degrees));
      const RegularMatrix same(Primary_Axis_Rotation_Matrix_RAD(axis, radians));
      EXPECT_TRUE(SameBits(r.data(), same.data(), 9));
      const RegularMatrix d(DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(axis, degrees));
      const RegularMatrix same_d(DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(axis, radians));
      EXPECT_TRUE(SameBits(d.data(), same_d.data(), 9));
    }
  }
}

TEST(Rotation, DerivativeIsPerRadian) {
  const double h = 1e-5;
  for (unsigned axis = 1; axis <= 3; ++axis) {
    for (double degrees : {-170.0, -45.0, 0.0, 12.5, 90.0}) {
      const double angle = degrees * 0.017453292519943295;
      const RegularMatrix after(Primary_Axis_Rotation_Matrix_RAD(axis, angle + h));
      const RegularMatrix before(Primary_Axis_Rotation_Matrix_RAD(axis, angle - h));
      const RegularMatrix d(DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(axis, degrees));
      for (unsigned k = 0; k < 9; ++k) EXPECT_NEAR(d(k / 3, k % 3), (after(k / 3, k % 3) - before(k / 3, k % 3)) / (2 * h), 1e-10);
      EXPECT_EQ(d(axis - 1, axis - 1), 0.0);
    }
  }
}

TEST(Rotation, AllocatesObjectAndArray) {
  const long before = Allocations();
  RegularMatrix& temporary = Primary_Axis_Rotation_Matrix_RAD(2, 1.0);
  EXPECT_EQ(Allocations(), before + 2);
  EXPECT_TRUE(temporary.dispensable());
  const RegularMatrix taken(temporary);
  EXPECT_EQ(Allocations(), before + 2);
}

TEST(LocalLevel, AtTheOrigin) {
  ExpectRows(RegularMatrix(denu_dxyz(0, 0)), {{{0, 1, 0}, {0, 0, 1}, {1, 0, 0}}}, 0.0);
  // The North Pole, approached along the meridian of longitude 0: east is y, north is -x, up is z.
  ExpectRows(RegularMatrix(denu_dxyz(kPi / 2, 0)), {{{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}}}, 1e-15);
}

// Two rotations of the frame: about z by 90 deg + lon, then about x by 90 deg - lat.
TEST(LocalLevel, IsTwoRotations) {
  Random random(65);
  for (int trial = 0; trial < 50; ++trial) {
    const double lat = random.Uniform(-90, 90), lon = random.Uniform(-180, 180);
    const RegularMatrix e(denu_dxyz(lat * kPi / 180, lon * kPi / 180));
    const RegularMatrix z(Primary_Axis_Rotation_Matrix_DEG(3, 90 + lon));
    const RegularMatrix x(Primary_Axis_Rotation_Matrix_DEG(1, 90 - lat));
    Rows product{};
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) {
        for (unsigned k = 0; k < 3; ++k) product[i][j] += x(i, k) * z(k, j);
      }
    }
    ExpectRows(e, product, 8 * kUlp);
    ExpectOrthonormal(e);
  }
}

struct Point {
  double x[3];
};

// Geodetic to Cartesian coordinates, from the ellipse itself.
Point Cartesian(double lat, double lon, double h, double a, double e2) {
  const double n = a / std::sqrt(1 - e2 * std::sin(lat) * std::sin(lat));
  return {{(n + h) * std::cos(lat) * std::cos(lon), (n + h) * std::cos(lat) * std::sin(lon),
           ((1 - e2) * n + h) * std::sin(lat)}};
}

TEST(Geodesy, DerivativesOfCartesianCoordinates) {
  const double a = 6378137.0, e2 = 6.69437999014e-3;
  Random random(66);
  for (int trial = 0; trial < 50; ++trial) {
    const double at[3] = {random.Uniform(-1.5, 1.5), random.Uniform(-3, 3), random.Uniform(-1e4, 1e6)};
    const RegularMatrix d(dxyz_dblh(at[0], at[1], at[2], a, e2));
    for (unsigned j = 0; j < 3; ++j) {
      const double step = j == 2 ? 1000.0 : 1e-4;
      double slope[3] = {0, 0, 0};
      // Fourth-order central difference.
      for (int k : {-2, -1, 1, 2}) {
        double moved[3] = {at[0], at[1], at[2]};
        moved[j] += k * step;
        const Point p = Cartesian(moved[0], moved[1], moved[2], a, e2);
        const double weight = (k == 1 ? 8.0 : k == -1 ? -8.0 : k == 2 ? -1.0 : 1.0) / (12 * step);
        for (unsigned i = 0; i < 3; ++i) slope[i] += weight * p.x[i];
      }
      for (unsigned i = 0; i < 3; ++i) EXPECT_NEAR(d(i, j), slope[i], j == 2 ? 1e-11 : 2e-4);
    }
  }
}

// In local axes a change of latitude goes north by M + h, one of longitude east by (N + h) cos lat, one of height up.
TEST(Geodesy, DerivativesPointEastNorthUp) {
  const double a = 6378137.0, e2 = 6.69437999014e-3;
  Random random(67);
  for (int trial = 0; trial < 50; ++trial) {
    const double lat = random.Uniform(-1.57, 1.57), lon = random.Uniform(-3, 3), h = random.Uniform(-1e4, 1e6);
    const RegularMatrix d(dxyz_dblh(lat, lon, h, a, e2));
    const RegularMatrix e(denu_dxyz(lat, lon));
    const double w = 1 - e2 * std::sin(lat) * std::sin(lat);
    const double meridian = a * (1 - e2) / std::pow(w, 1.5);
    const double vertical = a / std::sqrt(w);
    const Rows want = {{{0, (vertical + h) * std::cos(lat), 0}, {meridian + h, 0, 0}, {0, 0, 1}}};
    for (unsigned i = 0; i < 3; ++i) {
      for (unsigned j = 0; j < 3; ++j) {
        const double sum = e(i, 0) * d(0, j) + e(i, 1) * d(1, j) + e(i, 2) * d(2, j);
        EXPECT_NEAR(sum, want[i][j], j == 2 ? 1e-15 : 1e-8) << i << j;
      }
    }
    EXPECT_EQ(d(2, 1), 0.0);
  }
}

TEST(Geodesy, BeyondAnEllipsoid) {
  // w < 0: no real radius. w = 0: the pole of a disc.
  const RegularMatrix none(dxyz_dblh(1.5, 0.3, 0, 1, 4));
  EXPECT_TRUE(std::isnan(none(0, 0)) && std::isnan(none(0, 1)) && std::isnan(none(2, 0)));
  EXPECT_FALSE(std::isnan(none(0, 2)));
  const RegularMatrix disc(dxyz_dblh(kPi / 2, 0, 0, 1, 1));
  EXPECT_FALSE(std::isfinite(disc(0, 0)));
}

}  // namespace
}  // namespace quorvel::test
