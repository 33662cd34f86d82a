// The inline conveniences.
#include "quorvel/convenience.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <utility>

#include "quorvel/products.h"
#include "quorvel/sums.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;
using quorvel::from_rows;
using quorvel::own;
using quorvel::Owned;

namespace {

TEST(Own, MakesAValueOfAResult) {
  const auto a = from_rows<RegularMatrix>({{1, 2}, {3, 4}});
  const auto sum = own(a + a);
  EXPECT_FALSE(sum.dispensable());
  ExpectElements({{2, 4}, {6, 8}}, sum);
  const auto again = own(sum + a);  // used twice, and no harm done
  const auto third = own(sum + a);
  ExpectElements(FullOf(again), third);
  auto copy = sum;
  copy(0, 0) = 9.0;
  EXPECT_EQ(sum(0, 0), 2.0);
  auto& temporary = Dispensable<RegularMatrix>(2u, 2u);
  const double* array = temporary.data();
  const auto taken = own(temporary);
  EXPECT_EQ(taken.data(), array);
  Owned<RegularMatrix> assigned;
  assigned = a + a;
  assigned = std::as_const(a);
  ExpectElements(FullOf(a), assigned);
  assigned = 3.0;
  EXPECT_TRUE(assigned == 3.0);
}

TEST(Own, AnOwnedMatrixIsItsKind) {
  auto p = own(from_rows<SymmetricMatrix>({{4, 1}, {1, 3}}));
  const SymmetricMatrix sum(p + p);
  EXPECT_EQ(sum(1, 0), 2.0);
  p += sum;
  EXPECT_EQ(p(0, 0), 12.0);
  auto moved = std::move(p);
  EXPECT_EQ(moved(0, 0), 12.0);
  EXPECT_EQ(p.ndim(), 0u);
}

TEST(FromRows, EveryKind) {
  ExpectElements({{1, 2, 3}, {4, 5, 6}}, from_rows<RegularMatrix>({{1, 2, 3}, {4, 5, 6}}));
  ExpectElements({{1, 2}, {2, 3}}, from_rows<SymmetricMatrix>({{1, 2}, {2, 3}}));
  ExpectElements({{1, 2}, {0, 3}}, from_rows<UpperTriangularMatrix>({{1, 2}, {0, 3}}));
  ExpectElements({{1, 0}, {2, 3}}, from_rows<LowerTriangularMatrix>({{1, 0}, {2, 3}}));
  ExpectElements({{1, 0}, {0, 3}}, from_rows<DiagonalMatrix>({{1, 0}, {0, 3}}));
  ExpectElements({{0, 2, 0}, {4, 0, 0}}, from_rows<RegularSparseMatrix>({{0, 2, 0}, {4, 0, 0}}));
  ExpectElements({{0, 2}, {2, 3}}, from_rows<SymmetricSparseMatrix>({{0, 2}, {2, 3}}));
  EXPECT_EQ(from_rows<RegularSparseMatrix>({{0, 2, 0}, {4, 0, 0}}).used, 2u);
  EXPECT_EQ(from_rows<RegularMatrix>({}).nrows(), 0u);
}

TEST(FromRows, RefusesWhatTheKindCannotHold) {
  EXPECT_CODE(from_rows<RegularMatrix>({{1, 2}, {3}}), 40000);
  EXPECT_CODE(from_rows<SymmetricMatrix>({{1, 2, 3}, {2, 4, 5}}), 40000);
  EXPECT_CODE(from_rows<SymmetricMatrix>({{1, 2}, {3, 4}}), 40000);
  EXPECT_CODE(from_rows<UpperTriangularMatrix>({{1, 2}, {3, 4}}), 40000);
  EXPECT_CODE(from_rows<LowerTriangularMatrix>({{1, 2}, {3, 4}}), 40000);
  EXPECT_CODE(from_rows<DiagonalMatrix>({{1, 0}, {3, 4}}), 40000);
  EXPECT_CODE(from_rows<SymmetricSparseMatrix>({{1, 2}, {3, 4}}), 40000);
}

TEST(Vectors, FromElements) {
  ExpectElements({{1}, {2}, {3}}, quorvel::column({1, 2, 3}));
  ExpectElements({{1, 0}, {0, 2}}, quorvel::diagonal({1, 2}));
}

TEST(Rows, Pointers) {
  auto a = from_rows<RegularMatrix>({{1, 2, 3}, {4, 5, 6}});
  EXPECT_EQ(quorvel::row(a, 1)[2], 6.0);
  quorvel::row(a, 0)[0] = 9.0;
  EXPECT_EQ(a(0, 0), 9.0);
  const auto s = from_rows<SymmetricMatrix>({{1, 2, 3}, {2, 4, 5}, {3, 5, 6}});
  EXPECT_EQ(quorvel::packed_row(s, 0)[0], 1.0);
  EXPECT_EQ(quorvel::packed_row(s, 1)[1], 5.0);
  EXPECT_EQ(quorvel::packed_row(s, 2)[0], 6.0);
}

TEST(Near, ComparesWithTolerance) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  const auto a = from_rows<RegularMatrix>({{1, 2}, {3, 400}});
  auto b = a;
  b(1, 1) = 400.5;
  EXPECT_TRUE(quorvel::near(a, b, 0.5));
  EXPECT_FALSE(quorvel::near(a, b, 0.4));
  EXPECT_TRUE(quorvel::near(a, b, 0.0, 0.002));
  EXPECT_EQ(quorvel::max_difference(a, b), 0.5);
  EXPECT_FALSE(quorvel::near(a, RegularMatrix(2, 3), 1e9));
  EXPECT_EQ(quorvel::max_difference(a, RegularMatrix(2, 3)), std::numeric_limits<double>::infinity());
  b(0, 0) = nan;
  EXPECT_FALSE(quorvel::near(a, b, 1e9));
  EXPECT_TRUE(std::isnan(quorvel::max_difference(a, b)));
  EXPECT_TRUE(quorvel::near(quorvel::diagonal({1, 2}), from_rows<SymmetricMatrix>({{1, 0}, {0, 2}}), 0.0));
}

