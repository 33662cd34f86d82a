// Spherical-harmonic synthesis from the library's Legendre functions.

#ifndef QUORVEL_TESTS_DATA_HARMONICS_H
#define QUORVEL_TESTS_DATA_HARMONICS_H

#include <cmath>
#include <vector>

#include "quorvel/quorvel.h"

namespace quorvel::test::data {

constexpr double kRadiansPerDegree = 0.017453292519943295;

// Coefficients of degree n and order m at index n (n + 1) / 2 + m.
struct Harmonics {
  unsigned degree;
  double radius;
  std::vector<double> c, s;
  explicit Harmonics(unsigned top, double reference_radius)
      : degree(top), radius(reference_radius), c((top + 1) * (top + 2) / 2), s(c.size()) {}
  static std::size_t index(unsigned n, unsigned m) { return n * (n + 1) / 2 + m; }
};

// sqrt((n - m)! / (n + m)!) times the factor of the order: the Schmidt semi-normalisation. Times sqrt(2n + 1) it is
// the full one.
inline double SchmidtFactor(unsigned n, unsigned m) {
  long double product = m == 0 ? 1.0L : 2.0L;
  for (unsigned k = n - m + 1; k <= n + m; ++k) product /= k;
  return static_cast<double>(std::sqrt(product));
}

// f = sum over n, m of (radius / r)^(n + 1) (c cos m lon + s sin m lon) P(n, m)(lat), whose coefficients belong to the
// unnormalised functions, and its derivatives along up, north and east.
struct Synthesis {
  double value = 0, up = 0, north = 0, east = 0;
};

inline Synthesis Synthesise(const Harmonics& field, double latDeg, double lonDeg, double r) {
  LowerTriangularMatrix matrix(field.degree + 1);
  LegendreFunctions(matrix, latDeg);
  const LowerTriangularMatrix& P = matrix;
  const double lat = latDeg * kRadiansPerDegree, lon = lonDeg * kRadiansPerDegree;
  Synthesis sum;
  double power = field.radius / r;
  for (unsigned n = 0; n <= field.degree; ++n, power *= field.radius / r) {
    for (unsigned m = 0; m <= n; ++m) {
      const double c = field.c[Harmonics::index(n, m)], s = field.s[Harmonics::index(n, m)];
      const double along = c * std::cos(m * lon) + s * std::sin(m * lon);
      const double across = m * (s * std::cos(m * lon) - c * std::sin(m * lon));
      const double above = m < n ? P(n, m + 1) : 0.0;
      sum.value += power * along * P(n, m);
      sum.up -= power * (n + 1) / r * along * P(n, m);
      sum.north += power / r * along * (above - m * std::tan(lat) * P(n, m));  // dP/dlat
      sum.east += power / (r * std::cos(lat)) * across * P(n, m);
    }
  }
  return sum;
}

}  // namespace quorvel::test::data

#endif
