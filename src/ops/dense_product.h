// The product of two dense kinds, element by element of the result's stored part.
#ifndef QUORVEL_OPS_DENSE_PRODUCT_H
#define QUORVEL_OPS_DENSE_PRODUCT_H

#include <type_traits>

#include "dense/rules.h"
#include "ops/views.h"

namespace quorvel::detail {

/// Every stored element of c from one term: a sum of one term, so a zero product is +0.0.
template <class C, class Term>
void FillFromOneTerm(C& c, Term term) noexcept {
  const Rule<C> to(c);
  for (index_t i = 0; i < to.rows(); ++i) {
    const Range cols = to.stored_in_row(i);
    for (index_t j = cols.begin; j < cols.end; ++j) to.store(i, j) = 0.0 + term(i, j);
  }
}

/// c = a * b, c being of the right kind and size and no factor.
template <class C, class A, class B>
void FillProduct(C& c, const A& a, const B& b) noexcept {
  if constexpr (std::is_same_v<A, DiagonalMatrix>) {
    const Rule<B> x(b);
    FillFromOneTerm(c, [d = a.data(), &x](index_t i, index_t j) { return d[i] * x.at(i, j); });
  } else if constexpr (std::is_same_v<B, DiagonalMatrix>) {
    const Rule<A> x(a);
    FillFromOneTerm(c, [d = b.data(), &x](index_t i, index_t j) { return x.at(i, j) * d[j]; });
  } else if constexpr (std::is_same_v<A, RegularMatrix> && std::is_same_v<B, RegularMatrix>) {
    kernels().product(c.data(), a.data(), b.data(), a.nrows(), b.ncols(), a.ncols());
  } else {
    MultiplyFactors(TargetOf(c), FactorOf(a), FactorOf(b), a.nrows(), b.ncols(), a.ncols());
  }
}

}  // namespace quorvel::detail

#endif
