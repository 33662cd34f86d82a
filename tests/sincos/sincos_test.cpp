// What is computed from sines and cosines: the same bits from the same sines, and close to that with the C library's.

#include "sincos/sincos.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

// Doubles between a and b, b included.
std::uint64_t UlpsBetween(double a, double b) {
  const auto place = [](double x) {
    std::int64_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return bits < 0 ? INT64_MIN - bits : bits;
  };
  const std::int64_t x = place(a), y = place(b);
  return x > y ? static_cast<std::uint64_t>(x) - static_cast<std::uint64_t>(y)
               : static_cast<std::uint64_t>(y) - static_cast<std::uint64_t>(x);
}

using Values = std::vector<double>;

void Append(Values& to, const RegularMatrix& a) { to.insert(to.end(), a.data(), a.data() + a.StoredCount()); }

Values Rotations(double angle) {
  Values values;
  for (unsigned axis = 1; axis <= 3; ++axis) {
    Append(values, RegularMatrix(Primary_Axis_Rotation_Matrix_RAD(axis, angle)));
    Append(values, RegularMatrix(Primary_Axis_Rotation_Matrix_DEG(axis, angle * 50)));
    Append(values, RegularMatrix(DerivativeOfPrimary_Axis_Rotation_Matrix_RAD(axis, angle)));
    Append(values, RegularMatrix(DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(axis, angle * 50)));
  }
  return values;
}

Values LocalAxes(double latitude, double longitude) {
  Values values;
  Append(values, RegularMatrix(denu_dxyz(latitude, longitude)));
  return values;
}

Values Geodetic(double latitude, double longitude, double height) {
  Values values;
  Append(values, RegularMatrix(dxyz_dblh(latitude, longitude, height, 6378137.0, 0.00669437999014)));
  return values;
}

Values Legendre(double latitude) {
  LowerTriangularMatrix p(13);
  LegendreFunctions(p, latitude);
  return {p.data(), p.data() + p.StoredCount()};
}

// Calls use(name, values of a call) for many calls of every routine that takes angles.
template <class Use>
void ForEachCall(Use use) {
  Random random(20261121);
  for (const double angle : {0.0, -0.0, 0x1.921fb54442d18p+0, 0x1.921fb54442d18p-1, -3.0, 6.0, 1e-8, 1e-300}) {
    use("rotation", [=] { return Rotations(angle); });
  }
  for (unsigned trial = 0; trial < 500; ++trial) {
    const double angle = random.Uniform(-9.0, 9.0);
    const double latitude = random.Uniform(-1.57, 1.57);
    const double longitude = random.Uniform(-3.14, 3.14);
    const double height = random.Uniform(-1e3, 1e6);
    use("rotation", [=] { return Rotations(angle); });
    use("local axes", [=] { return LocalAxes(latitude, longitude); });
    use("geodetic", [=] { return Geodetic(latitude, longitude, height); });
    use("Legendre", [=] { return Legendre(latitude * 57.0); });
  }
}

TEST(SinCos, TheLibraryTakesOurs) {
  const unsigned long before = CallsOfSinCos();
  const RegularMatrix r(Primary_Axis_Rotation_Matrix_RAD(1, 0.5));
  EXPECT_EQ(CallsOfSinCos(), before + 1);
}

TEST(SinCos, OursIsRight) {
  // 30 digits of a table: sin and cos of 1, of 3, of 1/2.
  EXPECT_EQ(PreciseSinCos(1.0).sin, 0.841470984807896506652502321630);
  EXPECT_EQ(PreciseSinCos(1.0).cos, 0.540302305868139717400936607443);
  EXPECT_EQ(PreciseSinCos(3.0).sin, 0.141120008059867222100744802808);
  EXPECT_EQ(PreciseSinCos(3.0).cos, -0.989992496600445457271572875024);
  EXPECT_EQ(PreciseSinCos(-0.5).sin, -0.479425538604203000273287935216);
  EXPECT_EQ(PreciseSinCos(-0.5).cos, 0.877582561890372716116281582604);
  EXPECT_EQ(PreciseSinCos(0x1.921fb54442d18p+0).cos, 6.12323399573676588613032966137e-17);  // pi/2 as a double
}

TEST(SinCos, TheSystemsAreWithinOneUlp) {
  Random random(20261122);
  for (unsigned trial = 0; trial < 20000; ++trial) {
    const double x = random.Uniform(-10.0, 10.0);
    const SinCos ours = PreciseSinCos(x), systems = SystemSinCos(x);
    EXPECT_LE(UlpsBetween(ours.sin, systems.sin), 1u) << std::hexfloat << x;
    EXPECT_LE(UlpsBetween(ours.cos, systems.cos), 1u) << std::hexfloat << x;
  }
}

TEST(SinCos, SameSinesGiveTheSameBits) {
  ForEachCall([](const char*, auto call) {
    const Values values = call();
    digest::Feed(values.data(), values.size());
  });
}

TEST(SinCos, RotationsWithTheSystemsSinesAreWithinOneUlp) {
  ForEachCall([](const char* name, auto call) {
    if (std::strcmp(name, "rotation") != 0) return;
    const Values ours = call();
    const UseSystemSinCos system;
    const Values systems = call();
    ASSERT_EQ(ours.size(), systems.size());
    for (std::size_t k = 0; k < ours.size(); ++k) EXPECT_LE(UlpsBetween(ours[k], systems[k]), 1u) << name << " " << k;
  });
}

}  // namespace
}  // namespace quorvel::test
