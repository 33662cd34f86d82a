// The roads of a sum or difference: who becomes the result, who dies. The arithmetic is a Method (sum_methods.h,
// sparse_sums.h):
//   Method::run<Op>(result, a, b)   sizes `result` and writes Op(a, b) to it; `result` may be a or b itself
#ifndef QUORVEL_OPS_SUMS_H
#define QUORVEL_OPS_SUMS_H

#include <new>
#include <type_traits>

#include "core/ownership.h"
#include "core/packed.h"

namespace quorvel::detail {

struct Addition {
  static constexpr bool subtracts = false;
  static double of(double a, double b) noexcept { return a + b; }
};

struct Subtraction {
  static constexpr bool subtracts = true;
  static double of(double a, double b) noexcept { return a - b; }
};

/// Empties and sizes a sparse target that is no operand, while nothing else holds it: a dispensable one refuses to be
/// resized and dies in the attempt.
template <class R>
void SizeSparseTarget(R& target, index_t rows, index_t cols) {
  target.Clear();
  try {
    target.SetSize(rows, cols, true);
  } catch (const std::bad_alloc&) {  // never all ways: nothing else stops here
    target.DestroyIfDispensable();
    throw;
  }
}

template <class A, class B>
bool SameObject(const A& a, const B& b) noexcept {
  return static_cast<const Matrix*>(&a) == static_cast<const Matrix*>(&b);
}

/// The road of Plus and Minus after the check: the operands are consumed, the result never. It is refused when it is
/// not ok, and when memory runs out a dispensable one dies with the operands.
template <class Op, class Method, class R, class A, class B>
R& WriteSum(R& result, const A& a, const B& b) {
  if (!result.ok()) FailWith(offset::not_ok, &a, &b, &result);
  if constexpr (!is_dense<R>) {
    Consumed operands(a, b);
    if (!SameObject(result, a) && !SameObject(result, b)) SizeSparseTarget(result, a.nrows(), a.ncols());
    operands.release(a);
    operands.release(b);
  }
  Consumed held(a, b, result);
  Method::template run<Op>(result, a, b);
  result.set_nsing(-1);
  held.release(result);
  return result;
}

/// The operand itself when it can become a result of kind R: it is of that kind and dispensable. Null otherwise.
template <class R, class A>
R* Reusable([[maybe_unused]] const A& a) noexcept {
  if constexpr (std::is_same_v<R, A>) {
    if (a.dispensable()) return &Mutable(a);
  }
  return nullptr;
}

/// The sums of one row of the table, Code being what their check adds its offset to.
template <class Op, class Method, int Code>
struct Sum {
  /// Plus(result, a, b), Minus(result, a, b).
  template <class R, class A, class B>
  static R& assigned(R& result, const A& a, const B& b) {
    RequireSameDim(a, b, Code);
    return WriteSum<Op, Method>(result, a, b);
  }

  /// a + b, a - b: the first operand that can become the result does, else the second, else the result is new.
  template <class R, class A, class B>
  static R& returned(const A& a, const B& b) {
    RequireSameDim(a, b, Code);
    Consumed held(a, b);
    R* reused = Reusable<R>(a);
    if (reused == nullptr) reused = Reusable<R>(b);
    if (reused != nullptr) {
      Method::template run<Op>(*reused, a, b);
      reused->set_nsing(-1);
      held.release(*reused);
      return *reused;
    }
    auto fresh = NewResult<R>::sized(a.nrows(), a.ncols());
    Method::template run<Op>(*fresh, a, b);
    fresh->set_nsing(-1);
    return fresh.hand_over();
  }

  /// x += y, x -= y. The singularity count becomes unknown in a dense matrix and stays in a sparse one.
  template <class X, class Y>
  static X& compound(X& x, const Y& y) {
    RequireSameDim(x, y, Code);
    Consumed held(x, y);
    Method::template run<Op>(x, x, y);
    if (is_dense<X>) x.set_nsing(-1);
    held.release(x);
    return x;
  }
};

}  // namespace quorvel::detail

#endif
