// One Kalman filter, written in three forms that give the same estimate.
//
//   x' = Phi x + u + w,  w ~ (0, Q)      time update
//   z  = H x + v,        v ~ (0, R)      measurement update, R diagonal
//
// State of the navigation problem, eight numbers in metres and metres per second: position and velocity along the three
// Earth-fixed axes, clock error and clock drift. Each pair follows the position-velocity model of one axis, so Phi is
// upper triangular with 2 x 2 blocks.
#ifndef GNSS_POSITION_ESTIMATE_FILTER_FORM_H
#define GNSS_POSITION_ESTIMATE_FILTER_FORM_H

#include "quorvel/quorvel.h"

namespace gnss {

constexpr Matrix::size_type kStates = 8;
constexpr Matrix::size_type kClock = 6;  // index of the clock error; axis k has its position at 2 k

struct Transition {
  UpperTriangularMatrix phi;          ///< Phi, n x n
  UpperTriangularMatrix phi_inverse;  ///< of the same model: time runs backwards
  SymmetricMatrix noise;              ///< Q, positive definite
  RegularMatrix shift;                ///< u, n x 1, known exactly
};

struct Measurement {
  RegularMatrix design;     ///< H, m x n
  RegularMatrix value;      ///< z, m x 1
  DiagonalMatrix variance;  ///< R, m x m
};

class FilterForm {
 public:
  virtual ~FilterForm() = default;
  virtual const char* Name() const = 0;
  /// Begins with estimate x and covariance P (positive definite).
  virtual void Start(const RegularMatrix& x, const SymmetricMatrix& covariance) = 0;
  virtual void Predict(const Transition& transition) = 0;
  virtual void Update(const Measurement& measurement) = 0;
  virtual RegularMatrix Estimate() const = 0;
  virtual SymmetricMatrix Covariance() const = 0;
};

}  // namespace gnss

#endif
