// Copying blocks: the checks, who dies, and the writing of dense blocks.
#ifndef QUORVEL_OPS_BLOCKS_H
#define QUORVEL_OPS_BLOCKS_H

#include <cstdint>
#include <type_traits>

#include "core/ownership.h"
#include "core/storage.h"
#include "dense/block.h"
#include "dense/rules.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"

namespace quorvel::detail {

/// rows x cols elements, from (src_row, src_col) on, to go to (row, col).
struct Block {
  index_t row;
  index_t col;
  index_t src_row;
  index_t src_col;
  index_t rows;
  index_t cols;

  bool empty() const noexcept { return rows == 0 || cols == 0; }
};

constexpr bool fits(index_t first, index_t count, index_t extent) noexcept {
  return std::uint64_t{first} + count <= extent;
}

template <class T, class S>
bool Fits(const Block& b, const T& target, const S& src) noexcept {
  return fits(b.row, b.rows, target.nrows()) && fits(b.col, b.cols, target.ncols()) &&
         fits(b.src_row, b.rows, src.nrows()) && fits(b.src_col, b.cols, src.ncols());
}

/// The block lies on one side of the target's diagonal and touches it at one corner at most.
inline bool OneSided(const Block& b) noexcept {
  return b.empty() || std::uint64_t{b.col} + 1 >= std::uint64_t{b.row} + b.rows ||
         std::uint64_t{b.row} + 1 >= std::uint64_t{b.col} + b.cols;
}

/// A packed target takes one side of its diagonal; a symmetric sparse one has both when it is square.
template <class T>
bool TakesShape([[maybe_unused]] const T& target, [[maybe_unused]] const Block& b) noexcept {
  if constexpr (is_packed<T>) return OneSided(b);
  if constexpr (std::is_same_v<T, SymmetricSparseMatrix>) return target.nrows() == target.ncols();
  return true;
}

/// Throws the pending code, 50000 or 40000; both matrices die first if they are dispensable.
template <class T, class S>
void CheckBlock(const Block& b, const T& target, const S& src) {
  int value = GetErrorCode();
  if (value == 0 && !(target.ok() && src.ok())) value = offset::not_ok;
  if (value == 0 && !(Fits(b, target, src) && TakesShape(target, b))) value = offset::shape;
  if (value != 0) FailWith(value, &target, &src);
}

/// The columns of block row r that a dense target stores.
template <class T>
Range StoredColumns(const Rule<T>& to, const Block& b, index_t r) noexcept {
  const Range all = {b.col, b.col + b.cols};
  if constexpr (std::is_same_v<T, SymmetricMatrix>) return all;
  return common(all, to.stored_in_row(b.row + r));
}

/// The same block, read from a copy of itself.
inline Block FromBuffer(const Block& b) noexcept { return {b.row, b.col, 0, 0, b.rows, b.cols}; }

/// A block into a target that may store a part of it only. Sparse matrices: see sparse_block_copy.h.
template <class T, class S>
void WriteBlock(T& target, const S& src, const Block& b) {
  if constexpr (!is_dense<T>) {
    WriteSparseBlock(target, src, b);
  } else if constexpr (!is_dense<S>) {
    WriteStored(target, src, b);
  } else {
    WriteDenseBlock(target, src, b);
  }
}

template <class T, class S>
void WriteDenseBlock(T& target, const S& src, const Block& b) {
  if constexpr (std::is_same_v<T, S>) {
    if (&target == &src) {  // read everything before anything is written
      RegularMatrix buffer(b.rows, b.cols);
      ReadBlock(src, b.src_row, b.src_col, buffer);
      WriteDenseBlock(target, buffer, FromBuffer(b));
      return;
    }
  }
  const Rule<T> to(target);
  const Rule<S> from(src);
  for (index_t r = 0; r < b.rows; ++r) {
    const Range cols = StoredColumns(to, b, r);
    for (index_t j = cols.begin; j < cols.end; ++j) {
      to.store(b.row + r, j) = from.at(b.src_row + r, b.src_col + (j - b.col));
    }
  }
}

/// Rows are contiguous on both sides; within one matrix the order of rows keeps unread ones intact.
inline void WriteBlock(RegularMatrix& target, const RegularMatrix& src, const Block& b) noexcept {
  const Rule<RegularMatrix> to(target);
  const Rule<RegularMatrix> from(src);
  const bool upwards = b.row <= b.src_row;
  for (index_t k = 0; k < b.rows; ++k) {
    const index_t r = upwards ? k : b.rows - 1 - k;
    MoveDoubles(&to.store(b.row + r, b.col), &from.store(b.src_row + r, b.src_col), b.cols);
  }
}

/// The diagonal of the block. Within one matrix the order keeps unread elements intact.
template <class S>
void WriteBlock(DiagonalMatrix& target, const S& src, const Block& b) noexcept {
  const Rule<S> from(src);
  const index_t count = b.rows < b.cols ? b.rows : b.cols;
  const bool upwards = b.row <= b.src_row;
  for (index_t k = 0; k < count; ++k) {
    const index_t i = upwards ? k : count - 1 - k;
    target.data()[b.row + i] = from.at(b.src_row + i, b.src_col + i);
  }
}

/// CopySubMat. The source is consumed, the target never, unless the call fails.
template <class T, class S>
T& CopiedBlock(T& target, const S& src, const Block& b) {
  CheckBlock(b, target, src);
  Consumed held(src, target);
  if (!b.empty()) WriteBlock(target, src, b);
  held.release(target);
  return target;
}

}  // namespace quorvel::detail

#endif
