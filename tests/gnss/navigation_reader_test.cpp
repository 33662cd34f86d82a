#include "read/navigation_reader.h"

#include <gtest/gtest.h>

#include "gnss/rinex_text.h"

namespace gnss {
namespace {

using namespace gnss::test;

// A record of a broadcast file of 2015 (version 2) and one of 2020 (version 3), as they were transmitted.
const char* const kRecord2 =
    " 2 15  7 19  1 59 28.0  .579084269702D-03  .227373675443D-11  .000000000000D+00\n"
    "     .700000000000D+01 -.646250000000D+02  .489591822036D-08 -.136404614938D+01\n"
    "    -.324845314026D-05  .146582192974D-01  .101532787085D-04  .515359719276D+04\n"
    "     .716800000000D+04  .320374965668D-06 -.296605403382D+01  .117346644402D-06\n"
    "     .941587707856D+00  .168968750000D+03 -.224753761329D+01 -.804390648956D-08\n"
    "     .789318592573D-10  .100000000000D+01  .185400000000D+04  .000000000000D+00\n"
    "     .240000000000D+01  .000000000000D+00 -.204890966415D-07  .700000000000D+01\n"
    "     .360000000000D+04  .400000000000D+01\n";
const char* const kRecord3 =
    "G01 2020 06 25 04 00 00 1.604342833161e-05 7.048583938740e-12 0.000000000000e+00\n"
    "     5.800000000000e+01-3.968750000000e+01 4.304822170265e-09 6.342094507864e-01\n"
    "    -2.177432179451e-06 1.000394229777e-02 1.937150955200e-06 5.153707128525e+03\n"
    "     3.600000000000e+05-1.508742570877e-07 2.572838528869e+00 1.359730958939e-07\n"
    "     9.806518601091e-01 3.539687500000e+02 7.941703015008e-01-8.384634967987e-09\n"
    "    -5.714523747137e-11 1.000000000000e+00 2.111000000000e+03 0.000000000000e+00\n"
    "     2.000000000000e+00 0.000000000000e+00 5.122274160385e-09 5.800000000000e+01\n"
    "     3.561060000000e+05 4.000000000000e+00\n";

std::string Header2() {
  return FirstLine("2.10", "NAVIGATION", " ") +
         HeaderLine("   .745058D-08 .711478D-08-.603921D-08-.384468D-08", "ION ALPHA") +
         HeaderLine("   .901120D+05 .365063D+05-.664019D+04-.169091D+05", "ION BETA") + End();
}

std::string Header3() {
  return FirstLine("3.05", "NAVIGATION DATA", "M") +
         HeaderLine("GAL    1.0000e+02  1.0000e+00  1.0000e+00  0.0000E+00", "IONOSPHERIC CORR") +
         HeaderLine("GPSA   4.6566e-09  1.4901e-08 -5.9605e-08 -1.1921E-07", "IONOSPHERIC CORR") +
         HeaderLine("GPSB   8.1920e+04  9.8304e+04 -6.5536e+04 -5.2429E+05", "IONOSPHERIC CORR") + End();
}

// Replaces one line (counted from 0) of a text.
std::string WithLine(std::string text, int line, const std::string& replacement) {
  std::size_t begin = 0;
  for (; line > 0; --line) begin = text.find('\n', begin) + 1;
  return text.replace(begin, text.find('\n', begin) - begin, replacement);
}

TEST(NavigationReader, ReadsVersion2) {
  const NavigationData data = ParseNavigation(Header2() + kRecord2);
  ASSERT_TRUE(data.ionosphere.known);
  EXPECT_EQ(data.ionosphere.alpha[0], 0.745058e-8);
  EXPECT_EQ(data.ionosphere.alpha[3], -0.384468e-8);
  EXPECT_EQ(data.ionosphere.beta[1], 36506.3);
  Usability why;
  const Ephemeris* e = data.Find(2, GpsTime{1854, 7200.0}, why);
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->toc - FromCalendar({2015, 7, 19, 1, 59, 28.0}), 0.0);
  EXPECT_EQ(e->toe.week, 1854);
  EXPECT_EQ(e->toe.seconds, 7168.0);
  EXPECT_EQ(e->af0, .579084269702e-03);
  EXPECT_EQ(e->crs, -64.625);
  EXPECT_EQ(e->delta_n, .489591822036e-08);
  EXPECT_EQ(e->m0, -1.36404614938);
  EXPECT_EQ(e->cuc, -.324845314026e-05);
  EXPECT_EQ(e->e, .0146582192974);
  EXPECT_EQ(e->cus, .101532787085e-04);
  EXPECT_EQ(e->sqrt_a, 5153.59719276);
  EXPECT_EQ(e->cic, .320374965668e-06);
  EXPECT_EQ(e->omega0, -2.96605403382);
  EXPECT_EQ(e->cis, .117346644402e-06);
  EXPECT_EQ(e->i0, .941587707856);
  EXPECT_EQ(e->crc, 168.96875);
  EXPECT_EQ(e->omega, -2.24753761329);
  EXPECT_EQ(e->omega_dot, -.804390648956e-08);
  EXPECT_EQ(e->i_dot, .789318592573e-10);
  EXPECT_EQ(e->tgd, -.204890966415e-07);
  EXPECT_EQ(e->health, 0);
  EXPECT_EQ(e->fit_hours, 4.0);
}

TEST(NavigationReader, ReadsVersion3AndPassesOverOtherSystems) {
  const std::string glonass =
      "R01 2020 06 25 00 15 00 6.0e-05 0.0e+00 3.4e+05\n     1.0e+04 1.0 1.0 0.0\n     1.0 1.0 1.0 1.0\n     1.0\n";
  const NavigationData data = ParseNavigation(Header3() + glonass + kRecord3);
  ASSERT_TRUE(data.ionosphere.known);
  EXPECT_EQ(data.ionosphere.alpha[2], -5.9605e-8);
  EXPECT_EQ(data.ionosphere.beta[3], -5.2429e5);
  EXPECT_EQ(data.size(), 1u);
  Usability why;
  const Ephemeris* e = data.Find(1, GpsTime{2111, 360000.0}, why);
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->af0, 1.604342833161e-05);
  EXPECT_EQ(e->crs, -39.6875);
  EXPECT_EQ(e->sqrt_a, 5153.707128525);
  EXPECT_EQ(e->i_dot, -5.714523747137e-11);
  EXPECT_EQ(e->tgd, 5.122274160385e-09);
}

