#include "model/gps_time.h"

#include <cmath>
#include <cstdio>

namespace gnss {
namespace {

constexpr int kSecondsPerDay = 86400;

// Days since 1 January 1970 in the Gregorian calendar and back: years are counted from March, so that the leap day
// is the last of its year, and in eras of 400 years of 146097 days.
int DaysFromCivil(int year, int month, int day) {
  const int y = month <= 2 ? year - 1 : year;
  const int era = (y >= 0 ? y : y - 399) / 400;
  const int year_of_era = y - era * 400;
  const int day_of_year = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  const int day_of_era = year_of_era * 365 + year_of_era / 4 - year_of_era / 100 + day_of_year;
  return era * 146097 + day_of_era - 719468;
}

void CivilFromDays(int days, CalendarTime& out) {
  const int z = days + 719468;
  const int era = (z >= 0 ? z : z - 146096) / 146097;
  const int day_of_era = z - era * 146097;
  const int year_of_era = (day_of_era - day_of_era / 1460 + day_of_era / 36524 - day_of_era / 146096) / 365;
  const int day_of_year = day_of_era - (365 * year_of_era + year_of_era / 4 - year_of_era / 100);
  const int shifted_month = (5 * day_of_year + 2) / 153;
  out.day = day_of_year - (153 * shifted_month + 2) / 5 + 1;
  out.month = shifted_month + (shifted_month < 10 ? 3 : -9);
  out.year = year_of_era + era * 400 + (out.month <= 2 ? 1 : 0);
}

const int kGpsEpochDays = DaysFromCivil(1980, 1, 6);

int DaysInMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
  return kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

}  // namespace

GpsTime GpsTime::operator+(double delta) const {
  GpsTime sum{week, seconds + delta};
  const double weeks = std::floor(sum.seconds / kSecondsPerWeek);
  sum.week += static_cast<int>(weeks);
  sum.seconds -= weeks * kSecondsPerWeek;
  return sum;
}

double GpsTime::operator-(const GpsTime& earlier) const {
  return (week - earlier.week) * kSecondsPerWeek + (seconds - earlier.seconds);
}

bool IsValid(const CalendarTime& c) {
  return c.year >= 1980 && c.year <= 2200 && c.month >= 1 && c.month <= 12 && c.day >= 1 &&
         c.day <= DaysInMonth(c.year, c.month) && (c.year > 1980 || c.month > 1 || c.day >= 6) && c.hour >= 0 &&
         c.hour <= 23 && c.minute >= 0 && c.minute <= 59 && c.second >= 0.0 && c.second < 61.0;
}

GpsTime FromCalendar(const CalendarTime& c) {
  const int days = DaysFromCivil(c.year, c.month, c.day) - kGpsEpochDays;
  const int whole_seconds = (days % 7) * kSecondsPerDay + c.hour * 3600 + c.minute * 60;
  return GpsTime{days / 7, static_cast<double>(whole_seconds)} + c.second;
}

CalendarTime ToCalendar(const GpsTime& time) {
  CalendarTime out;
  const int whole_seconds = static_cast<int>(time.seconds);
  CivilFromDays(kGpsEpochDays + time.week * 7 + whole_seconds / kSecondsPerDay, out);
  const int of_day = whole_seconds % kSecondsPerDay;
  out.hour = of_day / 3600;
  out.minute = of_day % 3600 / 60;
  out.second = of_day % 60 + (time.seconds - whole_seconds);
  return out;
}

std::string Format(const GpsTime& time) {
  // Rounded to the milliseconds that are shown, so that no "60.000" appears.
  const GpsTime shown = GpsTime{time.week, std::floor(time.seconds * 1000.0 + 0.5) / 1000.0} + 0.0;
  const CalendarTime c = ToCalendar(shown + 0.0000001);
  char text[80];
  std::snprintf(text, sizeof text, "%04d-%02d-%02d %02d:%02d:%06.3f", c.year, c.month, c.day, c.hour, c.minute,
                c.second);
  return text;
}

GpsTime NearestWithSecondOfWeek(double second_of_week, const GpsTime& near) {
  const double ahead = second_of_week - near.seconds;
  return GpsTime{near.week, second_of_week} + std::floor(0.5 - ahead / kSecondsPerWeek) * kSecondsPerWeek;
}

}  // namespace gnss
