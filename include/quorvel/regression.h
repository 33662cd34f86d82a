// Regression: least absolute residuals, linear programming, polynomial fit.
#ifndef QUORVEL_REGRESSION_H
#define QUORVEL_REGRESSION_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// Least absolute residuals.
//
// x minimises the sum of |y(i) - A(i, :) x|, so that fewer than half of the observations can be
// grossly wrong without moving it far. A is m x n (m observations, n unknowns), y has m values, x gets n.
//
// Solved as the linear program: maximise -sum t(i) subject to -t <= y - A x <= t, with x = x+ - x-, all variables >= 0,
// by Simplx. At least n residuals are zero at the solution found; when several x reach the same sum, one of them is found.
//
// Returns the code of Simplx: 0 solved; 1 or -1 for a problem out of scale (see below). x is written for code 0 only.
//
// Scale: the tolerance of 1e-6 is absolute. Scale A and y so that their entries are of order 1: with all of A below 1e-6
// the result is 1, with y of order 1e9 sometimes -1, with abscissae around 1e5 the x found can be poorer than the best,
// and with dependent columns of A mostly 1. All must be finite: an infinity or NaN in A gives -1, an infinity in y gives
// x = NaN (or 1), and a NaN in y ends the process (the assertion "0.0 <= a(i+1,0)" of Simplx).
//
// Cost: a tableau of (2m + 2) (3m + 2n + 1) doubles and 4m + 2n + m ints; a pivot costs about 2m (m + 2n) operations, and
// there are usually between m and 4m. m and n are limited by memory alone (2^28 doubles: std::bad_array_new_length). The
// order of operations is fixed: the same bits everywhere.
//
// Source: Barrodale, Roberts, SIAM J. Numer. Anal. 10 (1973), for the linear program of the L1 norm.
//
//   const double y[] = {2, 5, 8};
//   double x[2];
//   const int code = L1Regression(y, A, x);   // A = [1 0; 1 1; 1 2]: code 0, x = (2, 3)

/// On arrays. Checks nothing, a pending code included; consumes a dispensable A.
QUORVEL_API int L1Regression(const double* y, const RegularMatrix& A, double* x);

/// On matrices: y is read by its first column; x becomes n x 1 unless it already stores n values in another shape.
/// Consumes dispensable A and y, also when it fails; x, which may be the same object as y, only when x is not ok. Throws
/// 56110 when A or y is not ok, 46110 when they differ in their number of rows or y has no column, 50000 when x is not
/// ok, 10680 when memory is exhausted, or the pending code.
QUORVEL_API int L1Regression(const RegularMatrix& A, const RegularMatrix& y, RegularMatrix& x);

/// Two-phase simplex method on a dense tableau: maximises z = a(0, 0) + sum a(0, k + 1) x(k) over x >= 0 subject to m
/// constraints, of which the first m1 are <=, the next m2 >=, the last m3 equalities.
///
/// Tableau a: (at least) m + 2 rows and n + 1 columns. Row 0 is the objective, rows 1 .. m the constraints, row m + 1 is
/// set here (objective of phase one). Column 0 holds the constants, all >= 0; column k + 1 belongs to variable k. The
/// coefficients of the constraints are stored NEGATED: sum c(k) x(k) <= b is the row b, -c(0), -c(1), ...
///
/// nonbasic (n ints) and basic (m ints) are outputs: the variable of each column and of each constraint row. A number
/// below n is the variable x of that number, n + i the slack, surplus or artificial of constraint i.
///
/// Returns 0: optimum found; it is a(0, 0), the basic variable of row i is a(i + 1, 0), all others are 0.
/// Returns 1: the objective is unbounded. Returns -1: no x satisfies the constraints.
///
/// Preconditions end the process when they are broken, in every build type, with an assertion that names "utility":
/// "m == m1 + m2 + m3", "m + 2 <= (int)a.nrows()", "n < (int)a.ncols()", and "0.0 <= a(i+1,0)" for every constraint
/// (a NaN breaks it). Nothing else is checked, a pending code included (negative
/// counts are the caller's error); a is never consumed, and its singularity count stays.
///
/// Tolerance: entries of size up to 1e-6 are no pivots, and an infeasibility up to 1e-6 passes. There is no scaling and no
/// limit on the number of pivots (entries must be finite, or they may never end); equal ratios are decided
/// lexicographically. An objective that is constant along an unbounded ray of solutions may give 1, from a rounding
/// error in the price of the ray. Two small arrays of int are allocated: 10680 when that fails.
///
/// Source: Dantzig, Linear Programming and Extensions (1963), chapters 5, 6 and 10.
///
///   // maximise x0 + x1 subject to x0 + 2 x1 <= 4, 3 x0 + x1 <= 6
///   RegularMatrix a(4, 3);
///   a(0, 1) = 1;  a(0, 2) = 1;
///   a(1, 0) = 4;  a(1, 1) = -1;  a(1, 2) = -2;
///   a(2, 0) = 6;  a(2, 1) = -3;  a(2, 2) = -1;
///   int nonbasic[2], basic[2];
///   Simplx(a, 2, 2, 2, 0, 0, nonbasic, basic);   // 0; a(0, 0) = 2.8 at x = (1.6, 1.2)
QUORVEL_API int Simplx(RegularMatrix& a, int m, int n, int m1, int m2, int m3, int* nonbasic, int* basic);

/// Polynomial of degree k - 1 through m points by least squares: c minimises the sum of (y(i) - p(t(i)))^2 with
/// p(t) = c(0) + c(1) t + ... + c(k - 1) t^(k - 1), from the normal equations N c = b, N = sum phi phi', b = sum y phi,
/// phi = (1, t, t^2, ...).
///
/// k is the number of rows that c has on entry (its contents do not matter); c becomes k x 1. t and y are read by their
/// first column. rms = sqrt(sum / m), the root mean square of the residuals (divided by m, not by m - k); 0 for m = 0.
///
/// k = 0 leaves c and gives the rms of y itself. Fewer distinct abscissae than k make N singular: coefficients of
/// unusable pivots are 0, and their number is lost with N. Choose t of order 1 and centred on 0: normal equations square
/// the condition number. They are solved to full accuracy (see A > b), so what is lost is lost in forming their sums.
///
/// t and y are consumed when dispensable, also on failure; c only when it is not ok itself. Throws 56120 when t or y is
/// not ok, 46120 when they differ in their number of rows or have no column, 50140 (and marks c not ok) when c is not
/// ok, 10680, or the pending code. c and rms are written at the end: a failure leaves rms as it was.
///
/// Sums run over the observations in order; the order of operations is fixed.
///
///   RegularMatrix c(3, 1);
///   double rms;
///   PolyFit(t, y, c, rms);   // parabola
QUORVEL_API void PolyFit(RegularMatrix& t, RegularMatrix& y, RegularMatrix& c, double& rms);
QUORVEL_API void PolyFit(const RegularMatrix& t, const RegularMatrix& y, RegularMatrix& c, double& rms);

#endif
