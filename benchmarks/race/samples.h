// Operands, the same in every run, in the forms of all contestants.

#ifndef QUORVEL_BENCHMARKS_SAMPLES_H
#define QUORVEL_BENCHMARKS_SAMPLES_H

#include <cstdint>

#include "race/values.h"

namespace bench {

/// Numbers in [-1, 1).
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : state_(seed) {}
  double next() {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return static_cast<double>(static_cast<std::int64_t>(state_)) * 0x1p-63;
  }

 private:
  std::uint64_t state_;
};

inline RegularMatrix Regular(unsigned m, unsigned n, std::uint64_t seed) {
  RegularMatrix a(m, n);
  Numbers numbers(seed);
  for (unsigned k = 0; k < m * n; ++k) a.data()[k] = numbers.next();
  return a;
}

/// Far from singular, but not so near a diagonal that no row would be exchanged.
inline RegularMatrix Invertible(unsigned n, std::uint64_t seed) {
  RegularMatrix a(Regular(n, n, seed));
  for (unsigned i = 0; i < n; ++i) a(i, (i + 1) % n) += n / 2.0;
  return a;
}

inline SymmetricMatrix Symmetric(unsigned n, std::uint64_t seed) {
  SymmetricMatrix a(n);
  Numbers numbers(seed);
  for (unsigned k = 0; k < a.StoredCount(); ++k) a.data()[k] = numbers.next();
  return a;
}

/// Positive definite, with a condition of about 10.
inline SymmetricMatrix Covariance(unsigned n, std::uint64_t seed) {
  SymmetricMatrix p(AAT(Regular(n, n, seed)));
  for (unsigned i = 0; i < n; ++i) p(i, i) = p(i, i) + n / 6.0;
  return p;
}

template <class K>
Eigen::MatrixXd ToEigen(const K& a) {
  Eigen::MatrixXd x(a.nrows(), a.ncols());
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) x(i, j) = a(i, j);
  }
  return x;
}

template <class K>
Columns ToColumns(const K& a) {
  Columns x(static_cast<int>(a.nrows()), static_cast<int>(a.ncols()));
  for (unsigned i = 0; i < a.nrows(); ++i) {
    for (unsigned j = 0; j < a.ncols(); ++j) x(static_cast<int>(i), static_cast<int>(j)) = a(i, j);
  }
  return x;
}

/// LAPACK's packed lower triangle (by columns) of a symmetric matrix: our array itself, row by row of the upper one.
template <class K>
Columns ToPacked(const K& a) {
  Columns x(static_cast<int>(a.StoredCount()), 1);
  for (unsigned k = 0; k < a.StoredCount(); ++k) x.data()[k] = a.data()[k];
  return x;
}

/// Sets a matrix that a call changes back to its beginning. All contestants pay for such a copy.
template <class K>
void Restore(K& a, const K& from) {
  const unsigned count = a.StoredCount();
  double* const to = a.data();
  const double* const source = from.data();
  for (unsigned k = 0; k < count; ++k) to[k] = source[k];
}

}  // namespace bench

#endif
