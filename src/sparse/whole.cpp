// Extremes of the stored values, and random fills.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "core/ownership.h"
#include "core/packed.h"
#include "sparse/axis.h"
#include "sparse/cursor.h"

namespace detail = quorvel::detail;
using detail::index_t;

namespace {

/// The stored value that none is better than; `worst` when nothing is stored. NaN is never selected.
template <class Better>
double Extreme(const SparseMatrix& a, double worst, Better better) {
  const detail::Consumed operand(a);
  double best = worst;
  detail::SparseLines(a).for_each_stored([&](const SparseElement& e) {
    if (better(e.value, best)) best = e.value;
  });
  return best;
}

/// Uniform draws from the C library's generator.
class Draws {
 public:
  Draws(double lo, double hi) noexcept : lo_(lo), step_((hi - lo) / 2147483647.0) {}
  double next() const noexcept { return lo_ + static_cast<double>(std::rand()) * step_; }
  bool all_zero() const noexcept { return lo_ == 0.0 && step_ == 0.0; }

 private:
  double lo_;
  double step_;
};

std::uint64_t CellCount(const SparseMatrix& a) noexcept {
  if (a.rows == 0 || a.cols == 0) return 0;
  return detail::is_symmetric_sparse(a) ? detail::packed_count(a.rows) : std::uint64_t{a.rows} * a.cols;
}

}  // namespace

double SparseMatrix::Max() const {
  return Extreme(*this, -std::numeric_limits<double>::infinity(), [](double a, double b) { return a > b; });
}

double SparseMatrix::Min() const {
  return Extreme(*this, std::numeric_limits<double>::infinity(), [](double a, double b) { return a < b; });
}

void SparseMatrix::SetRandom(double lo, double hi, unsigned count) {
  const std::uint64_t target = std::min<std::uint64_t>(count, CellCount(*this));
  const Draws draws(lo, hi);
  // Zeros are not stored: drawing nothing else would never end.
  if (used >= target || draws.all_zero()) return;
  while (used != target) {
    const index_t row = static_cast<unsigned>(std::rand()) % rows;
    const index_t col = static_cast<unsigned>(std::rand()) % cols;
    Put(row, col, draws.next());
  }
}

void SparseMatrix::SetRandomDiagonal(double lo, double hi) {
  const Draws draws(lo, hi);
  for (index_t i = std::min(rows, cols); i-- > 0;) {
    double x = draws.next();
    if (std::fabs(x) <= 1e-200) x = x < 0.0 ? -1e-200 : 1e-200;
    Put(i, i, x);
  }
}
