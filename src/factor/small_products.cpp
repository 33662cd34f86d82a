// Products of order 3 on plain arrays. Every sum starts with its first term, indices 0, 1, 2.
#include <algorithm>

#include "factor/utility.h"
#include "quorvel/small_inverses.h"

namespace {

using Square = double[3][3];

void Unpack(const double* packed, Square& full) {
  full[0][0] = packed[0];
  full[0][1] = full[1][0] = packed[1];
  full[0][2] = full[2][0] = packed[2];
  full[1][1] = packed[3];
  full[1][2] = full[2][1] = packed[4];
  full[2][2] = packed[5];
}

/// out = (A·Q)·Aᵀ, packed.
void Sandwich(double* out, const Square& a, const double* q) {
  Square full;
  Unpack(q, full);
  Square t;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) t[i][j] = (a[i][0] * full[0][j] + a[i][1] * full[1][j]) + a[i][2] * full[2][j];
  }
  for (int i = 0; i < 3; ++i) {
    for (int j = i; j < 3; ++j) *out++ = (t[i][0] * a[j][0] + t[i][1] * a[j][1]) + t[i][2] * a[j][2];
  }
}

}  // namespace

void SQS3x3(double* out, const double* s, const double* q) {
  Square full;
  Unpack(s, full);
  Sandwich(out, full, q);
}

void AQAT3x3(double* out, const double (*a)[3], const double* q) {
  Square copy;
  for (int i = 0; i < 3; ++i) std::copy_n(a[i], 3, copy[i]);
  Sandwich(out, copy, q);
}

double PWeightedNorm3x3(const double* v, const double* p) {
  Square full;
  Unpack(p, full);
  double terms[3];
  for (int i = 0; i < 3; ++i) terms[i] = v[i] * ((full[i][0] * v[0] + full[i][1] * v[1]) + full[i][2] * v[2]);
  return (terms[0] + terms[1]) + terms[2];
}

int CholeskyInverse3x3(const double* a, double* out, double tol) {
  double u[6] = {0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
  const int count = CholeskyFactor(a, 3, u, tol);
  const auto inverted = [](double d) { return d != 0.0 ? 1.0 / d : d; };
  Square x = {};
  for (unsigned i = 0; i < 3; ++i) x[i][i] = inverted(u[i_utc(i, i)]);
  const double u01 = u[i_utc(0, 1)];
  const double u02 = u[i_utc(0, 2)];
  const double u12 = u[i_utc(1, 2)];
  x[1][2] = -(u12 * x[2][2]) * x[1][1];
  x[0][1] = -(u01 * x[1][1]) * x[0][0];
  x[0][2] = -(u01 * x[1][2] + u02 * x[2][2]) * x[0][0];
  for (unsigned i = 0; i < 3; ++i) {
    for (unsigned j = i; j < 3; ++j) {
      double sum = x[i][j] * x[j][j];
      for (unsigned k = j + 1; k < 3; ++k) sum += x[i][k] * x[j][k];
      out[i_utc(i, j)] = sum;
    }
  }
  return count;
}
