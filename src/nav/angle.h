// Angles of the navigation routines.
#ifndef QUORVEL_NAV_ANGLE_H
#define QUORVEL_NAV_ANGLE_H

#include <cmath>

namespace quorvel::detail {

/// The double nearest to pi/180. Degrees are always multiplied by it: "angle * pi / 180" rounds differently.
inline constexpr double radians_per_degree = 0.017453292519943295;

struct SinCos {
  double sin;
  double cos;
};

/// Both from one call of the C library.
inline SinCos sin_cos(double radians) noexcept {
  SinCos r;
  ::sincos(radians, &r.sin, &r.cos);
  return r;
}

}  // namespace quorvel::detail

#endif
