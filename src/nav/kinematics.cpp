// Kinematic models of one axis. The grouping of every product is part of the result: it fixes the last bits.
#include "quorvel/kinematics.h"

#include "core/codes.h"
#include "core/packed.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace {

/// Checks the caller's matrix, gives it the model's order and returns its packed array.
double* Prepare(SquareMatrix& target, Matrix::size_type n) {
  target.ThrowNotOkOrDispensable(quorvel::detail::code::none);
  if (target.ndim() != n) target.SetSize(n, n, false);
  return target.data();
}

struct Powers {
  double dt;
  double dt2 = dt * dt;
  double dt3 = dt * dt2;
  double dt4 = dt2 * dt2;
  double dt5 = dt * dt4;
};

}  // namespace

// The arrays below are written in storage order: the upper triangle by rows.

void Phi_PV(UpperTriangularMatrix& phi, double dt) {
  double* const p = Prepare(phi, 2);
  p[0] = 1.0;
  p[1] = dt;
  p[2] = 1.0;
}

void Phi_PVA(UpperTriangularMatrix& phi, double dt) {
  double* const p = Prepare(phi, 3);
  const Powers t{dt};
  p[0] = 1.0;
  p[1] = dt;
  p[2] = t.dt2 * 0.5;
  p[3] = 1.0;
  p[4] = dt;
  p[5] = 1.0;
}

void Phi_PVAJ(UpperTriangularMatrix& phi, double dt) {
  double* const p = Prepare(phi, 4);
  const Powers t{dt};
  p[0] = 1.0;
  p[1] = dt;
  p[2] = t.dt2 * 0.5;
  p[3] = t.dt3 / 6.0;
  p[4] = 1.0;
  p[5] = dt;
  p[6] = t.dt2 * 0.5;
  p[7] = 1.0;
  p[8] = dt;
  p[9] = 1.0;
}

void Q_PV(SymmetricMatrix& q, double dt, double sigma) {
  double* const p = Prepare(q, 2);
  const double s = (dt * sigma) * sigma;
  const double dt_s = dt * s;
  p[0] = (dt * dt_s) / 3.0;
  p[1] = dt_s * 0.5;
  p[2] = s;
}

void Q_PVA(SymmetricMatrix& q, double dt, double sigma) {
  double* const p = Prepare(q, 3);
  const Powers t{dt};
  p[0] = (t.dt2 * t.dt3) * 0.05;
  p[1] = t.dt4 * 0.125;
  p[2] = t.dt3 / 6.0;
  p[3] = t.dt3 / 3.0;
  p[4] = t.dt2 * 0.5;
  p[5] = dt;
  q *= sigma * sigma;
}

void Q_PVAJ(SymmetricMatrix& q, double dt, double sigma) {
  double* const p = Prepare(q, 4);
  const Powers t{dt};
  p[0] = (t.dt3 * t.dt4) / 252.0;
  p[1] = (t.dt3 * t.dt3) / 72.0;
  p[2] = t.dt5 / 30.0;
  p[3] = t.dt4 / 24.0;
  p[4] = t.dt5 * 0.05;
  p[5] = t.dt4 * 0.125;
  p[6] = t.dt3 / 6.0;
  p[7] = t.dt3 / 3.0;
  p[8] = t.dt2 * 0.5;
  p[9] = dt;
  q *= sigma * sigma;
}
