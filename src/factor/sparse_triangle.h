// The inverse of a sparse triangle, a line at a time.
//
// Row c of the inverse of an upper triangle, and column c of that of a lower one, is x with x(c) = 1/t(c), and further
// on x(r) = -(w(r)·1/t(r)), w(r) = Σ t(j, r)·x(j) over j = c .. r-1 in increasing order: the sums grow in place, j by
// j.
#ifndef QUORVEL_FACTOR_SPARSE_TRIANGLE_H
#define QUORVEL_FACTOR_SPARSE_TRIANGLE_H

#include <cmath>
#include <limits>
#include <vector>

#include "factor/tri_inverse.h"

namespace quorvel::detail {

class SparseTriangle {
 public:
  explicit SparseTriangle(index_t n) : pivots_(n, 0.0), begins_{0} { begins_.reserve(std::size_t{n} + 1); }

  /// Lines in order 0 .. n-1: for each the pivot (0.0 when it has none), then its elements beyond the pivot, ascending.
  void pivot(double d) noexcept { pivots_[begins_.size() - 1] = d; }
  void element(index_t along, double value) {
    along_.push_back(along);
    values_.push_back(value);
  }
  void end_line() { begins_.push_back(values_.size()); }

  /// Takes the reciprocals of the pivots; lines and crossing lines of unusable ones become zero. Returns their number.
  Matrix::nsing_type finish() noexcept {
    Matrix::nsing_type singular = 0;
    for (double& d : pivots_) {
      if (PivotPasses(d)) {
        d = 1.0 / d;
      } else {
        d = unusable_pivot;
        ++singular;
      }
    }
    return singular;
  }

  /// Line c of the inverse into x (n zeros before).
  void inverse_line(index_t c, double* x) const noexcept {
    const index_t n = static_cast<index_t>(pivots_.size());
    const auto usable = [this](index_t j) noexcept { return !std::isnan(pivots_[j]); };
    x[c] = usable(c) ? pivots_[c] : 0.0;
    for (index_t j = c; j < n; ++j) {
      // An infinite pivot has the reciprocal 0.0: as a rule that leaves no line to give, but infinity times it is NaN.
      if (j != c && x[j] != 0.0) x[j] = usable(j) ? -(x[j] * pivots_[j]) : 0.0;
      if (x[j] == 0.0) continue;
      for (std::size_t k = begins_[j]; k < begins_[std::size_t{j} + 1]; ++k) x[along_[k]] += values_[k] * x[j];
    }
  }

 private:
  static constexpr double unusable_pivot = std::numeric_limits<double>::quiet_NaN();  // no reciprocal of a pivot is NaN
  std::vector<double> pivots_;
  std::vector<std::size_t> begins_;
  std::vector<index_t> along_;
  std::vector<double> values_;
};

}  // namespace quorvel::detail

#endif
