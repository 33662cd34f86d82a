// The arithmetic of sums but for two sparse operands. Every element is a(i, j) + b(i, j) or a(i, j) - b(i, j)
// literally, with implicit zeros read as +0.0 (so -0.0 + 0.0 gives 0.0), except where only a diagonal or stored sparse
// elements are added: there the other elements of the result are those of one operand, negated in a difference that
// begins with the other.
#ifndef QUORVEL_OPS_SUM_METHODS_H
#define QUORVEL_OPS_SUM_METHODS_H

#include "core/sizing.h"
#include "dense/rules.h"
#include "ops/spell_out.h"
#include "ops/sums.h"
#include "sparse/cursor.h"
#include "sparse/diagonal_sum.h"

namespace quorvel::detail {

/// r[k] = Op(x[k], y[k]); r may be x or y.
template <class Op>
void OnRuns(double* r, const double* x, const double* y, index_t count) {
  (Op::subtracts ? kernels().subtract : kernels().add)(r, x, y, count);
}

/// Two of one dense kind: over the stored arrays.
struct Elementwise {
  template <class Op, class K>
  static void run(K& result, const K& a, const K& b) {
    SizeForResult(result, a.nrows(), a.ncols());  // within its capacity a result that is an operand keeps its doubles
    OnRuns<Op>(result.data(), a.data(), b.data(), StoredIn(a));
  }
};

/// A block of a matrix, at multiples of 8: where it lies in a general matrix, spelled out in a buffer for another kind.
struct BlockView {
  const double* first;
  std::size_t stride;
};
inline BlockView BlockAt(const RegularMatrix& a, index_t i, index_t j, index_t, index_t, double*) noexcept {
  return {a.data() + std::size_t{i} * a.ncols() + j, a.ncols()};
}
template <class K>
BlockView BlockAt(const K& a, index_t i, index_t j, index_t rows, index_t cols, double* buffer) noexcept {
  kernels().unpack(buffer, static_cast<kernel_offset>(cols), FactorOf(a), i, j, rows, cols);
  return {buffer, cols};
}

/// Two unlike dense kinds, in blocks that fit small buffers; tiny ones element by element, which is done before a buffer
/// that was just written can be read in whole registers.
struct ByBlocks {
  static constexpr index_t tiny = 4;
  template <class Op, class RuleA, class RuleB>
  static void ByElements(double* r, RuleA a, RuleB b, index_t n) noexcept {
    for (index_t i = 0; i < n; ++i) {
      for (index_t j = 0; j < n; ++j) *r++ = Op::of(a.at(i, j), b.at(i, j));
    }
  }

  template <class Op, class A, class B>
  static void run(RegularMatrix& result, const A& a, const B& b) {
    constexpr index_t high = 8, wide = 64;
    const index_t n = a.ncols();
    SizeForResult(result, n, n);
    if (n <= tiny) return ByElements<Op>(result.data(), Rule<A>(a), Rule<B>(b), n);
    alignas(64) double of_a[high * wide], of_b[high * wide];
    for (index_t i = 0; i < n; i += high) {
      const index_t rows = n - i < high ? n - i : high;
      for (index_t j = 0; j < n; j += wide) {
        const index_t cols = n - j < wide ? n - j : wide;
        const BlockView x = BlockAt(a, i, j, rows, cols, of_a);
        const BlockView y = BlockAt(b, i, j, rows, cols, of_b);
        if (cols == n) {  // whole lines, one behind the other
          OnRuns<Op>(result.data() + std::size_t{i} * n, x.first, y.first, rows * n);
          continue;
        }
        for (index_t t = 0; t < rows; ++t) {
          OnRuns<Op>(result.data() + std::size_t{i + t} * n + j, x.first + t * x.stride, y.first + t * y.stride, cols);
        }
      }
    }
  }
};

/// result = a copy of `x` unless it is that operand itself.
template <class X>
void CopyUnlessSame(X& result, const X& x) {
  if (&result == &x) return;
  if constexpr (is_dense<X>) {
    CopyContents(result, x);
  } else {
    result.Copy(x, false);
  }
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
    SizeForResult(result, x.ndim(), x.ndim());
    SpellOut(result.data(), x);
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
