// Left division A > b with sparse operands: elimination on a dense copy.
#include "factor/elimination.h"
#include "factor/solve.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/inverses.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

using namespace quorvel::detail;

namespace {

/// All elements by rows; both triangles of a symmetric matrix.
void Unfold(const SparseMatrix& a, double* full) {
  FillDoubles(full, 0.0, std::uint64_t{a.rows} * a.cols);
  const SparseLines lines(a);
  for (index_t i = 0; i < a.rows; ++i) {
    double* const row = full + std::size_t{i} * a.cols;
    for (LineCursor e = lines.row(i); e; e.next()) row[e.index()] = e.value();
  }
}

void Unfold(const RegularMatrix& a, double* full) { CopyDoubles(full, a.data(), a.StoredCount()); }

void Fold(const double* full, RegularMatrix& target) { CopyDoubles(target.data(), full, target.StoredCount()); }

void Fold(const double* full, RegularSparseMatrix& target) {
  target.Clear();
  RowWriter writer(target);
  for (index_t i = 0; i < target.rows; ++i) {
    SparseElement* prev = nullptr;
    for (index_t j = 0; j < target.cols; ++j, ++full) {
      if (*full != 0.0) prev = writer.append(prev, i, j, *full);
    }
  }
}

template <class K, class Side>
Side& Solve(const K& A, Side& b) {
  return SolveInto(A, b, [&](Side& target) {
    Elimination system(A.rows, target.ncols());
    // All is read before anything is written: b may be A.
    Unfold(A, system.matrix());
    Unfold(target, system.sides());
    A.set_nsing(static_cast<Matrix::nsing_type>(system.factor()));
    system.solve();
    Fold(system.sides(), target);
  });
}

}  // namespace

using RS = RegularSparseMatrix;
using SS = SymmetricSparseMatrix;

RegularMatrix& operator>(RS& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const RS& A, RegularMatrix& b) { return Solve(A, b); }
RegularMatrix& operator>(const RS& A, const RegularMatrix& b) { return Solve(A, Mutable(b)); }

RS& operator>(RS& A, RS& b) { return Solve(A, b); }
RS& operator>(const RS& A, RS& b) { return Solve(A, b); }
RS& operator>(const RS& A, const RS& b) { return Solve(A, Mutable(b)); }

RS& operator>(SS& A, RS& b) { return Solve(A, b); }
RS& operator>(const SS& A, RS& b) { return Solve(A, b); }
RS& operator>(const SS& A, const RS& b) { return Solve(A, Mutable(b)); }
