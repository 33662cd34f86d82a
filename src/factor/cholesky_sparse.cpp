// Cholesky factors of symmetric sparse matrices, row by row.
//
// Row i of the factor needs only those columns j in which A has an element or fill-in arises: where a finished row j
// shares a column with the part of row i found so far. Those columns are marked and visited in order; for each, the dot
// product runs along the finished row j. The lower factor is built from the first row on, the upper one from the last
// row on; both form their sums in increasing column order, as the dense factors do.
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "core/ownership.h"
#include "factor/cholesky_template.h"
#include "factor/column_set.h"
#include "quorvel/cholesky.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

namespace quorvel::detail {
namespace {

/// Divides by the plain diagonal; no row is singular.
class PlainPivots {
 public:
  explicit PlainPivots(index_t n) : diagonal_(n, 0.0) {}
  static constexpr bool from_first_element = false;
  bool keeps(index_t) const noexcept { return true; }
  double divide(index_t j, double x) const noexcept { return x / diagonal_[j]; }
  bool accept(index_t i, double d, double sum) noexcept {
    diagonal_[i] = std::sqrt(d - sum);
    return true;
  }
  double stored(index_t i) const noexcept { return diagonal_[i]; }

 private:
  std::vector<double> diagonal_;
};

/// Multiplies by the reciprocal of the diagonal; a row with a pivot that is small next to its own diagonal element is
/// left out, and so is its column.
class TolerantPivots {
 public:
  TolerantPivots(index_t n, double tol, const char* signature)
      : reciprocal_(n, 0.0), singular_(n, false), tol_(tol), signature_(signature) {}
  static constexpr bool from_first_element = true;
  bool keeps(index_t j) const noexcept { return !singular_[j]; }
  double divide(index_t j, double x) const noexcept { return x * reciprocal_[j]; }
  bool accept(index_t i, double d, double sum) {
    RequireNotNegative(d, signature_);
    double x = d - sum;
    if (x == 0.0) x = 0.0;  // an absent element has no sign
    if (std::fabs(x) < std::fabs(tol_ * d)) {
      singular_[i] = true;
      ++count_;
      return false;
    }
    reciprocal_[i] = 1.0 / std::sqrt(x);
    return true;
  }
  double stored(index_t i) const noexcept { return reciprocal_[i] != 0.0 ? 1.0 / reciprocal_[i] : 0.0; }
  Matrix::nsing_type count() const noexcept { return count_; }

 private:
  std::vector<double> reciprocal_;
  std::vector<bool> singular_;
  double tol_;
  const char* signature_;
  Matrix::nsing_type count_ = 0;
};

/// Lower: row i has the columns 0 .. i, and rows are finished upwards from 0. Upper: columns i .. n - 1, rows downwards.
enum class Side { lower, upper };

template <Side side, class Pivots>
class RowFactor {
 public:
  RowFactor(const SymmetricSparseMatrix& a, RegularSparseMatrix& factor, Pivots& pivots)
      : a_(a),
        n_(a.rows),
        factor_(factor),
        writer_(factor, RowWriter::Columns::at_once),  // they say where fill-in arises
        pivots_(pivots),
        marks_(n_),
        a_row_(n_, 0.0),
        row_(n_, 0.0) {}

  void build() {
    for (index_t k = 0; k < n_; ++k) build_row(side == Side::lower ? k : n_ - 1 - k);
  }

 private:
  void build_row(index_t i) {
    if (!load(i) && Pivots::from_first_element) return;  // never all ways: from_first_element is a constant
    for (const index_t j : spoilt_) {
      if (j >= first_) marks_.add(j);
    }
    columns_.clear();
    if constexpr (side == Side::lower) {
      while (!marks_.empty()) visit(marks_.take_first());
    } else {
      while (!marks_.empty()) visit(marks_.take_last());
    }
    finish(i);
    for (const index_t j : columns_) row_[j] = 0.0;
  }

