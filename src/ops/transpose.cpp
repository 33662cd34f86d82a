// transpose. The two triangular kinds share one packed layout with rows and columns exchanged, so that the transpose of
// one is the same array under the other kind.
#include "quorvel/matrix_functions.h"

#include "core/kinds.h"
#include "core/ownership.h"
#include "core/sizing.h"
#include "ops/packed_twin.h"
#include "ops/tiled_transpose.h"

using namespace quorvel::detail;

namespace {

void TransposeInPlace(RegularMatrix& A) {
  const index_t m = A.nrows();
  const index_t n = A.ncols();
  if (m == n) {
    const Rule<RegularMatrix> a(A);
    for (index_t i = 0; i < n; ++i) {
      for (index_t j = i + 1; j < n; ++j) std::swap(a.store(i, j), a.store(j, i));
    }
    return;
  }
  RegularMatrix turned(n, m);
  TransposeInto(A.data(), m, n, turned.data());
  A.Swap(turned);
}

}  // namespace

RegularMatrix& transpose(RegularMatrix& A, RegularMatrix* out) {
  RequireOk(A, code::transpose_regular);
  if (out == nullptr && A.dispensable()) out = &A;
  if (out == nullptr) {
    auto result = NewResult<RegularMatrix>::sized(A.ncols(), A.nrows());
    TransposeInto(A.data(), A.nrows(), A.ncols(), result->data());
    return result.hand_over();
  }
  Consumed operands(A, *out);
  if (out == &A) {
    TransposeInPlace(A);
  } else {
    if (!out->ok()) operands.release(*out);  // the check of SetSize destroys it
    out->SetSize(A.ncols(), A.nrows(), false);
    TransposeInto(A.data(), A.nrows(), A.ncols(), out->data());
  }
  operands.release(*out);
  return *out;
}

RegularMatrix& transpose(const RegularMatrix& A, RegularMatrix* out) { return transpose(Mutable(A), out); }

LowerTriangularMatrix& transpose(UpperTriangularMatrix& A) {
  RequireOk(A, code::transpose_triangular);
  return PackedTwin<LowerTriangularMatrix>(A, A.nsing());
}

UpperTriangularMatrix& transpose(LowerTriangularMatrix& A) {
  RequireOk(A, code::assign);
  return PackedTwin<UpperTriangularMatrix>(A, A.nsing());
}

LowerTriangularMatrix& transpose(const UpperTriangularMatrix& A) { return transpose(Mutable(A)); }
UpperTriangularMatrix& transpose(const LowerTriangularMatrix& A) { return transpose(Mutable(A)); }
