// Kinematic models of one axis. The grouping of every product is part of the result: it fixes the last bits.
#include "quorvel/kinematics.h"

#include <algorithm>
#include <initializer_list>

#include "core/codes.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace {

/// Checks the caller's matrix, gives it the model's order and assigns its stored elements: the upper triangle by rows.
void Assign(SquareMatrix& target, Matrix::size_type n, std::initializer_list<double> elements) {
  target.ThrowNotOkOrDispensable(quorvel::detail::code::none);
  if (target.ndim() != n) target.SetSize(n, n, false);
  std::copy(elements.begin(), elements.end(), target.data());
}

struct Powers {
  double dt;
  double dt2 = dt * dt;
  double dt3 = dt * dt2;
  double dt4 = dt2 * dt2;
  double dt5 = dt * dt4;
};

}  // namespace

// Laid out as the triangles that they are.
// clang-format off

void Phi_PV(UpperTriangularMatrix& phi, double dt) {
  Assign(phi, 2, {1.0, dt,
                       1.0});
}

void Phi_PVA(UpperTriangularMatrix& phi, double dt) {
  const Powers t{dt};
  const double half = t.dt2 * 0.5;
  Assign(phi, 3, {1.0, dt,  half,
                       1.0, dt,
                            1.0});
}

void Phi_PVAJ(UpperTriangularMatrix& phi, double dt) {
  const Powers t{dt};
  const double half = t.dt2 * 0.5;
  const double sixth = t.dt3 / 6.0;
  Assign(phi, 4, {1.0, dt,  half, sixth,
                       1.0, dt,   half,
                            1.0,  dt,
                                  1.0});
}

void Q_PV(SymmetricMatrix& q, double dt, double sigma) {
  const double s = (dt * sigma) * sigma;
  const double dt_s = dt * s;
  Assign(q, 2, {(dt * dt_s) / 3.0, dt_s * 0.5,
                                   s});
}

void Q_PVA(SymmetricMatrix& q, double dt, double sigma) {
  const Powers t{dt};
  Assign(q, 3, {(t.dt2 * t.dt3) * 0.05, t.dt4 * 0.125, t.dt3 / 6.0,
                                        t.dt3 / 3.0,   t.dt2 * 0.5,
                                                       dt});
  q *= sigma * sigma;
}

void Q_PVAJ(SymmetricMatrix& q, double dt, double sigma) {
  const Powers t{dt};
  Assign(q, 4, {(t.dt3 * t.dt4) / 252.0, (t.dt3 * t.dt3) / 72.0, t.dt5 / 30.0,  t.dt4 / 24.0,
                                         t.dt5 * 0.05,           t.dt4 * 0.125, t.dt3 / 6.0,
                                                                 t.dt3 / 3.0,   t.dt2 * 0.5,
                                                                                dt});
  q *= sigma * sigma;
}

// clang-format on
