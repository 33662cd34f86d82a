// The kernel of products, of the instance that is chosen (QUORVEL_KERNELS selects one), on any part of a product of factors
// of any form and shape: the bits of plain sums, and nothing written outside the part and the shape.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/kernels/kernels.h"
#include "support/digest.h"
#include "support/random.h"

using namespace quorvel::test;
using quorvel::detail::Extent;
using quorvel::detail::Factor;
using quorvel::detail::Form;
using quorvel::detail::kernel_offset;
using quorvel::detail::kernels;
using quorvel::detail::Shape;
using quorvel::detail::Target;

namespace {

// How a matrix lies in its array.
struct Layout {
  const char* name;
  Form form;
  Shape shape;
  bool packed;
};

constexpr Layout kLayouts[] = {
    {"rows", Form::by_rows, Shape::full, false},
    {"columns", Form::by_columns, Shape::full, false},
    {"packed upper", Form::by_rows, Shape::upper, true},
    {"packed lower", Form::by_columns, Shape::lower, true},
    {"packed symmetric", Form::mirrored, Shape::full, true},
    {"rows of a lower triangle", Form::by_rows, Shape::lower, false},
    {"columns of an upper triangle", Form::by_columns, Shape::upper, false},
};

bool IsSquare(const Layout& layout) { return layout.packed || layout.shape != Shape::full; }

// Where element (i, j) of a rows x cols matrix is, or nowhere.
constexpr unsigned kNowhere = 0xFFFFFFFFu;
unsigned Place(const Layout& layout, unsigned rows, unsigned cols, unsigned i, unsigned j) {
  if ((layout.shape == Shape::upper && i > j) || (layout.shape == Shape::lower && i < j)) return kNowhere;
  if (!layout.packed) return layout.form == Form::by_rows ? i * cols + j : j * rows + i;
  const unsigned line = i < j ? i : j, along = i < j ? j : i;
  return line * rows - line * (line + 1) / 2 + along;  // the lines of a packed triangle get shorter by one
}

kernel_offset StrideOf(const Layout& layout, unsigned rows, unsigned cols) {
  if (layout.packed) return static_cast<kernel_offset>(rows) - 1;
  return static_cast<kernel_offset>(layout.form == Form::by_rows ? cols : rows);
}

std::vector<double> Array(const Layout& layout, unsigned rows, unsigned cols, Pattern pattern, Random& random) {
  std::vector<double> array(layout.packed ? rows * (rows + 1) / 2 : rows * cols);
  Fill(array.data(), static_cast<unsigned>(array.size()), pattern, random);
  return array;
}

struct Case {
  Layout a, b, c;
  unsigned rows, depth, cols;
  Extent part;
};

std::string Describe(const Case& t) {
  const auto text = [](unsigned n) { return std::to_string(n); };
  return std::string("c ") + t.c.name + " = a " + t.a.name + " * b " + t.b.name + ", " + text(t.rows) + " x " +
         text(t.depth) + " x " + text(t.cols) + ", rows " + text(t.part.row_begin) + " to " + text(t.part.row_end) +
         ", columns " + text(t.part.col_begin) + " to " + text(t.part.col_end);
}

void Check(const Case& t, Pattern pattern, Random& random) {
  const std::vector<double> a = Array(t.a, t.rows, t.depth, pattern, random);
  const std::vector<double> b = Array(t.b, t.depth, t.cols, pattern, random);
  const std::vector<double> before = Array(t.c, t.rows, t.cols, pattern, random);
  std::vector<double> c(before), expected(before);
  for (unsigned i = t.part.row_begin; i < t.part.row_end; ++i) {
    for (unsigned j = t.part.col_begin; j < t.part.col_end; ++j) {
      const unsigned place = Place(t.c, t.rows, t.cols, i, j);
      if (place == kNowhere) continue;
      double sum = 0.0;
      for (unsigned k = 0; k < t.depth; ++k) {
        const unsigned x = Place(t.a, t.rows, t.depth, i, k), y = Place(t.b, t.depth, t.cols, k, j);
        if (x != kNowhere && y != kNowhere) sum += a[x] * b[y];
      }
      expected[place] = sum;
    }
  }
  const auto shrink = [](const Layout& layout) { return static_cast<kernel_offset>(layout.packed ? 1 : 0); };
  const Factor left{a.data(), StrideOf(t.a, t.rows, t.depth), shrink(t.a), t.a.form, t.a.shape};
  const Factor right{b.data(), StrideOf(t.b, t.depth, t.cols), shrink(t.b), t.b.form, t.b.shape};
  const Target to{c.data(), StrideOf(t.c, t.rows, t.cols), shrink(t.c), t.c.form, t.c.shape};
  kernels().multiply(to, 0, left, right, 0, t.part);
  EXPECT_TRUE(SameBits(c.data(), expected.data(), c.size())) << Describe(t) << ", " << Name(pattern);
  digest::Feed(c.data(), c.size());
  const bool whole = t.part.row_end - t.part.row_begin == t.rows && t.part.col_end - t.part.col_begin == t.cols;
  if (whole && (t.c.form == Form::by_rows) != (t.c.shape == Shape::lower)) {
    c = before;
    kernels().multiply_whole(to, left, right, t.rows, t.cols, t.depth);
    EXPECT_TRUE(SameBits(c.data(), expected.data(), c.size())) << "whole: " << Describe(t) << ", " << Name(pattern);
  }
}

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
