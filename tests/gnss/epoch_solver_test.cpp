#include "estimate/epoch_solver.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "gnss/range_builder.h"

namespace gnss {
namespace {

using namespace gnss::test;

const GpsTime kShown{2328, 600.0};  // ten minutes after a week's end

struct Case {
  NavigationData navigation = Simulate(kDefaultSeed, 0).navigation;
  Vector3 receiver;
  std::vector<Sight> sights;

  Case(double latitude, double longitude, double height, double clock)
      : receiver(FromGeodetic({latitude * kDegree, longitude * kDegree, height})) {
    ObservationEpoch epoch = ExactEpoch(navigation, kShown, receiver, clock);
    AddAtmosphere(navigation, receiver, epoch);
    UnusableSatellites unusable;
    sights = UsableSights(epoch, navigation, unusable);
  }
  Fix Solve(const SolverSettings& settings = {}, const Vector3& start = {}) const {
    return SolveEpoch(sights, kShown, navigation.ionosphere, start, settings);
  }
};

TEST(SolveEpoch, FindsExactRangesFromTheCentreOfTheEarth) {
  const double places[][3] = {{47.0, 15.0, 400.0}, {-49.4, 70.3, 70.0}, {0.0, -120.0, 0.0}, {89.0, 10.0, 3000.0}};
  for (const auto& p : places) {
    for (const double clock : {0.0, 4.3e-4, -1e-3}) {
      const Case c(p[0], p[1], p[2], clock);
      ASSERT_GE(c.sights.size(), 5u);
      const Fix fix = c.Solve();
      ASSERT_EQ(fix.outcome, Outcome::solved) << p[0];
      EXPECT_LT(Length(fix.position - c.receiver), 2e-3) << p[0] << ' ' << clock;
      EXPECT_NEAR(fix.clock, clock * kSpeedOfLight, 3e-3) << p[0];
      EXPECT_TRUE(fix.gross.empty());
      EXPECT_EQ(fix.used.size(), c.sights.size());
      EXPECT_EQ(fix.equations.rows(), fix.used.size());
    }
  }
}

TEST(SolveEpoch, SetsGrossErrorsAsideWhereLeastSquaresIsMisled) {
  for (const double error : {40.0, 300.0, -2500.0, 1e6}) {
    Case c(47.0, 15.0, 400.0, 1e-4);
    ASSERT_GE(c.sights.size(), 8u);
    c.sights[2].range += error;
    const Fix fix = c.Solve();
    ASSERT_EQ(fix.outcome, Outcome::solved);
    EXPECT_EQ(fix.gross, std::vector<int>{c.sights[2].prn}) << error;
    EXPECT_LT(Length(fix.position - c.receiver), 2e-3) << error;
    SolverSettings plain;
    plain.screen = false;
    const Fix misled = c.Solve(plain);
    EXPECT_GT(Length(misled.position - c.receiver), 0.1 * std::fabs(error)) << error;
  }
}

TEST(SolveEpoch, SetsTwoGrossErrorsAside) {
  Case c(47.0, 15.0, 400.0, 1e-4);
  c.sights[1].range += 120.0;
  c.sights[4].range -= 450.0;
  const Fix fix = c.Solve();
  ASSERT_EQ(fix.outcome, Outcome::solved);
  EXPECT_EQ(fix.gross, (std::vector<int>{c.sights[1].prn, c.sights[4].prn}));
  EXPECT_LT(Length(fix.position - c.receiver), 2e-3);
}

TEST(SolveEpoch, NeedsFourSatellites) {
  Case c(47.0, 15.0, 400.0, 1e-4);
  c.sights.resize(4);
  EXPECT_EQ(c.Solve().outcome, Outcome::solved);
  c.sights.resize(3);
  EXPECT_EQ(c.Solve().outcome, Outcome::too_few);
  c.sights.clear();
  EXPECT_EQ(c.Solve().outcome, Outcome::too_few);
}

TEST(SolveEpoch, NeedsMoreThanOneDirection) {
  Case c(47.0, 15.0, 400.0, 1e-4);
  c.sights.resize(4, c.sights[0]);
  c.sights.assign(5, c.sights[0]);
  EXPECT_EQ(c.Solve().outcome, Outcome::too_few);
}

TEST(SolveEpoch, ReportsAContradictionThatItCannotResolve) {
  Case c(47.0, 15.0, 400.0, 1e-4);
  c.sights.resize(5);
  c.sights[1].range += 5000.0;
  EXPECT_EQ(c.Solve().outcome, Outcome::inconsistent);
}

TEST(SolveEpoch, RefusesRangesThatAreNoNumbers) {
  Case c(47.0, 15.0, 400.0, 1e-4);
  c.sights[0].range = std::nan("");
  EXPECT_NE(c.Solve().outcome, Outcome::solved);
}

TEST(SolveEpoch, ObeysTheElevationMask) {
  const Case c(47.0, 15.0, 400.0, 1e-4);
  SolverSettings settings;
  settings.elevation_mask = 25.0 * kDegree;
  const Fix fix = c.Solve(settings);
  EXPECT_FALSE(fix.low.empty());
  EXPECT_EQ(fix.low.size() + fix.used.size(), c.sights.size());
  for (const double elevation : fix.equations.elevation) EXPECT_GE(elevation, settings.elevation_mask);
  settings.elevation_mask = 85.0 * kDegree;
  EXPECT_EQ(c.Solve(settings).outcome, Outcome::too_few);
}

// Four satellites in the corners of a regular tetrahedron, seen from its centre: (A'A)^-1 = diag(3/4, 3/4, 3/4, 1/4).
TEST(DilutionOf, KnowsTheTetrahedron) {
  const double corners[4][3] = {{1, 1, 1}, {1, -1, -1}, {-1, 1, -1}, {-1, -1, 1}};
  RegularMatrix a(4, 4);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned k = 0; k < 3; ++k) a(i, k) = -corners[i][k] / std::sqrt(3.0);
    a(i, 3) = 1.0;
  }
  const Dilution d = DilutionOf(a, {0.3, 1.2, 0.0});
  EXPECT_NEAR(d.position(), 1.5, 1e-14);
  EXPECT_NEAR(d.time, 0.5, 1e-14);
  EXPECT_NEAR(d.geometric(), std::sqrt(2.5), 1e-14);
  EXPECT_NEAR(d.vertical, std::sqrt(0.75), 1e-14);
  EXPECT_NEAR(d.horizontal(), std::sqrt(1.5), 1e-14);
}

