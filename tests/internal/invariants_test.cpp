// Assertions that end the process: their text, and that they are alive in every build type.
#include <gtest/gtest.h>

#include "core/kinds.h"
#include "factor/templates.h"
#include "quorvel/quorvel.h"
#include "support/allocations.h"

namespace {

using quorvel::detail::Access;

class Invariants : public ::testing::Test {
 protected:
  void SetUp() override {
    quorvel::test::KeepsBlocks();
    GTEST_FLAG_SET(death_test_style, "fast");
  }
};

#if defined(__clang__)
#define WITH_T(kind) "\\[T = " kind "\\]"
#else
#define WITH_T(kind) "\\[with T = " kind "\\]"
#endif

TEST_F(Invariants, ConversionsNameTemplateLineAndSignature) {
  SymmetricMatrix s(2);
  Access::set_kind(s, Matrix::regular_sparse);
  RegularMatrix r;
  EXPECT_DEATH(RM_EQ_TMat(r, s),
               "templates:124: RegularMatrix ?& ?RM_EQ_TMat\\(RegularMatrix ?&, const T ?&\\) " WITH_T("SymmetricMatrix")
               ": Assertion `!\"Invalid type\"' failed\\.");
  Access::set_kind(s, Matrix::regular);
  EXPECT_DEATH(RM_EQ_TMat(r, s), "templates:124: ");
  DiagonalMatrix d(2);
  Access::set_kind(d, Matrix::regular);
  SymmetricMatrix symmetric;
  UpperTriangularMatrix upper;
  LowerTriangularMatrix lower;
  EXPECT_DEATH(symmetric = d, "templates:170: SymmetricMatrix ?& ?SM_EQ_TMat");
  EXPECT_DEATH(upper = d, "templates:210: UpperTriangularMatrix ?& ?UT_EQ_TMat");
  EXPECT_DEATH(lower = d, "templates:252: LowerTriangularMatrix ?& ?LT_EQ_TMat");
}

TEST_F(Invariants, LineReaders) {
  RegularMatrix r(2, 2);
  Access::set_kind(r, Matrix::symmetric_sparse);
  double out[2];
  unsigned first = 0, last = 1;
  EXPECT_DEATH(r.GetLimitedRow(0, out, first, last), "templates:1180: .*GetLimitedRow_T.*Invalid type");
  EXPECT_DEATH(r.GetLimitedCol(0, out, first, last), "templates:1278: .*GetLimitedCol_T.*Invalid type");
}

// A diagonal matrix under the tags that its conversions accept besides its own: more positions are visited, and there the
// type gives zeros.
TEST_F(Invariants, ADiagonalMatrixUnderOtherTags) {
  DiagonalMatrix d(2);
  d(0, 0) = 3.0;
  d(1, 1) = 4.0;
  SymmetricMatrix symmetric(2);
  UpperTriangularMatrix upper(2);
  LowerTriangularMatrix lower(2);
  symmetric(0, 1) = upper(0, 1) = lower(1, 0) = 7.0;
  Access::set_kind(d, Matrix::symmetric);
  symmetric = d;
  const RegularMatrix from_symmetric(d);
  Access::set_kind(d, Matrix::upper_triangular);
  upper = d;
  const RegularMatrix from_upper(d);
  Access::set_kind(d, Matrix::lower_triangular);
  lower = d;
  const RegularMatrix from_lower(d);
  Access::set_kind(d, Matrix::diagonal);
  for (const RegularMatrix* a : {&from_symmetric, &from_upper, &from_lower}) {
    EXPECT_EQ((*a)(0, 0), 3.0);
    EXPECT_EQ((*a)(0, 1), 0.0);
    EXPECT_EQ((*a)(1, 0), 0.0);
    EXPECT_EQ((*a)(1, 1), 4.0);
  }
  for (const SingleArrayMatrix* a : {static_cast<const SingleArrayMatrix*>(&symmetric),
                                     static_cast<const SingleArrayMatrix*>(&upper),
                                     static_cast<const SingleArrayMatrix*>(&lower)}) {
    EXPECT_EQ(a->data()[0], 3.0) << a->ClassName();
    EXPECT_EQ(a->data()[1], 0.0) << a->ClassName();
    EXPECT_EQ(a->data()[2], 4.0) << a->ClassName();
  }
}

TEST_F(Invariants, TheTagPicksThePositionsAndTheTypeTheRule) {
  // A symmetric matrix under the upper tag: its upper triangle is visited, the rest is zero.
  SymmetricMatrix s(2);
  s(0, 1) = 5.0;
  Access::set_kind(s, Matrix::upper_triangular);
  RegularMatrix r;
  RM_EQ_TMat(r, s);
  EXPECT_EQ(r(0, 1), 5.0);
  EXPECT_EQ(r(1, 0), 0.0);
  // The same under the lower tag.
  Access::set_kind(s, Matrix::lower_triangular);
  RM_EQ_TMat(r, s);
  EXPECT_EQ(r(0, 1), 0.0);
  EXPECT_EQ(r(1, 0), 5.0);
  // An upper matrix under the symmetric tag: its upper triangle goes to both sides.
  UpperTriangularMatrix u(2);
  u(0, 1) = 7.0;
  Access::set_kind(u, Matrix::symmetric);
  RM_EQ_TMat(r, u);
  EXPECT_EQ(r(0, 1), 7.0);
  EXPECT_EQ(r(1, 0), 7.0);
}

}  // namespace
