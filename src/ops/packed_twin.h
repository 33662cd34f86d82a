// A packed array under another of the three packed kinds.
#ifndef QUORVEL_OPS_PACKED_TWIN_H
#define QUORVEL_OPS_PACKED_TWIN_H

#include "core/kinds.h"
#include "core/ownership.h"
#include "core/sizing.h"
#include "dense/rules.h"

namespace quorvel::detail {

/// A new dispensable matrix of kind K with A's packed array: taken over from a dispensable A, which dies, else copied.
template <class K>
K& PackedTwin(const TriMatrix& A, Matrix::nsing_type count) {
  const Consumed operand(A);
  if (A.dispensable()) {
    NewResult<K> twin;
    Access::swap_storage(*twin, const_cast<TriMatrix&>(A));
    twin->set_nsing(count);
    return twin.hand_over();
  }
  NewResult<K> twin;
  SizeForResult(*twin, A.ndim(), A.ndim());
  CopyDoubles(twin->data(), A.data(), packed_count(A.ndim()));
  twin->set_nsing(count);
  return twin.hand_over();
}

}  // namespace quorvel::detail

#endif
