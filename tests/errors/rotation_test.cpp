// What the rotations refuse, and that the other geodetic routines refuse nothing.

#include <gtest/gtest.h>

#include <optional>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

int calls = 0;
int heard = 0;

void Listen(int code) {
  ++calls;
  heard = code;
}

using Rotation = RegularMatrix& (*)(unsigned, double);

void ExpectAxisCode(Rotation rotation, int code) {
  SetAbortCallback(Listen);
  for (unsigned axis : {0u, 4u, 5u, 0xFFFFFFFFu}) {
    calls = heard = 0;
    EXPECT_CODE(rotation(axis, 0.1), code);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(heard, code);
  }
  // The pending code comes first, whatever the axis, and passes the hook again.
  for (unsigned axis : {0u, 1u, 3u}) {
    calls = heard = 0;
    EXPECT_CODE_WHILE_PENDING(91, rotation(axis, 0.1), 91);
    EXPECT_EQ(calls, 2);  // once when it became pending
    EXPECT_EQ(heard, 91);
  }
  SetAbortCallback(nullptr);
}

TEST(RotationErrors, AxisAndPendingCode) {
  const long before = Allocations();
  ExpectAxisCode(Primary_Axis_Rotation_Matrix_RAD, 30120);
  ExpectAxisCode(Primary_Axis_Rotation_Matrix_DEG, 30120);
  ExpectAxisCode(DerivativeOfPrimary_Axis_Rotation_Matrix_RAD, 30121);
  ExpectAxisCode(DerivativeOfPrimary_Axis_Rotation_Matrix_DEG, 30121);
  // Exceptions do not come from operator new, so any allocation would be a matrix made in vain.
  EXPECT_EQ(Allocations(), before);
}

TEST(RotationErrors, OutOfMemory) {
  const auto fails = [](auto make) {
    for (unsigned k = 1; k <= 2; ++k) {
      const NoLeak no_leak;
      std::optional<int> code;
      {
        const FailAllocations fail(k, Fail::kOnce);
        code = CodeOf([&] { static_cast<void>(make()); });
      }
      EXPECT_EQ(code, 10680);
    }
  };
  fails([]() -> RegularMatrix& { return Primary_Axis_Rotation_Matrix_RAD(1, 0.1); });
  fails([]() -> RegularMatrix& { return DerivativeOfPrimary_Axis_Rotation_Matrix_DEG(1, 0.1); });
  fails([]() -> RegularMatrix& { return denu_dxyz(0.1, 0.2); });
  fails([]() -> RegularMatrix& { return dxyz_dblh(0.1, 0.2, 0, 1, 0); });
}

TEST(GeodesyErrors, APendingCodeIsNotLookedAt) {
  abort_reset();
  int pending = 92;
  abort_set(pending);
  RegularMatrix e, d;
  // Moving works while a code is pending, copying would throw it.
  e = std::move(denu_dxyz(0.1, 0.2));
  d = std::move(dxyz_dblh(0.1, 0.2, 0, 1, 0));
  LowerTriangularMatrix p(3);
  LegendreFunctions(p, 10.0);
  EXPECT_EQ(GetErrorCode(), 92);
  abort_reset();
  EXPECT_NE(e(0, 0), 0.0);
  EXPECT_NE(d(0, 0), 0.0);
  EXPECT_EQ(p(2, 2) > 2.0, true);
}

TEST(LegendreErrors, AnyMatrixIsFilled) {
  LowerTriangularMatrix not_ok(3);
  not_ok.set_ok(false);
  not_ok.set_nsing(5);
  LegendreFunctions(not_ok, 0.0);
  EXPECT_FALSE(not_ok.ok());
  EXPECT_EQ(not_ok.nsing(), 5);
  EXPECT_EQ(not_ok(2, 2), 3.0);

  LowerTriangularMatrix& temporary = Dispensable<LowerTriangularMatrix>(2u);
  LegendreFunctions(temporary, 0.0);  // not consumed
  EXPECT_EQ(temporary(1, 1), 1.0);
  temporary.DestroyIfDispensable();

  LowerTriangularMatrix none;
  LegendreFunctions(none, 10.0);
  EXPECT_EQ(none.ndim(), 0u);
  EXPECT_EQ(none.data(), nullptr);
}

}  // namespace
}  // namespace quorvel::test
