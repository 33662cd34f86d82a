// Matrices as plain arrays that know which positions exist, for references that are written from the mathematics alone.
//
// Positions outside a triangle, off a diagonal, or absent from a sparse matrix do not, and give no term to a sum.

#ifndef QUORVEL_TESTS_SUPPORT_MASKED_H
#define QUORVEL_TESTS_SUPPORT_MASKED_H

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "quorvel/quorvel.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {

struct Masked {
  unsigned rows = 0, cols = 0;
  std::vector<double> value;
  std::vector<char> exists;

  Masked(unsigned m, unsigned n) : rows(m), cols(n), value(std::size_t{m} * n, 0.0), exists(std::size_t{m} * n, 0) {}
  double& at(unsigned i, unsigned j) { return value[std::size_t{i} * cols + j]; }
  double at(unsigned i, unsigned j) const { return value[std::size_t{i} * cols + j]; }
  bool has(unsigned i, unsigned j) const { return exists[std::size_t{i} * cols + j] != 0; }
  void set(unsigned i, unsigned j, double x) {
    at(i, j) = x;
    exists[std::size_t{i} * cols + j] = 1;
  }
};

inline Masked MaskedOf(const RegularMatrix& a) {
  Masked p(a.nrows(), a.ncols());
  const double* x = a.data();
  for (unsigned i = 0; i < p.rows; ++i) {
    for (unsigned j = 0; j < p.cols; ++j) p.set(i, j, *x++);
  }
  return p;
}

// The packed array holds the upper triangle row by row.
inline Masked MaskedOf(const SymmetricMatrix& a) {
  Masked p(a.nrows(), a.nrows());
  const double* x = a.data();
  for (unsigned i = 0; i < p.rows; ++i) {
    for (unsigned j = i; j < p.rows; ++j, ++x) {
      p.set(i, j, *x);
      p.set(j, i, *x);
    }
  }
  return p;
}

inline Masked MaskedOf(const UpperTriangularMatrix& a) {
  Masked p(a.nrows(), a.nrows());
  const double* x = a.data();
  for (unsigned i = 0; i < p.rows; ++i) {
    for (unsigned j = i; j < p.rows; ++j) p.set(i, j, *x++);
  }
  return p;
}

inline Masked MaskedOf(const LowerTriangularMatrix& a) {
  Masked p(a.nrows(), a.nrows());
  const double* x = a.data();
  for (unsigned j = 0; j < p.rows; ++j) {
    for (unsigned i = j; i < p.rows; ++i) p.set(i, j, *x++);
  }
  return p;
}

inline Masked MaskedOf(const DiagonalMatrix& a) {
  Masked p(a.nrows(), a.nrows());
  for (unsigned i = 0; i < p.rows; ++i) p.set(i, i, a.data()[i]);
  return p;
}

// Both lists of every element are read, and must be in order and agree.
inline Masked MaskedOf(const SparseMatrix& a) {
  Masked p(a.rows, a.cols);
  const bool symmetric = a.kind() == Matrix::symmetric_sparse;
  unsigned in_rows = 0, in_cols = 0;
  for (unsigned i = 0; i < a.rows; ++i) {
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow, ++in_rows) {
      EXPECT_TRUE(e->row == i && e->col < a.cols && (e->nextInRow == nullptr || e->nextInRow->col > e->col));
      EXPECT_FALSE(symmetric && e->row > e->col);
      p.set(e->row, e->col, e->value);
      if (symmetric) p.set(e->col, e->row, e->value);
    }
  }
  for (unsigned j = 0; j < a.cols; ++j) {
    for (const SparseElement* e = a.colHeads[j]; e != nullptr; e = e->nextInCol, ++in_cols) {
      EXPECT_TRUE(e->col == j && p.has(e->row, j) && (e->nextInCol == nullptr || e->nextInCol->row > e->row));
    }
  }
  EXPECT_EQ(in_rows, a.used);
  EXPECT_EQ(in_cols, a.used);
  return p;
}

inline Masked MaskedTranspose(const Masked& a) {
  Masked t(a.cols, a.rows);
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = 0; j < a.cols; ++j) {
      if (a.has(i, j)) t.set(j, i, a.at(i, j));
    }
  }
  return t;
}

// sum over k of a(i, k) b(k, j), from 0.0, k increasing, over the k that exist in both.
inline Masked MaskedProduct(const Masked& a, const Masked& b) {
  Masked c(a.rows, b.cols);
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = 0; j < b.cols; ++j) {
      double sum = 0.0;
      for (unsigned k = 0; k < a.cols; ++k) {
        if (a.has(i, k) && b.has(k, j)) sum = sum + a.at(i, k) * b.at(k, j);
      }
      c.set(i, j, sum);
    }
  }
  return c;
}

