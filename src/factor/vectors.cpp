// Vector helpers of the factorised filters: U*v in place, the outer product, the list of non-zero elements.
#include <cstddef>

#include "dense/rules.h"
#include "factor/operands.h"
#include "quorvel/householder.h"

namespace detail = quorvel::detail;
using detail::index_t;

void VecEqMatrixTimesSelf(RegularMatrix& v, const UpperTriangularMatrix& U) {
  detail::Operands operands(1, v, U);
  operands.Require(v.ncols() == 1 && U.ndim() == v.nrows());
  const index_t n = U.ndim();
  double* const x = v.data();
  const double* u = U.data();
  // Downwards: row i reads v(i) .. v(n - 1) only, which are still the old values.
  for (index_t i = 0; i < n; ++i) {
    double s = x[i] * *u++;
    for (index_t k = i + 1; k < n; ++k) s += x[k] * *u++;
    x[i] = s;
  }
  operands.Succeed();
}

RegularMatrix& MOutPrd(RegularMatrix& x, RegularMatrix& y) {
  detail::Operands operands(0, x, y);
  operands.Require(x.ncols() == 1 && y.ncols() == 1 && x.nrows() == y.nrows());
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
  detail::Operands operands(1, out, x);
  if (ErrorState() != 0) operands.Fail(GetErrorCode());
  if (x.ncols() != 1) operands.Fail(detail::fixed::non_zeros_columns);
  if (n > out.nrows() || n > x.nrows()) operands.Fail(detail::fixed::non_zeros_range);
  // Rows without columns hold nothing to write to.
  if (n > 0 && out.ncols() == 0) operands.Fail(detail::fixed::non_zeros_range);
  unsigned count = 0;
  for (unsigned i = 0; i < n; ++i) {
    const double value = x.data()[i];
    if (value == 0.0) continue;
    out.data()[count] = value;
    idx[count++] = i;
  }
  operands.Succeed();
  return count;
}

unsigned SetNonZeros(unsigned n, const RegularMatrix& x, RegularMatrix& out, unsigned* idx) {
  return SetNonZeros(n, detail::Mutable(x), out, idx);
}
