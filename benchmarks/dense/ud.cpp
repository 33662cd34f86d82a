// U-D factorisation and the U-D filter's updates. The peers have none of these: they run the nearest thing that they
// have, or the textbook's algorithm in their own expressions. All of them are compared by the covariance that results.

#include <Eigen/Dense>
#include <cmath>

#include "race/eigen_ud.h"
#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;
using Eigen::VectorXd;

// The matrix with rows and columns in reverse order: the lower Cholesky factor of that is the upper root reversed.
MatrixXd Reversed(const MatrixXd& p) { return p.reverse(); }

void Factor(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const int order = static_cast<int>(n);
  const SymmetricMatrix p = bench::Covariance(n, 1);
  const MatrixXd ep = Reversed(bench::ToEigen(p));
  UpperTriangularMatrix u(n);
  DiagonalMatrix d(n);
  Columns cp(order, order), cl(order, order);
  for (int j = 0; j < order; ++j) {
    for (int i = 0; i < order; ++i) cp(i, j) = ep(i, j);
  }
  Eigen::LLT<MatrixXd> llt(n);
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "UDFactor", [&](auto use) {
    UDFactor(u, d, p);
    use(bench::Read{n, n, [&](unsigned i, unsigned j) { return j < i ? 0.0 : u(i, j) * std::sqrt(d(j, j)); }});
  });
  const auto upper = [n](const auto& l) {
    return bench::Read{n, n, [n, &l](unsigned i, unsigned j) {
                         return j < i ? 0.0 : static_cast<double>(l(static_cast<int>(n - 1 - i), static_cast<int>(n - 1 - j)));
                       }};
  };
  race.add("Eigen", "LLT", [&](auto use) {
    llt.compute(ep);
    use(upper(llt.matrixLLT()));
  });
  race.add("OpenBLAS", "dpotrf", [&](auto use) {
    cl = cp;
    dpotrf_("L", &order, cl.data(), &order, &info);
    use(upper(cl));
  });
  hold(race);
}

void Measurement(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  UpperTriangularMatrix u0(n), u(n);
  DiagonalMatrix d0(n), d(n);
  UDFactor(u0, d0, bench::Covariance(n, 1));
  const RegularMatrix h = bench::Regular(1, n, 2);
  RegularMatrix gain(n, 1);
  const double r = 0.5;
  const MatrixXd eu0 = bench::ToEigen(u0);
  const VectorXd ed0 = bench::ToEigen(d0).diagonal(), eh = bench::ToEigen(h).transpose();
  MatrixXd eu(eu0);
  VectorXd ed(ed0);
  bench::Bierman bierman(n);

  bench::Race race;
  race.add("Quorvel", "UDMeasurementUpdate", [&](auto use) {
    bench::Restore(u, u0);
    bench::Restore(d, d0);
    UDMeasurementUpdate(u, d, h, r, gain);
    use(bench::Later([&] { return bench::UDU(u, d); }));
  });
  race.add("Eigen", "the same algorithm", [&](auto use) {
    eu = eu0;
    ed = ed0;
    bierman.update(eu, ed, eh, r);
    use(bench::Later([&] { return bench::UDU(eu, ed); }));
  });
  hold(race);
}

// Update of the whole covariance, P -= K s K': what a filter on the covariance pays for the same measurement.
void MeasurementBesideCovariance(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const int order = static_cast<int>(n);
  UpperTriangularMatrix u0(n), u(n);
  DiagonalMatrix d0(n), d(n);
  UDFactor(u0, d0, bench::Covariance(n, 1));
  const RegularMatrix h = bench::Regular(1, n, 2);
  RegularMatrix gain(n, 1);
  const double r = 0.5;
  const MatrixXd ep0 = bench::UDU(u0, d0);
  const VectorXd eh = bench::ToEigen(h).transpose();
  MatrixXd ep(ep0);
  VectorXd egain(n);

  bench::Race race;
  race.add("Quorvel", "UDMeasurementUpdate", [&](auto use) {
    bench::Restore(u, u0);
    bench::Restore(d, d0);
    UDMeasurementUpdate(u, d, h, r, gain);
    use(bench::Later([&] { return bench::UDU(u, d); }));
  });
  race.add("Eigen", "P -= K s K'", [&](auto use) {
    ep = ep0;
    egain.noalias() = ep.selfadjointView<Eigen::Upper>() * eh;
    ep.selfadjointView<Eigen::Upper>().rankUpdate(egain, -1.0 / (eh.dot(egain) + r));
    use(bench::MirroredUpper(ep, n));
  });
  const Columns cp0 = bench::ToColumns(SymmetricMatrix(AQAT(RegularMatrix(u0), d0))), ch = bench::ToColumns(RegularMatrix(transpose(h)));
  Columns cp(cp0), cg(order, 1);
  race.add("OpenBLAS", "dsymv, dsyr", [&](auto use) {
    cp = cp0;
    dsymv_("U", &order, &bench::kOne, cp.data(), &order, ch.data(), &bench::kUnit, &bench::kZero, cg.data(), &bench::kUnit);
    const double factor = -1.0 / (ddot_(&order, ch.data(), &bench::kUnit, cg.data(), &bench::kUnit) + r);
    dsyr_("U", &order, &factor, cg.data(), &bench::kUnit, cp.data(), &order);
    use(bench::MirroredUpper(cp, n));
  });
  hold(race);
}