// The reference time belongs to the week of the clock's date, or to the one next to it when that is nearer; the week
// number of the record does not count.
TEST(NavigationReader, PlacesTheReferenceTimeNextToTheDate) {
  std::string late = WithLine(kRecord2, 0, " 2 15  7 18 23 59 44.0  .579084269702D-03  .227373675443D-11  .0D+00");
  late = WithLine(late, 3, "     .000000000000D+00  .320374965668D-06 -.296605403382D+01  .117346644402D-06");
  const NavigationData data = ParseNavigation(Header2() + late);
  Usability why;
  const Ephemeris* e = data.Find(2, GpsTime{1854, 10.0}, why);
  ASSERT_NE(e, nullptr);
  EXPECT_EQ(e->toc.week, 1853);
  EXPECT_EQ(e->toe.week, 1854);
  EXPECT_EQ(e->toe.seconds, 0.0);
}

TEST(NavigationReader, KeepsTheHealth) {
  const std::string sick =
      WithLine(kRecord2, 6, "     .240000000000D+01  .630000000000D+02 -.204890966415D-07  .700000000000D+01");
  const NavigationData data = ParseNavigation(Header2() + sick);
  Usability why;
  EXPECT_EQ(data.Find(2, GpsTime{1854, 7200.0}, why), nullptr);
  EXPECT_EQ(why, Usability::unhealthy);
}

TEST(NavigationReader, DoesWithoutTheIonosphere) {
  EXPECT_FALSE(ParseNavigation(FirstLine("2.10", "NAVIGATION", " ") + End() + kRecord2).ionosphere.known);
}

