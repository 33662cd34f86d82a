// The U-D filter's two updates in Eigen's vector expressions, with their work areas made once.
// Bierman, Factorization Methods for Discrete Sequential Estimation, 1977, V.3 and VI.4.

#ifndef QUORVEL_BENCHMARKS_EIGEN_UD_H
#define QUORVEL_BENCHMARKS_EIGEN_UD_H

#include <Eigen/Core>

#include "race/samples.h"

namespace bench {

/// U D U'. The diagonal of U counts as 1.
inline Eigen::MatrixXd UDU(const Eigen::MatrixXd& u, const Eigen::VectorXd& d) {
  const Eigen::MatrixXd unit = u.triangularView<Eigen::UnitUpper>();
  return unit * d.asDiagonal() * unit.transpose();
}
inline Eigen::MatrixXd UDU(const UpperTriangularMatrix& u, const DiagonalMatrix& d) {
  return UDU(ToEigen(u), Eigen::VectorXd(ToEigen(d).diagonal()));
}

class Bierman {
 public:
  explicit Bierman(Eigen::Index n) : gain(n), f_(n), column_(n) {}

  void update(Eigen::MatrixXd& u, Eigen::VectorXd& d, const Eigen::VectorXd& h, double r) {
    f_.noalias() = u.transpose().triangularView<Eigen::UnitLower>() * h;
    double alpha = r;
    for (Eigen::Index j = 0; j < d.size(); ++j) {
      const double v = d(j) * f_(j), before = alpha;
      alpha += f_(j) * v;
      d(j) *= before / alpha;
      column_.head(j) = u.col(j).head(j);
      u.col(j).head(j) -= f_(j) / before * gain.head(j);
      gain.head(j) += v * column_.head(j);
      gain(j) = v;
    }
    gain /= alpha;
  }

  Eigen::VectorXd gain;

 private:
  Eigen::VectorXd f_, column_;
};

class Thornton {
 public:
  Thornton(Eigen::Index n, Eigen::Index q) : w_(n, n + q), weights_(n + q), row_(n + q) {}

  void update(Eigen::MatrixXd& u, Eigen::VectorXd& d, const Eigen::MatrixXd& phi, const Eigen::MatrixXd& g,
              const Eigen::VectorXd& q) {
    const Eigen::Index n = d.size();
    w_.leftCols(n).noalias() = phi * u.triangularView<Eigen::UnitUpper>();
    w_.rightCols(q.size()) = g;
    weights_.head(n) = d;
    weights_.tail(q.size()) = q;
    for (Eigen::Index j = n; j-- > 0;) {
      row_ = weights_.cwiseProduct(w_.row(j).transpose());
      d(j) = w_.row(j).dot(row_);
      if (j == 0) break;
      u.col(j).head(j).noalias() = w_.topRows(j) * row_;
      u.col(j).head(j) /= d(j);
      w_.topRows(j).noalias() -= u.col(j).head(j) * w_.row(j);
    }
  }

 private:
  Eigen::Matrix<double, Eigen::Dynamic, Eigen::Dynamic, Eigen::RowMajor> w_;
  Eigen::VectorXd weights_, row_;
};

}  // namespace bench

#endif
