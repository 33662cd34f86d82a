// The inverse by Householder reflections, A⁻¹ = R⁻¹·Qᵀ, on a row-major array.
#ifndef QUORVEL_FACTOR_QR_INVERSE_H
#define QUORVEL_FACTOR_QR_INVERSE_H

#include "core/work_area.h"
#include "factor/strips.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// Scratch of an inverse: a strip, and the vectors, packed. Small orders find all of it on the stack, those up to 128
/// the strip. What large ones take from the heap is half as much as the matrix has: so little goes with the matrix that its
/// memory is not given back to the system each time, to be asked for again.
class QrInverseScratch {
 public:
  explicit QrInverseScratch(index_t n)
      : strip_on_stack_(strip_scratch(n, n) <= most_on_stack),
        vectors_(packed_count(n) + (strip_on_stack_ ? 0 : strip_scratch(n, n))) {}
  QrInverseScratch(const QrInverseScratch&) = delete;
  QrInverseScratch& operator=(const QrInverseScratch&) = delete;
  double* vectors() noexcept { return vectors_.data(); }
  double* strip(index_t n) noexcept { return strip_on_stack_ ? strip_ : vectors_.data() + packed_count(n); }

 private:
  static constexpr std::uint64_t most_on_stack = strip_scratch(128, 128);
  bool strip_on_stack_;
  WorkArea<packed_count(small_order)> vectors_;
  double strip_[most_on_stack];
};

/// The inverse of `a` (n x n), which it may replace; returns the number of singular pivots of R.
Matrix::nsing_type InvertByReflections(double* inverse, const double* a, index_t n, QrInverseScratch& scratch) noexcept;

}  // namespace quorvel::detail

#endif