TEST(Near, Infinities) {
  const double infinity = std::numeric_limits<double>::infinity();
  const auto up = quorvel::column({1, infinity}), down = quorvel::column({1, -infinity}), one = quorvel::column({1, 1});
  EXPECT_TRUE(quorvel::near(up, up, 0.0));
  EXPECT_FALSE(quorvel::near(up, down, 1e308, 1.0));
  EXPECT_FALSE(quorvel::near(one, up, 1e308, 1.0));
  EXPECT_EQ(quorvel::max_difference(up, up), 0.0);
  EXPECT_EQ(quorvel::max_difference(one, up), infinity);
}

TEST(Near, ConsumesTemporaries) {  // the leak check around each test counts
  const auto a = from_rows<RegularMatrix>({{1, 2}, {3, 4}});
  EXPECT_TRUE(quorvel::near(a + a, 2.0 * a, 0.0));
  EXPECT_EQ(quorvel::max_difference(a + a, a), 4.0);
  EXPECT_FALSE(quorvel::near(a + a, RegularMatrix(1, 1), 1.0));
  RegularMatrix& twice = Dispensable<RegularMatrix>(2u, 2u);
  twice = 1.0;
  EXPECT_TRUE(quorvel::near(twice, twice, 0.0));
}

TEST(Stream, WritesRowsAndConsumesTemporaries) {
  std::ostringstream text;
  const auto a = from_rows<SymmetricMatrix>({{1, 2.5}, {2.5, 3}});
  text << std::setw(6) << a;
  EXPECT_EQ(text.str(), "     1    2.5\n   2.5      3\n");
  text.str("");
  text << a + a << -a;  // both results die here
  EXPECT_EQ(text.str(), "2 5\n5 6\n-1 -2.5\n-2.5 -3\n");
  text.str("");
  text << from_rows<RegularSparseMatrix>({{0, 1}}) << quorvel::diagonal({1, 2}) << RegularMatrix();
  EXPECT_EQ(text.str(), "0 1\n1 0\n0 2\n");
}

