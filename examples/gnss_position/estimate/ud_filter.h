// The Kalman filter on the factors of its covariance.
#ifndef GNSS_POSITION_ESTIMATE_UD_FILTER_H
#define GNSS_POSITION_ESTIMATE_UD_FILTER_H

#include "estimate/filter_form.h"

namespace gnss {

/// Keeps P = U D U', U unit upper triangular, D diagonal: P can never lose its symmetry or become negative.
///
/// Measurement  one scalar after the other by Bierman's update (UDMeasurementUpdate).
/// Time update  Thornton's weighted orthogonalisation (UDTimeUpdate); Q is factored in turn.
class UDFilter final : public FilterForm {
 public:
  const char* Name() const override { return "U-D"; }
  void Start(const RegularMatrix& x, const SymmetricMatrix& covariance) override;
  void Predict(const Transition& transition) override;
  void Update(const Measurement& measurement) override;
  RegularMatrix Estimate() const override { return x_; }
  SymmetricMatrix Covariance() const override;

 private:
  RegularMatrix x_;
  UpperTriangularMatrix u_;
  DiagonalMatrix d_;
};

}  // namespace gnss

#endif
