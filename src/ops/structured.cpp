// Structured products of dense matrices.
#include "quorvel/structured.h"

#include "ops/congruence.h"
#include "ops/dense_product.h"
#include "ops/produce.h"
#include "ops/tables/structured.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;
namespace code = quorvel::detail::code;
using detail::FactorOf;
using detail::NewProduct;
using detail::Transposed;

namespace {

using detail::Factor;
using detail::index_t;
using detail::Rule;

/// c = a * b with n x m and m x p factors, the part in c's shape. To be called while the factors live.
template <class C>
auto FilledBy(const Factor& a, const Factor& b, index_t n, index_t p, index_t m) {
  return [&a, &b, n, p, m](C& c) { detail::MultiplyFactors(detail::TargetOf(c), a, b, n, p, m); };
}

/// Columns of A that are laid out by rows together, and the order from which on that is sooner done than reading across
/// lines that lie far apart: each of them is on a page of its own. Of A' A only half is formed.
constexpr index_t columns_at_once = 256, columns_of_half = 128;
constexpr index_t far_apart = 400, far_apart_of_half = 500;

/// multiply(begin, count, x) for `most` rows of A' at a time, from `begin` on, which are laid out by rows in x.
template <class MultiplyRows>
void ByRowsOfTranspose(const RegularMatrix& a, index_t most, MultiplyRows multiply) {
  const index_t n = a.ncols(), m = a.nrows();
  const auto scratch = detail::Scratch(std::uint64_t{most} * m);
  for (index_t begin = 0; begin < n; begin += most) {
    const index_t count = n - begin < most ? n - begin : most;
    detail::kernels().transpose(scratch.get(), m, a.data() + begin, n, m, count);
    multiply(begin, count, FactorOf(scratch.get(), m));
  }
}

constexpr index_t wide_register = 8;  // doubles

/// s = X X', X being n x m. A few columns behind the last whole register of a row cost as much as a whole one: where
/// registers are wide, s is then formed by its columns.
void FillSquare(SymmetricMatrix& s, const Factor& x, index_t n, index_t m) noexcept {
  const bool wide = detail::kernels().lanes >= wide_register;
  const bool by_columns = wide && n > detail::small_factor && n % wide_register != 0;
  const detail::Target target = by_columns ? detail::LowerTarget(s) : detail::UpperTarget(s);
  detail::MultiplyFactors(target, x, Transposed(x), n, n, m);
}

/// s = A' A.
void FillATA(SymmetricMatrix& s, const RegularMatrix& a) {
  const index_t n = a.ncols(), m = a.nrows();
  if (n < far_apart_of_half || m < far_apart_of_half) return FillSquare(s, Transposed(FactorOf(a)), n, m);
  ByRowsOfTranspose(a, columns_of_half, [&s, &a, n, m](index_t begin, index_t count, const Factor& x) {
    Factor columns = FactorOf(a);
    columns.first += begin;
    detail::MultiplyFactors(detail::TrailingTarget(s, begin), x, columns, count, n - begin, m);
  });
}

/// c = A' B and c = A B'; a diagonal operand gives one term per element.
void FillATB(RegularMatrix& c, const RegularMatrix& a, const DiagonalMatrix& b) noexcept {
  const Rule<RegularMatrix> x(a);
  detail::FillFromOneTerm(c, [d = b.data(), &x](index_t i, index_t j) { return x.at(j, i) * d[j]; });
}
template <class B>
void FillATB(RegularMatrix& c, const RegularMatrix& a, const B& b) {
  const index_t n = a.ncols(), p = b.ncols(), m = a.nrows();
  if (n < far_apart || p < far_apart || m < far_apart) {
    return detail::MultiplyFactors(detail::TargetOf(c), Transposed(FactorOf(a)), FactorOf(b), n, p, m);
  }
  ByRowsOfTranspose(a, columns_at_once, [&c, &b, p, m](index_t begin, index_t count, const Factor& x) {
    double* const rows = c.data() + static_cast<std::size_t>(begin) * p;
    detail::MultiplyFactors(detail::TargetOf(rows, p), x, FactorOf(b), count, p, m);
  });
}
void FillABT(RegularMatrix& c, const DiagonalMatrix& a, const RegularMatrix& b) noexcept {
  const Rule<RegularMatrix> x(b);
  detail::FillFromOneTerm(c, [d = a.data(), &x](index_t i, index_t j) { return d[i] * x.at(j, i); });
}
template <class A>
void FillABT(RegularMatrix& c, const A& a, const RegularMatrix& b) noexcept {
  detail::MultiplyFactors(detail::TargetOf(c), FactorOf(a), Transposed(FactorOf(b)), a.nrows(), b.nrows(), a.ncols());
}

/// s = X Q X', X being n x m.
void FillCongruence(SymmetricMatrix& s, const Factor& x, const SymmetricMatrix& q, index_t n, index_t m) {
  detail::Congruence(s, x, FactorOf(q), n, m);
}
void FillCongruence(SymmetricMatrix& s, const Factor& x, const DiagonalMatrix& q, index_t n, index_t m) {
  detail::DiagonalCongruence(s, x, q.data(), n, m);
}

/// s = S Q S.
void FillSQS(SymmetricMatrix& s, const SymmetricMatrix& outer, const SymmetricMatrix& q) {
  detail::Congruence(s, FactorOf(outer), FactorOf(q), outer.ndim(), outer.ndim());
}
void FillSQS(SymmetricMatrix& s, const DiagonalMatrix& outer, const SymmetricMatrix& q) noexcept {
  const Rule<SymmetricMatrix> x(q);
  detail::FillFromOneTerm(s, [d = outer.data(), &x](index_t i, index_t j) {
    const double w = 0.0 + d[i] * x.at(i, j);
    return w * d[j];
  });
}

/// Element k of the first column.
double FirstOfRow(const Factor& v, index_t k) noexcept {
  return v.first[static_cast<detail::kernel_offset>(k) * v.stride];
}

/// w = P' v, w(i) = sum over k of P(k, i) * v(k), v being the first column of a factor by rows.
template <class P>
void FillWeighted(double* w, const Factor& v, const P& p) noexcept {
  const index_t n = p.ncols();
  detail::MultiplyFactors(detail::TargetOf(w, 1), Transposed(FactorOf(p)), v, n, 1, n);
}
void FillWeighted(double* w, const Factor& v, const DiagonalMatrix& p) noexcept {
  for (index_t i = 0; i < p.ndim(); ++i) w[i] = 0.0 + FirstOfRow(v, i) * p.data()[i];
}

template <class P>
double WeightedNorm(const RegularMatrix& a, const P& p) {
  const index_t n = a.nrows();
  if (p.ncols() != n || (n != 0 && a.ncols() == 0)) detail::FailWith(detail::offset::shape, &a, &p);
  const detail::Consumed operands(a, p);
  if (n == 0) return 0.0;
  detail::SmallScratch<256> scratch(n);
  double* const w = scratch.data();
  const Factor v = FactorOf(a);
  FillWeighted(w, v, p);
  double sum = 0.0;
  for (index_t i = n; i-- > 0;) sum += FirstOfRow(v, i) * w[i];
  return sum;
}

}  // namespace

