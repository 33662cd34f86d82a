// What is fixed for each matrix kind: its tag and whether its storage is dense.
#ifndef QUORVEL_CORE_KINDS_H
#define QUORVEL_CORE_KINDS_H

#include "quorvel/Matrix.h"

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

/// The parts of a matrix's state that no public member changes, for the library's own use.
struct Access {
  /// Exchanges arrays, capacities and orders of two square matrices of one storage layout, whatever their kinds.
  static void swap_storage(SquareMatrix& a, SquareMatrix& b) noexcept;
  static void set_kind(Matrix& a, Matrix::class_type kind) noexcept { a.kind_ = kind; }
};

}  // namespace quorvel::detail

#endif
