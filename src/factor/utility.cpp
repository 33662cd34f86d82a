#include "factor/utility.h"

#include <algorithm>
#include <cmath>

#include "core/invariant.h"
#include "quorvel/Matrix.h"
#include "quorvel/small_inverses.h"

Matrix::nsing_type CholeskyFactor(const double* A, unsigned n, double* U, double tol) {
  double Acopy[6];
  std::copy_n(A, 6, Acopy);
  Matrix::nsing_type count = 0;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) {
      double x = Acopy[i_utc(i, j)];
      for (unsigned k = i; k-- > 0;) x -= U[i_utc(k, i)] * U[i_utc(k, j)];
      if (j > i) {
        U[i_utc(i, j)] = x / U[i_utc(i, i)];
      } else if (tol >= x) {
        quorvel::detail::Invariant(!(Acopy[i_utc(i, i)] < 0.0), "!(Acopy[i_utc(i,i)] < 0.0)", "utility", 61,
                                   __PRETTY_FUNCTION__);
        ++count;
        for (unsigned k = 0; k < n; ++k) {
          const unsigned place = k < i ? i_utc(k, i) : i_utc(i, k);
          U[place] = Acopy[place] = 0.0;
        }
        break;
      } else {
        U[i_utc(i, i)] = std::sqrt(x);
      }
    }
  }
  return count;
}
