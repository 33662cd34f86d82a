// Armadillo as a contestant. It stands on the OpenBLAS that is linked here, not on its wrapper library.

#ifndef QUORVEL_BENCHMARKS_ARMADILLO_H
#define QUORVEL_BENCHMARKS_ARMADILLO_H

#define ARMA_DONT_USE_WRAPPER
#define ARMA_USE_LAPACK
#define ARMA_USE_BLAS
#define ARMA_NO_DEBUG
#define ARMA_DONT_USE_OPENMP
#include <armadillo>

#include "race/race.h"

namespace bench {

inline arma::mat ToArmadillo(const Eigen::MatrixXd& x) {
  return arma::mat(x.data(), static_cast<arma::uword>(x.rows()), static_cast<arma::uword>(x.cols()));
}

/// form(a, b), an expression, assigned to a matrix that exists already.
template <class Form>
void AddArmadillo(Race& race, const char* how, const Eigen::MatrixXd& a, const Eigen::MatrixXd& b, Form form) {
  race.add("Armadillo", how, [x = ToArmadillo(a), y = ToArmadillo(b), c = arma::mat(), form](auto use) mutable {
    c = form(x, y);
    use(Read{static_cast<unsigned>(c.n_rows), static_cast<unsigned>(c.n_cols),
             [&c](unsigned i, unsigned j) { return c(i, j); }});
  });
}

/// The matrix, or its transpose as an expression.
template <bool Yes, class A>
decltype(auto) Transposed(const A& a) {
  if constexpr (Yes) {
    return a.transpose();
  } else {
    return (a);
  }
}

}  // namespace bench

#endif
