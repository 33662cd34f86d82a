// One step, prediction and update, of a square-root information filter: R'R is the information, R x = z the state.
//
// Prediction: of the noise w only its variance is known, of the new state nothing; R x = z of the old state, in which
// x = Phi^-1 (x' - G w), joins them. Reflections remove w. Bierman 1977, VI.2.

#include <Eigen/Dense>
#include <cmath>

#include "race/race.h"
#include "quorvel/convenience.h"

#include "filters/model.h"

namespace {

using Eigen::MatrixXd;
using Eigen::VectorXd;

// The model as this filter wants it: Phi^-1, the root of the noise's information, whitened measurements.
struct Prepared {
  explicit Prepared(const bench::Model& a)
      : backwards(inv(a.phi)), noise_root(a.q), h(a.h), z(a.z), r0(inv(CholeskySquareRootUpper(a.p0), true)), z0(r0 * a.x0) {
    for (unsigned i = 0; i < a.q; ++i) noise_root(i, i) = 1.0 / std::sqrt(a.noise(i, i));
    for (unsigned i = 0; i < a.m; ++i) {
      const double weight = 1.0 / std::sqrt(a.variance(i, i));
      h.MultRow(i, weight);
      z.MultRow(i, weight);
    }
  }
  RegularMatrix backwards;
  DiagonalMatrix noise_root;
  RegularMatrix h, z;
  UpperTriangularMatrix r0;
  RegularMatrix z0;
};

struct Ours {
  UpperTriangularMatrix r;
  RegularMatrix z;

  void predict(const bench::Model& a, const Prepared& p) {
    const RegularMatrix moved(r * p.backwards);
    UpperTriangularMatrix joint(a.q + a.n);
    RegularMatrix joint_z(a.q + a.n, 1);
    for (unsigned i = 0; i < a.q; ++i) *quorvel::packed_row(joint, i) = p.noise_root(i, i);

    RegularMatrix rows(a.n, a.q + a.n);
    CopySubMat(rows, 0, 0, -(moved * a.g));
    CopySubMat(rows, 0, a.q, moved);
    Householder_Reduction(a.n, joint, joint_z, rows, z);

    for (unsigned i = 0; i < a.n; ++i) {
      const double* const from = quorvel::packed_row(joint, a.q + i);
      std::copy(from, from + (a.n - i), quorvel::packed_row(r, i));
    }
    CopySubMat(z, 0, 0, joint_z, a.q, 0, a.n, 1);
  }

  void update(const Prepared& p) {
    RegularMatrix rows(p.h), rows_z(p.z);
    Householder_Reduction(rows.nrows(), r, z, rows, rows_z);
  }
};

struct Peer {
  explicit Peer(const bench::Model& a)
      : n(a.n), q(a.q), m(a.m), r(n, n), z(n), moved(n, n), joint(q + n, q + n + 1), stacked(n + m, n + 1),
        predicted(q + n, q + n + 1), updated(n + m, n + 1) {}
  Eigen::Index n, q, m;
  MatrixXd r;
  VectorXd z;
  MatrixXd moved, joint, stacked;
  Eigen::HouseholderQR<MatrixXd> predicted, updated;

  void step(const MatrixXd& backwards, const MatrixXd& g, const VectorXd& noise_root, const MatrixXd& h, const VectorXd& measured) {
    moved.noalias() = r.triangularView<Eigen::Upper>() * backwards;
    joint.topRows(q).setZero();
    joint.topLeftCorner(q, q).diagonal() = noise_root;
    joint.bottomLeftCorner(n, q).noalias() = -moved * g;
    joint.block(q, q, n, n) = moved;
    joint.col(q + n).tail(n) = z;
    predicted.compute(joint);

    stacked.topRows(n).setZero();
    stacked.topLeftCorner(n, n).triangularView<Eigen::Upper>() = predicted.matrixQR().block(q, q, n, n);
    stacked.col(n).head(n) = predicted.matrixQR().col(q + n).tail(n);
    stacked.bottomLeftCorner(m, n) = h;
    stacked.col(n).tail(m) = measured;
    updated.compute(stacked);
    r.triangularView<Eigen::Upper>() = updated.matrixQR().topLeftCorner(n, n);
    z = updated.matrixQR().col(n).head(n);
  }
};

// The information matrix and vector, which the signs of R's rows do not enter.
MatrixXd Information(const MatrixXd& r, const VectorXd& z) {
  const MatrixXd upper = r.triangularView<Eigen::Upper>();
  return bench::Joined(upper.transpose() * upper, upper.transpose() * z);
}

void Step(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const bench::Model model(size.n, size.m);
  const Prepared prepared(model);
  Ours ours{prepared.r0, prepared.z0};
  Peer peer(model);
  const MatrixXd backwards = bench::ToEigen(prepared.backwards), g = bench::ToEigen(model.g),
                 h = bench::ToEigen(prepared.h), r0 = bench::ToEigen(prepared.r0);
  const VectorXd noise_root = bench::ToEigen(prepared.noise_root).diagonal(), z = bench::ToEigen(prepared.z),
                 z0 = bench::ToEigen(prepared.z0);

  bench::Race race;
  race.add("Quorvel", "Householder_Reduction", [&](auto use) {
    bench::Restore(ours.r, prepared.r0);
    bench::Restore(ours.z, prepared.z0);
    ours.predict(model, prepared);
    ours.update(prepared);
    use(bench::Later([&] { return Information(bench::ToEigen(ours.r), bench::ToEigen(ours.z)); }));
  });
  race.add("Eigen", "HouseholderQR", [&](auto use) {
    peer.r = r0;
    peer.z = z0;
    peer.step(backwards, g, noise_root, h, z);
    use(bench::Later([&] { return Information(peer.r, peer.z); }));
  });
  hold(race);
}

const bench::Entered filter("filter", "square-root information filter", bench::FilterProgramme(), Step);

}  // namespace
