#include "estimate/covariance_filter.h"

namespace gnss {

void CovarianceFilter::Start(const RegularMatrix& x, const SymmetricMatrix& covariance) {
  x_ = x;
  p_ = covariance;
}

void CovarianceFilter::Predict(const Transition& t) {
  x_ = t.phi * x_ + t.shift;
  p_ = AQAT(t.phi, p_) + t.noise;
}

void CovarianceFilter::Update(const Measurement& m) {
  const RegularMatrix& h = m.design;

  SymmetricMatrix s(AQAT(h, p_));
  s += m.variance;
  const RegularMatrix gain(ABT(p_, h) * InverseByCholesky(s, 1e-14));

  x_ += gain * (m.value - h * x_);

  RegularMatrix rest(kStates, kStates);
  for (Matrix::size_type i = 0; i < kStates; ++i) rest(i, i) = 1.0;
  rest -= gain * h;
  p_ = AQAT(rest, p_) + AQAT(gain, m.variance);
}

}  // namespace gnss
