// Products of factors of any form and shape by the kernel of the instance that is chosen (QUORVEL_KERNELS selects one),
// compared with the bits of plain sums.

#ifndef QUORVEL_TESTS_INTERNAL_PRODUCT_CASES_H
#define QUORVEL_TESTS_INTERNAL_PRODUCT_CASES_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ops/kernels/kernels.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {

using detail::Extent;
using detail::Factor;
using detail::Form;
using detail::kernel_offset;
using detail::kernels;
using detail::Shape;
using detail::Target;

// How a matrix lies in its array.
struct Layout {
  const char* name;
  Form form;
  Shape shape;
  bool packed;
};

inline constexpr Layout kLayouts[] = {
    {"rows", Form::by_rows, Shape::full, false},
    {"columns", Form::by_columns, Shape::full, false},
    {"packed upper", Form::by_rows, Shape::upper, true},
    {"packed lower", Form::by_columns, Shape::lower, true},
    {"packed symmetric", Form::mirrored, Shape::full, true},
    {"rows of a lower triangle", Form::by_rows, Shape::lower, false},
    {"columns of an upper triangle", Form::by_columns, Shape::upper, false},
};

inline bool IsSquare(const Layout& layout) { return layout.packed || layout.shape != Shape::full; }

// Where element (i, j) of a rows x cols matrix is, or nowhere.
inline constexpr unsigned kNowhere = 0xFFFFFFFFu;
inline unsigned Place(const Layout& layout, unsigned rows, unsigned cols, unsigned i, unsigned j) {
  if ((layout.shape == Shape::upper && i > j) || (layout.shape == Shape::lower && i < j)) return kNowhere;
  if (!layout.packed) return layout.form == Form::by_rows ? i * cols + j : j * rows + i;
  const unsigned line = i < j ? i : j, along = i < j ? j : i;
  return line * rows - line * (line + 1) / 2 + along;  // the lines of a packed triangle get shorter by one
}

inline kernel_offset StrideOf(const Layout& layout, unsigned rows, unsigned cols) {
  if (layout.packed) return static_cast<kernel_offset>(rows) - 1;
  return static_cast<kernel_offset>(layout.form == Form::by_rows ? cols : rows);
}

inline std::vector<double> Array(const Layout& layout, unsigned rows, unsigned cols, Pattern pattern, Random& random) {
  std::vector<double> array(layout.packed ? rows * (rows + 1) / 2 : rows * cols);
  Fill(array.data(), static_cast<unsigned>(array.size()), pattern, random);
  return array;
}

struct Case {
  Layout a, b, c;
  unsigned rows, depth, cols;
  Extent part;
};

inline std::string Describe(const Case& t) {
  const auto text = [](unsigned n) { return std::to_string(n); };
  return std::string("c ") + t.c.name + " = a " + t.a.name + " * b " + t.b.name + ", " + text(t.rows) + " x " +
         text(t.depth) + " x " + text(t.cols) + ", rows " + text(t.part.row_begin) + " to " + text(t.part.row_end) +
         ", columns " + text(t.part.col_begin) + " to " + text(t.part.col_end);
}

inline void Check(const Case& t, Pattern pattern, Random& random) {
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

}  // namespace quorvel::test

#endif
