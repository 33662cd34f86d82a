// inv2x2 and inv3x3 of the matrix kinds, and the inverse of a block diagonal matrix.
#include "quorvel/small_inverses.h"

#include "core/ownership.h"
#include "core/storage.h"
#include "dense/rules.h"
#include "factor/tri_inverse.h"
#include "sparse/cursor.h"

using namespace quorvel::detail;

namespace {

/// Reads the array of a kind of order N, writes the inverse to `to`, which may be the same array.
template <class K, unsigned N>
int InvertArray(const double* from, double* to) {
  if constexpr (std::is_same_v<K, SymmetricMatrix>) {
    return N == 2 ? inv2x2_sm(from, to, smallest_pivot) : inv3x3_sm(from, to, smallest_pivot);
  } else if constexpr (std::is_same_v<K, RegularMatrix>) {
    const auto in = reinterpret_cast<const double(*)[N]>(from);
    const auto out = reinterpret_cast<double(*)[N]>(to);
    if constexpr (N == 2) return inv2x2_rm(in, out, smallest_pivot);
    if constexpr (N == 3) return inv3x3_rm(in, out, smallest_pivot);
  } else {
    if (from != to) CopyDoubles(to, from, packed_count(N));
    return N == 2 ? inv2x2_ulm(to, smallest_pivot) : inv3x3_ulm(to, smallest_pivot);
  }
}

template <unsigned N, class K>
K& SmallDenseInverse(K& A, bool inPlace) {
  if (inPlace || A.dispensable()) {
    A.set_nsing(InvertArray<K, N>(A.data(), A.data()));
    return A;
  }
  NewResult<K> result(N, N);
  result->set_nsing(InvertArray<K, N>(A.data(), result->data()));
  return result.hand_over();
}

/// Cell by cell through the sparse interface.
template <unsigned N, class K>
K& SmallSparseInverse(K& A, bool inPlace) {
  using Dense = std::conditional_t<std::is_same_v<K, SymmetricSparseMatrix>, SymmetricMatrix, RegularMatrix>;
  constexpr bool upper_only = std::is_same_v<Dense, SymmetricMatrix>;
  double cells[N * N];
  const auto for_cells = [&](auto use) {
    double* cell = cells;
    for (unsigned i = 0; i < N; ++i) {
      for (unsigned j = upper_only ? i : 0; j < N; ++j) use(i, j, *cell++);
    }
  };
  const SparseLines a(A);
  for_cells([&](unsigned i, unsigned j, double& cell) { cell = a.at(i, j); });
  const int count = InvertArray<Dense, N>(cells, cells);
  if (inPlace || A.dispensable()) {
    Consumed operand(A);
    for_cells([&](unsigned i, unsigned j, double cell) { A.Put(i, j, cell); });
    operand.release(A);
    A.set_nsing(count);
    return A;
  }
  NewResult<K> result(N, N);
  for_cells([&](unsigned i, unsigned j, double cell) { result->Put(i, j, cell); });
  result->set_nsing(count);
  return result.hand_over();
}

template <unsigned N, class K>
K& SmallInverse(K& A, bool inPlace) {
  A.ThrowNotSize(code::none, N, N);
  if constexpr (!is_dense<K>) {
    return SmallSparseInverse<N>(A, inPlace);
  } else {
    return SmallDenseInverse<N>(A, inPlace);
  }
}

}  // namespace

SymmetricMatrix& inv2x2(SymmetricMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
UpperTriangularMatrix& inv2x2(UpperTriangularMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
LowerTriangularMatrix& inv2x2(LowerTriangularMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
RegularMatrix& inv2x2(RegularMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
SymmetricSparseMatrix& inv2x2(SymmetricSparseMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
RegularSparseMatrix& inv2x2(RegularSparseMatrix& A, bool inPlace) { return SmallInverse<2>(A, inPlace); }
SymmetricMatrix& inv2x2(const SymmetricMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }
UpperTriangularMatrix& inv2x2(const UpperTriangularMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }
LowerTriangularMatrix& inv2x2(const LowerTriangularMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }
RegularMatrix& inv2x2(const RegularMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }
SymmetricSparseMatrix& inv2x2(const SymmetricSparseMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }
RegularSparseMatrix& inv2x2(const RegularSparseMatrix& A, bool) { return SmallInverse<2>(Mutable(A), false); }

SymmetricMatrix& inv3x3(SymmetricMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
UpperTriangularMatrix& inv3x3(UpperTriangularMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
LowerTriangularMatrix& inv3x3(LowerTriangularMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
RegularMatrix& inv3x3(RegularMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
SymmetricSparseMatrix& inv3x3(SymmetricSparseMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
RegularSparseMatrix& inv3x3(RegularSparseMatrix& A, bool inPlace) { return SmallInverse<3>(A, inPlace); }
SymmetricMatrix& inv3x3(const SymmetricMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }
UpperTriangularMatrix& inv3x3(const UpperTriangularMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }
LowerTriangularMatrix& inv3x3(const LowerTriangularMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }
RegularMatrix& inv3x3(const RegularMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }
SymmetricSparseMatrix& inv3x3(const SymmetricSparseMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }
RegularSparseMatrix& inv3x3(const RegularSparseMatrix& A, bool) { return SmallInverse<3>(Mutable(A), false); }

void Invert3x3BlockDiagMatrix(const SymmetricMatrix& A, SymmetricMatrix& out) {
  A.ThrowNotOk(code::none);
  Consumed operands(A, out);
  if (!out.ok()) operands.release(out);  // the check of SetSize destroys it
  const index_t n = A.ndim();
  out.SetSize(n, n, false);
  for (index_t k = 0; n - k >= 3; k += 3) {
    const index_t row0 = packed_row(k, n);
    const index_t row1 = packed_row(k + 1, n);
    const index_t row2 = packed_row(k + 2, n);
    const double* const a = A.data();
    double block[6] = {a[row0], a[row0 + 1], a[row0 + 2], a[row1], a[row1 + 1], a[row2]};
    inv3x3_sm(block, block, smallest_pivot);
    double* const b = out.data();
    CopyDoubles(b + row0, block, 3);
    CopyDoubles(b + row1, block + 3, 2);
    b[row2] = block[5];
  }
  operands.release(out);
}
