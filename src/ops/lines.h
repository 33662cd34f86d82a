// Products in which a sparse matrix takes part: line i of the result is accumulated from lines.
//
//   c(i, .) = sum over k of x(i, k) * y(k, .)
//
// x and y are matrices read by lines, either their rows or their columns (RowsOf, ColumnsOf), so that this one loop
// gives A B, A' B, A B' and all that is made of them. Each element of c takes its terms in increasing k, and only positions
// that both sides have give a term. The cost is one multiplication per term.
#ifndef QUORVEL_OPS_LINES_H
#define QUORVEL_OPS_LINES_H

#include <algorithm>
#include <memory>

#include "core/kinds.h"
#include "core/storage.h"
#include "ops/kernels/kernels.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

namespace quorvel::detail {

inline constexpr index_t all = 0xFFFFFFFFu;

/// Calls use(index, value) for the elements of a cursor with begin <= index < end.
template <class Use>
void WalkCursor(LineCursor e, Range range, Use use) {
  for (e.skip_to(range.begin); e && e.index() < range.end; e.next()) use(e.index(), e.value());
}

/// The rows of a matrix of any kind.
template <class K>
class RowsOf {
 public:
  explicit RowsOf(const K& a) noexcept : rule_(a) {}

  /// Calls use(j, value) for the existing elements of row i with j in `range`, j increasing.
  template <class Use>
  void walk(index_t i, Range range, Use use) const {
    if constexpr (is_dense<K>) {
      const Range cols = common(rule_.in_row(i), range);
      for (index_t j = cols.begin; j < cols.end; ++j) use(j, rule_.at(i, j));
    } else {
      WalkCursor(rule_.row(i), range, use);
    }
  }

  /// sum[j] += s * element (i, j), j in `range`.
  void add(double* sum, double s, index_t i, Range range) const {
    if constexpr (std::is_same_v<K, RegularMatrix> || std::is_same_v<K, UpperTriangularMatrix>) {
      const Range cols = common(rule_.in_row(i), range);
      if (cols.begin == cols.end) return;
      kernels().add_multiple(sum + cols.begin, s, &rule_.store(i, cols.begin), cols.end - cols.begin);
    } else {
      walk(i, range, [sum, s](index_t j, double v) { sum[j] += s * v; });
    }
  }

 private:
  Rule<K> rule_;
};

/// The columns of a matrix: the rows of its transpose.
template <class K>
class ColumnsOf {
 public:
  explicit ColumnsOf(const K& a) noexcept : rule_(a) {}

  template <class Use>
  void walk(index_t j, Range range, Use use) const {
    if constexpr (is_dense<K>) {
      const Range rows = common(rule_.in_col(j), range);
      for (index_t i = rows.begin; i < rows.end; ++i) use(i, rule_.at(i, j));
    } else {
      WalkCursor(rule_.col(j), range, use);
    }
  }

  void add(double* sum, double s, index_t j, Range range) const {
    walk(j, range, [sum, s](index_t i, double v) { sum[i] += s * v; });
  }

 private:
  Rule<K> rule_;
};

/// A line of sums that knows which of them have a term: cost per line as the terms, not as the length.
class SparseSums {
 public:
  explicit SparseSums(index_t length)
      // never all ways: a count of 32 bits fits, which the language asks
      : sums_(Scratch(length)), touched_(new index_t[length]), seen_(new bool[length]()) {}

  void add(index_t j, double term) noexcept {
    if (!seen_[j]) {
      seen_[j] = true;
      sorted_ = sorted_ && (count_ == 0 || touched_[count_ - 1] < j);
      touched_[count_++] = j;
      sums_[j] = 0.0;
    }
    sums_[j] += term;
  }

  /// Calls use(j, sum) for the sums that have a term and are not 0.0, j increasing, and begins a new line.
  template <class Use>
  void take_non_zeros(Use use) {
    if (!sorted_) std::sort(touched_.get(), touched_.get() + count_);
    const index_t count = count_;
    count_ = 0;
    sorted_ = true;
    for (index_t q = 0; q < count; ++q) seen_[touched_[q]] = false;
    for (index_t q = 0; q < count; ++q) {
      const index_t j = touched_[q];
      if (sums_[j] != 0.0) use(j, sums_[j]);
    }
  }

 private:
  std::unique_ptr<double[]> sums_;
  std::unique_ptr<index_t[]> touched_;
  std::unique_ptr<bool[]> seen_;
  index_t count_ = 0;
  bool sorted_ = true;
};

/// Where the terms of line i are, and which elements of it are wanted.
struct WholeLines {
  Range terms(index_t) const noexcept { return {0, all}; }
  Range elements(index_t, index_t) const noexcept { return {0, all}; }
};
/// The upper triangle.
struct UpperLines {
  Range terms(index_t) const noexcept { return {0, all}; }
  Range elements(index_t i, index_t) const noexcept { return {i, all}; }
};
/// The upper triangle of U' U: terms k <= min(i, j).
struct UtuLines {
  Range terms(index_t i) const noexcept { return {0, i + 1}; }
  Range elements(index_t i, index_t) const noexcept { return {i, all}; }
};
/// The upper triangle of L' L: terms k >= max(i, j).
struct LtlLines {
  Range terms(index_t i) const noexcept { return {i, all}; }
  Range elements(index_t i, index_t k) const noexcept { return {i, k + 1}; }
};

/// Adds line i of the product to `sums`, which its index j addresses.
template <class X, class Y, class Lines>
void AddLine(double* sums, const X& x, const Y& y, index_t i, Lines lines) {
  x.walk(i, lines.terms(i), [&](index_t k, double v) { y.add(sums, v, k, lines.elements(i, k)); });
}

template <class X, class Y, class Lines>
void AddLine(SparseSums& sums, const X& x, const Y& y, index_t i, Lines lines) {
  x.walk(i, lines.terms(i), [&](index_t k, double v) {
    y.walk(k, lines.elements(i, k), [&](index_t j, double w) { sums.add(j, v * w); });
  });
}

/// c = x * y for a c of the right size.
template <class X, class Y>
void FillByLines(RegularMatrix& c, const X& x, const Y& y) {
  ClearDoubles(c.data(), c.StoredCount());
  const std::size_t n = c.ncols();
  for (index_t i = 0; i < c.nrows(); ++i) AddLine(c.data() + i * n, x, y, i, WholeLines());
}

template <class X, class Y>
void FillByLines(SymmetricMatrix& c, const X& x, const Y& y) {
  ClearDoubles(c.data(), c.StoredCount());
  for (index_t i = 0; i < c.ndim(); ++i) AddLine(c.data() + packed_index(i, 0, c.ndim()), x, y, i, UpperLines());
}

/// The same for a sparse c, which is empty; zeros are not stored.
template <class X, class Y, class Lines>
void FillSparseByLines(SparseMatrix& c, const X& x, const Y& y, Lines lines) {
  SparseSums sums(c.ncols());
  RowWriter writer(c);
  for (index_t i = 0; i < c.nrows(); ++i) {
    AddLine(sums, x, y, i, lines);
    SparseElement* previous = nullptr;
    sums.take_non_zeros([&](index_t j, double v) { previous = writer.append(previous, i, j, v); });
  }
}
template <class X, class Y>
void FillByLines(RegularSparseMatrix& c, const X& x, const Y& y) {
  FillSparseByLines(c, x, y, WholeLines());
}
template <class X, class Y>
void FillByLines(SymmetricSparseMatrix& c, const X& x, const Y& y) {
  FillSparseByLines(c, x, y, UpperLines());
}

}  // namespace quorvel::detail

#endif
