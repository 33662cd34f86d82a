// What is fixed for each matrix kind: its tag and whether its storage is dense.
#ifndef QUORVEL_CORE_KINDS_H
#define QUORVEL_CORE_KINDS_H

#include <utility>

#include "quorvel/RegularMatrix.h"

namespace quorvel::detail {

template <class K>
struct KindTraits;

template <Matrix::class_type Tag, bool Dense, bool Packed>
struct KindFacts {
  static constexpr Matrix::class_type tag = Tag;
  static constexpr bool dense = Dense;
  static constexpr bool packed = Packed;
};

template <>
struct KindTraits<RegularMatrix> : KindFacts<Matrix::regular, true, false> {};
template <>
struct KindTraits<SymmetricMatrix> : KindFacts<Matrix::symmetric, true, true> {};
template <>
struct KindTraits<UpperTriangularMatrix> : KindFacts<Matrix::upper_triangular, true, true> {};
template <>
struct KindTraits<LowerTriangularMatrix> : KindFacts<Matrix::lower_triangular, true, true> {};
template <>
struct KindTraits<DiagonalMatrix> : KindFacts<Matrix::diagonal, true, false> {};
template <>
struct KindTraits<RegularSparseMatrix> : KindFacts<Matrix::regular_sparse, false, false> {};
template <>
struct KindTraits<SymmetricSparseMatrix> : KindFacts<Matrix::symmetric_sparse, false, false> {};

template <class K>
inline constexpr bool is_dense = KindTraits<K>::dense;
template <class K>
inline constexpr bool is_packed = KindTraits<K>::packed;

/// The parts of a matrix's state that no public member changes, or not without a call, for the library's own use.
struct Access {
  static void set_kind(Matrix& a, Matrix::class_type kind) noexcept { a.kind_ = kind; }
  static void mark_dispensable(Matrix& a) noexcept {
    a.flags_ = static_cast<unsigned char>(a.flags_ | Matrix::dispensable_bit);
  }

  /// Exchanges counts and not-ok flags.
  static void swap_state(Matrix& a, Matrix& b) noexcept {
    std::swap(a.nsing_, b.nsing_);
    const int differing = (a.flags_ ^ b.flags_) & Matrix::not_ok_bit;
    a.flags_ = static_cast<unsigned char>(a.flags_ ^ differing);
    b.flags_ = static_cast<unsigned char>(b.flags_ ^ differing);
  }

  /// Exchanges arrays, capacities and sizes of two matrices of one storage layout, whatever their kinds.
  static void swap_storage(RegularMatrix& a, RegularMatrix& b) noexcept {
    swap_array(a, b);
    std::swap(a.m_, b.m_);
    std::swap(a.n_, b.n_);
  }
  static void swap_storage(SquareMatrix& a, SquareMatrix& b) noexcept {
    swap_array(a, b);
    std::swap(a.n_, b.n_);
  }
  static void swap_array(SingleArrayMatrix& a, SingleArrayMatrix& b) noexcept {
    std::swap(a.array_, b.array_);
    std::swap(a.capacity_, b.capacity_);
  }

  /// Gives a matrix that has no array one of `count` doubles.
  static void set_array(SingleArrayMatrix& a, double* array, Matrix::size_type count) noexcept {
    a.array_ = array;
    a.capacity_ = count;
  }
  static void set_size(RegularMatrix& a, Matrix::size_type rows, Matrix::size_type cols) noexcept {
    a.m_ = rows;
    a.n_ = cols;
  }
  static void set_order(SquareMatrix& a, Matrix::size_type n) noexcept { a.n_ = n; }
};

}  // namespace quorvel::detail

#endif
