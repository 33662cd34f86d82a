#include "model/vector3.h"

#include <cmath>

#include <gtest/gtest.h>

namespace gnss {
namespace {

// NGA's station ARL1, published in both forms.
TEST(Geodetic, AgreesWithASurveyedStation) {
  const Vector3 xyz = {-740289.9180, -5457071.7340, 3207245.5420};
  const Geodetic g = ToGeodetic(xyz);
  EXPECT_NEAR(g.latitude / kDegree, 30.38366382, 1e-8);
  EXPECT_NEAR(g.longitude / kDegree + 360.0, 262.27458654, 1e-8);
  EXPECT_NEAR(g.height, 217.6452, 1e-3);
}

TEST(Geodetic, GoesThereAndBackEverywhere) {
  for (double latitude = -90.0; latitude <= 90.0; latitude += 7.5) {
    for (double longitude = -172.5; longitude <= 180.0; longitude += 37.5) {
      for (const double height : {-5000.0, 0.0, 8848.0, 1.2e6, 2.02e7}) {
        const Vector3 r = FromGeodetic({latitude * kDegree, longitude * kDegree, height});
        const Geodetic g = ToGeodetic(r);
        ASSERT_NEAR(g.latitude, latitude * kDegree, 1e-13) << latitude << ' ' << height;
        ASSERT_NEAR(g.height, height, 3e-8) << latitude << ' ' << height;
        ASSERT_LT(Length(FromGeodetic(g) - r), 5e-8) << latitude << ' ' << longitude << ' ' << height;
      }
    }
  }
}

TEST(Geodetic, KnowsTheAxesOfTheEllipsoid) {
  EXPECT_NEAR(ToGeodetic({6378137.0, 0.0, 0.0}).height, 0.0, 1e-9);
  const Geodetic pole = ToGeodetic({0.0, 0.0, -6356752.314245179});
  EXPECT_NEAR(pole.latitude, -kPi / 2.0, 1e-15);
  EXPECT_NEAR(pole.height, 0.0, 1e-8);
}

TEST(Geodetic, SurvivesTheCentreOfTheEarth) {
  const Geodetic g = ToGeodetic({0.0, 0.0, 0.0});
  EXPECT_TRUE(std::isfinite(g.latitude) && std::isfinite(g.longitude) && std::isfinite(g.height));
}

TEST(EastNorthUp, FollowsSmallStepsOfTheCoordinates) {
  const Geodetic here{0.6, -2.1, 120.0};
  const Vector3 origin = FromGeodetic(here);
  const double step = 1e-7;
  const Vector3 east = EastNorthUp(here, FromGeodetic({0.6, -2.1 + step, 120.0}) - origin);
  const Vector3 north = EastNorthUp(here, FromGeodetic({0.6 + step, -2.1, 120.0}) - origin);
  const Vector3 up = EastNorthUp(here, FromGeodetic({0.6, -2.1, 121.0}) - origin);
  EXPECT_GT(east[0], 0.5);
  EXPECT_NEAR(east[1], 0.0, 1e-6);
  EXPECT_NEAR(east[2], 0.0, 1e-6);
  EXPECT_GT(north[1], 0.6);
  EXPECT_NEAR(north[0], 0.0, 1e-6);
  EXPECT_NEAR(north[2], 0.0, 1e-6);
  EXPECT_NEAR(up[2], 1.0, 1e-8);
  EXPECT_NEAR(std::hypot(up[0], up[1]), 0.0, 1e-8);
}

}  // namespace
}  // namespace gnss
