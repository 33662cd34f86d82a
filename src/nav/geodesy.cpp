// Local level axes and derivatives of geodetic coordinates. Products are grouped as written.
#include "quorvel/geodesy.h"

#include <cmath>

#include "core/ownership.h"
#include "nav/angle.h"
#include "quorvel/RegularMatrix.h"

using quorvel::detail::NewResult;
using quorvel::detail::sin_cos;
using quorvel::detail::SinCos;

RegularMatrix& denu_dxyz(double lat, double lon) {
  const SinCos phi = sin_cos(lat);
  const SinCos lambda = sin_cos(lon);
  NewResult<RegularMatrix> result(3u, 3u);
  double* const e = result->data();
  e[0] = -lambda.sin;
  e[1] = lambda.cos;
  e[2] = 0.0;
  e[3] = lambda.cos * -phi.sin;
  e[4] = lambda.sin * -phi.sin;
  e[5] = phi.cos;
  e[6] = lambda.cos * phi.cos;
  e[7] = phi.cos * lambda.sin;
  e[8] = phi.sin;
  return result.hand_over();
}

RegularMatrix& dxyz_dblh(double lat, double lon, double h, double a, double e2) {
  const SinCos phi = sin_cos(lat);
  const SinCos lambda = sin_cos(lon);
  const double w = 1.0 - (phi.sin * e2) * phi.sin;
  const double prime_vertical = a / std::sqrt(w);
  const double meridian = ((1.0 - e2) * prime_vertical) / w;
  const double toward_axis = -((meridian + h) * phi.sin);
  NewResult<RegularMatrix> result(3u, 3u);
  double* const d = result->data();
  d[0] = lambda.cos * toward_axis;
  d[1] = -((prime_vertical + h) * (phi.cos * lambda.sin));
  d[2] = phi.cos * lambda.cos;
  d[3] = lambda.sin * toward_axis;
  d[4] = (phi.cos * lambda.cos) * (prime_vertical + h);
  d[5] = phi.cos * lambda.sin;
  d[6] = phi.cos * (meridian + h);
  d[7] = 0.0;
  d[8] = phi.sin;
  return result.hand_over();
}
