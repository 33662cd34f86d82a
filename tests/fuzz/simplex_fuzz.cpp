// Small integer programs and regressions beside an exact oracle: linear programs by looking at every vertex, least absolute
// sums by trying every set of interpolated observations, both in whole numbers.
#include <cmath>
#include <vector>

#include "fuzz/input.h"
#include "quorvel/quorvel.h"
#include "support/linear_program.h"

namespace {

using quorvel::fuzz::Input;
using quorvel::fuzz::Require;
using quorvel::test::Integer;
using quorvel::test::Optimum;
using quorvel::test::Program;
using quorvel::test::Verdict;

// Whether the program has a ray of solutions along which the objective is constant. A large multiple of the objective with
// every variable added is then unbounded, and only then, as that of any other ray outweighs the sum.
bool HasFreeRay(const Program& program) {
  Program tilted = program;
  for (Integer& c : tilted.objective) c = 1000 * c + 1;
  return quorvel::test::SolveByVertices(tilted).verdict == Verdict::kUnbounded;
}

void CheckProgram(Input& in) {
  const unsigned n = 1 + in.Below(3);
  unsigned counts[3];
  for (unsigned& count : counts) count = in.Below(3);
  Program program;
  for (unsigned k = 0; k < n; ++k) program.objective.push_back(in.Integer(-3, 3));
  constexpr Program::Sense senses[] = {Program::kAtMost, Program::kAtLeast, Program::kEqual};
  for (unsigned s = 0; s < 3; ++s) {
    for (unsigned r = 0; r < counts[s]; ++r) {
      Program::Row row;
      for (unsigned k = 0; k < n; ++k) row.coefficients.push_back(in.Integer(-3, 3));
      row.bound = in.Integer(0, 6);
      row.sense = senses[s];
      program.rows.push_back(row);
    }
  }
  const auto m = static_cast<unsigned>(program.rows.size());
  RegularMatrix a(m + 2, n + 1);
  for (unsigned k = 0; k < n; ++k) a(0, k + 1) = static_cast<double>(program.objective[k]);
  for (unsigned i = 0; i < m; ++i) {
    a(i + 1, 0) = static_cast<double>(program.rows[i].bound);
    for (unsigned k = 0; k < n; ++k) a(i + 1, k + 1) = -static_cast<double>(program.rows[i].coefficients[k]);
  }
  std::vector<int> nonbasic(n), basic(m + 1);
  const int code = Simplx(a, static_cast<int>(m), static_cast<int>(n), static_cast<int>(counts[0]),
                          static_cast<int>(counts[1]), static_cast<int>(counts[2]), nonbasic.data(), basic.data());
  const Optimum best = quorvel::test::SolveByVertices(program);
  // Documented: rounding may let such a program look unbounded.
  if (code == 1 && best.verdict == Verdict::kOptimal && HasFreeRay(program)) return;
  switch (best.verdict) {
    case Verdict::kInfeasible: Require(code == -1, "an infeasible program"); return;
    case Verdict::kUnbounded: Require(code == 1, "an unbounded program"); return;
    case Verdict::kOptimal: Require(code == 0, "a program with an optimum");
  }
  Require(std::fabs(a(0, 0) - best.value.value()) <= 1e-9 * (1.0 + std::fabs(best.value.value())), "another optimum");
  // The solution itself: feasible, and worth what it says.
  std::vector<double> x(n, 0.0);
  std::vector<bool> seen(n + m, false);
  for (unsigned k = 0; k < n; ++k) {
    Require(nonbasic[k] >= 0 && nonbasic[k] < static_cast<int>(n + m) && !seen[static_cast<unsigned>(nonbasic[k])],
            "nonbasic variables");
    seen[static_cast<unsigned>(nonbasic[k])] = true;
  }
  for (unsigned i = 0; i < m; ++i) {
    Require(basic[i] >= 0 && basic[i] < static_cast<int>(n + m) && !seen[static_cast<unsigned>(basic[i])],
            "basic variables");
    seen[static_cast<unsigned>(basic[i])] = true;
    if (basic[i] < static_cast<int>(n)) x[static_cast<unsigned>(basic[i])] = a(i + 1, 0);
  }
  double value = 0.0;
  for (unsigned k = 0; k < n; ++k) {
    Require(x[k] >= -1e-9, "a negative variable");
    value += static_cast<double>(program.objective[k]) * x[k];
  }
  Require(std::fabs(value - best.value.value()) <= 1e-9 * (1.0 + std::fabs(value)), "the solution is not worth it");
  for (const Program::Row& row : program.rows) {
    double left = 0.0;
    for (unsigned k = 0; k < n; ++k) left += static_cast<double>(row.coefficients[k]) * x[k];
    const double over = left - static_cast<double>(row.bound);
    Require((row.sense == Program::kAtLeast || over <= 1e-9) && (row.sense == Program::kAtMost || over >= -1e-9),
            "the solution breaks a constraint");
  }
}

// The least sum of |y - A x| as a fraction: some optimal x interpolates n independent observations. False when no n
// observations are independent.
bool LeastSum(const std::vector<Integer>& A, const std::vector<Integer>& y, unsigned n, double& least) {
  const auto m = static_cast<unsigned>(y.size());
  Integer best_over = -1, best_under = 1;
  const auto consider = [&](Integer det, const Integer* x) {  // x times det
    if (det == 0) return;
    Integer sum = 0;
    for (unsigned i = 0; i < m; ++i) {
      Integer r = y[i] * det;
      for (unsigned k = 0; k < n; ++k) r -= A[i * n + k] * x[k];
      sum += r < 0 ? -r : r;
    }
    const Integer under = det < 0 ? -det : det;
    if (best_over < 0 || sum * best_under < best_over * under) best_over = sum, best_under = under;
  };
  for (unsigned p = 0; p < m; ++p) {
    if (n == 1) {
      const Integer x[] = {y[p]};
      consider(A[p], x);
      continue;
    }
    for (unsigned q = p + 1; q < m; ++q) {
      const Integer a = A[2 * p], b = A[2 * p + 1], c = A[2 * q], d = A[2 * q + 1];
      const Integer x[] = {y[p] * d - b * y[q], a * y[q] - y[p] * c};
      consider(a * d - b * c, x);
    }
  }
  least = static_cast<double>(best_over) / static_cast<double>(best_under);
  return best_over >= 0;
}

void CheckRegression(Input& in) {
  const unsigned n = 1 + in.Below(2), m = n + in.Below(6);
  std::vector<Integer> A, y;
  RegularMatrix design(m, n), observed(m, 1), x(n, 1);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned k = 0; k < n; ++k) {
      A.push_back(in.Integer(-4, 4));
      design(i, k) = static_cast<double>(A.back());
    }
    y.push_back(in.Integer(-9, 9));
    observed(i) = static_cast<double>(y.back());
  }
  double least = 0.0;
  const bool determined = LeastSum(A, y, n, least);
  const int code = L1Regression(design, observed, x);
  if (!determined) {
    Require(code == 0 || code == 1, "a singular regression");
    return;
  }
  Require(code == 0, "a regression that has a solution");
  double sum = 0.0;
  for (unsigned i = 0; i < m; ++i) {
    double r = observed(i);
    for (unsigned k = 0; k < n; ++k) r -= design(i, k) * x(k);
    sum += std::fabs(r);
  }
  Require(std::fabs(sum - least) <= 1e-9 * (1.0 + least), "not the least sum");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input in(data, size);
  if (in.Below(2) == 0) {
    CheckProgram(in);
  } else {
    CheckRegression(in);
  }
  Require(GetErrorCode() == 0, "a code is pending");
  return 0;
}
