// Inverses and solutions of general and triangular matrices.
//
// Our general inverse goes through Householder reflections, twice the work of elimination, for its rank test. So it runs
// beside both: the peers' inverse by elimination (operation "inv"), and theirs by reflections ("inv by QR").

#include <Eigen/Dense>
#include <vector>

#include "race/armadillo.h"
#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;

struct Operands {
  explicit Operands(unsigned size)
      : n(size), order(static_cast<int>(n)), a(bench::Invertible(n, 1)), ea(bench::ToEigen(a)), ca(bench::ToColumns(a)) {}
  unsigned n;
  int order;
  RegularMatrix a;
  MatrixXd ea;
  Columns ca;
};

void AddOurs(bench::Race& race, const RegularMatrix& a) {
  race.add("Quorvel", "inv", [&a](auto use) {
    RegularMatrix x(inv(a));
    use(x);
  });
}

void ByElimination(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const Operands o(size.n);
  MatrixXd ex(o.n, o.n);
  Eigen::PartialPivLU<MatrixXd> lu(o.order);
  Columns cx(o.ca), work(o.order, 64);
  std::vector<int> pivots(o.n);
  const int work_size = static_cast<int>(work.size());
  int info = 0;

  bench::Race race;
  AddOurs(race, o.a);
  race.add("Eigen", "PartialPivLU", [&](auto use) {
    lu.compute(o.ea);
    ex = lu.inverse();
    use(ex);
  });
  race.add("Eigen new", "inverse()", [&](auto use) {
    const MatrixXd x = o.ea.inverse();
    use(x);
  });
  race.add("OpenBLAS", "dgetrf, dgetri", [&](auto use) {
    cx = o.ca;
    dgetrf_(&o.order, &o.order, cx.data(), &o.order, pivots.data(), &info);
    dgetri_(&o.order, cx.data(), &o.order, pivots.data(), work.data(), &work_size, &info);
    use(cx);
  });
  bench::AddArmadillo(race, "inv", o.ea, o.ea, [](const auto& a, const auto&) { return arma::inv(a); });
  hold(race);
}

void ByReflections(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const Operands o(size.n);
  MatrixXd ex(o.n, o.n);
  Eigen::HouseholderQR<MatrixXd> qr(o.order, o.order);
  Columns cq(o.ca), cx(o.ca), work(o.order, 64), tau(o.order, 1);
  const int work_size = static_cast<int>(work.size());
  int info = 0;

  bench::Race race;
  AddOurs(race, o.a);
  const MatrixXd identity = MatrixXd::Identity(o.order, o.order);
  race.add("Eigen", "HouseholderQR, solve(identity)", [&](auto use) {
    qr.compute(o.ea);
    ex = qr.solve(identity);
    use(ex);
  });
  race.add("OpenBLAS", "dgeqrf, dormqr, dtrsm", [&](auto use) {
    cq = o.ca;
    dgeqrf_(&o.order, &o.order, cq.data(), &o.order, tau.data(), work.data(), &work_size, &info);
    for (int j = 0; j < o.order; ++j) {
      for (int i = 0; i < o.order; ++i) cx(i, j) = i == j ? 1.0 : 0.0;
    }
    dormqr_("L", "T", &o.order, &o.order, &o.order, cq.data(), &o.order, tau.data(), cx.data(), &o.order, work.data(),
            &work_size, &info);
    dtrsm_("L", "U", "N", "N", &o.order, &o.order, &bench::kOne, cq.data(), &o.order, cx.data(), &o.order);
    use(cx);
  });
  hold(race);
}

void OfTriangle(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const int order = static_cast<int>(n);
  const LowerTriangularMatrix l(CholeskyFactor(bench::Covariance(n, 1), 0.0));
  const MatrixXd el = bench::ToEigen(l);
  const Columns cl = bench::ToColumns(l), packed = bench::ToPacked(l);
  MatrixXd ex(n, n);
  Columns cx(cl), cpacked(packed);
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "inv", [&](auto use) {
    LowerTriangularMatrix x(inv(l));
    use(x);
  });
  race.add("Eigen", "triangularView, solveInPlace(identity)", [&](auto use) {
    ex.setIdentity();
    el.triangularView<Eigen::Lower>().solveInPlace(ex);
    use(ex);
  });
  race.add("OpenBLAS", "dtrtri", [&](auto use) {
    cx = cl;
    dtrtri_("L", "N", &order, cx.data(), &order, &info);
    use(cx);
  });
  race.add("OpenBLAS", "dtptri", [&](auto use) {
    cpacked = packed;
    dtptri_("L", "N", &order, cpacked.data(), &info);
    use(bench::Read{n, n, [&](unsigned i, unsigned j) {
                      return i < j ? 0.0 : cpacked.data()[j * (2 * n - 1 - j) / 2 + i];
                    }});
  });
  hold(race);
}

