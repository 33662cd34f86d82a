// inv, inv_ut and inv_lt of the sparse kinds.
//
// The inverse is built in a fresh store, which replaces A's when it is to land in A: a failure leaves A as it was.
#include <algorithm>
#include <vector>

#include "core/ownership.h"
#include "factor/reflections.h"
#include "factor/sparse_reflections.h"
#include "factor/sparse_triangle.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "quorvel/inverses.h"
#include "quorvel/small_inverses.h"
#include "sparse/append.h"
#include "sparse/axis.h"
#include "sparse/column_writer.h"

using namespace quorvel::detail;

namespace {

/// invert(target) writes the inverse of A into an empty matrix of A's size and returns the singularity count.
template <class K, class Invert>
K& InverseInPlaceOrNew(K& A, bool inPlace, Invert invert) {
  Consumed operand(A);
  const bool lands_in_a = inPlace || A.dispensable();
  if constexpr (std::is_same_v<K, RegularSparseMatrix>) {
    if (lands_in_a) A.set_nsing(0);  // also when there is no inverse
  }
  RequireInvertibleOrder(A.rows);
  // A regular inverse goes on with A's blocks; a symmetric one is made by sym, with blocks of its own.
  const auto fill = [&](K& target) {
    if (std::is_same_v<K, RegularSparseMatrix> && A.growBy != 0) target.SetGrowBy(A.growBy - 1);
    return invert(target);
  };
  if (lands_in_a) {
    K fresh(A.rows, A.cols);
    const Matrix::nsing_type singular = fill(fresh);
    A.Swap(fresh);
    A.set_nsing(singular);
    operand.release(A);
    return A;
  }
  NewResult<K> result(A.rows, A.cols);
  const Matrix::nsing_type singular = fill(*result);
  result->set_nsing(singular);
  return result.hand_over();
}

/// The triangle whose lines along the axis begin with the diagonal. What lies before it is not read.
template <class Axis>
SparseTriangle TriangleOf(const RegularSparseMatrix& A) {
  SparseTriangle triangle(A.rows);
  for (index_t i = 0; i < A.rows; ++i) {
    for (SparseElement* e = ListHead<Axis>(A, i); e != nullptr; e = Axis::next(*e)) {
      if (Axis::along(*e) == i) triangle.pivot(e->value);
      if (Axis::along(*e) > i) triangle.element(Axis::along(*e), e->value);
    }
    triangle.end_line();
  }
  return triangle;
}

template <class Axis>
RegularSparseMatrix& TriangularInverse(RegularSparseMatrix& A, bool inPlace) {
  A.ThrowNotSquare(code::inverse_triangular);
  return InverseInPlaceOrNew(A, inPlace, [&](RegularSparseMatrix& target) {
    const index_t n = A.rows;
    SparseTriangle triangle = TriangleOf<Axis>(A);
    const Matrix::nsing_type singular = triangle.finish();
    constexpr bool by_rows = std::is_same_v<Axis, ByRow>;
    std::conditional_t<by_rows, RowWriter, ColumnWriter> writer(target);
    std::vector<double> x(n);
    for (index_t i = 0; i < n; ++i) {
      std::fill(x.begin(), x.end(), 0.0);
      triangle.inverse_line(i, x.data());
      SparseElement* prev = nullptr;
      for (index_t k = i; k < n; ++k) {
        if (x[k] != 0.0) prev = by_rows ? writer.append(prev, i, k, x[k]) : writer.append(prev, k, i, x[k]);
      }
    }
    return singular;
  });
}

/// X·Qᵀ for X = R⁻¹, in dense panels of rows: the rows lie side by side as the columns of the panel.
class InverseRows {
 public:
  InverseRows(const SparseTriangle& r, const SparseReflections& h, index_t n)
      : r_(r), h_(h), n_(n), panel_(std::size_t{n} * width), line_(n), vector_(n), rows_(n), used_(n) {}

  /// Calls use(i, x) for each row of the inverse, i ascending; x[k * width] is element (i, k).
  template <class Use>
  void for_each(Use use) {
    for (index_t first = 0; first < n_; first += width) {
      const index_t count = std::min(width, n_ - first);
      load(first, count);
      for (index_t j = n_; j-- > 0;) reflect_by(j);
      for (index_t lane = 0; lane < count; ++lane) use(first + lane, panel_.data() + lane);
    }
  }

