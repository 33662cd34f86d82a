// docs/QUIRKS.md, "Text output": each statement about the dense kinds as a test.

#include <gtest/gtest.h>

#include <string>

#include "support/text.h"
#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

template <class K>
std::string Printed(const K& a, bool header = false) {
  return TextOf([&](std::FILE* file) { a.Print(file, true, header, 1, 4); });
}

template <class K>
std::string MFile(const K& a) {
  return TextOf([&](std::FILE* file) { PrintMFile(a, file, "x", "%g"); });
}

TEST(OutputQuirks, PrecisionComesBeforeWidthOnlyInPrint) {
  RegularMatrix a(1, 1);
  EXPECT_EQ(TextOf([&](std::FILE* file) { a.Print(file, true, false, 2, 6); }), "  0.00\n\n");
  EXPECT_EQ(TextOf([&](std::FILE* file) { a.PrintArray(file, "%*.*f%c", 6, 2); }), "  0.00\n");
}

TEST(OutputQuirks, TrianglesPrintDifferently) {
  UpperTriangularMatrix u(2);
  LowerTriangularMatrix l(2);
  DiagonalMatrix d(2);
  u = 1.0;
  l = 1.0;
  d = 1.0;
  EXPECT_EQ(Printed(u), " 1.0  1.0\n 0.0  1.0\n\n");
  EXPECT_EQ(Printed(l), " 1.0\n 1.0  1.0\n\n");
  EXPECT_EQ(Printed(d), " 1.0\n 1.0\n\n");
  EXPECT_EQ(Printed(RegularMatrix(l)), " 1.0  0.0\n 1.0  1.0\n\n");
  EXPECT_EQ(MFile(u), "x = [\n1,1;\n0,1\n];\n");
  EXPECT_EQ(MFile(l), "x = [\n1,0;\n1,1\n];\n");
  EXPECT_EQ(MFile(d), "x = [\n1,0;\n0,1\n];\n");
}

TEST(OutputQuirks, AMatrixThatIsNotOkIsNotPrinted) {
  RegularMatrix a(1, 1);
  EXPECT_NE(Printed(a, true).find("\tOk: 1\t"), std::string::npos);
  a.set_ok(false);
  EXPECT_EQ(TextOf([&](std::FILE* file) { EXPECT_CODE(a.Print(file, true, true, 1, 4), 50870); }), "");
}

TEST(OutputQuirks, AnEmptyMatrixPrintsOneEmptyLineOrNothing) {
  const RegularMatrix none;
  EXPECT_EQ(Printed(none), "\n");
  EXPECT_EQ(MFile(none), "");
}

TEST(OutputQuirks, PrintMFileDoesNotReportFailure) {
  RegularMatrix a(1, 1);
  EXPECT_NO_CODE(PrintMFile(a, "/no/such/folder/file.m", "a", "%g"));
  a.set_ok(false);
  EXPECT_EQ(MFile(a), "x = [\n0\n];\n");
}

}  // namespace
}  // namespace quorvel::test
