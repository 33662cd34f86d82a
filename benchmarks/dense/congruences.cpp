// Congruences of a symmetric matrix: A Q A' (how a covariance is propagated) and A' P A (how normal equations are made).

#include <Eigen/Dense>

#include "race/armadillo.h"
#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;

// X: A' P A, else A Q A'.
template <bool X>
void Congruence(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1);
  const SymmetricMatrix q = bench::Symmetric(n, 2);
  const MatrixXd ea = bench::ToEigen(a), eq = bench::ToEigen(q);
  const Columns ca = bench::ToColumns(a), cq = bench::ToColumns(q);
  MatrixXd ew(n, n), ec(n, n);
  Columns cw(ca), cc(ca), half(ca);
  const int order = static_cast<int>(n);
  const char side = X ? 'L' : 'R';

  bench::Race race;
  race.add("Quorvel", "AQAT / ATPA", [&](auto use) {
    SymmetricMatrix c(X ? ATPA(a, q) : AQAT(a, q));
    use(c);
  });

  const auto& x = bench::Transposed<X>(ea);
  const auto& y = bench::Transposed<!X>(ea);
  race.add("Eigen", "selfadjointView, then the triangle", [&](auto use) {
    ew.noalias() = eq.selfadjointView<Eigen::Upper>() * y;
    ec.triangularView<Eigen::Upper>() = x * ew;
    use(bench::MirroredUpper(ec, n));
  });
  race.add("Eigen new", "x * Q * y", [&](auto use) {
    const MatrixXd c = x * eq * y;
    use(c);
  });
  race.add("Eigen", "all of Q, then the triangle", [&](auto use) {
    ew.noalias() = eq * y;
    ec.triangularView<Eigen::Upper>() = x * ew;
    use(bench::MirroredUpper(ec, n));
  });
  race.add("Eigen", "two full products", [&](auto use) {
    ew.noalias() = eq * y;
    ec.noalias() = x * ew;
    use(ec);
  });
  if (n <= 24) {
    race.add("Eigen", "two lazy products", [&](auto use) {
      ew.noalias() = eq.lazyProduct(y);
      ec.noalias() = x.lazyProduct(ew);
      use(ec);
    });
  }

  // W = A Q (or P A), then A W'.
  const auto second = [&](auto use) {
    if (X) {
      dgemm_("T", "N", &order, &order, &order, &bench::kOne, ca.data(), &order, cw.data(), &order, &bench::kZero,
             cc.data(), &order);
    } else {
      dgemm_("N", "T", &order, &order, &order, &bench::kOne, cw.data(), &order, ca.data(), &order, &bench::kZero,
             cc.data(), &order);
    }
    use(cc);
  };
  race.add("OpenBLAS", "dsymm, dgemm", [&, second](auto use) {
    dsymm_(&side, "U", &order, &order, &bench::kOne, cq.data(), &order, ca.data(), &order, &bench::kZero, cw.data(),
           &order);
    second(use);
  });
  race.add("OpenBLAS", "dgemm, dgemm", [&, second](auto use) {
    const double* const left = X ? cq.data() : ca.data();
    const double* const right = X ? ca.data() : cq.data();
    dgemm_("N", "N", &order, &order, &order, &bench::kOne, left, &order, right, &order, &bench::kZero, cw.data(),
           &order);
    second(use);
  });
  // Q = T + T' with T upper triangular: A Q A' = (A T) A' + A (A T)'.
  race.add("OpenBLAS", "dtrmm, dsyr2k", [&](auto use) {
    half = cq;
    for (int i = 0; i < order; ++i) half(i, i) *= 0.5;
    cw = ca;
    dtrmm_(&side, "U", "N", "N", &order, &order, &bench::kOne, half.data(), &order, cw.data(), &order);
    dsyr2k_("U", X ? "T" : "N", &order, &order, &bench::kOne, cw.data(), &order, ca.data(), &order, &bench::kZero,
            cc.data(), &order);
    use(bench::MirroredUpper(cc, n));
  });
  hold(race);
}

const bench::Entered aqat("dense", "AQAT", bench::FilterSizes(), Congruence<false>);
const bench::Entered atpa("dense", "ATPA", bench::FilterSizes(), Congruence<true>);

}  // namespace
