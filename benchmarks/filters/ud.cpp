// One step, prediction and update, of a U-D filter: the measurements one by one.

#include "race/eigen_ud.h"
#include "race/race.h"

#include "filters/model.h"

namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

void Step(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const bench::Model a(size.n, size.m);
  const bench::EigenModel e(a);
  UpperTriangularMatrix u0(a.n), u(a.n);
  DiagonalMatrix d0(a.n), d(a.n);
  UDFactor(u0, d0, a.p0);
  RegularMatrix x(a.x0), gain(a.n, 1), h(1, a.n), expected(1, 1);

  bench::Race race;
  race.add("Quorvel", "UDTimeUpdate, UDMeasurementUpdate", [&](auto use) {
    bench::Restore(x, a.x0);
    bench::Restore(u, u0);
    bench::Restore(d, d0);
    x = a.phi * x;
    UDTimeUpdate(u, d, a.phi, a.g, a.noise);
    for (unsigned i = 0; i < a.m; ++i) {
      GetSubMat(h, a.h, i, i, 0, a.n - 1);
      const double innovation = a.z(i, 0) - scalar(Mult(expected, h, x));
      UDMeasurementUpdate(u, d, h, a.variance(i, i), gain);
      x += (gain *= innovation);
    }
    use(bench::Later([&] { return bench::Joined(bench::UDU(u, d), bench::ToEigen(x)); }));
  });

  const MatrixXd eu0 = bench::ToEigen(u0);
  const VectorXd ed0 = bench::ToEigen(d0).diagonal();
  MatrixXd eu(eu0);
  VectorXd ed(ed0), ex(a.n), moved(a.n), eh(a.n);
  bench::Bierman bierman(a.n);
  bench::Thornton thornton(a.n, a.q);
  race.add("Eigen", "the same algorithms", [&](auto use) {
    ex = e.x0;
    eu = eu0;
    ed = ed0;
    moved.noalias() = e.phi * ex;
    ex = moved;
    thornton.update(eu, ed, e.phi, e.g, e.noise);
    for (unsigned i = 0; i < a.m; ++i) {
      eh = e.h.row(i).transpose();
      const double innovation = e.z(i) - eh.dot(ex);
      bierman.update(eu, ed, eh, e.variance(i));
      ex += bierman.gain * innovation;
    }
    use(bench::Later([&] { return bench::Joined(bench::UDU(eu, ed), ex); }));
  });
  hold(race);
}

const bench::Entered filter("filter", "U-D filter", bench::FilterProgramme(), Step);

}  // namespace
