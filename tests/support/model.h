// A plain model of a dense matrix, for naive second implementations in tests.

#ifndef QUORVEL_TESTS_SUPPORT_MODEL_H
#define QUORVEL_TESTS_SUPPORT_MODEL_H

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "quorvel/forward.h"
#include "support/digest.h"
#include "support/random.h"

namespace quorvel::test {

using Model = std::vector<std::vector<double>>;

inline Model Zeros(unsigned rows, unsigned cols) { return Model(rows, std::vector<double>(cols, 0.0)); }

// All elements of a matrix, read one by one through its const access.
template <class K>
Model FullOf(const K& a) {
  Model full = Zeros(a.nrows(), a.ncols());
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) full[i][j] = a(i, j);
  }
  return full;
}

// Whether a square kind stores element (i, j) (mirrored elements included).
template <class K>
constexpr bool Keeps(unsigned i, unsigned j) {
  if (std::is_same_v<K, UpperTriangularMatrix>) return i <= j;
  if (std::is_same_v<K, LowerTriangularMatrix>) return i >= j;
  if (std::is_same_v<K, DiagonalMatrix>) return i == j;
  return true;
}

// Compares bit for bit, and feeds the result to the digest.
inline void ExpectSame(const Model& expected, const Model& got) {
  ASSERT_EQ(expected.size(), got.size());
  for (std::size_t i = 0; i < expected.size(); ++i) {
    ASSERT_EQ(expected[i].size(), got[i].size());
    digest::Feed(got[i].data(), got[i].size());
    for (std::size_t j = 0; j < expected[i].size(); ++j) {
      EXPECT_TRUE(SameBits(expected[i][j], got[i][j]))
          << "(" << i << ", " << j << "): expected " << expected[i][j] << ", got " << got[i][j];
    }
  }
}

template <class K>
void ExpectElements(const Model& expected, const K& a) {
  ExpectSame(expected, FullOf(a));
}

}  // namespace quorvel::test

#endif
