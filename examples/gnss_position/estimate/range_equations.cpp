#include "estimate/range_equations.h"

#include <algorithm>
#include <cmath>

namespace gnss {
namespace {

using Index = Matrix::size_type;

// A short range error that every receiver has, one that grows towards the horizon (multipath, troposphere), and the
// part of the ionosphere's delay that the broadcast model typically misses.
double ExpectedSigma(double elevation, double ionosphere) {
  const double constant = 0.6;
  const double slanted = 0.5 / std::sin(std::max(elevation, 0.03));
  const double unmodelled = 0.25 * ionosphere;
  return std::sqrt(constant * constant + slanted * slanted + unmodelled * unmodelled);
}

RegularMatrix Column(const Vector3& v) {
  RegularMatrix column(3, 1);
  column.Assign(v.data(), 3, 1);
  return column;
}

}  // namespace

RangeEquations Linearise(const std::vector<Sight>& sights, const GpsTime& time, const Ionosphere& ionosphere,
                         const Vector3& position, double clock) {
  const auto m = static_cast<Index>(sights.size());
  RangeEquations out;
  out.design.SetSize(m, 4, false);
  out.misclosure.SetSize(m, 1, false);
  out.elevation.assign(m, kPi / 2.0);
  out.sigma.assign(m, 1.0);

  const double radius = Length(position);
  const bool near_ground = radius > 6.3e6 && radius < 7.5e6;
  const Geodetic place = ToGeodetic(position);
  const RegularMatrix to_enu(denu_dxyz(place.latitude, place.longitude));

  for (Index i = 0; i < m; ++i) {
    const Sight& sight = sights[i];
    // The travel time from the geometry; a first estimate is off by less than 30 m, or 1e-5 m in the result.
    const double travel = Length(sight.transmitter - position) / kSpeedOfLight;
    const RegularMatrix turned(Primary_Axis_Rotation_Matrix_RAD(3, kEarthRotation * travel) *
                               Column(sight.transmitter));
    const Vector3 line = Vector3{turned(0), turned(1), turned(2)} - position;
    const double distance = Length(line);
    const Vector3 e = (1.0 / distance) * line;
    for (Index k = 0; k < 3; ++k) out.design(i, k) = -e[k];
    out.design(i, 3) = 1.0;

    double atmosphere = 0.0;
    if (near_ground) {
      const RegularMatrix enu(to_enu * Column(e));
      out.elevation[i] = std::asin(std::clamp(enu(2), -1.0, 1.0));
      const double azimuth = std::atan2(enu(0), enu(1));
      const double above = std::max(out.elevation[i], 0.02);
      const double delay = IonosphereDelay(ionosphere, place, above, azimuth, time);
      atmosphere = delay + TroposphereDelay(place, above);
      out.sigma[i] = ExpectedSigma(out.elevation[i], delay);
    }
    out.misclosure(i) = sight.range - (distance + clock + atmosphere);
  }
  return out;
}

}  // namespace gnss
