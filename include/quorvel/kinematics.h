// Kinematic models: transition and process-noise matrices of the polynomial models of one axis.
//
// State of one axis: position p (m), velocity v (m/s), acceleration a (m/s^2), jerk j (m/s^3). The highest derivative of
// the state is driven by white noise of power spectral density sigma^2 (sigma is the square root of the density:
// m/s^1.5 for PV, m/s^2.5 for PVA, m/s^3.5 for PVAJ). Over dt seconds
//
//   x(t + dt) = Phi x(t) + w,   P(t + dt) = Phi P(t) Phi' + Q,   Q = integral of Phi(s) G sigma^2 G' Phi(s)' ds, 0..dt
//
// with G the last unit vector: the time update of a Kalman filter.
//
// The matrix is the caller's: it is resized when its order differs from the model's (then the one allocation is made),
// every stored element is assigned, and its singularity count stays as it was. All six throw 50000 when the matrix is
// not ok or dispensable (a dispensable one is destroyed first), 10680 when memory is exhausted (the matrix is 0 x 0
// then), or the pending code. dt may be 0 (identity, no noise) or negative: odd powers of dt change their sign, so that
// Q is then no covariance matrix.
//
// Every element is one chain of products in a fixed grouping, so results are the same to the last bit everywhere.
//
// Source: Bar-Shalom, Li, Kirubarajan, Estimation with Applications to Tracking and Navigation (2001), section 6.2.
//
//   UpperTriangularMatrix Phi;
//   SymmetricMatrix Q;
//   Phi_PV(Phi, 0.5);     // [1 0.5; 0 1]
//   Q_PV(Q, 0.5, 2.0);    // [1/6 1/2; 1/2 2]
#ifndef QUORVEL_KINEMATICS_H
#define QUORVEL_KINEMATICS_H

#include "quorvel/export.h"
#include "quorvel/forward.h"

// Transition matrices.

/// State p, v:
///   1  dt
///   0  1
QUORVEL_API void Phi_PV(UpperTriangularMatrix& phi, double dt);

/// State p, v, a:
///   1  dt  dt^2/2
///   0  1   dt
///   0  0   1
QUORVEL_API void Phi_PVA(UpperTriangularMatrix& phi, double dt);

/// State p, v, a, j:
///   1  dt  dt^2/2  dt^3/6
///   0  1   dt      dt^2/2
///   0  0   1       dt
///   0  0   0       1
QUORVEL_API void Phi_PVAJ(UpperTriangularMatrix& phi, double dt);

// Process noise. Q_PV carries sigma^2 inside its products; the other two scale the finished matrix of unit density by
// sigma * sigma, as SymmetricMatrix::operator*= does: exactly zero for sigma = 0 whatever dt is, while Q_PV gives NaN for
// sigma = 0 with an infinite dt.

/// White acceleration, sigma^2 times
///   dt^3/3  dt^2/2
///   .       dt
QUORVEL_API void Q_PV(SymmetricMatrix& q, double dt, double sigma);

/// White jerk, sigma^2 times
///   dt^5/20  dt^4/8  dt^3/6
///   .        dt^3/3  dt^2/2
///   .        .       dt
/// The factor 1/20 is a product with 0.05, which can differ from the division in the last bit.
QUORVEL_API void Q_PVA(SymmetricMatrix& q, double dt, double sigma);

/// White snap, sigma^2 times
///   dt^7/252  dt^6/72  dt^5/30  dt^4/24
///   .         dt^5/20  dt^4/8   dt^3/6
///   .         .        dt^3/3   dt^2/2
///   .         .        .        dt
QUORVEL_API void Q_PVAJ(SymmetricMatrix& q, double dt, double sigma);

#endif
