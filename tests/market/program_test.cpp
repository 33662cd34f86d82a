// The program as a user meets it, and what it computes, on small matrices and on real ones.
#include "program.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "data/files.h"
#include "factorisation.h"
#include "quorvel/convenience.h"
#include "reader.h"
#include "structure.h"
#include "support/program.h"

namespace market {
namespace {

using namespace quorvel::test;
using namespace quorvel::test::data;
using quorvel::from_rows;
namespace fs = std::filesystem;

Ending RunOn(const std::vector<std::string>& arguments) { return EndingOf(RunProgram, arguments); }

using Program = ProgramFolder;

TEST_F(Program, ArgumentsThatMakeNoSense) {
  EXPECT_EQ(RunOn({}).status, 2);
  EXPECT_NE(RunOn({}).err.find("usage: matrix_market"), std::string::npos);
  EXPECT_EQ(RunOn({"--wrong", "a"}).status, 2);
  EXPECT_EQ(RunOn({"a", "--tolerance"}).err, "matrix_market: --tolerance needs a number\n");
  EXPECT_EQ(RunOn({"--tolerance", "2", "a"}).err, "matrix_market: --tolerance needs a number from 0 to 1, not '2'\n");
  EXPECT_EQ(RunOn({"--tolerance", "1x", "a"}).status, 2);
  EXPECT_EQ(RunOn({"--help"}).status, 0);
}

TEST_F(Program, ABadFileDoesNotStopTheOthers) {
  const std::string good = File("good.mtx", "%%MatrixMarket matrix array real general\n1 1\n2\n");
  const std::string bad = File("bad.mtx", "%%MatrixMarket matrix array real general\n1 1\ntwo\n");
  const Ending ending = RunOn({bad, "/no/such/file", good});
  EXPECT_EQ(ending.status, 1);
  EXPECT_EQ(ending.err, bad + ":3: 'two' is no number\n/no/such/file: cannot be opened\n");
  EXPECT_NE(ending.out.find("1 x 1, real general"), std::string::npos) << ending.out;
}

// README.md shows the file example.mtx and the program's words about it.
TEST_F(Program, ReadmeShowsWhatItPrints) {
  const std::string folder = QUORVEL_EXAMPLE_DIR;
  std::ifstream in(folder + "/README.md");
  std::stringstream readme;
  readme << in.rdbuf();
  const std::string text = readme.str(), fence = "```text\n";
  const std::size_t start = text.find(fence);
  ASSERT_NE(start, std::string::npos);
  const std::size_t end = text.find("```", start + fence.size());
  const fs::path before = fs::current_path();
  fs::current_path(folder);
  const Ending ending = RunOn({"--print", "example.mtx"});
  fs::current_path(before);
  EXPECT_EQ(ending.status, 0) << ending.err;
  EXPECT_EQ(text.substr(start + fence.size(), end - start - fence.size()), ending.out);
}

TEST(Structure, ByHand) {
  const auto a = from_rows<RegularSparseMatrix>({{1, 0, -2, 0}, {0, 0, 0, 0}, {4, 0, 3, 0}, {5, 0, 0, 0}});
  const Structure s = StructureOf(a);
  EXPECT_EQ(s.nonzeros, 5u);
  EXPECT_EQ(s.below, 3u);
  EXPECT_EQ(s.above, 2u);
  EXPECT_EQ(s.shortest_row, 0u);
  EXPECT_EQ(s.longest_row, 2u);
  EXPECT_EQ(s.empty_rows, 1u);
  EXPECT_EQ(s.empty_cols, 2u);
  EXPECT_EQ(s.diagonal, 2u);
  EXPECT_EQ(s.off_diagonal, 3u);
  EXPECT_EQ(s.mirrored, 2u);
  const Norms n = NormsOf(a);
  EXPECT_EQ(n.one, 10.0);
  EXPECT_EQ(n.infinity, 7.0);
  EXPECT_DOUBLE_EQ(n.frobenius, std::sqrt(55.0));
  EXPECT_EQ(n.largest, 5.0);
}

TEST(Structure, SymmetricCountsBothTriangles) {
  const auto a = from_rows<SymmetricSparseMatrix>({{2, -1, 0}, {-1, 0, 3}, {0, 3, 1}});
  const Structure s = StructureOf(a);
  EXPECT_EQ(s.stored, 4u);
  EXPECT_EQ(s.nonzeros, 6u);
  EXPECT_EQ(s.mirrored, 4u);
  EXPECT_EQ(NormsOf(a).infinity, 4.0);
  EXPECT_DOUBLE_EQ(NormsOf(a).frobenius, 5.0);
}

TEST(Structure, FrobeniusDoesNotOverflow) {
  EXPECT_DOUBLE_EQ(NormsOf(from_rows<RegularSparseMatrix>({{3e200, 0}, {0, 4e200}})).frobenius, 5e200);
  EXPECT_EQ(NormsOf(RegularSparseMatrix(2, 2)).frobenius, 0.0);
}

TEST(Factor, CholeskyOfADefiniteMatrix) {  // [4 2; 2 5] = [2 0; 1 2] [2 1; 0 2]
  const Factorisation f = Factorise(from_rows<SymmetricSparseMatrix>({{4, 2}, {2, 5}}), 1e-12);
  EXPECT_EQ(f.method, Factorisation::cholesky);
  EXPECT_EQ(f.elements, 3u);
  EXPECT_EQ(f.singular, 0u);
  EXPECT_DOUBLE_EQ(f.smallest, 2.0);
  EXPECT_DOUBLE_EQ(f.largest, 2.0);
  EXPECT_DOUBLE_EQ(f.log_determinant, std::log(16.0));
  EXPECT_LE(f.misfit, 1e-15);
}

TEST(Factor, OtherSymmetricMatricesByReflections) {
  for (const auto& a : {from_rows<SymmetricSparseMatrix>({{1, 2}, {2, 1}}),    // negative pivot: determinant -3
                        from_rows<SymmetricSparseMatrix>({{0, 3}, {3, 1}}),    // zero on the diagonal
                        from_rows<SymmetricSparseMatrix>({{-1, 2}, {2, 5}})}) {  // negative on the diagonal
    const Factorisation f = Factorise(a, 1e-12);
    EXPECT_EQ(f.method, Factorisation::reflections);
    const double determinant = a(0, 0) * a(1, 1) - a(0, 1) * a(0, 1);
    EXPECT_NEAR(f.log_determinant, std::log(std::fabs(determinant)), 1e-14);
    EXPECT_LE(f.misfit, 1e-14);
  }
}

TEST(Factor, RectangularAndSingular) {
  const auto tall = from_rows<RegularSparseMatrix>({{3, 0}, {4, 0}, {0, 5}});  // R = [5 0; 0 5]
  EXPECT_DOUBLE_EQ(Factorise(tall, 0.0).smallest, 5.0);
  EXPECT_DOUBLE_EQ(Factorise(tall, 0.0).log_determinant, std::log(25.0));
  const auto wide = from_rows<RegularSparseMatrix>({{3, 4, 0}, {0, 0, 5}});
  EXPECT_DOUBLE_EQ(Factorise(wide, 0.0).largest, 5.0);
  const auto singular = from_rows<RegularSparseMatrix>({{1, 2}, {2, 4}});
  EXPECT_EQ(Factorise(singular, 0.0).singular, 1u);
  EXPECT_EQ(Factorise(RegularSparseMatrix(), 0.0).method, Factorisation::none);
}

// Every matrix of the collection against its published properties.
class Collection : public ::testing::TestWithParam<const char*> {};

TEST_P(Collection, StructureNormsAndFactor) {
  const std::string name = GetParam(), path = "matrixmarket/" + name + ".mtx";
  NEEDS_DATA(path);
  NEEDS_DATA("matrixmarket/properties.csv");
  const Table known = ReadCsv("matrixmarket/properties.csv");
  std::size_t row = 0;
  while (row < known.rows.size() && known.at(row, "name") != name) ++row;
  ASSERT_LT(row, known.rows.size());
  const auto number = [&](const char* column) { return Number(known.at(row, column)); };

  std::ifstream in(Path(path));
  const MarketFile file = ReadMarketFile(in, name);
  std::visit(
      [&](const auto& A) {
        EXPECT_EQ(A.nrows(), number("rows"));
        EXPECT_EQ(A.ncols(), number("cols"));
        EXPECT_EQ(static_cast<double>(StructureOf(A).nonzeros), number("nonzeros_full"));
        const Norms norms = NormsOf(A);
        EXPECT_NEAR(norms.frobenius, number("frobenius_norm"), 1e-11 * number("frobenius_norm"));
        EXPECT_NEAR(norms.one, number("norm1"), 1e-11 * number("norm1"));
        EXPECT_NEAR(norms.largest, number("max_abs"), 1e-11 * number("max_abs"));
        const Factorisation f = Factorise(A, 1e-12);
        EXPECT_EQ(f.method == Factorisation::cholesky, known.at(row, "kind") == "SPD");
        EXPECT_LE(f.misfit, 1e-12);
        if (f.singular == 0 && known.at(row, "log_abs_det") != "-") {
          EXPECT_NEAR(f.log_determinant, number("log_abs_det"), 1e-7 + 1e-14 * number("cond2"));
        }
      },
      file.matrix);
}

INSTANTIATE_TEST_SUITE_P(, Collection, ::testing::Values("bcsstk01", "nos5", "west0067", "ash219", "well1033", "can___24",
                                                         "pores_1", "hilbert10"));

TEST(CollectionProgram, ReportsEveryFile) {
  NEEDS_DATA("matrixmarket/nos5.mtx");
  const Ending ending = RunOn({Path("matrixmarket/nos5.mtx"), Path("matrixmarket/west0067.mtx")});
  EXPECT_EQ(ending.status, 0) << ending.err;
  EXPECT_NE(ending.out.find("468 x 468, real symmetric, as SymmetricSparseMatrix: 2820 stored, 5172 in the whole matrix"),
            std::string::npos)
      << ending.out;
  EXPECT_NE(ending.out.find("Cholesky: A = L L'"), std::string::npos);
  EXPECT_NE(ending.out.find("67 x 67, real general, as RegularSparseMatrix: 294 stored"), std::string::npos);
  EXPECT_NE(ending.out.find("reflections: A = Q R"), std::string::npos);
}

}  // namespace
}  // namespace market
