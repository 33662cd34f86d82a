// Certified regression problems (NIST Statistical Reference Datasets) by every road to a least-squares solution.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "data/files.h"
#include "quorvel/quorvel.h"
#include "support/digest.h"

namespace quorvel::test::data {
namespace {

struct Regression {
  std::string name;
  unsigned degree;  // of a polynomial; 0: the predictors as they are
  RegularMatrix A, y, t;
  std::vector<double> certified;
};

// Rows of the file: response first. `intercept` puts a column of ones before the predictors.
Regression Read(const std::string& name, unsigned degree, bool intercept) {
  Regression set;
  set.name = name;
  set.degree = degree;
  const std::vector<std::vector<double>> rows = NumericTail("nist/" + name + ".dat");
  std::vector<double> a, y, t;
  for (const std::vector<double>& row : rows) {
    y.push_back(row[0]);
    t.push_back(row[1]);
    if (intercept) a.push_back(1.0);
    a.insert(a.end(), row.begin() + 1, row.end());
    for (unsigned power = 2; power <= degree; ++power) a.push_back(a.back() * row[1]);
  }
  const auto m = static_cast<unsigned>(rows.size()), n = static_cast<unsigned>(a.size() / rows.size());
  set.A.Assign(a.data(), m, n);
  set.y.Assign(y.data(), m, 1);
  set.t.Assign(t.data(), m, 1);
  const Table certified = ReadCsv("nist/certified.csv");
  for (std::size_t i = 0; i < certified.rows.size(); ++i) {
    if (certified.at(i, "set") != name) continue;
    const double value = Number(certified.at(i, "certified_estimate"));
    if (certified.at(i, "parameter")[0] == 'B') set.certified.push_back(value);
    EXPECT_TRUE(certified.at(i, "parameter") != "observations" || value == m) << name;
  }
  EXPECT_EQ(set.certified.size(), n) << name;
  return set;
}

std::vector<double> BackSubstituted(const UpperTriangularMatrix& R, const std::vector<double>& z) {
  std::vector<double> x(z);
  for (unsigned i = R.ndim(); i-- > 0;) {
    for (unsigned k = i + 1; k < R.ndim(); ++k) x[i] -= R(i, k) * x[k];
    x[i] /= R(i, i);
  }
  return x;
}

// Square-root information form, `block` observations at a time.
std::vector<double> ByReduction(const Regression& set, unsigned block) {
  const unsigned m = set.A.nrows(), n = set.A.ncols();
  UpperTriangularMatrix R(n);
  RegularMatrix zR(n, 1);
  for (unsigned first = 0; first < m; first += block) {
    const unsigned last = std::min(first + block, m) - 1;
    RegularMatrix A(set.A(first, last, 0, n - 1)), z(set.y(first, last, 0, 0));
    Householder_Reduction(last - first + 1, R, zR, A, z);
  }
  digest::Feed(R);
  digest::Feed(zR);
  return BackSubstituted(R, std::vector<double>(zR.data(), zR.data() + n));
}

// Triangular factor of [A y].
std::vector<double> ByTransformation(const Regression& set) {
  const unsigned m = set.A.nrows(), n = set.A.ncols();
  RegularMatrix Ay(m, n + 1);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned k = 0; k < n; ++k) Ay(i, k) = set.A(i, k);
    Ay(i, n) = set.y(i);
  }
  HouseholderTransformation(Ay, true);
  digest::Feed(Ay);
  UpperTriangularMatrix R(n);
  std::vector<double> z;
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned k = i; k < n; ++k) R(i, k) = Ay(i, k);
    z.push_back(Ay(i, n));
  }
  return BackSubstituted(R, z);
}

// N x = b with N = A'A, b = A'y.
std::vector<double> ByNormalEquations(const Regression& set) {
  const SymmetricMatrix N(ATA(set.A));
  const RegularMatrix b(ATB(set.A, set.y));
  const RegularMatrix x(InverseByCholesky(N, 0.0) * b);
  return std::vector<double>(x.data(), x.data() + x.nrows());
}

std::vector<double> BySolving(const Regression& set) {
  const SymmetricMatrix N(ATA(set.A));
  const RegularMatrix b(ATB(set.A, set.y));
  const RegularMatrix x(N > b);
  return std::vector<double>(x.data(), x.data() + x.nrows());
}

std::vector<double> ByPolyFit(const Regression& set) {
  RegularMatrix c(set.degree + 1, 1);
  double rms = 0;
  PolyFit(set.t, set.y, c, rms);
  digest::Feed(c);
  digest::Feed(rms);
  return std::vector<double>(c.data(), c.data() + c.nrows());
}

