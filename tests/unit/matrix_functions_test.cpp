// Worked examples of the matrix functions and what they allocate.

#include "quorvel/matrix_functions.h"

#include <gtest/gtest.h>

#include <utility>

#include "support/allocations.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

RegularMatrix Regular(unsigned m, unsigned n, std::initializer_list<double> values) {
  RegularMatrix a(m, n);
  a.Assign(values.begin(), m, n);
  return a;
}

TEST(Transpose, OfATemporaryIsTheSameObject) {
  RegularMatrix& a = DispensableCopy(Regular(2, 3, {1, 2, 3, 4, 5, 6}));
  const Held<RegularMatrix> t(transpose(a));
  EXPECT_EQ(&*t, &a);
  EXPECT_EQ(t->nrows(), 3u);
  EXPECT_EQ(t->ncols(), 2u);
  EXPECT_TRUE(Same(*t, PlainOf(Regular(3, 2, {1, 4, 2, 5, 3, 6}))));
}

TEST(Transpose, InPlaceKeepsTheFlagOfTheObject) {
  RegularMatrix a = Regular(2, 3, {1, 2, 3, 4, 5, 6});
  transpose(a, &a);
  EXPECT_FALSE(a.dispensable());
  EXPECT_TRUE(Same(a, PlainOf(Regular(3, 2, {1, 4, 2, 5, 3, 6}))));
}

TEST(Transpose, ADispensableOutKeepsItsFlag) {
  const RegularMatrix a = Regular(1, 2, {1, 2});
  const Held<RegularMatrix> out(Dispensable<RegularMatrix>(4u, 4u));
  EXPECT_EQ(&transpose(a, &*out), &*out);
  EXPECT_EQ(out->nrows(), 2u);
}

TEST(Transpose, SquareInPlaceAllocatesNothing) {
  RegularMatrix a = Regular(2, 2, {1, 2, 3, 4});
  const long before = Allocations();
  transpose(a, &a);
  EXPECT_EQ(Allocations() - before, 0);
  EXPECT_TRUE(Same(a, PlainOf(Regular(2, 2, {1, 3, 2, 4}))));
}

// Larger ones, which are turned in tiles; where there is no whole tile, some elements are written twice.
TEST(Transpose, InTiles) {
  const std::pair<unsigned, unsigned> sizes[] = {{33, 33}, {40, 40}, {54, 57}, {64, 64},  {71, 69},
                                                 {100, 3}, {3, 1200}, {1, 90}, {9, 700}, {131, 131}};
  for (const auto& [m, n] : sizes) {
    SCOPED_TRACE(::testing::Message() << m << " x " << n);
    RegularMatrix a(m, n);
    for (unsigned k = 0; k < m * n; ++k) a.data()[k] = k;
    const Held<RegularMatrix> t(transpose(a));
    RegularMatrix in_place(a);
    transpose(in_place, &in_place);
    for (const RegularMatrix* const turned : {&*t, &in_place}) {
      ASSERT_EQ(turned->nrows(), n);
      ASSERT_EQ(turned->ncols(), m);
      for (unsigned k = 0; k < m * n; ++k) ASSERT_EQ(turned->data()[k % n * m + k / n], k);
    }
  }
}

TEST(Sym, TakesTheUpperTriangle) {
  const Held<SymmetricMatrix> s(sym(Regular(2, 2, {1, 2, 3, 4})));
  EXPECT_TRUE(Same(*s, PlainOf(Regular(2, 2, {1, 2, 2, 4}))));
}

TEST(Scalar, IsTheFirstElement) {
  EXPECT_EQ(scalar(Regular(3, 3, {9, 8, 7, 6, 5, 4, 3, 2, 1})), 9.0);
  EXPECT_EQ(scalar(RegularMatrix(0, 5)), 0.0);
  EXPECT_EQ(scalar(SymmetricMatrix()), 0.0);
}

TEST(Dot, StopsAtTheShorterVector) { EXPECT_EQ(dot(Regular(3, 1, {2, 3, 1000}), Regular(2, 1, {5, 7})), 31.0); }

