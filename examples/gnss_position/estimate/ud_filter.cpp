#include "estimate/ud_filter.h"

namespace gnss {

void UDFilter::Start(const RegularMatrix& x, const SymmetricMatrix& covariance) {
  x_ = x;
  UDFactor(u_, d_, covariance);
}

void UDFilter::Predict(const Transition& t) {
  x_ = t.phi * x_ + t.shift;
  UDTimeUpdate(u_, d_, t.phi, t.noise);
}

void UDFilter::Update(const Measurement& m) {
  RegularMatrix gain;
  for (Matrix::size_type i = 0; i < m.value.nrows(); ++i) {
    const RegularMatrix h(SubMat(m.design, i, i, 0, kStates - 1));
    const double innovation = m.value(i) - scalar(h * x_);
    UDMeasurementUpdate(u_, d_, h, m.variance(i, i), gain);
    x_ += gain * innovation;
  }
}

// U D U'.
SymmetricMatrix UDFilter::Covariance() const { return SymmetricMatrix(AQAT(RegularMatrix(u_), d_)); }

}  // namespace gnss
