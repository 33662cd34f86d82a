// Sums and transposition: what memory and allocation cost.

#include <Eigen/Dense>

#include "race/lapack.h"
#include "race/race.h"
#include "race/samples.h"

namespace {

using bench::Columns;
using Eigen::MatrixXd;

void Sum(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  const MatrixXd ea = bench::ToEigen(a), eb = bench::ToEigen(b);
  const Columns ca = bench::ToColumns(a), cb = bench::ToColumns(b);
  MatrixXd ec(n, n);
  Columns cc(ca);
  const int count = static_cast<int>(n * n);

  bench::Race race;
  race.add("Quorvel", "operator+", [&](auto use) {
    RegularMatrix c(a + b);
    use(c);
  });
  race.add("Eigen", "into a matrix", [&](auto use) {
    ec = ea + eb;
    use(ec);
  });
  race.add("Eigen new", "operator+", [&](auto use) {
    const MatrixXd c = ea + eb;
    use(c);
  });
  race.add("OpenBLAS", "dcopy, daxpy", [&](auto use) {
    dcopy_(&count, ca.data(), &bench::kUnit, cc.data(), &bench::kUnit);
    daxpy_(&count, &bench::kOne, cb.data(), &bench::kUnit, cc.data(), &bench::kUnit);
    use(cc);
  });
  hold(race);
}

void SumInto(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1), b = bench::Regular(n, n, 2);
  const MatrixXd ea = bench::ToEigen(a), eb = bench::ToEigen(b);
  MatrixXd ec(n, n);
  RegularMatrix c(n, n);

  bench::Race race;
  race.add("Quorvel", "Plus(c, a, b)", [&](auto use) { use(Plus(c, a, b)); });
  race.add("Eigen", "into a matrix", [&](auto use) {
    ec = ea + eb;
    use(ec);
  });
  hold(race);
}

void SumOfSymmetric(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const SymmetricMatrix a = bench::Symmetric(n, 1), b = bench::Symmetric(n, 2);
  const MatrixXd ea = bench::ToEigen(a), eb = bench::ToEigen(b);
  MatrixXd ec(n, n);

  bench::Race race;
  race.add("Quorvel", "operator+", [&](auto use) {
    SymmetricMatrix c(a + b);
    use(c);
  });
  race.add("Eigen new", "operator+", [&](auto use) {
    const MatrixXd c = ea + eb;
    use(c);
  });
  race.add("Eigen", "all of it", [&](auto use) {
    ec = ea + eb;
    use(ec);
  });
  race.add("Eigen", "triangularView", [&](auto use) {
    ec.triangularView<Eigen::Upper>() = ea + eb;
    use(bench::MirroredUpper(ec, n));
  });
  hold(race);
}

void Transpose(bench::Size size, const std::function<void(bench::Race&)>& hold) {
  const unsigned n = size.n;
  const RegularMatrix a = bench::Regular(n, n, 1);
  const MatrixXd ea = bench::ToEigen(a);
  const Columns ca = bench::ToColumns(a);
  MatrixXd ec(n, n);
  Columns cc(ca);
  const int order = static_cast<int>(n);

  bench::Race race;
  race.add("Quorvel", "transpose", [&](auto use) {
    RegularMatrix c(transpose(a));
    use(c);
  });
  race.add("Eigen", "transpose", [&](auto use) {
    ec = ea.transpose();
    use(ec);
  });
  race.add("Eigen new", "transpose", [&](auto use) {
    const MatrixXd c = ea.transpose();
    use(c);
  });
  race.add("OpenBLAS", "domatcopy", [&](auto use) {
    constexpr int by_columns = 102, transposed = 112;
    cblas_domatcopy(by_columns, transposed, order, order, 1.0, ca.data(), order, cc.data(), order);
    use(cc);
  });
  hold(race);
}

const bench::Entered sum("dense", "A+B", bench::FilterSizes(), Sum);
const bench::Entered into("dense", "Plus(C A B)", bench::FilterSizes(), SumInto);
const bench::Entered symmetric("dense", "P+Q symmetric", bench::FilterSizes(), SumOfSymmetric);
const bench::Entered transposition("dense", "transpose", bench::FilterSizes(), Transpose);

}  // namespace
