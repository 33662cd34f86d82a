// Earth-centred, Earth-fixed Cartesian vectors in metres, and their way to latitude, longitude and height.
#ifndef GNSS_POSITION_MODEL_VECTOR3_H
#define GNSS_POSITION_MODEL_VECTOR3_H

#include <array>

namespace gnss {

using Vector3 = std::array<double, 3>;

constexpr double kPi = 3.14159265358979323846;
constexpr double kDegree = kPi / 180.0;

// WGS 84 ellipsoid.
constexpr double kSemiMajorAxis = 6378137.0;
constexpr double kFlattening = 1.0 / 298.257223563;
constexpr double kEccentricitySquared = kFlattening * (2.0 - kFlattening);

Vector3 operator+(const Vector3& a, const Vector3& b);
Vector3 operator-(const Vector3& a, const Vector3& b);
Vector3 operator*(double s, const Vector3& a);
double Dot(const Vector3& a, const Vector3& b);
double Length(const Vector3& a);

/// Geodetic latitude and longitude in radians, ellipsoidal height in metres.
struct Geodetic {
  double latitude = 0.0, longitude = 0.0, height = 0.0;
};

/// Bowring's method (Survey Review 23, 1976), iterated on the reduced latitude; the residual error is below a
/// nanometre from the sea floor to the height of the satellites. The centre of the Earth gives latitude 0.
Geodetic ToGeodetic(const Vector3& position);
Vector3 FromGeodetic(const Geodetic& geodetic);

/// Components east, north, up of an Earth-fixed vector at that place: denu_dxyz(latitude, longitude) * v.
Vector3 EastNorthUp(const Geodetic& place, const Vector3& v);

}  // namespace gnss

#endif
