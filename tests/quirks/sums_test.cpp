// docs/QUIRKS.md, "Sums and blocks": each statement as a test.

#include <gtest/gtest.h>

#include <cmath>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

Plain Square(double a, double b, double c, double d) {
  Plain p(2, 2);
  p.e = {a, b, c, d};
  return p;
}

TEST(SumQuirks, DiagonalMinusSymmetric) {
  DiagonalMatrix D(eye(2, 1.0));
  SymmetricMatrix S(*TestMat(2));
  SymmetricMatrix A(D - S);
  EXPECT_TRUE(Same(A, Square(0, 1, 1, -1)));
  SymmetricMatrix B(-(S - D));
  EXPECT_TRUE(Same(B, Square(-0.0, -1, -1, -1)));
  const SymmetricSparseMatrix H(S);
  EXPECT_TRUE(Same(SymmetricSparseMatrix(D - H), Square(0, -1, -1, -1)));
}

TEST(SumQuirks, ValuesOwnTheResult) {
  const RegularMatrix A(2, 2), B(2, 2);
  auto& result = A + B;
  const double* const storage = result.data();
  const RegularMatrix E(result);
  EXPECT_EQ(E.data(), storage);
  const RegularMatrix F(E * B), G(E - B);
  EXPECT_TRUE(Same(F, Plain(2, 2)));
  EXPECT_TRUE(Same(G, Plain(2, 2)));
}

TEST(SumQuirks, TemporaryBecomesTheResult) {
  const RegularMatrix A(2, 2);
  RegularMatrix& T = Dispensable<RegularMatrix>(2u, 2u);
  RegularMatrix& sum = T + A;
  EXPECT_EQ(&sum, &T);
  Drop(sum);
}

TEST(SumQuirks, NegativeZeros) {
  RegularSparseMatrix sparse(2, 2);
  sparse.Put(0, 0, 1.0);
  const UpperTriangularMatrix U(2);
  EXPECT_TRUE(Same(RegularMatrix(sparse - U), Square(1, -0.0, -0.0, -0.0)));
  RegularMatrix minus(2, 2);
  minus = -0.0;
  EXPECT_TRUE(Same(RegularMatrix(minus + U), Square(0, 0, 0, 0)));
  EXPECT_TRUE(Same(RegularMatrix(minus + sparse), Square(1, -0.0, -0.0, -0.0)));
  EXPECT_TRUE(Same(RegularMatrix(minus + DiagonalMatrix(2)), Square(0, -0.0, -0.0, 0)));
}

TEST(SumQuirks, ZerosOfSparseSums) {
  RegularSparseMatrix a(1, 2), b(1, 2);
  a.Put(0, 0, 1.0);
  b.Put(0, 0, 1.0);
  a.Put(0, 1, 3.0);
  a.MultRow(0, 0.0, 1, 1);
  const RegularSparseMatrix difference(a - b);
  EXPECT_EQ(difference.used, 1u);
  EXPECT_NE(difference.Cell_Loc(0, 1), nullptr);
}

TEST(SumQuirks, SingularityCounts) {
  RegularMatrix dense(2, 2);
  RegularSparseMatrix sparse(2, 2);
  dense.set_nsing(1);
  sparse.set_nsing(1);
  dense += dense;
  sparse += sparse;
  EXPECT_EQ(dense.nsing(), -1);
  EXPECT_EQ(sparse.nsing(), 1);
  EXPECT_EQ(RegularSparseMatrix(sparse + sparse).nsing(), -1);
}

TEST(SumQuirks, Codes) {
  RegularMatrix two(2, 2), three(3, 3);
  SymmetricMatrix symmetric(3);
  RegularSparseMatrix few(2, 2), many(3, 3);
  many.Put(0, 0, 1.0);
  EXPECT_CODE(two + three, 40340);
  EXPECT_CODE(two + symmetric, 40280);
  EXPECT_CODE(many - two, 40000);
  EXPECT_CODE(many - few, 40000);
  EXPECT_CODE(few - many, 40293);
  symmetric.set_ok(false);
  EXPECT_CODE(many += symmetric, 52260);
  SymmetricSparseMatrix packed(3);
  EXPECT_CODE(packed += symmetric, 50140);
}

TEST(SumQuirks, Blocks) {
  RegularMatrix ones(2, 2);
  ones = 1.0;
  UpperTriangularMatrix U(4);
  EXPECT_NO_CODE(CopySubMat(U, 2, 0, ones));
  EXPECT_TRUE(U == 0.0);
  SymmetricSparseMatrix H(2);
  RegularMatrix upper(ones);
  upper(1, 0) = 0.0;
  CopySubMat(H, 0, 0, upper);
  EXPECT_EQ(H(0, 1), 0.0);
  SymmetricMatrix S(2);
  EXPECT_CODE(CopySubMat(S, 0, 0, upper), 40000);
  DiagonalMatrix D(4);
  EXPECT_CODE(CopySubMat(D, 2, RegularMatrix(3, 2)), 40000);
  EXPECT_NO_CODE(CopySubMat(D, 2, ones));
  RegularMatrix out(1, 1);
  EXPECT_CODE(GetSubMat(out, ones, 0, 2, 0, 0), 40000);
  EXPECT_EQ(out.nrows(), 3u);
  EXPECT_CODE(SubMat(ones, 0, 2, 0, 0), 40000);
}

}  // namespace
}  // namespace quorvel::test
