// Sums and differences: worked examples, signed zeros, stored zeros, what is reused, what is allocated.

#include "quorvel/sums.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/plain.h"
#include "support/sums.h"

namespace quorvel::test {
namespace {

RegularMatrix Two(double a, double b, double c, double d) {
  RegularMatrix m(2, 2);
  m(0, 0) = a, m(0, 1) = b, m(1, 0) = c, m(1, 1) = d;
  return m;
}

SymmetricMatrix Symmetric(double a, double b, double d) {
  SymmetricMatrix s(2);
  s(0, 0) = a, s(0, 1) = b, s(1, 1) = d;
  return s;
}

DiagonalMatrix Diagonal(double a, double d) {
  DiagonalMatrix m(2);
  m(0, 0) = a, m(1, 1) = d;
  return m;
}

TEST(Sums, ChainMakesOneMatrix) {
  RegularMatrix a = Two(1, 2, 3, 4), b = Two(10, 20, 30, 40), c = Two(100, 200, 300, 400);
  const long before = Allocations();
  RegularMatrix& first = a + b;
  RegularMatrix& second = first + c;
  EXPECT_EQ(Allocations() - before, 2);  // the object and its array
  EXPECT_EQ(&first, &second);
  EXPECT_TRUE(Same(second, PlainOf(Two(111, 222, 333, 444))));
  Drop(second);
}

TEST(Sums, MatrixMinusItself) {
  RegularMatrix a = Two(1, 2, 3, 4);
  RegularMatrix& zero = a - a;
  EXPECT_NE(&zero, &a);
  EXPECT_TRUE(zero == 0.0);
  EXPECT_TRUE(Same(a, PlainOf(Two(1, 2, 3, 4))));
  Drop(zero);
}

TEST(Sums, DiagonalMinusSymmetricKeepsOffDiagonalSigns) {
  DiagonalMatrix d = Diagonal(1, 1);
  SymmetricMatrix s = Symmetric(2, 3, 4);
  const SymmetricMatrix kept(d - s);
  EXPECT_TRUE(Same(kept, PlainOf(Symmetric(-1, 3, -3))));
  SymmetricMatrix result;
  Minus(result, d, s);
  EXPECT_TRUE(Same(result, PlainOf(Symmetric(-1, 3, -3))));
  const SymmetricMatrix difference(-(s - d));
  EXPECT_TRUE(Same(difference, PlainOf(Symmetric(-1, -3, -3))));
}

TEST(Sums, TemporarySymmetricPlusDiagonalIsThatTemporary) {
  SymmetricMatrix& s = Dispensable<SymmetricMatrix>(2u);
  s.set_nsing(1);
  DiagonalMatrix d = Diagonal(5, 6);
  SymmetricMatrix& sum = s + d;
  EXPECT_EQ(&sum, &s);
  EXPECT_EQ(sum.nsing(), -1);
  EXPECT_TRUE(Same(sum, PlainOf(Symmetric(5, 0, 6))));
  Drop(sum);
}

TEST(Sums, SizesThatDiffer) {
  RegularMatrix a(2, 2), b(3, 3);
  SymmetricMatrix s(3);
  RegularSparseMatrix sparse(3, 3);
  EXPECT_CODE(a + b, 40340);
  EXPECT_CODE(a + s, 40280);
  EXPECT_CODE(a - sparse, 40000);
}

TEST(Sums, ZerosOfDenseSums) {
  // Literally a(i, j) + b(i, j), an implicit zero being +0.0.
  RegularMatrix r = Two(-0.0, -0.0, -0.0, -0.0);
  const UpperTriangularMatrix u(2);
  EXPECT_TRUE(Same(RegularMatrix(r + u), PlainOf(Two(0.0, 0.0, 0.0, 0.0))));
  EXPECT_TRUE(Same(RegularMatrix(r - u), PlainOf(Two(-0.0, -0.0, -0.0, -0.0))));
  // With a diagonal only that is touched; in D - R every element changes its sign.
  const DiagonalMatrix d = Diagonal(1, 2);
  EXPECT_TRUE(Same(RegularMatrix(r + d), PlainOf(Two(1, -0.0, -0.0, 2))));
  EXPECT_TRUE(Same(RegularMatrix(r - d), PlainOf(Two(-1, -0.0, -0.0, -2))));
  RegularMatrix zero(2, 2);
  EXPECT_TRUE(Same(RegularMatrix(d - zero), PlainOf(Two(1, -0.0, -0.0, 2))));
  EXPECT_TRUE(Same(RegularMatrix(d + r), PlainOf(Two(1, -0.0, -0.0, 2))));
}

TEST(Sums, SparseMinusDenseNegatesTheDenseMatrixOnce) {
  RegularSparseMatrix sparse(2, 2);
  sparse.Put(0, 1, 5.0);
  RegularMatrix zero(2, 2);
  EXPECT_TRUE(Same(RegularMatrix(sparse - zero), PlainOf(Two(-0.0, 5, -0.0, -0.0))));
  SymmetricSparseMatrix packed(2);
  packed.Put(1, 0, 5.0);
  SymmetricMatrix s = Symmetric(1, 2, 0.0);
  EXPECT_TRUE(Same(SymmetricMatrix(packed - s), PlainOf(Symmetric(-1, 3, -0.0))));
  EXPECT_TRUE(Same(RegularMatrix(sparse - UpperTriangularMatrix(2)), PlainOf(Two(-0.0, 5, -0.0, -0.0))));
}

TEST(Sums, RegularPlusSymmetricSparseUpdatesBothTriangles) {
  SymmetricSparseMatrix s(2);
  s.Put(0, 1, 3.0);
  s.Put(1, 1, 4.0);
  RegularMatrix r = Two(1, 1, 1, 1);
  r += s;
  EXPECT_TRUE(Same(r, PlainOf(Two(1, 4, 4, 5))));
  r -= s;
  EXPECT_TRUE(Same(r, PlainOf(Two(1, 1, 1, 1))));
}

TEST(Sums, DiagonalCancelsStoredElements) {
  SymmetricSparseMatrix s(3);
  s.Put(1, 1, 2.0);
  s.Put(0, 2, 7.0);
  DiagonalMatrix d(3);
  d(1, 1) = -2.0;
  d(2, 2) = 1.0;
  s += d;
  EXPECT_EQ(s.used, 2u);
  EXPECT_EQ(s.Cell_Loc(1, 1), nullptr);
  EXPECT_EQ(s(2, 2), 1.0);
}

// A zero is stored by the low-level insert only.
TEST(Sums, StoredZerosOfSparseOperands) {
  RegularSparseMatrix a(1, 4), b(1, 4);
  a.SparseMatrixInsert(0, 0, 0.0);  // in a alone
  b.SparseMatrixInsert(0, 1, 0.0);  // in b alone
  a.SparseMatrixInsert(0, 2, 0.0);
  b.SparseMatrixInsert(0, 2, 0.0);  // in both
  a.SparseMatrixInsert(0, 3, 1.0);
  const RegularSparseMatrix sum(a + b);  // formed in a copy of a: its own zero stays
  EXPECT_EQ(sum.used, 2u);
  ASSERT_NE(sum.Cell_Loc(0, 0), nullptr);
  EXPECT_FALSE(std::signbit(sum.Cell_Loc(0, 0)->value));
  EXPECT_EQ(sum(0, 3), 1.0);
  Minus(b, a, b);  // formed in b, reversed: its own zero stays, negated
  EXPECT_EQ(b.used, 2u);
  ASSERT_NE(b.Cell_Loc(0, 1), nullptr);
  EXPECT_TRUE(std::signbit(b.Cell_Loc(0, 1)->value));
  EXPECT_EQ(b(0, 3), 1.0);
}

TEST(Sums, SparseMatrixMinusItselfKeepsWhatIsNotANumber) {
  RegularSparseMatrix a(2, 2);
  a.Put(0, 0, 1.0);
  a.Put(0, 1, INFINITY);
  a.Put(1, 1, 2.0);
  const RegularSparseMatrix& itself = a;
  a -= itself;
  EXPECT_EQ(a.used, 1u);
  EXPECT_TRUE(std::isnan(a(0, 1)));
  EXPECT_TRUE(a.ok());
}

// The operand with more elements becomes the result, if it is a temporary of the result's kind.
TEST(Sums, SparseResultIsTheLargerTemporary) {
  RegularSparseMatrix small(3, 3), large(3, 3);
  small.Put(0, 0, 1.0);
  large.Put(0, 0, 4.0);
  large.Put(2, 1, 5.0);
  {
    RegularSparseMatrix& x = DispensableCopy(small);
    RegularSparseMatrix& y = DispensableCopy(large);
    RegularSparseMatrix& difference = x - y;
    EXPECT_EQ(&difference, &y);
    EXPECT_EQ(difference(0, 0), -3.0);
    EXPECT_EQ(difference(2, 1), -5.0);
    Drop(difference);
  }
  {
    RegularSparseMatrix& x = DispensableCopy(small);
    RegularSparseMatrix& sum = x + large;  // the larger one is no temporary
    EXPECT_EQ(&sum, &x);
    EXPECT_EQ(sum(2, 1), 5.0);
    Drop(sum);
  }
  {
    SymmetricSparseMatrix symmetric(3);
    symmetric.SetRandom(1.0, 2.0, 6);
    RegularSparseMatrix& difference = DispensableCopy(symmetric) - small;  // never a symmetric one
    EXPECT_EQ(difference(2, 1), symmetric(1, 2));
    Drop(difference);
  }
}

// A copy takes the block size of the operand it is made of.
TEST(Sums, NewSparseResultIsACopyOfTheLargerOperand) {
  RegularSparseMatrix small(3, 3), large(3, 3);
  small.SetGrowBy(4);
  large.SetGrowBy(9);
  small.Put(0, 0, 1.0);
  large.Put(0, 0, 4.0);
  large.Put(2, 1, 5.0);
  EXPECT_EQ(RegularSparseMatrix(small - large).growBy, 10u);
  EXPECT_EQ(RegularSparseMatrix(large - small).growBy, 10u);
  EXPECT_EQ(RegularSparseMatrix(small + small).growBy, 5u);
  RegularSparseMatrix result;
  Minus(result, small, large);  // three operands: always a copy of the first
  EXPECT_EQ(result.growBy, 5u);
}

// ---------------------------------------------------------------------------------------------------------------------
// Allocations at filter sizes.

template <class A, class B>
long AllocationsOfSum(A& a, B& b) {
  const long before = Allocations();
  auto& sum = a + b;
  const long count = Allocations() - before;
  Drop(sum);
  return count;
}

template <class R, class A, class B>
void ExpectAllocations(unsigned n) {
  SCOPED_TRACE(::testing::Message() << A().ClassName() << ", " << B().ClassName() << ", size " << n);
  Random random(n);
  A a = SumSample<A>(n, n, Pattern::kUniform, random);
  B b = SumSample<B>(n, n, Pattern::kUniform, random);
  EXPECT_EQ(AllocationsOfSum(a, b), 2);  // the result's object and its array
  if (std::is_same_v<A, R>) {
    A& temporary = DispensableCopy(a);
    EXPECT_EQ(AllocationsOfSum(temporary, b), 0);
  }
  if (std::is_same_v<B, R>) {
    B& temporary = DispensableCopy(b);
    EXPECT_EQ(AllocationsOfSum(a, temporary), 0);
  }
  R result(n, n);
  const long before = Allocations();
  Plus(result, a, b);
  Minus(result, a, b);
  if constexpr (std::is_same_v<A, R>) a += b;
  EXPECT_EQ(Allocations() - before, 0);
}

struct CheckAllocations {
  template <class R, class A, class B>
  void pair() const {
    for (const unsigned n : {3u, 6u, 9u, 15u, 24u}) ExpectAllocations<R, A, B>(n);
  }
};

TEST(Sums, AllocationsOfDenseSums) { ForEachDenseSum(CheckAllocations()); }

TEST(Sums, AllocationsOfDenseWithSparse) {
  CheckAllocations visit;
  QUORVEL_DENSE_SPARSE_TARGET_SUMS(QUORVEL_VISIT_TARGET)
  QUORVEL_DENSE_SPARSE_FRESH_SUMS(QUORVEL_VISIT_FRESH)
}

TEST(Sums, CovariancePropagationMakesOneArray) {
  for (const unsigned n : {3u, 6u, 9u, 15u, 24u}) {
    Random random(n);
    RegularMatrix F = Filled<RegularMatrix>(Pattern::kUniform, random, n, n);
    SymmetricMatrix P = Filled<SymmetricMatrix>(Pattern::kUniform, random, n);
    SymmetricMatrix Q = Filled<SymmetricMatrix>(Pattern::kUniform, random, n);
    const NoLeak balance;
    long before = Allocations();
    SymmetricMatrix& propagated = AQAT(F, P);
    const long of_product = Allocations() - before;
    const double* const array = propagated.data();
    before = Allocations();
    SymmetricMatrix next(propagated + Q);
    EXPECT_EQ(Allocations() - before, 0);
    EXPECT_EQ(next.data(), array);  // taken over, not copied
    EXPECT_EQ(of_product, 2);       // the object and its array; the scratch is on the stack
    EXPECT_EQ(next.nsing(), -1);
  }
}

}  // namespace
}  // namespace quorvel::test
