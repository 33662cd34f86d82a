// Gaussian elimination with scaled partial pivoting, for any number of right-hand sides, and its iterative refinement.
//
// In each column the pivot row is the one with the largest |w(i, c)| relative to the largest element that the row had
// in A, the first of equal ones, among the rows with |w(i, c)| > 1e-200. A column without such a row gives no pivot:
// its unknown is 0 and the elimination goes on with the next column and the same row, so that a consistent singular
// system gets a (basic) solution. Rounding is that of the plain formulas: l = w(i, c)/w(p, c), w(i, j) -= l·w(p, j);
// behind that x(c) = (y(p) - S)/w(p, c), S = Σ w(p, j)·x(j) from 0.0, j decreasing. Rows with l = 0.0 are left alone.
//
// Refinement: r = b - A·x in twice the working precision, d from A·d = r, x += d, as long as d shrinks to half at least
// each time, measured by max |d(i)|·max|A(·, i)|. It ends with the correctly rounded solution in most cases where the
// condition of A stays clear of 1/eps. Higham: Accuracy and Stability of Numerical Algorithms, 9.3 and chapter 12.
#ifndef QUORVEL_FACTOR_ELIMINATION_H
#define QUORVEL_FACTOR_ELIMINATION_H

#include "core/packed.h"
#include "core/work_area.h"

namespace quorvel::detail {

class Elimination {
 public:
  /// For systems of order n with q right-hand sides. Allocates everything that is ever needed.
  Elimination(index_t n, index_t q);

  /// A by rows, to be filled before factor().
  double* matrix() noexcept { return a_; }
  /// b by rows (n x q), to be filled before solve(); x afterwards.
  double* sides() noexcept { return x_; }

  /// Eliminates. Returns the number of columns without a pivot.
  index_t factor() noexcept;

  /// Solves for all right-hand sides, with refinement when every column has its pivot.
  void solve() noexcept;

 private:
  static constexpr std::size_t on_stack = 3 * small_order * small_order + 7 * small_order + 7;
  double* row(index_t i) const noexcept { return w_ + std::size_t{i} * stride_; }
  index_t pivot_row(index_t top, index_t col) const noexcept;
  void swap_rows(index_t i, index_t k) noexcept;
  const double* column(index_t c) const noexcept { return w_ + std::size_t{c} * stride_; }
  void substitute(double* y) const noexcept;
  void refine() noexcept;

  index_t n_;
  index_t q_;
  index_t stride_;  // of the lines of w: whole registers
  index_t rank_ = 0;
  WorkArea<on_stack> doubles_;
  IndexArea<2 * small_order> indices_;
  double* a_;  // A by columns, once factor() has been called
  double* w_;  // A by rows, then its factors by columns: multipliers below the pivots
  double* x_;
  double* row_max_;  // of A, in the order of w's rows
  double* col_max_;
  double* side_;      // one right-hand side as it came
  double* solution_;  // its solution
  double* residual_;  // in the order of A's rows
  double* change_;    // in the order of w's rows, then the correction
  double* sums_;
  index_t* order_;    // row of A that became row i of w
  index_t* column_;   // column of pivot k
};

}  // namespace quorvel::detail

#endif
