// Mult and operator* with a sparse factor.
#include "quorvel/products.h"

#include "ops/lines.h"
#include "ops/produce.h"
#include "ops/tables/products.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;

#define QUORVEL_DEFINE_PRODUCT(R, A, B, CODE) \
  R& Mult(R& result, const A& a, const B& b) { \
    detail::RequireProduct(a, b, CODE); \
    const auto fill = [&](R& c) { detail::FillByLines(c, detail::RowsOf(a), detail::RowsOf(b)); }; \
    return detail::ProductInto(result, a, b, a.nrows(), b.ncols(), fill); \
  } \
  R& operator*(const A& a, const B& b) { \
    detail::RequireProduct(a, b, CODE); \
    const auto fill = [&](R& c) { detail::FillByLines(c, detail::RowsOf(a), detail::RowsOf(b)); }; \
    return detail::NewProduct<R>(a, b, a.nrows(), b.ncols(), fill); \
  }
#define QUORVEL_DEFINE(R, A, B) QUORVEL_DEFINE_PRODUCT(R, A, B, detail::code::product)
QUORVEL_MIXED_PRODUCTS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
#define QUORVEL_DEFINE(R, A, B) QUORVEL_DEFINE_PRODUCT(R, A, B, detail::code::sparse_product)
QUORVEL_SPARSE_PRODUCTS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
