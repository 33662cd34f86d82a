#include "model/ephemeris.h"

#include <cmath>

#include <gtest/gtest.h>

#include "model/navigation_data.h"

namespace gnss {
namespace {

Ephemeris Circular() {
  Ephemeris e;
  e.prn = 5;
  e.toe = e.toc = GpsTime{2000, 7200.0};
  e.sqrt_a = 5153.7;
  e.i0 = 55.0 * kDegree;
  e.omega0 = 1.0;
  e.m0 = 0.3;
  return e;
}

TEST(Ephemeris, GivesACircleInTheRotatingFrame) {
  const Ephemeris e = Circular();
  const double a = e.sqrt_a * e.sqrt_a;
  const double rate = std::sqrt(3.986005e14 / (a * a * a));
  for (const double dt : {-5400.0, 0.0, 3600.0}) {
    const double u = 0.3 + rate * dt;
    const double node = 1.0 - 7.2921151467e-5 * (7200.0 + dt);
    const Vector3 expected = {a * (std::cos(u) * std::cos(node) - std::sin(u) * std::cos(e.i0) * std::sin(node)),
                              a * (std::cos(u) * std::sin(node) + std::sin(u) * std::cos(e.i0) * std::cos(node)),
                              a * std::sin(u) * std::sin(e.i0)};
    EXPECT_LT(Length(SatellitePosition(e, e.toe + dt) - expected), 1e-6) << dt;
  }
}

// Kepler's second law, by areas: the mean anomaly that belongs to the true anomaly found must be the one put in.
TEST(Ephemeris, SolvesKeplersEquation) {
  Ephemeris e = Circular();
  e.i0 = 0.0;
  e.omega0 = kEarthRotation * 7200.0;  // node on the x axis at toe
  for (const double eccentricity : {0.0, 0.01, 0.3, 0.49}) {
    for (double mean = -3.0; mean < 3.2; mean += 0.37) {
      e.e = eccentricity;
      e.m0 = mean;
      const Vector3 r = SatellitePosition(e, e.toe);
      const double true_anomaly = std::atan2(r[1], r[0]);
      const double anomaly = 2.0 * std::atan(std::sqrt((1.0 - e.e) / (1.0 + e.e)) * std::tan(true_anomaly / 2.0));
      EXPECT_NEAR(anomaly - e.e * std::sin(anomaly), mean, 1e-12) << eccentricity;
      EXPECT_NEAR(Length(r), e.sqrt_a * e.sqrt_a * (1.0 - e.e * std::cos(anomaly)), 1e-6);
    }
  }
}

TEST(Ephemeris, DoesNotCareAboutTheEndOfTheWeek) {
  Ephemeris e = Circular();
  e.toe = e.toc = GpsTime{2001, 0.0};
  e.af1 = 1e-11;
  // The same orbit a day later, its node turned with the Earth: only the time since toe counts.
  Ephemeris same = e;
  same.toe = same.toc = GpsTime{2001, 86400.0};
  same.omega0 += kEarthRotation * 86400.0;
  for (const double dt : {-7200.0, -0.5, 0.0, 0.5, 7200.0}) {
    EXPECT_LT(Length(SatellitePosition(e, e.toe + dt) - SatellitePosition(same, same.toe + dt)), 1e-6) << dt;
  }
  EXPECT_NEAR(SatelliteClock(e, GpsTime{2000, 604790.0}), -1e-10, 1e-18);
}

TEST(Ephemeris, ClockHasPolynomialRelativityAndGroupDelay) {
  Ephemeris e = Circular();
  e.af0 = 1e-4, e.af1 = 2e-11, e.af2 = 1e-18, e.tgd = 5e-9;
  EXPECT_NEAR(SatelliteClock(e, e.toc + 100.0), 1e-4 + 2e-9 + 1e-14 - 5e-9, 1e-18);
  e.e = 0.02;
  e.m0 = kPi / 2.0;
  // -4.442807633e-10 e sqrt(A) sin E, the constant of the interface document; E = M + e here to second order.
  const double anomaly = kPi / 2.0 + 0.02;
  EXPECT_NEAR(SatelliteClock(e, e.toc) - (1e-4 - 5e-9), -4.442807633e-10 * 0.02 * 5153.7 * std::sin(anomaly), 1e-13);
}

TEST(Ephemeris, TransmissionTimeIsTheSatellitesOwnReadingCorrected) {
  Ephemeris e = Circular();
  e.af0 = 3e-4;
  const GpsTime received{2000, 7300.0};
  const GpsTime sent = TransmissionTime(e, received, 2.2e7);
  EXPECT_NEAR(received - sent, 2.2e7 / 299792458.0 + 3e-4, 1e-10);
}

TEST(NavigationData, ChoosesTheNearestValidMessage) {
  NavigationData data;
  Ephemeris e = Circular();
  for (const double toe : {7200.0, 14400.0, 28800.0}) {
    e.toe = GpsTime{2000, toe};
    e.m0 = toe;
    data.Add(e);
  }
  Usability why;
  ASSERT_NE(data.Find(5, GpsTime{2000, 10000.0}, why), nullptr);
  EXPECT_EQ(data.Find(5, GpsTime{2000, 10000.0}, why)->m0, 7200.0);
  EXPECT_EQ(data.Find(5, GpsTime{2000, 10800.0}, why)->m0, 14400.0);  // equally near: the later one
  EXPECT_EQ(why, Usability::usable);
  EXPECT_EQ(data.Find(5, GpsTime{2000, 21600.0}, why)->m0, 28800.0);
  EXPECT_EQ(data.Find(5, GpsTime{2000, 36000.5}, why), nullptr);
  EXPECT_EQ(why, Usability::no_ephemeris);
  EXPECT_EQ(data.Find(6, GpsTime{2000, 7200.0}, why), nullptr);
  EXPECT_EQ(data.Find(0, GpsTime{2000, 7200.0}, why), nullptr);
  EXPECT_EQ(data.Find(33, GpsTime{2000, 7200.0}, why), nullptr);
  EXPECT_EQ(data.Find(-7, GpsTime{2000, 7200.0}, why), nullptr);
}

TEST(NavigationData, LeavesOutUnhealthySatellites) {
  NavigationData data;
  Ephemeris e = Circular();
  data.Add(e);
  e.toe = e.toe + 7200.0;
  e.health = 63;
  data.Add(e);
  Usability why;
  EXPECT_NE(data.Find(5, GpsTime{2000, 7200.0}, why), nullptr);
  EXPECT_EQ(data.Find(5, GpsTime{2000, 14400.0}, why), nullptr);
  EXPECT_EQ(why, Usability::unhealthy);
}

}  // namespace
}  // namespace gnss
