// The exact bytes of every text form of the dense kinds.
#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

template <class Write>
std::string Written(Write write) {
  std::FILE* file = std::tmpfile();
  write(file);
  const long size = std::ftell(file);
  std::string text(static_cast<std::size_t>(size), '\0');
  std::rewind(file);
  EXPECT_EQ(std::fread(text.data(), 1, text.size(), file), text.size());
  std::fclose(file);
  return text;
}

template <class K>
std::string Printed(const K& a, bool header = false) {
  return Written([&](std::FILE* f) { a.Print(f, true, header, 2, 6); });
}

template <class K>
std::string Statement(const K& a) {
  return Written([&](std::FILE* f) { PrintMFile(a, f, "A", "%g"); });
}

template <class K>
K Counting(unsigned n) {
  K a(n, n);
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = k + 1;
  return a;
}

TEST(Print, FixedFields) {
  const RegularMatrix a = Counting<RegularMatrix>(2);
  EXPECT_EQ(Printed(a), "  1.00   2.00\n  3.00   4.00\n\n");
  EXPECT_EQ(Written([&](std::FILE* f) { a.Print(f, false, false, 1, 9); }),
            "  1.0e+00   2.0e+00\n  3.0e+00   4.0e+00\n\n");
}

TEST(Print, Header) {
  RegularMatrix a(2, 3);
  a.set_nsing(2);
  EXPECT_EQ(Printed(a, true),
            "type: RegularMatrix 2X3\nDispensable: 0\tOk: 1\tNumber Singularities: 2\n\n"
            "  0.00   0.00   0.00\n  0.00   0.00   0.00\n\n");
  EXPECT_EQ(Printed(Dispensable<DiagonalMatrix>(1u), true),
            "type: DiagonalMatrix 1X1\nDispensable: 1\tOk: 1\tNumber Singularities: -1\n\n  0.00\n\n");
}

TEST(Print, LayoutOfEachKind) {
  EXPECT_EQ(Printed(Counting<SymmetricMatrix>(3)),
            "  1.00   2.00   3.00\n  2.00   4.00   5.00\n  3.00   5.00   6.00\n\n");
  EXPECT_EQ(Printed(Counting<UpperTriangularMatrix>(3)),
            "  1.00   2.00   3.00\n  0.00   4.00   5.00\n  0.00   0.00   6.00\n\n");
  EXPECT_EQ(Printed(Counting<LowerTriangularMatrix>(3)), "  1.00\n  2.00   4.00\n  3.00   5.00   6.00\n\n");
  EXPECT_EQ(Printed(Counting<DiagonalMatrix>(3)), "  1.00\n  2.00\n  3.00\n\n");
  EXPECT_EQ(Printed(Counting<LowerTriangularMatrix>(2)), "  1.00\n  2.00   3.00\n\n");
  EXPECT_EQ(Printed(Counting<DiagonalMatrix>(2)), "  1.00\n  2.00\n\n");
}

TEST(Print, EmptyMatricesWriteOneNewline) {
  EXPECT_EQ(Printed(RegularMatrix(0, 3)), "\n");
  EXPECT_EQ(Printed(RegularMatrix(3, 0)), "\n");
  EXPECT_EQ(Printed(SymmetricMatrix()), "\n");
  EXPECT_EQ(Printed(LowerTriangularMatrix()), "\n");
}

TEST(Print, RefusesWhatIsNotOk) {
  RegularMatrix a(1, 1);
  a.set_ok(false);
  EXPECT_EQ(Written([&](std::FILE* f) { EXPECT_CODE(a.Print(f, true, true, 1, 1), 50870); }), "");
  EXPECT_EQ(Written([&](std::FILE* f) {
              EXPECT_CODE_WHILE_PENDING(5, Dispensable<RegularMatrix>(1u, 1u).Print(f, true, true, 1, 1), 5);
            }),
            "");
}

TEST(PrintArray, ChecksAndConsumesNothing) {
  RegularMatrix a(1, 2);
  a.set_ok(false);
  a.set_dispensable(true);
  EXPECT_EQ(Written([&](std::FILE* f) {
              EXPECT_NO_CODE_WHILE_PENDING(5, a.PrintArray(f, "%*.*f%c", 4, 1));
            }),
            " 0.0  0.0\n");
  a.set_dispensable(false);
}

