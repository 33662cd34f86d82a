// Broadcast orbits and clocks against the final ones of an analysis centre, for the same day.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <map>
#include <vector>

#include "data/files.h"
#include "read/navigation_reader.h"
#include "report/errors.h"

namespace gnss {
namespace {

using quorvel::test::data::Path;

TEST(BroadcastOrbits, AgreeWithFinalOnes) {
  NEEDS_DATA("orbit/grg_igs_final_2020_177_gps.csv");
  const NavigationData navigation = ReadNavigationFile(Path("gnss/esbc_2020_177/ESBC00DNK_R_20201770000_01D_GN.rnx"));
  const auto table = quorvel::test::data::ReadCsv("orbit/grg_igs_final_2020_177_gps.csv");
  std::vector<double> distance;
  std::map<double, std::vector<double>> clocks;  // per epoch: differences in metres
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const auto number = [&](const char* column) { return quorvel::test::data::Number(table.at(row, column)); };
    const GpsTime time{static_cast<int>(number("gps_week")), number("tow_s")};
    const int prn = std::atoi(table.at(row, "sat").c_str() + 1);
    Usability why;
    const Ephemeris* e = navigation.Find(prn, time, why);
    if (!e) continue;
    const Vector3 final_position = {1e3 * number("x_km"), 1e3 * number("y_km"), 1e3 * number("z_km")};
    distance.push_back(Length(SatellitePosition(*e, time) - final_position));
    // Final clocks leave the relativistic term to the user and are free of the group delay.
    const double relativity = SatelliteClock(*e, time) - (e->af0 + e->af1 * (time - e->toc) - e->tgd);
    clocks[time.seconds].push_back(kSpeedOfLight *
                                   (SatelliteClock(*e, time) + e->tgd - relativity - 1e-6 * number("clock_us")));
  }
  // Each epoch's final clocks have an offset of their own.
  std::vector<double> clock;
  for (auto& [time, differences] : clocks) {
    const double middle = Quantile(differences, 0.5);
    for (const double d : differences) clock.push_back(std::fabs(d - middle));
  }
  std::printf("  %zu positions: median %.2f, 95 %% %.2f, greatest %.2f m; clocks: median %.2f, 95 %% %.2f m\n",
              distance.size(), Quantile(distance, 0.5), Quantile(distance, 0.95), Quantile(distance, 1.0),
              Quantile(clock, 0.5), Quantile(clock, 0.95));
  EXPECT_GT(distance.size(), 1000u);
  // Broadcast orbits are good to a metre or two, and refer to the antenna, 1 to 3 m from the centre of mass.
  EXPECT_LT(Quantile(distance, 0.5), 3.0);
  EXPECT_LT(Quantile(distance, 0.95), 4.5);
  EXPECT_LT(Quantile(distance, 1.0), 12.0);
  EXPECT_LT(Quantile(clock, 0.5), 1.0);
  EXPECT_LT(Quantile(clock, 0.95), 2.5);
}

}  // namespace
}  // namespace gnss
