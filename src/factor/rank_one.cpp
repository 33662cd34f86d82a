// Rank-one updates of dense matrices: every element gets one product and one addition.
#include <cstddef>

#include "dense/rules.h"
#include "factor/axpy.h"
#include "factor/operands.h"
#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/ud.h"

namespace quorvel::detail {
namespace {

/// Row j of the packed array: (i, j) += (x(i)*a)*x(j), i >= j.
void Update(SymmetricMatrix& A, const double* x, double a) noexcept { kernels().rank_one(A.data(), A.ndim(), x, a); }

void Update(SymmetricMatrix& A, const double* x, const double*, double a) noexcept { Update(A, x, a); }

void Update(RegularMatrix& A, const double* x, const double* y, double a) noexcept {
  const index_t n = A.ncols();
  for (index_t i = 0; i < A.nrows(); ++i) {
    double* const row = A.data() + std::size_t{i} * n;  // may be y
    const double t = x[i] * a;
    if (n >= kernel_lanes) {
      kernels().add_multiple(row, t, y, n);
    } else {
      for (index_t j = 0; j < n; ++j) row[j] += t * y[j];
    }
  }
}

/// Indices of a list.
struct List {
  const unsigned* index;
  unsigned count;
};

void UpdateListed(SymmetricMatrix& A, const double* x, List rows, const double*, List cols, double a) noexcept {
  const Rule<SymmetricMatrix> e(A);
  for (unsigned k = 0; k < rows.count; ++k) {
    const index_t i = rows.index[k];
    const double t = x[i] * a;
    for (unsigned l = 0; l < cols.count; ++l) {
      const index_t j = cols.index[l];
      if (j <= i) e.store(i, j) += t * x[j];
    }
  }
}

void UpdateListed(RegularMatrix& A, const double* x, List rows, const double* y, List cols, double a) noexcept {
  const Rule<RegularMatrix> e(A);
  for (unsigned k = 0; k < rows.count; ++k) {
    const double t = x[rows.index[k]] * a;
    for (unsigned l = 0; l < cols.count; ++l) e.store(rows.index[k], cols.index[l]) += t * y[cols.index[l]];
  }
}

double ColumnElement(const RegularSparseMatrix& x, index_t i) noexcept {
  const SparseElement* const e = x.Cell_Loc(i, 0);
  return e != nullptr ? e->value : 0.0;
}

void UpdateListed(SparseMatrix& A, const RegularSparseMatrix& x, List rows, const RegularSparseMatrix& y, List cols,
                  double a) {
  const bool symmetric = A.kind() == Matrix::symmetric_sparse;
  const RegularSparseMatrix& factors = symmetric ? x : y;
  for (unsigned k = 0; k < rows.count; ++k) {
    const index_t i = rows.index[k];
    const double t = ColumnElement(x, i) * a;
    for (unsigned l = 0; l < cols.count; ++l) {
      const index_t j = cols.index[l];
      if (!symmetric || j <= i) SparseMatrix::proxy(A, i, j) += t * ColumnElement(factors, j);
    }
  }
}

/// The pending code, then the target's kind tag; then the update; then x and y are consumed.
template <class Updater>
void RankOne(bool known_kind, Operands& operands, Updater update) {
  operands.Require(true, true);
  if (!known_kind) operands.Fail(fixed::rank_one_kind);
  update();
  operands.Succeed();
}

template <class K>
void RankOneFull(K& A, const RegularMatrix& x, const RegularMatrix& y, double a) {
  Operands operands(1, A, x, y);
  RankOne(A.kind() == KindTraits<K>::tag, operands, [&]() noexcept { Update(A, x.data(), y.data(), a); });
}

template <class K>
void RankOneListed(K& A, const RegularMatrix& x, List rows, const RegularMatrix& y, List cols, double a) {
  Operands operands(1, A, x, y);
  RankOne(A.kind() == KindTraits<K>::tag, operands,
          [&]() noexcept { UpdateListed(A, x.data(), rows, y.data(), cols, a); });
}

}  // namespace
}  // namespace quorvel::detail

namespace detail = quorvel::detail;

void RankOneUpdate(SymmetricMatrix& P, const double* v, double a) {
  P.ThrowNotOk(detail::code::rank_one);
  detail::Update(P, v, a);
}

void RankOneUpdate(SymmetricMatrix& A, const RegularMatrix& x, const RegularMatrix& y, double a) {
  detail::RankOneFull(A, x, y, a);
}

void RankOneUpdate(RegularMatrix& A, const RegularMatrix& x, const RegularMatrix& y, double a) {
  detail::RankOneFull(A, x, y, a);
}

void RankOneUpdateNZ(SymmetricMatrix& A, const RegularMatrix& x, const unsigned* xnz, unsigned nx,
                     const RegularMatrix& y, const unsigned* ynz, unsigned ny, double a) {
  detail::RankOneListed(A, x, {xnz, nx}, y, {ynz, ny}, a);
}

void RankOneUpdateNZ(RegularMatrix& A, const RegularMatrix& x, const unsigned* xnz, unsigned nx,
                     const RegularMatrix& y, const unsigned* ynz, unsigned ny, double a) {
  detail::RankOneListed(A, x, {xnz, nx}, y, {ynz, ny}, a);
}

void RankOneUpdateNZ(SparseMatrix& A, const RegularSparseMatrix& x, const unsigned* xnz, unsigned nx,
                     const RegularSparseMatrix& y, const unsigned* ynz, unsigned ny, double a) {
  detail::Operands operands(1, A, x, y);
  // never all ways: a sparse matrix is of one of the two kinds
  const bool sparse = A.kind() == Matrix::regular_sparse || A.kind() == Matrix::symmetric_sparse;
  detail::RankOne(sparse, operands, [&] { detail::UpdateListed(A, x, {xnz, nx}, y, {ynz, ny}, a); });
}
