// Cholesky factor, and the inverse of a covariance by it. Ours also decides, row by row, what is singular.

#include <Eigen/Dense>

#include "race/armadillo.h"
#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;

auto PackedLower(const Columns& packed, unsigned n) {
  return bench::Read{n, n, [&packed, n](unsigned i, unsigned j) {
                       return i < j ? 0.0 : packed.data()[j * (2 * n - 1 - j) / 2 + i];
                     }};
}
auto PackedSymmetric(const Columns& packed, unsigned n) {
  return bench::Read{n, n, [&packed, n](unsigned i, unsigned j) {
                       const unsigned low = i < j ? i : j, high = i < j ? j : i;
                       return packed.data()[low * (2 * n - 1 - low) / 2 + high];
                     }};
}

void Factor(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const SymmetricMatrix p = bench::Covariance(n, 1);
  const MatrixXd ep = bench::ToEigen(p);
  const Columns cp = bench::ToColumns(p), packed = bench::ToPacked(p);
  Columns cl(cp), cpacked(packed);
  MatrixXd el(n, n);
  Eigen::LLT<MatrixXd> llt(n);
  const int order = static_cast<int>(n);
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "CholeskyFactor", [&](auto use) {
    LowerTriangularMatrix l(CholeskyFactor(p, 1e-12));
    use(l);
  });
  race.add("Eigen", "LLT::compute", [&](auto use) {
    llt.compute(ep);
    use(bench::LowerOf(llt.matrixLLT(), n));
  });
  race.add("Eigen new", "llt().matrixL()", [&](auto use) {
    const MatrixXd l = ep.llt().matrixL();
    use(l);
  });
  race.add("Eigen", "LLT in place", [&](auto use) {
    el = ep;
    Eigen::LLT<Eigen::Ref<MatrixXd>> in_place(el);
    use(bench::LowerOf(el, n));
  });
  race.add("OpenBLAS", "dpotrf", [&](auto use) {
    cl = cp;
    dpotrf_("L", &order, cl.data(), &order, &info);
    use(bench::LowerOf(cl, n));
  });
  race.add("OpenBLAS", "dpptrf", [&](auto use) {
    cpacked = packed;
    dpptrf_("L", &order, cpacked.data(), &info);
    use(PackedLower(cpacked, n));
  });
  bench::AddArmadillo(race, "chol", ep, ep, [](const auto& a, const auto&) { return arma::chol(a, "lower"); });
  hold(race);
}

void Inverse(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const SymmetricMatrix p = bench::Covariance(n, 1);
  const MatrixXd ep = bench::ToEigen(p);
  const Columns cp = bench::ToColumns(p), packed = bench::ToPacked(p);
  Columns cl(cp), cpacked(packed);
  MatrixXd ex(n, n), el(n, n);
  Eigen::LLT<MatrixXd> llt(n);
  const int order = static_cast<int>(n);
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "InverseByCholesky", [&](auto use) {
    SymmetricMatrix x(InverseByCholesky(p, 1e-12));
    use(x);
  });
  race.add("Eigen", "LLT, solveInPlace(identity)", [&](auto use) {
    llt.compute(ep);
    ex.setIdentity();
    llt.solveInPlace(ex);
    use(ex);
  });
  race.add("Eigen new", "llt().solve(identity)", [&](auto use) {
    const MatrixXd x = ep.llt().solve(MatrixXd::Identity(order, order));
    use(x);
  });
  race.add("Eigen", "LLT, inverse of L, its product", [&](auto use) {
    llt.compute(ep);
    el.setIdentity();
    llt.matrixL().solveInPlace(el);
    ex.setZero();
    ex.selfadjointView<Eigen::Lower>().rankUpdate(el.transpose());
    use(bench::MirroredLower(ex, n));
  });
  race.add("OpenBLAS", "dpotrf, dpotri", [&](auto use) {
    cl = cp;
    dpotrf_("L", &order, cl.data(), &order, &info);
    dpotri_("L", &order, cl.data(), &order, &info);
    use(bench::MirroredLower(cl, n));
  });
  race.add("OpenBLAS", "dpptrf, dpptri", [&](auto use) {
    cpacked = packed;
    dpptrf_("L", &order, cpacked.data(), &info);
    dpptri_("L", &order, cpacked.data(), &info);
    use(PackedSymmetric(cpacked, n));
  });
  bench::AddArmadillo(race, "inv_sympd", ep, ep, [](const auto& a, const auto&) { return arma::inv_sympd(a); });
  hold(race);
}

const bench::Entered factor("dense", "CholeskyFactor", bench::FilterSizes(), Factor);
const bench::Entered inverse("dense", "InverseByCholesky", bench::FilterSizes(), Inverse);

}  // namespace
