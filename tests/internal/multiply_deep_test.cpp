// Products of so many terms, rows and columns that every blocking of them comes into play: the kernel keeps each sum in
// its order across all blocks.
#include "product_cases.h"

using namespace quorvel::test;
using quorvel::detail::Form;

namespace {

constexpr unsigned kDeep = 1100;  // terms: more than two blocks, and a rest
constexpr Layout kRows = kLayouts[0], kColumns = kLayouts[1];

// The first factor has a few rows, and the second one is of any kind (some columns of a square one).
TEST(MultiplyDeep, AnySecondFactor) {
  Random random(821);
  for (const Layout& a : {kRows, kColumns}) {
    for (const Layout& b : kLayouts) {
      for (const Layout& c : {kRows, kColumns}) {
        if (IsSquare(b)) {
          Check({a, b, c, 9, kDeep, kDeep, {0, 9, 500, 530, kDeep}}, Pattern::kUniform, random);
        } else {
          Check({a, b, c, 9, kDeep, 60, {0, 9, 0, 60, kDeep}}, Pattern::kUniform, random);
        }
      }
    }
  }
}

// The first factor is a square: some of its rows.
TEST(MultiplyDeep, ASquareFirstFactor) {
  Random random(822);
  for (const Layout& a : kLayouts) {
    if (!IsSquare(a)) continue;
    for (const Layout& b : {kRows, kColumns}) {
      Check({a, b, kRows, kDeep, kDeep, 30, {505, 527, 0, 30, kDeep}}, Pattern::kUniform, random);
    }
  }
}

// Two squares: what begins, ends and lies across the blocks of terms.
TEST(MultiplyDeep, TwoSquares) {
  Random random(823);
  for (const unsigned row : {250u, 509u, kDeep - 7}) {
    for (const Layout& b : {kLayouts[2], kLayouts[3], kLayouts[4]}) {
      Check({kLayouts[4], b, kRows, kDeep, kDeep, kDeep, {row, row + 7, 1012, 1038, kDeep}}, Pattern::kUniform, random);
    }
  }
}

// The result is a triangle, or lies by columns.
TEST(MultiplyDeep, AnyResult) {
  Random random(824);
  for (const Layout& c : kLayouts) {
    if (c.form == Form::mirrored) continue;
    Check({kRows, kRows, c, 33, kDeep, 33, {0, 33, 0, 33, kDeep}}, Pattern::kUniform, random);
  }
}

// More rows than a block of them has, and some of them only.
TEST(MultiplyDeep, ManyRows) {
  Random random(825);
  for (const Layout& a : {kRows, kColumns}) {
    Check({a, kRows, kRows, 1050, 300, 75, {0, 1050, 50, 75, 300}}, Pattern::kUniform, random);
    Check({a, kColumns, kRows, 600, 530, 60, {11, 600, 0, 11, 530}}, Pattern::kUniform, random);
  }
  Check({kRows, kRows, kLayouts[2], 550, 270, 550, {0, 550, 515, 541, 270}}, Pattern::kUniform, random);
}

}  // namespace
