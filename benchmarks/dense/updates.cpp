// Rank-one updates and orthogonal triangularisation.

#include <Eigen/Dense>

#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;
using Eigen::VectorXd;

// P += a v v', again and again on the same P: with a = +1 and -1 in turn it stays what it is.
void RankOne(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const int order = static_cast<int>(n);
  const SymmetricMatrix p0 = bench::Covariance(n, 1);
  const RegularMatrix v = bench::Regular(n, 1, 2);
  SymmetricMatrix p(p0);
  const VectorXd ev = bench::ToEigen(v);
  const MatrixXd ep0 = bench::ToEigen(p0);
  MatrixXd ep(ep0);
  const Columns cv = bench::ToColumns(v), cp0 = bench::ToColumns(p0), packed0 = bench::ToPacked(p0);
  Columns cp(cp0), packed(packed0);
  const double plus = 0.75, minus = -0.75;

  // Both signs are one call; what is compared is P between them.
  bench::Race race;
  race.add("Quorvel", "RankOneUpdate", [&](auto use) {
    RankOneUpdate(p, v.data(), plus);
    use(p);
    RankOneUpdate(p, v.data(), minus);
  });
  race.add("Eigen", "rankUpdate", [&](auto use) {
    ep.selfadjointView<Eigen::Upper>().rankUpdate(ev, plus);
    use(bench::MirroredUpper(ep, n));
    ep.selfadjointView<Eigen::Upper>().rankUpdate(ev, minus);
  });
  race.add("OpenBLAS", "dsyr", [&](auto use) {
    dsyr_("U", &order, &plus, cv.data(), &bench::kUnit, cp.data(), &order);
    use(bench::MirroredUpper(cp, n));
    dsyr_("U", &order, &minus, cv.data(), &bench::kUnit, cp.data(), &order);
  });
  race.add("OpenBLAS", "dspr", [&](auto use) {
    dspr_("L", &order, &plus, cv.data(), &bench::kUnit, packed.data());
    use(bench::Read{n, n, [&](unsigned i, unsigned j) {
                      const unsigned low = i < j ? i : j, high = i < j ? j : i;
                      return packed.data()[low * (2 * n - 1 - low) / 2 + high];
                    }});
    dspr_("L", &order, &minus, cv.data(), &bench::kUnit, packed.data());
  });
  hold(race);
}

// R with the signs of its rows made such that the diagonal is not negative.
template <class A>
auto Signed(const A& a, unsigned n) {
  return bench::Later([&a, n] {
    MatrixXd r = MatrixXd::Zero(n, n);
    for (int i = 0; i < static_cast<int>(n); ++i) {
      const double sign = a(i, i) < 0.0 ? -1.0 : 1.0;
      for (int j = i; j < static_cast<int>(n); ++j) r(i, j) = sign * a(i, j);
    }
    return r;
  });
}

