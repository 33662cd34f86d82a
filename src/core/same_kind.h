// Assignment and unary minus, which read the same in every kind.
#ifndef QUORVEL_CORE_SAME_KIND_H
#define QUORVEL_CORE_SAME_KIND_H

#include "core/ownership.h"
#include "core/sizing.h"
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

/// The storage and state of a dispensable source, which dies, if nothing speaks against it.
template <class K>
bool TookOver(K& target, K& source) {
  if (!source.dispensable() || !Usable(target, source)) return false;
  Access::swap_state(target, source);
  Access::swap_storage(target, source);
  DestroyEmptied(source);
  return true;
}

/// Assignment from the same kind: nothing for the same object; a dispensable source gives its storage and dies.
template <class K>
K& AssignSameKind(K& target, K& source) {
  if (&target == &source) return target;
  if constexpr (is_dense<K>) {
    if (TookOver(target, source)) return target;
  }
  RequireAssignable(target, source, code::assign);
  if (!is_dense<K> && source.dispensable()) {
    target.Swap(source);
    source.DestroyIfDispensable();
    return target;
  }
  if constexpr (is_dense<K>) {
    Consumed operands(target);
    CopyContents(target, source);
    operands.release(target);
  } else {
    FillTarget(target, [&] { target.Copy(source, false); });
  }
  return target;
}

/// Unary minus: in place for a dispensable operand, else a new negated copy.
template <class K>
K& Negated(K& a) {
  RequireOk(a, code::negate);
  if (a.dispensable()) {
    a.Negate();
    return a;
  }
  if constexpr (is_dense<K>) {
    auto result = NewResult<K>::sized(a.nrows(), a.ncols());
    result->set_nsing(a.nsing());
    kernels().negate(result->data(), a.data(), StoredIn(a));
    return result.hand_over();
  } else {
    NewResult<K> result;
    result->Copy(a, true);
    return result.hand_over();
  }
}

}  // namespace quorvel::detail

#endif
