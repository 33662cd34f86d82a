// World Magnetic Model: the official test values from Legendre functions and local level axes.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "data/files.h"
#include "data/harmonics.h"

namespace quorvel::test::data {
namespace {

// Coefficients at a time, for the unnormalised functions.
Harmonics ModelAt(double year) {
  const std::vector<std::string> lines = Lines("geomag/WMM_2025.COF");
  const double elapsed = year - Number(Split(lines[0].substr(lines[0].find_first_not_of(' ')), ' ')[0]);
  Harmonics field(12, 6371200.0);
  int count = 0;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const std::vector<double> v = Numbers(lines[i]);
    if (v.size() != 6) continue;
    const auto n = static_cast<unsigned>(v[0]), m = static_cast<unsigned>(v[1]);
    const double factor = field.radius * SchmidtFactor(n, m);
    field.c[Harmonics::index(n, m)] = factor * (v[2] + elapsed * v[4]);
    field.s[Harmonics::index(n, m)] = factor * (v[3] + elapsed * v[5]);
    ++count;
  }
  EXPECT_EQ(count, 90);
  return field;
}

// A vector given in the local axes at one latitude, in those at another of the same meridian: through Earth-fixed axes.
std::vector<double> Turned(const std::vector<double>& enu, double fromLat, double toLat, double lon) {
  const RegularMatrix from(denu_dxyz(fromLat, lon)), to(denu_dxyz(toLat, lon));
  std::vector<double> xyz(3, 0.0), turned(3, 0.0);
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) xyz[i] += from(j, i) * enu[j];
  }
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = 0; j < 3; ++j) turned[i] += to(i, j) * xyz[j];
  }
  return turned;
}

TEST(GeomagneticData, OfficialTestValues) {
  NEEDS_DATA("geomag/WMM_2025.COF");
  NEEDS_DATA("geomag/WMM2025_TEST_VALUES.txt");
  const double a = 6378137.0, f = 1 / 298.257223563, e2 = f * (2 - f);
  int rows = 0;
  double worst = 0;
  for (const std::string& line : Lines("geomag/WMM2025_TEST_VALUES.txt")) {
    if (line.empty() || line[0] == '#') continue;
    SCOPED_TRACE(line);
    const std::vector<double> v = Numbers(line);
    ASSERT_EQ(v.size(), 18u);
    const double height = 1000 * v[1], lat = v[2] * kRadiansPerDegree, lon = v[3] * kRadiansPerDegree;
    const double vertical = a / std::sqrt(1 - e2 * std::sin(lat) * std::sin(lat));
    const double axis = (vertical + height) * std::cos(lat), z = ((1 - e2) * vertical + height) * std::sin(lat);
    const double geocentric = std::atan2(z, axis);
    const Synthesis field =
        Synthesise(ModelAt(v[0]), geocentric / kRadiansPerDegree, v[3], std::hypot(axis, z));
    // The field is minus the gradient of the potential.
    const std::vector<double> enu = Turned({-field.east, -field.north, -field.up}, geocentric, lat, lon);
    const double errors[3] = {enu[1] - v[7], enu[0] - v[8], -enu[2] - v[9]};
    for (double error : errors) {
      EXPECT_NEAR(error, 0.0, 0.01);
      worst = std::fmax(worst, std::fabs(error));
    }
    ++rows;
  }
  EXPECT_EQ(rows, 100);
  std::printf("  %d rows, north, east, down within %.5f nT\n", rows, worst);
}

}  // namespace
}  // namespace quorvel::test::data
