// Triangularisation of dense arrays by Householder reflections (factor/reflections.h says which), a strip of columns
// after the other: a strip takes the reflections of the columns before it while it stays in the cache, then yields its
// own.
#ifndef QUORVEL_FACTOR_STRIPS_H
#define QUORVEL_FACTOR_STRIPS_H

#include <new>

#include "core/work_area.h"
#include "ops/kernels/kernels.h"

namespace quorvel::detail {

/// Doubles of scratch of a reduction of m rows and n columns: a strip of any kernels' width on a boundary of 64 bytes, the
/// lengths of its columns, the kinds of all reflections.
constexpr std::uint64_t strip_scratch(std::uint64_t m, std::uint64_t n) noexcept {
  return 7 + (m + 1) * widest_panel + (n + 7) / 8;
}

/// The arrays in that scratch.
struct StripArrays {
  StripArrays(double* scratch, index_t m, index_t n) noexcept
      : strip(OnBoundary(scratch)),
        lengths(strip + std::size_t{m} * widest_panel),
        kinds(new (lengths + widest_panel) ReflectionKind[n]) {}
  double* strip;
  double* lengths;
  ReflectionKind* kinds;
};

/// R of a (m x n by rows, m >= n) to the lines of r, on and above the diagonal. r may be a. The reflections stay in the
/// lines of h, which may share one line when there is only one strip.
inline void TriangulariseStrips(const double* a, index_t m, index_t n, const StripArrays& work, const Reflectors& h,
                                double* r, kernel_offset stride, kernel_offset shrink) noexcept {
  const Kernels& k = kernels();
  for (index_t first = 0, cols; first < n; first += cols) {
    cols = k.strip_columns(m, n - first);
    k.load_strip(work.strip, a + first, static_cast<kernel_offset>(n), m, cols, work.lengths);
    k.reflect(work.strip, m, cols, h, 0, first);
    k.find_reflectors(work.strip, m, cols, first, h, work.lengths);
    k.store_upper(r, stride, shrink, first, cols, work.strip);
  }
}

/// A (m x n by rows, m >= n) becomes R in its first n rows, zeros below the diagonal included.
void Triangularise(double* a, index_t m, index_t n);

/// The same a column at a time in A itself, with little scratch: for more rows than a strip should have.
void TriangulariseColumns(double* a, index_t m, index_t n);
inline constexpr index_t most_strip_rows = 1u << 20;

}  // namespace quorvel::detail

#endif