// Three satellites on the horizon, one in the zenith: known components in east, north, up.
TEST(DilutionOf, TurnsIntoTheLocalLevel) {
  const Geodetic place{0.7, -1.9, 0.0};
  const RegularMatrix to_enu(denu_dxyz(place.latitude, place.longitude));
  const double directions[4][3] = {{0, 1, 0}, {std::sqrt(0.75), -0.5, 0}, {-std::sqrt(0.75), -0.5, 0}, {0, 0, 1}};
  RegularMatrix a(4, 4);
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned k = 0; k < 3; ++k) {
      for (unsigned l = 0; l < 3; ++l) a(i, k) -= directions[i][l] * to_enu(l, k);
    }
    a(i, 3) = 1.0;
  }
  // Horizontal: sum e e' = 3/2, so 2/3 each; time = mean of three = 1/3; up = zenith range minus time: 1 + 1/3.
  const Dilution d = DilutionOf(a, place);
  EXPECT_NEAR(d.east, std::sqrt(2.0 / 3.0), 1e-14);
  EXPECT_NEAR(d.north, std::sqrt(2.0 / 3.0), 1e-14);
  EXPECT_NEAR(d.time, std::sqrt(1.0 / 3.0), 1e-14);
  EXPECT_NEAR(d.vertical, std::sqrt(4.0 / 3.0), 1e-14);
}

TEST(UsableSights, CountsWhatCannotBeUsed) {
  const NavigationData navigation = Simulate(kDefaultSeed, 0).navigation;  // 7 is unhealthy, 12 has no message
  ObservationEpoch epoch{kShown, {{7, 2.2e7}, {12, 2.2e7}, {3, 2.2e7}, {99, 2.2e7}, {0, 2.2e7}}};
  UnusableSatellites unusable;
  const std::vector<Sight> sights = UsableSights(epoch, navigation, unusable);
  ASSERT_EQ(sights.size(), 1u);
  EXPECT_EQ(sights[0].prn, 3);
  EXPECT_EQ(unusable.unhealthy, 1);
  EXPECT_EQ(unusable.without_ephemeris, 3);
}

TEST(UsableSights, LeavesOutOrbitsThatAreNone) {
  NavigationData navigation;
  Ephemeris e;
  e.prn = 3;
  e.toe = e.toc = kShown;
  e.sqrt_a = 5153.6;
  e.crs = 1e300;
  navigation.Add(e);
  UnusableSatellites unusable;
  EXPECT_TRUE(UsableSights({kShown, {{3, 2.2e7}}}, navigation, unusable).empty());
  EXPECT_EQ(unusable.without_ephemeris, 1);
}

}  // namespace
}  // namespace gnss
