// Runs of a row of a dense matrix, implicit and mirrored elements included, into an array.
#ifndef QUORVEL_DENSE_READ_LINE_H
#define QUORVEL_DENSE_READ_LINE_H

#include "core/storage.h"
#include "dense/rules.h"

namespace quorvel::detail {

/// Positions (first, c), (first + 1, c), ... of a packed array of order n, down a column: each line is one shorter.
inline void ReadPackedColumn(double* out, const double* position, index_t n, index_t first, index_t count) noexcept {
  for (index_t k = 0; k < count; ++k) {
    out[k] = *position;
    position += n - 1 - (first + k);
  }
}

// ReadLine(out, a, i, cols): out[0 ..] = the elements of row i in the columns `cols`, which exist.

inline void ReadLine(double* out, const Rule<RegularMatrix>& a, index_t i, Range cols) noexcept {
  if (cols.begin < cols.end) CopyDoubles(out, &a.store(i, cols.begin), cols.end - cols.begin);
}

inline void ReadLine(double* out, const Rule<UpperTriangularMatrix>& a, index_t i, Range cols) noexcept {
  const index_t first = i < cols.begin ? cols.begin : i < cols.end ? i : cols.end;
  ClearDoubles(out, first - cols.begin);
  if (first < cols.end) CopyDoubles(out + (first - cols.begin), &a.store(i, first), cols.end - first);
}

inline void ReadLine(double* out, const Rule<LowerTriangularMatrix>& a, index_t i, Range cols) noexcept {
  const Range stored = common({0, i + 1}, cols);
  const index_t count = stored.end - stored.begin;
  if (count != 0) ReadPackedColumn(out, &a.store(i, cols.begin), a.rows(), cols.begin, count);
  ClearDoubles(out + count, cols.end - cols.begin - count);
}

inline void ReadLine(double* out, const Rule<SymmetricMatrix>& a, index_t i, Range cols) noexcept {
  const Range mirrored = common({0, i}, cols);
  const index_t count = mirrored.end - mirrored.begin;
  if (count != 0) ReadPackedColumn(out, &a.store(i, cols.begin), a.rows(), cols.begin, count);
  const index_t rest = cols.end - cols.begin - count;
  if (rest != 0) CopyDoubles(out + count, &a.store(i, cols.begin + count), rest);
}

inline void ReadLine(double* out, const Rule<DiagonalMatrix>& a, index_t i, Range cols) noexcept {
  ClearDoubles(out, cols.end - cols.begin);
  if (cols.begin <= i && i < cols.end) out[i - cols.begin] = a.store(i, i);
}

}  // namespace quorvel::detail

#endif
