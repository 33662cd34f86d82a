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
using Message = std::array<double, 31>;

Ephemeris ToEphemeris(int prn, const GpsTime& toc, const Message& m) {
  Ephemeris e;
  e.prn = prn;
  e.toc = toc;
  e.af0 = m[0], e.af1 = m[1], e.af2 = m[2];
  e.crs = m[4], e.delta_n = m[5], e.m0 = m[6];
  e.cuc = m[7], e.e = m[8], e.cus = m[9], e.sqrt_a = m[10];
  e.cic = m[12], e.omega0 = m[13], e.cis = m[14];
  e.i0 = m[15], e.crc = m[16], e.omega = m[17], e.omega_dot = m[18];
  e.i_dot = m[19];
  // The week number (m[21]) is modulo 1024 in some files and that of the transmission in others: the date in the
  // record's first line settles it.
  e.toe = NearestWithSecondOfWeek(m[11], toc);
  e.health = static_cast<int>(m[24]);
  e.tgd = m[25];
  // A blank or a mere flag stands for the ordinary four hours.
  e.fit_hours = m[28] > 4.0 ? m[28] : 4.0;
  return e;
}

// Null when the message can describe a GPS satellite, else what is impossible about it.
const char* Impossible(const Ephemeris& e, const Message& m) {
  if (!(e.sqrt_a > 4000.0 && e.sqrt_a < 8000.0)) return "the square root of the semi-major axis is not a GPS satellite's";
  if (!(e.e >= 0.0 && e.e < 0.5)) return "the eccentricity is not a GPS satellite's";
  if (!(m[11] >= 0.0 && m[11] < kSecondsPerWeek)) return "the reference time is no second of a week";
  if (!(m[24] >= 0.0 && m[24] <= 255.0)) return "the health is out of range";
  if (!(m[28] >= 0.0 && m[28] <= 200.0)) return "the fit interval is out of range";
  // Well beyond what the fields of the message can hold; the sums with elapsed times stay small then.
  if (std::fabs(e.af0) > 0.1 || std::fabs(e.af1) > 1e-7 || std::fabs(e.af2) > 1e-12 || std::fabs(e.tgd) > 0.001) {
    return "the clock error is out of range";
  }
  if (std::fabs(e.delta_n) > 1e-6) return "the correction of the mean motion is out of range";
  return nullptr;
}

// Lines of a record of that satellite system, its first one included; 0 for a letter that is none.
int RecordLines(char system) {
  switch (system) {
    case 'G': case 'E': case 'C': case 'J': case 'I': return 8;
    case 'R': case 'S': return 4;
    default: return 0;
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
  for (std::size_t at = 3; at < m.size(); at += 4) {
    if (!in.Next()) return false;
    for (std::size_t k = 0; k < 4; ++k) {
      m[at + k] = in.OptionalReal(3 + shift + 19 * k, 19, "navigation message").value_or(0.0);
    }
  }

  const Ephemeris ephemeris = ToEphemeris(prn, toc, m);
  if (prn < 1 || prn > kMaxPrn) {
    data.remarks.push_back(place + "satellite number " + std::to_string(prn) + " is not a GPS satellite's; left out");
  } else if (const char* reason = Impossible(ephemeris, m)) {
    data.remarks.push_back(place + reason + "; the record is left out");
  } else {
    data.Add(ephemeris);
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
