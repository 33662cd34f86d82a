// The block operator of the dense kinds: A(r0, r1, c0, c1), inclusive bounds.
#ifndef QUORVEL_DENSE_BLOCK_H
#define QUORVEL_DENSE_BLOCK_H

#include <cstdint>
#include <new>
#include <type_traits>

#include "core/ownership.h"
#include "core/sizing.h"
#include "dense/read_line.h"
#include "ops/views.h"

namespace quorvel::detail {

/// Inclusive bounds of a block along one direction. The size is a 32-bit difference as it stands: first = last + 1 is
/// empty.
struct Bounds {
  index_t first;
  index_t last;
  index_t size() const noexcept { return last + 1 - first; }
  /// Further reversed than an empty block. The size may have wrapped to a small one.
  bool reversed() const noexcept { return first > last + 1; }
};

/// Of how many doubles a new matrix of kind K with these sizes consists.
template <class K>
std::uint64_t DoublesOf(Bounds rows, Bounds cols) noexcept {
  if constexpr (is_packed<K>) return packed_count(rows.size());
  if constexpr (std::is_same_v<K, DiagonalMatrix>) return rows.size();
  return std::uint64_t{rows.size()} * cols.size();
}

/// A reversed range is a bad array length, like a block of too many doubles; `a` dies if it is dispensable.
template <class K>
void RequireBlock(const Matrix& a, Bounds rows, Bounds cols) {
  if (!rows.reversed() && !cols.reversed() && DoublesOf<K>(rows, cols) < max_doubles) return;
  a.DestroyIfDispensable();
  throw std::bad_array_new_length();
}

/// Fills a target of the right size with the elements of `a` from (row, col) on.
inline void ReadBlock(const RegularMatrix& a, index_t row, index_t col, RegularMatrix& target) noexcept {
  const Factor whole = FactorOf(a);
  const Factor from{whole.first + static_cast<kernel_offset>(row) * whole.stride + col, whole.stride, 0, whole.form,
                    whole.shape};
  if (target.ncols() != 0) kernels().copy_lines(TargetOf(target), from, target.nrows(), target.ncols());
}
template <class K>
void ReadBlock(const K& a, index_t row, index_t col, RegularMatrix& target) noexcept {
  const Rule<K> from(a);
  double* to = target.data();
  for (index_t i = 0; i < target.nrows(); ++i, to += target.ncols()) {
    ReadLine(to, from, row + i, {col, col + target.ncols()});
  }
}

/// The size of the block is settled first, then the checks of `a` and of the block follow; memory is taken last.
template <class K>
RegularMatrix& BlockOf(const K& a, Bounds rows, Bounds cols) {
  RequireBlock<RegularMatrix>(a, rows, cols);
  RequireOk(a, code::none);
  if (a.nrows() < rows.last + 1 || a.ncols() < cols.last + 1) FailWith(offset::shape, &a);
  const Consumed operand(a);
  NewResult<RegularMatrix> block;
  SizeForResult(*block, rows.size(), cols.size());
  ReadBlock(a, rows.first, cols.first, *block);
  return block.hand_over();
}

}  // namespace quorvel::detail

#endif
