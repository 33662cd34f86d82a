// Plain arrays for oracles: every element of a matrix, implicit zeros and mirrored elements included.

#ifndef QUORVEL_TESTS_SUPPORT_PLAIN_H
#define QUORVEL_TESTS_SUPPORT_PLAIN_H

#include <gtest/gtest.h>

#include <cstddef>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/random.h"

namespace quorvel::test {

// An m x n array of doubles by rows.
struct Plain {
  Plain() = default;
  Plain(unsigned rows, unsigned cols, double value = 0.0)
      : m(rows), n(cols), e(static_cast<std::size_t>(rows) * cols, value) {}
  double& operator()(unsigned i, unsigned j) { return e[static_cast<std::size_t>(i) * n + j]; }
  double operator()(unsigned i, unsigned j) const { return e[static_cast<std::size_t>(i) * n + j]; }

  unsigned m = 0;
  unsigned n = 0;
  std::vector<double> e;
};

inline Plain PlainOf(const RegularMatrix& a) {
  Plain p(a.nrows(), a.ncols());
  for (std::size_t k = 0; k < p.e.size(); ++k) p.e[k] = a.data()[k];
  return p;
}

// The packed kinds list the upper triangle row by row; `lower` writes it to the mirrored place.
inline Plain PlainOfPacked(const double* packed, unsigned n, bool upper, bool lower) {
  Plain p(n, n);
  for (unsigned a = 0; a < n; ++a) {
    for (unsigned b = a; b < n; ++b) {
      const double v = *packed++;
      if (upper || a == b) p(a, b) = v;
      if (lower) p(b, a) = v;
    }
  }
  return p;
}

inline Plain PlainOf(const SymmetricMatrix& a) { return PlainOfPacked(a.data(), a.ndim(), true, true); }
inline Plain PlainOf(const UpperTriangularMatrix& a) { return PlainOfPacked(a.data(), a.ndim(), true, false); }
inline Plain PlainOf(const LowerTriangularMatrix& a) { return PlainOfPacked(a.data(), a.ndim(), false, true); }
inline Plain PlainOf(const DiagonalMatrix& a) {
  Plain p(a.ndim(), a.ndim());
  for (unsigned i = 0; i < a.ndim(); ++i) p(i, i) = a.data()[i];
  return p;
}

// Absent cells are zeros.
inline Plain PlainOfSparse(const SparseMatrix& a, bool mirror) {
  Plain p(a.nrows(), a.ncols());
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (const SparseElement* e = a.GetFirstInRow(i); e != nullptr; e = e->nextInRow) {
      p(e->row, e->col) = e->value;
      if (mirror) p(e->col, e->row) = e->value;
    }
  }
  return p;
}

inline Plain PlainOf(const RegularSparseMatrix& a) { return PlainOfSparse(a, false); }
inline Plain PlainOf(const SymmetricSparseMatrix& a) { return PlainOfSparse(a, true); }

// Same size and same bits (any NaN equals any other; the sign of a zero counts unless told otherwise).
inline ::testing::AssertionResult Same(const Plain& got, const Plain& expected, bool zeros_alike = false) {
  if (got.m != expected.m || got.n != expected.n) {
    return ::testing::AssertionFailure() << "size " << got.m << " x " << got.n << " instead of " << expected.m << " x "
                                         << expected.n;
  }
  for (unsigned i = 0; i < got.m; ++i) {
    for (unsigned j = 0; j < got.n; ++j) {
      const double x = got(i, j);
      const double y = expected(i, j);
      if (SameBits(x, y) || (zeros_alike && x == 0.0 && y == 0.0)) continue;
      return ::testing::AssertionFailure() << "(" << i << ", " << j << ") is " << ::testing::PrintToString(x)
                                           << " instead of " << ::testing::PrintToString(y);
    }
  }
  return ::testing::AssertionSuccess();
}

template <class K>
::testing::AssertionResult Same(const K& got, const Plain& expected, bool zeros_alike = false) {
  return Same(PlainOf(got), expected, zeros_alike);
}

// Ends the life of a result, as an operation that consumes it would.
template <class K>
void Drop(K& result) {
  if (!result.dispensable()) {
    ADD_FAILURE() << "the result is not dispensable";
    return;
  }
  delete &result;
}

// Owns a dispensable result for the length of a test, so that it can be looked at more than once.
template <class K>
class Held {
 public:
  explicit Held(K& result) : result_(&result) {}
  ~Held() { Drop(*result_); }
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  K& operator*() const { return *result_; }
  K* operator->() const { return result_; }

 private:
  K* result_;
};

}  // namespace quorvel::test

#endif
