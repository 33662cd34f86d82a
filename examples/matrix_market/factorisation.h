// A triangular factor of a sparse matrix, and how well it reproduces the matrix.
#ifndef MATRIX_MARKET_FACTORISATION_H
#define MATRIX_MARKET_FACTORISATION_H

#include <iosfwd>

#include "quorvel/RegularSparseMatrix.h"
#include "quorvel/SymmetricSparseMatrix.h"

namespace market {

struct Factorisation {
  enum Method { none, cholesky, reflections } method = none;
  unsigned elements = 0;        // stored in the factor
  unsigned singular = 0;        // diagonal elements that are 0
  double smallest = 0.0, largest = 0.0;  // magnitude of the diagonal elements
  double log_determinant = 0.0;  // of |det A|; of a rectangular A half that of det(A'A)
  double misfit = 0.0;           // of the factor's product against the matrix, applied to a vector of ones, relative
};

// A = L L' when every diagonal element is positive and no pivot is negative, else as for a general matrix.
Factorisation Factorise(const SymmetricSparseMatrix& A, double tolerance);
// A = Q R; of a matrix with more columns than rows that of its transpose.
Factorisation Factorise(const RegularSparseMatrix& A, double tolerance);

void PrintFactorisation(const SymmetricSparseMatrix& A, double tolerance, std::ostream& out);
void PrintFactorisation(const RegularSparseMatrix& A, double tolerance, std::ostream& out);

}  // namespace market

#endif