TEST(NavigationReader, LeavesOutImpossibleRecordsWithARemark) {
  const std::string small =
      WithLine(kRecord2, 2, "    -.324845314026D-05  .146582192974D-01  .101532787085D-04  .515359719276D+01");
  const std::string open =
      WithLine(kRecord2, 2, "    -.324845314026D-05  .146582192974D+01  .101532787085D-04  .515359719276D+04");
  const std::string week =
      WithLine(kRecord2, 3, "     .716800000000D+07  .320374965668D-06 -.296605403382D+01  .117346644402D-06");
  const std::string prn = WithLine(kRecord2, 0, "99 15  7 19  1 59 28.0  .579084269702D-03  .227373675443D-11  .0D+00");
  const std::string clock =
      WithLine(kRecord2, 0, " 2 15  7 19  1 59 28.0  .579084269702D-03  .227373675443D+99  .0D+00");
  const std::string motion =
      WithLine(kRecord2, 1, "     .700000000000D+01 -.646250000000D+02  .489591822036D+30 -.136404614938D+01");
  const std::string health =
      WithLine(kRecord2, 6, "     .240000000000D+01  .630000000000D+42 -.204890966415D-07  .700000000000D+01");
  const std::string far =
      WithLine(kRecord2, 3, "     .716800000000D+88  .320374965668D-06 -.296605403382D+01  .117346644402D-06");
  const NavigationData data =
      ParseNavigation(Header2() + small + open + week + prn + clock + motion + health + far + kRecord2);
  EXPECT_EQ(data.size(), 1u);
  ASSERT_EQ(data.remarks.size(), 8u);
  EXPECT_EQ(data.remarks[0].rfind("test.nav:5: ", 0), 0u) << data.remarks[0];
  EXPECT_EQ(data.remarks[3].rfind("test.nav:29: ", 0), 0u) << data.remarks[3];
}

TEST(NavigationReader, LeavesOutARecordThatTheEndOfTheFileCutsOff) {
  const std::string record = kRecord2;
  const NavigationData data = ParseNavigation(Header2() + record + record.substr(0, 300));
  EXPECT_EQ(data.size(), 1u);
  ASSERT_EQ(data.remarks.size(), 1u);
  EXPECT_EQ(data.remarks[0].rfind("test.nav:13: ", 0), 0u) << data.remarks[0];
}

TEST(NavigationReader, NamesFileAndLineOfWhatItCannotRead) {
  struct Case {
    std::string text;
    const char* place;
    const char* reason;
  };
  const Case cases[] = {
      {"", "test.nav:0: ", "empty"},
      {"# not RINEX\n", "test.nav:1: ", "not a RINEX file"},
      {FirstLine("2.11", "OBSERVATION DATA"), "test.nav:1: ", "holds observations, not GPS navigation messages"},
      {FirstLine("2.11", "GLONASS NAV"), "test.nav:1: ", "GLONASS"},
      {FirstLine("3.04", "NAVIGATION", "R"), "test.nav:1: ", "nothing for GPS"},
      {FirstLine("2.11", "NAVIGATION") + HeaderLine("  x", "ION ALPHA"), "test.nav:2: ", "not a number"},
      {FirstLine("2.11", "NAVIGATION") + HeaderLine("    1.0D+03", "ION ALPHA"), "test.nav:2: ", "out of range"},
      {FirstLine("2.11", "NAVIGATION"), "test.nav:1: ", "ends inside its header"},
      {Header2() + "xx" + (kRecord2 + 2), "test.nav:5: ", "satellite number"},
      {Header2() + WithLine(kRecord2, 0, " 2 15 17 19  1 59 28.0  .579084269702D-03"), "test.nav:5: ", "no such date"},
      {Header2() + WithLine(kRecord2, 0, " 2 15  7 19  1 59 28.0  .579084269702D-03"), "test.nav:5: ", "missing"},
      {Header2() + WithLine(kRecord2, 4, "     .941587707856D+00  .1689687x0000D+03"), "test.nav:9: ", "not a number"},
      {Header3() + ("X" + std::string(kRecord3 + 1)), "test.nav:6: ", "satellite number"},
  };
  for (const Case& c : cases) {
    const std::string complaint = Complaint(ParseNavigation, c.text);
    EXPECT_EQ(complaint.rfind(c.place, 0), 0u) << complaint << "  expected at " << c.place << c.reason;
    EXPECT_NE(complaint.find(c.reason), std::string::npos) << complaint << "  expected " << c.reason;
  }
}

}  // namespace
}  // namespace gnss
