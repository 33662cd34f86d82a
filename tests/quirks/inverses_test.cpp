// The kept surprises of the matrix functions, inverses and left division that docs/QUIRKS.md lists.

#include <gtest/gtest.h>

#include <limits>
#include <new>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

RegularMatrix Of(unsigned m, unsigned n, std::initializer_list<double> values) {
  RegularMatrix a(m, n);
  a.Assign(values.begin(), m, n);
  return a;
}

TEST(MatrixFunctionQuirks, KronAndDotConsumeNothing) {
  const Held<RegularMatrix> a(DispensableCopy(Of(2, 1, {1, 2})));
  EXPECT_EQ(dot(*a, *a), 5.0);
  Drop(kron(*a, *a));
  EXPECT_EQ((*a)(1), 2.0);
}

TEST(MatrixFunctionQuirks, SymTakesTheUpperTriangleAndTheMeanIsWrittenOut) {
  const RegularMatrix a = Of(2, 2, {1, 2, 4, 4});
  const Held<SymmetricMatrix> upper(sym(a));
  EXPECT_EQ((*upper)(1, 0), 2.0);
  const Held<SymmetricMatrix> mean(sym(0.5 * (a + transpose(a))));
  EXPECT_EQ((*mean)(1, 0), 3.0);
}

TEST(MatrixFunctionQuirks, TheCountFollowsSome) {
  RegularMatrix a = Of(2, 2, {1, 2, 3, 4});
  a.set_nsing(3);
  const Held<SymmetricMatrix> s(sym(a));
  EXPECT_EQ(s->nsing(), 3);
  RegularSparseMatrix sparse(a);
  sparse.set_nsing(3);
  const Held<SymmetricSparseMatrix> t(sym(sparse));
  EXPECT_EQ(t->nsing(), -1);
  transpose(a, &a);
  EXPECT_EQ(a.nsing(), 3);
  RegularMatrix wide(1, 2);
  wide.set_nsing(3);
  transpose(wide, &wide);
  EXPECT_EQ(wide.nsing(), -1);
}

TEST(MatrixFunctionQuirks, NegativeZerosAndImplicitOnes) {
  const Held<UpperTriangularMatrix> u(triu(Of(1, 1, {-0.0})));
  EXPECT_TRUE(SameBits(u->data()[0], 0.0));
  SymmetricMatrix s(1);
  s(0, 0) = -0.0;
  const Held<UpperTriangularMatrix> v(triu(s));
  EXPECT_TRUE(SameBits(v->data()[0], -0.0));
  DiagonalMatrix d(2);
  d = 1.0;
  const Held<RegularMatrix> k(kron(d, Of(1, 1, {kInfinity})));
  EXPECT_TRUE((*k)(0, 1) != (*k)(0, 1));
}

TEST(InverseQuirks, InvGivesUpWhereLeftDivisionDoesNot) {
  // The Hilbert matrix of order 10 has a condition of 2e13.
  RegularMatrix h(10, 10);
  for (unsigned i = 0; i < 10; ++i) {
    for (unsigned j = 0; j < 10; ++j) h(i, j) = 1.0 / (i + j + 1);
  }
  const Held<RegularMatrix> x(inv(h));
  const RegularMatrix b(10, 1);
  const Held<RegularMatrix> y(h > b);
  EXPECT_EQ(h.nsing(), 0);
  EXPECT_GT(x->nsing(), 0);
}

TEST(InverseQuirks, TheArgumentsCountBecomesZero) {
  RegularMatrix a(4, 4);
  const Held<RegularMatrix> x(inv(a));
  EXPECT_EQ(x->nsing(), 4);
  EXPECT_EQ(a.nsing(), 0);
  SymmetricMatrix s(4);
  const Held<SymmetricMatrix> y(inv(s));
  EXPECT_EQ(y->nsing(), 4);
  EXPECT_EQ(s.nsing(), -1);
}

TEST(InverseQuirks, ATinyDiagonalElementStays) {
  DiagonalMatrix d(1);
  d(0, 0) = 1e-300;
  const Held<DiagonalMatrix> x(inv(d));
  EXPECT_EQ(x->data()[0], 0.0);
  inv(d, true);
  EXPECT_EQ(d(0, 0), 1e-300);
  EXPECT_EQ(d.nsing(), 1);
}

TEST(InverseQuirks, SmallOrdersInvertSingleElements) {
  const Held<RegularMatrix> x(inv(Of(2, 2, {0, 2, 0, 0})));
  EXPECT_EQ((*x)(1, 0), 0.5);
  EXPECT_EQ(x->nsing(), 1);
  RegularSparseMatrix sparse(2, 2);
  sparse.Put(0, 1, 2.0);
  const Held<RegularSparseMatrix> y(inv(sparse));
  EXPECT_EQ(y->used, 0u);
  EXPECT_EQ(y->nsing(), 2);
}

TEST(InverseQuirks, OrderZero) {
  RegularMatrix empty;
  EXPECT_THROW(inv(empty), std::bad_array_new_length);
  EXPECT_EQ(GetErrorCode(), 0);
  const Held<DiagonalMatrix> d(inv(DiagonalMatrix()));
  EXPECT_EQ(d->ndim(), 0u);
}

TEST(InverseQuirks, AConstMatrixIsCopied) {
  const RegularMatrix a = Of(1, 1, {2});
  const Held<RegularMatrix> x(inv(a, true));
  EXPECT_EQ(a(0), 2.0);
  EXPECT_EQ((*x)(0), 0.5);
}

TEST(SolveQuirks, TheCountIsInAAndATemporaryASurvives) {
  const Held<DiagonalMatrix> a(Dispensable<DiagonalMatrix>(2u));
  RegularMatrix b = Of(2, 1, {7, 8});
  b.set_nsing(5);
  const Held<RegularMatrix> x(*a > b);
  EXPECT_EQ(a->nsing(), 2);
  EXPECT_EQ(x->nsing(), 5);
  EXPECT_EQ((*x)(0), 7.0);
  const LowerTriangularMatrix l(2);
  const Held<RegularMatrix> y(l > b);
  EXPECT_EQ((*y)(0), 0.0);
  EXPECT_EQ(l.nsing(), 2);
}

}  // namespace
}  // namespace quorvel::test