  static constexpr index_t width = 32;

 private:
  double* lanes(index_t k) noexcept { return panel_.data() + std::size_t{k} * width; }

  void load(index_t first, index_t count) {
    std::fill(panel_.begin(), panel_.end(), 0.0);
    std::fill(used_.begin(), used_.end(), false);
    for (index_t lane = 0; lane < count; ++lane) {
      std::fill(line_.begin(), line_.end(), 0.0);
      r_.inverse_line(first + lane, line_.data());
      for (index_t k = first + lane; k < n_; ++k) {
        if (line_[k] == 0.0) continue;
        lanes(k)[lane] = line_[k];
        used_[k] = true;
      }
    }
  }

  void reflect_by(index_t j) {
    const ReflectionWork work{nullptr, sums_, vector_.data(), rows_.data()};
    const Reflection h = h_.recall(j, used_, work);
    if (h.beta != 0.0) ReflectLanes(panel_.data(), width, width, j, h, work);
  }

  const SparseTriangle& r_;
  const SparseReflections& h_;
  index_t n_;
  std::vector<double> panel_;  // n x width
  std::vector<double> line_;
  std::vector<double> vector_;
  std::vector<index_t> rows_;
  std::vector<bool> used_;  // rows of the panel that may hold something
  double sums_[width];
};

/// The general inverse of A into the target; of a symmetric target the upper triangle.
template <class K>
Matrix::nsing_type InvertByReflections(const RegularSparseMatrix& A, K& target) {
  const index_t n = A.rows;
  SparseReflections h;
  RegularSparseMatrix r;
  TriangulariseSparse(A, r, h);
  SparseTriangle triangle = TriangleOf<ByRow>(r);
  const Matrix::nsing_type singular = triangle.finish();
  r.FreeMemory();
  RowWriter writer(target);
  InverseRows(triangle, h, n).for_each([&](index_t i, const double* x) {
    SparseElement* prev = nullptr;
    for (index_t k = std::is_same_v<K, SymmetricSparseMatrix> ? i : 0; k < n; ++k) {
      const double e = x[std::size_t{k} * InverseRows::width];
      if (e != 0.0) prev = writer.append(prev, i, k, e);
    }
  });
  return singular;
}

}  // namespace

RegularSparseMatrix& inv_ut(RegularSparseMatrix& A, bool inPlace) { return TriangularInverse<ByRow>(A, inPlace); }

RegularSparseMatrix& inv_lt(RegularSparseMatrix& A, bool inPlace) { return TriangularInverse<ByCol>(A, inPlace); }

RegularSparseMatrix& inv(RegularSparseMatrix& A, bool inPlace) {
  A.ThrowNotOk(code::inverse_not_ok);
  A.ThrowNotSquare(code::inverse_shape);
  RegularSparseMatrix& inverse =
      InverseInPlaceOrNew(A, inPlace, [&](RegularSparseMatrix& target) { return InvertByReflections(A, target); });
  if (&inverse != &A) A.set_nsing(0);
  return inverse;
}

SymmetricSparseMatrix& inv(SymmetricSparseMatrix& A, bool inPlace) {
  if (A.ndim() == 2) return inv2x2(A, inPlace);
  if (A.ndim() == 3) return inv3x3(A, inPlace);
  A.ThrowNotOk(code::inverse_not_ok);
  A.ThrowNotSquare(code::inverse_shape);
  return InverseInPlaceOrNew(A, inPlace, [&](SymmetricSparseMatrix& target) {
    RegularSparseMatrix full;
    full.Copy(A, false);
    return InvertByReflections(full, target);
  });
}

RegularSparseMatrix& inv_ut(const RegularSparseMatrix& A, bool) { return inv_ut(Mutable(A), false); }
RegularSparseMatrix& inv_lt(const RegularSparseMatrix& A, bool) { return inv_lt(Mutable(A), false); }
RegularSparseMatrix& inv(const RegularSparseMatrix& A, bool) { return inv(Mutable(A), false); }
SymmetricSparseMatrix& inv(const SymmetricSparseMatrix& A, bool) { return inv(Mutable(A), false); }
