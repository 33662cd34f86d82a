// Mult and operator* of two dense matrices.
#include "quorvel/products.h"

#include "ops/dense_product.h"
#include "ops/produce.h"
#include "ops/tables/products.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;

#define QUORVEL_DEFINE(R, A, B) \
  R& Mult(R& result, const A& a, const B& b) { \
    detail::RequireProduct(a, b, detail::code::product); \
    return detail::ProductInto(result, a, b, a.nrows(), b.ncols(), [&](R& c) { detail::FillProduct(c, a, b); }); \
  } \
  R& operator*(const A& a, const B& b) { \
    detail::RequireProduct(a, b, detail::code::product); \
    return detail::NewProduct<R>(a, b, a.nrows(), b.ncols(), [&](R& c) { detail::FillProduct(c, a, b); }); \
  }
QUORVEL_DENSE_PRODUCTS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
