// Where the elements of a sparse matrix are, and how large.
#ifndef MATRIX_MARKET_STRUCTURE_H
#define MATRIX_MARKET_STRUCTURE_H

#include <cstddef>
#include <iosfwd>

#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"
#include "reader.h"

namespace market {

struct Structure {
  std::size_t stored = 0;    // elements that the kind keeps
  std::size_t nonzeros = 0;  // elements of the whole matrix
  unsigned below = 0, above = 0;  // bandwidths: largest i - j and j - i of a non-zero element
  unsigned shortest_row = 0, longest_row = 0;  // non-zero elements
  unsigned empty_rows = 0, empty_cols = 0;
  unsigned diagonal = 0;            // non-zero elements (i, i)
  std::size_t mirrored = 0;         // non-zero elements off the diagonal whose mirror is non-zero too
  std::size_t off_diagonal = 0;
};

struct Norms {
  double one = 0.0;        // largest column sum of magnitudes
  double infinity = 0.0;   // largest row sum of magnitudes
  double frobenius = 0.0;  // root of the sum of squares
  double largest = 0.0;    // largest magnitude
};

Structure StructureOf(const RegularSparseMatrix& A);
Structure StructureOf(const SymmetricSparseMatrix& A);
Norms NormsOf(const RegularSparseMatrix& A);
Norms NormsOf(const SymmetricSparseMatrix& A);

void PrintStructure(const RegularSparseMatrix& A, const MarketFile& file, std::ostream& out);
void PrintStructure(const SymmetricSparseMatrix& A, const MarketFile& file, std::ostream& out);

}  // namespace market

#endif
