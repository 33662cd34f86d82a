#include "factor/elimination.h"

#include <cmath>
#include <limits>
#include <utility>

#include "core/storage.h"
#include "factor/axpy.h"
#include "factor/tri_inverse.h"

namespace quorvel::detail {

namespace {

/// The stride of w with the widest kernels.
std::uint64_t Widened(index_t n) noexcept { return (std::uint64_t{n} + 7) / 8 * 8; }

void TransposeSquare(double* a, index_t n, index_t stride) noexcept {
  for (std::size_t i = 1; i < n; ++i) {
    for (std::size_t j = 0; j < i; ++j) std::swap(a[i * stride + j], a[j * stride + i]);
  }
}

double Magnitude(double x, double max) noexcept { return std::fabs(x) > max ? std::fabs(x) : max; }

}  // namespace

Elimination::Elimination(index_t n, index_t q)
    : n_(n),
      q_(q),
      stride_(WholeRegisters(n)),
      doubles_(7 + Widened(n) * n + std::uint64_t{n} * n + std::uint64_t{n} * q + 7 * std::uint64_t{n}),
      indices_(2 * std::size_t{n}) {
  w_ = OnBoundary(doubles_.data());
  a_ = w_ + std::size_t{stride_} * n;
  x_ = a_ + std::size_t{n} * n;
  row_max_ = x_ + std::size_t{n} * q;
  col_max_ = row_max_ + n;
  side_ = col_max_ + n;
  solution_ = side_ + n;
  residual_ = solution_ + n;
  change_ = residual_ + n;
  sums_ = change_ + n;
  order_ = indices_.data();
  column_ = order_ + n;
}

index_t Elimination::factor() noexcept {
  FillDoubles(col_max_, 0.0, n_);
  for (index_t i = 0; i < n_; ++i) {
    order_[i] = i;
    row_max_[i] = 0.0;
    CopyDoubles(row(i), a_ + std::size_t{i} * n_, n_);
    FillDoubles(row(i) + n_, 0.0, stride_ - n_);
    for (index_t j = 0; j < n_; ++j) {
      row_max_[i] = Magnitude(row(i)[j], row_max_[i]);
      col_max_[j] = Magnitude(row(i)[j], col_max_[j]);
    }
  }
  TransposeSquare(a_, n_, n_);
  rank_ = 0;
  for (index_t c = 0; c < n_; ++c) {
    const index_t p = pivot_row(rank_, c);
    if (p == n_) continue;
    swap_rows(rank_, p);
    kernels().eliminate(row(rank_) + stride_, stride_, n_ - rank_ - 1, row(rank_), c, stride_);
    column_[rank_++] = c;
  }
  TransposeSquare(w_, n_, stride_);
  return n_ - rank_;
}

index_t Elimination::pivot_row(index_t top, index_t col) const noexcept {
  index_t best = n_;
  double largest = 0.0;
  for (index_t i = top; i < n_; ++i) {
    const double e = row(i)[col];
    if (!PivotPasses(e)) continue;
    const double relative = std::fabs(e) / row_max_[i];
    if (best != n_ && !(relative > largest)) continue;
    best = i;
    largest = relative;
  }
  return best;
}

void Elimination::swap_rows(index_t i, index_t k) noexcept {
  if (i == k) return;
  for (index_t j = 0; j < n_; ++j) std::swap(row(i)[j], row(k)[j]);
  std::swap(row_max_[i], row_max_[k]);
  std::swap(order_[i], order_[k]);
}

namespace {

/// y -= s*x where x is not 0.0.
void SubtractNonzero(double* __restrict__ y, index_t count, const double* x, double s) noexcept {
  if (count >= kernel_lanes) return kernels().subtract_nonzero(y, s, x, count);
  for (index_t i = 0; i < count; ++i) {
    if (x[i] != 0.0) y[i] -= s * x[i];
  }
}

}  // namespace

/// y holds a right-hand side in the order of w's rows and becomes the solution.
void Elimination::substitute(double* y) const noexcept {
  for (index_t k = 0; k < rank_; ++k) {
    SubtractNonzero(y + k + 1, n_ - k - 1, column(column_[k]) + k + 1, y[k]);
  }
  FillDoubles(sums_, 0.0, rank_);
  index_t left = rank_;  // pivot rows whose unknown is still to come; what lies behind them in y is used up
  for (index_t c = n_; c-- > 0;) {
    double x = 0.0;
    if (left != 0 && column_[left - 1] == c) {
      --left;
      x = (y[left] - sums_[left]) / column(c)[left];
    }
    y[c] = x;
    AddScaled(sums_, left, column(c), x);
  }
}

void Elimination::solve() noexcept {
  for (index_t side = 0; side < q_; ++side) {
    double* const x = x_ + side;
    for (index_t i = 0; i < n_; ++i) side_[i] = x[std::size_t{i} * q_];
    for (index_t i = 0; i < n_; ++i) solution_[i] = side_[order_[i]];
    substitute(solution_);
    if (rank_ == n_) refine();
    for (index_t i = 0; i < n_; ++i) x[std::size_t{i} * q_] = solution_[i];
  }
}

void Elimination::refine() noexcept {
  constexpr int most_steps = 10;
  double* const d = change_;
  double* const x = solution_;
  double before = std::numeric_limits<double>::infinity();
  for (int step = 0; step < most_steps; ++step) {
    kernels().residuals(residual_, n_, side_, a_, n_, n_, x);
    for (index_t i = 0; i < n_; ++i) d[i] = residual_[order_[i]];
    substitute(d);
    double size = 0.0;
    bool finite = true;
    bool changes = false;
    for (index_t i = 0; i < n_; ++i) {
      size = Magnitude(d[i] * col_max_[i], size);
      finite = finite && std::isfinite(d[i] * col_max_[i]);
      changes = changes || x[i] + d[i] != x[i];
    }
    if (size == 0.0 || !finite || !(size <= 0.5 * before) || !changes) break;
    for (index_t i = 0; i < n_; ++i) x[i] += d[i];
    before = size;
  }
}

}  // namespace quorvel::detail
