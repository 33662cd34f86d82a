// A' B and A' A where the lines of A lie so far apart that some rows of A' at a time are laid out one behind the other:
// the same sums on both sides of that size, and the scratch that is promised.

#include <gtest/gtest.h>

#include <cstring>
#include <initializer_list>

#include "quorvel/quorvel.h"
#include "support/allocations.h"

namespace {

using namespace quorvel::test;

double Value(unsigned k) { return static_cast<double>(k * 7919u % 1009u) / 1009.0 - 0.5; }

template <class K>
void FillWithValues(K& a, unsigned from) {
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = Value(k + from);
}

template <class B>
double Sum(const RegularMatrix& a, const B& b, unsigned i, unsigned j) {
  double s = 0.0;
  for (unsigned k = 0; k < a.nrows(); ++k) s += a(k, i) * b(k, j);
  return s;
}

// Some rows of A' B, the first and the last of every strip of 256 among them, and how many allocations were made.
template <class B>
void Check(const RegularMatrix& a, const B& b, long allocations) {
  SCOPED_TRACE(::testing::Message() << a.ncols() << " x " << a.nrows() << " x " << b.ncols() << " " << b.ClassName());
  const long before = Allocations();
  RegularMatrix& formed = ATB(a, b);
  EXPECT_EQ(Allocations() - before, allocations);
  const RegularMatrix c(formed);
  ASSERT_EQ(c.nrows(), a.ncols());
  ASSERT_EQ(c.ncols(), b.ncols());
  for (const unsigned i : {0u, 7u, 255u, 256u, 391u, 511u, a.ncols() - 1}) {
    for (unsigned j = 0; i < c.nrows() && j < c.ncols(); j += j + 2 < c.ncols() ? 2 : 1) {
      const double expected = Sum(a, b, i, j), found = c(i, j);
      ASSERT_EQ(std::memcmp(&found, &expected, sizeof found), 0) << i << " " << j;
    }
  }
}

void CheckSizes(unsigned m, unsigned n, unsigned p, long allocations) {
  RegularMatrix a(m, n), b(m, p);
  FillWithValues(a, 1);
  FillWithValues(b, 5);
  Check(a, b, allocations);
}

// The same for A' A, whose strips have 128 rows.
void CheckSquare(unsigned m, unsigned n, long allocations) {
  SCOPED_TRACE(::testing::Message() << n << " x " << m);
  RegularMatrix a(m, n);
  FillWithValues(a, 3);
  const long before = Allocations();
  SymmetricMatrix& formed = ATA(a);
  EXPECT_EQ(Allocations() - before, allocations);
  const SymmetricMatrix s(formed);
  ASSERT_EQ(s.ndim(), n);
  for (const unsigned i : {0u, 9u, 127u, 128u, 383u, n - 1}) {
    for (unsigned j = i; j < n; ++j) {
      const double expected = Sum(a, a, i, j), found = s(i, j);
      ASSERT_EQ(std::memcmp(&found, &expected, sizeof found), 0) << i << " " << j;
    }
  }
}

}  // namespace

TEST(DistantProduct, SquareWithAndWithoutScratch) {
  CheckSquare(499, 500, 2);
  CheckSquare(500, 499, 2);
  CheckSquare(500, 500, 3);
  CheckSquare(509, 513, 3);  // the last strip is one row
}

TEST(DistantProduct, SameSumsWithAndWithoutScratch) {
  CheckSizes(399, 400, 400, 2);
  CheckSizes(400, 399, 400, 2);
  CheckSizes(400, 400, 399, 2);
  CheckSizes(400, 400, 400, 3);
  CheckSizes(521, 513, 401, 3);  // the last strip is one row
}

TEST(DistantProduct, SymmetricRightFactor) {
  RegularMatrix a(403, 412);
  SymmetricMatrix b(403);
  FillWithValues(a, 2);
  FillWithValues(b, 3);
  Check(a, b, 3);
}
