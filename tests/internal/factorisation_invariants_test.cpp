// What only a broken precondition or a corrupt kind tag shows.
#include <gtest/gtest.h>

#include <cmath>

#include "core/kinds.h"
#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

using quorvel::detail::Access;
using namespace quorvel::test;

namespace {

SymmetricMatrix WithDiagonal(double first, double second) {
  SymmetricMatrix a(2);
  a(0, 0) = first;
  a(1, 1) = second;
  return a;
}

}  // namespace

TEST(CholeskyPrecondition, NegativeDiagonalEndsTheProcess) {
  KeepsBlocks();
  GTEST_FLAG_SET(death_test_style, "fast");
#if defined(__clang__)
  const char* const message =
      "templates:[0-9]+: TL &CholeskyFactor_T\\(TS &, double\\) \\[TL = LowerTriangularMatrix, TS = "
      "SymmetricMatrix\\]: Assertion `!\\(unreduced_diagonal < 0\\.0\\)' failed\\.";
#else
  const char* const message =
      "templates:[0-9]+: TL& CholeskyFactor_T\\(TS&, double\\) \\[with TL = LowerTriangularMatrix; TS = "
      "SymmetricMatrix\\]: Assertion `!\\(unreduced_diagonal < 0\\.0\\)' failed\\.";
#endif
  SymmetricMatrix first = WithDiagonal(-1.0, 1.0), second = WithDiagonal(1.0, -1e-300);
  EXPECT_DEATH(static_cast<void>(CholeskyFactor(first, 1e-12)), message);
  EXPECT_DEATH(static_cast<void>(CholeskyFactor(second, 1e-12)), message);
  SymmetricSparseMatrix sparse(2);
  sparse.Put(1, 1, -2.0);
  EXPECT_DEATH(static_cast<void>(CholeskyFactor(sparse, 1e-12)),
               "templates:[0-9]+: .*CholeskyFactor_T.*RegularSparseMatrix.*SymmetricSparseMatrix.*Assertion "
               "`!\\(unreduced_diagonal < 0\\.0\\)' failed\\.");
}

TEST(CholeskyPrecondition, NotANumberAndNegativeZeroPass) {
  SymmetricMatrix a = WithDiagonal(std::nan(""), -0.0);
  const LowerTriangularMatrix L(CholeskyFactor(a, 1e-12));
  EXPECT_TRUE(std::isnan(L(0, 0)));
  EXPECT_EQ(L.nsing(), 0);
}

TEST(RankOneTarget, CorruptKindTag) {
  const auto run = [](bool dispensable) {
    RegularMatrix& x = dispensable ? Dispensable<RegularMatrix>(2u, 1u) : *new RegularMatrix(2, 1);
    SymmetricMatrix a(2);
    RegularMatrix b(2, 2);
    Access::set_kind(a, Matrix::lower_triangular);
    Access::set_kind(b, Matrix::diagonal);
    EXPECT_CODE(RankOneUpdate(a, x, x, 1.0), 70400);
    RegularMatrix& y = dispensable ? Dispensable<RegularMatrix>(2u, 1u) : x;
    const unsigned index[1] = {0};
    EXPECT_CODE(RankOneUpdateNZ(b, y, index, 1, y, index, 1, 1.0), 70400);
    EXPECT_CODE_WHILE_PENDING(40123, RankOneUpdate(b, b, b, 1.0), 40123);
    if (!dispensable) delete &x;
  };
  run(true);
  run(false);
}
