// X Q X' for dense X and Q, and the weighted norm, on views.
#ifndef QUORVEL_OPS_CONGRUENCE_H
#define QUORVEL_OPS_CONGRUENCE_H

#include <cstdint>
#include <memory>

#include "core/ownership.h"
#include "core/storage.h"
#include "ops/views.h"
#include "sparse/cursor.h"

namespace quorvel::detail {

/// s = X Q X', X being n x m and Q m x m; s is the packed array of order n. Element (i, j), i <= j, is the sum over t
/// of w(t) * X(j, t), with w(k) = sum over t of X(i, t) * Q(t, k), all t increasing. X' Q X is the same with X transposed.
void Congruence(SymmetricMatrix& s, const Factor& x, const Factor& q, unsigned n, unsigned m);

/// As Congruence for a diagonal Q, given by its m doubles.
void DiagonalCongruence(SymmetricMatrix& s, const Factor& x, const double* q, unsigned n, unsigned m);

/// As Congruence for a sparse symmetric Q.
void SparseCongruence(SymmetricMatrix& s, const Factor& x, const SparseLines& q, unsigned n, unsigned m);

/// Refuses with 40000 a symmetric factor that is not square: a sparse one may be, and its lines would leave the work row
/// or the result. `a` and `q` are the operands, whose check has passed.
template <class K>
void RequireSquare([[maybe_unused]] const K& factor, [[maybe_unused]] const Matrix& a,
                   [[maybe_unused]] const Matrix& q) {
  if constexpr (std::is_same_v<K, SymmetricSparseMatrix>) {
    if (factor.nrows() != factor.ncols()) FailWith(offset::shape, &a, &q);
  }
}

/// Scratch on the stack up to N doubles, on the heap beyond.
template <unsigned N>
class SmallScratch {
 public:
  explicit SmallScratch(std::uint64_t count) : heap_(count > N ? NewDoubles(count) : nullptr) {}
  double* data() noexcept { return heap_ ? heap_.get() : here_; }

 private:
  std::unique_ptr<double[]> heap_;
  alignas(64) double here_[N];
};

}  // namespace quorvel::detail

#endif
