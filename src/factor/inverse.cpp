// inv of the dense kinds.
#include "core/ownership.h"
#include "core/sizing.h"
#include "factor/qr_inverse.h"
#include "factor/tri_inverse.h"
#include "quorvel/DiagonalMatrix.h"
#include "quorvel/LowerTriangularMatrix.h"
#include "quorvel/RegularMatrix.h"
#include "quorvel/SymmetricMatrix.h"
#include "quorvel/UpperTriangularMatrix.h"
#include "quorvel/inverses.h"
#include "quorvel/small_inverses.h"

using namespace quorvel::detail;

namespace {

/// Elements that are no pivots stay as they are in place, and 0.0 in a new matrix.
void InvertElements(const DiagonalMatrix& A, DiagonalMatrix& target) {
  Matrix::nsing_type singular = 0;
  for (index_t i = 0; i < A.ndim(); ++i) {
    if (PivotPasses(A.data()[i])) {
      target.data()[i] = 1.0 / A.data()[i];
    } else {
      ++singular;
    }
  }
  target.set_nsing(singular);
}

/// The inverse of A, which may be the target.
void Invert(const TriMatrix& A, TriMatrix& target) {
  if (&target != &A) CopyDoubles(target.data(), A.data(), A.StoredCount());
  target.set_nsing(0);
  RequireInvertibleOrder(A.ndim());
  PanelScratch scratch(A.ndim());
  target.set_nsing(InvertTriangle(target.data(), A.ndim(), scratch));
}

void Invert(const RegularMatrix& A, RegularMatrix& target) {
  QrInverseScratch scratch(A.nrows());
  target.set_nsing(0);
  RequireInvertibleOrder(A.nrows());
  target.set_nsing(InvertByReflections(target.data(), A.data(), A.nrows(), scratch));
}

/// The inverse in place, or in a copy that replaces the operand.
template <class K>
K& InverseInPlaceOrCopy(K& A, bool inPlace) {
  Consumed operand(A);
  if (inPlace || A.dispensable()) {
    Invert(A, A);
    operand.release(A);
    return A;
  }
  NewResult<K> result(A.nrows(), A.ncols());
  Invert(A, *result);
  return result.hand_over();
}

template <class K>
K& TriangularInverse(K& A, bool inPlace) {
  if (A.ndim() == 2) return inv2x2(A, inPlace);
  if (A.ndim() == 3) return inv3x3(A, inPlace);
  A.ThrowNotOk(code::inverse_triangular);
  return InverseInPlaceOrCopy(A, inPlace);
}

/// The upper triangle of the general inverse of A, which may be the target.
void InvertSymmetric(const SymmetricMatrix& A, SymmetricMatrix& target) {
  const index_t n = A.ndim();
  RequireInvertibleOrder(n);
  WorkArea<small_order * small_order> full(std::uint64_t{n} * n);
  QrInverseScratch scratch(n);
  double* const a = full.data();
  for (index_t i = 0; i < n; ++i) {
    const double* const row = A.data() + packed_row(i, n) - i;
    for (index_t j = i; j < n; ++j) a[std::size_t{i} * n + j] = a[std::size_t{j} * n + i] = row[j];
  }
  target.set_nsing(InvertByReflections(a, a, n, scratch));
  for (index_t i = 0; i < n; ++i) CopyDoubles(target.data() + packed_row(i, n), a + (std::size_t{n} + 1) * i, n - i);
}

}  // namespace

DiagonalMatrix& inv(DiagonalMatrix& A, bool inPlace) {
  A.ThrowNotOk(code::inverse_diagonal);
  if (inPlace || A.dispensable()) {
    InvertElements(A, A);
    return A;
  }
  NewResult<DiagonalMatrix> result(A.ndim());
  InvertElements(A, *result);
  return result.hand_over();
}

UpperTriangularMatrix& inv(UpperTriangularMatrix& A, bool inPlace) { return TriangularInverse(A, inPlace); }

LowerTriangularMatrix& inv(LowerTriangularMatrix& A, bool inPlace) { return TriangularInverse(A, inPlace); }

RegularMatrix& inv(RegularMatrix& A, bool inPlace) {
  if (A.nrows() == 2 && A.ncols() == 2) return inv2x2(A, inPlace);
  if (A.nrows() == 3 && A.ncols() == 3) return inv3x3(A, inPlace);
  A.ThrowNotOk(code::inverse_not_ok);
  A.ThrowNotSquare(code::inverse_shape);
  RegularMatrix& inverse = InverseInPlaceOrCopy(A, inPlace);
  if (&inverse != &A) A.set_nsing(0);
  return inverse;
}

SymmetricMatrix& inv(SymmetricMatrix& A, bool inPlace) {
  if (A.ndim() == 2) return inv2x2(A, inPlace);
  if (A.ndim() == 3) return inv3x3(A, inPlace);
  A.ThrowNotOk(code::inverse_not_ok);
  Consumed operand(A);
  if (inPlace || A.dispensable()) {
    if (A.capacity() == StoredIn(A)) {
      InvertSymmetric(A, A);
    } else {  // as an assignment of the inverse: the larger array goes
      SymmetricMatrix inverse(A.ndim());
      InvertSymmetric(A, inverse);
      Access::swap_storage(A, inverse);
      A.set_nsing(inverse.nsing());
    }
    operand.release(A);
    return A;
  }
  NewResult<SymmetricMatrix> result(A.ndim());
  InvertSymmetric(A, *result);
  return result.hand_over();
}

DiagonalMatrix& inv(const DiagonalMatrix& A, bool) { return inv(Mutable(A), false); }
UpperTriangularMatrix& inv(const UpperTriangularMatrix& A, bool) { return inv(Mutable(A), false); }
LowerTriangularMatrix& inv(const LowerTriangularMatrix& A, bool) { return inv(Mutable(A), false); }
RegularMatrix& inv(const RegularMatrix& A, bool) { return inv(Mutable(A), false); }
SymmetricMatrix& inv(const SymmetricMatrix& A, bool) { return inv(Mutable(A), false); }