// Correct decimal digits of the worst coefficient, 15 at the most.
double Digits(const std::vector<double>& got, const std::vector<double>& certified) {
  double digits = 15;
  for (std::size_t k = 0; k < certified.size(); ++k) {
    digits = std::min(digits, -std::log10(std::fabs(got[k] - certified[k]) / std::fabs(certified[k]) + 1e-16));
  }
  return digits;
}

struct Road {
  std::string name;
  std::function<std::vector<double>(const Regression&)> solve;
  bool polynomials_only;
  // Digits that Norris, NoInt1, Longley, Wampler1 and Wampler3 must have. Of 16, orthogonal transformations lose those of
  // the condition number (columns scaled to one length: 3, 1, 4e4, 2e3, 2e3), normal equations twice as many; and the
  // small coefficients of a polynomial of degree 5 on 0 .. 20 weigh 10^6 times less than the large, which costs them more.
  // Solving refines with residuals of twice the precision: only what was lost in forming N is lost.
  int needed[5];
};

std::vector<Road> Roads() {
  return {
      {"reduction, 1 at a time", [](const Regression& r) { return ByReduction(r, 1); }, false, {10, 13, 9, 8, 8}},
      {"reduction, 3 at a time", [](const Regression& r) { return ByReduction(r, 3); }, false, {10, 13, 9, 8, 8}},
      {"reduction, 8 at a time", [](const Regression& r) { return ByReduction(r, 8); }, false, {10, 13, 9, 8, 8}},
      {"reduction, all at once", [](const Regression& r) { return ByReduction(r, 1000); }, false, {10, 13, 9, 8, 8}},
      {"triangle of [A y]", ByTransformation, false, {10, 13, 9, 8, 8}},
      {"normal equations, inverse", ByNormalEquations, false, {10, 13, 6, 5, 5}},
      {"normal equations, solved", BySolving, false, {10, 13, 8, 13, 13}},
      {"PolyFit", ByPolyFit, true, {10, 0, 0, 13, 13}},
  };
}

TEST(NistData, LinearRegression) {
  NEEDS_DATA("nist/certified.csv");
  const std::vector<Regression> sets = {Read("Norris", 1, true), Read("NoInt1", 1, false), Read("Longley", 0, true),
                                        Read("Wampler1", 5, true), Read("Wampler3", 5, true)};
  std::printf("  correct digits (needed)     ");
  for (const Regression& set : sets) std::printf("%14s", set.name.c_str());
  std::printf("\n");
  for (const Road& road : Roads()) {
    std::printf("  %-26s", road.name.c_str());
    for (std::size_t s = 0; s < sets.size(); ++s) {
      const Regression& set = sets[s];
      if (road.polynomials_only && (set.degree == 0 || set.A.ncols() != set.degree + 1)) {
        std::printf("%14s", "-");
        continue;
      }
      const double digits = Digits(road.solve(set), set.certified);
      EXPECT_GE(digits, road.needed[s]) << road.name << ", " << set.name;
      std::printf("%9.1f (%2d)", digits, road.needed[s]);
    }
    std::printf("\n");
  }
}

// Mean and standard deviation are the regression on a column of ones.
TEST(NistData, UnivariateStatistics) {
  NEEDS_DATA("nist/Lew.dat");
  const struct {
    const char* name;
    unsigned observations;
    double mean, deviation;
    int needed;  // digits of the deviation: those that are left after the mean is taken off
  } sets[] = {{"Lew", 200, -177.435000000000, 277.332168044316, 14},
              {"NumAcc1", 3, 10000002, 1, 8},
              {"NumAcc3", 1001, 1000000.2, 0.1, 8}};
  for (const auto& set : sets) {
    const std::vector<std::vector<double>> rows = NumericTail(std::string("nist/") + set.name + ".dat");
    const auto m = static_cast<unsigned>(rows.size());
    ASSERT_EQ(m, set.observations);
    UpperTriangularMatrix R(1);
    RegularMatrix zR(1, 1), ones(m, 1), y(m, 1);
    ones = 1.0;
    for (unsigned i = 0; i < m; ++i) y(i) = rows[i][0];
    Householder_Reduction(m, R, zR, ones, y);
    const double mean = zR(0) / R(0, 0), deviation = std::sqrt(y.SumSqCol(0) / (m - 1));
    EXPECT_NEAR(mean, set.mean, 1e-14 * std::fabs(set.mean)) << set.name;
    const double digits = Digits({deviation}, {set.deviation});
    EXPECT_GE(digits, set.needed) << set.name;
    std::printf("  %-8s mean %.10g, deviation %.10g (%.1f digits)\n", set.name, mean, deviation, digits);
  }
}

}  // namespace
}  // namespace quorvel::test::data
