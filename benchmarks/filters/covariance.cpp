// One step, prediction and update, of a Kalman filter on the covariance.

#include "race/race.h"

#include "filters/model.h"

namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

struct Ours {
  RegularMatrix x;
  SymmetricMatrix p;

  void step(const bench::Model& a, const SymmetricMatrix& q) {
    x = a.phi * x;
    p = AQAT(a.phi, p) + q;

    const RegularMatrix pht(ABT(p, a.h));
    const SymmetricMatrix s(SymmetricOfProduct(a.h, pht) + a.variance);
    const RegularMatrix gain(pht * InverseByCholesky(s, 1e-14));
    x += gain * (a.z - a.h * x);
    p -= SymmetricOfABT(gain, pht);
  }
};

struct Peer {
  explicit Peer(const bench::Model& a)
      : x(a.n), p(a.n, a.n), moved(a.n), innovation(a.m), half(a.n, a.n), pht(a.n, a.m), s(a.m, a.m), gain(a.m, a.n), llt(a.m) {}
  VectorXd x;
  MatrixXd p;
  VectorXd moved, innovation;
  MatrixXd half, pht, s, gain;
  Eigen::LLT<MatrixXd> llt;

  void step(const bench::EigenModel& a, const MatrixXd& q) {
    moved.noalias() = a.phi * x;
    half.noalias() = a.phi * p;
    p.noalias() = half * a.phi.transpose();
    p += q;

    pht.noalias() = p * a.h.transpose();
    s.noalias() = a.h * pht;
    s.diagonal() += a.variance;
    llt.compute(s);
    gain = pht.transpose();
    llt.solveInPlace(gain);
    innovation = a.z;
    innovation.noalias() -= a.h * moved;
    x = moved;
    x.noalias() += gain.transpose() * innovation;
    p.noalias() -= gain.transpose() * pht.transpose();
  }

  // The same with what Eigen has for symmetric matrices: one triangle of P is kept.
  void step_on_triangle(const bench::EigenModel& a, const MatrixXd& q) {
    moved.noalias() = a.phi * x;
    half.noalias() = a.phi * p.selfadjointView<Eigen::Upper>();
    p.triangularView<Eigen::Upper>() = half * a.phi.transpose();
    p.triangularView<Eigen::Upper>() += q;

    pht.noalias() = p.selfadjointView<Eigen::Upper>() * a.h.transpose();
    s.noalias() = a.h * pht;
    s.diagonal() += a.variance;
    llt.compute(s);
    gain = pht.transpose();
    llt.matrixL().solveInPlace(gain);  // L^-1 H P: P loses its square, x that times L^-1 of the innovation
    innovation = a.z;
    innovation.noalias() -= a.h * moved;
    llt.matrixL().solveInPlace(innovation);
    x = moved;
    x.noalias() += gain.transpose() * innovation;
    p.selfadjointView<Eigen::Upper>().rankUpdate(gain.transpose(), -1.0);
  }
};

void Step(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const bench::Model model(size.n, size.m);
  const bench::EigenModel emodel(model);
  const SymmetricMatrix q(AQAT(model.g, model.noise));
  const MatrixXd eq = bench::ToEigen(q);
  Ours ours{model.x0, model.p0};
  Peer peer(model);

  bench::Race race;
  race.add("Quorvel", "AQAT, ABT, InverseByCholesky, SymmetricOfABT", [&](auto use) {
    bench::Restore(ours.x, model.x0);
    bench::Restore(ours.p, model.p0);
    ours.step(model, q);
    use(bench::Later([&] { return bench::Joined(bench::ToEigen(ours.p), bench::ToEigen(ours.x)); }));
  });
  race.add("Eigen", "full matrices, LLT", [&](auto use) {
    peer.x = emodel.x0;
    peer.p = emodel.p0;
    peer.step(emodel, eq);
    use(bench::Later([&] { return bench::Joined(peer.p, peer.x); }));
  });
  race.add("Eigen", "self-adjoint views, LLT", [&](auto use) {
    peer.x = emodel.x0;
    peer.p = emodel.p0;
    peer.step_on_triangle(emodel, eq);
    use(bench::Later([&] { return bench::Joined(MatrixXd(peer.p.selfadjointView<Eigen::Upper>()), peer.x); }));
  });
  hold(race);
}

const bench::Entered filter("filter", "covariance filter", bench::FilterProgramme(), Step);

}  // namespace
