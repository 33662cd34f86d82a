// Sums and differences with a sparse operand.
#include "quorvel/sums.h"

#include <utility>

#include "ops/sparse_sums.h"
#include "ops/sum_methods.h"
#include "ops/sum_rows.inc"
#include "ops/tables/sums.h"
#include "sparse/copy.h"
#include "sparse/cursor.h"

namespace quorvel::detail {
namespace {

// What becomes of an element of the target alone, of one that both have, of one of the other alone.
struct Added {
  static double alone(double t) noexcept { return t; }
  static double common(double t, double o) noexcept { return t + o; }
  static double taken(double o) noexcept { return o; }
};
struct Subtracted {
  static double alone(double t) noexcept { return t; }
  static double common(double t, double o) noexcept { return t - o; }
  static double taken(double o) noexcept { return -o; }
};
struct SubtractedFrom {
  static double alone(double t) noexcept { return -t; }
  static double common(double t, double o) noexcept { return o - t; }
  static double taken(double o) noexcept { return o; }
};

template <class Signs>
void MergeRow(RowWriter& writer, SparseMatrix& target, index_t i, LineCursor other) {
  SparseElement* prev = nullptr;
  SparseElement* e = target.rowHeads[i];
  const auto pass = [&] {
    prev = e;
    e = e->nextInRow;
  };
  for (;;) {
    while (e != nullptr && (!other || e->col < other.index())) {
      e->value = Signs::alone(e->value);
      pass();
    }
    if (!other) return;
    const index_t j = other.index();
    const double v = other.value();
    other.next();  // before the element goes: both cursors may be on it
    if (e == nullptr || e->col != j) {
      if (v != 0.0) prev = writer.append(prev, i, j, Signs::taken(v));
      continue;
    }
    const double value = Signs::common(e->value, v);
    if (value != 0.0) {
      e->value = value;
      pass();
    } else {
      SparseElement* const next = e->nextInRow;
      writer.remove(prev, e);
      e = next;
    }
  }
}

template <class Signs>
void Merge(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  const bool apart = !SameObject(target, first);
  const bool mirrored = is_mirrored_copy(target, first);
  if (apart && mirrored) target.Copy(first, false);
  if (apart && !mirrored) {
    target.ThrowEquals(code::sparse_copy, first);
    SizeForCopy(target, first);
  }
  RowWriter writer(target);
  if (apart && !mirrored) CopyRows(writer, first);
  const SparseLines lines(other);
  const bool stored_only = is_symmetric_sparse(target);
  for (index_t i = 0; i < target.rows; ++i) {
    MergeRow<Signs>(writer, target, i, stored_only ? lines.stored_row(i) : lines.row(i));
  }
}

/// Sparse x with a dense y in place: y becomes sparse first, with the codes of that conversion.
template <class Op, class X, class Y>
X& ConvertedSum(X& x, const Y& y) {
  Consumed target(x);
  const X other(y);
  target.release(x);
  return Sum<Op, SparseMerge, code::none>::compound(x, other);
}

}  // namespace

void MergeSum(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  Merge<Added>(target, first, other);
}
void MergeDifference(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  Merge<Subtracted>(target, first, other);
}
void MergeReversed(SparseMatrix& target, const SparseMatrix& first, const SparseMatrix& other) {
  Merge<SubtractedFrom>(target, first, other);
}

}  // namespace quorvel::detail

namespace detail = quorvel::detail;

#define SUM_CONVERTED(X, Y)                                                                 \
  X& X::operator+=(const Y& b) { return detail::ConvertedSum<detail::Addition>(*this, b); } \
  X& X::operator-=(const Y& b) { return detail::ConvertedSum<detail::Subtraction>(*this, b); }

QUORVEL_SPARSE_LIKE_SUMS(SUM_LIKE)
QUORVEL_SPARSE_MIXED_SUMS(SUM_TARGET)
QUORVEL_SPARSE_DIAGONAL_TARGET_SUMS(SUM_TARGET)
QUORVEL_CONVERTED_SUMS(SUM_CONVERTED)
