// Cholesky factors of dense matrices, element by element against the factorisation written out row by row.

#include <gtest/gtest.h>

#include <cerrno>
#include <cmath>
#include <limits>
#include <new>
#include <string>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/grid.h"
#include "support/make.h"

using namespace quorvel::test;

namespace {

struct Factor {
  Grid l;
  int singular = 0;
};

// Row by row, one element after the other, with the diagonal of finished rows held as its reciprocal.
Factor RowByRow(const Grid& a, double tol) {
  const unsigned n = a.n;
  Factor f{Grid(n, n), 0};
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j <= i; ++j) f.l(i, j) = a(i, j);
  }
  for (unsigned i = 0; i < n; ++i) {
    const double unreduced = f.l(i, i);
    for (unsigned j = 0; j <= i; ++j) {
      if (j < i) {
        f.l(i, j) = f.l(i, j) * f.l(j, j);
      } else if (std::fabs(f.l(i, i)) < std::fabs(tol * unreduced)) {
        ++f.singular;
        for (unsigned k = 0; k <= i; ++k) f.l(i, k) = 0.0;
        for (unsigned k = i; k < n; ++k) f.l(k, i) = 0.0;
      } else {
        f.l(i, i) = 1.0 / std::sqrt(f.l(i, i));
      }
      if (j + 1 > i) continue;
      double sum = 0.0;
      for (unsigned k = 0; k <= j; ++k) sum += f.l(i, k) * f.l(j + 1, k);
      f.l(i, j + 1) -= sum;
    }
  }
  for (unsigned i = 0; i < n; ++i) {
    if (f.l(i, i) != 0.0) f.l(i, i) = 1.0 / f.l(i, i);
  }
  return f;
}

Grid LowerRootOf(const Grid& a) {
  Grid l(a.n, a.n);
  for (unsigned i = 0; i < a.n; ++i) {
    for (unsigned j = 0; j <= i; ++j) {
      double sum = 0.0;
      for (unsigned k = 0; k < j; ++k) sum += l(i, k) * l(j, k);
      l(i, j) = i == j ? std::sqrt(a(i, i) - sum) : (a(i, j) - sum) / l(j, j);
    }
  }
  return l;
}

Grid UpperRootOf(const Grid& a) {
  Grid u(a.n, a.n);
  for (unsigned r = a.n; r-- > 0;) {
    for (unsigned c = a.n; c-- > r;) {
      double sum = 0.0;
      for (unsigned k = c + 1; k < a.n; ++k) sum += u(r, k) * u(c, k);
      u(r, c) = r == c ? std::sqrt(a(r, r) - sum) : (a(r, c) - sum) / u(c, c);
    }
  }
  return u;
}

Grid Hilbert(unsigned n) {
  Random unused(0);
  return SymmetricSample(Family::kHilbert, n, unused);
}

}  // namespace

TEST(CholeskyDense, FactorEqualsTheRowByRowForm) {
  Random random(501);
  for (const Family family : kFamilies) {
    for (const unsigned n : kOrders) {
      const Grid a = SymmetricSample(family, n, random);
      for (const double tol : {1e-12, 0.0, 1e-3, -1e-10}) {
        const SymmetricMatrix A(SymmetricOf(a));
        const LowerTriangularMatrix L(CholeskyFactor(A, tol));
        const Factor expected = RowByRow(a, tol);
        ExpectSameValues(GridOf(L), expected.l, Name(family));
        EXPECT_EQ(L.nsing(), expected.singular) << Name(family) << " " << n;
        EXPECT_EQ(A.nsing(), expected.singular);
        digest::Feed(L);
      }
    }
  }
}