#define QUORVEL_DEFINE(R, K) \
  R& ATA(const K& A) { \
    detail::RequireSameRows(A, A, code::product); \
    const index_t n = A.ncols(); \
    return NewProduct<R>(A, A, n, n, [&](R& s) { FillATA(s, A); }); \
  }
QUORVEL_DENSE_ATA(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K) \
  R& AAT(const K& A) { \
    detail::RequireSameCols(A, A, code::product); \
    const index_t n = A.nrows(); \
    return NewProduct<R>(A, A, n, n, [&](R& s) { FillSquare(s, FactorOf(A), n, A.ncols()); }); \
  }
QUORVEL_DENSE_AAT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

// U' U and L' L: the views carry the triangles, so only stored elements enter.
#define QUORVEL_DEFINE_TRIANGLE(NAME, R, K) \
  R& NAME(const K& A) { \
    detail::RequireOk(A, code::product); \
    const index_t n = A.ndim(); \
    return NewProduct<R>(A, A, n, n, FilledBy<R>(Transposed(FactorOf(A)), FactorOf(A), n, n, n)); \
  }
#define QUORVEL_DEFINE(R, K) QUORVEL_DEFINE_TRIANGLE(UTU, R, K)
QUORVEL_DENSE_UTU(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
#define QUORVEL_DEFINE(R, K) QUORVEL_DEFINE_TRIANGLE(LTL, R, K)
QUORVEL_DENSE_LTL(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
#undef QUORVEL_DEFINE_TRIANGLE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ATB(const K1& A, const K2& B) { \
    detail::RequireSameRows(A, B, code::product); \
    return NewProduct<R>(A, B, A.ncols(), B.ncols(), [&](R& c) { FillATB(c, A, B); }); \
  }
QUORVEL_DENSE_ATB(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ABT(const K1& A, const K2& B) { \
    detail::RequireSameCols(A, B, code::product); \
    return NewProduct<R>(A, B, A.nrows(), B.nrows(), [&](R& c) { FillABT(c, A, B); }); \
  }
QUORVEL_DENSE_ABT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SymmetricOfProduct(const K1& A, const K2& B) { \
    detail::RequireProduct(A, B, code::product); \
    const index_t n = A.nrows(); \
    return NewProduct<R>(A, B, n, B.ncols(), FilledBy<R>(FactorOf(A), FactorOf(B), n, n, A.ncols())); \
  }
QUORVEL_DENSE_SYMMETRIC_OF_PRODUCT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SymmetricOfABT(const K1& A, const K2& B) { \
    detail::RequireSameCols(A, B, code::product); \
    const index_t n = A.nrows(); \
    return NewProduct<R>(A, B, n, B.nrows(), FilledBy<R>(FactorOf(A), Transposed(FactorOf(B)), n, n, A.ncols())); \
  }
QUORVEL_DENSE_SYMMETRIC_OF_ABT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ATPA(const K1& A, const K2& P) { \
    detail::RequireSameRows(A, P, code::none); \
    const index_t n = A.ncols(); \
    const auto fill = [&](R& s) { FillCongruence(s, Transposed(FactorOf(A)), P, n, A.nrows()); }; \
    return NewProduct<R>(A, P, n, n, fill); \
  }
QUORVEL_DENSE_ATPA(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& AQAT(const K1& A, const K2& Q) { \
    detail::RequireProduct(A, Q, code::none); \
    const index_t n = A.nrows(); \
    return NewProduct<R>(A, Q, n, n, [&](R& s) { FillCongruence(s, FactorOf(A), Q, n, A.ncols()); }); \
  }
QUORVEL_DENSE_AQAT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SQS(const K1& S, const K2& Q) { \
    detail::RequireProduct(S, Q, code::none); \
    return NewProduct<R>(S, Q, S.ndim(), S.ndim(), [&](R& s) { FillSQS(s, S, Q); }); \
  }
QUORVEL_DENSE_SQS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(K1, K2) \
  double PWeightedNorm(const K1& A, const K2& P) { \
    detail::RequireSameRows(A, P, code::none); \
    return WeightedNorm(A, P); \
  }
QUORVEL_DENSE_PWEIGHTED_NORM(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
