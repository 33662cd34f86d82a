// The making of dense results. Each kind has it in the source of its constructors, so that nothing is called for them.
#ifndef QUORVEL_DENSE_NEW_DENSE_H
#define QUORVEL_DENSE_NEW_DENSE_H

#include "core/ownership.h"
#include "core/sizing.h"

namespace quorvel::detail {

template <class K>
K* NewDense(index_t rows, index_t cols) {
  constexpr bool may_be_oblong = std::is_same_v<K, RegularMatrix>;
  NewResult<K> result;
  const std::uint64_t count = DoublesFor<K>(rows, cols);
  if (count != 0 && (may_be_oblong || rows == cols)) {
    GiveArray(*result, rows, cols, count);
  } else {
    result->SetSize(rows, cols, false);
  }
  return result.release();
}

}  // namespace quorvel::detail

#endif
