// Vector helpers of the factorised filters: U*v in place, the outer product, the list of non-zero elements.
#include <cstddef>

#include "core/ownership.h"
#include "core/storage.h"
#include "dense/rules.h"
#include "quorvel/householder.h"

namespace detail = quorvel::detail;
using detail::index_t;

namespace {

[[noreturn]] void Refuse(const Matrix& a, const Matrix& b, int value) {
  detail::FailWith(value, &a, &b);
}

/// Both ok, then the shape.
void RequireFit(const Matrix& a, const Matrix& b, bool fits) {
  if (ErrorState() != 0) Refuse(a, b, GetErrorCode());
  if (!a.ok() || !b.ok()) Refuse(a, b, detail::offset::not_ok);
  if (!fits) Refuse(a, b, detail::offset::shape);
}

}  // namespace

void VecEqMatrixTimesSelf(RegularMatrix& v, const UpperTriangularMatrix& U) {
  RequireFit(v, U, v.ncols() == 1 && U.ndim() == v.nrows());
  const detail::Consumed operand(U);
  const index_t n = U.ndim();
  double* const x = v.data();
  const double* u = U.data();
  // Downwards: row i reads v(i) .. v(n - 1) only, which are still the old values.
  for (index_t i = 0; i < n; ++i) {
    double s = x[i] * *u++;
    for (index_t k = i + 1; k < n; ++k) s += x[k] * *u++;
    x[i] = s;
  }
}

RegularMatrix& MOutPrd(RegularMatrix& x, RegularMatrix& y) {
  RequireFit(x, y, x.ncols() == 1 && y.ncols() == 1 && x.nrows() == y.nrows());
  const detail::Consumed operands(x, y);
  const index_t n = x.nrows();
  detail::NewResult<RegularMatrix> product(n, n);
  for (index_t i = 0; i < n; ++i) {
    const double xi = x.data()[i];
    if (xi == 0.0) continue;  // a new matrix is zero
    double* const row = product->data() + static_cast<std::size_t>(i) * n;
    for (index_t k = 0; k < n; ++k) row[k] = xi * y.data()[k];
  }
  return product.hand_over();
}

RegularMatrix& MOutPrd(const RegularMatrix& x, const RegularMatrix& y) {
  return MOutPrd(detail::Mutable(x), detail::Mutable(y));
}

unsigned SetNonZeros(unsigned n, RegularMatrix& x, RegularMatrix& out, unsigned* idx) {
  if (ErrorState() != 0) Refuse(x, out, GetErrorCode());
  if (x.ncols() != 1) Refuse(x, out, detail::fixed::non_zeros_columns);
  if (n > out.nrows() || n > x.nrows()) Refuse(x, out, detail::fixed::non_zeros_range);
  detail::Consumed operand(x);
  operand.release(out);  // when x is `out` as well
  unsigned count = 0;
  for (unsigned i = 0; i < n; ++i) {
    const double value = x.data()[i];
    if (value == 0.0) continue;
    out.data()[count] = value;
    idx[count++] = i;
  }
  return count;
}

unsigned SetNonZeros(unsigned n, const RegularMatrix& x, RegularMatrix& out, unsigned* idx) {
  return SetNonZeros(n, detail::Mutable(x), out, idx);
}
