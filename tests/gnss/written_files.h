// Files of a simulated standing receiver with exact ranges, written column by column as the format demands.
#ifndef QUORVEL_TESTS_GNSS_WRITTEN_FILES_H
#define QUORVEL_TESTS_GNSS_WRITTEN_FILES_H

#include <array>
#include <cstdio>
#include <string>

#include "gnss/range_builder.h"
#include "gnss/rinex_text.h"

namespace gnss::test {

class WrittenFiles {
 public:
  WrittenFiles()
      : sky_(Simulate(kDefaultSeed, 0).navigation), place_(FromGeodetic({47.0 * kDegree, 15.0 * kDegree, 400.0})) {}

  const NavigationData& sky() const { return sky_; }
  const Vector3& place() const { return place_; }

  // One epoch every 30 s from the start of week 2328.
  std::string Observations(int epochs) const {
    char position[80];
    std::snprintf(position, sizeof position, "%14.4f%14.4f%14.4f", place_[0], place_[1], place_[2]);
    std::string text = FirstLine("2.11", "OBSERVATION DATA") + HeaderLine("TESTSITE", "MARKER NAME") +
                       HeaderLine(position, "APPROX POSITION XYZ") + HeaderLine("     1    C1", "# / TYPES OF OBSERV") +
                       End();
    for (int k = 0; k < epochs; ++k) {
      ObservationEpoch epoch = ExactEpoch(sky_, GpsTime{2328, 30.0 * k}, place_, 2e-5);
      AddAtmosphere(sky_, place_, epoch);
      text += EpochLines(epoch);
    }
    return text;
  }

  std::string Navigation() const {
    std::string text = FirstLine("2.11", "NAVIGATION DATA", " ") + Ionosphere("ION ALPHA", sky_.ionosphere.alpha) +
                       Ionosphere("ION BETA", sky_.ionosphere.beta) + End();
    for (int prn = 1; prn <= kMaxPrn; ++prn) {
      for (int hour : {-2, 0, 2}) {
        Usability why;
        const Ephemeris* e = sky_.Find(prn, GpsTime{2328, 0.0} + 3600.0 * hour, why);
        if (e) text += Record(*e);
      }
    }
    return text;
  }

 private:
  static std::string EpochLines(const ObservationEpoch& epoch) {
    const CalendarTime c = ToCalendar(epoch.time);
    char line[80];
    std::snprintf(line, sizeof line, " %02d %2d %2d %2d %2d%11.7f  0%3zu", c.year % 100, c.month, c.day, c.hour,
                  c.minute, c.second, epoch.ranges.size());
    std::string text = line;
    std::string values;
    for (const Pseudorange& range : epoch.ranges) {
      std::snprintf(line, sizeof line, "G%2d", range.prn);
      text += line;
      values += Value(range.metres) + "\n";
    }
    return text + "\n" + values;
  }

  static std::string Number(double x) {
    char text[40];
    std::snprintf(text, sizeof text, "%19.12E", x);
    return text;
  }

  static std::string Ionosphere(const char* label, const std::array<double, 4>& values) {
    std::string text = "  ";
    for (const double x : values) {
      char number[40];
      std::snprintf(number, sizeof number, "%12.4E", x);
      text += number;
    }
    return HeaderLine(text, label);
  }

  static std::string Record(const Ephemeris& e) {
    const CalendarTime c = ToCalendar(e.toc);
    char first[40];
    std::snprintf(first, sizeof first, "%2d %02d %2d %2d %2d %2d%5.1f", e.prn, c.year % 100, c.month, c.day, c.hour,
                  c.minute, c.second);
    std::string text = first + Number(e.af0) + Number(e.af1) + Number(e.af2);
    // The week is given modulo 1024, as receivers of old do.
    const double values[] = {1,
                             e.crs,
                             e.delta_n,
                             e.m0,
                             e.cuc,
                             e.e,
                             e.cus,
                             e.sqrt_a,
                             e.toe.seconds,
                             e.cic,
                             e.omega0,
                             e.cis,
                             e.i0,
                             e.crc,
                             e.omega,
                             e.omega_dot,
                             e.i_dot,
                             0,
                             2328 % 1024,
                             0,
                             2,
                             static_cast<double>(e.health),
                             e.tgd,
                             1,
                             0,
                             4};
    int k = 0;
    for (const double value : values) text += (k++ % 4 == 0 ? "\n   " : "") + Number(value);
    return text + "\n";
  }

  NavigationData sky_;
  Vector3 place_;
};

}  // namespace gnss::test

#endif
