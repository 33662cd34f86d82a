#include "model/vector3.h"

#include <cmath>

#include "quorvel/quorvel.h"

namespace gnss {

Vector3 operator+(const Vector3& a, const Vector3& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
Vector3 operator-(const Vector3& a, const Vector3& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
Vector3 operator*(double s, const Vector3& a) { return {s * a[0], s * a[1], s * a[2]}; }
double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
double Length(const Vector3& a) { return std::sqrt(Dot(a, a)); }

Geodetic ToGeodetic(const Vector3& r) {
  const double a = kSemiMajorAxis;
  const double b = a * (1.0 - kFlattening);
  const double second_eccentricity_squared = kEccentricitySquared / (1.0 - kEccentricitySquared);
  const double p = std::hypot(r[0], r[1]);

  // tan(reduced latitude) = (1 - f) tan(latitude); angles as atan2 of unnormalised sides, safe at pole and equator.
  double reduced = std::atan2(r[2] * a, p * b);
  double latitude = 0.0;
  for (int i = 0; i < 4; ++i) {
    const double s = std::sin(reduced);
    const double c = std::cos(reduced);
    latitude = std::atan2(r[2] + second_eccentricity_squared * b * s * s * s, p - kEccentricitySquared * a * c * c * c);
    reduced = std::atan2((1.0 - kFlattening) * std::sin(latitude), std::cos(latitude));
  }

  const double s = std::sin(latitude);
  const double c = std::cos(latitude);
  Geodetic g;
  g.latitude = latitude;
  g.longitude = std::atan2(r[1], r[0]);
  g.height = p * c + r[2] * s - a * std::sqrt(1.0 - kEccentricitySquared * s * s);
  return g;
}

Vector3 FromGeodetic(const Geodetic& g) {
  const double s = std::sin(g.latitude);
  const double c = std::cos(g.latitude);
  const double n = kSemiMajorAxis / std::sqrt(1.0 - kEccentricitySquared * s * s);  // prime-vertical radius
  return {(n + g.height) * c * std::cos(g.longitude), (n + g.height) * c * std::sin(g.longitude),
          (n * (1.0 - kEccentricitySquared) + g.height) * s};
}

Vector3 EastNorthUp(const Geodetic& place, const Vector3& v) {
  RegularMatrix column(3, 1);
  column.Assign(v.data(), 3, 1);
  const RegularMatrix enu(denu_dxyz(place.latitude, place.longitude) * column);
  return {enu(0), enu(1), enu(2)};
}

}  // namespace gnss
