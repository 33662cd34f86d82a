// Closed-form inverses on plain arrays.
//
// A symmetric matrix is inverted as the general one it is; of the result the lower triangle is kept, where the general
// routine also puts the reciprocal of a single element above the diagonal.
#include <cmath>

#include "quorvel/small_inverses.h"

namespace {

bool Passes(double x, double tol) { return std::fabs(x) > tol; }

int Inverse(const double (&a)[2][2], double (&out)[2][2], double tol) {
  const double det = a[0][0] * a[1][1] - a[0][1] * a[1][0];
  if (Passes(det, tol)) {
    const double r = 1.0 / det;
    out[0][0] = a[1][1] * r;
    out[0][1] = -a[0][1] * r;
    out[1][0] = -a[1][0] * r;
    out[1][1] = a[0][0] * r;
    return 0;
  }
  out[0][0] = out[0][1] = out[1][0] = out[1][1] = 0.0;
  constexpr int order[4][2] = {{0, 0}, {1, 1}, {0, 1}, {1, 0}};
  for (const auto& [r, c] : order) {
    if (!Passes(a[r][c], tol)) continue;
    out[c][r] = 1.0 / a[r][c];
    return 1;
  }
  return 2;
}

/// What is left when the determinant does not pass: the first block or element that does. `minors` belong to the
/// blocks without row and column 0, 1, 2.
int PartialInverse(const double (&a)[3][3], double (&out)[3][3], const double (&minors)[3], double tol) {
  for (auto& row : out) row[0] = row[1] = row[2] = 0.0;
  constexpr int blocks[3][2] = {{1, 2}, {0, 2}, {0, 1}};
  for (int k = 0; k < 3; ++k) {
    if (!Passes(minors[k], tol)) continue;
    const auto [p, q] = blocks[k];
    const double s = 1.0 / minors[k];
    out[p][p] = a[q][q] * s;
    out[q][q] = a[p][p] * s;
    out[p][q] = -a[p][q] * s;
    out[q][p] = -a[q][p] * s;
    return 1;
  }
  constexpr int elements[9][2] = {{0, 0}, {1, 1}, {2, 2}, {0, 1}, {0, 2}, {1, 0}, {1, 2}, {2, 0}, {2, 1}};
  for (const auto& [r, c] : elements) {
    if (!Passes(a[r][c], tol)) continue;
    out[c][r] = 1.0 / a[r][c];
    return 2;
  }
  return 3;
}

int Inverse(const double (&a)[3][3], double (&out)[3][3], double tol) {
  const double c00 = a[1][1] * a[2][2] - a[1][2] * a[2][1];
  const double c01 = a[1][2] * a[2][0] - a[1][0] * a[2][2];
  const double c02 = a[1][0] * a[2][1] - a[1][1] * a[2][0];
  const double c11 = a[0][0] * a[2][2] - a[0][2] * a[2][0];
  const double c22 = a[0][0] * a[1][1] - a[0][1] * a[1][0];
  const double det = (a[0][0] * c00 + a[0][1] * c01) + a[0][2] * c02;
  if (!Passes(det, tol)) return PartialInverse(a, out, {c00, c11, c22}, tol);
  const double r = 1.0 / det;
  out[0][0] = c00 * r;
  out[1][0] = c01 * r;
  out[2][0] = c02 * r;
  out[0][1] = (a[0][2] * a[2][1] - a[0][1] * a[2][2]) * r;
  out[1][1] = c11 * r;
  out[2][1] = (a[0][1] * a[2][0] - a[0][0] * a[2][1]) * r;
  out[0][2] = (a[0][1] * a[1][2] - a[0][2] * a[1][1]) * r;
  out[1][2] = (a[0][2] * a[1][0] - a[0][0] * a[1][2]) * r;
  out[2][2] = c22 * r;
  return 0;
}

}  // namespace

int inv2x2_sm(const double* a, double* out, double tol) {
  const double full[2][2] = {{a[0], a[1]}, {a[1], a[2]}};
  double inverse[2][2];
  const int count = Inverse(full, inverse, tol);
  out[0] = inverse[0][0];
  out[1] = inverse[1][0];
  out[2] = inverse[1][1];
  return count;
}

int inv3x3_sm(const double* a, double* out, double tol) {
  const double full[3][3] = {{a[0], a[1], a[2]}, {a[1], a[3], a[4]}, {a[2], a[4], a[5]}};
  double inverse[3][3];
  const int count = Inverse(full, inverse, tol);
  out[0] = inverse[0][0];
  out[1] = inverse[1][0];
  out[2] = inverse[2][0];
  out[3] = inverse[1][1];
  out[4] = inverse[2][1];
  out[5] = inverse[2][2];
  return count;
}

int inv2x2_rm(const double (*a)[2], double (*out)[2], double tol) {
  const double full[2][2] = {{a[0][0], a[0][1]}, {a[1][0], a[1][1]}};
  return Inverse(full, *reinterpret_cast<double(*)[2][2]>(out), tol);
}

int inv3x3_rm(const double (*a)[3], double (*out)[3], double tol) {
  const double full[3][3] = {{a[0][0], a[0][1], a[0][2]}, {a[1][0], a[1][1], a[1][2]}, {a[2][0], a[2][1], a[2][2]}};
  return Inverse(full, *reinterpret_cast<double(*)[3][3]>(out), tol);
}

int inv2x2_ulm(double* t, double tol) {
  const bool first = Passes(t[0], tol);
  const bool second = Passes(t[2], tol);
  const double d0 = first ? 1.0 / t[0] : 0.0;
  const double d1 = second ? 1.0 / t[2] : 0.0;
  const double t01 = first && second ? t[1] : 0.0;
  t[0] = d0;
  t[1] = -(d0 * d1) * t01;
  t[2] = d1;
  return !first + !second;
}

int inv3x3_ulm(double* t, double tol) {
  const bool first = Passes(t[0], tol);
  const bool second = Passes(t[3], tol);
  const bool third = Passes(t[5], tol);
  const double d0 = first ? 1.0 / t[0] : 0.0;
  const double d1 = second ? 1.0 / t[3] : 0.0;
  const double d2 = third ? 1.0 / t[5] : 0.0;
  // The row and column of an element that failed count as zero in the formulas too.
  const double t01 = first && second ? t[1] : 0.0;
  const double t02 = first && third ? t[2] : 0.0;
  const double t12 = second && third ? t[4] : 0.0;
  t[0] = d0;
  t[1] = -(d0 * d1) * t01;
  t[2] = -(t[1] * t12 + d0 * t02) * d2;
  t[3] = d1;
  t[4] = -(d1 * d2) * t12;
  t[5] = d2;
  return !first + !second + !third;
}