TEST(CholeskyDense, RootsEqualTheElementwiseForm) {
  Random random(502);
  for (const Family family : kFamilies) {
    for (const unsigned n : kOrders) {
      const Grid a = SymmetricSample(family, n, random);
      const SymmetricMatrix A(SymmetricOf(a));
      const LowerTriangularMatrix L(CholeskySquareRootLower(A));
      const UpperTriangularMatrix U(CholeskySquareRootUpper(A));
      ExpectSameValues(GridOf(L), LowerRootOf(a), Name(family));
      ExpectSameValues(GridOf(U), UpperRootOf(a), Name(family));
      EXPECT_EQ(L.nsing(), -1);
      EXPECT_EQ(U.nsing(), -1);
      EXPECT_EQ(A.nsing(), -1);
      digest::Feed(L);
      digest::Feed(U);
    }
  }
}

TEST(CholeskyDense, FactorOfTheHilbertMatrix) {
  const double expected[5][5] = {
      {1.0},
      {0.5, 0x1.279a74590331cp-2},
      {0x1.5555555555555p-2, 0x1.279a74590331dp-2, 0x1.314c3d92a9e87p-4},
      {0.25, 0x1.0a0b02501c79ap-2, 0x1.c9f25c5bfedcbp-4, 0x1.35a0e521ffa7ap-6},
      {0x1.999999999999ap-3, 0x1.d8f7208e6b82cp-3, 0x1.05af103491a38p-3, 0x1.35a0e521ff8d1p-5, 0x1.381381381584ap-8}};
  const SymmetricMatrix A(SymmetricOf(Hilbert(5)));
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_EQ(L.nsing(), 0);
  for (unsigned i = 0; i < 5; ++i) {
    for (unsigned j = 0; j <= i; ++j) EXPECT_EQ(static_cast<const LowerTriangularMatrix&>(L)(i, j), expected[i][j]);
  }
}

TEST(CholeskyDense, RootsOfTheHilbertMatrix) {
  const double upper[4][4] = {
      {0x1.00000000000f8p-2, 0x1.bb67ae8584c31p-2, 0x1.1e3779b97f49fp-1, 0x1.52a7fa9d2f8eap-1},
      {0.0, 0x1.d8f7208e6b95dp-5, 0x1.c9f25c5bfedc4p-3, 0x1.0eecc87dbfa55p-1},
      {0.0, 0.0, 0x1.314c3d92a9e95p-4, 0x1.c38aa37c3f68dp-2},
      {0.0, 0.0, 0.0, 0x1.83091e6a7f7e6p-2}};
  const double last[4] = {0.25, 0x1.0a0b02501c79ap-2, 0x1.c9f25c5bfedcbp-4, 0x1.35a0e521ffa7ap-6};
  const SymmetricMatrix A(SymmetricOf(Hilbert(4)));
  const UpperTriangularMatrix U(CholeskySquareRootUpper(A));
  const LowerTriangularMatrix L(CholeskySquareRootLower(A));
  for (unsigned i = 0; i < 4; ++i) {
    for (unsigned j = 0; j < 4; ++j) EXPECT_EQ(U(i, j), upper[i][j]) << i << j;
    EXPECT_EQ(L(3, i), last[i]) << i;
  }
}

TEST(CholeskyDense, RankOneMatrixOfOrderTwo) {
  SymmetricMatrix A(2);
  A(0, 0) = 4.0;
  A(0, 1) = 2.0;
  A(1, 1) = 1.0;
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-10));
  EXPECT_EQ(L(0, 0), 2.0);
  EXPECT_EQ(L(1, 0), 0.0);
  EXPECT_EQ(L(1, 1), 0.0);
  EXPECT_EQ(L.nsing(), 1);
  EXPECT_EQ(A.nsing(), 1);
}

TEST(CholeskyDense, ZeroDiagonalEscapesTheTest) {
  SymmetricMatrix A(3);
  A(0, 0) = 4.0;
  A(2, 2) = 9.0;
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_EQ(L.nsing(), 0);
  EXPECT_EQ(L(0, 0), 2.0);
  EXPECT_EQ(L(1, 1), 0.0);
  EXPECT_TRUE(std::isnan(L(2, 1)));
  EXPECT_TRUE(std::isnan(L(2, 2)));
}

