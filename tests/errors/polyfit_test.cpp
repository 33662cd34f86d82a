// What PolyFit refuses, and that nothing is lost when memory is exhausted.

#include <gtest/gtest.h>

#include <optional>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

TEST(PolyFitErrors, Operands) {
  const RegularMatrix t(3, 1), y(3, 1), shorter(2, 1), no_column(3, 0);
  RegularMatrix c(2, 1), bad(3, 1);
  bad.set_ok(false);
  double rms = -1;
  EXPECT_CODE(PolyFit(shorter, y, c, rms), 46120);
  EXPECT_CODE(PolyFit(t, shorter, c, rms), 46120);
  EXPECT_CODE(PolyFit(no_column, y, c, rms), 46120);
  EXPECT_CODE(PolyFit(t, no_column, c, rms), 46120);
  EXPECT_CODE(PolyFit(bad, y, c, rms), 56120);
  EXPECT_CODE(PolyFit(t, bad, c, rms), 56120);
  EXPECT_CODE_WHILE_PENDING(66, PolyFit(t, y, c, rms), 66);
  RegularMatrix bad_result(1, 1);
  bad_result.set_ok(false);
  EXPECT_CODE(PolyFit(t, y, bad_result, rms), 50140);
  EXPECT_FALSE(bad_result.ok());
  EXPECT_EQ(rms, -1);
  EXPECT_TRUE(c == 0.0);
}

TEST(PolyFitErrors, ConsumesTemporariesOnFailure) {
  const NoLeak no_leak;
  RegularMatrix c(2, 1), bad(1, 1);
  bad.set_ok(false);
  double rms;
  EXPECT_CODE(PolyFit(Dispensable<RegularMatrix>(3u, 1u), Dispensable<RegularMatrix>(2u, 1u), c, rms), 46120);
  EXPECT_CODE(PolyFit(Dispensable<RegularMatrix>(3u, 0u), Dispensable<RegularMatrix>(3u, 1u), c, rms), 46120);
  EXPECT_CODE(PolyFit(Dispensable<RegularMatrix>(3u, 1u), Dispensable<RegularMatrix>(3u, 1u), bad, rms), 50140);
  EXPECT_CODE_WHILE_PENDING(67, PolyFit(Dispensable<RegularMatrix>(3u, 1u), Dispensable<RegularMatrix>(3u, 1u), c, rms), 67);
  RegularMatrix& both = Dispensable<RegularMatrix>(3u, 0u);
  EXPECT_CODE(PolyFit(both, both, c, rms), 46120);
}

TEST(PolyFitErrors, OutOfMemory) {
  RegularMatrix values(4, 1);
  for (unsigned i = 0; i < 4; ++i) values(i) = i;
  for (unsigned k = 1;; ++k) {
    const NoLeak no_leak;
    RegularMatrix c(2, 1);
    double rms = -1;
    RegularMatrix& t = DispensableCopy(values);
    RegularMatrix& y = DispensableCopy(values);
    std::optional<int> code;
    bool failed;
    {
      const FailAllocations fail(k, Fail::kOnce);
      code = CodeOf([&] { PolyFit(t, y, c, rms); });
      failed = fail.failed();
    }
    if (!failed) {
      EXPECT_EQ(code, std::nullopt);
      EXPECT_GE(k, 6u);  // powers, N, b, object and array of the solution
      break;
    }
    EXPECT_EQ(code, 10680) << k;
    EXPECT_EQ(rms, -1) << k;
    EXPECT_TRUE(c == 0.0) << k;
  }
}

}  // namespace
}  // namespace quorvel::test
