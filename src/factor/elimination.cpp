#include "factor/elimination.h"

#include <cmath>
#include <limits>
#include <utility>

#include "core/storage.h"
#include "factor/axpy.h"
#include "factor/tri_inverse.h"

namespace quorvel::detail {

namespace {

/// A number as the unevaluated sum of two doubles, the second beyond the precision of the first.
struct Twofold {
  double high;
  double low;
};

/// a·b - p for p = a·b rounded: the rounding error, exactly, by Dekker's product on Veltkamp's halves. Operands that
/// the halving would overflow give 0.
double ProductError(double a, double b, double p) noexcept {
  constexpr double limit = 0x1p995;
  constexpr double splitter = 0x1p27 + 1.0;
  if (!(std::fabs(a) <= limit && std::fabs(b) <= limit)) return 0.0;
  const double ca = splitter * a;
  const double a1 = ca - (ca - a);
  const double a2 = a - a1;
  const double cb = splitter * b;
  const double b1 = cb - (cb - b);
  const double b2 = b - b1;
  return ((a1 * b1 - p) + a1 * b2 + a2 * b1) + a2 * b2;
}

/// s - a·b
Twofold MinusProduct(Twofold s, double a, double b) noexcept {
  const double p = a * b;
  const double high = s.high - p;
  const double back = high - s.high;
  const double lost = (s.high - (high - back)) - (p + back);  // Knuth's sum of s.high and -p
  const double low = (s.low - ProductError(a, b, p)) + lost;
  const double sum = high + low;
  return {sum, low - (sum - high)};
}

double Magnitude(double x, double max) noexcept { return std::fabs(x) > max ? std::fabs(x) : max; }

}  // namespace

Elimination::Elimination(index_t n, index_t q)
    : n_(n),
      q_(q),
      doubles_(2 * std::uint64_t{n} * n + 2 * std::uint64_t{n} * q + 4 * std::uint64_t{n} + q),
      indices_(2 * std::size_t{n}) {
  const std::size_t square = std::size_t{n} * n;
  const std::size_t block = std::size_t{n} * q;
  a_ = doubles_.data();
  w_ = a_ + square;
  x_ = w_ + square;
  b_ = x_ + block;
  row_max_ = b_ + block;
  col_max_ = row_max_ + n;
  side_ = col_max_ + n;
  solution_ = side_ + n;
  sums_ = solution_ + n;
  order_ = indices_.data();
  column_ = order_ + n;
}

index_t Elimination::factor() noexcept {
  CopyDoubles(w_, a_, std::uint64_t{n_} * n_);
  FillDoubles(col_max_, 0.0, n_);
  for (index_t i = 0; i < n_; ++i) {
    order_[i] = i;
    row_max_[i] = 0.0;
    for (index_t j = 0; j < n_; ++j) {
      row_max_[i] = Magnitude(row(i)[j], row_max_[i]);
      col_max_[j] = Magnitude(row(i)[j], col_max_[j]);
    }
  }
  rank_ = 0;
  for (index_t c = 0; c < n_; ++c) {
    const index_t p = pivot_row(rank_, c);
    if (p == n_) continue;
    swap_rows(rank_, p);
    const double* const pivot = row(rank_);
    for (index_t i = rank_ + 1; i < n_; ++i) {
      double* const r = row(i);
      const double l = r[c] /= pivot[c];
      if (l == 0.0) continue;
      for (index_t j = c + 1; j < n_; ++j) r[j] -= l * pivot[j];
    }
    column_[rank_++] = c;
  }
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

/// y holds right-hand sides in the order of w's rows and becomes the solutions.
void Elimination::substitute(double* y, index_t q) const noexcept {
  const auto at = [=](index_t i) noexcept { return y + std::size_t{i} * q; };
  for (index_t k = 0; k < rank_; ++k) {
    for (index_t i = k + 1; i < n_; ++i) {
      const double l = row(i)[column_[k]];
      if (l == 0.0) continue;
      for (index_t c = 0; c < q; ++c) at(i)[c] -= l * at(k)[c];
    }
  }
  FillDoubles(at(rank_), 0.0, std::uint64_t{n_ - rank_} * q);
  for (index_t k = rank_; k-- > 0;) {
    // Row k moves to the row of its unknown, which is not above it. What it leaves, and is no pivot's unknown, is 0.
    const index_t col = column_[k];
    FillDoubles(sums_, 0.0, q);
    for (index_t j = n_; j-- > col + 1;) AddScaled(sums_, q, at(j), row(k)[j]);
    for (index_t c = 0; c < q; ++c) {
      const double x = (at(k)[c] - sums_[c]) / row(k)[col];
      at(k)[c] = 0.0;
      at(col)[c] = x;
    }
  }
}

void Elimination::solve() noexcept {
  if (q_ == 0) return;
  CopyDoubles(b_, x_, std::uint64_t{n_} * q_);
  for (index_t i = 0; i < n_; ++i) CopyDoubles(x_ + std::size_t{i} * q_, b_ + std::size_t{order_[i]} * q_, q_);
  substitute(x_, q_);
  if (rank_ != n_) return;
  for (index_t side = 0; side < q_; ++side) refine(side);
}

double Elimination::residual(index_t i, double b, const double* x) const noexcept {
  const double* const a = a_ + std::size_t{i} * n_;
  Twofold r{b, 0.0};
  for (index_t j = 0; j < n_; ++j) r = MinusProduct(r, a[j], x[j]);
  return r.high + r.low;
}

void Elimination::refine(index_t side) noexcept {
  constexpr int most_steps = 10;
  double* const d = side_;
  double* const x = solution_;
  for (index_t i = 0; i < n_; ++i) x[i] = x_[std::size_t{i} * q_ + side];
  double before = std::numeric_limits<double>::infinity();
  for (int step = 0; step < most_steps; ++step) {
    for (index_t i = 0; i < n_; ++i) d[i] = residual(order_[i], b_[std::size_t{order_[i]} * q_ + side], x);
    substitute(d, 1);
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
  for (index_t i = 0; i < n_; ++i) x_[std::size_t{i} * q_ + side] = x[i];
}

}  // namespace quorvel::detail
