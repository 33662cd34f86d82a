// Matrices of the Matrix Market: factors, inverses, solutions and determinants against the known properties.

#include <gtest/gtest.h>

#include <cctype>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "data/files.h"
#include "quorvel/quorvel.h"
#include "support/digest.h"

namespace quorvel::test::data {
namespace {

// A file of either format as a dense matrix; the other triangle of a symmetric one is filled in.
RegularMatrix Read(const std::string& name) {
  const std::vector<std::string> lines = Lines("matrixmarket/" + name + ".mtx");
  const bool coordinate = lines[0].find("coordinate") != std::string::npos;
  const bool symmetric = lines[0].find("symmetric") != std::string::npos;
  RegularMatrix a;
  bool sized = false;
  unsigned i = 0, j = 0;  // next element of the array format, which goes down the columns
  for (const std::string& line : lines) {
    if (line.empty() || line[0] == '%') continue;
    const std::vector<double> v = Numbers(line);
    if (!sized) {
      a.SetSize(static_cast<unsigned>(v[0]), static_cast<unsigned>(v[1]), false);
      a = 0.0;
      sized = true;
      continue;
    }
    if (coordinate) {
      i = static_cast<unsigned>(v[0]) - 1;
      j = static_cast<unsigned>(v[1]) - 1;
    }
    const double value = coordinate ? (v.size() == 3 ? v[2] : 1.0) : v[0];
    a(i, j) = value;
    if (symmetric) a(j, i) = value;
    if (!coordinate && ++i == a.nrows()) {
      ++j;
      i = symmetric ? j : 0;
    }
  }
  return a;
}

// A row of the table of known properties.
struct Properties {
  unsigned rows = 0, cols = 0;
  double frobenius = 0, condition = 0, log_determinant = 0, smallest_pivot = 0;
};

Properties Known(const std::string& name) {
  const Table table = ReadCsv("matrixmarket/properties.csv");
  Properties known;
  for (std::size_t i = 0; i < table.rows.size(); ++i) {
    if (table.at(i, "name") != name) continue;
    known.rows = static_cast<unsigned>(Number(table.at(i, "rows")));
    known.cols = static_cast<unsigned>(Number(table.at(i, "cols")));
    known.frobenius = Number(table.at(i, "frobenius_norm"));
    known.condition = Number(table.at(i, "cond2"));
    known.smallest_pivot = Number(table.at(i, "min_rjj_over_colnorm"));
    const std::string& determinant = table.at(i, "log_abs_det");
    if (determinant != "-") known.log_determinant = Number(determinant);
  }
  EXPECT_GT(known.rows, 0u) << name;
  return known;
}

RegularMatrix Ones(unsigned n) {
  RegularMatrix ones(n, 1);
  ones = 1.0;
  return ones;
}

// Half a unit of the last digit of the tabulated logarithms.
constexpr double kPrinted = 0.5e-7;

// Largest deviation from 1.
double FromOnes(const RegularMatrix& x) {
  double worst = 0;
  for (unsigned i = 0; i < x.nrows(); ++i) worst = std::fmax(worst, std::fabs(x(i) - 1.0));
  return worst;
}

bool Same(const RegularMatrix& a, const RegularMatrix& b) { return RegularMatrix(a - b) == 0.0; }

// The last diagonal element of a square triangular factor has no reflection to make it positive.
template <class K>
double LogOfDiagonal(const K& factor) {
  double sum = 0;
  for (unsigned i = 0; i < factor.nrows(); ++i) sum += std::log(std::fabs(factor(i, i)));
  return sum;
}

class MatrixMarket : public ::testing::TestWithParam<const char*> {};
class SymmetricMarket : public MatrixMarket {};
class DefiniteMarket : public MatrixMarket {};
class SquareMarket : public MatrixMarket {};
class RectangularMarket : public MatrixMarket {};

#define NEEDS_MARKET                                           \
  const std::string name = GetParam();                         \
  NEEDS_DATA("matrixmarket/" + name + ".mtx");                 \
  NEEDS_DATA("matrixmarket/properties.csv");                   \
  const Properties known = Known(name);                        \
  const RegularMatrix A = Read(name);                          \
  ASSERT_EQ(A.nrows(), known.rows);                            \
  ASSERT_EQ(A.ncols(), known.cols)

TEST_P(MatrixMarket, IsReadAsDescribed) {
  NEEDS_MARKET;
  EXPECT_NEAR(std::sqrt(trace(ATA(A))), known.frobenius, 1e-11 * known.frobenius);
}

TEST_P(SymmetricMarket, CholeskyFactor) {
  NEEDS_MARKET;
  const SymmetricMatrix S(sym(A));
  const LowerTriangularMatrix L(CholeskyFactor(S, 1e-14));
  EXPECT_EQ(L.nsing(), 0);
  digest::Feed(L);
  EXPECT_NEAR(2 * LogOfDiagonal(L), known.log_determinant, known.condition * 1e-15 + kPrinted);
  const SymmetricMatrix back(AAT(RegularMatrix(L)));
  double worst = 0;
  for (unsigned i = 0; i < S.ndim(); ++i) {
    for (unsigned j = 0; j <= i; ++j) {
      worst = std::fmax(worst, std::fabs(back(i, j) - S(i, j)) / std::sqrt(S(i, i) * S(j, j)));
    }
  }
  EXPECT_LE(worst, S.ndim() * 2.3e-16);

  // A x = A 1 by substitution.
  RegularMatrix x(S * Ones(S.ndim()));
  for (unsigned i = 0; i < S.ndim(); ++i) {
    for (unsigned k = 0; k < i; ++k) x(i) -= L(i, k) * x(k);
    x(i) /= L(i, i);
  }
  for (unsigned i = S.ndim(); i-- > 0;) {
    for (unsigned k = i + 1; k < S.ndim(); ++k) x(i) -= L(k, i) * x(k);
    x(i) /= L(i, i);
  }
  EXPECT_LE(FromOnes(x), known.condition * 1e-15);
}

// A x = A 1 by the inverse.
TEST_P(DefiniteMarket, InverseByCholesky) {
  NEEDS_MARKET;
  const SymmetricMatrix S(sym(A));
  const SymmetricMatrix inverse(InverseByCholesky(S, 1e-14));
  EXPECT_EQ(inverse.nsing(), 0);
  digest::Feed(inverse);
  const RegularMatrix x(inverse * RegularMatrix(S * Ones(S.ndim())));
  EXPECT_LE(FromOnes(x), known.condition * 1e-12);
}

TEST_P(SquareMarket, DeterminantOfTheTriangularFactor) {
  NEEDS_MARKET;
  RegularMatrix R(A);
  HouseholderTransformation(R, true);
  digest::Feed(R);
  EXPECT_NEAR(LogOfDiagonal(R), known.log_determinant, known.condition * 1e-14 + kPrinted);
}

// A x = A 1 by elimination and by the inverse from reflections, of the matrix as it is and of a symmetric one.
TEST_P(SquareMarket, SolutionAndInverse) {
  NEEDS_MARKET;
  const unsigned n = A.nrows();
  const double bound = known.condition * 1e-12;
  const RegularMatrix b(A * Ones(n));
  const RegularMatrix x(A > b);
  EXPECT_EQ(A.nsing(), 0);
  EXPECT_LE(FromOnes(x), bound);
  digest::Feed(x);
  RegularMatrix inverse(A);
  inv(inverse, true);
  EXPECT_EQ(inverse.nsing(), 0);
  EXPECT_LE(FromOnes(RegularMatrix(inverse * b)), bound);
  digest::Feed(inverse);
  const bool symmetric = Same(A, RegularMatrix(transpose(A)));
  EXPECT_EQ(symmetric, name != "west0067" && name != "pores_1");
  if (!symmetric) return;
  const SymmetricMatrix S(sym(A));
  EXPECT_LE(FromOnes(RegularMatrix(S > b)), bound);
  EXPECT_LE(FromOnes(RegularMatrix(inv(S) * b)), bound);
}

// R'R = A'A, whose elements are the products of the columns.
TEST_P(RectangularMarket, TriangularFactor) {
  NEEDS_MARKET;
  const SymmetricMatrix information(ATA(A));
  RegularMatrix R(A);
  HouseholderTransformation(R, true);
  ASSERT_EQ(R.nrows(), A.ncols());
  digest::Feed(R);
  const SymmetricMatrix back(ATA(R));
  double worst = 0, smallest = 1;
  for (unsigned i = 0; i < back.ndim(); ++i) {
    smallest = std::fmin(smallest, R(i, i) / std::sqrt(information(i, i)));
    for (unsigned j = 0; j <= i; ++j) {
      worst = std::fmax(worst, std::fabs(back(i, j) - information(i, j)) / std::sqrt(information(i, i) * information(j, j)));
    }
  }
  EXPECT_LE(worst, 1e-13);
  EXPECT_NEAR(smallest, known.smallest_pivot, 0.005 * known.smallest_pivot);
}

// A pivot below 1e-11 of its column counts as singular: the ill-conditioned Hilbert matrix has one.
TEST(HilbertMarket, LosesItsRank) {
  NEEDS_DATA("matrixmarket/hilbert10.mtx");
  RegularMatrix R = Read("hilbert10");
  HouseholderTransformation(R, true);
  EXPECT_GT(R(8, 8), 0.0);
  EXPECT_EQ(R(9, 9), 0.0);
}

// 1033 gravity-meter observations of 320 unknowns.
TEST(WellMarket, LeastSquares) {
  NEEDS_DATA("matrixmarket/well1033.mtx");
  const RegularMatrix A = Read("well1033"), b = Read("well1033_b");
  const std::vector<std::vector<double>> solution = NumericTail("matrixmarket/well1033_x.txt");
  const unsigned m = A.nrows(), n = A.ncols();
  ASSERT_EQ(b.nrows(), m);
  ASSERT_EQ(solution.size(), n);
  RegularMatrix Ab(A);
  Ab.SetSize(m, n + 1, true);
  for (unsigned i = 0; i < m; ++i) Ab(i, n) = b(i);
  HouseholderTransformation(Ab, true);
  EXPECT_NEAR(Ab(n, n), 0.7521578691564, 1e-12);  // norm of the residuals
  std::vector<double> x(n);
  double worst = 0, square = 0;
  for (unsigned i = n; i-- > 0;) {
    x[i] = Ab(i, n);
    for (unsigned k = i + 1; k < n; ++k) x[i] -= Ab(i, k) * x[k];
    x[i] /= Ab(i, i);
    worst = std::fmax(worst, std::fabs(x[i] - solution[i][0]));
    square += x[i] * x[i];
  }
  EXPECT_LE(worst, 1e-9);
  EXPECT_NEAR(std::sqrt(square), 10278.82228229, 1e-8);
  std::printf("  well1033: unknowns up to 1000 within %.1e\n", worst);
}

const auto kName = [](const ::testing::TestParamInfo<const char*>& info) {
  std::string name;
  for (const char* c = info.param; *c != '\0'; ++c) name += std::isalnum(static_cast<unsigned char>(*c)) != 0 ? *c : 'x';
  return name;
};

INSTANTIATE_TEST_SUITE_P(, MatrixMarket, ::testing::Values("bcsstk01", "nos5", "west0067", "ash219", "well1033", "can___24", "pores_1", "hilbert10"), kName);
INSTANTIATE_TEST_SUITE_P(, SymmetricMarket, ::testing::Values("bcsstk01", "nos5", "hilbert10"), kName);
INSTANTIATE_TEST_SUITE_P(, DefiniteMarket, ::testing::Values("bcsstk01", "nos5"), kName);
INSTANTIATE_TEST_SUITE_P(, SquareMarket, ::testing::Values("bcsstk01", "nos5", "west0067", "can___24", "pores_1"), kName);
INSTANTIATE_TEST_SUITE_P(, RectangularMarket, ::testing::Values("ash219", "well1033"), kName);

}  // namespace
}  // namespace quorvel::test::data
