#include "model/atmosphere.h"

#include <cmath>

#include <gtest/gtest.h>

#include "model/ephemeris.h"

namespace gnss {
namespace {

Ionosphere Published() {
  Ionosphere model;
  model.alpha = {3.82e-8, 1.49e-8, -1.79e-7, 0.0};
  model.beta = {1.43e5, 0.0, -3.28e5, 1.13e5};
  model.known = true;
  return model;
}

// The worked example that circulates with the model: 40 N, 100 W, elevation 20, azimuth 210 degrees, second 593100.
TEST(IonosphereDelay, AgreesWithTheWorkedExample) {
  const Geodetic place{40.0 * kDegree, -100.0 * kDegree, 0.0};
  EXPECT_NEAR(IonosphereDelay(Published(), place, 20.0 * kDegree, 210.0 * kDegree, GpsTime{0, 593100.0}), 23.784, 5e-4);
}

TEST(IonosphereDelay, IsFiveNanosecondsAtNightTimesTheSlant) {
  const Geodetic place{40.0 * kDegree, -100.0 * kDegree, 0.0};
  const double night = 9.5 * 3600.0;  // 2:50 local time
  const double slant = 1.0 + 16.0 * std::pow(0.53 - 30.0 / 180.0, 3);
  EXPECT_NEAR(IonosphereDelay(Published(), place, 30.0 * kDegree, 0.0, GpsTime{0, night}), slant * 5e-9 * kSpeedOfLight,
              1e-9);
}

TEST(IonosphereDelay, IsZeroWithoutCoefficients) {
  EXPECT_EQ(IonosphereDelay(Ionosphere(), {0.7, 0.1, 0.0}, 0.5, 1.0, GpsTime{1, 50000.0}), 0.0);
}

TEST(TroposphereDelay, HasItsKnownSizeAndMapping) {
  const Geodetic sea{45.0 * kDegree, 0.0, 0.0};
  const double zenith = TroposphereDelay(sea, kPi / 2.0);
  EXPECT_GT(zenith, 2.35);  // 2.307 m dry, about 0.1 m wet
  EXPECT_LT(zenith, 2.50);
  // Published mapping factors of the atmosphere: 2.0 at 30, 5.6 at 10, 10.2 at 5 degrees.
  EXPECT_NEAR(TroposphereDelay(sea, 30.0 * kDegree) / zenith, 1.99, 0.02);
  EXPECT_NEAR(TroposphereDelay(sea, 10.0 * kDegree) / zenith, 5.58, 0.05);
  EXPECT_NEAR(TroposphereDelay(sea, 5.0 * kDegree) / zenith, 10.2, 0.1);
}

TEST(TroposphereDelay, FallsWithHeight) {
  double last = 1e9;
  for (double height = 0.0; height < 12000.0; height += 500.0) {
    const double delay = TroposphereDelay({0.8, 0.0, height}, 0.7);
    EXPECT_LT(delay, last) << height;
    EXPECT_GT(delay, 0.0) << height;
    last = delay;
  }
  EXPECT_EQ(TroposphereDelay({0.8, 0.0, 25000.0}, 0.7), 0.0);
}

}  // namespace
}  // namespace gnss
