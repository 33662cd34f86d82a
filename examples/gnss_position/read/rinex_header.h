// What the headers of observation and navigation files have in common.
#ifndef GNSS_POSITION_READ_RINEX_HEADER_H
#define GNSS_POSITION_READ_RINEX_HEADER_H

#include <string_view>

#include "model/gps_time.h"
#include "read/line_reader.h"

namespace gnss {

struct RinexKind {
  int major = 0;      ///< 2 or 3
  char type = ' ';    ///< 'O' observations, 'N' navigation, ...
  char system = ' ';  ///< 'G' GPS, 'M' mixed, ...; version 2 may leave it blank for GPS
};

/// Label of a header line: columns 60-79.
std::string_view HeaderLabel(const LineReader& in);

/// Reads the first line; refuses a file that is empty, no RINEX file, of another version than 2 or 3, or whose type is
/// not `expected`.
RinexKind ReadFirstHeaderLine(LineReader& in, char expected);

/// Goes to the next header line; a file that ends here is an error.
void NextHeaderLine(LineReader& in);

/// Checks and converts a date; `what` names the line in a complaint.
GpsTime TimeOrFail(const LineReader& in, const CalendarTime& calendar, const char* what);

/// The year of a two-digit field: 80 to 99 belong to the last century; a negative number gives no valid year.
int FullYear(int two_digits);

}  // namespace gnss

#endif
