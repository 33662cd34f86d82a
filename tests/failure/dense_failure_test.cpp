// Every allocation of the dense kinds fails in turn: code 10680, nothing lost, operands as documented.
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <type_traits>
#include <utility>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"
#include "support/model.h"

using namespace quorvel::test;

namespace {

// Runs `call` with allocation k failing for k = 1, 2, ... until it gets through; each failure must throw 10680 and end
// with the live blocks that `call` began with. Returns the number of allocations it needs.
unsigned FailEach(const std::function<void()>& call) {
  for (const Fail mode : {Fail::kOnce, Fail::kFromThenOn}) {
    for (unsigned k = 1;; ++k) {
      const long before = LiveBlocks();
      bool failed;
      std::optional<int> code;
      {
        FailAllocations fail(k, mode);
        code = CodeOf(call);
        failed = fail.failed();
      }
      EXPECT_EQ(LiveBlocks(), before) << "allocation " << k;
      if (!failed) {
        EXPECT_EQ(code, std::nullopt);
        if (mode == Fail::kFromThenOn) return k - 1;
        break;
      }
      EXPECT_EQ(code, std::optional<int>(10680)) << "allocation " << k;
    }
  }
  return 0;
}

template <class K>
class DenseFailure : public ::testing::Test {};
using DenseKinds =
    ::testing::Types<RegularMatrix, SymmetricMatrix, UpperTriangularMatrix, LowerTriangularMatrix, DiagonalMatrix>;
TYPED_TEST_SUITE(DenseFailure, DenseKinds);

TYPED_TEST(DenseFailure, ConstructionCopyAndNegation) {
  EXPECT_EQ(FailEach([] { TypeParam a(3, 3); }), 1u);
  const TypeParam a(3, 3);
  EXPECT_EQ(FailEach([&] { TypeParam b(a); }), 1u);
  EXPECT_EQ(FailEach([&] { (-a).DestroyIfDispensable(); }), 2u);  // the object and its array
  EXPECT_EQ(FailEach([&] { a(0, 1, 0, 1).DestroyIfDispensable(); }), 2u);
}

TYPED_TEST(DenseFailure, ReserveChangesNothing) {
  TypeParam a(3, 3);
  a = 2.0;
  const Model before = FullOf(std::as_const(a));
  {
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_EQ(CodeOf([&] { a.Reserve(5, 5); }), std::optional<int>(10680));
  }
  EXPECT_EQ(a.capacity(), a.StoredCount());
  ExpectElements(before, a);
  {
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_EQ(CodeOf([&] { a.SetSize(5, 5, true); }), std::optional<int>(10680));
  }
  ExpectElements(before, a);
  {
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_EQ(CodeOf([&] { a.SetSize(5, 5, false); }), std::optional<int>(10680));
  }
  EXPECT_EQ(a.nrows(), 0u);  // without keep the size goes first
}

TYPED_TEST(DenseFailure, ADispensableOperandDiesWhenTheResultCannotBeMade) {
  TypeParam target;
  const auto convert = [&](auto& regular) {
    TypeParam& source = Dispensable<TypeParam>(3u, 3u);
    FailAllocations fail(1, Fail::kOnce);
    EXPECT_EQ(CodeOf([&] { regular = std::as_const(source); }), std::optional<int>(10680));
  };
  if constexpr (!std::is_same_v<TypeParam, RegularMatrix>) {
    RegularMatrix regular;
    convert(regular);
  }
  TypeParam& operand = Dispensable<TypeParam>(3u, 3u);
  FailAllocations fail(1, Fail::kOnce);
  EXPECT_EQ(CodeOf([&] { static_cast<void>(operand(0, 1, 0, 1)); }), std::optional<int>(10680));
}

}  // namespace
