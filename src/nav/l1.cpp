// L1 regression as a linear program.
//
// Variables: x+ (0 .. n-1), x- (n .. 2n-1), residual bounds t (2n .. 2n+m-1). Observation i gives the two constraints
//    A(i, :) x - t(i) <= y(i)   (row i + 1)          A(i, :) x + t(i) >= y(i)   (row m + i + 1)
// with x = x+ - x-. Constants must not be negative: for y(i) < 0 both sides change their sign, which exchanges x+ and x-.
#include <algorithm>
#include <cmath>
#include <new>

#include "core/ownership.h"
#include "core/storage.h"
#include "nav/int_array.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/regression.h"

namespace {

namespace detail = quorvel::detail;

constexpr int no_solution = -1;

/// A new tableau of zeros. Its sizes are counted in 64 bits and must leave the counts of Simplx within int.
RegularMatrix NewTableau(std::uint64_t m, std::uint64_t n) {
  const std::uint64_t rows = 2 * m + 2;
  const std::uint64_t columns = 3 * m + 2 * n + 1;
  if (rows > detail::max_doubles || columns > detail::max_doubles) throw std::bad_array_new_length();
  return RegularMatrix(static_cast<Matrix::size_type>(rows), static_cast<Matrix::size_type>(columns));
}

/// With an infinity or a NaN among the coefficients the pivots need not come to an end.
bool AllFinite(const RegularMatrix& A) {
  const double* const begin = A.data();
  return std::all_of(begin, begin + A.StoredCount(), [](double v) { return std::isfinite(v); });
}

/// The solver on values y(0), y(stride), ...: all that both forms share.
int Solve(const double* y, std::size_t stride, const RegularMatrix& A, double* x) {
  const std::size_t m = A.nrows();
  const std::size_t n = A.ncols();
  RegularMatrix tableau = NewTableau(m, n);
  if (!AllFinite(A)) return no_solution;
  const std::size_t width = tableau.ncols();
  double* const a = tableau.data();
  const std::size_t bounds = 2 * n + 1;  // column of t(0)

  for (std::size_t i = 0; i < m; ++i) a[bounds + i] = -1.0;
  for (std::size_t i = 0; i < m; ++i) {
    const double value = y[i * stride];
    const std::size_t plus = value < 0.0 ? n + 1 : 1;
    const std::size_t minus = value < 0.0 ? 1 : n + 1;
    const double* const coefficients = A.data() + i * n;
    double* const at_most = a + (i + 1) * width;
    double* const at_least = a + (m + i + 1) * width;
    at_most[0] = at_least[0] = std::fabs(value);
    for (std::size_t k = 0; k < n; ++k) {
      at_most[plus + k] = at_least[plus + k] = -coefficients[k];
      at_most[minus + k] = at_least[minus + k] = coefficients[k];
    }
    at_most[bounds + i] = 1.0;
    at_least[bounds + i] = -1.0;
  }

  const int observations = static_cast<int>(m);
  const int variables = static_cast<int>(2 * n + m);
  const detail::IntArray nonbasic(variables);
  const detail::IntArray basic(2 * observations);
  const int outcome =
      Simplx(tableau, 2 * observations, variables, observations, observations, 0, nonbasic.get(), basic.get());
  if (outcome != 0) return outcome;

  detail::FillDoubles(x, 0.0, n);
  for (std::size_t i = 0; i < 2 * m; ++i) {
    // Both parts of one unknown may be basic at once.
    const std::size_t variable = static_cast<std::size_t>(basic.get()[i]);
    const double part = a[(i + 1) * width];
    if (variable < n) {
      x[variable] += part;
    } else if (variable < 2 * n) {
      x[variable - n] -= part;
    }
  }
  return outcome;
}

}  // namespace

int L1Regression(const double* y, const RegularMatrix& A, double* x) {
  const detail::Consumed operand(A);
  return Solve(y, 1, A, x);
}

int L1Regression(const RegularMatrix& A, const RegularMatrix& y, RegularMatrix& x) {
  A.ThrowNotSameRows(detail::code::l1_regression, y);
  if (y.ncols() == 0 && y.nrows() != 0) detail::FailWith(detail::code::l1_regression + detail::offset::shape, &A, &y);
  if (!x.ok()) detail::FailWith(detail::offset::not_ok, &A, &y, &x);
  detail::Consumed operands(A, y);
  const Matrix::size_type n = A.ncols();
  const std::unique_ptr<double[]> solution = detail::Scratch(n);
  const int outcome = Solve(y.data(), y.ncols(), A, solution.get());
  if (outcome == 0) {
    if (x.StoredCount() != n) x.SetSize(n, 1, false);
    detail::CopyDoubles(x.data(), solution.get(), n);
  }
  operands.release(x);
  return outcome;
}
