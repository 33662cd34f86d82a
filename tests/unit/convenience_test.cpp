// The inline conveniences.
#include "quorvel/convenience.h"

#include <gtest/gtest.h>

#include <iomanip>
#include <limits>
#include <sstream>
#include <utility>

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

}  // namespace
