// Matrix Market files as text: what is read, and what is said about bad ones.
#include "reader.h"

#include <gtest/gtest.h>

#include <sstream>
#include <utility>

#include "support/model.h"

namespace market {
namespace {

using namespace quorvel::test;

MarketFile Read(const std::string& text) {
  std::istringstream in(text);
  return ReadMarketFile(in, "test.mtx");
}

Model General(const std::string& text) {
  const MarketFile file = Read(text);
  return FullOf(std::get<RegularSparseMatrix>(file.matrix));
}

Model Symmetric(const std::string& text) {
  const MarketFile file = Read(text);
  return FullOf(std::get<SymmetricSparseMatrix>(file.matrix));
}

std::string Message(const std::string& text) {
  try {
    Read(text);
  } catch (const FileError& e) {
    return e.what();
  }
  return "no error";
}

const std::string kGeneral = "%%MatrixMarket matrix coordinate real general\n";
const std::string kSymmetric = "%%MatrixMarket matrix coordinate real symmetric\n";

TEST(Reader, CoordinateInAnyOrder) {
  EXPECT_EQ(General(kGeneral + "% a comment\n\n2 3 3\n2 3 -1.5\n% another\n1 1 2e3\n2 1 +4\n"),
            (Model{{2000, 0, 0}, {4, 0, -1.5}}));
}

TEST(Reader, ElementsStandRowByRow) {
  const MarketFile file = Read(kGeneral + "2 2 3\n2 2 3\n1 2 2\n1 1 1\n");
  const auto& a = std::get<RegularSparseMatrix>(file.matrix);
  EXPECT_EQ(a.used, 3u);
  ASSERT_NE(a.GetFirstInRow(0), nullptr);
  EXPECT_EQ(a.GetFirstInRow(0)->col, 0u);
  EXPECT_EQ(a.GetFirstInRow(0)->nextInRow->col, 1u);
  EXPECT_EQ(a.GetFirstInCol(1)->row, 0u);
  EXPECT_EQ(a.GetFirstInCol(1)->nextInCol->row, 1u);
}

TEST(Reader, SymmetricFillsTheOtherTriangle) {
  EXPECT_EQ(Symmetric(kSymmetric + "3 3 4\n1 1 1\n3 1 5\n2 2 2\n3 2 7\n"), (Model{{1, 0, 5}, {0, 2, 7}, {5, 7, 0}}));
}

TEST(Reader, SkewSymmetricIsGeneralInside) {
  EXPECT_EQ(General("%%MatrixMarket matrix coordinate real skew-symmetric\n3 3 2\n2 1 4\n3 2 -1\n"),
            (Model{{0, -4, 0}, {4, 0, 1}, {0, -1, 0}}));
  EXPECT_EQ(General("%%MatrixMarket matrix array real skew-symmetric\n3 3\n4\n5\n6\n"),
            (Model{{0, -4, -5}, {4, 0, -6}, {5, 6, 0}}));
}

TEST(Reader, PatternsAreOnes) {
  EXPECT_EQ(General("%%MatrixMarket matrix coordinate pattern general\n2 2 2\n1 2\n2 2\n"), (Model{{0, 1}, {0, 1}}));
  EXPECT_EQ(Symmetric("%%MatrixMarket matrix coordinate pattern symmetric\n2 2 1\n2 1\n"), (Model{{0, 1}, {1, 0}}));
}

TEST(Reader, ArraysGoDownTheColumns) {
  EXPECT_EQ(General("%%MatrixMarket matrix array real general\n2 3\n1\n2\n3\n4\n5\n6\n"), (Model{{1, 3, 5}, {2, 4, 6}}));
  EXPECT_EQ(Symmetric("%%MatrixMarket matrix array real symmetric\n3 3\n1\n2\n3\n4\n5\n6\n"),
            (Model{{1, 2, 3}, {2, 4, 5}, {3, 5, 6}}));
}

TEST(Reader, IntegersAndCapitalsAndLineEnds) {
  EXPECT_EQ(General("%%MatrixMarket MATRIX Coordinate Integer General\r\n1 2 1\r\n1 2 -7\r\n"), (Model{{0, -7}}));
}

TEST(Reader, ZerosAreCountedAndNotStored) {
  const MarketFile file = Read(kGeneral + "2 2 2\n1 1 0\n2 2 5\n");
  EXPECT_EQ(file.zeros, 1u);
  EXPECT_EQ(std::get<RegularSparseMatrix>(file.matrix).used, 1u);
}

TEST(Reader, EmptyMatrices) {
  EXPECT_EQ(std::get<RegularSparseMatrix>(Read(kGeneral + "0 0 0\n").matrix).nrows(), 0u);
  EXPECT_EQ(std::get<RegularSparseMatrix>(Read(kGeneral + "3 0 0\n").matrix).nrows(), 3u);
  EXPECT_EQ(std::get<SymmetricSparseMatrix>(Read(kSymmetric + "0 0 0\n").matrix).ndim(), 0u);
  EXPECT_EQ(std::get<RegularSparseMatrix>(Read("%%MatrixMarket matrix array real skew-symmetric\n0 0\n").matrix).used, 0u);
}

TEST(BadFiles, FirstLine) {
  EXPECT_EQ(Message(""), "test.mtx:1: not a Matrix Market file: it does not begin with %%MatrixMarket");
  EXPECT_EQ(Message("2 2 1\n"), "test.mtx:1: not a Matrix Market file: it does not begin with %%MatrixMarket");
  EXPECT_EQ(Message("%%MatrixMarket matrix coordinate real\n"),
            "test.mtx:1: the first line must have five words: %%MatrixMarket matrix FORMAT FIELD SYMMETRY");
  EXPECT_EQ(Message("%%MatrixMarket vector coordinate real general\n"), "test.mtx:1: it holds a 'vector', not a matrix");
  EXPECT_EQ(Message("%%MatrixMarket matrix dense real general\n"), "test.mtx:1: unknown format 'dense'");
  EXPECT_EQ(Message("%%MatrixMarket matrix array complex general\n"), "test.mtx:1: complex matrices are not supported");
  EXPECT_EQ(Message("%%MatrixMarket matrix array real hermitian\n"), "test.mtx:1: complex matrices are not supported");
  EXPECT_EQ(Message("%%MatrixMarket matrix array text general\n"), "test.mtx:1: unknown field 'text'");
  EXPECT_EQ(Message("%%MatrixMarket matrix array real triangular\n"), "test.mtx:1: unknown symmetry 'triangular'");
  EXPECT_EQ(Message("%%MatrixMarket matrix array pattern general\n"), "test.mtx:1: a pattern cannot be an array");
  EXPECT_EQ(Message("%%MatrixMarket matrix coordinate pattern skew-symmetric\n"),
            "test.mtx:1: a pattern cannot be skew-symmetric");
}

TEST(BadFiles, Sizes) {
  EXPECT_EQ(Message(kGeneral + "% nothing else\n"), "test.mtx:3: the file ends before the line of sizes");
  EXPECT_EQ(Message(kGeneral + "2 2\n"), "test.mtx:2: the line of sizes must have three numbers: rows, columns, entries");
  EXPECT_EQ(Message("%%MatrixMarket matrix array real general\n2 2 4\n"),
            "test.mtx:2: the line of sizes must have two numbers: rows, columns");
  EXPECT_EQ(Message(kGeneral + "-2 2 1\n"), "test.mtx:2: the number of rows must be a whole number, not '-2'");
  EXPECT_EQ(Message(kGeneral + "2 2.5 1\n"), "test.mtx:2: the number of columns must be a whole number, not '2.5'");
  EXPECT_EQ(Message(kGeneral + "30000000 2 1\n"), "test.mtx:2: the number of rows 30000000 is too large");
  EXPECT_EQ(Message(kGeneral + "99999999999999999999999 2 1\n"),
            "test.mtx:2: the number of rows 99999999999999999999999 is too large");
  EXPECT_EQ(Message(kGeneral + "2 2 5\n"), "test.mtx:2: more entries than the matrix has elements");
  EXPECT_EQ(Message(kGeneral + "2 0 1\n"), "test.mtx:2: more entries than the matrix has elements");
  EXPECT_EQ(Message(kSymmetric + "2 3 1\n"), "test.mtx:2: a symmetric matrix must be square");
  EXPECT_EQ(Message("%%MatrixMarket matrix array real general\n10000000 10000000\n"),
            "test.mtx:2: an array of that size is too large");
}

TEST(BadFiles, Entries) {
  EXPECT_EQ(Message(kGeneral + "2 2 2\n1 1 1\n"), "test.mtx:4: the file ends after 1 of 2 entries");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1\n"), "test.mtx:3: an entry must have three numbers: row, column, value");
  EXPECT_EQ(Message("%%MatrixMarket matrix coordinate pattern general\n2 2 1\n1 1 1\n"),
            "test.mtx:3: an entry must have two numbers: row, column");
  EXPECT_EQ(Message("%%MatrixMarket matrix array real general\n1 2\n1 2\n"),
            "test.mtx:3: an array has one value on every line");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n0 1 1\n"), "test.mtx:3: row 0: rows and columns are counted from 1");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n3 1 1\n"), "test.mtx:3: row 3 is too large");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 x 1\n"), "test.mtx:3: column must be a whole number, not 'x'");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 one\n"), "test.mtx:3: 'one' is no number");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 1.5x\n"), "test.mtx:3: '1.5x' is no number");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 nan\n"), "test.mtx:3: 'nan' is no number");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 +-1\n"), "test.mtx:3: '+-1' is no number");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 1e999\n"), "test.mtx:3: '1e999' is beyond the range of a double");
  EXPECT_EQ(Message("%%MatrixMarket matrix coordinate integer general\n2 2 1\n1 1 1.5\n"),
            "test.mtx:3: '1.5' is no whole number, in a file of integers");
  EXPECT_EQ(Message(kSymmetric + "2 2 1\n1 2 1\n"),
            "test.mtx:3: an entry above the diagonal: a symmetric file holds the lower triangle only");
  EXPECT_EQ(Message("%%MatrixMarket matrix coordinate real skew-symmetric\n2 2 1\n1 1 1\n"),
            "test.mtx:3: an entry on the diagonal of a skew-symmetric matrix");
  EXPECT_EQ(Message(kGeneral + "2 2 1\n1 1 1\n2 2 2\n"), "test.mtx:4: something follows after the last of 1 entries");
  EXPECT_EQ(Message(kGeneral + "2 2 3\n2 1 1\n1 1 2\n2 1 3\n"), "test.mtx: element (2, 1) is given twice");
  EXPECT_EQ(Message(kSymmetric + "2 2 3\n2 1 1\n1 1 2\n2 1 3\n"), "test.mtx: element (2, 1) is given twice");
}

}  // namespace
}  // namespace market
