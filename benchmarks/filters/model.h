// What a filter is run on: a system of n states, driven by a third as many noises, of which m measurements are taken.

#ifndef QUORVEL_BENCHMARKS_MODEL_H
#define QUORVEL_BENCHMARKS_MODEL_H

#include <Eigen/Dense>

#include "race/race.h"
#include "race/samples.h"

namespace bench {

struct Model {
  Model(unsigned states, unsigned measurements)
      : n(states), m(measurements), q((states + 2) / 3), phi(n, n), g(Regular(n, q, 2)), noise(q), h(Regular(m, n, 3)),
        z(Regular(m, 1, 4)), variance(m), x0(Regular(n, 1, 5)), p0(Covariance(n, 6)) {
    Numbers numbers(1);
    for (unsigned i = 0; i < n; ++i) {
      for (unsigned j = 0; j < n; ++j) phi(i, j) = (i == j ? 1.0 : 0.0) + 0.25 / n * numbers.next();
    }
    for (unsigned i = 0; i < q; ++i) noise(i, i) = 0.25 + 0.5 * (i % 3);
    for (unsigned i = 0; i < m; ++i) variance(i, i) = 0.5 + 0.25 * (i % 4);
  }

  unsigned n, m, q;
  RegularMatrix phi, g;     // x' = phi x + g w
  DiagonalMatrix noise;     // variance of w
  RegularMatrix h, z;       // z = h x + v
  DiagonalMatrix variance;  // of v
  RegularMatrix x0;
  SymmetricMatrix p0;  // before the step
};

/// The same for Eigen.
struct EigenModel {
  explicit EigenModel(const Model& a)
      : phi(ToEigen(a.phi)), g(ToEigen(a.g)), h(ToEigen(a.h)), p0(ToEigen(a.p0)), noise(ToEigen(a.noise).diagonal()),
        z(ToEigen(a.z)), variance(ToEigen(a.variance).diagonal()), x0(ToEigen(a.x0)) {}
  Eigen::MatrixXd phi, g, h, p0;
  Eigen::VectorXd noise, z, variance, x0;
};

inline std::vector<Size> FilterProgramme() {
  std::vector<Size> sizes;
  for (const unsigned n : {6u, 9u, 15u, 24u, 60u}) {
    for (const unsigned m : {1u, 4u, 12u}) sizes.push_back({n, m});
  }
  return sizes;
}

/// Covariance and state side by side, as the values of a step.
inline Eigen::MatrixXd Joined(const Eigen::MatrixXd& p, const Eigen::VectorXd& x) {
  Eigen::MatrixXd joined(p.rows(), p.cols() + 1);
  joined << p, x;
  return joined;
}

}  // namespace bench

#endif
