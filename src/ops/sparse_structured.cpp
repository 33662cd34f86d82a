// Structured products with a sparse operand and a result of full size.
#include "quorvel/structured.h"

#include "ops/congruence.h"
#include "ops/lines.h"
#include "ops/produce.h"
#include "ops/tables/structured.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;
namespace code = quorvel::detail::code;
using detail::ColumnsOf;
using detail::FillByLines;
using detail::NewProduct;
using detail::RowsOf;

namespace {

using detail::index_t;

/// s = X Q X' for an X that is read sparsely, given by its rows and by its columns. The work row w has all m elements.
template <class X, class XTransposed, class Q>
void FillCongruence(SymmetricMatrix& s, const X& x, const XTransposed& xt, const Q& q, index_t m) {
  const std::unique_ptr<double[]> w = detail::Scratch(m);
  detail::ClearDoubles(s.data(), s.StoredCount());
  for (index_t i = 0; i < s.ndim(); ++i) {
    detail::ClearDoubles(w.get(), m);
    detail::AddLine(w.get(), x, RowsOf<Q>(q), i, detail::WholeLines());
    double* const row = s.data() + detail::packed_index(i, 0, s.ndim());
    for (index_t t = 0; t < m; ++t) xt.add(row, w[t], t, {i, detail::all});
  }
}

template <class P>
void FillATPA(SymmetricMatrix& s, const RegularSparseMatrix& a, const P& p) {
  FillCongruence(s, ColumnsOf(a), RowsOf(a), p, a.nrows());
}
void FillATPA(SymmetricMatrix& s, const RegularMatrix& a, const SymmetricSparseMatrix& p) {
  detail::SparseCongruence(s, Transposed(detail::FactorOf(a)), detail::SparseLines(p), a.ncols(), a.nrows());
}

template <class Q>
void FillAQAT(SymmetricMatrix& s, const RegularSparseMatrix& a, const Q& q) {
  FillCongruence(s, RowsOf(a), ColumnsOf(a), q, a.ncols());
}
void FillAQAT(SymmetricMatrix& s, const RegularMatrix& a, const SymmetricSparseMatrix& q) {
  detail::SparseCongruence(s, detail::FactorOf(a), detail::SparseLines(q), a.nrows(), a.ncols());
}

void FillSQS(SymmetricMatrix& s, const SymmetricSparseMatrix& outer, const SymmetricMatrix& q) {
  FillCongruence(s, RowsOf(outer), RowsOf(outer), q, outer.ncols());
}
void FillSQS(SymmetricMatrix& s, const SymmetricMatrix& outer, const SymmetricSparseMatrix& q) {
  detail::SparseCongruence(s, detail::FactorOf(outer), detail::SparseLines(q), outer.ndim(), outer.ndim());
}

/// The first column of A, as a full array and a mark for each existing element.
struct FirstColumn {
  template <class A>
  explicit FirstColumn(const A& a) : value(detail::Scratch(a.nrows())), exists(new bool[a.nrows()]()) {
    ColumnsOf<A>(a).walk(0, {0, detail::all}, [this](index_t k, double v) {
      value[k] = v;
      exists[k] = true;
    });
  }
  std::unique_ptr<double[]> value;
  std::unique_ptr<bool[]> exists;
};

template <class A, class P>
double WeightedNorm(const A& a, const P& p) {
  const index_t n = a.nrows();
  if (p.ncols() != n || (n != 0 && a.ncols() == 0)) detail::FailWith(detail::offset::shape, &a, &p);
  const detail::Consumed operands(a, p);
  if (n == 0) return 0.0;
  const FirstColumn v(a);
  const ColumnsOf<P> weights(p);
  double sum = 0.0;
  for (index_t i = n; i-- > 0;) {
    if (!v.exists[i]) continue;
    double w = 0.0;
    weights.walk(i, {0, n}, [&](index_t k, double weight) {
      // never all ways: a dense vector has all elements, and a diagonal weight is asked for where the vector has one
      if (v.exists[k]) w += v.value[k] * weight;
    });
    sum += v.value[i] * w;
  }
  return sum;
}

}  // namespace

#define QUORVEL_DEFINE(R, K) \
  R& ATA(const K& A) { \
    detail::RequireSameRows(A, A, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, ColumnsOf(A), RowsOf(A)); }; \
    return NewProduct<R>(A, A, A.ncols(), A.ncols(), fill); \
  }
