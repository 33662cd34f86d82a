// What the kinematic models refuse.

#include <gtest/gtest.h>

#include <optional>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

// Calls of every model on a matrix of the wrong order (so that it must be resized).
template <class K, class Call>
void ExpectRefusals(Call call) {
  K target(1);
  target(0, 0) = 5.0;
  target.set_ok(false);
  EXPECT_CODE(call(target), 50000);
  EXPECT_CODE_WHILE_PENDING(77, call(target), 77);
  target.set_ok(true);
  EXPECT_CODE_WHILE_PENDING(78, call(target), 78);
  EXPECT_EQ(target.ndim(), 1u);
  EXPECT_EQ(target(0, 0), 5.0);

  {
    const NoLeak no_leak;
    EXPECT_CODE(call(Dispensable<K>(1u)), 50000);
    EXPECT_CODE_WHILE_PENDING(79, call(Dispensable<K>(1u)), 79);
  }

  std::optional<int> code;
  bool failed;
  {
    const FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([&] { call(target); });
    failed = fail.failed();
  }
  EXPECT_TRUE(failed);
  EXPECT_EQ(code, 10680);
  EXPECT_EQ(target.ndim(), 0u);
  EXPECT_NO_CODE(call(target));
}

TEST(KinematicsErrors, NotOkDispensablePendingAndMemory) {
  ExpectRefusals<UpperTriangularMatrix>([](UpperTriangularMatrix& phi) { Phi_PV(phi, 1.0); });
  ExpectRefusals<UpperTriangularMatrix>([](UpperTriangularMatrix& phi) { Phi_PVA(phi, 1.0); });
  ExpectRefusals<UpperTriangularMatrix>([](UpperTriangularMatrix& phi) { Phi_PVAJ(phi, 1.0); });
  ExpectRefusals<SymmetricMatrix>([](SymmetricMatrix& q) { Q_PV(q, 1.0, 1.0); });
  ExpectRefusals<SymmetricMatrix>([](SymmetricMatrix& q) { Q_PVA(q, 1.0, 1.0); });
  ExpectRefusals<SymmetricMatrix>([](SymmetricMatrix& q) { Q_PVAJ(q, 1.0, 1.0); });
}

}  // namespace
}  // namespace quorvel::test
