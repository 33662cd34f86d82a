// The square-root information filter.
#ifndef GNSS_POSITION_ESTIMATE_INFORMATION_FILTER_H
#define GNSS_POSITION_ESTIMATE_INFORMATION_FILTER_H

#include "estimate/filter_form.h"

namespace gnss {

/// Keeps R and z of the information equation R x = z + unit noise, so that x = R^-1 z and P = (R'R)^-1.
///
/// Measurement  the rows H / sigma, values / sigma are folded in by Householder reflections (Householder_Reduction).
/// Time update  for the noise w and the new state x' together hold
///                             [ Rw              0          ] [ w  ]   [ 0           ]
///                             [ -R Phi^-1   R Phi^-1       ] [ x' ] = [ z + R Phi^-1 u ],   Rw' Rw = Q^-1;
///              the same reflections make the left side triangular, and its last block is the new R.
/// Source: Bierman, Factorization Methods for Discrete Sequential Estimation (1977), chapters V and VI.
class InformationFilter final : public FilterForm {
 public:
  const char* Name() const override { return "information"; }
  void Start(const RegularMatrix& x, const SymmetricMatrix& covariance) override;
  void Predict(const Transition& transition) override;
  void Update(const Measurement& measurement) override;
  RegularMatrix Estimate() const override;
  SymmetricMatrix Covariance() const override;

 private:
  UpperTriangularMatrix r_;
  RegularMatrix z_;
};

}  // namespace gnss

#endif
