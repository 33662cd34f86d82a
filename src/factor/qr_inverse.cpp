#include "factor/qr_inverse.h"

#include <utility>

namespace quorvel::detail {

namespace {

void TransposeSquare(double* a, index_t n) noexcept {
  for (std::size_t i = 0; i < n; ++i) {
    for (std::size_t j = i + 1; j < n; ++j) std::swap(a[i * n + j], a[j * n + i]);
  }
}

/// The vector of column j, as it was kept: β on the diagonal, its elements below.
Reflection Recall(const double* column, index_t n, index_t j, ReflectionWork work) noexcept {
  Reflection h{true, column[j], 0};
  for (index_t i = j + 1; i < n; ++i) {
    if (column[i] == 0.0) continue;
    work.vector[i] = column[i];
    work.rows[h.count++] = i;
  }
  return h;
}

}  // namespace

Matrix::nsing_type InvertByReflections(double* a, index_t n, QrInverseScratch& scratch) noexcept {
  double* const v = scratch.triangles.data();
  double* const r = v + packed_count(n);
  const ReflectionWork work = scratch.reflections.work();
  const auto kept = [=](index_t j) noexcept { return v + packed_row(j, n) - j; };

  FillDoubles(v, 0.0, packed_count(n));
  Triangularise(a, n, n, work, [&](index_t j, Reflection h) noexcept {
    double* const column = kept(j);
    column[j] = h.beta;
    for (index_t k = 0; k < h.count; ++k) column[work.rows[k]] = work.vector[work.rows[k]];
  });
  for (index_t i = 0; i < n; ++i) CopyDoubles(r + packed_row(i, n), a + (std::size_t{n} + 1) * i, n - i);
  const Matrix::nsing_type singular = InvertTriangle(r, n, scratch.panel);

  // X·Qᵀ for X = R⁻¹ is computed on the transpose, where the independent rows of X lie side by side.
  for (index_t i = 0; i < n; ++i) {
    double* const row = a + std::size_t{i} * n;
    for (index_t k = 0; k <= i; ++k) row[k] = r[packed_index(k, i, n)];
    FillDoubles(row + i + 1, 0.0, n - 1 - i);
  }
  for (index_t j = n; j-- > 0;) {
    if (kept(j)[j] == 0.0) continue;
    const Reflection h = Recall(kept(j), n, j, work);
    if (h.count != 0) {
      Reflect(a, n, j, 0, h, work);
    } else {
      double* const row = a + std::size_t{j} * n;
      for (index_t c = 0; c < n; ++c) row[c] -= row[c] * h.beta;
    }
  }
  TransposeSquare(a, n);
  return singular;
}

}  // namespace quorvel::detail
