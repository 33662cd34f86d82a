// Element rules of the dense kinds: size, where a line can be non-zero, how an element is read, where it is stored.
//
// An algorithm is a template over rules; a rule is a view of raw storage that checks nothing. Every rule offers
//   rows(), cols()                the size
//   at(i, j)                      element (i, j), implicit elements included
//   in_row(i), in_col(j)          the half-open range of columns (rows) whose elements need not be structurally zero
//   stored_in_row(i)              the columns of row i that the kind stores itself (symmetric: the upper triangle)
//   store(i, j)                   the double that holds (i, j), a pair of the stored part
#ifndef QUORVEL_DENSE_RULES_H
#define QUORVEL_DENSE_RULES_H

#include <cstddef>

#include "core/packed.h"
#include "quorvel/DiagonalMatrix.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel::detail {

/// Half-open range of indices.
struct Range {
  index_t begin;
  index_t end;
};

/// What two lines share.
constexpr Range common(Range a, Range b) noexcept {
  const index_t begin = a.begin > b.begin ? a.begin : b.begin;
  const index_t end = a.end < b.end ? a.end : b.end;
  return {begin, begin < end ? end : begin};
}

template <class K>
class Rule;

template <>
class Rule<RegularMatrix> {
 public:
  explicit Rule(const RegularMatrix& a) noexcept : data_(const_cast<double*>(a.data())), m_(a.nrows()), n_(a.ncols()) {}
  index_t rows() const noexcept { return m_; }
  index_t cols() const noexcept { return n_; }
  double at(index_t i, index_t j) const noexcept { return store(i, j); }
  double& store(index_t i, index_t j) const noexcept { return data_[static_cast<std::size_t>(i) * n_ + j]; }
  Range in_row(index_t) const noexcept { return {0, n_}; }
  Range in_col(index_t) const noexcept { return {0, m_}; }
  Range stored_in_row(index_t) const noexcept { return {0, n_}; }

 private:
  double* data_;
  index_t m_;
  index_t n_;
};

/// What the square rules share: storage and order.
class SquareRule {
 public:
  explicit SquareRule(const SquareMatrix& a) noexcept : data_(const_cast<double*>(a.data())), n_(a.ndim()) {}
  index_t rows() const noexcept { return n_; }
  index_t cols() const noexcept { return n_; }

 protected:
  double& packed(index_t a, index_t b) const noexcept { return data_[packed_index(a, b, n_)]; }
  double* data_;
  index_t n_;
};

template <>
class Rule<SymmetricMatrix> : public SquareRule {
 public:
  using SquareRule::SquareRule;
  double at(index_t i, index_t j) const noexcept { return store(i, j); }
  double& store(index_t i, index_t j) const noexcept { return data_[packed_mirrored(i, j, n_)]; }
  Range in_row(index_t) const noexcept { return {0, n_}; }
  Range in_col(index_t) const noexcept { return {0, n_}; }
  Range stored_in_row(index_t i) const noexcept { return {i, n_}; }
};

template <>
class Rule<UpperTriangularMatrix> : public SquareRule {
 public:
  using SquareRule::SquareRule;
  double at(index_t i, index_t j) const noexcept { return i <= j ? packed(i, j) : 0.0; }
  double& store(index_t i, index_t j) const noexcept { return packed(i, j); }
  Range in_row(index_t i) const noexcept { return {i, n_}; }
  Range in_col(index_t j) const noexcept { return {0, j + 1}; }
  Range stored_in_row(index_t i) const noexcept { return {i, n_}; }
};

template <>
class Rule<LowerTriangularMatrix> : public SquareRule {
 public:
  using SquareRule::SquareRule;
  double at(index_t i, index_t j) const noexcept { return i >= j ? packed(j, i) : 0.0; }
  double& store(index_t i, index_t j) const noexcept { return packed(j, i); }
  Range in_row(index_t i) const noexcept { return {0, i + 1}; }
  Range in_col(index_t j) const noexcept { return {j, n_}; }
  Range stored_in_row(index_t i) const noexcept { return {0, i + 1}; }
};

template <>
class Rule<DiagonalMatrix> : public SquareRule {
 public:
  using SquareRule::SquareRule;
  double at(index_t i, index_t j) const noexcept { return i == j ? data_[i] : 0.0; }
  double& store(index_t i, index_t) const noexcept { return data_[i]; }
  Range in_row(index_t i) const noexcept { return {i, i + 1}; }
  Range in_col(index_t j) const noexcept { return {j, j + 1}; }
  Range stored_in_row(index_t i) const noexcept { return {i, i + 1}; }
};

}  // namespace quorvel::detail

#endif
