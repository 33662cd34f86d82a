// The check of the order of checks sees what it is for.

#include "support/order.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "support/allocations.h"

using namespace quorvel::test;

namespace {

using R = RegularMatrix;

// A call with two checks. It says so when it is told wrongly, or does something else.
Order Sum() {
  return {"+=",
          [](Operands& o) { o.Add<R>(2u, 2u).Add<R>(2u, 2u); },
          [](Operands& o) { o.get<R>(0) += o.get<R>(1); },
          {NotOk(0, 50340), NotOk(1, 50340), Sized(1, 3, 2, 40340)},
          kAll,
          1u << 1};
}

int FailuresOf(const Order& order) {
  ::testing::TestPartResultArray failures;
  {
    const ::testing::ScopedFakeTestPartResultReporter reporter(
        ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
    ExpectOrder(order);
  }
  return failures.size();
}

TEST(OrderOfChecks, WhatIsRightPasses) {
  KeepsBlocks();
  EXPECT_EQ(FailuresOf(Sum()), 0);
}

TEST(OrderOfChecks, AnotherOrderIsSeen) {
  KeepsBlocks();
  Order order = Sum();
  order.faults = {Sized(1, 3, 2, 40340), NotOk(0, 50340)};
  EXPECT_GT(FailuresOf(order), 0);
}

TEST(OrderOfChecks, AnotherCodeIsSeen) {
  KeepsBlocks();
  Order order = Sum();
  order.faults[2].code = 40280;
  EXPECT_GT(FailuresOf(order), 0);
}

TEST(OrderOfChecks, AnotherFateIsSeen) {
  KeepsBlocks();
  Order order = Sum();
  order.faults[1].destroys = 1u << 0;
  EXPECT_GT(FailuresOf(order), 0);
  order = Sum();
  order.faults[1].destroys = kNone;
  EXPECT_GT(FailuresOf(order), 0);
  order = Sum();
  order.consumed = kNone;
  EXPECT_GT(FailuresOf(order), 0);
}

TEST(OrderOfChecks, AChangedOperandIsSeen) {
  KeepsBlocks();
  Order order = Sum();
  order.call = [](Operands& o) {
    o.get<R>(1).data()[3] = -o.get<R>(1).data()[3];
    o.get<R>(0) += o.get<R>(1);
  };
  EXPECT_GT(FailuresOf(order), 0);
  order = Sum();
  order.faults[0].marks = 1u << 1;
  EXPECT_GT(FailuresOf(order), 0);
}

TEST(OrderOfChecks, ASecondCallbackIsSeen) {
  KeepsBlocks();
  Order order = Sum();
  order.call = [](Operands& o) {
    try {
      o.get<R>(0) += o.get<R>(1);
    } catch (const MatrixException& e) {
      int code = e.code();
      abort_set(code);
      throw;
    }
  };
  EXPECT_GT(FailuresOf(order), 0);
}

}  // namespace
