// Members that programs seldom call themselves, called directly: those of the bases, and those that other operations do
// their work through.
#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/sparse.h"

namespace quorvel::test {
namespace {

std::vector<double> Stored(const SingleArrayMatrix& a) { return {a.data(), a.data() + a.StoredCount()}; }

TEST(SingleArray, AllocateMemoryReplacesTheArray) {
  RegularMatrix a(2, 2);
  a(0, 0) = 5.0;
  a.AllocateMemory(7, true);
  EXPECT_EQ(a.capacity(), 7u);
  for (unsigned k = 0; k < 7; ++k) EXPECT_EQ(a.data()[k], 0.0) << k;
  EXPECT_EQ(a.nrows(), 2u);
  a.AllocateMemory(4, false);
  EXPECT_EQ(a.capacity(), 4u);
  EXPECT_EQ(a.HeapReserved(), 32u);
}

TEST(SingleArray, NegateAndAssignThroughTheBase) {
  UpperTriangularMatrix u(2);
  u(0, 0) = 1.0;
  u(0, 1) = -2.0;
  u.set_nsing(3);
  SingleArrayMatrix& base = u;
  base.Negate();
  EXPECT_EQ(Stored(u), (std::vector<double>{-1.0, 2.0, -0.0}));
  EXPECT_TRUE(SameBits(u(1, 1), -0.0));
  EXPECT_EQ(&(base = 4.0), &base);
  EXPECT_EQ(Stored(u), (std::vector<double>{4.0, 4.0, 4.0}));
  EXPECT_EQ(u.nsing(), 3);
  base = 0.0;
  EXPECT_EQ(u.nsing(), -1);
  u.set_ok(false);
  EXPECT_CODE(base = 1.0, 50000);
}

TEST(SparseBase, SizeAndSymmetry) {
  const RegularSparseMatrix r(2, 5);
  const SymmetricSparseMatrix s(4u);
  unsigned rows = 9, cols = 9;
  r.SparseMatrix::GetSize(rows, cols);
  EXPECT_EQ(rows, 2u);
  EXPECT_EQ(cols, 5u);
  s.GetSize(rows, cols);
  EXPECT_EQ(rows, 4u);
  EXPECT_EQ(cols, 4u);
  EXPECT_FALSE(r.IsSymmetric());
  EXPECT_TRUE(s.IsSymmetric());
}

TEST(SparseBase, NegateKeepsPlaces) {
  RegularSparseMatrix a = SparseOf<RegularSparseMatrix>(3, 3, {{0, 2, 1.5}, {2, 0, -4.0}});
  const std::vector<unsigned> places = PlacesOf(a);
  SparseMatrix& base = a;
  EXPECT_EQ(&base.Negate(), &base);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 2, -1.5}, {2, 0, 4.0}}));
  EXPECT_EQ(PlacesOf(a), places);
  EXPECT_SOUND(a);
}

TEST(SparseBase, FreedAndInitializedAnew) {
  SymmetricSparseMatrix a = SparseOf<SymmetricSparseMatrix>(3, 3, {{0, 2, 1.5}, {1, 1, 2.0}});
  a.SparseMatrix::FreeMemory();
  EXPECT_EQ(a.nrows(), 0u);
  EXPECT_EQ(a.ncols(), 0u);
  EXPECT_EQ(a.HeapReserved(), 0u);
  EXPECT_EQ(a.growBy, 0u);
  a.Initialize(2, 2);
  EXPECT_EQ(a.nrows(), 2u);
  EXPECT_EQ(a.used, 0u);
  EXPECT_EQ(a.HeapReserved(), 16u);
  a.Put(1, 0, 3.0);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 1, 3.0}}));
  EXPECT_SOUND(a);
}

