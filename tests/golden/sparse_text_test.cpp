// The exact bytes of every text form of the sparse kinds.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/sparse.h"
#include "support/text.h"

using namespace quorvel::test;
using namespace quorvel::test::kinds;

namespace {

std::string Printed(const SparseMatrix& a, bool fixed = true, bool header = false) {
  return TextOf([&](std::FILE* f) { a.Print(f, fixed, header, 1, 5); });
}

std::string Triplets(const SparseMatrix& a, const char* element = "%g") {
  return TextOf([&](std::FILE* f) { PrintMFile(a, f, element); });
}

TEST(SparsePrint, FullRows) {
  EXPECT_EQ(Printed(SparseOf<RS>(2, 3, {{0, 1, 2.5}, {1, 2, -1.0}})), "  0.0   2.5   0.0\n  0.0   0.0  -1.0\n\n");
  EXPECT_EQ(Printed(SparseOf<SS>(3, 3, {{0, 2, 4.0}, {1, 1, 3.0}})),
            "  0.0   0.0   4.0\n  0.0   3.0   0.0\n  4.0   0.0   0.0\n\n");
  EXPECT_EQ(Printed(SparseOf<RS>(1, 2, {{0, 0, 0.5}}), false), "5.0e-01 0.0e+00\n\n");
}

TEST(SparsePrint, Header) {
  EXPECT_EQ(Printed(SparseOf<RS>(1, 2, {{0, 0, 1.0}}), true, true),
            "type: RegularSparseMatrix 1X2\nDispensable: 0\tOk: 1\tNumber Singularities: -1\n\n  1.0   0.0\n\n");
  SS& s = Dispensable<SS>(1u);
  s.set_nsing(3);
  EXPECT_EQ(Printed(s, true, true),
            "type: SymmetricSparseMatrix 1X1\nDispensable: 1\tOk: 1\tNumber Singularities: 3\n\n  0.0\n\n");
}

TEST(SparsePrint, EmptyMatrices) {
  EXPECT_EQ(Printed(RS(0, 3)), "\n");
  EXPECT_EQ(Printed(RS(3, 0)), "\n");
  EXPECT_EQ(Printed(SS()), "\n");
}

TEST(SparsePrint, RefusesWhatIsNotOk) {
  RS a(1, 1);
  a.set_ok(false);
  EXPECT_EQ(TextOf([&](std::FILE* f) { EXPECT_CODE(a.Print(f, true, true, 1, 5), 50870); }), "");
  EXPECT_EQ(TextOf([&](std::FILE* f) {
              EXPECT_CODE_WHILE_PENDING(4, Dispensable<SS>(1u).Print(f, true, true, 1, 5), 4);
            }),
            "");
  EXPECT_EQ(TextOf([&](std::FILE* f) {
              EXPECT_NO_CODE_WHILE_PENDING(4, a.PrintArray(f, "%*.*f%c", 4, 1));  // checks nothing
            }),
            " 0.0\n");
}

// An element below the diagonal is in no column list and is not shown; a cell stored twice shows its first element.
TEST(SparsePrint, UnusualElements) {
  SS s(2);
  s.SparseMatrixInsert(nullptr, 1, 0, 7.0);
  s.Put(1, 1, 2.0);
  EXPECT_EQ(Printed(s), "  0.0   0.0\n  0.0   2.0\n\n");
  RS r(1, 3);
  r.SparseMatrixInsert(0, 1, 1.0);
  r.SparseMatrixInsert(0, 1, 2.0);
  r.Put(0, 2, 3.0);
  EXPECT_EQ(Printed(r), "  0.0   2.0   3.0\n\n");
}

TEST(SparseMFile, TheClosingTripletGivesTheSize) {
  EXPECT_EQ(Triplets(SparseOf<RS>(2, 3, {{0, 0, 5.0}})), "1 1 5\n2 3 0\n");
  EXPECT_EQ(Triplets(SparseOf<RS>(2, 3, {{0, 2, 5.0}})), "1 3 5\n2 3 0\n");               // no element in the last row
  EXPECT_EQ(Triplets(SparseOf<RS>(2, 3, {{1, 0, 5.0}})), "2 1 5\n2 3 0\n");               // none in the last column
  EXPECT_EQ(Triplets(SparseOf<RS>(2, 3, {{0, 2, 5.0}, {1, 0, 6.0}})), "1 3 5\n2 1 6\n");  // both are reached
  EXPECT_EQ(Triplets(RS(2, 3)), "2 3 0\n");
  EXPECT_EQ(Triplets(SparseOf<SS>(3, 3, {{0, 2, 4.0}})), "1 3 4\n3 1 4\n");  // an element in the last column reaches both
  EXPECT_EQ(Triplets(SparseOf<SS>(3, 3, {{0, 1, 4.0}})), "1 2 4\n2 1 4\n3 3 0\n");
}

TEST(SparseMFile, SymmetricRowsBeginWithTheMirroredPart) {
  EXPECT_EQ(Triplets(SparseOf<SS>(3, 3, {{0, 0, 1.0}, {0, 1, 2.0}, {0, 2, 3.0}, {1, 1, 4.0}, {1, 2, 5.0}, {2, 2, 6.0}})),
            "1 1 1\n1 2 2\n1 3 3\n2 1 2\n2 2 4\n2 3 5\n3 1 3\n3 2 5\n3 3 6\n");
}

TEST(SparseMFile, StoredZerosAreWritten) {
  RS a = SparseOf<RS>(2, 2, {{1, 1, 3.0}});
  a.MultRow(1, 0.0);
  EXPECT_EQ(Triplets(a, "%.1f"), "2 2 0.0\n");
}

TEST(SparseMFile, EmptyMatricesWriteNothingAndAreConsumed) {
  EXPECT_EQ(Triplets(Dispensable<RS>(0u, 4u)), "");
  EXPECT_EQ(Triplets(Dispensable<RS>(4u, 0u)), "");
  EXPECT_EQ(Triplets(Dispensable<SS>(0u)), "");
  EXPECT_EQ(Triplets(Dispensable<SS>(2u)), "2 2 0\n");
  RS bad(1, 1);
  bad.set_ok(false);
  EXPECT_EQ(Triplets(bad), "1 1 0\n");  // nothing is checked
}

std::string ReadBack(const std::string& path) {
  const std::string text = TextOfFile(path);
  std::remove(path.c_str());
  return text;
}

TEST(SparseMFile, Paths) {
  const std::string path = ::testing::TempDir() + "quorvel_sparse_text_test.txt";
  PrintMFile(SparseOf<RS>(1, 2, {{0, 1, 1.5}}), path.c_str(), "unused", "%g", "% row column value\n");
  EXPECT_EQ(ReadBack(path), "% row column value\n1 2 1.5\n");
  PrintMFile(Dispensable<SS>(2u), path.c_str(), nullptr, "%.2f");
  EXPECT_EQ(ReadBack(path), "2 2 0.00\n");
  PrintMFile(Dispensable<RS>(0u, 2u), path.c_str(), "", "%g", "% only this\n");
  EXPECT_EQ(ReadBack(path), "% only this\n");
  EXPECT_NO_CODE(PrintMFile(Dispensable<RS>(2u, 2u), "/nonexistent/folder/file.txt", "", "%g"));
}

TEST(SparseMFile, AFullDeviceIsSurvived) {
  std::FILE* full = std::fopen("/dev/full", "w");
  ASSERT_NE(full, nullptr) << "no /dev/full";
  std::setvbuf(full, nullptr, _IONBF, 0);
  EXPECT_NO_CODE(PrintMFile(Dispensable<RS>(3u, 3u), full, "%g"));
  EXPECT_NO_CODE(Dispensable<SS>(3u).Print(full, true, true, 3, 8));
  std::fclose(full);
}

}  // namespace
