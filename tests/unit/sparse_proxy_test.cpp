// References to elements of sparse matrices.
#include <gtest/gtest.h>

#include <limits>
#include <utility>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/codes.h"
#include "support/sparse.h"

using namespace quorvel::test;

namespace {

using Cells = std::vector<Cell>;

RegularSparseMatrix Regular(unsigned m, unsigned n, const Cells& cells) {
  return SparseOf<RegularSparseMatrix>(m, n, cells);
}
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(SparseProxy, DividesTheDivisorByTheValue) {
  RegularSparseMatrix a = Regular(2, 2, {{0, 0, 2.0}});
  a(0, 0) /= 4.0;
  EXPECT_EQ(std::as_const(a)(0, 0), 2.0);
  a(0, 0) /= 5.0;
  EXPECT_EQ(std::as_const(a)(0, 0), 2.5);
  a(1, 1) /= 4.0;
  EXPECT_EQ(a.used, 1u);
  EXPECT_CODE(a(0, 0) /= 0.0, 82160);
  EXPECT_CODE(a(1, 1) /= -0.0, 82160);
  a.MultRow(0, 0.0);
  a(0, 0) /= 3.0;  // over a stored zero
  EXPECT_EQ(std::as_const(a)(0, 0), kInfinity);
  a(0, 0) /= 3.0;  // 3 / infinity is 0
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseProxy, SumsThatCancelRemove) {
  SymmetricSparseMatrix a(3);
  a(2, 0) = 1.5;
  a(0, 2) += 1.0;
  EXPECT_EQ(CellsOf(a), (Cells{{0, 2, 2.5}}));
  a(2, 0) += -2.5;
  EXPECT_EQ(a.used, 0u);
  a(1, 1) -= 2.0;
  EXPECT_EQ(CellsOf(a), (Cells{{1, 1, -2.0}}));
  a(1, 1) -= -2.0;
  EXPECT_EQ(a.used, 0u);
  a(1, 1) += 0.0;
  a(1, 1) -= 0.0;
  a(1, 1) *= 3.0;
  EXPECT_EQ(a.used, 0u);
  (a(1, 2) = 2.0) *= 0.0;
  EXPECT_EQ(a.used, 0u);
}

TEST(SparseProxy, CopiesValuesAndOutlivesChanges) {
  RegularSparseMatrix a = Regular(2, 2, {{0, 0, 1.0}});
  SparseMatrix::proxy corner = a(1, 1);
  a(0, 1) = a(0, 0);
  EXPECT_EQ(std::as_const(a)(0, 1), 1.0);
  corner = a(0, 0);
  EXPECT_EQ(std::as_const(a)(1, 1), 1.0);
  a(0, 0) = a(1, 0);  // an absent cell
  EXPECT_EQ(std::as_const(a)(0, 0), 0.0);
  EXPECT_EQ(a.used, 2u);
  corner += 1.0;
  EXPECT_EQ(static_cast<double>(corner), 2.0);
  const SparseMatrix::proxy same(corner);
  EXPECT_EQ(static_cast<double>(same), 2.0);
}

TEST(SparseProxy, ChecksAtTheAccess) {
  RegularSparseMatrix a(2, 3);
  EXPECT_CODE(a(2, 0), 62090);
  EXPECT_CODE(a(0, 3) = 0.0, 62090);
  EXPECT_CODE(std::as_const(a)(0, 3), 62090);
  EXPECT_NO_CODE_WHILE_PENDING(5, a(1, 2) = 1.0);  // a pending code does not matter
  EXPECT_CODE_WHILE_PENDING(5, a(2, 2), 5);
  SparseMatrix::proxy last = a(1, 2);
  a.SetSize(1, 1, true);
  EXPECT_CODE(last = 1.0, 62060);  // not checked again; the insertion refuses
  EXPECT_NO_CODE(last = 0.0);
}

}  // namespace
