// Published tables of associated Legendre functions.

#include <gtest/gtest.h>

#include <cmath>
#include <map>

#include "data/files.h"
#include "data/harmonics.h"

namespace quorvel::test::data {
namespace {

// The error that counts is that of the fully normalised function, which is of order 1.
double Normalised(unsigned n, unsigned m) { return SchmidtFactor(n, m) * std::sqrt(2.0 * n + 1); }

TEST(LegendreData, PublishedTable) {
  NEEDS_DATA("legendre/assoc_legendre.csv");
  const Table table = ReadCsv("legendre/assoc_legendre.csv");
  ASSERT_EQ(table.rows.size(), 277u);
  double worst = 0;
  for (const auto& row : table.rows) {
    const auto n = static_cast<unsigned>(Number(row[0])), m = static_cast<unsigned>(Number(row[1]));
    LowerTriangularMatrix P(n + 1);
    LegendreFunctions(P, Number(row[3]));
    const double error = (P(n, m) - Number(row[4])) * Normalised(n, m);
    EXPECT_NEAR(error, 0.0, 1e-13) << n << " " << m << " at " << row[3];
    worst = std::fmax(worst, std::fabs(error));
  }
  std::printf("  %zu values, normalised within %.1e\n", table.rows.size(), worst);
}

TEST(LegendreData, FullTriangles) {
  NEEDS_DATA("legendre/legendre_table_N14.csv");
  const Table table = ReadCsv("legendre/legendre_table_N14.csv");
  ASSERT_EQ(table.rows.size(), 420u);
  std::map<std::string, LowerTriangularMatrix> triangles;
  for (const auto& row : table.rows) {
    if (triangles.find(row[0]) == triangles.end()) LegendreFunctions(triangles.try_emplace(row[0], 14u).first->second, Number(row[0]));
    const LowerTriangularMatrix& P = triangles.at(row[0]);
    const auto n = static_cast<unsigned>(Number(row[1])), m = static_cast<unsigned>(Number(row[2]));
    EXPECT_NEAR((P(n, m) - Number(row[3])) * Normalised(n, m), 0.0, 1e-13) << n << " " << m << " at " << row[0];
  }
  EXPECT_EQ(triangles.size(), 4u);
}

}  // namespace
}  // namespace quorvel::test::data
