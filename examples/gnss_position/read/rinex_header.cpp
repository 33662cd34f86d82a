#include "read/rinex_header.h"

#include <cctype>
#include <string>

namespace gnss {
namespace {

const char* TypeName(char type) {
  switch (type) {
    case 'O':
      return "observations";
    case 'N':
      return "GPS navigation messages";
    case 'G':
      return "GLONASS navigation messages";
    case 'H':
      return "navigation messages of geostationary satellites";
    case 'M':
      return "meteorological data";
    default:
      return "data of an unknown type";
  }
}

}  // namespace

std::string_view HeaderLabel(const LineReader& in) { return in.Text(60, 20); }

RinexKind ReadFirstHeaderLine(LineReader& in, char expected) {
  if (!in.Next()) in.Fail("the file is empty");
  if (HeaderLabel(in) != "RINEX VERSION / TYPE") {
    if (HeaderLabel(in) == "CRINEX VERS   / TYPE")
      in.Fail("compressed observations: expand the file with CRX2RNX first");
    in.Fail("not a RINEX file: the first line has no 'RINEX VERSION / TYPE' in columns 61-80");
  }
  RinexKind kind;
  const double version = in.Real(0, 9, "RINEX version");
  kind.major = version >= 2.0 && version < 4.0 ? static_cast<int>(version) : 0;
  if (kind.major == 0) in.Fail("RINEX version " + std::string(in.Text(0, 9)) + " is not supported, only 2 and 3");

  const std::string_view type = in.Text(20, 1);
  const std::string_view system = in.Text(40, 1);
  kind.type = type.empty() ? ' ' : static_cast<char>(std::toupper(static_cast<unsigned char>(type[0])));
  kind.system = system.empty() ? ' ' : static_cast<char>(std::toupper(static_cast<unsigned char>(system[0])));
  if (kind.type != expected) {
    in.Fail(std::string("the file holds ") + TypeName(kind.type) + ", not " + TypeName(expected));
  }
  // Version 2 keeps each system's messages in a file type of its own, and column 41 says nothing there.
  if (kind.type == 'N' && kind.major == 2) kind.system = 'G';
  if (kind.system == ' ') kind.system = 'G';
  if (kind.system != 'G' && kind.system != 'M') {
    in.Fail(std::string("satellite system '") + kind.system + "': the file holds nothing for GPS");
  }
  return kind;
}

void NextHeaderLine(LineReader& in) {
  if (!in.Next()) in.Fail("the file ends inside its header");
}

GpsTime TimeOrFail(const LineReader& in, const CalendarTime& calendar, const char* what) {
  if (!IsValid(calendar)) in.Fail(std::string(what) + ": no such date or time of day");
  return FromCalendar(calendar);
}

int FullYear(int two_digits) { return two_digits < 0 ? 0 : two_digits + (two_digits < 80 ? 2000 : 1900); }

}  // namespace gnss
