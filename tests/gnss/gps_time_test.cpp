#include "model/gps_time.h"

#include <gtest/gtest.h>

namespace gnss {
namespace {

TEST(GpsTime, CountsWeeksFromItsEpoch) {
  const GpsTime epoch = FromCalendar({1980, 1, 6, 0, 0, 0.0});
  EXPECT_EQ(epoch.week, 0);
  EXPECT_EQ(epoch.seconds, 0.0);
  // Published pairs of date, week and second of the week.
  EXPECT_EQ(FromCalendar({1999, 8, 22, 0, 0, 0.0}).week, 1024);
  EXPECT_EQ(FromCalendar({2019, 4, 7, 0, 0, 0.0}).week, 2048);
  const GpsTime march = FromCalendar({2016, 3, 16, 0, 0, 0.0});
  EXPECT_EQ(march.week, 1888);
  EXPECT_EQ(march.seconds, 259200.0);
}

TEST(GpsTime, GoesThereAndBackThroughEveryDayOfSixtyYears) {
  GpsTime t = FromCalendar({1980, 1, 6, 23, 59, 58.25});
  for (int day = 0; day < 60 * 365; ++day, t = t + 86400.0) {
    const CalendarTime c = ToCalendar(t);
    ASSERT_TRUE(IsValid(c)) << day;
    ASSERT_EQ(c.hour, 23);
    ASSERT_EQ(c.minute, 59);
    ASSERT_EQ(c.second, 58.25);
    ASSERT_EQ(FromCalendar(c) - t, 0.0) << day;
  }
}

TEST(GpsTime, CarriesOverTheEndOfTheWeek) {
  const GpsTime last{2327, 604799.5};
  const GpsTime next = last + 1.0;
  EXPECT_EQ(next.week, 2328);
  EXPECT_EQ(next.seconds, 0.5);
  EXPECT_EQ(next - last, 1.0);
  const GpsTime back = next + -1.0;
  EXPECT_EQ(back.week, 2327);
  EXPECT_EQ(back.seconds, 604799.5);
}

TEST(GpsTime, FindsTheNearestMomentWithASecondOfTheWeek) {
  const GpsTime new_week{2328, 30.0};
  const GpsTime old_message = NearestWithSecondOfWeek(604784.0, new_week);
  EXPECT_EQ(old_message.week, 2327);
  EXPECT_EQ(old_message.seconds, 604784.0);
  const GpsTime end{2327, 604790.0};
  EXPECT_EQ(NearestWithSecondOfWeek(0.0, end).week, 2328);
  EXPECT_EQ(NearestWithSecondOfWeek(302400.0, end).week, 2327);
}

TEST(GpsTime, RefusesDatesThatDoNotExist) {
  EXPECT_TRUE(IsValid({2016, 2, 29, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2015, 2, 29, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2100, 2, 29, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2016, 13, 1, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2016, 4, 31, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2016, 4, 0, 0, 0, 0.0}));
  EXPECT_FALSE(IsValid({2016, 4, 1, 24, 0, 0.0}));
  EXPECT_FALSE(IsValid({2016, 4, 1, 0, 60, 0.0}));
  EXPECT_FALSE(IsValid({2016, 4, 1, 0, 0, 61.0}));
  EXPECT_FALSE(IsValid({1980, 1, 5, 0, 0, 0.0}));
}

TEST(GpsTime, ShowsMillisecondsRounded) {
  EXPECT_EQ(Format(FromCalendar({2005, 4, 2, 0, 59, 30.005})), "2005-04-02 00:59:30.005");
  EXPECT_EQ(Format(FromCalendar({2005, 12, 31, 23, 59, 59.9996})), "2006-01-01 00:00:00.000");
  EXPECT_EQ(Format(FromCalendar({2024, 2, 28, 23, 59, 59.9999999})), "2024-02-29 00:00:00.000");
}

}  // namespace
}  // namespace gnss
