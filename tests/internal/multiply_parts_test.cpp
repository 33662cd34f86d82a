// The kernel of products, of the instance that is chosen (QUORVEL_KERNELS selects one), on any part of a product of factors
// of any form and shape: the bits of plain sums, and nothing written outside the part and the shape.
#include "product_cases.h"

using namespace quorvel::test;
using quorvel::detail::Form;

namespace {

// Dimensions of which `square` ones are equal.
Case Drawn(const Layout& a, const Layout& b, const Layout& c, unsigned largest, Random& random) {
  Case t{a, b, c, random.Below(largest + 1), 0, 0, {}};
  t.depth = IsSquare(a) ? t.rows : random.Below(largest + 1);
  t.cols = IsSquare(b) ? t.depth : IsSquare(c) ? t.rows : random.Below(largest + 1);
  return t;
}

void CheckAll(unsigned largest, unsigned trials, Random& random) {
  for (const Layout& a : kLayouts) {
    for (const Layout& b : kLayouts) {
      for (const Layout& c : kLayouts) {
        if (c.form == Form::mirrored) continue;
        for (unsigned trial = 0; trial < trials; ++trial) {
          Case t = Drawn(a, b, c, largest, random);
          if (IsSquare(c) && t.rows != t.cols) continue;
          // All of it, a stretch of rows, of columns, or of both.
          t.part = {0, t.rows, 0, t.cols, t.depth};
          if (trial % 4 == 1 || trial % 4 == 3) {
            t.part.row_begin = random.Below(t.rows + 1);
            t.part.row_end = t.part.row_begin + random.Below(t.rows - t.part.row_begin + 1);
          }
          if (trial % 4 >= 2) {
            t.part.col_begin = random.Below(t.cols + 1);
            t.part.col_end = t.part.col_begin + random.Below(t.cols - t.part.col_begin + 1);
          }
          if (t.part.col_begin == t.part.col_end) continue;  // no product
          const Pattern pattern = kAllPatterns[random.Below(static_cast<unsigned>(kAllPatterns.size()))];
          Check(t, pattern, random);
        }
      }
    }
  }
}

TEST(MultiplyParts, Small) {
  Random random(811);
  CheckAll(5, 120, random);
  CheckAll(12, 60, random);
}

TEST(MultiplyParts, Larger) {
  Random random(812);
  CheckAll(40, 24, random);
  CheckAll(90, 4, random);
}

// More terms than are packed at once: the last columns of a lower triangle have no term among the first ones.
TEST(MultiplyParts, AFirstBlockWithoutTerms) {
  Random random(813);
  const unsigned n = 300;
  for (const Layout& a : kLayouts) {
    for (const Layout& c : kLayouts) {
      if (c.form != Form::mirrored) Check({a, kLayouts[3], c, n, n, n, {200, 230, 270, n, n}}, Pattern::kUniform, random);
    }
  }
}

// What a second block adds to, on the diagonal.
TEST(MultiplyParts, ASecondBlock) {
  Random random(814);
  const unsigned n = 300;
  for (const Layout& b : kLayouts) {
    for (const Layout& c : kLayouts) {
      if (c.form != Form::mirrored) Check({kLayouts[0], b, c, n, n, n, {140, 165, 135, 170, n}}, Pattern::kUniform, random);
    }
  }
}

}  // namespace
