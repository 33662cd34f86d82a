// Operations on a whole sparse matrix: extremes, constants, scaling, random fills.
#include <gtest/gtest.h>

#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using Cells = std::vector<Cell>;

RegularSparseMatrix Regular(unsigned m, unsigned n, const Cells& cells) {
  return SparseOf<RegularSparseMatrix>(m, n, cells);
}
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(SparseWhole, MaxAndMinLookAtStoredValues) {
  const RegularSparseMatrix a = Regular(3, 3, {{0, 0, -2.0}, {2, 1, -1.0}});
  EXPECT_EQ(a.Max(), -1.0);
  EXPECT_EQ(a.Min(), -2.0);
  EXPECT_EQ(RegularSparseMatrix(2, 2).Max(), -kInfinity);
  EXPECT_EQ(SymmetricSparseMatrix(2).Min(), kInfinity);
  RegularSparseMatrix zeros = Regular(1, 2, {{0, 0, -3.0}});
  zeros.MultRow(0, 0.0);
  EXPECT_EQ(zeros.Max(), 0.0);  // a stored zero takes part
  EXPECT_EQ(DispensableCopy(a).Max(), -1.0);  // consumed
  EXPECT_EQ(DispensableCopy(a).Min(), -2.0);
  zeros.set_ok(false);
  EXPECT_NO_CODE_WHILE_PENDING(5, zeros.Min());
}

TEST(SparseWhole, ScalarAssignment) {
  RegularSparseMatrix a = Regular(2, 3, {{0, 1, 5.0}});
  a.set_nsing(3);
  a = 2.0;
  EXPECT_EQ(a.used, 6u);
  EXPECT_EQ(a.nsing(), 3);
  a = 0.0;
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.nsing(), 3);
  SymmetricSparseMatrix s(3);
  s = -1.0;
  EXPECT_EQ(s.used, 6u);
  EXPECT_EQ(s.NumberNonZero(), 9u);
  EXPECT_EQ(std::as_const(s)(2, 0), -1.0);
  EXPECT_SOUND(s);
  SparseMatrix& base = s;
  base = 4.0;
  EXPECT_EQ(std::as_const(s)(0, 2), 4.0);
  a.set_ok(false);
  EXPECT_CODE(a = 1.0, 50881);
}

TEST(SparseWhole, MultTakesSizeAndElements) {
  const RegularSparseMatrix a = Regular(2, 3, {{0, 1, 2.0}, {1, 2, -4.0}});
  RegularSparseMatrix b(5, 5);
  b.Mult(a, 0.5);
  EXPECT_EQ(b.nrows(), 2u);
  EXPECT_EQ(CellsOf(b), (Cells{{0, 1, 1.0}, {1, 2, -2.0}}));
  b.Mult(b, -1.0);
  EXPECT_EQ(CellsOf(b), (Cells{{0, 1, -1.0}, {1, 2, 2.0}}));
  b.Mult(a, -2.0);
  EXPECT_EQ(CellsOf(b), (Cells{{0, 1, -4.0}, {1, 2, 8.0}}));
  RegularSparseMatrix c(4, 4);
  c = 1.0;
  c.Mult(a, 0.0);  // empties; the size stays
  EXPECT_EQ(c.nrows(), 4u);
  EXPECT_EQ(c.used, 0u);
  RegularSparseMatrix bad(1, 1);
  bad.set_ok(false);
  EXPECT_NO_CODE(c.Mult(bad, 0.0));  // the source is not looked at
  EXPECT_CODE(c.Mult(bad, 2.0), 52010);
  RegularSparseMatrix d = a;
  d *= 0.0;
  EXPECT_EQ(d.ncols(), 3u);
  EXPECT_EQ(d.used, 0u);
  RegularSparseMatrix& temporary = DispensableCopy(a);
  d.Mult(temporary, 1.0);
  EXPECT_EQ(CellsOf(d), CellsOf(a));
  temporary.DestroyIfDispensable();  // was not consumed
}

TEST(SparseWhole, RandomDrawsInTheirOrder) {
  RegularSparseMatrix a(5, 7);
  std::srand(42);
  a.SetRandom(-2.0, 3.0, 12);
  EXPECT_EQ(a.used, 12u);
  std::srand(42);
  RegularSparseMatrix expected(5, 7);
  const double step = (3.0 - -2.0) / 2147483647.0;
  while (expected.used != 12) {
    const int r = std::rand();
    const int c = std::rand();
    const int x = std::rand();
    expected.Put(static_cast<unsigned>(r) % 5, static_cast<unsigned>(c) % 7, -2.0 + x * step);
  }
  EXPECT_EQ(CellsOf(a), CellsOf(expected));
}

TEST(SparseWhole, RandomFillsAndEnds) {
  RegularSparseMatrix a(3, 4);
  a.SetRandom(1.0, 2.0, 1000);
  EXPECT_EQ(a.used, 12u);
  SymmetricSparseMatrix s(4);
  s.SetRandom(1.0, 2.0, 1000);
  EXPECT_EQ(s.used, 10u);
  std::srand(7);
  const int next = std::rand();
  std::srand(7);
  a.SetRandom(1.0, 2.0, 12);   // enough is stored
  a.SetRandom(1.0, 2.0, 3);
  RegularSparseMatrix b(3, 3);
  b.SetRandom(0.0, 0.0, 5);    // every value would be 0
  b.SetRandom(0.0, 1e-320, 5);
  RegularSparseMatrix(0, 4).SetRandom(1.0, 2.0, 5);
  EXPECT_EQ(b.used, 0u);
  EXPECT_EQ(std::rand(), next) << "something was drawn";
}

TEST(SparseWhole, RandomDiagonal) {
  RegularSparseMatrix a(3, 5);
  std::srand(3);
  a.SetRandomDiagonal(-1.0, 1.0);
  EXPECT_EQ(a.used, 3u);
  std::srand(3);
  for (unsigned i = 3; i-- > 0;) {
    EXPECT_EQ(std::as_const(a)(i, i), -1.0 + std::rand() * (2.0 / 2147483647.0)) << i;
  }
  SymmetricSparseMatrix s(2);
  s.SetRandomDiagonal(0.0, 0.0);
  EXPECT_EQ(CellsOf(s), (Cells{{0, 0, 1e-200}, {1, 1, 1e-200}}));
  s.SetRandomDiagonal(-1e-201, -1e-201);
  EXPECT_EQ(CellsOf(s), (Cells{{0, 0, -1e-200}, {1, 1, -1e-200}}));
  EXPECT_NO_CODE(RegularSparseMatrix(0, 3).SetRandomDiagonal(1.0, 2.0));
}

}  // namespace
