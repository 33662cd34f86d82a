// GPS system time: weeks since 6 January 1980 and seconds of the week, without leap seconds.
#ifndef GNSS_POSITION_MODEL_GPS_TIME_H
#define GNSS_POSITION_MODEL_GPS_TIME_H

#include <string>

namespace gnss {

constexpr double kSecondsPerWeek = 604800.0;

/// A moment. Week and seconds are kept apart, so that differences stay exact to far below a nanosecond.
struct GpsTime {
  int week = 0;          ///< full week number, not modulo 1024
  double seconds = 0.0;  ///< 0 <= seconds < 604800

  /// The moment `delta` seconds later (earlier when negative, up to a million weeks); carries over the end of the week.
  GpsTime operator+(double delta) const;
  /// Seconds from `earlier` to this.
  double operator-(const GpsTime& earlier) const;
};

struct CalendarTime {
  int year = 0, month = 0, day = 0, hour = 0, minute = 0;
  double second = 0.0;
};

/// True when the date exists and lies after the start of GPS time; a second of 60 is accepted (leap second tags).
bool IsValid(const CalendarTime& calendar);
GpsTime FromCalendar(const CalendarTime& calendar);
CalendarTime ToCalendar(const GpsTime& time);

/// "2016-03-16 00:00:30.000"
std::string Format(const GpsTime& time);

/// The moment with this second of the week that lies nearest to `near`: broadcast messages name their week modulo
/// 1024 or not at all, and a reference time may belong to the week before or after.
GpsTime NearestWithSecondOfWeek(double second_of_week, const GpsTime& near);

}  // namespace gnss

#endif
