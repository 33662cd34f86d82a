// Copying into sparse matrices: what the copying members do after their checks. They size the target themselves.
#ifndef QUORVEL_SPARSE_COPY_H
#define QUORVEL_SPARSE_COPY_H

#include "quorvel/SparseMatrix.h"
#include "sparse/append.h"
#include "sparse/cursor.h"

namespace quorvel::detail {

/// From a sparse matrix of either kind: every stored element, both triangles of a symmetric source in a regular target.
void CopyStored(SparseMatrix& target, const SparseMatrix& source, bool negate);

// The same in two steps, for a caller who has more to write before the columns are linked, unless the copy is one with
// mirror images: a symmetric source in a regular target.

/// Empties the target and gives it the size of the source, and its block size when it has none.
void SizeForCopy(SparseMatrix& target, const SparseMatrix& source);
void CopyRows(RowWriter& writer, const SparseMatrix& source);

inline bool is_mirrored_copy(const SparseMatrix& target, const SparseMatrix& source) noexcept {
  return is_symmetric_sparse(source) && !is_symmetric_sparse(target);
}

/// From a dense kind: the elements that are not 0.0.
template <class T>
void CopyDense(SparseMatrix& target, const T& source) {
  const Rule<T> from(source);
  target.Clear();
  target.SetSize(from.rows(), from.cols(), true);
  // The stored triangle of a symmetric source is what the symmetric kind stores; the regular kind gets whole rows.
  const bool whole_rows = !is_symmetric_sparse(target);
  RowWriter writer(target);
  for (index_t i = 0; i < from.rows(); ++i) {
    const Range range = whole_rows ? from.in_row(i) : from.stored_in_row(i);
    SparseElement* prev = nullptr;
    for (index_t j = range.begin; j < range.end; ++j) {
      const double v = from.at(i, j);
      if (v != 0.0) prev = writer.append(prev, i, j, v);
    }
  }
}

}  // namespace quorvel::detail

#endif
