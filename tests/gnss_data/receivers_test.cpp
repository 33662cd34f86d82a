// Stations of known position: how far off the positions are, and what the receivers' wrong ranges do to them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

#include "data/files.h"
#include "estimate/process.h"
#include "read/navigation_reader.h"
#include "read/observation_reader.h"
#include "report/errors.h"

namespace gnss {
namespace {

using quorvel::test::data::Path;

struct Station {
  Observations observations;
  NavigationData navigation;
};

Station Read(const std::string& observations, const std::string& navigation) {
  Station station;
  station.observations = ReadObservationFile(Path(observations));
  station.navigation = ReadNavigationFile(Path(navigation));
  EXPECT_TRUE(station.observations.remarks.empty()) << station.observations.remarks.front();
  EXPECT_TRUE(station.navigation.remarks.empty()) << station.navigation.remarks.front();
  EXPECT_TRUE(station.navigation.ionosphere.known);
  return station;
}

// Under an emulator a day takes too long: every eighth epoch stands for it on 32-bit machines.
void Thin(Observations& observations) {
  if (sizeof(void*) > 4) return;
  std::vector<ObservationEpoch> kept;
  for (std::size_t k = 0; k < observations.epochs.size(); k += 8) kept.push_back(observations.epochs[k]);
  observations.epochs.swap(kept);
}

// What the messages of assertions show: the figures of this run.
struct Result {
  Processed processed;
  std::vector<ErrorRow> errors;
  ErrorSummary fix, filtered;
};

Result Evaluate(const Station& station, const Vector3& truth, const ProcessSettings& settings = {}) {
  Result r;
  r.processed = Process(station.observations, station.navigation, settings);
  r.errors = ErrorsAgainst({{truth}, "the surveyed position", true}, r.processed);
  r.fix = Summarise(r.errors, Solution::fix);
  r.filtered = Summarise(r.errors, Solution::filtered);
  std::printf(
      "  %s: %zu epochs, %d solved; 3D median %.2f, 95 %% %.2f m by epoch; %.2f, %.2f m filtered; forms agree to %.1e "
      "m\n",
      station.observations.marker.c_str(), r.processed.fixes.size(), r.processed.counts.solved, r.fix.median[3],
      r.fix.most[3], r.filtered.median[3], r.filtered.most[3], r.processed.track.worst_disagreement);
  EXPECT_LT(r.processed.track.worst_disagreement, 1e-6);
  EXPECT_GT(r.processed.track.points.size(), 0u);
  return r;
}

void ExpectWithin(const Result& r, double median, double most) {
  EXPECT_LT(r.fix.median[3], median);
  EXPECT_LT(r.fix.most[3], most);
  EXPECT_LT(r.filtered.median[3], median);
  EXPECT_LT(r.filtered.most[3], most);
}

// FARB, Farallon Island, California: a whole day. The reference is the IGS08 position.
TEST(Receivers, FarallonDay) {
  NEEDS_DATA("gnss/farb_2016_076/farb0760.16o");
  const std::clock_t begin = std::clock();
  Station station = Read("gnss/farb_2016_076/farb0760.16o", "gnss/farb_2016_076/brdc0760.16n");
  EXPECT_EQ(station.observations.epochs.size(), 2704u);
  Thin(station.observations);
  const Result r = Evaluate(station, {-2752136.046, -4237793.246, 3878892.729});
  const double seconds = static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
  std::printf("  reading, fixes and three filters: %.2f s of processor time\n", seconds);
  EXPECT_EQ(r.processed.counts.solved, static_cast<int>(station.observations.epochs.size()));
  ExpectWithin(r, 3.0, 6.0);
  EXPECT_LT(Length(r.fix.mean), 3.0);
  EXPECT_LT(Length(r.filtered.mean), 3.0);
}

// ARL1, Austin, Texas: the code ranges of low satellites are wrong by up to 2.5 km.
TEST(Receivers, AustinHourWithGrossErrors) {
  NEEDS_DATA("gnss/arl1_2015_200/arlm200b.15o");
  const Station station = Read("gnss/arl1_2015_200/arlm200b.15o", "gnss/arl1_2015_200/arlm2000.15n");
  ASSERT_TRUE(station.observations.known_position.has_value());
  const Vector3 truth = *station.observations.known_position;
  // The wrong ranges are those of low satellites: they must come into play.
  ProcessSettings settings;
  settings.solver.elevation_mask = 0.0;
  const Result r = Evaluate(station, truth, settings);
  ASSERT_EQ(r.errors.size(), 120u);

  // Where C/A and P code of a satellite with a message disagree by more than 20 m: 26.9, 2770.9 and 39.7 m.
  const std::pair<double, int> wrong[] = {{720.0, 21}, {2790.0, 26}, {3210.0, 26}};
  for (const auto& [second, prn] : wrong) {
    const auto fix = std::find_if(r.processed.fixes.begin(), r.processed.fixes.end(), [&, at = second](const Fix& f) {
      return std::fabs(f.time - (GpsTime{1854, 3600.0} + at)) < 0.1;
    });
    ASSERT_NE(fix, r.processed.fixes.end());
    EXPECT_EQ(fix->gross, std::vector<int>{prn}) << second;
  }

  settings.solver.screen = false;
  EpochCounts counts;
  const std::vector<Fix> plain = SolveAll(station.observations, station.navigation, settings.solver, counts);
  double worst_plain = 0.0;
  double worst_filtered = 0.0;
  for (const Fix& fix : plain) worst_plain = std::max(worst_plain, Length(fix.position - truth));
  for (std::size_t k = 20; k < r.errors.size(); ++k) {
    worst_filtered = std::max(worst_filtered, Length(r.errors[k].filtered));
  }
  std::printf("  worst position: %.1f m by plain least squares, %.1f m filtered\n", worst_plain, worst_filtered);
  EXPECT_GE(worst_plain, 15.0);
  EXPECT_LT(worst_filtered, 8.0);
}

// The dilutions of precision published with the same hour, for the epochs whose satellites all have a message.
TEST(Receivers, AustinDilutions) {
  NEEDS_DATA("gnss/arl1_2015_200/arlm200b_published_solution.csv");
  const Station station = Read("gnss/arl1_2015_200/arlm200b.15o", "gnss/arl1_2015_200/arlm2000.15n");
  const Vector3 truth = *station.observations.known_position;
  const auto table = quorvel::test::data::ReadCsv("gnss/arl1_2015_200/arlm200b_published_solution.csv");
  int compared = 0;
  double worst = 0.0;
  for (std::size_t row = 0; row < table.rows.size(); ++row) {
    const auto number = [&](const char* column) { return quorvel::test::data::Number(table.at(row, column)); };
    const GpsTime time{static_cast<int>(number("gps_week")), number("tow_s")};
    const auto epoch = std::find_if(station.observations.epochs.begin(), station.observations.epochs.end(),
                                    [&](const ObservationEpoch& e) { return std::fabs(e.time - time) < 0.1; });
    ASSERT_NE(epoch, station.observations.epochs.end()) << row;
    const std::vector<std::string> names = quorvel::test::data::Split(table.at(row, "sats"), ' ');
    ObservationEpoch published{epoch->time, {}};
    for (const Pseudorange& range : epoch->ranges) {
      char name[16];
      std::snprintf(name, sizeof name, "G%02d", range.prn);
      if (std::find(names.begin(), names.end(), name) != names.end()) published.ranges.push_back(range);
    }
    UnusableSatellites unusable;
    const std::vector<Sight> sights = UsableSights(published, station.navigation, unusable);
    if (sights.size() != names.size()) continue;
    const RangeEquations equations = Linearise(sights, time, station.navigation.ionosphere, truth, 0.0);
    const Dilution d = DilutionOf(equations.design, ToGeodetic(truth));
    worst = std::max({worst, std::fabs(d.time - number("tdop")), std::fabs(d.position() - number("pdop")),
                      std::fabs(d.geometric() - number("gdop"))});
    ++compared;
  }
  std::printf("  %d epochs, greatest difference %.4f (published to 0.01)\n", compared, worst);
  EXPECT_GE(compared, 90);
  EXPECT_LE(worst, 0.01);
}

// Esbjerg, Denmark: RINEX 3.
TEST(Receivers, EsbjergEightHours) {
  NEEDS_DATA("gnss/esbc_2020_177/ESBC00DNK_R_20201770600_08H_30S_GO.rnx");
  Station station = Read("gnss/esbc_2020_177/ESBC00DNK_R_20201770600_08H_30S_GO.rnx",
                         "gnss/esbc_2020_177/ESBC00DNK_R_20201770000_01D_GN.rnx");
  EXPECT_EQ(station.observations.epochs.size(), 960u);
  Thin(station.observations);
  const Result r = Evaluate(station, {3582105.2910, 532589.7313, 5232754.8054});
  EXPECT_EQ(r.errors.size(), station.observations.epochs.size());
  ExpectWithin(r, 3.0, 7.0);
}

// GEONET 0759, Japan: epochs that are no whole seconds, and records of events between them.
TEST(Receivers, GeonetHour) {
  NEEDS_DATA("gnss/geonet0759_2005_092/07590920.05o");
  const Station station = Read("gnss/geonet0759_2005_092/07590920.05o", "gnss/geonet0759_2005_092/07590920.05n");
  EXPECT_EQ(station.observations.epochs.size(), 120u);
  EXPECT_EQ(station.observations.flagged_epochs, 3);
  const double last = station.observations.epochs.back().time.seconds;
  EXPECT_NE(last, static_cast<double>(static_cast<long>(last)));
  const Result r = Evaluate(station, {-3976219.5082, 3382372.5671, 3652512.9849});
  EXPECT_EQ(r.errors.size(), 120u);
  ExpectWithin(r, 2.5, 5.0);
}

// Gatineau (west) and Kerguelen (south): one broadcast file for both.
TEST(Receivers, TwoHemispheres) {
  NEEDS_DATA("gnss/igs_2016_170/cags1700.16o");
  for (const char* name : {"cags1700.16o", "kerg1700.16o"}) {
    const Station station = Read(std::string("gnss/igs_2016_170/") + name, "gnss/igs_2016_170/brdc1700.16n");
    ASSERT_TRUE(station.observations.known_position.has_value());
    const Result r = Evaluate(station, *station.observations.known_position);
    ASSERT_EQ(r.errors.size(), 6u);
    for (const ErrorRow& row : r.errors) {
      EXPECT_LT(Length(row.fix), 6.0) << name << row.epoch;
      EXPECT_LT(Length(row.filtered), 6.0) << name << row.epoch;
    }
  }
}

}  // namespace
}  // namespace gnss
