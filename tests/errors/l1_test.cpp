// What L1 regression refuses, and that nothing is lost when memory is exhausted.

#include <gtest/gtest.h>

#include <new>
#include <optional>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

RegularMatrix Line() {
  const double values[] = {1, 0, 1, 1, 1, 2};
  RegularMatrix a(3, 2);
  a.Assign(values, 3, 2);
  return a;
}

TEST(L1Errors, Operands) {
  const RegularMatrix A = Line();
  RegularMatrix x(2, 1), y(3, 1), shorter(2, 1), no_column(3, 0), bad(3, 1);
  bad.set_ok(false);
  EXPECT_CODE(L1Regression(A, shorter, x), 46110);
  EXPECT_CODE(L1Regression(A, no_column, x), 46110);
  EXPECT_CODE(L1Regression(A, bad, x), 56110);
  EXPECT_CODE(L1Regression(bad, y, x), 56110);
  EXPECT_CODE(L1Regression(A, y, bad), 50000);
  EXPECT_CODE_WHILE_PENDING(55, L1Regression(A, y, x), 55);
  EXPECT_TRUE(x == 0.0);
}

TEST(L1Errors, ConsumesTemporariesOnFailure) {
  const NoLeak no_leak;
  RegularMatrix x(2, 1), bad;
  bad.set_ok(false);
  EXPECT_CODE(L1Regression(DispensableCopy(Line()), Dispensable<RegularMatrix>(2u, 1u), x), 46110);
  EXPECT_CODE(L1Regression(DispensableCopy(Line()), Dispensable<RegularMatrix>(3u, 0u), x), 46110);
  EXPECT_CODE(L1Regression(DispensableCopy(Line()), Dispensable<RegularMatrix>(3u, 1u), bad), 50000);
  // (Copying would throw the pending code itself.)
  EXPECT_CODE_WHILE_PENDING(56, L1Regression(Dispensable<RegularMatrix>(3u, 2u), Dispensable<RegularMatrix>(3u, 1u), x), 56);
  RegularMatrix& both = Dispensable<RegularMatrix>(3u, 0u);
  EXPECT_CODE(L1Regression(both, both, x), 46110);
}

// The array form looks at nothing.
TEST(L1Errors, TheArrayFormChecksNothing) {
  RegularMatrix A = Line();
  A.set_ok(false);
  const double y[] = {2, 5, 8};
  double x[2];
  abort_reset();
  int pending = 57;
  abort_set(pending);
  EXPECT_EQ(L1Regression(y, A, x), 0);
  EXPECT_EQ(GetErrorCode(), 57);
  abort_reset();
  EXPECT_NEAR(x[1], 3.0, 1e-14);
}

TEST(L1Errors, OutOfMemory) {
  const RegularMatrix y(3, 1);
  for (unsigned k = 1;; ++k) {
    const NoLeak no_leak;
    RegularMatrix x(1, 1);
    x = 6.0;
    RegularMatrix& temporary_A = DispensableCopy(Line());
    RegularMatrix& temporary_y = DispensableCopy(y);
    std::optional<int> code;
    bool failed;
    {
      const FailAllocations fail(k, Fail::kOnce);
      code = CodeOf([&] { L1Regression(temporary_A, temporary_y, x); });
      failed = fail.failed();
    }
    if (!failed) {
      EXPECT_EQ(code, std::nullopt);
      EXPECT_GE(k, 7u);  // tableau, lists, candidates, artificials, solution, x
      break;
    }
    EXPECT_EQ(code, 10680) << k;
    EXPECT_TRUE(x == 6.0) << k;
  }
}

// The tableau would be beyond 2^28 doubles: no such memory is asked for, nothing is lost.
TEST(L1Errors, TooLarge) {
  const NoLeak no_leak;
  RegularMatrix x;
  EXPECT_THROW(L1Regression(Dispensable<RegularMatrix>(10000u, 0u), Dispensable<RegularMatrix>(10000u, 1u), x),
               std::bad_array_new_length);
  EXPECT_THROW(L1Regression(nullptr, Dispensable<RegularMatrix>(0x80000000u, 0u), nullptr), std::bad_array_new_length);
  EXPECT_THROW(L1Regression(nullptr, Dispensable<RegularMatrix>(0u, 0xFFFFFFFFu), nullptr), std::bad_array_new_length);
  EXPECT_EQ(GetErrorCode(), 0);
}

}  // namespace
}  // namespace quorvel::test
