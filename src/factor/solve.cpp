// Left division A > b of the dense kinds.
#include "factor/solve.h"
#include "core/ownership.h"
#include "dense/rules.h"
#include "factor/axpy.h"
#include "factor/elimination.h"
#include "factor/tri_inverse.h"
#include "quorvel/inverses.h"

using namespace quorvel::detail;

namespace {

/// The sums of so many rows need no heap.
constexpr std::size_t small_sums = 128;

/// Rows of right-hand sides times a reciprocal; a row without a usable pivot is left as it is.
void SolveInPlace(const DiagonalMatrix& A, RegularMatrix& b) {
  const Rule<RegularMatrix> rows(b);
  Matrix::nsing_type singular = 0;
  for (index_t i = 0; i < A.ndim(); ++i) {
    if (!PivotPasses(A.data()[i])) {
      ++singular;
      continue;
    }
    const double reciprocal = 1.0 / A.data()[i];
    for (index_t c = 0; c < rows.cols(); ++c) rows.store(i, c) *= reciprocal;
  }
  A.set_nsing(singular);
}

/// So few rows and right-hand sides are done sooner element by element.
constexpr index_t few_rows = 12;
constexpr index_t few_sides = 4;

template <class K>
void SolveFew(const K& A, double* b, index_t q) noexcept {
  constexpr bool upper = std::is_same_v<K, UpperTriangularMatrix>;
  const Rule<K> t(A);
  const index_t n = A.ndim();
  const auto solved = [=](index_t k) noexcept { return upper ? n - 1 - k : k; };  // row that comes as k-th
  for (index_t step = 0; step < n; ++step) {
    const index_t i = solved(step);
    double s[few_sides] = {};
    for (index_t k = 0; k < step; ++k) AddScaled(s, q, b + std::size_t{solved(k)} * q, t.store(i, solved(k)));
    const double d = t.store(i, i);
    double* const row = b + std::size_t{i} * q;
    for (index_t c = 0; c < q; ++c) row[c] = PivotPasses(d) ? (row[c] - s[c]) / d : 0.0;
  }
}

/// Substitution: X(i) = (b(i) - S)/t(i, i), S = Σ t(i, k)·X(k) over the rows that are solved already, in that order.
template <class K>
void SolveInPlace(const K& A, RegularMatrix& b) {
  constexpr bool upper = std::is_same_v<K, UpperTriangularMatrix>;
  const index_t n = A.ndim();
  Matrix::nsing_type singular = 0;
  if (b.ncols() == 1) {
    WorkArea<small_sums> sums(n);
    const auto solve = upper ? kernels().solve_upper : kernels().solve_lower;
    singular = static_cast<Matrix::nsing_type>(solve(A.data(), n, b.data(), sums.data(), smallest_pivot));
  } else {
    for (index_t i = 0; i < n; ++i) {
      if (!PivotPasses(A.data()[packed_row(i, n)])) ++singular;
    }
    if (n <= few_rows && b.ncols() <= few_sides) {
      SolveFew(A, b.data(), b.ncols());
    } else {
      PanelScratch strip(n);
      kernels().solve_lines(A.data(), n, upper, b.data(), b.ncols(), strip.data(), smallest_pivot);
    }
  }
  A.set_nsing(singular);
}

template <class K>
void SolveByElimination(const K& A, RegularMatrix& b) {
  const Rule<K> a(A);
  const index_t n = a.rows();
  const index_t q = b.ncols();
  const std::uint64_t count = std::uint64_t{n} * q;
  Elimination system(n, q);
  for (index_t i = 0; i < n; ++i) {
    for (index_t j = 0; j < n; ++j) system.matrix()[std::size_t{i} * n + j] = a.at(i, j);
  }
  // All is read before anything is written: b may be A.
  CopyDoubles(system.sides(), b.data(), count);
  A.set_nsing(static_cast<Matrix::nsing_type>(system.factor()));
  system.solve();
  CopyDoubles(b.data(), system.sides(), count);
}

void SolveInPlace(const SymmetricMatrix& A, RegularMatrix& b) { SolveByElimination(A, b); }
void SolveInPlace(const RegularMatrix& A, RegularMatrix& b) { SolveByElimination(A, b); }

template <class K>
RegularMatrix& Solve(const K& A, RegularMatrix& b) {
  return SolveInto(A, b, [&](RegularMatrix& target) { SolveInPlace(A, target); });
}

}  // namespace

RegularMatrix& operator>(DiagonalMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const DiagonalMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const DiagonalMatrix& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }

RegularMatrix& operator>(LowerTriangularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const LowerTriangularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const LowerTriangularMatrix& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }

RegularMatrix& operator>(UpperTriangularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const UpperTriangularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const UpperTriangularMatrix& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }

RegularMatrix& operator>(const SymmetricMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const SymmetricMatrix& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }

RegularMatrix& operator>(RegularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const RegularMatrix& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const RegularMatrix& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }
