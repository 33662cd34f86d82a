// Sums and differences of two sparse matrices: one operand, or a copy of it, takes in the other by merging their rows.
#ifndef QUORVEL_OPS_SPARSE_SUMS_H
#define QUORVEL_OPS_SPARSE_SUMS_H

#include "ops/sums.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"

namespace quorvel::detail {

// Row by row, in ascending columns. A common element whose new value is 0 is removed; an element of `other` alone comes
// in unless it is 0; elements of `first` alone stay (negated in the reversed difference), stored zeros included.
// `first` is the target, or is copied into it before, as Copy does. A regular target takes the full rows of a symmetric
// `other`. `first` and `other` are of one size, and may be one object in the first two. Cost: stored elements of both
// + rows + columns.

void MergeSum(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other);         // first + other
void MergeDifference(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other);  // first - other
void MergeReversed(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other);    // other - first

/// target = first Op other.
template <class Op>
void MergeFirst(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  Op::subtracts ? MergeDifference(target, first, other) : MergeSum(target, first, other);
}

/// target = other Op first.
template <class Op>
void MergeSecond(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  Op::subtracts ? MergeReversed(target, first, other) : MergeSum(target, first, other);
}

struct SparseMerge {
  template <class Op, class R>
  static void run(R& result, const SparseMatrix& a, const SparseMatrix& b) {
    if (SameObject(result, b) && !SameObject(result, a)) {
      MergeSecond<Op>(result, b, a);
    } else {
      MergeFirst<Op>(result, a, b);
    }
  }
};

/// A difference that is formed in the second operand, or in a copy of it, has a code of its own.
template <class Op, int Code>
constexpr int merge_code(bool in_second) noexcept {
  return in_second && Op::subtracts ? code::sum_reversed : Code;
}

template <class Op, int Code>
struct Sum<Op, SparseMerge, Code> {
  template <class R, class A, class B>
  static R& assigned(R& result, const A& a, const B& b) {
    RequireSameDim(a, b, merge_code<Op, Code>(SameObject(result, b) && !SameObject(result, a)));
    return WriteSum<Op, SparseMerge>(result, a, b);
  }

  /// The operand with more stored elements becomes the result if it can (a when equal), else the other if that can,
  /// else a copy of the larger one: so few elements have to be inserted.
  template <class R, class A, class B>
  static R& returned(const A& a, const B& b) {
    const bool first_reusable = Reusable<R>(a) != nullptr;
    const bool second_reusable = Reusable<R>(b) != nullptr;
    const bool in_first = a.used >= b.used ? first_reusable || !second_reusable : first_reusable && !second_reusable;
    RequireSameDim(a, b, merge_code<Op, Code>(!in_first));
    Consumed held(a, b);
    if (R* const reused = in_first ? Reusable<R>(a) : Reusable<R>(b)) {
      merge<Op>(*reused, a, b, in_first);
      reused->set_nsing(-1);
      held.release(*reused);
      return *reused;
    }
    NewResult<R> fresh;
    merge<Op>(*fresh, a, b, in_first);
    return fresh.hand_over();
  }

  template <class X, class Y>
  static X& compound(X& x, const Y& y) {
    RequireSameDim(x, y, Code);
    Consumed held(x, y);
    MergeFirst<Op>(x, x, y);
    held.release(x);
    return x;
  }

 private:
  template <class Operation>
  static void merge(SparseMatrix& target, const SparseMatrix& a, const SparseMatrix& b, bool in_first) {
    in_first ? MergeFirst<Operation>(target, a, b) : MergeSecond<Operation>(target, b, a);
  }
};

}  // namespace quorvel::detail

#endif