TEST(Dot, ReadsTheFirstColumnOnlyAndIgnoresTheState) {
  RegularMatrix row = Regular(1, 3, {2, 3, 4});
  row.set_ok(false);
  EXPECT_EQ(dot(row, row), 4.0);
  EXPECT_EQ(dot(RegularMatrix(3, 0), RegularMatrix(3, 1)), 0.0);
}

TEST(Dot, LeavesTemporariesAlive) {
  const Held<RegularMatrix> a(DispensableCopy(Regular(2, 1, {1, 2})));
  EXPECT_EQ(dot(*a, *a), 5.0);
  EXPECT_EQ(dot(*a, *a), 5.0);
}

TEST(Kron, HasTheProductOfTheSizes) {
  const Held<RegularMatrix> c(kron(Regular(2, 2, {1, 2, 3, 4}), Regular(1, 3, {1, 10, 100})));
  EXPECT_TRUE(Same(*c, PlainOf(Regular(2, 6, {1, 10, 100, 2, 20, 200, 3, 30, 300, 4, 40, 400}))));
}

TEST(Trace, OfAnEmptyMatrixIsZero) {
  EXPECT_EQ(trace(SymmetricMatrix()), 0.0);
  EXPECT_EQ(trace(RegularMatrix(0, 3)), 0.0);
}

TEST(Trace, OfAWideMatrixTakesWhatThereIs) { EXPECT_EQ(trace(Regular(2, 3, {1, 9, 9, 9, 2, 9})), 3.0); }

template <class K>
void SwapExchanges(K a, K b) {
  a.set_nsing(4);
  b.set_ok(false);
  const double* first = a.data();
  const double* second = b.data();
  const unsigned order = a.nrows();
  K& temporary = Dispensable<K>();
  std::swap(temporary, b);
  EXPECT_TRUE(temporary.dispensable());
  EXPECT_FALSE(temporary.ok());
  EXPECT_FALSE(b.dispensable());
  std::swap(temporary, b);
  delete &temporary;
  std::swap(a, b);
  EXPECT_EQ(a.data(), second);
  EXPECT_EQ(b.data(), first);
  EXPECT_EQ(b.nsing(), 4);
  EXPECT_EQ(a.nsing(), -1);
  EXPECT_FALSE(a.ok());
  EXPECT_TRUE(b.ok());
  EXPECT_EQ(b.nrows(), order);
  std::swap(b, b);
  EXPECT_EQ(b.data(), first);
  EXPECT_EQ(b.nsing(), 4);
}

TEST(StdSwap, ExchangesAllButTheDispensableFlag) {
  SwapExchanges(RegularMatrix(2, 3), RegularMatrix(4, 1));
  SwapExchanges(SymmetricMatrix(2), SymmetricMatrix(3));
  SwapExchanges(UpperTriangularMatrix(2), UpperTriangularMatrix(3));
  SwapExchanges(LowerTriangularMatrix(2), LowerTriangularMatrix(3));
  SwapExchanges(DiagonalMatrix(2), DiagonalMatrix(3));
}

// A new result is one object and its array; a taken-over array only a new object.
TEST(MatrixFunctionAllocations, AreTheResultAlone) {
  const RegularMatrix a(4, 4);
  const SymmetricMatrix s(4);
  const auto count = [](auto call) {
    const long before = Allocations();
    auto& result = call();
    const long after = Allocations();
    Drop(result);
    return after - before;
  };
  EXPECT_EQ(count([&]() -> auto& { return transpose(a); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return sym(a); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return triu(a); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return tril(s); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return diag(s); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return eye(4, 1.0); }), 2);
  EXPECT_EQ(count([&]() -> auto& { return kron(s, s); }), 2);
  UpperTriangularMatrix& u = Dispensable<UpperTriangularMatrix>(4u);
  EXPECT_EQ(count([&]() -> auto& { return transpose(u); }), 1);
}

}  // namespace
}  // namespace quorvel::test
