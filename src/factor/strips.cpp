#include "factor/strips.h"

#include "core/storage.h"
#include "factor/reflections.h"

namespace quorvel::detail {
namespace {

void ClearBelowDiagonal(double* a, index_t n) noexcept {
  for (index_t i = 1; i < n; ++i) FillDoubles(a + std::size_t{i} * n, 0.0, i);
}

}  // namespace

void Triangularise(double* a, index_t m, index_t n) {
  if (m > most_strip_rows) return TriangulariseColumns(a, m, n);
  // The vectors of one strip are used at once; those of several are kept, each from its diagonal element on.
  const bool kept = n > kernels().strip_columns(m, n);
  const std::uint64_t rows = m;
  const std::uint64_t vectors = kept ? n * rows - packed_count(n) + n : rows;
  const std::uint64_t arrays = strip_scratch(m, n);
  WorkArea<100 * small_order> scratch(arrays + vectors);
  const StripArrays work(scratch.data(), m, n);
  double* const v = scratch.data() + arrays;
  const kernel_offset stride = kept ? static_cast<kernel_offset>(m) - 1 : 0;
  const kernel_offset by_rows = static_cast<kernel_offset>(n);
  TriangulariseStrips(a, m, n, work, {v, stride, kept ? 1 : 0, work.kinds}, a, by_rows, 0);
  ClearBelowDiagonal(a, n);
}

void TriangulariseColumns(double* a, index_t m, index_t n) {
  WorkArea<3 * small_order> doubles(2 * std::uint64_t{n} + m);
  IndexArea<small_order> rows(m);
  double* const d = doubles.data();
  const ReflectionWork work{d, d + n, d + 2 * std::size_t{n}, rows.data()};
  FillDoubles(work.lengths, 0.0, n);
  for (std::size_t i = 0; i < m; ++i) {
    for (index_t c = 0; c < n; ++c) work.lengths[c] += a[i * n + c] * a[i * n + c];
  }
  for (index_t j = 0; j < n; ++j) {
    const Reflection h = ReflectionOfColumn(a + j, n, m, j, work);
    if (h.made) ReflectLanes(a + j, n, n - j, j, h, work);
    ClearDependent(a[(std::size_t{n} + 1) * j], work.lengths[j]);
  }
  ClearBelowDiagonal(a, n);
}

}  // namespace quorvel::detail
