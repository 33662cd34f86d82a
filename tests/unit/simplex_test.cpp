// The simplex method, against exact enumeration of all vertices.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/digest.h"
#include "support/linear_program.h"
#include "support/random.h"

namespace quorvel::test {
namespace {

struct Solution {
  int outcome;
  double value;
  std::vector<double> x;
  std::vector<int> nonbasic, basic;
};

// Sets the tableau up (rows must come as <=, >=, =) with some room to spare, which Simplx must not touch. Row i is
// multiplied by 1 + i * uneven, which changes the rounding and nothing else.
Solution Solve(const Program& program, double uneven) {
  const int n = static_cast<int>(program.objective.size());
  const int m = static_cast<int>(program.rows.size());
  RegularMatrix a(static_cast<unsigned>(m) + 3, static_cast<unsigned>(n) + 3);
  a = -77.0;
  int count[3] = {0, 0, 0};
  a(0, 0) = 0.0;
  for (int k = 0; k < n; ++k) a(0, unsigned(k) + 1) = static_cast<double>(program.objective[std::size_t(k)]);
  for (int i = 0; i < m; ++i) {
    const Program::Row& row = program.rows[std::size_t(i)];
    ++count[row.sense];
    const double scale = 1.0 + i * uneven;
    a(unsigned(i) + 1, 0) = scale * static_cast<double>(row.bound);
    for (int k = 0; k < n; ++k) {
      a(unsigned(i) + 1, unsigned(k) + 1) = -scale * static_cast<double>(row.coefficients[std::size_t(k)]);
    }
  }
  Solution run;
  run.nonbasic.assign(std::size_t(n) + 1, -5);
  run.basic.assign(std::size_t(m) + 1, -5);
  run.outcome = Simplx(a, m, n, count[0], count[1], count[2], run.nonbasic.data(), run.basic.data());
  run.value = a(0, 0);
  run.x.assign(std::size_t(n), 0.0);
  for (int i = 0; i < m; ++i) {
    const int variable = run.basic[std::size_t(i)];
    if (variable < n) run.x[std::size_t(variable)] = a(unsigned(i) + 1, 0);
  }
  EXPECT_EQ(run.nonbasic.back(), -5);
  EXPECT_EQ(run.basic.back(), -5);
  for (unsigned r = 0; r < a.nrows(); ++r) EXPECT_EQ(a(r, unsigned(n) + 2), -77.0);
  EXPECT_EQ(a(unsigned(m) + 2, 0), -77.0);
  digest::Feed(run.outcome);
  digest::Feed(run.value);
  digest::Feed(run.x.data(), run.x.size());
  for (int v : run.basic) digest::Feed(v);
  return run;
}

std::string Text(const Program& program) {
  const char* const senses[] = {" <= ", " >= ", " = "};
  std::string text = "max";
  for (Integer c : program.objective) text += " " + std::to_string(c);
  for (const Program::Row& row : program.rows) {
    text += ";";
    for (Integer c : row.coefficients) text += " " + std::to_string(c);
    text += senses[row.sense] + std::to_string(row.bound);
  }
  return text;
}

void ExpectFeasible(const Program& program, const std::vector<double>& x) {
  for (double v : x) EXPECT_GE(v, -1e-9);
  for (const Program::Row& row : program.rows) {
    double sum = 0;
    for (std::size_t k = 0; k < x.size(); ++k) sum += static_cast<double>(row.coefficients[k]) * x[k];
    const double bound = static_cast<double>(row.bound);
    EXPECT_TRUE(row.sense == Program::kAtLeast || sum <= bound + 1e-7) << sum;
    EXPECT_TRUE(row.sense == Program::kAtMost || sum >= bound - 1e-7) << sum;
  }
}

// The outcome, the optimum and a feasible x that reaches it.
Verdict ExpectSolved(const Program& program, double uneven = 0.0) {
  SCOPED_TRACE(Text(program));
  const Optimum want = SolveByVertices(program);
  const Solution got = Solve(program, uneven);
  if (want.verdict == Verdict::kInfeasible) {
    EXPECT_EQ(got.outcome, -1);
  } else if (want.verdict == Verdict::kUnbounded) {
    EXPECT_EQ(got.outcome, 1);
  } else {
    EXPECT_EQ(got.outcome, 0);
    EXPECT_NEAR(got.value, want.value.value(), 1e-9 * (1 + std::fabs(want.value.value())));
    ExpectFeasible(program, got.x);
    double reached = 0;
    for (std::size_t k = 0; k < got.x.size(); ++k) reached += static_cast<double>(program.objective[k]) * got.x[k];
    EXPECT_NEAR(reached, got.value, 1e-9 * (1 + std::fabs(got.value)));
  }
  return want.verdict;
}

Program::Row AtMost(std::vector<Integer> c, Integer bound) { return {std::move(c), bound, Program::kAtMost}; }
Program::Row AtLeast(std::vector<Integer> c, Integer bound) { return {std::move(c), bound, Program::kAtLeast}; }
Program::Row Equal(std::vector<Integer> c, Integer bound) { return {std::move(c), bound, Program::kEqual}; }

TEST(Simplex, OfTheDocumentation) {
  const Solution run = Solve({{1, 1}, {AtMost({1, 2}, 4), AtMost({3, 1}, 6)}}, 0.0);
  EXPECT_EQ(run.outcome, 0);
  EXPECT_DOUBLE_EQ(run.value, 2.8);
  EXPECT_DOUBLE_EQ(run.x[0], 1.6);
  EXPECT_DOUBLE_EQ(run.x[1], 1.2);
  // Both constraints are tight: their slacks (variables 2 and 3) are not basic.
  EXPECT_EQ(run.nonbasic[0] + run.nonbasic[1], 5);
}

TEST(Simplex, NothingToGain) {
  const Solution run = Solve({{-1, -2}, {AtMost({1, 1}, 3)}}, 0.0);
  EXPECT_EQ(run.outcome, 0);
  EXPECT_EQ(run.value, 0.0);
  EXPECT_EQ(run.nonbasic[0], 0);
  EXPECT_EQ(run.nonbasic[1], 1);
  EXPECT_EQ(run.basic[0], 2);
}

TEST(Simplex, EmptyPrograms) {
  EXPECT_EQ(Solve({{}, {}}, 0.0).outcome, 0);
  EXPECT_EQ(Solve({{1}, {}}, 0.0).outcome, 1);
  EXPECT_EQ(Solve({{-1}, {}}, 0.0).outcome, 0);
  // No variables: 0 <= 3 holds, 0 >= 2 does not, 0 = 0 does.
  EXPECT_EQ(Solve({{}, {AtMost({}, 3)}}, 0.0).outcome, 0);
  EXPECT_EQ(Solve({{}, {AtLeast({}, 2)}}, 0.0).outcome, -1);
  EXPECT_EQ(Solve({{}, {Equal({}, 0)}}, 0.0).outcome, 0);
}

TEST(Simplex, KindsOfConstraints) {
  EXPECT_EQ(ExpectSolved({{2, 3}, {AtMost({1, 1}, 4), AtLeast({1, 0}, 1), Equal({1, 2}, 5)}}), Verdict::kOptimal);
  EXPECT_EQ(ExpectSolved({{1, 0}, {AtLeast({1, 1}, 2)}}), Verdict::kUnbounded);
  EXPECT_EQ(ExpectSolved({{1, 0}, {AtMost({1, 1}, 2), AtLeast({1, 1}, 3)}}), Verdict::kInfeasible);
  EXPECT_EQ(ExpectSolved({{-1, -1}, {AtLeast({2, 1}, 4), AtLeast({1, 3}, 6)}}), Verdict::kOptimal);
  EXPECT_EQ(ExpectSolved({{-3, 1}, {Equal({1, 1}, 4), Equal({1, -1}, 2)}}), Verdict::kOptimal);
  EXPECT_EQ(ExpectSolved({{0, 0}, {Equal({1, 1}, 4), Equal({1, 1}, 5)}}), Verdict::kInfeasible);
}

// The last equality is the sum of the others and says nothing new; its row is rounding noise in the end and must not
// become a pivot.
TEST(Simplex, RedundantEqualities) {
  Random random(81);
  int optimal = 0;
  for (int trial = 0; trial < 300; ++trial) {
    Program program;
    program.rows = {AtMost({1, 1, 1}, random.Integer(3, 12))};
    Program::Row sum = Equal({0, 0, 0}, 0);
    for (int k = 0; k < 3; ++k) program.objective.push_back(random.Integer(-4, 4));
    for (int i = random.Integer(1, 2); i-- > 0;) {
      Program::Row row = Equal({}, random.Integer(0, 9));
      for (int k = 0; k < 3; ++k) row.coefficients.push_back(random.Integer(-3, 7));
      for (std::size_t k = 0; k < 3; ++k) sum.coefficients[k] += row.coefficients[k];
      sum.bound += row.bound;
      program.rows.push_back(row);
    }
    program.rows.push_back(sum);
    optimal += ExpectSolved(program, 0.3) == Verdict::kOptimal;
  }
  EXPECT_GT(optimal, 100);
}

TEST(Simplex, RandomPrograms) {
  Random random(82);
  int seen[3] = {0, 0, 0};
  for (int trial = 0; trial < 800; ++trial) {
    const int n = random.Integer(1, 3);
    Program program;
    for (int k = 0; k < n; ++k) program.objective.push_back(random.Integer(-5, 5));
    for (Program::Sense sense : {Program::kAtMost, Program::kAtLeast, Program::kEqual}) {
      const int rows = random.Integer(0, sense == Program::kAtMost ? 3 : 2);
      for (int i = 0; i < rows; ++i) {
        Program::Row row{{}, random.Integer(0, 8), sense};
        for (int k = 0; k < n; ++k) row.coefficients.push_back(random.Integer(-5, 5));
        program.rows.push_back(row);
      }
    }
    ++seen[static_cast<int>(ExpectSolved(program))];
  }
  for (int count : seen) EXPECT_GT(count, 60);
}

// Cycles under the plain largest-coefficient rule (Beale 1955), scaled to integers by powers of the variables.
TEST(Simplex, DegenerateProgramsEnd) {
  // maximise 3/4 x1 - 150 x2 + 1/50 x3 - 6 x4 subject to 1/4 x1 - 60 x2 - 1/25 x3 + 9 x4 <= 0,
  // 1/2 x1 - 90 x2 - 1/50 x3 + 3 x4 <= 0, x3 <= 1; the optimum is 1/20.
  RegularMatrix a(5, 5);
  const double objective[] = {0.75, -150, 0.02, -6};
  const double rows[3][5] = {{0, 0.25, -60, -0.04, 9}, {0, 0.5, -90, -0.02, 3}, {1, 0, 0, 1, 0}};
  for (unsigned k = 0; k < 4; ++k) a(0, k + 1) = objective[k];
  for (unsigned i = 0; i < 3; ++i) {
    a(i + 1, 0) = rows[i][0];
    for (unsigned k = 1; k <= 4; ++k) a(i + 1, k) = -rows[i][k];
  }
  int nonbasic[4], basic[3];
  EXPECT_EQ(Simplx(a, 3, 4, 3, 0, 0, nonbasic, basic), 0);
  EXPECT_NEAR(a(0, 0), 0.05, 1e-15);
  digest::Feed(a);
}

TEST(Simplex, NeitherConsumesNorLooksAtAPendingCode) {
  RegularMatrix& a = *new RegularMatrix(3, 2);
  a.set_dispensable(true);
  a.data()[1] = 1.0;   // maximise x
  a.data()[2] = 4.0;   // 2 x <= 4
  a.data()[3] = -2.0;
  a.set_nsing(6);
  int nonbasic, basic;
  int pending = 93;
  abort_reset();
  abort_set(pending);
  EXPECT_EQ(Simplx(a, 1, 1, 1, 0, 0, &nonbasic, &basic), 0);
  abort_reset();
  EXPECT_EQ(a(0, 0), 2.0);
  EXPECT_EQ(a.nsing(), 6);
  a.DestroyIfDispensable();
}

class SimplexPreconditions : public ::testing::Test {
 protected:
  void SetUp() override {
    KeepsBlocks();
    GTEST_FLAG_SET(death_test_style, "fast");
  }
  int Call(RegularMatrix& a, int m, int n, int m1, int m2, int m3) {
    int nonbasic[8], basic[8];
    return Simplx(a, m, n, m1, m2, m3, nonbasic, basic);
  }
};

#define EXPECT_BROKEN(call, condition) \
  EXPECT_DEATH(call, "utility:[0-9]+: int Simplx\\(RegularMatrix ?&, int, int, int, int, int, int ?\\*, int ?\\*\\): Assertion `" condition "' failed\\.")

TEST_F(SimplexPreconditions, EndTheProcess) {
  RegularMatrix a(4, 3);
  EXPECT_EQ(Call(a, 2, 2, 2, 0, 0), 0);
  EXPECT_BROKEN(Call(a, 2, 2, 1, 0, 0), "m == m1 \\+ m2 \\+ m3");
  EXPECT_BROKEN(Call(a, 3, 2, 3, 0, 0), "m \\+ 2 <= \\(int\\)a\\.nrows\\(\\)");
  EXPECT_BROKEN(Call(a, 2, 3, 2, 0, 0), "n < \\(int\\)a\\.ncols\\(\\)");
  a(2, 0) = -1e-300;
  EXPECT_BROKEN(Call(a, 2, 2, 2, 0, 0), "0\\.0 <= a\\(i\\+1,0\\)");
  a(2, 0) = std::numeric_limits<double>::quiet_NaN();
  EXPECT_BROKEN(Call(a, 2, 2, 2, 0, 0), "0\\.0 <= a\\(i\\+1,0\\)");
  a(2, 0) = -0.0;
  EXPECT_EQ(Call(a, 2, 2, 2, 0, 0), 0);
  EXPECT_EQ(Call(a, 2, 0, 2, 0, 0), 0);
  EXPECT_EQ(Call(a, 2, -1, 2, 0, 0), 0);  // is not refused: there are no variables
}

}  // namespace
}  // namespace quorvel::test
