// Scaling by a number: Mult(result, a, s), a * s, s * a.
#include "quorvel/products.h"

#include "core/ownership.h"
#include "core/sizing.h"
#include "ops/tables/products.h"
#include "quorvel/quorvel.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;

namespace {

template <class K>
K& ScaledInto(K& result, const K& a, double s) {
  detail::RequireOk(a, detail::code::product);
  detail::Consumed operand(a);
  if (&result == &a) operand.release(a);
  detail::RequireOk(result, detail::code::none);
  result.Mult(a, s);
  return result;
}

/// A copy of a sparse matrix is made first and scaled in place: then also one that is scaled by 0 has the size of a.
template <class K>
K& Scaled(K& a, double s) {
  detail::RequireOk(a, detail::code::product);
  if (a.dispensable()) {
    a.Mult(a, s);
    return a;
  }
  if constexpr (detail::is_dense<K>) {
    auto result = detail::NewResult<K>::sized(a.nrows(), a.ncols());
    result->set_nsing(a.nsing());
    detail::ScaleDoubles(result->data(), s, a.data(), detail::StoredIn(a));
    return result.hand_over();
  } else {
    detail::NewResult<K> result;
    result->Copy(a, false);
    result->Mult(*result, s);
    return result.hand_over();
  }
}

}  // namespace

#define QUORVEL_DEFINE(K)                                                      \
  K& Mult(K& result, const K& a, double s) { return ScaledInto(result, a, s); } \
  K& operator*(K& a, double s) { return Scaled(a, s); }                        \
  K& operator*(const K& a, double s) { return Scaled(detail::Mutable(a), s); } \
  K& operator*(double s, K& a) { return Scaled(a, s); }                        \
  K& operator*(double s, const K& a) { return Scaled(detail::Mutable(a), s); }
QUORVEL_DENSE_SCALED(QUORVEL_DEFINE)
QUORVEL_SPARSE_SCALED(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
