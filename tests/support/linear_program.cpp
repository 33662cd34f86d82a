#include "support/linear_program.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

namespace quorvel::test {
namespace {

using Matrix2 = std::vector<std::vector<Integer>>;

// Laplace expansion: the orders are 1 to 4.
Integer Determinant(const Matrix2& a) {
  const std::size_t n = a.size();
  if (n == 1) return a[0][0];
  Integer sum = 0;
  for (std::size_t c = 0; c < n; ++c) {
    Matrix2 minor;
    for (std::size_t r = 1; r < n; ++r) {
      std::vector<Integer> row;
      for (std::size_t k = 0; k < n; ++k) {
        if (k != c) row.push_back(a[r][k]);
      }
      minor.push_back(row);
    }
    sum += (c % 2 == 0 ? 1 : -1) * a[0][c] * Determinant(minor);
  }
  return sum;
}

// Calls visit(indices) for every choice of k out of count.
void ForEachChoice(std::size_t count, std::size_t k, const std::function<void(const std::vector<std::size_t>&)>& visit) {
  std::vector<std::size_t> chosen(k);
  const std::function<void(std::size_t, std::size_t)> choose = [&](std::size_t place, std::size_t from) {
    if (place == k) {
      visit(chosen);
      return;
    }
    for (std::size_t i = from; i + (k - place) <= count; ++i) {
      chosen[place] = i;
      choose(place + 1, i + 1);
    }
  };
  choose(0, 0);
}

bool Satisfies(const Program::Row& row, const std::vector<Integer>& over, Integer under) {
  Integer sum = 0;
  for (std::size_t k = 0; k < over.size(); ++k) sum += row.coefficients[k] * over[k];
  const Integer bound = row.bound * under;
  switch (row.sense) {
    case Program::kAtMost: return sum <= bound;
    case Program::kAtLeast: return sum >= bound;
    default: return sum == bound;
  }
}

// The best vertex of a set of rows (x >= 0 among them).
std::optional<Fraction> BestVertex(const std::vector<Program::Row>& rows, const std::vector<Integer>& objective) {
  const std::size_t n = objective.size();
  std::optional<Fraction> best;
  ForEachChoice(rows.size(), n, [&](const std::vector<std::size_t>& tight) {
    Matrix2 a;
    for (std::size_t i : tight) a.push_back(rows[i].coefficients);
    Integer under = Determinant(a);
    if (under == 0) return;
    std::vector<Integer> over(n);  // Cramer's rule
    for (std::size_t k = 0; k < n; ++k) {
      Matrix2 replaced = a;
      for (std::size_t i = 0; i < n; ++i) replaced[i][k] = rows[tight[i]].bound;
      over[k] = Determinant(replaced);
    }
    if (under < 0) {
      under = -under;
      for (Integer& v : over) v = -v;
    }
    if (!std::all_of(rows.begin(), rows.end(), [&](const Program::Row& row) { return Satisfies(row, over, under); })) return;
    Integer sum = 0;
    for (std::size_t k = 0; k < n; ++k) sum += objective[k] * over[k];
    const Fraction value{sum, under};
    if (!best || Less(*best, value)) best = value;
  });
  return best;
}

// Solves in place by elimination with row exchanges; false when singular.
bool SolveSquare(std::vector<std::vector<long double>> a, std::vector<long double>& b) {
  const std::size_t n = b.size();
  for (std::size_t k = 0; k < n; ++k) {
    std::size_t p = k;
    for (std::size_t i = k + 1; i < n; ++i) {
      if (std::fabs(a[i][k]) > std::fabs(a[p][k])) p = i;
    }
    if (std::fabs(a[p][k]) < 1e-11L) return false;
    std::swap(a[k], a[p]);
    std::swap(b[k], b[p]);
    for (std::size_t i = 0; i < n; ++i) {
      if (i == k) continue;
      const long double f = a[i][k] / a[k][k];
      for (std::size_t c = k; c < n; ++c) a[i][c] -= f * a[k][c];
      b[i] -= f * b[k];
    }
  }
  for (std::size_t k = 0; k < n; ++k) b[k] /= a[k][k];
  return true;
}

}  // namespace

Optimum SolveByVertices(const Program& program) {
  const std::size_t n = program.objective.size();
  std::vector<Program::Row> rows = program.rows;
  for (std::size_t k = 0; k < n; ++k) {
    Program::Row positive{std::vector<Integer>(n, 0), 0, Program::kAtLeast};
    positive.coefficients[k] = 1;
    rows.push_back(positive);
  }
  // x >= 0 leaves no room for a line, so a feasible set has a vertex.
  const std::optional<Fraction> best = BestVertex(rows, program.objective);
  if (!best) return {Verdict::kInfeasible};
  // Cut far out, the set is bounded; an optimum that moves out with the cut shows an unbounded objective.
  rows.push_back({std::vector<Integer>(n, 1), 100000, Program::kAtMost});
  const std::optional<Fraction> cut = BestVertex(rows, program.objective);
  if (cut && Less(*best, *cut)) return {Verdict::kUnbounded};
  return {Verdict::kOptimal, *best};
}

double AbsoluteSum(const std::vector<double>& A, const std::vector<double>& y, const std::vector<double>& x) {
  long double sum = 0;
  for (std::size_t i = 0; i < y.size(); ++i) {
    long double r = y[i];
    for (std::size_t k = 0; k < x.size(); ++k) r -= static_cast<long double>(A[i * x.size() + k]) * x[k];
    sum += std::fabs(r);
  }
  return static_cast<double>(sum);
}

double LeastAbsoluteSum(const std::vector<double>& A, const std::vector<double>& y, unsigned n) {
  double least = std::numeric_limits<double>::infinity();
  ForEachChoice(y.size(), n, [&](const std::vector<std::size_t>& rows) {
    std::vector<std::vector<long double>> a;
    std::vector<long double> b;
    for (std::size_t i : rows) {
      a.emplace_back(A.begin() + static_cast<std::ptrdiff_t>(i * n), A.begin() + static_cast<std::ptrdiff_t>((i + 1) * n));
      b.push_back(y[i]);
    }
    if (!SolveSquare(a, b)) return;
    least = std::min(least, AbsoluteSum(A, y, std::vector<double>(b.begin(), b.end())));
  });
  return least;
}

std::optional<bool> ProvesLeastSum(const std::vector<double>& A, const std::vector<double>& y,
                                   const std::vector<double>& x, double zero) {
  const std::size_t n = x.size();
  std::vector<std::vector<long double>> transposed(n);  // rows: unknowns, columns: the interpolated observations
  std::vector<long double> pull(n, 0);
  for (std::size_t i = 0; i < y.size(); ++i) {
    long double r = y[i];
    for (std::size_t k = 0; k < n; ++k) r -= static_cast<long double>(A[i * n + k]) * x[k];
    for (std::size_t k = 0; k < n; ++k) {
      if (std::fabs(r) <= zero) {
        transposed[k].push_back(A[i * n + k]);
      } else {
        pull[k] -= (r > 0 ? 1 : -1) * static_cast<long double>(A[i * n + k]);
      }
    }
  }
  if (transposed.empty() || transposed[0].size() != n || !SolveSquare(transposed, pull)) return std::nullopt;
  return std::all_of(pull.begin(), pull.end(), [](long double l) { return std::fabs(l) <= 1.0L + 1e-9L; });
}

}  // namespace quorvel::test