QUORVEL_SPARSE_ATA(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K) \
  R& AAT(const K& A) { \
    detail::RequireSameCols(A, A, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, RowsOf(A), ColumnsOf(A)); }; \
    return NewProduct<R>(A, A, A.nrows(), A.nrows(), fill); \
  }
QUORVEL_SPARSE_AAT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE_TRIANGLE(NAME, R, K, LINES) \
  R& NAME(const K& A) { \
    detail::RequireSquareShape(A, code::product); \
    const auto fill = [&](R& c) { detail::FillSparseByLines(c, ColumnsOf(A), RowsOf(A), LINES()); }; \
    return NewProduct<R>(A, A, A.ncols(), A.ncols(), fill); \
  }
#define QUORVEL_DEFINE(R, K) QUORVEL_DEFINE_TRIANGLE(UTU, R, K, detail::UtuLines)
QUORVEL_SPARSE_UTU(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
#define QUORVEL_DEFINE(R, K) QUORVEL_DEFINE_TRIANGLE(LTL, R, K, detail::LtlLines)
QUORVEL_SPARSE_LTL(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
#undef QUORVEL_DEFINE_TRIANGLE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ATB(const K1& A, const K2& B) { \
    detail::RequireSameRows(A, B, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, ColumnsOf(A), RowsOf(B)); }; \
    return NewProduct<R>(A, B, A.ncols(), B.ncols(), fill); \
  }
QUORVEL_SPARSE_ATB(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ABT(const K1& A, const K2& B) { \
    detail::RequireSameCols(A, B, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, RowsOf(A), ColumnsOf(B)); }; \
    return NewProduct<R>(A, B, A.nrows(), B.nrows(), fill); \
  }
QUORVEL_SPARSE_ABT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SymmetricOfProduct(const K1& A, const K2& B) { \
    detail::RequireProduct(A, B, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, RowsOf(A), RowsOf(B)); }; \
    return NewProduct<R>(A, B, A.nrows(), B.ncols(), fill); \
  }
QUORVEL_SPARSE_SYMMETRIC_OF_PRODUCT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

SymmetricMatrix& SymmetricOfProduct(SymmetricMatrix& R, const RegularSparseMatrix& A, const RegularSparseMatrix& B) {
  detail::RequireProduct(A, B, code::product);
  const auto fill = [&](SymmetricMatrix& c) { FillByLines(c, RowsOf(A), RowsOf(B)); };
  return detail::ProductInto(R, A, B, A.nrows(), B.ncols(), fill);
}

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SymmetricOfABT(const K1& A, const K2& B) { \
    detail::RequireSameCols(A, B, code::product); \
    const auto fill = [&](R& c) { FillByLines(c, RowsOf(A), ColumnsOf(B)); }; \
    return NewProduct<R>(A, B, A.nrows(), B.nrows(), fill); \
  }
QUORVEL_SPARSE_SYMMETRIC_OF_ABT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& ATPA(const K1& A, const K2& P) { \
    detail::RequireSameRows(A, P, code::none); \
    detail::RequireSquare(P, A, P); \
    return NewProduct<R>(A, P, A.ncols(), A.ncols(), [&](R& s) { FillATPA(s, A, P); }); \
  }
QUORVEL_SPARSE_ATPA(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& AQAT(const K1& A, const K2& Q) { \
    detail::RequireProduct(A, Q, code::none); \
    detail::RequireSquare(Q, A, Q); \
    return NewProduct<R>(A, Q, A.nrows(), A.nrows(), [&](R& s) { FillAQAT(s, A, Q); }); \
  }
QUORVEL_SPARSE_AQAT(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(R, K1, K2) \
  R& SQS(const K1& S, const K2& Q) { \
    detail::RequireProduct(S, Q, code::none); \
    detail::RequireSquare(S, S, Q); \
    detail::RequireSquare(Q, S, Q); \
    return NewProduct<R>(S, Q, S.nrows(), S.nrows(), [&](R& s) { FillSQS(s, S, Q); }); \
  }
QUORVEL_SPARSE_SQS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(K1, K2) \
  double PWeightedNorm(const K1& A, const K2& P) { \
    detail::RequireSameRows(A, P, code::none); \
    return WeightedNorm(A, P); \
  }
QUORVEL_SPARSE_PWEIGHTED_NORM(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
