// The dense kinds as factors and targets of the kernels.
#ifndef QUORVEL_OPS_VIEWS_H
#define QUORVEL_OPS_VIEWS_H

#include "core/packed.h"
#include "ops/kernels/kernels.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"

namespace quorvel::detail {

/// A full rows x cols array by rows.
inline Factor FactorOf(const double* data, kernel_offset stride) noexcept {
  return {data, stride, 0, Form::by_rows, Shape::full};
}
inline Factor PackedFactor(const double* data, kernel_index n, Form form, Shape shape) noexcept {
  return {data, static_cast<kernel_offset>(n) - 1, 1, form, shape};
}

inline Factor FactorOf(const RegularMatrix& a) noexcept {
  return FactorOf(a.data(), static_cast<kernel_offset>(a.ncols()));
}
inline Factor FactorOf(const SymmetricMatrix& a) noexcept {
  return PackedFactor(a.data(), a.ndim(), Form::mirrored, Shape::full);
}
inline Factor FactorOf(const UpperTriangularMatrix& a) noexcept {
  return PackedFactor(a.data(), a.ndim(), Form::by_rows, Shape::upper);
}
inline Factor FactorOf(const LowerTriangularMatrix& a) noexcept {
  return PackedFactor(a.data(), a.ndim(), Form::by_columns, Shape::lower);
}

/// The same array read as the transposed matrix.
inline Factor Transposed(Factor a) noexcept {
  if (a.form != Form::mirrored) a.form = a.form == Form::by_rows ? Form::by_columns : Form::by_rows;
  if (a.shape != Shape::full) a.shape = a.shape == Shape::upper ? Shape::lower : Shape::upper;
  return a;
}

inline Target TargetOf(double* data, kernel_offset stride) noexcept {
  return {data, stride, 0, Form::by_rows, Shape::full};
}
inline Target TargetOf(RegularMatrix& a) noexcept { return TargetOf(a.data(), static_cast<kernel_offset>(a.ncols())); }

/// A packed array by its upper triangle (of a symmetric matrix: i <= j), or by the lower one, its mirror image.
inline Target UpperTarget(SquareMatrix& a) noexcept {
  return {a.data(), static_cast<kernel_offset>(a.ndim()) - 1, 1, Form::by_rows, Shape::upper};
}
inline Target LowerTarget(SquareMatrix& a) noexcept {
  return {a.data(), static_cast<kernel_offset>(a.ndim()) - 1, 1, Form::by_columns, Shape::lower};
}
/// The upper triangle from row and column `begin` on: it is a packed array itself.
inline Target TrailingTarget(SymmetricMatrix& a, kernel_index begin) noexcept {
  return {a.data() + packed_row(begin, a.ndim()), static_cast<kernel_offset>(a.ndim() - begin) - 1, 1, Form::by_rows,
          Shape::upper};
}
inline Target TargetOf(SymmetricMatrix& a) noexcept { return UpperTarget(a); }
inline Target TargetOf(UpperTriangularMatrix& a) noexcept { return UpperTarget(a); }
inline Target TargetOf(LowerTriangularMatrix& a) noexcept { return LowerTarget(a); }

/// c = a * b, the part in c's shape, a having `depth` columns.
inline void MultiplyFactors(const Target& c, const Factor& a, const Factor& b, kernel_index rows, kernel_index cols,
                            kernel_index depth) noexcept {
  kernels().multiply_whole(c, a, b, rows, cols, depth);
}

}  // namespace quorvel::detail

#endif
