// Products of two general matrices, and of one with its own transpose.

#include <Eigen/Dense>

#include "race/armadillo.h"
#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;

// op(A) * op(B) for n x n operands; X says whether A, Y whether B is transposed.
template <bool X, bool Y>
void General(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  const MatrixXd ea = bench::ToEigen(a), eb = bench::ToEigen(b);
  const Columns ca = bench::ToColumns(a), cb = bench::ToColumns(b);
  MatrixXd ec(n, n);
  Columns cc(ca);
  const int order = static_cast<int>(n);
  const char ta = X ? 'T' : 'N', tb = Y ? 'T' : 'N';

  bench::Race race;
  race.add("Quorvel", "operator* / ATB / ABT", [&](auto use) {
    RegularMatrix c(X ? ATB(a, b) : Y ? ABT(a, b) : a * b);
    use(c);
  });
  const auto& x = bench::Transposed<X>(ea);
  const auto& y = bench::Transposed<Y>(eb);
  race.add("Eigen", "noalias", [&](auto use) {
    ec.noalias() = x * y;
    use(ec);
  });
  race.add("Eigen new", "operator*", [&](auto use) {
    const MatrixXd c = x * y;
    use(c);
  });
  if (n <= 24) {
    race.add("Eigen", "lazyProduct", [&](auto use) {
      ec.noalias() = x.lazyProduct(y);
      use(ec);
    });
  }
  race.add("OpenBLAS", "dgemm", [&](auto use) {
    dgemm_(&ta, &tb, &order, &order, &order, &bench::kOne, ca.data(), &order, cb.data(), &order, &bench::kZero,
           cc.data(), &order);
    use(cc);
  });
  if (!X && !Y) bench::AddArmadillo(race, "operator*", ea, eb, [](const auto& p, const auto& q) { return p * q; });
  hold(race);
}

// A' * A or A * A'.
template <bool X>
void OwnTranspose(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1);
  const MatrixXd ea = bench::ToEigen(a);
  const Columns ca = bench::ToColumns(a);
  MatrixXd ec(n, n);
  Columns cc(ca);
  const int order = static_cast<int>(n);
  const char ta = X ? 'T' : 'N', tb = X ? 'N' : 'T';

  bench::Race race;
  race.add("Quorvel", "ATA / AAT", [&](auto use) {
    SymmetricMatrix c(X ? ATA(a) : AAT(a));
    use(c);
  });
  const auto& x = bench::Transposed<X>(ea);
  const auto& y = bench::Transposed<!X>(ea);
  race.add("Eigen", "rankUpdate", [&](auto use) {
    ec.setZero();
    ec.selfadjointView<Eigen::Upper>().rankUpdate(x);
    use(bench::MirroredUpper(ec, n));
  });
  race.add("Eigen", "triangularView of the product", [&](auto use) {
    ec.triangularView<Eigen::Upper>() = x * y;
    use(bench::MirroredUpper(ec, n));
  });
  race.add("Eigen", "noalias, all of it", [&](auto use) {
    ec.noalias() = x * y;
    use(ec);
  });
  race.add("Eigen new", "operator*", [&](auto use) {
    const MatrixXd c = x * y;
    use(c);
  });
  race.add("OpenBLAS", "dsyrk", [&](auto use) {
    dsyrk_("U", &ta, &order, &order, &bench::kOne, ca.data(), &order, &bench::kZero, cc.data(), &order);
    use(bench::MirroredUpper(cc, n));
  });
  race.add("OpenBLAS", "dgemm", [&](auto use) {
    dgemm_(&ta, &tb, &order, &order, &order, &bench::kOne, ca.data(), &order, ca.data(), &order, &bench::kZero,
           cc.data(), &order);
    use(cc);
  });
  hold(race);
}

// Symmetric times general.
void SymmetricTimesGeneral(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const SymmetricMatrix s = bench::Symmetric(n, 1);
  const RegularMatrix b = bench::Regular(n, n, 2);
  const MatrixXd es = bench::ToEigen(s), eb = bench::ToEigen(b);
  const Columns cs = bench::ToColumns(s), cb = bench::ToColumns(b);
  MatrixXd ec(n, n);
  Columns cc(cb);
  const int order = static_cast<int>(n);

  bench::Race race;
  race.add("Quorvel", "operator*", [&](auto use) {
    RegularMatrix c(s * b);
    use(c);
  });
  race.add("Eigen", "selfadjointView", [&](auto use) {
    ec.noalias() = es.selfadjointView<Eigen::Upper>() * eb;
    use(ec);
  });
  race.add("Eigen", "all of it stored", [&](auto use) {
    ec.noalias() = es * eb;
    use(ec);
  });
  race.add("OpenBLAS", "dsymm", [&](auto use) {
    dsymm_("L", "U", &order, &order, &bench::kOne, cs.data(), &order, cb.data(), &order, &bench::kZero, cc.data(),
           &order);
    use(cc);
  });
  race.add("OpenBLAS", "dgemm", [&](auto use) {
    dgemm_("N", "N", &order, &order, &order, &bench::kOne, cs.data(), &order, cb.data(), &order, &bench::kZero,
           cc.data(), &order);
    use(cc);
  });
  hold(race);
}

const bench::Entered product("dense", "A*B", bench::FilterSizes(), General<false, false>);
const bench::Entered atb("dense", "ATB", bench::FilterSizes(), General<true, false>);
const bench::Entered abt("dense", "ABT", bench::FilterSizes(), General<false, true>);
const bench::Entered ata("dense", "ATA", bench::FilterSizes(), OwnTranspose<true>);
const bench::Entered aat("dense", "AAT", bench::FilterSizes(), OwnTranspose<false>);
const bench::Entered symmetric("dense", "S*B", bench::FilterSizes(), SymmetricTimesGeneral);

}  // namespace