TEST(CholeskyDense, EmptyMatrix) {
  const SymmetricMatrix A;
  const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
  EXPECT_EQ(L.ndim(), 0u);
  EXPECT_EQ(L.nsing(), 0);
  EXPECT_EQ(A.nsing(), 0);
  const LowerTriangularMatrix lower(CholeskySquareRootLower(A));
  const UpperTriangularMatrix upper(CholeskySquareRootUpper(A));
  EXPECT_EQ(lower.ndim(), 0u);
  EXPECT_EQ(upper.ndim(), 0u);
}

TEST(CholeskyDense, RootsOfOrderTwo) {
  SymmetricMatrix A(2);
  A(0, 0) = 4.0;
  A(0, 1) = 2.0;
  A(1, 1) = 2.0;
  const UpperTriangularMatrix U(CholeskySquareRootUpper(A));
  EXPECT_EQ(U(0, 0), std::sqrt(2.0));
  EXPECT_EQ(U(0, 1), 0x1.6a09e667f3bccp+0);  // 2/sqrt(2)
  EXPECT_EQ(U(1, 1), std::sqrt(2.0));
  const LowerTriangularMatrix L(CholeskySquareRootLower(A));
  EXPECT_EQ(L(0, 0), 2.0);
  EXPECT_EQ(L(1, 0), 1.0);
  EXPECT_EQ(L(1, 1), 1.0);
}

// The stored diagonal is the reciprocal of a reciprocal, which is not always the square root itself.
TEST(CholeskyDense, DiagonalIsTheReciprocalOfTheReciprocal) {
  unsigned differ = 0;
  for (unsigned x = 1; x <= 2000; ++x) {
    SymmetricMatrix A(1);
    A(0, 0) = x;
    const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
    const double root = std::sqrt(static_cast<double>(x));
    EXPECT_EQ(L(0, 0), 1.0 / (1.0 / root));
    differ += L(0, 0) != root ? 1 : 0;
    if (x == 3) {
      EXPECT_EQ(L(0, 0), 0x1.bb67ae8584ca9p+0);
    }
  }
  EXPECT_EQ(differ, 205u);
}

// Whole numbers throughout: pivots 1, 4 and 16 have exact roots, so a singular pivot is exactly 0.
TEST(CholeskyDense, CountsOfConstructedRank) {
  Random random(503);
  for (unsigned trial = 0; trial < 500; ++trial) {
    const RankSample sample = SampleOfKnownRank(1 + random.Below(20), random);
    const SymmetricMatrix A(SymmetricOf(sample.a));
    const LowerTriangularMatrix L(CholeskyFactor(A, 1e-12));
    ASSERT_EQ(L.nsing(), sample.zeros) << "trial " << trial;
    for (unsigned i = 0; i < L.ndim(); ++i) ASSERT_EQ(L(i, i), std::sqrt(sample.d[i])) << "trial " << trial;
  }
}

