#include "estimate/information_filter.h"

#include <cmath>

namespace gnss {
namespace {

using Index = Matrix::size_type;

// R with R'R = P^-1: the inverse of the upper root of P = U U'.
UpperTriangularMatrix InformationRoot(const SymmetricMatrix& covariance) {
  return UpperTriangularMatrix(inv(CholeskySquareRootUpper(covariance), true));
}

}  // namespace

void InformationFilter::Start(const RegularMatrix& x, const SymmetricMatrix& covariance) {
  r_ = InformationRoot(covariance);
  z_ = r_ * x;
}

void InformationFilter::Predict(const Transition& t) {
  const Index n = kStates;
  const UpperTriangularMatrix backwards(r_ * t.phi_inverse);  // R Phi^-1

  // Prior knowledge: of w only its variance, of x' nothing.
  UpperTriangularMatrix joint(2 * n);
  RegularMatrix joint_z(2 * n, 1);
  const UpperTriangularMatrix noise_root = InformationRoot(t.noise);
  for (Index i = 0; i < n; ++i) {
    for (Index j = i; j < n; ++j) joint(i, j) = noise_root(i, j);
  }

  RegularMatrix rows(n, 2 * n);
  CopySubMat(rows, 0, 0, -backwards);
  CopySubMat(rows, 0, n, backwards);
  RegularMatrix rows_z(z_ + backwards * t.shift);

  Householder_Reduction(n, joint, joint_z, rows, rows_z);

  for (Index i = 0; i < n; ++i) {
    for (Index j = i; j < n; ++j) r_(i, j) = joint(n + i, n + j);
  }
  CopySubMat(z_, 0, 0, joint_z, n, 0, n, 1);
}

void InformationFilter::Update(const Measurement& m) {
  DiagonalMatrix whitening(m.variance);
  for (Index i = 0; i < whitening.nrows(); ++i) whitening(i, i) = 1.0 / std::sqrt(m.variance(i, i));
  RegularMatrix rows(whitening * m.design);
  RegularMatrix rows_z(whitening * m.value);
  Householder_Reduction(rows.nrows(), r_, z_, rows, rows_z);
}

// `R > z` is the library's left division, R^-1 z.
RegularMatrix InformationFilter::Estimate() const { return RegularMatrix(r_ > z_); }

// (R'R)^-1 = R^-1 R^-1', formed as the congruence of the inverse with a unit diagonal.
SymmetricMatrix InformationFilter::Covariance() const {
  DiagonalMatrix unit(kStates);
  for (Index i = 0; i < kStates; ++i) unit(i, i) = 1.0;
  return SymmetricMatrix(AQAT(RegularMatrix(inv(r_, false)), unit));
}

}  // namespace gnss
