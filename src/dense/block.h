// The block operator of the dense kinds: A(r0, r1, c0, c1), inclusive bounds.
#ifndef QUORVEL_DENSE_BLOCK_H
#define QUORVEL_DENSE_BLOCK_H

#include "core/ownership.h"
#include "dense/rules.h"

namespace quorvel::detail {

/// Fills a target of the right size with the elements of `a` from (row, col) on.
template <class K>
void ReadBlock(const K& a, index_t row, index_t col, RegularMatrix& target) noexcept {
  const Rule<K> from(a);
  const Rule<RegularMatrix> to(target);
  for (index_t i = 0; i < to.rows(); ++i) {
    for (index_t j = 0; j < to.cols(); ++j) to.store(i, j) = from.at(row + i, col + j);
  }
}

/// The sizes r1 + 1 - r0 are 32-bit differences as they stand: r0 = r1 + 1 is an empty block, any other reversed range
/// asks for too many doubles. The block is checked against `a` before anything is allocated.
template <class K>
RegularMatrix& BlockOf(const K& a, index_t r0, index_t r1, index_t c0, index_t c1) {
  a.ThrowNotOk(code::none);
  if (a.nrows() < r1 + 1 || a.ncols() < c1 + 1) FailWith(offset::shape, &a);
  const Consumed operand(a);
  NewResult<RegularMatrix> block(r1 + 1 - r0, c1 + 1 - c0);
  ReadBlock(a, r0, c0, *block);
  return block.hand_over();
}

}  // namespace quorvel::detail

#endif
