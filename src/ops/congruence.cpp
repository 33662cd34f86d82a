// Congruences, a strip of rows of the result at a time: no m x n intermediate exists, only w for the rows of a strip.
//
// w is kept transposed (line k holds w(k) of all rows i of the strip), so that the strip lies across the registers in
// both products:  w'(k, i) = sum Q(k, t) X'(t, i)  and  s(j, i) = sum X(j, t) w'(t, i), j >= i.
// (In the second one of a single strip, or of wide ones of a large s, the lines of an X given by its columns lie across
// as well: then s is written as it is stored, line by line.)
#include "ops/congruence.h"

namespace quorvel::detail {
namespace {

constexpr unsigned strip = 24;  // a multiple of every instance's tile
constexpr unsigned stack_lines = 64;
constexpr unsigned long_lines = 4096;
constexpr unsigned narrow_strip = 8;
constexpr unsigned wide_strip = 3 * strip;
constexpr unsigned many_rows = 8 * strip;  // each strip reads all of X and Q: of so many rows fewer, wider ones
constexpr unsigned large_result = 400;     // its lines lie far apart: better one is written after the other
using StripScratch = SmallScratch<strip * stack_lines>;

/// Rows of the result in a strip, and the length of a line of its scratch. On the heap w is no wider than the result;
/// and where m is not limited by the size of Q, a long w is narrow unless X is much larger than a wide one.
unsigned WidthOfStrip(unsigned n, unsigned m, bool full_q) noexcept {
  if (m <= stack_lines) return strip;
  if (full_q && n >= many_rows) return wide_strip;
  const unsigned widest = full_q || m <= long_lines || n >= 4 * strip ? strip : narrow_strip;
  return n < widest ? n : widest;
}

template <class FillStrip>
void ByStrips(SymmetricMatrix& s, const Factor& x, unsigned width, unsigned n, unsigned m, FillStrip fill_strip) {
  if (m == 0) return ClearDoubles(s.data(), s.StoredCount());  // x has no array to look into
  StripScratch scratch(std::uint64_t{width} * m);
  double* const w = scratch.data();
  for (unsigned begin = 0; begin < n; begin += width) {
    const unsigned end = n - begin < width ? n : begin + width;
    fill_strip(w, begin, end);
    const bool by_rows = end - begin == n || (width == wide_strip && n >= large_result);
    if (by_rows && x.form == Form::by_columns) {
      Factor columns = Transposed(x);
      columns.first += begin;
      MultiplyFactors(TrailingTarget(s, begin), Transposed(FactorOf(w, width)), columns, end - begin, n - begin, m);
    } else {
      kernels().multiply(LowerTarget(s), 0, x, FactorOf(w, width), begin, {begin, n, begin, end, m});
    }
  }
}

/// Element (i, t) of a full factor.
double ElementOf(const Factor& x, unsigned i, unsigned t) noexcept {
  const bool by_rows = x.form == Form::by_rows || (x.form == Form::mirrored && i <= t);
  const kernel_offset line = by_rows ? i : t;
  return x.first[line * x.stride - x.shrink * (line * (line - 1) / 2) + (by_rows ? t : i)];
}

}  // namespace

void Congruence(SymmetricMatrix& s, const Factor& x, const Factor& q, unsigned n, unsigned m) {
  if (n <= small_factor && m - 1 < small_factor && x.shape == Shape::full) return kernels().congruence(s.data(), x, q, n, m);
  const unsigned width = WidthOfStrip(n, m, true);
  ByStrips(s, x, width, n, m, [&](double* w, unsigned begin, unsigned end) {
    kernels().multiply(TargetOf(w, width), begin, q, Transposed(x), 0, {0, m, begin, end, m});
  });
}

void DiagonalCongruence(SymmetricMatrix& s, const Factor& x, const double* q, unsigned n, unsigned m) {
  // Given by its columns it makes a better strip; without rows or columns it has no array to look into.
  if (n - 1 < small_factor && m - 1 < small_factor && x.form == Form::by_rows) {
    double columns[small_factor * small_factor];
    kernels().transpose(columns, n, x.first, x.stride, n, m);
    return DiagonalCongruence(s, Transposed(FactorOf(columns, n)), q, n, m);
  }
  const unsigned width = WidthOfStrip(n, m, false);
  ByStrips(s, x, width, n, m, [&](double* w, unsigned begin, unsigned end) {
    for (unsigned t = 0; t < m; ++t) {
      for (unsigned i = begin; i < end; ++i) w[t * width + (i - begin)] = 0.0 + ElementOf(x, i, t) * q[t];
    }
  });
}

void SparseCongruence(SymmetricMatrix& s, const Factor& x, const SparseLines& q, unsigned n, unsigned m) {
  const unsigned width = WidthOfStrip(n, m, false);
  StripScratch transposed(std::uint64_t{width} * m);
  double* const xt = transposed.data();
  ByStrips(s, x, width, n, m, [&](double* w, unsigned begin, unsigned end) {
    for (unsigned t = 0; t < m; ++t) {
      for (unsigned i = begin; i < end; ++i) xt[t * width + (i - begin)] = ElementOf(x, i, t);
    }
    for (unsigned k = 0; k < m; ++k) {
      ClearDoubles(w + k * width, width);
      for (LineCursor e = q.row(k); e; e.next()) {
        kernels().add_multiple(w + k * width, e.value(), xt + e.index() * width, end - begin);
      }
    }
  });
}

}  // namespace quorvel::detail
