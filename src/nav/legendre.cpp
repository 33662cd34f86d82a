// Associated Legendre functions: the functions divided by cos^m first, degree by degree, then the scaling.
#include "quorvel/legendre.h"

#include "dense/rules.h"
#include "nav/angle.h"

using quorvel::detail::index_t;

void LegendreFunctions(LowerTriangularMatrix& P, double latDeg) {
  const quorvel::detail::Rule<LowerTriangularMatrix> p(P);
  const index_t count = p.rows();
  if (count == 0) return;
  p.store(0, 0) = 1.0;
  if (count == 1) return;
  const auto [s, c] = quorvel::detail::sin_cos(latDeg * quorvel::detail::radians_per_degree);
  p.store(1, 1) = 1.0;
  p.store(1, 0) = s;
  if (count == 2) return;  // P(1, 1) stays unscaled (kept)

  double f = 1.0;  // (2n - 1)!!
  for (index_t n = 2; n < count; ++n) {
    const double degree = n;
    f = f * (2.0 * degree - 1.0);
    p.store(n, n) = f;
    p.store(n, n - 1) = s * f;
    for (index_t m = n - 1; m-- > 0;) {
      const double order = m;
      p.store(n, m) = ((c * c) * p.at(n, m + 2) - ((s + s) * (order + 1.0)) * p.at(n, m + 1)) /
                      (order * (order + 1.0) - degree * (degree + 1.0));
    }
  }

  double cos_m = 1.0;
  for (index_t m = 1; m < count; ++m) {
    cos_m = cos_m * c;
    for (index_t n = m; n < count; ++n) p.store(n, m) = p.at(n, m) * cos_m;
  }
}
