// The roads of a sum or difference: who becomes the result, who dies. The arithmetic is a Method (sum_methods.h):
//   Method::run<Op>(result, a, b)   sizes `result` and writes Op(a, b) to it; `result` may be a or b itself
#ifndef QUORVEL_OPS_SUMS_H
#define QUORVEL_OPS_SUMS_H

#include <type_traits>

#include "core/ownership.h"

namespace quorvel::detail {

struct Addition {
  static constexpr bool subtracts = false;
  static double of(double a, double b) noexcept { return a + b; }
};

struct Subtraction {
  static constexpr bool subtracts = true;
  static double of(double a, double b) noexcept { return a - b; }
};

/// Plus(result, a, b), Minus(result, a, b). The operands are consumed, the result never; one that is not ok is refused
/// after the operands. When memory runs out, a dispensable result dies with the operands.
template <class Op, class Method, int Code, class R, class A, class B>
R& AssignedSum(R& result, const A& a, const B& b) {
  a.ThrowNotSameDim(Code, b);
  if (!result.ok()) FailWith(offset::not_ok, &a, &b, &result);
  Consumed held(a, b, result);
  Method::template run<Op>(result, a, b);
  result.set_nsing(-1);
  held.release(result);
  return result;
}

/// x += y, x -= y. The singularity count becomes unknown in a dense matrix and stays in a sparse one.
template <class Op, class Method, int Code, class X, class Y>
X& CompoundSum(X& x, const Y& y) {
  x.ThrowNotSameDim(Code, y);
  Consumed held(x, y);
  Method::template run<Op>(x, x, y);
  if (is_dense<X>) x.set_nsing(-1);
  held.release(x);
  return x;
}

/// The operand itself when it can become a result of kind R: it is of that kind and dispensable. Null otherwise.
template <class R, class A>
R* Reusable([[maybe_unused]] const A& a) noexcept {
  if constexpr (std::is_same_v<R, A>) {
    if (a.dispensable()) return &Mutable(a);
  }
  return nullptr;
}

/// a + b, a - b: the first operand that can become the result does, else the second, else the result is new.
template <class Op, class Method, int Code, class R, class A, class B>
R& ReturnedSum(const A& a, const B& b) {
  a.ThrowNotSameDim(Code, b);
  Consumed held(a, b);
  R* reused = Reusable<R>(a);
  if (reused == nullptr) reused = Reusable<R>(b);
  if (reused != nullptr) {
    Method::template run<Op>(*reused, a, b);
    reused->set_nsing(-1);
    held.release(*reused);
    return *reused;
  }
  NewResult<R> fresh;
  Method::template run<Op>(*fresh, a, b);
  fresh->set_nsing(-1);
  return fresh.hand_over();
}

}  // namespace quorvel::detail

#endif
