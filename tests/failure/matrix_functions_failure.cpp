// Every allocation of the matrix functions failed in turn: code 10680, nothing leaked, operands as promised.

#include "quorvel/matrix_functions.h"

#include <gtest/gtest.h>

#include "support/allocations.h"
#include "support/codes.h"
#include "support/exhaust.h"
#include "support/kinds.h"
#include "support/make.h"
#include "support/plain.h"

namespace quorvel::test {
namespace {

using namespace kinds;

// Calls with ever later failing allocations until one succeeds; returns how many failed. The call makes its operands
// outside the failing scope: `prepare` returns what `call` takes, and `call` must drop its result.
template <class Prepare, class Call>
int EachAllocationFails(Prepare prepare, Call call) {
  for (unsigned k = 1;; ++k) {
    auto& operand = prepare();
    std::optional<int> code;
    bool failed;
    decltype(&call(operand)) result = nullptr;
    {
      FailAllocations fail(k, Fail::kFromThenOn);
      code = CodeOf([&] { result = &call(operand); });
      failed = fail.failed();
    }
    if (!failed) {
      EXPECT_EQ(code, std::nullopt);
      Drop(*result);
      return static_cast<int>(k) - 1;
    }
    EXPECT_EQ(code, 10680) << "allocation " << k;
  }
}

template <class K, class Call>
void OnOrdinaryAndDispensable(const K& a, int allocations, int allocations_of_a_temporary, Call call) {
  K kept(a);
  EXPECT_EQ(EachAllocationFails([&]() -> K& { return kept; }, call), allocations);
  EXPECT_TRUE(Same(kept, PlainOf(a)));
  EXPECT_EQ(EachAllocationFails([&]() -> K& { return DispensableCopy(a); }, call), allocations_of_a_temporary);
}

TEST(MatrixFunctionMemory, RunsOutCleanly) {
  Random random(1);
  const RegularMatrix r = Filled<RegularMatrix>(Pattern::kUniform, random, 4u, 4u);
  const RegularMatrix wide = Filled<RegularMatrix>(Pattern::kUniform, random, 2u, 5u);
  const SymmetricMatrix s = Filled<SymmetricMatrix>(Pattern::kUniform, random, 4u);
  const UpperTriangularMatrix u = Filled<UpperTriangularMatrix>(Pattern::kUniform, random, 4u);
  const LowerTriangularMatrix l = Filled<LowerTriangularMatrix>(Pattern::kUniform, random, 4u);
  OnOrdinaryAndDispensable(
      r, 2, 0, [](RegularMatrix & a) -> auto& { return transpose(a); });
  OnOrdinaryAndDispensable(
      wide, 2, 1, [](RegularMatrix & a) -> auto& { return transpose(a); });
  OnOrdinaryAndDispensable(
      u, 2, 1, [](UpperTriangularMatrix & a) -> auto& { return transpose(a); });
  OnOrdinaryAndDispensable(
      l, 2, 1, [](LowerTriangularMatrix & a) -> auto& { return transpose(a); });
  OnOrdinaryAndDispensable(
      r, 2, 2, [](RegularMatrix & a) -> auto& { return sym(a); });
  OnOrdinaryAndDispensable(
      r, 2, 2, [](RegularMatrix & a) -> auto& { return triu(a); });
  OnOrdinaryAndDispensable(
      r, 2, 2, [](RegularMatrix & a) -> auto& { return tril(a); });
  OnOrdinaryAndDispensable(
      s, 2, 1, [](SymmetricMatrix & a) -> auto& { return triu(a); });
  OnOrdinaryAndDispensable(
      s, 2, 1, [](SymmetricMatrix & a) -> auto& { return tril(a); });
  OnOrdinaryAndDispensable(
      r, 2, 2, [](RegularMatrix & a) -> auto& { return diag(a); });
  OnOrdinaryAndDispensable(
      s, 2, 2, [](SymmetricMatrix & a) -> auto& { return diag(a); });
}

TEST(MatrixFunctionMemory, OfEyeAndKron) {
  const SymmetricMatrix s(3);
  const RegularMatrix r(2, 2);
  SymmetricMatrix unused;
  const auto nothing = [&]() -> SymmetricMatrix& { return unused; };
  EXPECT_EQ(EachAllocationFails(
                nothing, [](SymmetricMatrix&) -> auto& { return eye(3, 1.0); }),
            2);
  EXPECT_EQ(EachAllocationFails(
                nothing, [&](SymmetricMatrix&) -> auto& { return kron(s, r); }),
            2);
}

// A success leaves kron's operands alive, a failure takes dispensable ones along.
TEST(MatrixFunctionMemory, KronOfTemporaries) {
  for (unsigned k : {1u, 2u}) {
    SymmetricMatrix& a = Dispensable<SymmetricMatrix>(3u);
    DiagonalMatrix& b = Dispensable<DiagonalMatrix>(2u);
    std::optional<int> code;
    {
      FailAllocations fail(k, Fail::kOnce);
      code = CodeOf([&] { static_cast<void>(kron(a, b)); });
    }
    EXPECT_EQ(code, 10680);
  }
}

template <class K, class Call>
void SparseOnOrdinaryAndDispensable(const K& a, Call call) {
  K kept(a);
  EXPECT_GE(ExhaustMemory([&]() -> K& { return kept; }, call), 2);
  EXPECT_TRUE(Same(kept, PlainOf(a)));
  EXPECT_GE(ExhaustMemory([&]() -> K& { return DispensableCopy(a); }, call), 2);
}

TEST(MatrixFunctionMemory, OfSparseKindsRunsOutCleanly) {
  RegularSparseMatrix r(70, 70);
  SymmetricSparseMatrix s(70);
  for (unsigned k = 0; k < 70; ++k) {
    r.Put(k, 69 - k, 1.0 + k);
    r.Put(k, k, 2.0);
    s.Put(k, 69 - k, 1.0 + k);
    s.Put(k, k, 2.0);
  }
  SparseOnOrdinaryAndDispensable(
      r, [](RS & a) -> auto& { return transpose(a); });
  SparseOnOrdinaryAndDispensable(
      r, [](RS & a) -> auto& { return sym(a); });
  SparseOnOrdinaryAndDispensable(
      r, [](RS & a) -> auto& { return triu(a); });
  SparseOnOrdinaryAndDispensable(
      r, [](RS & a) -> auto& { return tril(a); });
  SparseOnOrdinaryAndDispensable(
      r, [](RS & a) -> auto& { return diag(a); });
  SparseOnOrdinaryAndDispensable(
      s, [](SS & a) -> auto& { return tril(a); });
  SparseOnOrdinaryAndDispensable(
      s, [](SS & a) -> auto& { return triu(a); });
  SymmetricSparseMatrix small(2);
  small.Put(0, 1, 3.0);
  EXPECT_GE(ExhaustMemory([&]() -> SS& { return small; }, [](SS & a) -> auto& { return kron(a, a); }), 3);
}

TEST(MatrixFunctionMemory, TransposeIntoOut) {
  const RegularMatrix a(3, 4);
  RegularMatrix out(1, 1);
  std::optional<int> code;
  {
    FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([&] { transpose(a, &out); });
  }
  EXPECT_EQ(code, 10680);
  RegularMatrix& temporary = Dispensable<RegularMatrix>(3u, 4u);
  {
    FailAllocations fail(1, Fail::kOnce);
    code = CodeOf([&] { transpose(temporary, &out); });
  }
  EXPECT_EQ(code, 10680);
}

}  // namespace
}  // namespace quorvel::test