// The symmetric matrix with the upper triangle of a square one.
inline Masked MaskedUpper(const Masked& a) {
  Masked s(a.rows, a.rows);
  for (unsigned i = 0; i < a.rows; ++i) {
    for (unsigned j = i; j < a.rows; ++j) {
      s.set(i, j, a.at(i, j));
      s.set(j, i, a.at(i, j));
    }
  }
  return s;
}

// The result has every element of the reference, to the bit; a position that its kind does not have must be zero there.
inline ::testing::AssertionResult SameAs(const Masked& result, const Masked& expected) {
  if (result.rows != expected.rows || result.cols != expected.cols) {
    return ::testing::AssertionFailure() << "is " << result.rows << " x " << result.cols << ", not " << expected.rows
                                         << " x " << expected.cols;
  }
  for (unsigned i = 0; i < expected.rows; ++i) {
    for (unsigned j = 0; j < expected.cols; ++j) {
      if (!expected.has(i, j) && !result.has(i, j)) continue;
      const bool same = result.has(i, j) ? SameBits(result.at(i, j), expected.at(i, j)) : expected.at(i, j) == 0.0;
      if (!same) {
        return ::testing::AssertionFailure() << "(" << i << ", " << j << ") is " << result.at(i, j) << ", not "
                                             << expected.at(i, j);
      }
    }
  }
  return ::testing::AssertionSuccess();
}

inline void FeedDigest(const Masked& a) {
  digest::Feed(a.rows);
  digest::Feed(a.cols);
  digest::Feed(a.value.data(), a.value.size());
}

// A matrix of the kind with such contents: m x n, or of order m for the square kinds.
inline RegularMatrix Sample(RegularMatrix*, unsigned m, unsigned n, Pattern pattern, Random& random) {
  RegularMatrix a(m, n);
  Fill(a.data(), a.StoredCount(), pattern, random);
  return a;
}
template <class K>
K SquareSample(unsigned n, Pattern pattern, Random& random) {
  K a(n);
  Fill(a.data(), a.StoredCount(), pattern, random);
  return a;
}
inline SymmetricMatrix Sample(SymmetricMatrix*, unsigned m, unsigned, Pattern pattern, Random& random) {
  return SquareSample<SymmetricMatrix>(m, pattern, random);
}
inline UpperTriangularMatrix Sample(UpperTriangularMatrix*, unsigned m, unsigned, Pattern pattern, Random& random) {
  return SquareSample<UpperTriangularMatrix>(m, pattern, random);
}
inline LowerTriangularMatrix Sample(LowerTriangularMatrix*, unsigned m, unsigned, Pattern pattern, Random& random) {
  return SquareSample<LowerTriangularMatrix>(m, pattern, random);
}
inline DiagonalMatrix Sample(DiagonalMatrix*, unsigned m, unsigned, Pattern pattern, Random& random) {
  return SquareSample<DiagonalMatrix>(m, pattern, random);
}
// About a third of the cells; some of the stored values are zeros.
template <class K>
K SparseSampleWithZeros(unsigned m, unsigned n, Pattern pattern, Random& random) {
  K a(m, n);
  for (unsigned i = 0; i < m; ++i) {
    for (unsigned j = 0; j < n; ++j) {
      if (!random.Chance(3)) continue;
      a.Put(i, j, 1.0);
      a.Cell_Loc(i, j)->value = Draw(pattern, random);
    }
  }
  return a;
}
inline RegularSparseMatrix Sample(RegularSparseMatrix*, unsigned m, unsigned n, Pattern pattern, Random& random) {
  return SparseSampleWithZeros<RegularSparseMatrix>(m, n, pattern, random);
}
inline SymmetricSparseMatrix Sample(SymmetricSparseMatrix*, unsigned m, unsigned, Pattern pattern, Random& random) {
  return SparseSampleWithZeros<SymmetricSparseMatrix>(m, m, pattern, random);
}
template <class K>
K Sample(unsigned m, unsigned n, Pattern pattern, Random& random) {
  return Sample(static_cast<K*>(nullptr), m, n, pattern, random);
}

// A sparse result holds no zero.
inline bool HoldsNoZero(const SparseMatrix& a) {
  for (unsigned i = 0; i < a.rows; ++i) {
    for (const SparseElement* e = a.rowHeads[i]; e != nullptr; e = e->nextInRow) {
      if (e->value == 0.0) return false;
    }
  }
  return true;
}
inline bool HoldsNoZero(const SingleArrayMatrix&) { return true; }

// Whether a kind can be other than square.
template <class K>
inline constexpr bool rectangular = false;
template <>
inline constexpr bool rectangular<RegularMatrix> = true;
template <>
inline constexpr bool rectangular<RegularSparseMatrix> = true;

}  // namespace quorvel::test

#endif