// One right-hand side. Ours refines the solution; so does dgesvx, which is a race of its own.
template <bool Refined>
void Solve(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const Operands o(size.n);
  const RegularMatrix b = bench::Regular(o.n, 1, 2);
  const MatrixXd eb = bench::ToEigen(b);
  const Columns cb = bench::ToColumns(b);
  Eigen::VectorXd ex(o.n);
  Eigen::PartialPivLU<MatrixXd> lu(o.order);
  Columns ca(o.ca), cf(o.ca), cr(cb), cx(cb), row(o.order, 1), col(o.order, 1), work(4 * o.order, 1);
  std::vector<int> pivots(o.n), iwork(o.n);
  double rcond = 0.0, ferr = 0.0, berr = 0.0;
  char equed = 'N';
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "A > b", [&](auto use) {
    RegularMatrix x(o.a > b);
    use(x);
  });
  if (!Refined) {
    race.add("Eigen", "PartialPivLU", [&](auto use) {
      lu.compute(o.ea);
      ex = lu.solve(eb);
      use(ex);
    });
    race.add("OpenBLAS", "dgesv", [&](auto use) {
      ca = o.ca;
      cx = cb;
      dgesv_(&o.order, &bench::kUnit, ca.data(), &o.order, pivots.data(), cx.data(), &o.order, &info);
      use(cx);
    });
  } else {
    race.add("OpenBLAS", "dgesvx", [&](auto use) {
      ca = o.ca;
      cr = cb;
      dgesvx_("E", "N", &o.order, &bench::kUnit, ca.data(), &o.order, cf.data(), &o.order, pivots.data(), &equed,
              row.data(), col.data(), cr.data(), &o.order, cx.data(), &o.order, &rcond, &ferr, &berr, work.data(),
              iwork.data(), &info);
      use(cx);
    });
  }
  hold(race);
}

void SolveTriangle(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const int order = static_cast<int>(n);
  const LowerTriangularMatrix l(CholeskyFactor(bench::Covariance(n, 1), 0.0));
  const RegularMatrix b = bench::Regular(n, 1, 2);
  const MatrixXd el = bench::ToEigen(l);
  const Columns cl = bench::ToColumns(l), packed = bench::ToPacked(l), cb = bench::ToColumns(b);
  const Eigen::VectorXd eb = bench::ToEigen(b);
  Eigen::VectorXd ex(n);
  Columns cx(cb);

  bench::Race race;
  race.add("Quorvel", "L > b", [&](auto use) {
    RegularMatrix x(l > b);
    use(x);
  });
  race.add("Eigen", "triangularView", [&](auto use) {
    ex = eb;
    el.triangularView<Eigen::Lower>().solveInPlace(ex);
    use(ex);
  });
  race.add("OpenBLAS", "dtrsv", [&](auto use) {
    cx = cb;
    dtrsv_("L", "N", "N", &order, cl.data(), &order, cx.data(), &bench::kUnit);
    use(cx);
  });
  race.add("OpenBLAS", "dtpsv", [&](auto use) {
    cx = cb;
    dtpsv_("L", "N", "N", &order, packed.data(), cx.data(), &bench::kUnit);
    use(cx);
  });
  hold(race);
}

const bench::Entered elimination("dense", "inv", bench::FilterSizes(), ByElimination);
const bench::Entered reflections("dense", "inv by QR", bench::FilterSizes(), ByReflections);
const bench::Entered triangle("dense", "inv of a triangle", bench::FilterSizes(), OfTriangle);
const bench::Entered solve("dense", "A > b", bench::FilterSizes(), Solve<false>);
const bench::Entered refined("dense", "A > b refined", bench::FilterSizes(), Solve<true>);
const bench::Entered substitution("dense", "L > b", bench::FilterSizes(), SolveTriangle);

}  // namespace