// m measurements folded into the information pair (R, z): the reflections of [R z; A y].
void Reduction(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n, m = size.m;
  const int order = static_cast<int>(n), count = static_cast<int>(m), wide = order + 1, tall = order + count;
  UpperTriangularMatrix r0(n), r(n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = i; j < n; ++j) r0(i, j) = i == j ? 2.0 + i % 3 : 1.0 / (1.0 + i + j);
  }
  const RegularMatrix z0 = bench::Regular(n, 1, 1), a0 = bench::Regular(m, n, 2), y0 = bench::Regular(m, 1, 3);
  RegularMatrix z(z0), a(a0), y(y0);

  bench::Race race;
  race.add("Quorvel", "Householder_Reduction", [&](auto use) {
    bench::Restore(r, r0);
    bench::Restore(z, z0);
    bench::Restore(a, a0);
    bench::Restore(y, y0);
    Householder_Reduction(m, r, z, a, y);
    use(bench::Later([&] { return bench::ToEigen(r); }));
  });

  MatrixXd stacked0(tall, wide);
  stacked0 << bench::ToEigen(r0), bench::ToEigen(z0), bench::ToEigen(a0), bench::ToEigen(y0);
  MatrixXd stacked(stacked0);
  Eigen::HouseholderQR<MatrixXd> qr(tall, wide);
  race.add("Eigen", "HouseholderQR of all rows", [&](auto use) {
    qr.compute(stacked0);
    use(Signed(qr.matrixQR(), n));
  });

  Columns cs0(tall, wide), cs(tall, wide), tau(wide, 1), work(tall, 64);
  for (int j = 0; j < wide; ++j) {
    for (int i = 0; i < tall; ++i) cs0(i, j) = stacked0(i, j);
  }
  const int work_size = static_cast<int>(work.size());
  int info = 0;
  race.add("OpenBLAS", "dgeqrf of all rows", [&](auto use) {
    cs = cs0;
    dgeqrf_(&tall, &wide, cs.data(), &tall, tau.data(), work.data(), &work_size, &info);
    use(Signed(cs, n));
  });

  // [R z] is kept as a triangle of order n + 1, whose last element collects the residuals.
  Columns cr0(wide, wide), cr(wide, wide), ca0(count, wide), ca(count, wide), t(wide, wide), scratch(wide, wide);
  for (int j = 0; j < wide; ++j) {
    for (int i = 0; i <= j && i < order; ++i) cr0(i, j) = stacked0(i, j);
    for (int i = 0; i < count; ++i) ca0(i, j) = stacked0(order + i, j);
  }
  const int none = 0;
  for (const int block : {4, 32}) {
    if (block > wide) continue;
    race.add("OpenBLAS", block == 4 ? "dtpqrt, blocks of 4" : "dtpqrt, blocks of 32", [&, block](auto use) {
      cr = cr0;
      ca = ca0;
      dtpqrt_(&count, &wide, &none, &block, cr.data(), &wide, ca.data(), &count, t.data(), &wide, scratch.data(), &info);
      use(Signed(cr, n));
    });
  }
  hold(race);
}

// R of A = Q R, A 2n x n.
void Triangularisation(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n, m = 2 * n;
  const int rows = static_cast<int>(m), cols = static_cast<int>(n);
  const RegularMatrix a0 = bench::Regular(m, n, 1);
  const MatrixXd ea = bench::ToEigen(a0);
  const Columns ca0 = bench::ToColumns(a0);
  Columns ca(ca0), tau(cols, 1), work(rows, 64);
  Eigen::HouseholderQR<MatrixXd> qr(rows, cols);
  const int work_size = static_cast<int>(work.size());
  int info = 0;

  bench::Race race;
  race.add("Quorvel", "HouseholderTransformation", [&](auto use) {
    RegularMatrix a(a0);
    HouseholderTransformation(a, true);
    use(Signed(a, n));
  });
  race.add("Eigen", "HouseholderQR", [&](auto use) {
    qr.compute(ea);
    use(Signed(qr.matrixQR(), n));
  });
  race.add("OpenBLAS", "dgeqrf", [&](auto use) {
    ca = ca0;
    dgeqrf_(&rows, &cols, ca.data(), &rows, tau.data(), work.data(), &work_size, &info);
    use(Signed(ca, n));
  });
  hold(race);
}

std::vector<bench::Size> ThirdAsManyMeasurements() {
  std::vector<bench::Size> sizes = bench::FilterSizes();
  for (bench::Size& s : sizes) s.m = (s.n + 2) / 3;
  return sizes;
}

const bench::Entered rank_one("dense", "RankOneUpdate", bench::FilterSizes(), RankOne);
const bench::Entered reduction("dense", "Householder_Reduction", ThirdAsManyMeasurements(), Reduction);
const bench::Entered triangularisation("dense", "HouseholderTransformation", bench::FilterSizes(), Triangularisation);

}  // namespace