// The elements that are not zero, each at its place; of a symmetric source both triangles.
TEST(SparseBase, CopyMatOfEveryDenseKind) {
  RegularSparseMatrix a;
  RegularMatrix r(2, 3);
  r(1, 2) = 7.0;
  a.CopyMat(r);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{1, 2, 7.0}}));
  SymmetricMatrix s(3);
  s(0, 2) = 2.0;
  s(1, 1) = std::numeric_limits<double>::infinity();
  a.CopyMat(s);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 2, 2.0}, {1, 1, std::numeric_limits<double>::infinity()}, {2, 0, 2.0}}));
  UpperTriangularMatrix u(2);
  u(0, 1) = 3.0;
  a.CopyMat(u);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{0, 1, 3.0}}));
  LowerTriangularMatrix l(2);
  l(1, 0) = 4.0;
  a.CopyMat(DispensableCopy(l));
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{1, 0, 4.0}}));
  DiagonalMatrix d(2);
  d(1, 1) = 5.0;
  a.CopyMat(d);
  EXPECT_EQ(CellsOf(a), (std::vector<Cell>{{1, 1, 5.0}}));
  EXPECT_SOUND(a);
  d.set_ok(false);
  EXPECT_CODE(a.CopyMat(d), 52260);
}

TEST(ConstForms, DifferenceWithAConstantSubtrahend) {
  RegularMatrix a(1, 2), b(1, 2);
  a(0, 0) = 5.0;
  b(0, 0) = 7.0;
  b(0, 1) = -1.0;
  const RegularMatrix& constant = b;
  const RegularMatrix kept(a - constant);
  EXPECT_EQ(Stored(kept), (std::vector<double>{-2.0, 1.0}));
  EXPECT_EQ(Stored(a), (std::vector<double>{5.0, 0.0}));
  RegularMatrix& temporary = DispensableCopy(a);
  RegularMatrix& difference = temporary - constant;
  EXPECT_EQ(&difference, &temporary);
  EXPECT_EQ(Stored(difference), (std::vector<double>{-2.0, 1.0}));
  difference.DestroyIfDispensable();
}

// A constant matrix on the left, on the right a variable one: it stays, a temporary becomes the solution.
template <class K>
void DivideByConstant(const K& twice) {
  RegularMatrix b(2, 1);
  b(0) = 6.0;
  b(1) = -4.0;
  const RegularMatrix x(twice > b);
  EXPECT_EQ(Stored(x), (std::vector<double>{3.0, -2.0})) << twice.ClassName();
  const RegularMatrix& constant = b;
  const RegularMatrix y(twice > constant);
  EXPECT_EQ(Stored(y), (std::vector<double>{3.0, -2.0})) << twice.ClassName();
  EXPECT_EQ(twice.nsing(), 0);
  EXPECT_EQ(b(0), 6.0);
  RegularMatrix& temporary = DispensableCopy(b);
  RegularMatrix& solution = twice > temporary;
  EXPECT_EQ(&solution, &temporary);
  EXPECT_EQ(Stored(solution), (std::vector<double>{3.0, -2.0})) << twice.ClassName();
  solution.DestroyIfDispensable();
}

template <class K>
K Twice() {
  K a(2, 2);
  a(0, 0) = 2.0;
  a(1, 1) = 2.0;
  return a;
}

TEST(ConstForms, LeftDivisionByConstantMatrices) {
  DivideByConstant(Twice<DiagonalMatrix>());
  DivideByConstant(Twice<LowerTriangularMatrix>());
  DivideByConstant(Twice<UpperTriangularMatrix>());
  DivideByConstant(Twice<SymmetricMatrix>());
  DivideByConstant(Twice<RegularMatrix>());
  DivideByConstant(Twice<RegularSparseMatrix>());
}

TEST(ConstForms, NonZerosOfAConstantVector) {
  RegularMatrix x(3, 1), out(3, 1);
  x(0) = 4.0;
  x(2) = -2.0;
  unsigned index[3] = {9, 9, 9};
  const RegularMatrix& constant = x;
  EXPECT_EQ(SetNonZeros(3, constant, out, index), 2u);
  EXPECT_EQ(Stored(out), (std::vector<double>{4.0, -2.0, 0.0}));
  EXPECT_EQ(index[0], 0u);
  EXPECT_EQ(index[1], 2u);
  EXPECT_EQ(index[2], 9u);
  EXPECT_CODE(SetNonZeros(4, constant, out, index), 60360);
}

}  // namespace
}  // namespace quorvel::test
