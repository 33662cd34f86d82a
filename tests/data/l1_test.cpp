// L1 regression on data sets of the robust-statistics literature, against minima certified in exact arithmetic.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "data/files.h"
#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/linear_program.h"

namespace quorvel::test::data {
namespace {

TEST(L1Data, CertifiedMinima) {
  NEEDS_DATA("l1/l1_solutions.csv");
  const Table solutions = ReadCsv("l1/l1_solutions.csv");
  ASSERT_GE(solutions.rows.size(), 9u);
  for (std::size_t s = 0; s < solutions.rows.size(); ++s) {
    const std::string& set = solutions.at(s, "set");
    SCOPED_TRACE(set);
    const Table table = ReadCsv("l1/" + set + ".csv");
    const auto m = static_cast<unsigned>(table.rows.size());
    const auto n = static_cast<unsigned>(table.header.size());
    ASSERT_EQ(m, static_cast<unsigned>(Number(solutions.at(s, "m"))));
    ASSERT_EQ(n, static_cast<unsigned>(Number(solutions.at(s, "n"))));
    // The response comes first; an intercept takes its place among the predictors.
    std::vector<double> a, y;
    for (const std::vector<std::string>& row : table.rows) {
      y.push_back(Number(row[0]));
      a.push_back(1.0);
      for (std::size_t k = 1; k < row.size(); ++k) a.push_back(Number(row[k]));
    }
    RegularMatrix A(m, n), x;
    A.Assign(a.data(), m, n);
    RegularMatrix column(m, 1);
    column.Assign(y.data(), m, 1);
    ASSERT_EQ(L1Regression(A, column, x), 0);
    digest::Feed(x);

    const double certified = Number(solutions.at(s, "sum_abs_residuals"));
    const std::vector<double> solution(x.data(), x.data() + n);
    const double sum = AbsoluteSum(a, y, solution);
    EXPECT_NEAR(sum, certified, 1e-9 * certified);
    std::printf("  %-10s %2u x %u  sum %.10g", set.c_str(), m, n, sum);
    if (solutions.at(s, "unique") == "yes") {
      const std::vector<double> want = Numbers(solutions.at(s, "coefficients"));
      ASSERT_EQ(want.size(), n);
      double worst = 0;
      for (unsigned k = 0; k < n; ++k) worst = std::fmax(worst, std::fabs(solution[k] - want[k]) / std::fabs(want[k]));
      EXPECT_LE(worst, 1e-8);
      std::printf("  coefficients within %.0e", worst);
    }
    std::printf("\n");
  }
}

}  // namespace
}  // namespace quorvel::test::data
