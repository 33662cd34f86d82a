// Failing every allocation of a call that may report exhausted memory in either way.

#ifndef QUORVEL_TESTS_SUPPORT_EXHAUST_H
#define QUORVEL_TESTS_SUPPORT_EXHAUST_H

#include <gtest/gtest.h>

#include <new>

#include "quorvel/Matrix.h"
#include "support/allocations.h"
#include "support/plain.h"

namespace quorvel::test {

// Calls call(make()) with the first allocation failing, then the second and so on, until it succeeds; every failure
// must come as std::bad_alloc (sparse storage) or code 10680 (dense storage). Drops a dispensable result. Returns the
// number of allocations of the call.
template <class Make, class Call>
int ExhaustMemory(Make make, Call call) {
  for (unsigned k = 1;; ++k) {
    auto& operand = make();
    bool caught = false;
    bool failed;
    decltype(&call(operand)) result = nullptr;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      try {
        result = &call(operand);
      } catch (const std::bad_alloc&) {
        caught = true;
      } catch (const MatrixException& e) {
        caught = e.code() == 10680;
        abort_reset();
      }
      failed = fail.failed();
    }
    EXPECT_EQ(caught, failed) << "allocation " << k;
    if (!failed) {
      if (result != nullptr && result->dispensable()) Drop(*result);
      return static_cast<int>(k) - 1;
    }
  }
}

}  // namespace quorvel::test

#endif
