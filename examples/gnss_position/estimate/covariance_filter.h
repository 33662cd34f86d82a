// The Kalman filter on estimate and covariance.
#ifndef GNSS_POSITION_ESTIMATE_COVARIANCE_FILTER_H
#define GNSS_POSITION_ESTIMATE_COVARIANCE_FILTER_H

#include "estimate/filter_form.h"

namespace gnss {

/// Time update     x = Phi x + u,  P = Phi P Phi' + Q
/// Measurement     S = H P H' + R,  K = P H' S^-1,  x = x + K (z - H x),  P = (I - K H) P (I - K H)' + K R K'
/// The last (Joseph's form) keeps P positive in spite of rounding.
class CovarianceFilter final : public FilterForm {
 public:
  const char* Name() const override { return "covariance"; }
  void Start(const RegularMatrix& x, const SymmetricMatrix& covariance) override;
  void Predict(const Transition& transition) override;
  void Update(const Measurement& measurement) override;
  RegularMatrix Estimate() const override { return x_; }
  SymmetricMatrix Covariance() const override { return p_; }

 private:
  RegularMatrix x_;
  SymmetricMatrix p_;
};

}  // namespace gnss

#endif
