// The ways in which a product comes to the caller: into a given result, or as a new one.
//
// An algorithm is passed in as a callable that fills a result of the right size; it checks nothing and owns nothing.
#ifndef QUORVEL_OPS_PRODUCE_H
#define QUORVEL_OPS_PRODUCE_H

#include "core/ownership.h"
#include "core/sizing.h"

namespace quorvel::detail {

/// The size for a result every element of which is written next. A sparse result is emptied, because appending to old
/// elements would leave unsorted lists.
template <class R>
void Prepare(R& result, unsigned rows, unsigned cols) {
  if constexpr (is_dense<R>) {
    SizeForResult(result, rows, cols);
  } else {
    RequireOk(result, code::none);
    result.Clear();
    result.SetSize(rows, cols, false);
  }
}

/// Fills a new rows x cols result from operands whose checks have passed.
template <class R, class A, class B, class Fill>
R& NewProduct(const A& a, const B& b, unsigned rows, unsigned cols, Fill fill) {
  const Consumed operands(a, b);
  auto result = NewResult<R>::sized(rows, cols);
  fill(*result);
  return result.hand_over();
}

/// Fills `result`. When it is an operand, the product is formed aside and swapped in, and the operand survives: but it
/// dies like any other when something fails on the way.
template <class R, class A, class B, class Fill>
R& ProductInto(R& result, const A& a, const B& b, unsigned rows, unsigned cols, Fill fill) {
  Consumed operands(a, b);
  const Matrix* const place = &result;
  if (place == &a || place == &b) {
    R aside;
    Prepare(aside, rows, cols);
    fill(aside);
    result.Swap(aside);
    operands.release(result);
  } else {
    Prepare(result, rows, cols);
    fill(result);
  }
  result.set_nsing(-1);
  return result;
}

}  // namespace quorvel::detail

#endif