// P = Phi P Phi' + G Q G', with as many process noises as a third of the states.
void TimeUpdate(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n, q = (n + 2) / 3;
  const int order = static_cast<int>(n), wide = static_cast<int>(n + q);
  UpperTriangularMatrix u0(n), u(n);
  DiagonalMatrix d0(n), d(n), noise(q);
  UDFactor(u0, d0, bench::Covariance(n, 1));
  RegularMatrix phi = bench::Regular(n, n, 2);
  for (unsigned i = 0; i < n; ++i) phi(i, i) += n / 4.0;
  const RegularMatrix g = bench::Regular(n, q, 3);
  for (unsigned i = 0; i < q; ++i) noise(i, i) = 0.5 + i % 3;

  bench::Race race;
  race.add("Quorvel", "UDTimeUpdate", [&](auto use) {
    bench::Restore(u, u0);
    bench::Restore(d, d0);
    UDTimeUpdate(u, d, phi, g, noise);
    use(bench::Later([&] { return bench::UDU(u, d); }));
  });

  const MatrixXd eu0 = bench::ToEigen(u0), ephi = bench::ToEigen(phi), eg = bench::ToEigen(g);
  const VectorXd ed0 = bench::ToEigen(d0).diagonal(), eq = bench::ToEigen(noise).diagonal();
  MatrixXd eu(eu0);
  VectorXd ed(ed0);
  bench::Thornton thornton(n, q);
  race.add("Eigen", "the same algorithm", [&](auto use) {
    eu = eu0;
    ed = ed0;
    thornton.update(eu, ed, ephi, eg, eq);
    use(bench::Later([&] { return bench::UDU(eu, ed); }));
  });

  // On the root S = U sqrt(D) instead: an RQ factorisation of [Phi S, G sqrt(Q)].
  Columns cphi = bench::ToColumns(phi), croot(order, order), cg(order, static_cast<int>(q)), cw(order, wide), tau(order, 1),
      work(wide, 64);
  for (unsigned j = 0; j < n; ++j) {
    for (unsigned i = 0; i <= j; ++i) croot(static_cast<int>(i), static_cast<int>(j)) = (i == j ? 1.0 : u0(i, j)) * std::sqrt(d0(j, j));
  }
  for (unsigned j = 0; j < q; ++j) {
    for (unsigned i = 0; i < n; ++i) cg(static_cast<int>(i), static_cast<int>(j)) = g(i, j) * std::sqrt(noise(j, j));
  }
  const int work_size = static_cast<int>(work.size());
  int info = 0;
  race.add("OpenBLAS", "dtrmm, dgerqf on the root", [&](auto use) {
    for (std::size_t k = 0; k < cphi.size(); ++k) cw.data()[k] = cphi.data()[k];
    for (std::size_t k = 0; k < cg.size(); ++k) cw.data()[cphi.size() + k] = cg.data()[k];
    dtrmm_("R", "U", "N", "N", &order, &order, &bench::kOne, croot.data(), &order, cw.data(), &order);
    dgerqf_(&order, &wide, cw.data(), &order, tau.data(), work.data(), &work_size, &info);
    use(bench::Later([&] {
      MatrixXd root = MatrixXd::Zero(order, order);
      for (int j = 0; j < order; ++j) {
        for (int i = 0; i <= j; ++i) root(i, j) = cw(i, wide - order + j);
      }
      return MatrixXd(root * root.transpose());
    }));
  });
  hold(race);
}

const bench::Entered factor("dense", "UDFactor", bench::FilterSizes(), Factor);
const bench::Entered measurement("dense", "UDMeasurementUpdate", bench::FilterSizes(), Measurement);
const bench::Entered covariance("dense", "UDMeasurementUpdate beside P-KsK'", bench::FilterSizes(), MeasurementBesideCovariance);
const bench::Entered time_update("dense", "UDTimeUpdate", bench::FilterSizes(), TimeUpdate);

}  // namespace
