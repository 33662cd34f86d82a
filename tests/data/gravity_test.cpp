// Earth gravity model EGM96 to degree 36, from Legendre functions.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "data/files.h"
#include "data/harmonics.h"

namespace quorvel::test::data {
namespace {

constexpr double kGM = 3.986004415e14;

// The coefficients of GM / r times the series, for the unnormalised functions: V = sum of GM / a (a / r)^(n + 1) ...
Harmonics Model() {
  Harmonics field(36, 6378136.3);
  field.c[0] = kGM / field.radius;
  int count = 0;
  for (const std::string& line : Lines("gravity/egm96_n36.csv")) {
    if (line[0] == '#' || line[0] == 'n') continue;
    const std::vector<std::string> v = Split(line, ',');
    const auto n = static_cast<unsigned>(Number(v[0])), m = static_cast<unsigned>(Number(v[1]));
    const double factor = kGM / field.radius * SchmidtFactor(n, m) * std::sqrt(2.0 * n + 1);
    field.c[Harmonics::index(n, m)] = factor * Number(v[2]);
    field.s[Harmonics::index(n, m)] = factor * Number(v[3]);
    ++count;
  }
  EXPECT_EQ(count, 700);
  return field;
}

TEST(GravityData, ReferencesOfTheTruncatedSeries) {
  NEEDS_DATA("gravity/egm96_n36.csv");
  NEEDS_DATA("gravity/egm96_n36_reference.csv");
  const Harmonics field = Model();
  const Table references = ReadCsv("gravity/egm96_n36_reference.csv");
  ASSERT_EQ(references.rows.size(), 7u);
  double worst = 0;
  for (std::size_t i = 0; i < references.rows.size(); ++i) {
    SCOPED_TRACE(references.rows[i][0]);
    const auto want = [&](const char* column) { return Number(references.at(i, column)); };
    const Synthesis got = Synthesise(field, want("geocentric_lat_deg"), want("lon_deg"), want("r_m"));
    const double potential = want("V_m2_s2"), gravity = std::fabs(want("g_radial"));
    const double errors[] = {(got.value - potential) / potential, (got.up - want("g_radial")) / gravity,
                             (got.north - want("g_north")) / gravity, (got.east - want("g_east")) / gravity};
    for (double error : errors) {
      EXPECT_NEAR(error, 0.0, 1e-12);
      worst = std::fmax(worst, std::fabs(error));
    }
  }
  std::printf("  %zu points within %.1e of the potential and of the size of gravity\n", references.rows.size(), worst);
}

// The geoid of the full degree-360 model is published; 36 degrees come within 3.6 m of it.
TEST(GravityData, GeoidHeights) {
  NEEDS_DATA("gravity/egm96_n36.csv");
  NEEDS_DATA("gravity/egm96_geoid_published.csv");
  Harmonics disturbing = Model();
  // The normal field of WGS 84 (fully normalised even zonals), scaled to the radius and GM of the model.
  const double a = 6378137.0, gm = 3.986004418e14, e2 = 6.69437999014e-3;
  const double zonals[] = {-0.484166774985e-3, 0.790303733511e-6, -0.168724961151e-8, 0.346052468394e-11,
                           -0.265002225747e-14};
  disturbing.c[0] = 0;  // the zero-degree term is the -0.53 m below
  for (unsigned k = 0; k < 5; ++k) {
    const unsigned n = 2 * (k + 1);
    disturbing.c[Harmonics::index(n, 0)] -=
        gm / disturbing.radius * std::pow(a / disturbing.radius, n) * std::sqrt(2.0 * n + 1) * zonals[k];
  }
  const Table published = ReadCsv("gravity/egm96_geoid_published.csv");
  ASSERT_EQ(published.rows.size(), 6u);
  for (std::size_t i = 0; i < published.rows.size(); ++i) {
    const double latDeg = Number(published.rows[i][0]), lonDeg = Number(published.rows[i][1]);
    const double sine = std::sin(latDeg * kRadiansPerDegree), cosine = std::cos(latDeg * kRadiansPerDegree);
    const double vertical = a / std::sqrt(1 - e2 * sine * sine);
    const double axis = vertical * cosine, z = (1 - e2) * vertical * sine;
    const double geocentric = std::atan2(z, axis) / kRadiansPerDegree;
    const double gamma = 9.7803253359 * (1 + 0.00193185265241 * sine * sine) / std::sqrt(1 - e2 * sine * sine);
    const double height = Synthesise(disturbing, geocentric, lonDeg, std::hypot(axis, z)).value / gamma - 0.53;
    EXPECT_NEAR(height, Number(published.rows[i][2]), 3.6) << latDeg << " " << lonDeg;
  }
}

}  // namespace
}  // namespace quorvel::test::data
