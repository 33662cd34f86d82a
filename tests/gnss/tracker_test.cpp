#include "estimate/tracker.h"

#include <cmath>

#include <gtest/gtest.h>

#include "estimate/process.h"
#include "gnss/range_builder.h"

namespace gnss {
namespace {

using namespace gnss::test;

const Vector3 kPlace = FromGeodetic({47.0 * kDegree, 15.0 * kDegree, 400.0});

// Fixes of a standing receiver with exact ranges, `step` seconds apart, its clock `clock(k)` seconds fast.
template <typename Clock>
Observations Exact(const NavigationData& navigation, int epochs, double step, Clock clock) {
  Observations out;
  for (int k = 0; k < epochs; ++k) {
    ObservationEpoch epoch = ExactEpoch(navigation, GpsTime{2327, 604000.0} + step * k, kPlace, clock(k));
    AddAtmosphere(navigation, kPlace, epoch);
    out.epochs.push_back(epoch);
  }
  return out;
}

std::vector<Fix> Fixes(const Observations& observations, const NavigationData& navigation) {
  EpochCounts counts;
  return SolveAll(observations, navigation, SolverSettings(), counts);
}

NavigationData Sky() { return Simulate(kDefaultSeed, 0).navigation; }

TEST(Tracker, FollowsExactRangesAcrossTheEndOfTheWeek) {
  const NavigationData sky = Sky();
  const std::vector<Fix> fixes = Fixes(Exact(sky, 60, 30.0, [](int k) { return 1e-5 + 3e-7 * 30.0 * k; }), sky);
  EXPECT_NE(fixes.front().time.week, fixes.back().time.week);
  const Track track = RunFilters(fixes, MotionModel::Standing());
  ASSERT_EQ(track.points.size(), 60u);
  EXPECT_EQ(track.clock_jumps, 0);
  EXPECT_EQ(track.contradicted_ranges, 0);
  EXPECT_EQ(track.restarts, 0);
  EXPECT_LT(track.worst_disagreement, 1e-6);
  for (const TrackPoint& point : track.points) {
    EXPECT_LT(Length(point.position - kPlace), 5e-3);
    EXPECT_LT(point.sigma[0], 5.0);
  }
  EXPECT_NEAR(track.points.back().clock, (1e-5 + 3e-7 * 30.0 * 59) * kSpeedOfLight, 0.05);
  EXPECT_LT(track.points.back().sigma[2], 0.7 * track.points.front().sigma[2]);  // it learns
}

TEST(Tracker, TakesJumpsOfTheClockInItsStride) {
  const NavigationData sky = Sky();
  const auto sawtooth = [](int k) { return 1e-6 * 30.0 * k - 1e-3 * std::floor(1e-6 * 30.0 * k / 1e-3 + 0.5); };
  const std::vector<Fix> fixes = Fixes(Exact(sky, 60, 30.0, sawtooth), sky);
  const Track track = RunFilters(fixes, MotionModel::Standing());
  EXPECT_EQ(track.clock_jumps, 2);
  EXPECT_EQ(track.contradicted_ranges, 0);
  EXPECT_LT(track.worst_disagreement, 1e-6);
  for (const TrackPoint& point : track.points) EXPECT_LT(Length(point.position - kPlace), 5e-3);
}

TEST(Tracker, RefusesRangesThatItsPredictionContradicts) {
  const NavigationData sky = Sky();
  Observations observations = Exact(sky, 30, 1.0, [](int) { return 1e-5; });
  std::vector<Fix> fixes = Fixes(observations, sky);
  // A wrong range that the epoch by itself did not notice.
  fixes[20].equations.misclosure(1) += 150.0;
  const Track track = RunFilters(fixes, MotionModel::Standing());
  EXPECT_EQ(track.contradicted_ranges, 1);
  EXPECT_LT(Length(track.points[20].position - kPlace), 5e-3);
}

TEST(Tracker, BelievesAStubbornlyDifferentPlaceInTheEnd) {
  const NavigationData sky = Sky();
  std::vector<Fix> fixes = Fixes(Exact(sky, 60, 1.0, [](int) { return 1e-5; }), sky);
  const Vector3 away = {20000.0, -5000.0, 1000.0};
  for (std::size_t k = 30; k < fixes.size(); ++k) fixes[k].position = fixes[k].position + away;
  const Track track = RunFilters(fixes, MotionModel::Standing());
  EXPECT_EQ(track.restarts, 1);
  EXPECT_LT(Length(track.points[35].position - kPlace), 1.0);
  EXPECT_LT(Length(track.points[41].position - kPlace - away), 1.0);
}

TEST(Tracker, BeginsAnewAfterALongGap) {
  const NavigationData sky = Sky();
  Observations observations = Exact(sky, 40, 60.0, [](int k) { return k < 20 ? 1e-5 : 4e-4; });
  observations.epochs.erase(observations.epochs.begin() + 3, observations.epochs.begin() + 22);
  const Track track = RunFilters(Fixes(observations, sky), MotionModel::Standing());
  EXPECT_EQ(track.restarts, 1);
  EXPECT_EQ(track.points.size(), 21u);
  EXPECT_LT(Length(track.points.back().position - kPlace), 5e-3);
}

TEST(Tracker, PassesOverEpochsWithoutAFix) {
  const NavigationData sky = Sky();
  Observations observations = Exact(sky, 10, 30.0, [](int) { return 0.0; });
  observations.epochs[4].ranges.resize(3);
  const std::vector<Fix> fixes = Fixes(observations, sky);
  EXPECT_EQ(fixes[4].outcome, Outcome::too_few);
  EXPECT_EQ(RunFilters(fixes, MotionModel::Standing()).points.size(), 9u);
  EXPECT_TRUE(RunFilters({}, MotionModel::Standing()).points.empty());
}

TEST(Process, JudgesTheMotion) {
  const NavigationData sky = Sky();
  std::vector<Fix> fixes = Fixes(Exact(sky, 20, 1.0, [](int) { return 0.0; }), sky);
  EXPECT_EQ(JudgeMotion(fixes), Motion::standing);
  // It leaves at the end.
  fixes[18].position[0] += 15.0;
  EXPECT_EQ(JudgeMotion(fixes), Motion::standing);
  fixes[19].position[0] += 40.0;
  EXPECT_EQ(JudgeMotion(fixes), Motion::driving);
  EXPECT_EQ(JudgeMotion({}), Motion::standing);
  EXPECT_FALSE(MedianPosition({}).has_value());
}

}  // namespace
}  // namespace gnss
