#include "read/navigation_reader.h"

#include <array>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <fstream>

#include "read/rinex_header.h"

namespace gnss {
namespace {

void ReadHeader(LineReader& in, const RinexKind& kind, NavigationData& data) {
  bool alpha = false;
  bool beta = false;
  for (;;) {
    NextHeaderLine(in);
    const std::string_view label = HeaderLabel(in);
    if (label == "END OF HEADER") break;
    const bool v2_alpha = label == "ION ALPHA";
    const bool v2_beta = label == "ION BETA";
    const bool v3 = kind.major == 3 && label == "IONOSPHERIC CORR";
    const bool is_alpha = v2_alpha || (v3 && in.Text(0, 4) == "GPSA");
    const bool is_beta = v2_beta || (v3 && in.Text(0, 4) == "GPSB");
    if (!is_alpha && !is_beta) continue;
    const std::size_t first = v3 ? 5 : 2;
    auto& values = is_alpha ? data.ionosphere.alpha : data.ionosphere.beta;
    for (std::size_t k = 0; k < 4; ++k) {
      values[k] = in.Real(first + 12 * k, 12, "ionosphere coefficient");
      if (std::fabs(values[k]) > (is_alpha ? 1e-3 : 1e8)) in.Fail("an ionosphere coefficient is out of range");
    }
    (is_alpha ? alpha : beta) = true;
  }
  data.ionosphere.known = alpha && beta;
}

// The numbers of one message in file order: 3 of the first line, 4 of each of the seven others.
// clang-format off
enum Field : std::size_t {
  kAf0, kAf1, kAf2,
  kIode, kCrs, kDeltaN, kM0,
  kCuc, kE, kCus, kSqrtA,
  kToe, kCic, kOmega0, kCis,
  kI0, kCrc, kOmega, kOmegaDot,
  kIDot, kCodesOnL2, kWeek, kDataOnL2,
  kAccuracy, kHealth, kTgd, kIodc,
  kTransmitted, kFit, kSpare, kSpareToo,
  kFields
};
// clang-format on
using Message = std::array<double, kFields>;

// Null when the message can describe a GPS satellite, else what is impossible about it. The bounds lie beyond what the
// fields of the transmitted message can hold, and keep every sum with an elapsed time small.
const char* Impossible(const Message& m) {
  const auto beyond = [&m](Field field, double bound) { return std::fabs(m[field]) > bound; };
  if (!(m[kSqrtA] > 4000.0 && m[kSqrtA] < 8000.0)) return "the semi-major axis is not a GPS satellite's";
  if (!(m[kE] >= 0.0 && m[kE] < 0.5)) return "the eccentricity is not a GPS satellite's";
  if (!(m[kToe] >= 0.0 && m[kToe] < kSecondsPerWeek)) return "the reference time is no second of a week";
  if (!(m[kHealth] >= 0.0 && m[kHealth] <= 255.0)) return "the health is out of range";
  if (!(m[kFit] >= 0.0 && m[kFit] <= 200.0)) return "the fit interval is out of range";
  if (beyond(kAf0, 0.1) || beyond(kAf1, 1e-7) || beyond(kAf2, 1e-12) || beyond(kTgd, 0.001)) {
    return "the clock error is out of range";
  }
  if (beyond(kDeltaN, 1e-6)) return "the correction of the mean motion is out of range";
  return nullptr;
}

Ephemeris ToEphemeris(int prn, const GpsTime& toc, const Message& m) {
  Ephemeris e;
  e.prn = prn;
  e.toc = toc;
  // The week number is modulo 1024 in some files and that of the transmission in others: the date in the record's first
  // line settles it.
  e.toe = NearestWithSecondOfWeek(m[kToe], toc);
  e.af0 = m[kAf0], e.af1 = m[kAf1], e.af2 = m[kAf2], e.tgd = m[kTgd];
  e.sqrt_a = m[kSqrtA], e.e = m[kE], e.i0 = m[kI0], e.omega0 = m[kOmega0], e.omega = m[kOmega], e.m0 = m[kM0];
  e.delta_n = m[kDeltaN], e.i_dot = m[kIDot], e.omega_dot = m[kOmegaDot];
  e.cuc = m[kCuc], e.cus = m[kCus], e.crc = m[kCrc], e.crs = m[kCrs], e.cic = m[kCic], e.cis = m[kCis];
  e.health = static_cast<int>(m[kHealth]);
  // A blank or a mere flag stands for the ordinary four hours.
  e.fit_hours = m[kFit] > 4.0 ? m[kFit] : 4.0;
  return e;
}

// Lines of a record of that satellite system, its first one included; 0 for a letter that is none.
int RecordLines(char system) {
  switch (system) {
    case 'G':
    case 'E':
    case 'C':
    case 'J':
    case 'I':
      return 8;
    case 'R':
    case 'S':
      return 4;
    default:
      return 0;
  }
}

GpsTime ClockTime(const LineReader& in, int major) {
  CalendarTime c;
  if (major == 3) {
    c = {in.Integer(4, 4, "year"),  in.Integer(9, 2, "month"),   in.Integer(12, 2, "day"),
         in.Integer(15, 2, "hour"), in.Integer(18, 2, "minute"), in.Real(21, 2, "second")};
  } else {
    c = {FullYear(in.Integer(3, 2, "year")), in.Integer(6, 2, "month"),   in.Integer(9, 2, "day"),
         in.Integer(12, 2, "hour"),          in.Integer(15, 2, "minute"), in.Real(17, 5, "second")};
  }
  return TimeOrFail(in, c, "clock reference time");
}

// Reads the GPS record whose first line is the present one; false when the file ends inside it.
bool ReadGpsRecord(LineReader& in, int major, NavigationData& data) {
  const std::size_t shift = major == 3 ? 1 : 0;  // version 3 has one column more before the numbers of each line
  const std::string place = in.Place();
  const int prn = in.Integer(shift, 2, "satellite number");
  const GpsTime toc = ClockTime(in, major);
  Message m{};
  for (std::size_t k = 0; k < 3; ++k) m[k] = in.Real(22 + shift + 19 * k, 19, "clock coefficient");
  for (std::size_t at = 3; at < kFields; at += 4) {
    if (!in.Next()) return false;
    for (std::size_t k = 0; k < 4; ++k) {
      m[at + k] = in.OptionalReal(3 + shift + 19 * k, 19, "navigation message").value_or(0.0);
    }
  }

  if (prn < 1 || prn > kMaxPrn) {
    data.remarks.push_back(place + "satellite number " + std::to_string(prn) + " is not a GPS satellite's; left out");
  } else if (const char* reason = Impossible(m)) {
    data.remarks.push_back(place + reason + "; the record is left out");
  } else {
    data.Add(ToEphemeris(prn, toc, m));
  }
  return true;
}

bool SkipRecord(LineReader& in, int lines) {
  for (int line = 1; line < lines; ++line) {
    if (!in.Next()) return false;
  }
  return true;
}

}  // namespace

NavigationData ReadNavigation(std::istream& stream, const std::string& name) {
  LineReader in(stream, name);
  NavigationData data;
  const RinexKind kind = ReadFirstHeaderLine(in, 'N');
  ReadHeader(in, kind, data);

  while (in.Next()) {
    if (in.Blank(0, 80)) continue;
    const char system = kind.major == 3 ? in.line()[0] : 'G';
    const int lines = RecordLines(system);
    if (lines == 0) in.Fail("a record must begin with a satellite number");
    const std::string place = in.Place();
    const bool whole = system == 'G' ? ReadGpsRecord(in, kind.major, data) : SkipRecord(in, lines);
    if (!whole) {
      data.remarks.push_back(place + "the file ends inside this record; it is left out");
      break;
    }
  }
  return data;
}

NavigationData ReadNavigationFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) throw FileError(path + ": " + std::strerror(errno));
  return ReadNavigation(in, path);
}

}  // namespace gnss
