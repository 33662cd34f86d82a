#include "factor/qr_inverse.h"

#include "core/storage.h"
#include "factor/tri_inverse.h"

namespace quorvel::detail {
namespace {

/// The upper triangle of a (n x n by rows) to the end of its array, packed.
void PackAtEnd(double* a, index_t n) noexcept {
  double* to = a + std::size_t{n} * n;
  for (index_t i = n; i-- > 0;) {
    to -= n - i;
    MoveDoubles(to, a + (std::size_t{n} + 1) * i, n - i);
  }
}

}  // namespace

// R waits at the end of the inverse's array, packed: the rows of the inverse reach none of its rows but those that they
// were made of.
Matrix::nsing_type InvertByReflections(double* inverse, const double* a, index_t n,
                                       QrInverseScratch& scratch) noexcept {
  const StripArrays work(scratch.strip(n), n, n);
  double* const v = scratch.vectors();
  double* const r = inverse + (std::size_t{n} * n - packed_count(n));
  const kernel_offset packed = static_cast<kernel_offset>(n) - 1;
  const kernel_offset by_rows = static_cast<kernel_offset>(n);
  const Reflectors h{v, packed, 1, work.kinds};
  if (a == inverse) {
    TriangulariseStrips(a, n, n, work, h, inverse, by_rows, 0);
    PackAtEnd(inverse, n);
  } else {
    TriangulariseStrips(a, n, n, work, h, r, packed, 1);
  }
  for (index_t j = 0; j < n; ++j) {
    if (work.kinds[j] != ReflectionKind::none && v[packed_row(j, n)] == 0.0) work.kinds[j] = ReflectionKind::none;
  }

  // X·Qᵀ for X = R⁻¹: the rows of X are independent. A panel of columns of the lower triangle (R⁻¹)ᵀ is a strip of them.
  const Matrix::nsing_type singular = InvertDiagonal(r, n);
  const Kernels& k = kernels();
  for (index_t first = 0, count; first < n; first += count) {
    count = k.strip_columns(n, n - first);
    double* const panel = work.strip + std::size_t{first} * k.panel_columns;
    FillDoubles(work.strip, 0.0, std::uint64_t{first} * k.panel_columns);
    k.invert_columns(r, n, first, count, panel);
    k.reflect_back(work.strip, n, count, h, n);
    k.transpose(inverse + std::size_t{first} * n, by_rows, work.strip, k.panel_columns, n, count);
  }
  return singular;
}

}  // namespace quorvel::detail
