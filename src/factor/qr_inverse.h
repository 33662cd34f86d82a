// The inverse by Householder reflections, A⁻¹ = R⁻¹·Qᵀ, on a row-major array.
#ifndef QUORVEL_FACTOR_QR_INVERSE_H
#define QUORVEL_FACTOR_QR_INVERSE_H

#include "core/work_area.h"
#include "factor/strips.h"
#include "quorvel/Matrix.h"

namespace quorvel::detail {

/// Doubles of scratch of an inverse of order n: a strip, and the vectors and R, packed.
constexpr std::uint64_t qr_inverse_scratch(std::uint64_t n) noexcept {
  return strip_scratch(n, n) + 2 * packed_count(n);
}

/// Scratch of an inverse; small orders find it on the stack.
class QrInverseScratch {
 public:
  explicit QrInverseScratch(index_t n) : doubles_(qr_inverse_scratch(n)) {}
  double* data() noexcept { return doubles_.data(); }

 private:
  WorkArea<qr_inverse_scratch(small_order)> doubles_;
};

/// The inverse of `a` (n x n), which it may replace; returns the number of singular pivots of R.
Matrix::nsing_type InvertByReflections(double* inverse, const double* a, index_t n, QrInverseScratch& scratch) noexcept;

}  // namespace quorvel::detail

#endif
