// ATPA, AQAT and SQS with a block size: the diagonal blocks of X Q X' as a sparse matrix.
#include "quorvel/structured.h"

#include "ops/congruence.h"
#include "ops/lines.h"
#include "ops/produce.h"
#include "ops/tables/structured.h"

#pragma GCC diagnostic error "-Wmissing-declarations"  // a row without its public declaration

namespace detail = quorvel::detail;
namespace code = quorvel::detail::code;

namespace {

using detail::ColumnsOf;
using detail::index_t;
using detail::RowsOf;

/// One row of X Q after another: only its non-zero elements are kept, so a zero in it gives no term.
class WorkRow {
 public:
  // never all ways: a count of 32 bits fits, which the language asks
  explicit WorkRow(index_t m) : sums_(m), index_(new index_t[m]), value_(detail::Scratch(m)) {}

  template <class X, class Q>
  void fill(const X& x, const Q& q, index_t i) {
    detail::AddLine(sums_, x, q, i, detail::WholeLines());
    count_ = 0;
    sums_.take_non_zeros([this](index_t t, double v) {
      index_[count_] = t;
      value_[count_++] = v;
    });
  }

  /// As the lines of a matrix with one row, whatever the index.
  template <class Use>
  void walk(index_t, detail::Range, Use use) const {
    for (index_t q = 0; q < count_; ++q) use(index_[q], value_[q]);
  }

 private:
  detail::SparseSums sums_;
  std::unique_ptr<index_t[]> index_;
  std::unique_ptr<double[]> value_;
  index_t count_ = 0;
};

/// Columns from the diagonal to the end of the block.
struct BlockLines {
  index_t end;
  detail::Range terms(index_t) const noexcept { return {0, detail::all}; }
  detail::Range elements(index_t i, index_t) const noexcept { return {i, end}; }
};

/// s = the diagonal blocks of order `block` of X Q X'; X is given by its rows and by its columns. s is empty.
template <class X, class XTransposed, class Q>
void FillBlocks(SymmetricSparseMatrix& s, const X& x, const XTransposed& xt, const Q& q, index_t m, index_t block) {
  const index_t n = s.ncols();
  WorkRow w(m);
  detail::SparseSums sums(n);
  detail::RowWriter writer(s);
  for (index_t i = 0; i < n; ++i) {
    w.fill(x, RowsOf<Q>(q), i);
    detail::AddLine(sums, w, xt, i, BlockLines{i - i % block + block});
    SparseElement* previous = nullptr;
    sums.take_non_zeros([&](index_t j, double v) { previous = writer.append(previous, i, j, v); });
  }
}

/// The blocks as a new matrix of order n. A block size that does not divide the order is refused with the bare value 0.
template <class A, class Q, class X, class XTransposed>
SymmetricSparseMatrix& NewBlocks(const A& a, const Q& q, const X& x, const XTransposed& xt, index_t n, index_t m,
                                 unsigned block) {
  detail::RequireSquare(a, a, q);
  detail::RequireSquare(q, a, q);
  if (block != 0 && (block > n || n % block != 0)) detail::FailWith(code::none, &a, &q);
  if (block == 0) block = n;
  const auto fill = [&](SymmetricSparseMatrix& s) { FillBlocks(s, x, xt, q, m, block); };
  return detail::NewProduct<SymmetricSparseMatrix>(a, q, n, n, fill);
}

}  // namespace

#define QUORVEL_DEFINE(K1, K2) \
  SymmetricSparseMatrix& ATPA(const K1& A, const K2& P, unsigned block) { \
    detail::RequireSameRows(A, P, code::none); \
    return NewBlocks(A, P, ColumnsOf(A), RowsOf(A), A.ncols(), A.nrows(), block); \
  }
QUORVEL_ATPA_BLOCKS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(K1, K2) \
  SymmetricSparseMatrix& AQAT(const K1& A, const K2& Q, unsigned block) { \
    detail::RequireProduct(A, Q, code::none); \
    return NewBlocks(A, Q, RowsOf(A), ColumnsOf(A), A.nrows(), A.ncols(), block); \
  }
QUORVEL_AQAT_BLOCKS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE

#define QUORVEL_DEFINE(K1, K2) \
  SymmetricSparseMatrix& SQS(const K1& S, const K2& Q, unsigned block) { \
    detail::RequireProduct(S, Q, code::none); \
    return NewBlocks(S, Q, RowsOf(S), ColumnsOf(S), S.nrows(), S.ncols(), block); \
  }
QUORVEL_SQS_BLOCKS(QUORVEL_DEFINE)
#undef QUORVEL_DEFINE
