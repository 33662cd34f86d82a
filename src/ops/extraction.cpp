// GetSubMat and SubMat: blocks of dense matrices into a resized or a new matrix.
#include "quorvel/blocks.h"

#include "ops/blocks.h"
#include "ops/tables/blocks.h"

namespace quorvel::detail {
namespace {

/// A block to be copied to the start of a matrix of its size.
Block ToStart(Bounds rows, Bounds cols) noexcept { return {0, 0, rows.first, cols.first, rows.size(), cols.size()}; }

/// The elements of a block that `out` stores.
template <class K, class S>
void ReadInto(K& out, const S& src, const Block& b) noexcept {
  const Rule<K> to(out);
  const Rule<S> from(src);
  for (index_t i = 0; i < b.rows; ++i) {
    const Range stored = to.stored_in_row(i);
    for (index_t j = stored.begin; j < stored.end; ++j) to.store(i, j) = from.at(b.src_row + i, b.src_col + j);
  }
}

/// A block of `out` itself becomes `out`, which keeps its array: read aside first.
template <class K>
K& ExtractedInPlace(K& out, Bounds rows, Bounds cols) {
  RequireOk(out, code::none);
  RequireBlock<K>(out, rows, cols);
  if (out.nrows() < rows.last + 1 || out.ncols() < cols.last + 1) FailWith(offset::shape, &out);
  const Block b = ToStart(rows, cols);
  Consumed held(out);
  K block(b.rows, b.cols);
  ReadInto(block, out, b);
  CopyDoubles(out.data(), block.data(), StoredIn(block));
  SetExtent(out, b.rows, b.cols);
  held.release(out);
  return out;
}

/// GetSubMat. `out` takes the block's size before the block is checked: a refused block leaves it resized.
template <class K, class S>
K& Extracted(K& out, const S& src, Bounds rows, Bounds cols) {
  const Block b = ToStart(rows, cols);
  if constexpr (std::is_same_v<K, S>) {
    if (&out == &src) return ExtractedInPlace(out, rows, cols);
  }
  if (GetErrorCode() != 0 || !out.ok()) FailWith(offset::not_ok, &out, &src);
  {
    Consumed held(src, out);
    out.SetSize(b.rows, b.cols, false);
    if (rows.reversed() || cols.reversed()) throw std::bad_array_new_length();
    held.release(src);
    held.release(out);
  }
  if (!src.ok()) FailWith(offset::not_ok, &out, &src);
  if (!Fits(b, out, src)) FailWith(offset::shape, &out, &src);
  const Consumed held(src);
  ReadInto(out, src, b);
  return out;
}

/// SubMat of a principal block.
template <class K>
K& PrincipalBlock(const K& a, Bounds range) {
  RequireBlock<K>(a, range, range);
  RequireOk(a, code::none);
  if (a.ndim() < range.last + 1) FailWith(offset::shape, &a);
  const Consumed operand(a);
  NewResult<K> block(range.size());
  ReadInto(*block, a, ToStart(range, range));
  return block.hand_over();
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

#define EXTRACTION(T, S)                                                                                             \
  RegularMatrix& GetSubMat(RegularMatrix& out, const S& src, unsigned firstRow, unsigned lastRow, unsigned firstCol, \
                           unsigned lastCol) {                                                                       \
    return detail::Extracted(out, src, {firstRow, lastRow}, {firstCol, lastCol});                                    \
  }                                                                                                                  \
  RegularMatrix& SubMat(const S& src, unsigned firstRow, unsigned lastRow, unsigned firstCol, unsigned lastCol) {    \
    return detail::BlockOf(src, {firstRow, lastRow}, {firstCol, lastCol});                                           \
  }

#define PRINCIPAL(K)                                                  \
  K& GetSubMat(K& out, const K& src, unsigned first, unsigned last) { \
    return detail::Extracted(out, src, {first, last}, {first, last}); \
  }                                                                   \
  K& SubMat(const K& src, unsigned first, unsigned last) { return detail::PrincipalBlock(src, {first, last}); }

QUORVEL_DENSE_BLOCK_SOURCES(EXTRACTION, RegularMatrix)
QUORVEL_PRINCIPAL_BLOCKS(PRINCIPAL)