  /// Reads row i of A on this side of the diagonal; false when it is empty.
  bool load(index_t i) {
    diagonal_ = 0.0;
    first_ = Pivots::from_first_element ? n_ : 0;
    bool any = false;
    const auto take = [&](index_t j, double value) {
      if (value == 0.0 || !pivots_.keeps(j)) return;  // never all ways: the exact pivots keep every column
      if (!any && Pivots::from_first_element) first_ = j;
      any = true;
      if (j == i) {
        diagonal_ = value;
      } else {
        a_row_[j] = value;
        marks_.add(j);
      }
    };
    if constexpr (side == Side::lower) {
      // never all ways: column lists of the symmetric kind end at the diagonal
      for (const SparseElement* e = a_.colHeads[i]; e != nullptr && e->row <= i; e = e->nextInCol) take(e->row, e->value);
    } else {
      for (const SparseElement* e = a_.rowHeads[i]; e != nullptr; e = e->nextInRow) {
        if (e->col >= i && e->col < n_) take(e->col, e->value);
      }
    }
    return any;
  }

  /// Element j of the row, when all that it needs is known.
  void visit(index_t j) {
    double sum = 0.0;
    for (const SparseElement* e = factor_.rowHeads[j]; e != nullptr; e = e->nextInRow) {
      if (row_[e->col] != 0.0) sum += row_[e->col] * e->value;
    }
    const double value = pivots_.divide(j, a_row_[j] - sum);
    a_row_[j] = 0.0;
    if (value == 0.0) return;
    row_[j] = value;
    columns_.push_back(j);
    for (const SparseElement* e = factor_.colHeads[j]; e != nullptr; e = e->nextInCol) {
      if (e->row != j) marks_.add(e->row);
    }
  }

  void finish(index_t i) {
    if (side == Side::upper) std::reverse(columns_.begin(), columns_.end());
    double sum = 0.0;
    for (const index_t j : columns_) sum += row_[j] * row_[j];
    if (!pivots_.accept(i, diagonal_, sum)) return;  // never all ways: the exact pivots accept every row
    // Where a zero divided by this diagonal is not zero, every later row has an element.
    if (pivots_.divide(i, 0.0) != 0.0) spoilt_.push_back(i);
    SparseElement* last = nullptr;
    const auto append = [&](index_t j, double value) {
      if (value != 0.0) last = writer_.append(last, i, j, value);
    };
    if (side == Side::upper) append(i, pivots_.stored(i));
    for (const index_t j : columns_) append(j, row_[j]);
    if (side == Side::lower) append(i, pivots_.stored(i));
  }

  const SymmetricSparseMatrix& a_;
  index_t n_;
  RegularSparseMatrix& factor_;
  RowWriter writer_;
  Pivots& pivots_;
  ColumnSet marks_;
  std::vector<double> a_row_;     // the row of A; 0.0 where it has no element
  std::vector<double> row_;       // the row of the factor as far as it is known
  std::vector<index_t> columns_;  // where it is not zero
  std::vector<index_t> spoilt_;
  index_t first_ = 0;
  double diagonal_ = 0.0;
};

template <Side side>
RegularSparseMatrix& PlainRoot(const SymmetricSparseMatrix& A) {
  A.ThrowNotSquare(code::none);
  const Consumed operand(A);
  NewResult<RegularSparseMatrix> factor(A.rows, A.rows);
  PlainPivots pivots(A.rows);
  RowFactor<side, PlainPivots>(A, *factor, pivots).build();
  return factor.hand_over();
}

}  // namespace

Matrix::nsing_type FactorLower(RegularSparseMatrix& lower, SymmetricSparseMatrix& a, double tol,
                               const char* signature) {
  lower.SetSize(a.rows, a.rows, false);
  TolerantPivots pivots(a.rows, tol, signature);
  RowFactor<Side::lower, TolerantPivots>(a, lower, pivots).build();
  return pivots.count();
}

}  // namespace quorvel::detail

namespace detail = quorvel::detail;

RegularSparseMatrix& CholeskyFactor(SymmetricSparseMatrix& A, double tol) {
  return CholeskyFactor_T<RegularSparseMatrix>(A, tol);
}

RegularSparseMatrix& CholeskyFactor(const SymmetricSparseMatrix& A, double tol) {
  return CholeskyFactor(detail::Mutable(A), tol);
}

RegularSparseMatrix& CholeskySquareRootLower(const SymmetricSparseMatrix& A) {
  return detail::PlainRoot<detail::Side::lower>(A);
}

RegularSparseMatrix& CholeskySquareRootUpper(const SymmetricSparseMatrix& A) {
  return detail::PlainRoot<detail::Side::upper>(A);
}
