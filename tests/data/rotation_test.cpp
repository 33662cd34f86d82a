// Published test values of rotations and of geodetic coordinates.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>

#include "data/files.h"
#include "quorvel/quorvel.h"

namespace quorvel::test::data {
namespace {

// "key=value" in the description of a case.
double Field(const std::string& text, const std::string& key) {
  const std::size_t at = text.find(key + "=");
  EXPECT_NE(at, std::string::npos) << key;
  return std::strtod(text.c_str() + at + key.size() + 1, nullptr);
}

TEST(RotationData, RotationsOfAMatrix) {
  NEEDS_DATA("rotations/rotations_geodetic.csv");
  const double m0[3][3] = {{2, 3, 2}, {3, 2, 3}, {3, 4, 5}};
  const Table table = ReadCsv("rotations/rotations_geodetic.csv");
  int count = 0;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    const std::string& name = table.at(i, "case");
    if (name.compare(0, 4, "axis") != 0) continue;
    const std::string& quantity = table.at(i, "quantity");  // element_R_C
    const auto axis = static_cast<unsigned>(name[4] - '0');
    const auto r = static_cast<unsigned>(quantity[8] - '1'), c = static_cast<unsigned>(quantity[10] - '1');
    const RegularMatrix R(Primary_Axis_Rotation_Matrix_RAD(axis, Field(table.at(i, "input"), "angle")));
    const double got = R(r, 0) * m0[0][c] + R(r, 1) * m0[1][c] + R(r, 2) * m0[2][c];
    EXPECT_NEAR(got, Number(table.at(i, "expected")), 1e-12) << name << " " << quantity;
    ++count;
  }
  EXPECT_EQ(count, 18);
}

// dxyz_dblh holds the position: its longitude column is (-y, x, 0), and N + h is in its length.
TEST(RotationData, GeodeticPositions) {
  NEEDS_DATA("rotations/rotations_geodetic.csv");
  const Table table = ReadCsv("rotations/rotations_geodetic.csv");
  int count = 0;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (table.at(i, "case") != "geodetic_to_geocentric") continue;
    const std::string& input = table.at(i, "input");
    const double f = 1 / std::strtod(input.c_str() + input.find("f=1/") + 4, nullptr), e2 = f * (2 - f);
    const double lat = Field(input, "lat"), lon = Field(input, "lon"), h = Field(input, "h");
    const RegularMatrix d(dxyz_dblh(lat, lon, h, Field(input, "a"), e2));
    const double vertical = std::hypot(d(0, 1), d(1, 1)) / std::cos(lat) - h;
    const double position[3] = {d(1, 1), -d(0, 1), ((1 - e2) * vertical + h) * std::sin(lat)};
    const double expected = Number(table.at(i, "expected"));
    const std::size_t axis = static_cast<std::size_t>(table.at(i, "quantity")[0] - 'x');
    EXPECT_NEAR(position[axis], expected, 1e-12 * std::fabs(expected)) << input << " " << table.at(i, "quantity");
    ++count;
  }
  EXPECT_EQ(count, 6);
}

}  // namespace
}  // namespace quorvel::test::data
