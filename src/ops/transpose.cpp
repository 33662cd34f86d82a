// transpose. The two triangular kinds share one packed layout with rows and columns exchanged, so that the transpose of
// one is the same array under the other kind.
#include "quorvel/matrix_functions.h"

#include "core/kinds.h"
#include "core/ownership.h"
#include "core/sizing.h"
#include "ops/packed_twin.h"
#include "ops/views.h"

using namespace quorvel::detail;

namespace {

/// The transpose of A in an array that does not overlap A's.
void TransposeInto(double* out, const RegularMatrix& A) noexcept {
  const index_t m = A.nrows(), n = A.ncols();
  kernels().transpose(out, static_cast<kernel_offset>(m), A.data(), static_cast<kernel_offset>(n), m, n);
}

/// Tiles on both sides of the diagonal change places, the upper one by way of `aside`; in a small matrix, elements.
void TransposeSquare(double* a, index_t n) noexcept {
  constexpr index_t tile = 32;
  if (n < tile) {
    for (index_t i = 0; i < n; ++i) {
      for (index_t j = i + 1; j < n; ++j) std::swap(a[i * n + j], a[j * n + i]);
    }
    return;
  }
  alignas(64) double aside[tile * tile];
  const auto stride = static_cast<kernel_offset>(n);
  for (index_t r = 0; r < n; r += tile) {
    const index_t rows = n - r < tile ? n - r : tile;
    for (index_t c = r; c < n; c += tile) {
      const index_t cols = n - c < tile ? n - c : tile;
      double* const upper = a + std::size_t{r} * n + c;
      double* const lower = a + std::size_t{c} * n + r;
      kernels().transpose(aside, tile, upper, stride, rows, cols);
      if (c != r) kernels().transpose(upper, stride, lower, stride, cols, rows);
      kernels().copy_lines(TargetOf(lower, stride), FactorOf(aside, tile), cols, rows);
    }
  }
}

void TransposeInPlace(RegularMatrix& A) {
  if (A.nrows() == A.ncols()) return TransposeSquare(A.data(), A.nrows());
  RegularMatrix turned(A.ncols(), A.nrows());
  TransposeInto(turned.data(), A);
  A.Swap(turned);
}

}  // namespace

RegularMatrix& transpose(RegularMatrix& A, RegularMatrix* out) {
  RequireOk(A, code::transpose_regular);
  if (out == nullptr && A.dispensable()) out = &A;
  if (out == nullptr) {
    auto result = NewResult<RegularMatrix>::sized(A.ncols(), A.nrows());
    TransposeInto(result->data(), A);
    return result.hand_over();
  }
  Consumed operands(A, *out);
  if (out == &A) {
    TransposeInPlace(A);
  } else {
    if (!out->ok()) operands.release(*out);  // the check of SetSize destroys it
    out->SetSize(A.ncols(), A.nrows(), false);
    TransposeInto(out->data(), A);
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