std::string Fields(const char* fields, double x) { return quorvel::NumberFormat(fields)(x); }

TEST(Formatted, FieldsOfANumber) {
  EXPECT_EQ(Fields("", 0.1), "0.1");
  EXPECT_EQ(Fields("", 1e22), "1e+22");
  EXPECT_EQ(Fields("", -0.0), "-0");
  EXPECT_EQ(Fields("8.3f", 3.14159), "   3.142");
  EXPECT_EQ(Fields("<8.3f", 3.14159), "3.142   ");
  EXPECT_EQ(Fields("^8.3f", 3.14159), " 3.142  ");
  EXPECT_EQ(Fields("*^8.3f", 3.14159), "*3.142**");
  EXPECT_EQ(Fields("+08.3f", 3.14159), "+003.142");
  EXPECT_EQ(Fields(">08.3f", -3.14159), "  -3.142");  // an alignment switches the zeros off
  EXPECT_EQ(Fields(" .2f", 1.0), " 1.00");
  EXPECT_EQ(Fields("E", 12345.678), "1.234568E+04");
  EXPECT_EQ(Fields(".3", 12345.678), "1.23e+04");
  EXPECT_EQ(Fields("a", 1.5), "1.8p+0");
  EXPECT_EQ(Fields("A", 10.0), "1.4P+3");
  EXPECT_EQ(Fields("05", std::numeric_limits<double>::infinity()), "  inf");
  EXPECT_EQ(Fields("F", std::numeric_limits<double>::quiet_NaN()), "NAN");
  EXPECT_EQ(Fields("", 5e-324), "5e-324");
  EXPECT_EQ(Fields(".999f", 1e308).size(), 309u + 1u + 999u);
}

TEST(Formatted, AsPrintf) {
  for (const double x : {0.0, 1.0, -2.5, 1e-7, 123456789.0, -1e300, 0.3}) {
    for (const char* fields : {"12.4f", "12.4e", "12.4g", "+12.0f", " 9.3E", "025.9g", ".0e", "G", "f"}) {
      char text[500];
      std::snprintf(text, sizeof text, ("%" + std::string(fields)).c_str(), x);
      EXPECT_EQ(Fields(fields, x), text) << fields;
    }
  }
}

TEST(Formatted, RefusesOtherFields) {
  for (const char* fields : {"d", "8.f", "8.3ff", "x8", "1000", ".1000f", "8,3f", "f8", "{:8.3f}", "#g"}) {
    EXPECT_CODE(quorvel::NumberFormat(fields), 40000);
  }
  EXPECT_CODE((void)quorvel::formatted(Dispensable<RegularMatrix>(2u, 2u), "?"), 40000);  // and it is destroyed
}

TEST(Formatted, EveryKind) {
  using quorvel::formatted;
  EXPECT_EQ(formatted(from_rows<RegularMatrix>({{1, 2.5, -3}}), "6.2f"), "  1.00   2.50  -3.00\n");
  EXPECT_EQ(formatted(from_rows<SymmetricMatrix>({{1, 2}, {2, 3}}), ""), "1 2\n2 3\n");
  EXPECT_EQ(formatted(from_rows<UpperTriangularMatrix>({{1, 2}, {0, 3}}), ""), "1 2\n0 3\n");
  EXPECT_EQ(formatted(from_rows<LowerTriangularMatrix>({{1, 0}, {2, 3}}), ""), "1 0\n2 3\n");
  EXPECT_EQ(formatted(quorvel::diagonal({1, 2}), "<3"), "1   0  \n0   2  \n");
  EXPECT_EQ(formatted(from_rows<RegularSparseMatrix>({{0, 2, 0}}), ""), "0 2 0\n");
  EXPECT_EQ(formatted(from_rows<SymmetricSparseMatrix>({{0, 2}, {2, 0}}), ".1f"), "0.0 2.0\n2.0 0.0\n");
  EXPECT_EQ(formatted(RegularMatrix(), "8.3f"), "");
  const auto a = quorvel::diagonal({1, 2});
  EXPECT_EQ(formatted(a + a, ""), "2 0\n0 4\n");  // consumed
}

}  // namespace