TEST(PrintMFile, Statements) {
  EXPECT_EQ(Statement(Counting<RegularMatrix>(2)), "A = [\n1,2;\n3,4\n];\n");
  EXPECT_EQ(Statement(Counting<SymmetricMatrix>(2)), "A = [\n1,2;\n2,3\n];\n");
  EXPECT_EQ(Statement(Counting<UpperTriangularMatrix>(2)), "A = [\n1,2;\n0,3\n];\n");
  EXPECT_EQ(Statement(Counting<LowerTriangularMatrix>(2)), "A = [\n1,0;\n2,3\n];\n");
  EXPECT_EQ(Statement(Counting<DiagonalMatrix>(2)), "A = [\n1,0;\n0,2\n];\n");
  EXPECT_EQ(Statement(RegularMatrix(0, 2)), "");
  EXPECT_EQ(Statement(RegularMatrix(2, 0)), "");
  EXPECT_EQ(Statement(SymmetricMatrix()), "");
  EXPECT_EQ(Statement(Dispensable<RegularMatrix>(1u, 1u)), "A = [\n0\n];\n");
  EXPECT_EQ(Statement(Dispensable<SymmetricMatrix>(0u)), "");  // consumed all the same
  RegularMatrix bad(1, 1);
  bad.set_ok(false);
  EXPECT_EQ(Statement(bad), "A = [\n0\n];\n");  // nothing is checked
}

TEST(PrintMFile, Vectors) {
  const double v[] = {1, 2.5, -3};
  const auto written = [&](unsigned k, bool diagonal) {
    return Written([&](std::FILE* f) { PrintMFile(v, k, diagonal, f, "v", "%g"); });
  };
  EXPECT_EQ(written(3, false), "v = [\n1,2.5,-3\n];\n");
  EXPECT_EQ(written(2, true), "v = [\n1,0;\n0,2.5\n];\n");
  EXPECT_EQ(written(0, false), "");
  EXPECT_EQ(written(0, true), "");
}

std::string ReadBack(const std::string& path) {
  std::string text;
  std::FILE* file = std::fopen(path.c_str(), "r");
  for (int c; file != nullptr && (c = std::fgetc(file)) != EOF;) text += static_cast<char>(c);
  if (file != nullptr) std::fclose(file);
  std::remove(path.c_str());
  return text;
}

TEST(PrintMFile, Paths) {
  const std::string path = ::testing::TempDir() + "quorvel_text_test.m";
  PrintMFile(Counting<RegularMatrix>(2), path.c_str(), "A", "%g", "% made here\n");
  EXPECT_EQ(ReadBack(path), "% made here\nA = [\n1,2;\n3,4\n];\n");
  PrintMFile(Dispensable<DiagonalMatrix>(1u), path.c_str(), "A", "%g");
  EXPECT_EQ(ReadBack(path), "A = [\n0\n];\n");
  const double v[] = {4};
  PrintMFile(v, 1, false, path.c_str(), "v", "%.1f", "x = 1;\n");
  EXPECT_EQ(ReadBack(path), "x = 1;\nv = [\n4.0\n];\n");
  PrintMFile(SymmetricMatrix(), path.c_str(), "A", "%g", "% only this\n");
  EXPECT_EQ(ReadBack(path), "% only this\n");
}

TEST(PrintMFile, APathThatCannotBeOpenedIsSkipped) {
  const char* path = "/nonexistent/folder/file.m";
  EXPECT_NO_CODE(PrintMFile(Counting<RegularMatrix>(2), path, "A", "%g", "x"));
  EXPECT_NO_CODE(PrintMFile(Dispensable<UpperTriangularMatrix>(2u), path, "A", "%g"));  // consumed
}

TEST(PrintMFile, AFullDeviceIsSurvived) {
  std::FILE* full = std::fopen("/dev/full", "w");
  if (full == nullptr) GTEST_FAIL() << "no /dev/full";
  std::setvbuf(full, nullptr, _IONBF, 0);
  EXPECT_NO_CODE(PrintMFile(Counting<RegularMatrix>(3), full, "A", "%g"));
  EXPECT_NO_CODE(Dispensable<SymmetricMatrix>(3u).Print(full, true, true, 3, 8));
  std::fclose(full);
}

}  // namespace
