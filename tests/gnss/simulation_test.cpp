#include "simulate/simulation.h"

#include <algorithm>
#include <cmath>
#include <set>

#include <gtest/gtest.h>

#include "estimate/process.h"
#include "report/errors.h"
#include "simulate/random.h"

namespace gnss {
namespace {

TEST(Random, IsTheNamedGenerator) {
  // First outputs of the published generator for the seed 0, as fractions of 2^64.
  Random random(0);
  EXPECT_EQ(random.Uniform(), static_cast<double>(0xe220a8397b1dcdafu >> 11) * 0x1p-53);
  EXPECT_EQ(random.Uniform(), static_cast<double>(0x6e789e6aa1b965f4u >> 11) * 0x1p-53);
}

TEST(Simulation, IsTheSameEveryTime) {
  const Simulation a = Simulate(3, 50);
  const Simulation b = Simulate(3, 50);
  const Simulation c = Simulate(4, 50);
  ASSERT_EQ(a.observations.epochs.size(), 50u);
  for (std::size_t k = 0; k < 50; ++k) {
    ASSERT_EQ(a.observations.epochs[k].ranges.size(), b.observations.epochs[k].ranges.size());
    for (std::size_t i = 0; i < a.observations.epochs[k].ranges.size(); ++i) {
      EXPECT_EQ(a.observations.epochs[k].ranges[i].metres, b.observations.epochs[k].ranges[i].metres);
    }
  }
  EXPECT_NE(a.observations.epochs[0].ranges[0].metres, c.observations.epochs[0].ranges[0].metres);
}

// The drive, or its first part (a parking lot for ten minutes, then the road): what was put in must be found out.
class Drive : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Epochs, Drive, ::testing::Values(800, kSimulatedEpochs));

TEST_P(Drive, IsSolvedAndItsErrorsAreFound) {
  const bool whole = GetParam() == kSimulatedEpochs;
  if (whole && sizeof(void*) == 4) GTEST_SKIP() << "takes too long under an emulator";
  const Simulation s = Simulate(kDefaultSeed, GetParam());
  const Processed p = Process(s.observations, s.navigation, ProcessSettings());
  const std::vector<ErrorRow> errors = ErrorsAgainst({s.true_positions, "", true}, p);
  const ErrorSummary fix = Summarise(errors, Solution::fix);
  const ErrorSummary filtered = Summarise(errors, Solution::filtered);
  EXPECT_EQ(p.motion, Motion::driving);  // even when only the last of it moves
  EXPECT_LT(fix.most[3], 7.0);
  EXPECT_LT(filtered.most[3], 6.0);
  EXPECT_LT(filtered.most[3], fix.most[3]);
  EXPECT_LT(p.track.worst_disagreement, 1e-6);
  for (const ErrorRow& row : errors) EXPECT_LT(Length(row.filtered), 15.0) << row.epoch;

  // Of the wrong ranges in solved epochs above the mask nearly all are found, and hardly any others.
  std::size_t wrong = 0;
  std::size_t missed = 0;
  std::set<std::pair<std::size_t, int>> put_in(s.gross.begin(), s.gross.end());
  for (const auto& [epoch, prn] : put_in) {
    const Fix& f = p.fixes[epoch];
    const auto has = [prn = prn](const std::vector<int>& list) {
      return std::find(list.begin(), list.end(), prn) != list.end();
    };
    if (f.outcome != Outcome::solved) continue;
    if (has(f.used)) ++missed;
    if (has(f.used) || has(f.gross)) ++wrong;
  }
  std::size_t false_alarms = 0;
  for (std::size_t k = 0; k < p.fixes.size(); ++k) {
    for (const int prn : p.fixes[k].gross) false_alarms += put_in.count({k, prn}) == 0;
  }
  EXPECT_GT(wrong, whole ? 200u : 40u);
  EXPECT_LE(missed * 20, wrong);
  EXPECT_LE(false_alarms * 2, wrong);

  if (!whole) return;
  EXPECT_EQ(p.track.clock_jumps, 1);
  EXPECT_GE(p.counts.too_few, 25);  // the tunnel
  EXPECT_GT(p.counts.unusable.unhealthy, 0);
  EXPECT_GT(p.counts.solved, 2940);
  EXPECT_NE(p.fixes.front().time.week, p.fixes.back().time.week);
}

}  // namespace
}  // namespace gnss
