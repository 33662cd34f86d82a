// docs/QUIRKS.md, "Conversions": each statement about the dense kinds as a test.

#include <gtest/gtest.h>

#include <type_traits>

#include "quorvel/quorvel.h"
#include "support/allocations.h"
#include "support/codes.h"
#include "support/make.h"

namespace quorvel::test {
namespace {

TEST(ConversionQuirks, NothingIsLost) {
  static_assert(std::is_convertible_v<const DiagonalMatrix&, SymmetricMatrix>);
  static_assert(std::is_convertible_v<const DiagonalMatrix&, UpperTriangularMatrix>);
  static_assert(std::is_convertible_v<const DiagonalMatrix&, LowerTriangularMatrix>);
  static_assert(std::is_convertible_v<const SymmetricMatrix&, RegularMatrix>);
  static_assert(!std::is_constructible_v<SymmetricMatrix, const RegularMatrix&>);
  static_assert(!std::is_constructible_v<SymmetricMatrix, RegularMatrix>);
  static_assert(!std::is_constructible_v<UpperTriangularMatrix, const LowerTriangularMatrix&>);
  static_assert(!std::is_constructible_v<UpperTriangularMatrix, LowerTriangularMatrix>);
  static_assert(!std::is_assignable_v<UpperTriangularMatrix&, LowerTriangularMatrix>);
  static_assert(!std::is_constructible_v<DiagonalMatrix, const SymmetricMatrix&>);
  static_assert(!std::is_convertible_v<unsigned, SymmetricMatrix>);  // one-size constructors are explicit
}

TEST(ConversionQuirks, AConstTemporaryIsConsumed) {
  const long before = LiveBlocks();
  {
    const SymmetricMatrix& temporary = Dispensable<SymmetricMatrix>(2u);
    const RegularMatrix r(temporary);
    EXPECT_EQ(LiveBlocks(), before + 1);  // r's array; object and array of the temporary are gone
  }
  EXPECT_EQ(LiveBlocks(), before);
}

TEST(ConversionQuirks, TheSingularityCountIsNotAlwaysCarriedOver) {
  DiagonalMatrix d(2);
  d.set_nsing(1);
  UpperTriangularMatrix u;
  LowerTriangularMatrix l;
  RegularMatrix r;
  SymmetricMatrix s;
  s.set_nsing(7);
  u = d;
  l = d;
  r = d;
  s = d;
  EXPECT_EQ(u.nsing(), 1);
  EXPECT_EQ(l.nsing(), 1);
  EXPECT_EQ(r.nsing(), 1);
  EXPECT_EQ(s.nsing(), 7);
}

TEST(ConversionQuirks, EachHasItsCode) {
  DiagonalMatrix d(2);
  d.set_ok(false);
  RegularMatrix r;
  SymmetricMatrix s;
  UpperTriangularMatrix u;
  LowerTriangularMatrix l;
  EXPECT_CODE(r = d, 50140);
  EXPECT_CODE(s = d, 50240);
  EXPECT_CODE(u = d, 50330);
  EXPECT_CODE(l = d, 50380);
}

}  // namespace
}  // namespace quorvel::test