TEST(CholeskyDense, DispensableOperandGivesItsStorage) {
  Random random(504);
  for (const unsigned n : {0u, 1u, 5u, 30u, 61u}) {
    const SymmetricMatrix A(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    const LowerTriangularMatrix expected(CholeskyFactor(A, 1e-12));
    SymmetricMatrix& temporary = DispensableCopy(A);
    const double* const storage = temporary.data();
    LowerTriangularMatrix& L = CholeskyFactor(temporary, 1e-12);
    EXPECT_TRUE(L.dispensable());
    EXPECT_EQ(L.data(), storage);
    EXPECT_TRUE(SameBits(L.data(), expected.data(), L.StoredCount()));
    EXPECT_EQ(L.nsing(), 0);
    L.DestroyIfDispensable();
  }
}

// In place too, what follows a singular pivot begins with the columns that are finished.
TEST(CholeskyDense, SingularDispensableOperand) {
  Random random(511);
  for (unsigned trial = 0; trial < 300; ++trial) {
    const RankSample sample = SampleOfKnownRank(1 + trial % 12, random);
    const SymmetricMatrix A(SymmetricOf(sample.a));
    const Factor expected = RowByRow(sample.a, 1e-12);
    const LowerTriangularMatrix L(CholeskyFactor(DispensableCopy(A), 1e-12));
    ExpectSameValues(GridOf(L), expected.l, ("trial " + std::to_string(trial)).c_str());
    EXPECT_EQ(L.nsing(), sample.zeros) << "trial " << trial;
  }
}

// With more columns than are found at a time, rows below a singular one still hold A.
TEST(CholeskyDense, SingularDispensableOperandOfManyColumns) {
  Random random(512);
  for (unsigned n = 24; n < 64; ++n) {
    const RankSample sample = SampleOfKnownRank(n, random);
    const SymmetricMatrix A(SymmetricOf(sample.a));
    const Factor expected = RowByRow(sample.a, 1e-12);
    const LowerTriangularMatrix L(CholeskyFactor(DispensableCopy(A), 1e-12));
    ExpectSameValues(GridOf(L), expected.l, ("order " + std::to_string(n)).c_str());
    EXPECT_EQ(L.nsing(), sample.zeros) << "order " << n;
  }
}

TEST(CholeskyDense, RootsConsumeTheirOperand) {
  Random random(505);
  for (const unsigned n : {0u, 1u, 5u, 30u, 61u}) {
    SymmetricMatrix A(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    A.set_nsing(3);
    const LowerTriangularMatrix expected(CholeskySquareRootLower(A));
    const LowerTriangularMatrix L(CholeskySquareRootLower(DispensableCopy(A)));
    EXPECT_TRUE(SameBits(L.data(), expected.data(), L.StoredCount()));
    EXPECT_EQ(L.nsing(), -1);
    const UpperTriangularMatrix expected_upper(CholeskySquareRootUpper(A));
    const UpperTriangularMatrix U(CholeskySquareRootUpper(DispensableCopy(A)));
    EXPECT_TRUE(SameBits(U.data(), expected_upper.data(), U.StoredCount()));
    EXPECT_EQ(U.nsing(), -1);
  }
}

// The factor's inverse row by row, then the sums over its columns.
namespace {

Factor InverseRowByRow(const Grid& a, double tol) {
  Factor f = RowByRow(a, tol);
  const unsigned n = a.n;
  f.singular = 0;
  for (unsigned i = 0; i < n; ++i) {
    if (std::fabs(f.l(i, i)) > 1e-200) {
      f.l(i, i) = 1.0 / f.l(i, i);
      continue;
    }
    ++f.singular;
    for (unsigned k = 0; k < n; ++k) f.l(i, k) = f.l(k, i) = 0.0;
  }
  for (unsigned r = 1; r < n; ++r) {
    std::vector<double> w(r);
    for (unsigned c = 0; c < r; ++c) {
      for (unsigned j = c; j < r; ++j) w[c] += f.l(r, j) * f.l(j, c);
    }
    for (unsigned c = 0; c < r; ++c) f.l(r, c) = w[c] != 0.0 ? -(w[c] * f.l(r, r)) : 0.0;
  }
  Grid s(n, n);
  for (unsigned i = 0; i < n; ++i) {
    for (unsigned j = 0; j <= i; ++j) {
      for (unsigned k = i; k < n; ++k) s(i, j) += f.l(k, i) * f.l(k, j);
      s(j, i) = s(i, j);
    }
  }
  f.l = s;
  return f;
}

}  // namespace

TEST(InverseByCholeskyDense, EqualsTheRowByRowForm) {
  Random random(506);
  for (const Family family : kFamilies) {
    for (const unsigned n : kOrders) {
      if (n == 0 || n == 2 || n == 3) continue;
      const Grid a = SymmetricSample(family, n, random);
      for (const double tol : {1e-12, 0.0}) {
        const SymmetricMatrix A(SymmetricOf(a));
        const SymmetricMatrix inverse(InverseByCholesky(A, tol));
        const Factor expected = InverseRowByRow(a, tol);
        ExpectSameValues(GridOf(inverse), expected.l, Name(family));
        EXPECT_EQ(inverse.nsing(), expected.singular) << Name(family) << " " << n;
        EXPECT_EQ(A.nsing(), RowByRow(a, tol).singular);
        digest::Feed(inverse);
      }
    }
  }
}

TEST(InverseByCholeskyDense, OfTheHilbertMatrix) {
  const SymmetricMatrix A(SymmetricOf(Hilbert(5)));
  const SymmetricMatrix inverse(InverseByCholesky(A, 1e-12));
  EXPECT_EQ(inverse(0, 0), 0x1.8ffffffffd5c3p+4);
  EXPECT_EQ(inverse(0, 4), 0x1.3afffffffb1f6p+9);
  EXPECT_EQ(inverse(4, 4), 0x1.5887fffffb8e0p+15);
  EXPECT_EQ(inverse.nsing(), 0);
  EXPECT_EQ(A.nsing(), 0);
}

// The zero that escapes the tolerance is caught here: everything stays finite.
TEST(InverseByCholeskyDense, ZeroDiagonal) {
  SymmetricMatrix A(4);
  A(0, 0) = 4.0;
  A(2, 2) = 9.0;
  A(3, 3) = 1.0;
  const SymmetricMatrix inverse(InverseByCholesky(A, 1e-12));
  Grid expected(4, 4);
  expected(0, 0) = 0.25;
  ExpectSameValues(GridOf(inverse), expected, "inverse");
  EXPECT_EQ(inverse.nsing(), 3);
  EXPECT_EQ(A.nsing(), 0);
}

TEST(InverseByCholeskyDense, SmallOrdersTakeTheClosedForms) {
  Random random(507);
  for (const unsigned n : {2u, 3u}) {
    const SymmetricMatrix A(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    A.set_nsing(-1);
    const SymmetricMatrix expected(n == 2 ? inv2x2(A) : inv3x3(A));
    const SymmetricMatrix inverse(InverseByCholesky(A, 1e300));  // a tolerance under which every row is singular
    EXPECT_TRUE(SameBits(inverse.data(), expected.data(), inverse.StoredCount()));
    EXPECT_EQ(inverse.nsing(), 0);
    EXPECT_EQ(A.nsing(), -1);
    SymmetricMatrix& temporary = DispensableCopy(A);
    SymmetricMatrix& in_place = InverseByCholesky(temporary, 1e-12);
    EXPECT_EQ(&in_place, &temporary);
    in_place.DestroyIfDispensable();
  }
}

// Order 1 takes the reciprocal of a reciprocal as every larger order does.
TEST(InverseByCholeskyDense, OrderOne) {
  SymmetricMatrix A(1);
  A(0, 0) = 3.0;
  const double root = 1.0 / (1.0 / (1.0 / std::sqrt(3.0)));
  const SymmetricMatrix inverse(InverseByCholesky(A, 1e-12));
  EXPECT_EQ(inverse(0, 0), root * root);
  EXPECT_EQ(inverse(0, 0), 0x1.5555555555557p-2);
  A(0, 0) = 0.0;
  const SymmetricMatrix none(InverseByCholesky(A, 1e-12));
  EXPECT_EQ(none(0, 0), 0.0);
  EXPECT_EQ(none.nsing(), 1);
  EXPECT_EQ(A.nsing(), 0);
}

TEST(InverseByCholeskyDense, OrderZeroIsABadArrayLength) {
  const SymmetricMatrix empty;
  EXPECT_THROW(static_cast<void>(InverseByCholesky(empty, 1e-12)), std::bad_array_new_length);
  EXPECT_THROW(static_cast<void>(InverseByCholesky(Dispensable<SymmetricMatrix>(0u), 1e-12)),
               std::bad_array_new_length);
  EXPECT_EQ(ErrorState(), 0);
}

TEST(InverseByCholeskyDense, ConsumesATemporary) {
  Random random(508);
  for (const unsigned n : {1u, 4u, 30u, 61u}) {
    const SymmetricMatrix A(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    const SymmetricMatrix expected(InverseByCholesky(A, 1e-12));
    const SymmetricMatrix inverse(InverseByCholesky(DispensableCopy(A), 1e-12));
    EXPECT_TRUE(SameBits(inverse.data(), expected.data(), inverse.StoredCount()));
  }
}

// The result's array has its exact length, also when the operand's had room to spare.
TEST(InverseByCholeskyDense, HasNoMoreRoomThanItNeeds) {
  Random random(512);
  for (const unsigned n : {1u, 4u, 30u}) {
    const SymmetricMatrix A(SymmetricOf(SymmetricSample(Family::kDefinite, n, random)));
    const SymmetricMatrix expected(InverseByCholesky(A, 1e-12));
    SymmetricMatrix& roomy = DispensableCopy(A);
    roomy.Reserve(60, 60);
    const SymmetricMatrix inverse(InverseByCholesky(roomy, 1e-12));
    EXPECT_EQ(inverse.capacity(), n * (n + 1) / 2);
    EXPECT_TRUE(SameBits(inverse.data(), expected.data(), inverse.StoredCount()));
  }
}

TEST(InverseByCholeskyDense, CountsOfConstructedRank) {
  Random random(509);
  for (unsigned trial = 0; trial < 500; ++trial) {
    const RankSample sample = SampleOfKnownRank(4 + random.Below(17), random);
    const SymmetricMatrix A(SymmetricOf(sample.a));
    const SymmetricMatrix inverse(InverseByCholesky(A, 1e-12));
    ASSERT_EQ(inverse.nsing(), sample.zeros) << "trial " << trial;
    ASSERT_EQ(A.nsing(), sample.zeros) << "trial " << trial;
  }
}

// The root of a negative pivot is a domain error, by which the C library sets errno; a NaN is none.
TEST(CholeskyDense, NegativePivotsAreDomainErrors) {
  const auto errno_of = [](const auto& factor, const SymmetricMatrix& a) {
    errno = 0;
    factor(a).DestroyIfDispensable();
    return errno;
  };
  const auto factor = [](const SymmetricMatrix& a) -> const Matrix& { return CholeskyFactor(a, 1e-14); };
  const auto lower = [](const SymmetricMatrix& a) -> const Matrix& { return CholeskySquareRootLower(a); };
  const auto upper = [](const SymmetricMatrix& a) -> const Matrix& { return CholeskySquareRootUpper(a); };
  for (const unsigned n : {2u, 3u, 5u, 9u, 10u, 20u, 24u, 25u, 33u, 60u, 130u}) {
    for (const unsigned at : {1u, n / 2, n - 1}) {
      SymmetricMatrix a(n);
      for (unsigned i = 0; i < n; ++i) a(i, i) = 1.0;
      EXPECT_EQ(errno_of(factor, a), 0);
      EXPECT_EQ(errno_of(lower, a), 0);
      EXPECT_EQ(errno_of(upper, a), 0);
      a(at - 1, at) = 3.0;
      EXPECT_EQ(errno_of(factor, a), EDOM) << n << " " << at;
      EXPECT_EQ(errno_of(lower, a), EDOM) << n << " " << at;
      EXPECT_EQ(errno_of(upper, a), EDOM) << n << " " << at;
      a(at - 1, at) = std::numeric_limits<double>::quiet_NaN();
      EXPECT_EQ(errno_of(factor, a), 0) << n << " " << at;
      EXPECT_EQ(errno_of(lower, a), 0) << n << " " << at;
      EXPECT_EQ(errno_of(upper, a), 0) << n << " " << at;
    }
  }
}
