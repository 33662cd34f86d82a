// Polynomial fit through normal equations.
#include <cmath>
#include <cstddef>

#include "core/ownership.h"
#include "core/packed.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/inverses.h"
#include "quorvel/matrix_functions.h"
#include "quorvel/regression.h"

namespace {

namespace detail = quorvel::detail;
using detail::index_t;

/// Value i of the first column.
double Value(const RegularMatrix& column, index_t i) { return column.data()[static_cast<std::size_t>(i) * column.ncols()]; }

/// phi = (1, t, t^2, ...)
void FillPowers(RegularMatrix& phi, double t) {
  double* const p = phi.data();
  for (index_t j = 0; j < phi.nrows(); ++j) p[j] = j == 0 ? 1.0 : p[j - 1] * t;
}

/// The solution of the normal equations N c = b.
RegularMatrix Coefficients(const RegularMatrix& t, const RegularMatrix& y, RegularMatrix& phi) {
  const index_t k = phi.nrows();
  SymmetricMatrix N(k);
  RegularMatrix b(k, 1);
  const double* const p = phi.data();
  for (index_t i = 0; i < y.nrows(); ++i) {
    const double value = Value(y, i);
    FillPowers(phi, Value(t, i));
    for (index_t j = 0; j < k; ++j) {
      if (p[j] == 0.0) continue;
      b.data()[j] += value * p[j];
      for (index_t l = 0; l <= j; ++l) N.data()[detail::packed_index(l, j, k)] += p[l] * p[j];
    }
  }
  return RegularMatrix(N > b);
}

}  // namespace

void PolyFit(RegularMatrix& t, RegularMatrix& y, RegularMatrix& c, double& rms) {
  t.ThrowNotSameRows(detail::code::poly_fit, y);
  const index_t m = y.nrows();
  const index_t k = c.nrows();
  if (m != 0 && (t.ncols() == 0 || y.ncols() == 0)) {
    detail::FailWith(detail::code::poly_fit + detail::offset::shape, &t, &y);
  }
  detail::Consumed operands(t, y);

  RegularMatrix phi(k, 1);
  RegularMatrix solution;
  if (k != 0) solution = Coefficients(t, y, phi);
  double s = 0.0;
  for (index_t i = 0; i < m; ++i) {
    FillPowers(phi, Value(t, i));
    const double residual = Value(y, i) - dot(phi, solution);
    s += residual * residual;
  }
  if (m > 1) s = s / m;

  // c may be t or y, so it is written when they have been read for the last time.
  if (k != 0) {
    c.ThrowEquals(detail::code::assign, solution);
    c.Swap(solution);
  }
  operands.release(c);
  rms = std::sqrt(s);
}

void PolyFit(const RegularMatrix& t, const RegularMatrix& y, RegularMatrix& c, double& rms) {
  PolyFit(detail::Mutable(t), detail::Mutable(y), c, rms);
}
