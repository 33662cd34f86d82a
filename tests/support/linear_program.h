// Oracles for small linear programs and L1 regressions, by brute force.

#ifndef QUORVEL_TESTS_SUPPORT_LINEAR_PROGRAM_H
#define QUORVEL_TESTS_SUPPORT_LINEAR_PROGRAM_H

#include <cstdint>
#include <optional>
#include <vector>

namespace quorvel::test {

using Integer = std::int64_t;

// Exact fraction of small integers.
struct Fraction {
  Integer over;
  Integer under = 1;  // positive
  double value() const { return static_cast<double>(over) / static_cast<double>(under); }
};

inline bool Less(Fraction a, Fraction b) { return a.over * b.under < b.over * a.under; }

// Maximise objective . x over x >= 0, with n variables.
struct Program {
  enum Sense { kAtMost, kAtLeast, kEqual };
  struct Row {
    std::vector<Integer> coefficients;
    Integer bound;
    Sense sense;
  };
  std::vector<Integer> objective;
  std::vector<Row> rows;
};

enum class Verdict { kInfeasible, kOptimal, kUnbounded };

struct Optimum {
  Verdict verdict;
  Fraction value{0};
};

// Looks at every vertex in exact integer arithmetic. Coefficients must be small (below 10 or so).
Optimum SolveByVertices(const Program& program);

// The least sum of |y - A x| over all x: the optimum interpolates n observations, so every choice of n rows is tried
// (long double, Gaussian elimination). A is m x n by rows.
double LeastAbsoluteSum(const std::vector<double>& A, const std::vector<double>& y, unsigned n);

// The sum at one x.
double AbsoluteSum(const std::vector<double>& A, const std::vector<double>& y, const std::vector<double>& x);

// Proves that x attains the least sum, for problems too large to try all: with r = y - A x zero on exactly n rows B
// (|r| <= zero) and s the signs of the others, x is optimal when |solution of B' l = -sum s(i) a(i)| <= 1. False when
// the proof fails; nothing when not exactly n residuals vanish.
std::optional<bool> ProvesLeastSum(const std::vector<double>& A, const std::vector<double>& y,
                                   const std::vector<double>& x, double zero);

}  // namespace quorvel::test

#endif
