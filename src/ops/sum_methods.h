// The arithmetic of sums but for two sparse operands. Every element is a(i, j) + b(i, j) or a(i, j) - b(i, j)
// literally, with implicit zeros read as +0.0 (so -0.0 + 0.0 gives 0.0), except where only a diagonal or stored sparse
// elements are added: there the other elements of the result are those of one operand, negated in a difference that
// begins with the other.
#ifndef QUORVEL_OPS_SUM_METHODS_H
#define QUORVEL_OPS_SUM_METHODS_H

#include "dense/rules.h"
#include "ops/sums.h"
#include "sparse/cursor.h"
#include "sparse/diagonal_sum.h"

namespace quorvel::detail {

/// Two of one dense kind: over the stored arrays.
struct Elementwise {
  template <class Op, class K>
  static void run(K& result, const K& a, const K& b) {
    result.SetSize(a.nrows(), a.ncols(), false);  // within its capacity a result that is an operand keeps its doubles
    const index_t count = a.StoredCount();
    double* const r = result.data();
    const double* const x = a.data();
    const double* const y = b.data();
    for (index_t k = 0; k < count; ++k) r[k] = Op::of(x[k], y[k]);
  }
};

/// Two unlike dense kinds: row by row through the element rules. Left of the diagonal and right of it each kind reads
/// one way, so the row is walked in two parts.
struct RowByRow {
  template <class Op, class A, class B>
  static void run(RegularMatrix& result, const A& a, const B& b) {
    const Rule<A> x(a);
    const Rule<B> y(b);
    const index_t n = x.cols();
    result.SetSize(x.rows(), n, false);
    for (index_t i = 0; i < x.rows(); ++i) {
      double* const r = result.data() + std::size_t{i} * n;
      for (index_t j = 0; j < i; ++j) r[j] = Op::of(x.at(i, j), y.at(i, j));
      for (index_t j = i; j < n; ++j) r[j] = Op::of(x.at(i, j), y.at(i, j));
    }
  }
};

/// result = a copy of `x` unless it is that operand itself.
template <class X>
void CopyUnlessSame(X& result, const X& x) {
  if (&result != &x) result.Copy(x, false);
}

/// D - X starts from -X. A symmetric X keeps the sign of its off-diagonal elements.
template <class X>
void NegateForDiagonalMinus(X& x) {
  if constexpr (std::is_same_v<X, SymmetricMatrix>) {
    const Rule<SymmetricMatrix> e(x);
    for (index_t i = 0; i < e.rows(); ++i) e.store(i, i) = -e.store(i, i);
  } else {
    x.Negate();
  }
}

template <class Op, class X>
void UpdateDiagonal(X& x, const DiagonalMatrix& d) {
  if constexpr (is_dense<X>) {
    const Rule<X> e(x);
    for (index_t i = 0; i < d.ndim(); ++i) e.store(i, i) = Op::of(e.store(i, i), d.data()[i]);
  } else {
    AddToDiagonal(x, d, Op::subtracts);
  }
}

/// X with a diagonal matrix: the elements off the diagonal keep their bits, or change their sign in D - X.
struct OnDiagonal {
  template <class Op, class X>
  static void run(X& result, const X& x, const DiagonalMatrix& d) {
    CopyUnlessSame(result, x);
    UpdateDiagonal<Op>(result, d);
  }
  template <class Op, class X>
  static void run(X& result, const DiagonalMatrix& d, const X& x) {
    CopyUnlessSame(result, x);
    if (Op::subtracts) NegateForDiagonalMinus(result);
    UpdateDiagonal<Addition>(result, d);
  }
};

/// Stored elements of a sparse matrix added to (subtracted from) a dense one of the same size.
template <class Op, class S>
void AddStored(SymmetricMatrix& target, const S& sparse) noexcept {
  const Rule<SymmetricMatrix> to(target);
  Rule<S>(sparse).for_each_stored([&](const SparseElement& e) {
    double& x = to.store(e.row, e.col);
    x = Op::of(x, e.value);
  });
}

template <class Op, class S>
void AddStored(RegularMatrix& target, const S& sparse) noexcept {
  const Rule<RegularMatrix> to(target);
  Rule<S>(sparse).for_each_stored([&](const SparseElement& e) {
    double& x = to.store(e.row, e.col);
    x = Op::of(x, e.value);
    if constexpr (std::is_same_v<S, SymmetricSparseMatrix>) {
      // A symmetric sparse matrix that was built with unlike sizes may have no such place.
      if (e.row == e.col || e.col >= to.rows() || e.row >= to.cols()) return;
      double& mirrored = to.store(e.col, e.row);
      mirrored = Op::of(mirrored, e.value);
    }
  });
}

/// A dense matrix into a result that may be of another kind.
template <class R, class X>
void FillFrom(R& result, const X& x) {
  if constexpr (std::is_same_v<R, X>) {
    CopyUnlessSame(result, x);
  } else {
    const Rule<X> from(x);
    result.SetSize(from.rows(), from.cols(), false);
    const Rule<R> to(result);
    for (index_t i = 0; i < from.rows(); ++i) {
      for (index_t j = 0; j < from.cols(); ++j) to.store(i, j) = from.at(i, j);
    }
  }
}

/// A dense kind with a sparse one.
struct StoredOnDense {
  template <class Op, class R, class A, class B>
  static void run(R& result, const A& a, const B& b) {
    if constexpr (is_dense<A>) {
      FillFrom(result, a);
      AddStored<Op>(result, b);
    } else {
      FillFrom(result, b);
      if (Op::subtracts) result.Negate();
      AddStored<Addition>(result, a);
    }
  }
};

}  // namespace quorvel::detail

#endif
