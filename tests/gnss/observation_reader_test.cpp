#include "read/observation_reader.h"

#include <gtest/gtest.h>

#include "gnss/rinex_text.h"

namespace gnss {
namespace {

using namespace gnss::test;

std::string Version2Header(const std::string& types = "     3    C1    P1    L1") {
  return FirstLine("2.11", "OBSERVATION DATA") + HeaderLine("HERE", "MARKER NAME") +
         HeaderLine("  4075539.8000   931735.3000  4801629.4000", "APPROX POSITION XYZ") +
         HeaderLine(types, "# / TYPES OF OBSERV") + End();
}

std::string Version3Header(const std::string& types = "G    3 L1C C1C C1W") {
  return FirstLine("3.04", "OBSERVATION DATA", "M") + HeaderLine(types, "SYS / # / OBS TYPES") +
         HeaderLine("R    1 C1C", "SYS / # / OBS TYPES") +
         HeaderLine("  2020     6    25     6     0    0.0000000     GPS", "TIME OF FIRST OBS") + End();
}

TEST(ObservationReader, ReadsVersion2) {
  const Observations o =
      ParseObservations(Version2Header() + " 05  4  2  0  0 30.0050000  0  3G 3R 7G28\n" + Value(24361933.475) +
                        Value(1.0) + Value(2.0) + "\n" + Value(20000000.0) + "\n" + Value(21543408.487) + "\n");
  EXPECT_EQ(o.marker, "HERE");
  ASSERT_TRUE(o.known_position.has_value());
  EXPECT_EQ((*o.known_position)[1], 931735.3);
  ASSERT_EQ(o.epochs.size(), 1u);
  EXPECT_NEAR(o.epochs[0].time - FromCalendar({2005, 4, 2, 0, 0, 30.0}), 0.005, 1e-9);
  ASSERT_EQ(o.epochs[0].ranges.size(), 2u);  // not the GLONASS one
  EXPECT_EQ(o.epochs[0].ranges[0].prn, 3);
  EXPECT_EQ(o.epochs[0].ranges[0].metres, 24361933.475);
  EXPECT_EQ(o.epochs[0].ranges[1].prn, 28);
  EXPECT_EQ(o.epochs[0].ranges[1].metres, 21543408.487);
  EXPECT_TRUE(o.remarks.empty());
}

TEST(ObservationReader, ReadsVersion3) {
  const Observations o = ParseObservations(
      Version3Header() + "> 2020 06 25 06 00 00.0000000  0  3\n" + "G02" + Value(1.0) + Value(24044147.224) +
      Value(5.0) + "\n" + "R11" + Value(22222222.0) + "\n" + "G 3" + Value(1.0) + Value(25297950.318) + "\r\n");
  ASSERT_EQ(o.epochs.size(), 1u);
  ASSERT_EQ(o.epochs[0].ranges.size(), 2u);
  EXPECT_EQ(o.epochs[0].time - FromCalendar({2020, 6, 25, 6, 0, 0.0}), 0.0);
  EXPECT_EQ(o.epochs[0].ranges[0].metres, 24044147.224);
  EXPECT_EQ(o.epochs[0].ranges[1].prn, 3);
  EXPECT_EQ(o.epochs[0].ranges[1].metres, 25297950.318);
}

TEST(ObservationReader, PrefersTheOpenCodeAndFallsBackToTheOther) {
  const Observations o =
      ParseObservations(Version2Header() + " 99 12 31 23 59 59.0000000  0  4  1  2  3  4\n" +  // no letter: GPS
                        Value(21000000.0) + Value(21000001.0) + "\n" +                         // both
                        Padded("", 16) + Value(22000001.0) + "\n" +                            // blank C1
                        Value(0.0) + Value(23000001.0) + "\n" +  // a zero stands for blank
                        "\n");                                   // nothing at all
  ASSERT_EQ(o.epochs.size(), 1u);
  EXPECT_EQ(ToCalendar(o.epochs[0].time).year, 1999);
  ASSERT_EQ(o.epochs[0].ranges.size(), 3u);
  EXPECT_EQ(o.epochs[0].ranges[0].metres, 21000000.0);
  EXPECT_EQ(o.epochs[0].ranges[1].metres, 22000001.0);
  EXPECT_EQ(o.epochs[0].ranges[2].metres, 23000001.0);
  EXPECT_EQ(o.blank_ranges, 1);
}

TEST(ObservationReader, FollowsContinuationLines) {
  std::string header =
      FirstLine("2.10", "Observation", "M") +
      HeaderLine("    11    L1    L2    P2    S1    S2    D1    D2    L5    C5", "# / TYPES OF OBSERV") +
      HeaderLine("          S5    C1", "# / TYPES OF OBSERV") + End();
  std::string epoch = " 16  6 18  0  0  0.0000000  0 14";
  std::string body;
  for (int prn = 1; prn <= 14; ++prn) {
    if (prn == 13) epoch += "\n" + Padded("", 32);
    epoch += (prn < 10 ? "G0" : "G") + std::to_string(prn);
    // Five values on a line, the second line blank, the eleventh value (C1) first on the third line.
    body += Value(1.0) + Value(2.0) + Value(3.0) + Value(4.0) + Value(5.0) + "\n\n" + Value(2e7 + prn) + "\n";
  }
  const Observations o = ParseObservations(header + epoch + "\n" + body);
  ASSERT_EQ(o.epochs.size(), 1u);
  ASSERT_EQ(o.epochs[0].ranges.size(), 14u);
  EXPECT_EQ(o.epochs[0].ranges[13].prn, 14);
  EXPECT_EQ(o.epochs[0].ranges[13].metres, 20000014.0);
}

TEST(ObservationReader, CountsEventsAndTakesTheirHeaderLines) {
  const Observations o = ParseObservations(
      Version2Header() +                      // lines 1-5
      "                            4  2\n" +  // new site, with a new list of types
      HeaderLine("     2    L1    C1", "# / TYPES OF OBSERV") + HeaderLine("MOVED", "COMMENT") +
      " 05  4  2  0  0 30.0000000  1  1G 3\n" +  // power failure before this epoch
      Value(5.0) + Value(24361933.475) + "\n" + " 05  4  2  0  1  0.0000000  6  1G 3\n" +  // cycle slips
      Value(1.0) + Value(0.0) + "\n" + " 05  4  2  0  1 30.0000000  0  1G 3\n" + Value(5.0) + Value(24361944.0) + "\n");
  EXPECT_EQ(o.flagged_epochs, 3);
  ASSERT_EQ(o.epochs.size(), 1u);
  ASSERT_EQ(o.epochs[0].ranges.size(), 1u);
  EXPECT_EQ(o.epochs[0].ranges[0].metres, 24361944.0);
}

TEST(ObservationReader, LeavesOutEpochsThatGoBackInTime) {
  const std::string later = " 05  4  2  0  1  0.0000000  0  1G 3\n" + Value(2e7) + "\n";
  const std::string earlier = " 05  4  2  0  0 30.0000000  0  1G 3\n" + Value(2e7) + "\n";
  const Observations o = ParseObservations(Version2Header() + later + earlier + later);
  EXPECT_EQ(o.epochs.size(), 1u);
  ASSERT_EQ(o.remarks.size(), 2u);
  EXPECT_EQ(o.remarks[0].rfind("test.obs:8: ", 0), 0u) << o.remarks[0];
  EXPECT_EQ(o.remarks[1].rfind("test.obs:10: ", 0), 0u) << o.remarks[1];
}

TEST(ObservationReader, LeavesOutAnEpochThatTheEndOfTheFileCutsOff) {
  const std::string epoch = " 05  4  2  0  1  0.0000000  0  2G 3G 4\n" + Value(2e7) + "\n";
  const Observations o = ParseObservations(Version2Header() + epoch);
  EXPECT_EQ(o.epochs.size(), 0u);
  ASSERT_EQ(o.remarks.size(), 1u);
  EXPECT_EQ(o.remarks[0].rfind("test.obs:6: ", 0), 0u) << o.remarks[0];
  const Observations v3 = ParseObservations(Version3Header() + "> 2020 06 25 06 00 00.0000000  0  3\n");
  EXPECT_EQ(v3.epochs.size(), 0u);
  EXPECT_EQ(v3.remarks.size(), 1u);
}

TEST(ObservationReader, TakesASatelliteOncePerEpoch) {
  const Observations o = ParseObservations(Version2Header() + " 05  4  2  0  1  0.0000000  0  2G 3G 3\n" + Value(2e7) +
                                           "\n" + Value(2.1e7) + "\n");
  ASSERT_EQ(o.epochs.size(), 1u);
  EXPECT_EQ(o.epochs[0].ranges.size(), 1u);
  EXPECT_EQ(o.remarks.size(), 1u);
}

TEST(ObservationReader, NamesFileAndLineOfWhatItCannotRead) {
  struct Case {
    std::string text;
    const char* place;
    const char* reason;
  };
  const std::string v2 = Version2Header();
  const std::string v3 = Version3Header();
  const Case cases[] = {
      {"", "test.obs:0: ", "empty"},
      {"PK\x03\x04 not at all\n", "test.obs:1: ", "not a RINEX file"},
      {HeaderLine("1.0                 COMPACT RINEX FORMAT", "CRINEX VERS   / TYPE"), "test.obs:1: ", "CRX2RNX"},
      {FirstLine("4.00", "OBSERVATION DATA"), "test.obs:1: ", "version"},
      {FirstLine("x.yz", "OBSERVATION DATA"), "test.obs:1: ", "not a number"},
      {FirstLine("2.11", "NAVIGATION DATA"), "test.obs:1: ", "navigation messages, not observations"},
      {FirstLine("2.11", "OBSERVATION DATA", "R"), "test.obs:1: ", "nothing for GPS"},
      {FirstLine("2.11", "OBSERVATION DATA") + HeaderLine("X", "MARKER NAME"),
       "test.obs:2: ", "ends inside its header"},
      {Version2Header("     3    C1    P1"), "test.obs:4: ", "fewer observation types"},
      {Version2Header("   -13    C1    P1"), "test.obs:4: ", "impossible number"},
      {Version2Header("     2    L1    L2"), "test.obs:5: ", "no GPS code range"},
      {FirstLine("2.11", "OBSERVATION DATA") + End(), "test.obs:2: ", "no GPS code range"},
      {FirstLine("2.11", "OBSERVATION DATA") +
           HeaderLine("  2020     6    25     6     0    0.0000000     GLO", "TIME OF FIRST OBS"),
       "test.obs:2: ", "time system 'GLO'"},
      {v2 + " 05  4  2  0  0 3O.0000000  0  1G 3\n", "test.obs:6: ", "second"},
      {v2 + " 05  2 30  0  0 30.0000000  0  1G 3\n", "test.obs:6: ", "no such date"},
      {v2 + " 05  4  2  0  0 30.0000000  7  1G 3\n", "test.obs:6: ", "epoch flag"},
      {v2 + " 05  4  2  0  0 30.0000000  0 -1G 3\n", "test.obs:6: ", "number of satellites"},
      {v2 + " 05  4  2  0  0 30.0000000  0  2G 3\n", "test.obs:6: ", "fewer satellites"},
      {v2 + " 05  4  2  0  0 30.0000000  0  1Gab\n\n", "test.obs:7: ", "satellite number"},
      {v2 + " 05  4  2  0  0 30.0000000  0  1G 3\n  2x456789.123\n", "test.obs:7: ", "'2x456789.123'"},
      {v2 + " 05  4  2  0  0 30.0000000  0  1G 3\n           nan\n", "test.obs:7: ", "not a number"},
      {v2 + " 05  4  2  0  0 30.0000000  0  1G 3\n       1.0E+30\n", "test.obs:7: ", "cannot be one"},
      {v2 + " 05  4  2  0  0 30.0000000  0  1G 3\n      1.0E+999\n", "test.obs:7: ", "not a number"},
      {v3 + " 2020 06 25 06 00 00.0000000  0  3\n", "test.obs:6: ", "'>'"},
      {v3 + "> 2020 06 25 06 00 00.0000000  0   \n", "test.obs:6: ", "number of satellites is missing"},
  };
  for (const Case& c : cases) {
    const std::string complaint = Complaint(ParseObservations, c.text);
    EXPECT_EQ(complaint.rfind(c.place, 0), 0u) << complaint << "  expected at " << c.place << c.reason;
    EXPECT_NE(complaint.find(c.reason), std::string::npos) << complaint << "  expected " << c.reason;
  }
}

TEST(ObservationReader, NamesAFileThatIsNotThere) {
  try {
    (void)ReadObservationFile("/no/such/file.16o");
    FAIL() << "no complaint";
  } catch (const FileError& error) {
    EXPECT_STREQ(error.what(), "/no/such/file.16o: No such file or directory");
  }
}

TEST(ObservationReader, TellsItsProgress) {
  std::string text = Version2Header();
  for (int k = 0; k < 2500; ++k) {
    char line[80];
    std::snprintf(line, sizeof line, " 05  4  2 %2d %2d %10.7f  0  1G 3\n", k / 3600, k / 60 % 60, k % 60 + 0.0);
    text += line + Value(2e7) + "\n";
  }
  std::vector<std::size_t> reported;
  std::istringstream in(text);
  (void)ReadObservations(in, "test.obs", [&](std::size_t epochs) { reported.push_back(epochs); });
  EXPECT_EQ(reported, (std::vector<std::size_t>{1000, 2000}));
}

}  // namespace
}  // namespace gnss
