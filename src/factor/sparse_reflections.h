// Triangularisation of a sparse matrix by Householder reflections.
//
// Columns are taken in panels, each dense for the time it is worked on: all earlier reflections are applied to it in
// their order, then its own columns are reduced. A reflection whose rows hold nothing in the panel is passed over. The
// values are those of the dense triangularisation of the same finite matrix, bit for bit; zeros are not stored.
#ifndef QUORVEL_FACTOR_SPARSE_REFLECTIONS_H
#define QUORVEL_FACTOR_SPARSE_REFLECTIONS_H

#include <cstddef>
#include <vector>

#include "core/packed.h"
#include "factor/reflections.h"
#include "quorvel/RegularSparseMatrix.h"

namespace quorvel::detail {

/// The reflections of the columns in order: that of column j is I - beta*v*v' with v(j) = 1 and the elements
/// values[begin .. end) of v in rows[begin .. end), increasing.
class SparseReflections {
 public:
  struct Vector {
    bool made;
    double beta;
    std::size_t begin;
    std::size_t end;
  };
  std::vector<Vector> columns;
  std::vector<index_t> rows;
  std::vector<double> values;

  /// The reflection of column j with its vector in the scratch, when it meets a row of a panel that may hold something
  /// (those it then may fill are marked as well); otherwise, or when there is none, one that was not made.
  Reflection recall(index_t j, std::vector<bool>& used, ReflectionWork work) const;
};

/// r = R, n x n upper triangular, of a matrix of m rows and n <= m columns; the reflections are kept in h. `r` must be
/// another matrix; it is cleared and resized. Exhausted memory is a std::bad_alloc.
void TriangulariseSparse(const RegularSparseMatrix& a, RegularSparseMatrix& r, SparseReflections& h);

}  // namespace quorvel::detail

#endif
